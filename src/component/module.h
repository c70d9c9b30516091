#pragma once

#include <windows.h>

#include <string>

/// The DLL as its process sees it.
namespace pluvo::component {

/// Kept by DllMain.
void module(HINSTANCE instance);

std::wstring modulePath();
/// Without a separator at the end.
std::wstring moduleFolder();

/// From now on the code stays where it is until the process ends: there are windows that call it.
void stayLoaded();

/// Counts as alive while it lives.
class Alive {
 public:
  Alive() noexcept;
  Alive(const Alive&) = delete;
  Alive& operator=(const Alive&) = delete;
  ~Alive();
};

void lockServer(bool lock) noexcept;
/// Whether an object, a lock or the dialog lives.
bool anythingLives() noexcept;

}  // namespace pluvo::component
