#include "module.h"

#include "errors/fault.h"

#include <atomic>

namespace pluvo::component {

namespace {

HINSTANCE ownInstance = nullptr;
std::atomic<long> living = 0;

}  // namespace

void module(HINSTANCE instance) { ownInstance = instance; }

std::wstring modulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(ownInstance, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw errors::Fault(errors::kPathFileAccess, u"Windows does not say where PLUVO lies.");
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::wstring moduleFolder() {
  std::wstring path = modulePath();
  path.resize(path.rfind(L'\\'));
  return path;
}

void stayLoaded() {
  HMODULE pinned = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<const wchar_t*>(ownInstance), &pinned);
}

Alive::Alive() noexcept { ++living; }
Alive::~Alive() { --living; }

void lockServer(bool lock) noexcept { living += lock ? 1 : -1; }
bool anythingLives() noexcept { return living != 0; }

}  // namespace pluvo::component
