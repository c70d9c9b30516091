#include "objects.h"

#include <algorithm>
#include <filesystem>

namespace pluvo::stand_in {
namespace {

OpenDocument& named(const std::u16string& name) {
  const auto found =
      std::ranges::find_if(world().documents, [&](const Document& each) { return each->name() == name; });
  if (found == world().documents.end()) throw Failure{DISP_E_BADINDEX};
  return **found;
}

std::u16string joined(const std::vector<std::u16string>& lines) {
  std::u16string all;
  for (const auto& line : lines) all += line + u"\r\n";
  return all;
}

/// Lets the thread's windows answer meanwhile.
void sleep(DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0;) {
      if (ways().eatsKeys && message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
}

}  // namespace

Handle controlObject() {
  using A = Arguments;
  std::vector<Member> members = {
      // AddDocument path, text: opens a document in memory.
      {u"call AddDocument",
       [](const A& given) { return documentObject(world().add(given.text(0), {.text = given.text(1)})); }},
      // SetProtection path, type, password: holds for a file on the disk.
      {u"call SetProtection",
       [](const A& given) {
         world().fileAt(given.text(0)) = {
             .protection = given.number(1), .protectionPassword = given.text(2), .onDisk = true};
       }},
      {u"call FileProtection", [](const A& given) { return world().fileAt(given.text(0)).protection; }},
      // What an open document holds: "7:0-5 2:8-9", its undo records.
      {u"call Highlights", [](const A& given) { return named(given.text(0)).highlights(); }},
      {u"call UndoRecords", [](const A& given) { return joined(named(given.text(0)).undoRecords); }},
      // The calls so far, a line each.
      {u"get Log", [] { return joined(world().calls.lines()); }},
      {u"call ClearLog", [] { world().calls.clear(); }},
      {u"put Logging", [](const A& given) { world().calls.writing(given.flag(0)); }},
      // A way of Word's own: each document has a window; its loop eats keys.
      {u"put HasWindows", [](const A& given) { ways().hasWindows = given.flag(0); }},
      {u"put EatsKeys", [](const A& given) { ways().eatsKeys = given.flag(0); }},
      {u"call SetDefaultPath", [](const A& given) { world().defaultPaths[given.number(0)] = given.text(1); }},
      // What scripts under Wine cannot do themselves: files on the disk (no text where there is none), and
      // waiting.
      {u"call WriteFile",
       [](const A& given) {
         std::filesystem::create_directories(std::filesystem::path(given.text(0)).parent_path());
         return writeFile(given.text(0), given.text(1));
       }},
      {u"call ReadFile", [](const A& given) { return readFile(given.text(0)).value_or(u""); }},
      {u"call DeleteFolder",
       [](const A& given) {
         std::error_code ignored;
         std::filesystem::remove_all(std::filesystem::path(given.text(0)), ignored);
       }},
      {u"call Sleep", [](const A& given) { sleep(static_cast<DWORD>(given.number(0))); }},
      {u"call Reset", [] { world().reset(); }},
  };
  return new Object(u"StandIn", std::move(members), nullptr);
}

}  // namespace pluvo::stand_in
