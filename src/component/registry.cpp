#include "registry.h"

#include <cstring>
#include <utility>

namespace pluvo::component {

namespace {

/// A key while it is open.
class Open {
 public:
  Open() = default;
  Open(const Open&) = delete;
  Open& operator=(const Open&) = delete;
  ~Open() {
    if (key_ != nullptr) RegCloseKey(key_);
  }

  LSTATUS at(HKEY root, const Key& key, REGSAM access) {
    return RegOpenKeyExW(root, pathOf(key).c_str(), 0, access | key.view, &key_);
  }
  LSTATUS made(HKEY root, const Key& key, REGSAM access) {
    return RegCreateKeyExW(root, pathOf(key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access | key.view,
                           nullptr, &key_, nullptr);
  }
  HKEY get() const { return key_; }

 private:
  static std::wstring pathOf(const Key& key) {
    return key.path.empty() ? L"Software" : L"Software\\" + key.path;
  }

  HKEY key_ = nullptr;
};

/// The key in which it lies, and its name there. A key opened by a name alone lies in no other view.
std::pair<Key, std::wstring> divided(const Key& key) {
  const std::size_t end = key.path.rfind(L'\\');
  if (end == std::wstring::npos) return {{key.view, L""}, key.path};
  return {{key.view, key.path.substr(0, end)}, key.path.substr(end + 1)};
}

}  // namespace

Data::Data(const std::wstring& text) : type(REG_SZ), bytes((text.size() + 1) * sizeof(wchar_t)) {
  std::memcpy(bytes.data(), text.c_str(), bytes.size());
}

Data::Data(DWORD number) : type(REG_DWORD), bytes(sizeof number) {
  std::memcpy(bytes.data(), &number, sizeof number);
}

LSTATUS Software::write(const Value& value) const {
  Open key;
  if (const LSTATUS status = key.made(root_, value.key, KEY_SET_VALUE); status != ERROR_SUCCESS)
    return status;
  return RegSetValueExW(key.get(), value.name.c_str(), 0, value.data.type, value.data.bytes.data(),
                        static_cast<DWORD>(value.data.bytes.size()));
}

std::optional<Data> Software::read(const Key& key, const std::wstring& name) const {
  Open open;
  Data data;
  DWORD size = 0;
  if (open.at(root_, key, KEY_QUERY_VALUE) != ERROR_SUCCESS ||
      RegQueryValueExW(open.get(), name.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
    return std::nullopt;
  data.bytes.resize(size);
  if (RegQueryValueExW(open.get(), name.c_str(), nullptr, &data.type, data.bytes.data(), &size) !=
      ERROR_SUCCESS)
    return std::nullopt;
  data.bytes.resize(size);
  return data;
}

bool Software::has(const Key& key) const { return Open().at(root_, key, KEY_QUERY_VALUE) == ERROR_SUCCESS; }

void Software::removeValue(const Key& key, const std::wstring& name) const {
  Open open;
  if (open.at(root_, key, KEY_SET_VALUE) == ERROR_SUCCESS) RegDeleteValueW(open.get(), name.c_str());
}

LSTATUS Software::remove(const Key& key) const {
  const auto [around, name] = divided(key);
  Open open;
  LSTATUS status = open.at(root_, around, KEY_ALL_ACCESS);
  if (status == ERROR_SUCCESS) status = RegDeleteTreeW(open.get(), name.c_str());
  return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

void Software::removeIfEmpty(const Key& key) const {
  DWORD keys = 0;
  DWORD values = 0;
  Open open;
  if (open.at(root_, key, KEY_QUERY_VALUE) != ERROR_SUCCESS ||
      RegQueryInfoKeyW(open.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                       nullptr, nullptr, nullptr) != ERROR_SUCCESS ||
      keys > 0 || values > 0)
    return;
  const auto [around, name] = divided(key);
  Open outer;
  if (outer.at(root_, around, KEY_QUERY_VALUE) == ERROR_SUCCESS) RegDeleteKeyW(outer.get(), name.c_str());
}

HRESULT Writing::write(const std::vector<Value>& values) {
  LSTATUS status = ERROR_SUCCESS;
  // Before anything is written, so that taking it back needs nothing that may not be had then.
  steps_.reserve(values.size());
  for (const Value& value : values) {
    if (status != ERROR_SUCCESS) break;
    Step step = {{value.key, value.name, {}}, false, {}};
    if (auto data = software_.read(value.key, value.name)) {
      step.before.data = *std::move(data);
      step.wasThere = true;
    }
    for (std::size_t end = 0; end != std::wstring::npos;) {
      end = value.key.path.find(L'\\', end + 1);
      std::wstring part = value.key.path.substr(0, end);
      if (!software_.has({value.key.view, part})) step.made.push_back(std::move(part));
    }
    steps_.push_back(std::move(step));
    status = software_.write(value);
  }
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

Writing::~Writing() {
  for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
    if (step->wasThere) {
      software_.write(step->before);
      continue;
    }
    software_.removeValue(step->before.key, step->before.name);
    for (auto key = step->made.rbegin(); key != step->made.rend(); ++key)
      software_.removeIfEmpty({step->before.key.view, *key});
  }
}

}  // namespace pluvo::component
