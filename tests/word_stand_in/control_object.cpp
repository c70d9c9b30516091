#include "disk.h"
#include "word_objects.h"

#include <filesystem>

namespace pluvo::stand_in {
namespace {

World& world() { return World::instance(); }

std::shared_ptr<OpenDocument> named(const std::u16string& name) {
  for (const auto& document : world().documents) {
    if (document->name() == name || document->path == name) return document;
  }
  throw WordError{5941, u"No open document has this name."};
}

std::u16string joined(const std::vector<std::u16string>& lines) {
  std::u16string all;
  for (const auto& line : lines) all += line + u"\r\n";
  return all;
}

Value addDocument(ControlObject&, const Arguments& given) {
  StoredFile file;
  file.text = given.text(1);
  return make<DocumentObject>(world().add(given.text(0), file));
}

Value addFile(ControlObject&, const Arguments& given) {
  world().fileAt(given.text(0)).text = given.text(1);
  return {};
}

/// Lets the thread's windows answer meanwhile.
void sleep(DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0;) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
}

/// The traits of a file that is on the disk, or was added before.
StoredFile& traits(const std::u16string& path) {
  const bool known = !world().fileAt(path).text.empty() || world().fileAt(path).onDisk;
  StoredFile& file = world().fileAt(path);
  if (!known) file.onDisk = true;
  return file;
}

}  // namespace

const Interface& ControlObject::members() {
  using C = ControlObject;
  static const Interface kind{
      u"StandIn",
      {
          // AddDocument path, text: opens a document in memory.
          member<C>(Verb::call, u"AddDocument", {text(u"Path"), text(u"Text")}, addDocument),
          // AddFile path, text: a file in memory that Documents.Open finds.
          member<C>(Verb::call, u"AddFile", {text(u"Path"), text(u"Text")}, addFile),
          // What holds for a file, in memory or on the disk.
          member<C>(Verb::call, u"SetPasswords", {text(u"Path"), text(u"ToOpen"), text(u"ToChange")},
                    [](auto&, const auto& a) -> Value {
                      traits(a.text(0)).openPassword = a.text(1);
                      traits(a.text(0)).writePassword = a.text(2);
                      return {};
                    }),
          member<C>(Verb::call, u"SetProtection", {text(u"Path"), number(u"Type"), text(u"Password")},
                    [](auto&, const auto& a) -> Value {
                      traits(a.text(0)).protection = a.number(1);
                      traits(a.text(0)).protectionPassword = a.text(2);
                      return {};
                    }),
          member<C>(Verb::call, u"SetReadOnly", {text(u"Path")},
                    [](auto&, const auto& a) -> Value {
                      traits(a.text(0)).readOnly = true;
                      return {};
                    }),
          // What was saved: the text, the highlights, the protection.
          member<C>(Verb::call, u"FileText", {text(u"Path")},
                    [](auto&, const auto& a) -> Value { return world().fileAt(a.text(0)).text; }),
          member<C>(Verb::call, u"FileProtection", {text(u"Path")},
                    [](auto&, const auto& a) -> Value { return world().fileAt(a.text(0)).protection; }),
          // What an open document holds: "7:0-5 2:8-9", all its characters, its undo records.
          member<C>(Verb::call, u"Highlights", {text(u"Name")},
                    [](auto&, const auto& a) -> Value { return named(a.text(0))->highlights(); }),
          member<C>(Verb::call, u"TextOf", {text(u"Name")},
                    [](auto&, const auto& a) -> Value { return named(a.text(0))->allText(); }),
          member<C>(Verb::call, u"UndoRecords", {text(u"Name")},
                    [](auto&, const auto& a) -> Value { return joined(named(a.text(0))->undoRecords); }),
          // What the user answers when Word asks.
          member<C>(Verb::call, u"AnswerPassword", {text(u"Password")},
                    [](auto&, const auto& a) -> Value {
                      world().passwords.push_back(a.text(0));
                      return {};
                    }),
          member<C>(Verb::call, u"AnswerSaveAs", {text(u"Path")},
                    [](auto&, const auto& a) -> Value {
                      world().saveAsPaths.push_back(a.text(0));
                      return {};
                    }),
          // Refuse member, code, nth, times: see CallBook::refuse.
          member<C>(Verb::call, u"Refuse",
                    {text(u"Member"), number(u"Code"), optional(u"Nth", Type::number),
                     optional(u"Times", Type::number)},
                    [](auto&, const auto& a) -> Value {
                      world().calls.refuse(a.text(0), a.number(1), a.number(2, 1), a.number(3, 1));
                      return {};
                    }),
          member<C>(Verb::call, u"AllowAll", {},
                    [](auto&, const auto&) -> Value {
                      world().calls.allowAll();
                      return {};
                    }),
          // The calls so far, a line each.
          member<C>(Verb::get, u"Log", {},
                    [](auto&, const auto&) -> Value { return joined(world().calls.lines()); }),
          member<C>(Verb::call, u"ClearLog", {},
                    [](auto&, const auto&) -> Value {
                      world().calls.clear();
                      return {};
                    }),
          member<C>(Verb::put, u"Logging", {flag(u"Value")},
                    [](auto&, const auto& a) -> Value {
                      world().calls.writing(a.flag(0));
                      return {};
                    }),
          member<C>(Verb::get, u"Calls", {},
                    [](auto&, const auto&) -> Value { return world().calls.calls(); }),
          // How many of Word's objects live, of one kind or all.
          member<C>(Verb::call, u"Alive", {optional(u"Kind", Type::text)},
                    [](auto&, const auto& a) -> Value { return world().calls.alive(a.text(0)); }),
          member<C>(Verb::put, u"Version", {text(u"Value")},
                    [](auto&, const auto& a) -> Value {
                      world().version = a.text(0);
                      return {};
                    }),
          member<C>(Verb::call, u"SetDefaultPath", {number(u"Kind"), text(u"Path")},
                    [](auto&, const auto& a) -> Value {
                      world().defaultPaths[a.number(0)] = a.text(1);
                      return {};
                    }),
          // What scripts under Wine cannot do themselves: files on the disk (no text where there is none),
          // and waiting.
          member<C>(Verb::call, u"WriteFile", {text(u"Path"), text(u"Text")},
                    [](auto&, const auto& a) -> Value {
                      const std::filesystem::path path(a.text(0));
                      std::filesystem::create_directories(path.parent_path());
                      return disk::write(a.text(0), a.text(1));
                    }),
          member<C>(Verb::call, u"ReadFile", {text(u"Path")},
                    [](auto&, const auto& a) -> Value { return disk::read(a.text(0)).value_or(u""); }),
          member<C>(Verb::call, u"DeleteFolder", {text(u"Path")},
                    [](auto&, const auto& a) -> Value {
                      std::error_code ignored;
                      std::filesystem::remove_all(std::filesystem::path(a.text(0)), ignored);
                      return {};
                    }),
          member<C>(Verb::call, u"Sleep", {number(u"Milliseconds")},
                    [](auto&, const auto& a) -> Value {
                      sleep(static_cast<DWORD>(a.number(0)));
                      return {};
                    }),
          member<C>(Verb::call, u"Reset", {},
                    [](auto&, const auto&) -> Value {
                      world().reset();
                      return {};
                    }),
      }};
  return kind;
}

}  // namespace pluvo::stand_in
