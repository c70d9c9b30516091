#include "world.h"

#include "disk.h"
#include "errors/text.h"
#include "word_window.h"

#include <windows.h>

#include <algorithm>

namespace pluvo::stand_in {
namespace {

std::u16string smallLetters(const std::u16string& text) {
  std::wstring wide(text.begin(), text.end());
  CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return {wide.begin(), wide.end()};
}

}  // namespace

World& World::instance() {
  // Never destroyed: objects that a script forgot may be released after this library's own statics are gone.
  static World* const world = new World();
  return *world;
}

std::int32_t World::majorVersion() const { return std::stoi(errors::utf8(version)); }

StoredFile& World::fileAt(const std::u16string& path) { return files[smallLetters(path)]; }

std::shared_ptr<OpenDocument> World::active() {
  if (!active_) {
    throw WordError{4248, u"This command is not available because no document is open."};
  }
  return active_;
}

void World::activate(const std::shared_ptr<OpenDocument>& document) {
  document->model();
  active_ = document;
}

void World::askPassword(const std::u16string& wanted, const std::u16string* given) {
  if (wanted.empty()) return;
  std::u16string answer;
  if (given != nullptr) {
    answer = *given;
  } else {
    if (passwords.empty()) throw WordError{4198, u"Command failed"};
    answer = passwords.front();
    passwords.pop_front();
  }
  if (answer != wanted) {
    throw WordError{5408, u"The password is incorrect. Word cannot open the document."};
  }
}

StoredFile World::load(const std::u16string& path) {
  const auto known = files.find(smallLetters(path));
  if (known != files.end() && !known->second.onDisk) return known->second;
  StoredFile file = known != files.end() ? known->second : StoredFile{};
  file.onDisk = true;
  const auto text = disk::read(path);
  if (!text) {
    throw WordError{5174, u"This file could not be found.\r(" + path + u")"};
  }
  file.text = *text;
  file.readOnly = file.readOnly || disk::isReadOnly(path);
  return file;
}

std::shared_ptr<OpenDocument> World::open(const std::u16string& path, const std::u16string* openPassword,
                                          const std::u16string* writePassword, bool readOnly, bool revert) {
  for (const auto& document : documents) {
    if (smallLetters(document->path) != smallLetters(path)) continue;
    if (!revert) {
      active_ = document;
      return document;
    }
    close(std::shared_ptr(document));
    break;
  }
  StoredFile file = load(path);
  askPassword(file.openPassword, openPassword);
  askPassword(file.writePassword, writePassword);
  file.readOnly = file.readOnly || readOnly;
  return add(path, file);
}

std::shared_ptr<OpenDocument> World::add(const std::u16string& path, const StoredFile& file) {
  documents.push_back(std::make_shared<OpenDocument>(path, file));
  active_ = documents.back();
  return active_;
}

void World::save(OpenDocument& document) {
  std::u16string path = document.path;
  if (document.readOnly || document.folder().empty()) {
    if (saveAsPaths.empty()) {
      if (document.readOnly) throw WordError{5155, u"The file is read-only."};
      throw WordError{4198, u"Command failed"};
    }
    path = saveAsPaths.front();
    saveAsPaths.pop_front();
  }
  StoredFile saved = document.file;
  saved.text = document.allText();
  saved.highlights = document.highlights();
  saved.readOnly = false;
  if (saved.onDisk && !disk::write(path, saved.text)) throw WordError{5155, u"The file cannot be written."};
  fileAt(path) = saved;
  document.file = saved;
  document.path = path;
  document.readOnly = false;
  document.saved = true;
}

void World::close(const std::shared_ptr<OpenDocument>& document) {
  document->close();
  std::erase(documents, document);
  if (active_ == document) active_ = documents.empty() ? nullptr : documents.back();
}

void World::reset() {
  while (!documents.empty()) close(std::shared_ptr(documents.back()));
  files.clear();
  passwords.clear();
  saveAsPaths.clear();
  defaultPaths.clear();
  calls.allowAll();
  calls.clear();
  calls.writing(true);
  version = u"16.0";
  visible = true;
  screenUpdating = true;
  smartCutPaste = true;
  undoRecord.clear();
  undoLevel = 0;
  dialogFind = {};
}

HWND World::window() {
  if (window_ == nullptr || !IsWindow(window_)) window_ = makeWindow(visible);
  return window_;
}

void World::show(const std::u16string& title) {
  const std::wstring wide(title.begin(), title.end());
  if (window_ != nullptr) SetWindowTextW(window_, wide.c_str());
}

}  // namespace pluvo::stand_in
