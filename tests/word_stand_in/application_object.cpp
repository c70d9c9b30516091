#include "objects.h"
#include "word/enums.h"
#include "word/faults.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::stand_in {
namespace {

/// A property that is on or off.
std::vector<Member> flag(const std::u16string& name, bool& value) {
  return {{u"get " + name, [&value] { return value; }},
          {u"put " + name, [&value](const Arguments& given) { value = given.flag(0); }}};
}

Handle documents() {
  return object(u"Documents",
                {
                    {u"get Count", [] { return static_cast<std::int32_t>(world().documents.size()); }},
                    {u"call Item",
                     [](const Arguments& given) {
                       const auto index = static_cast<std::size_t>(given.number(0)) - 1;
                       if (index >= world().documents.size()) throw refusal(word::kMemberMissing);
                       return documentObject(world().documents[index]);
                     }},
                    {u"call Open",
                     [](const Arguments& given) {
                       constexpr UINT kAddToRecentFiles = 3;
                       const Document opened = world().open(given.text(0));
                       if (given.flag(kAddToRecentFiles, true)) world().recentFiles.push_back(opened->name());
                       return documentObject(opened);
                     }},
                });
}

Handle options() {
  auto members = flag(u"SmartCutPaste", world().smartCutPaste);
  members.emplace_back(u"get DefaultFilePath", [](const Arguments& given) {
    const auto set = world().defaultPaths.find(given.number(0));
    return set == world().defaultPaths.end() ? u"C:\\Templates" : set->second;
  });
  return object(u"Options", std::move(members));
}

Handle undoRecord() {
  std::vector<Member> members = {
      {u"get IsRecordingCustomRecord", [] { return world().undoLevel > 0; }},
      {u"call StartCustomRecord",
       [](const Arguments& given) {
         if (world().undoLevel++ == 0) world().undoRecord = given.text(0);
       }},
      // Without a record there is nothing to end, and Word says nothing.
      {u"call EndCustomRecord",
       [] {
         if (world().undoLevel == 0 || --world().undoLevel > 0) return;
         if (!world().documents.empty()) world().active()->undoRecords.push_back(world().undoRecord);
       }},
  };
  return object(u"UndoRecord", std::move(members));
}

Handle stories(const Document& document) {
  const auto item = [document](const Arguments& given) {
    if (given.number(0) != word::wdMainTextStory) throw refusal(word::kMemberMissing);
    return rangeObject(document, {0, document->length()});
  };
  return object(u"StoryRanges", {{u"call Item", item}});
}

IDispatch* running = nullptr;

/// Held weakly, so that being in the table keeps nothing alive.
class InTable {
 public:
  explicit InTable(IDispatch* application) {
    running = application;
    if (ways().entersTable) RegisterActiveObject(application, kWordClass, ACTIVEOBJECT_WEAK, &registration_);
  }
  InTable(const InTable&) = delete;
  InTable& operator=(const InTable&) = delete;
  ~InTable() {
    if (registration_ != 0) RevokeActiveObject(registration_, nullptr);
    running = nullptr;
  }

 private:
  DWORD registration_ = 0;
};

}  // namespace

Handle application() {
  if (running != nullptr) return running;
  // Goes with the object, whose members hold it.
  const auto entry = std::make_shared<std::unique_ptr<InTable>>();
  std::vector<Member> members = {
      {u"get ActiveDocument", [] { return documentObject(world().active()); }},
      {u"get Selection", [] { return selectionObject(world().active()); }},
      {u"get Documents", documents},
      {u"get Options", options},
      {u"get UndoRecord", undoRecord},
      {u"get Version", [] { return std::u16string(u"0.0"); }},
      {u"get AutomationSecurity", [] { return world().automationSecurity; }},
      {u"put AutomationSecurity",
       [](const Arguments& given) { world().automationSecurity = given.number(0); }},
      {u"get ActiveWindow", [] { return windowObject(world().active()); }},
      {u"get ProtectedViewWindows",
       [] {
         return object(u"ProtectedViewWindows", {{u"get Count", [] { return ways().protectedViews; }}});
       }},
      {u"get PathSeparator", [entry] { return std::u16string(u"\\"); }},
      {u"put Visible",
       [](const Arguments& given) { ShowWindow(world().window(), given.flag(0) ? SW_SHOW : SW_HIDE); }},
  };
  for (const Member& member : flag(u"ScreenUpdating", world().screenUpdating)) members.push_back(member);
  const Handle made = object(u"Application", std::move(members));
  *entry = std::make_unique<InTable>(made.Get());
  return made;
}

Handle documentObject(const Document& document) {
  // Error 5825 once it is closed.
  const auto open = [document]() -> OpenDocument& { return document->mainText(), *document; };
  std::vector<Member> members = {
      {u"call Range",
       [=](const Arguments& given) {
         const text::Position start = given.number(0, 0);
         const text::Position end = given.number(1, open().length());
         open().requirePosition(start);
         open().requirePosition(end);
         return rangeObject(document, {std::min(start, end), end});
       }},
      {u"get Name", [=] { return open().name(); }},
      {u"get Path", [=] { return open().path.substr(0, document->path.rfind(u'\\')); }},
      {u"get ReadOnly", [=] { return open().file.readOnly; }},
      {u"put WritePassword",
       [=](const Arguments& given) {
         open().file.writePassword = given.text(0);
         document->saved = false;
       }},
      {u"get ProtectionType", [=] { return open().file.protection; }},
      {u"call Protect",
       [=](const Arguments& given) {
         if (open().file.protection != word::wdNoProtection) throw refusal(word::kNotAvailable);
         document->file.protection = given.number(0);
         if (ways().resetsForms && !given.flag(1, false)) {
           Place all(*document, {0, document->length()});
           document->file.protection = word::wdNoProtection;
           document->replace(all, document->file.blank);
           document->file.protection = given.number(0);
         }
         document->file.protectionPassword = given.text(2);
         document->saved = false;
       }},
      {u"call Unprotect",
       [=](const Arguments& given) {
         if (open().file.protection == word::wdNoProtection) throw refusal(word::kNotAvailable);
         if (document->file.protectionPassword != given.text(0))
           throw refusal(word::kProtectionPasswordWrong);
         document->file.protection = word::wdNoProtection;
         document->saved = false;
       }},
      {u"get StoryRanges", [=] { return stories(document); }},
      {u"get Saved", [=] { return open().saved; }},
      {u"put Saved", [=](const Arguments& given) { open().saved = given.flag(0); }},
      {u"get TrackRevisions", [=] { return open(), ways().keepsDeleted; }},
      {u"call Close",
       [=](const Arguments& given) {
         if (given.flag(0) && !open().saved) world().save(*document);
         world().close(document);
       }},
      {u"call Activate", [=] { world().activate(document); }},
      {u"get ActiveWindow", [=] { return windowObject(document); }},
  };
  return object(u"Document", std::move(members));
}

Handle windowObject(const Document& document) {
  document->mainText();
  const auto show = [document](const Arguments& given) {
    document->view = given.flag(0) ? text::View::codes : text::View::results;
  };
  const auto view = [=] {
    return object(u"View", {{u"put ShowFieldCodes", show},
                            {u"get ShowFieldCodes", [=] { return document->view == text::View::codes; }},
                            {u"get ReadingLayout", [] { return ways().reads; }}});
  };
  return object(u"Window", {{u"get View", view}, {u"get Application", application}});
}

}  // namespace pluvo::stand_in
