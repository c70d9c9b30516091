#include "world.h"

#include "base/utf.h"
#include "objects.h"
#include "word/faults.h"

#include <oleacc.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace pluvo::stand_in {
namespace {

LRESULT CALLBACK pane(HWND window, UINT message, WPARAM wide, LPARAM what) {
  const bool asksForObject = message == WM_GETOBJECT && static_cast<LONG>(what) == OBJID_NATIVEOM;
  if (!asksForObject || World::instance().documents.empty())
    return DefWindowProcW(window, message, wide, what);
  const Handle shown = windowObject(World::instance().active());
  return LresultFromObject(IID_IDispatch, wide, shown.Get());
}

HWND create(const wchar_t* name, WNDPROC procedure, DWORD style, const RECT& at, HWND parent) {
  WNDCLASSW kind{};
  kind.lpfnWndProc = procedure;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.lpszClassName = name;
  kind.hbrBackground = GetSysColorBrush(parent == nullptr ? COLOR_APPWORKSPACE : COLOR_WINDOW);
  RegisterClassW(&kind);
  return CreateWindowExW(0, name, L"Word", style | WS_VISIBLE, at.left, at.top, at.right - at.left,
                         at.bottom - at.top, parent, nullptr, kind.hInstance, nullptr);
}

HWND documentWindow() {
  HWND window = create(L"OpusApp", DefWindowProcW, WS_OVERLAPPEDWINDOW, {20, 20, 920, 720}, nullptr);
  create(L"_WwG", pane, WS_CHILD, {40, 40, 840, 640}, window);
  return window;
}

}  // namespace

Ways& ways() { return World::instance().ways; }

World& World::instance() {
  // Never destroyed: objects that a script forgot may be released after this library's own statics are gone.
  static World* const world = new World();
  return *world;
}

Document World::active() {
  if (!active_) throw refusal(word::kNoDocument);
  return active_;
}

void World::activate(const Document& document) {
  document->mainText();
  active_ = document;
}

void World::askPassword(const std::u16string& wanted) {
  if (wanted.empty()) return;
  if (passwords.empty()) throw refusal(word::kCommandFailed);
  const std::u16string answer = passwords.front();
  passwords.pop_front();
  if (answer != wanted) throw refusal(word::kOpenPasswordWrong);
}

StoredFile World::load(const std::u16string& path) {
  StoredFile file = files_.contains(path) ? files_[path] : StoredFile{.onDisk = true};
  if (!file.onDisk) return file;
  const auto text = readFile(path);
  if (!text) throw refusal(word::kFileNotFound);
  file.text = *text;
  return file;
}

Document World::open(const std::u16string& path) {
  for (const Document& document : documents) {
    if (document->path == path) return active_ = document;
  }
  const StoredFile file = load(path);
  askPassword(file.openPassword);
  askPassword(file.writePassword);
  constexpr std::int32_t kForceDisable = 3;
  if (ways.runsMacros && automationSecurity != kForceDisable) ++macrosRun;
  const Document opened = add(path, file);
  opened->saved = !ways.opensChanged;
  return opened;
}

Document World::add(const std::u16string& path, const StoredFile& file) {
  documents.push_back(std::make_shared<OpenDocument>(path, file));
  if (ways.hasWindows) documents.back()->window = documentWindow();
  return active_ = documents.back();
}

void World::save(OpenDocument& document) {
  document.file.text = document.allText();
  // Word asks where else to, and the user cancels.
  if (document.file.readOnly || (document.file.onDisk && !writeFile(document.path, document.file.text)))
    throw refusal(word::kFileReadOnly);
  fileAt(document.path) = document.file;
  savedFiles.push_back(document.name());
  document.saved = true;
}

void World::close(const Document& document) {
  document->close();
  if (document->window != nullptr) DestroyWindow(document->window);
  std::erase(documents, document);
  if (active_ == document) active_ = documents.empty() ? nullptr : documents.back();
}

void World::reset() {
  while (!documents.empty()) close(Document(documents.back()));
  files_.clear();
  passwords.clear();
  defaultPaths.clear();
  calls.allowAll();
  calls.clear();
  calls.writing(true);
  screenUpdating = true;
  smartCutPaste = true;
  ways = {};
  automationSecurity = 1;
  macrosRun = 0;
  savedFiles.clear();
  recentFiles.clear();
  undoRecord.clear();
  undoLevel = 0;
  dialogFind = {};
}

HWND World::window() {
  if (window_ == nullptr || !IsWindow(window_)) {
    window_ = documentWindow();
  }
  return window_;
}

void World::show(const std::u16string& title) {
  const std::wstring wide(title.begin(), title.end());
  if (window_ != nullptr) SetWindowTextW(window_, wide.c_str());
}

std::optional<std::u16string> readFile(const std::u16string& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  if (!file) return std::nullopt;
  return base::utf16(std::string(std::istreambuf_iterator<char>(file), {}));
}

bool writeFile(const std::u16string& path, const std::u16string& text) {
  std::string bytes;
  for (const char unit : base::utf8(text)) bytes += unit == '\r' ? "\r\n" : std::string(1, unit);
  std::ofstream file(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
  file << bytes << std::flush;
  return file.good();
}

}  // namespace pluvo::stand_in
