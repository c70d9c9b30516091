#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace pluvo::component {

/// The content of a value of the registry.
struct Data {
  Data() = default;
  Data(const std::wstring& text);  // NOLINT(google-explicit-constructor)
  Data(DWORD number);              // NOLINT(google-explicit-constructor)

  DWORD type = REG_NONE;
  std::vector<BYTE> bytes;
};

/// A key below Software, as programs of one width see it (KEY_WOW64_64KEY, KEY_WOW64_32KEY): some keys are
/// kept by width, others are the same for both.
struct Key {
  REGSAM view = 0;
  std::wstring path;
};

struct Value {
  Key key;
  std::wstring name;  ///< empty: the key's own
  Data data;
};

/// HKEY_CURRENT_USER\Software, or HKEY_LOCAL_MACHINE\Software.
class Software {
 public:
  explicit Software(HKEY root) : root_(root) {}

  LSTATUS write(const Value& value) const;
  /// Nothing where it is not there.
  std::optional<Data> read(const Key& key, const std::wstring& name) const;
  bool has(const Key& key) const;
  void removeValue(const Key& key, const std::wstring& name) const;
  /// With all that is in it. One that is not there has gone already.
  LSTATUS remove(const Key& key) const;
  void removeIfEmpty(const Key& key) const;

 private:
  HKEY root_;
};

/// Writes all values, or leaves all as they were.
class Writing {
 public:
  explicit Writing(HKEY root) : software_(root) {}
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;
  ~Writing();

  HRESULT write(const std::vector<Value>& values);
  /// It is to stay.
  void keep() { steps_.clear(); }

 private:
  struct Step {
    Value before;  ///< its data is REG_NONE where there was none
    bool wasThere = false;
    std::vector<std::wstring> made;  ///< keys, the outermost first
  };

  Software software_;
  std::vector<Step> steps_;
};

}  // namespace pluvo::component
