#include "word/enums.h"
#include "word_objects.h"

#include <utility>

namespace pluvo::stand_in {
namespace {

WordError missingMember() { return {5941, u"The requested member of the collection does not exist."}; }

Value document(GlobalObject&, const Arguments& given) {
  auto& open = TextObject::world().documents;
  if (!given.isText(0)) {
    if (given.number(0) < 1 || given.number(0) > static_cast<std::int32_t>(open.size()))
      throw missingMember();
    return make<DocumentObject>(open[static_cast<std::size_t>(given.number(0)) - 1]);
  }
  for (const auto& each : open) {
    if (each->name() == given.text(0) || each->path == given.text(0)) return make<DocumentObject>(each);
  }
  throw missingMember();
}

Value openDocument(GlobalObject&, const Arguments& given) {
  if (given.text(0).empty()) throw WordError{5152, u"This is not a valid file name."};
  const bool readOnly = given.given(2) && given.flag(2);
  const bool revert = given.given(6) && given.flag(6);
  auto opened =
      TextObject::world().open(given.text(0), given.textIfGiven(4), given.textIfGiven(7), readOnly, revert);
  opened->windowVisible = !given.given(11) || given.flag(11);
  return make<DocumentObject>(std::move(opened));
}

std::vector<Parameter> openParameters() {
  return {variant(u"FileName", Type::text),
          optional(u"ConfirmConversions", Type::flag),
          optional(u"ReadOnly", Type::flag),
          optional(u"AddToRecentFiles", Type::flag),
          optional(u"PasswordDocument", Type::text),
          optional(u"PasswordTemplate", Type::text),
          optional(u"Revert", Type::flag),
          optional(u"WritePasswordDocument", Type::text),
          optional(u"WritePasswordTemplate", Type::text),
          optional(u"Format", Type::number),
          optional(u"Encoding", Type::number),
          optional(u"Visible", Type::flag),
          optional(u"OpenAndRepair", Type::flag),
          optional(u"DocumentDirection", Type::number),
          optional(u"NoEncodingDialog", Type::flag),
          optional(u"XMLTransform", Type::text)};
}

std::u16string defaultPath(std::int32_t kind) {
  const auto& set = TextObject::world().defaultPaths;
  const auto found = set.find(kind);
  if (found != set.end()) return found->second;
  if (kind < 0) throw WordError{4608, u"Value out of range"};
  return kind == word::wdUserTemplatesPath ? u"C:\\Templates" : u"C:\\Documents";
}

Value startRecord(GlobalObject&, const Arguments& given) {
  World& world = TextObject::world();
  if (world.undoLevel++ == 0) world.undoRecord = given.text(0);
  return {};
}

/// Without a record there is nothing to end, and Word says nothing.
Value endRecord(GlobalObject&, const Arguments&) {
  World& world = TextObject::world();
  if (world.undoLevel == 0 || --world.undoLevel > 0) return {};
  if (!world.documents.empty()) world.active()->undoRecords.push_back(world.undoRecord);
  world.undoRecord.clear();
  return {};
}

ApplicationObject* running = nullptr;

}  // namespace

Held<ApplicationObject> ApplicationObject::instance() {
  if (running != nullptr) return Held<ApplicationObject>(running);
  auto made = make<ApplicationObject>();
  running = made.get();
  // Held weakly, so that being in the table keeps nothing alive.
  RegisterActiveObject(made.get(), kWordClass, ACTIVEOBJECT_WEAK, &made->registration_);
  return made;
}

ApplicationObject::~ApplicationObject() {
  if (registration_ != 0) RevokeActiveObject(registration_, nullptr);
  running = nullptr;
}

bool ApplicationObject::has(std::u16string_view name) const {
  // Custom undo records are Word 2010's.
  constexpr std::int32_t kWord2010 = 14;
  return name != u"UndoRecord" || world().majorVersion() >= kWord2010;
}

const Interface& ApplicationObject::members() {
  using A = ApplicationObject;
  static const Interface kind{
      u"Application",
      {
          member<A>(Verb::get, u"Name", {}, [](auto&, const auto&) -> Value { return u"Microsoft Word"; }),
          member<A>(Verb::get, u"Version", {},
                    [](auto& o, const auto&) -> Value { return o.world().version; }),
          member<A>(Verb::get, u"Application", {}, [](auto& o, const auto&) -> Value { return Held<A>(&o); }),
          member<A>(Verb::get, u"ActiveDocument", {},
                    [](auto& o, const auto&) -> Value { return make<DocumentObject>(o.world().active()); }),
          member<A>(Verb::get, u"ActiveWindow", {},
                    [](auto& o, const auto&) -> Value {
                      return make<PartObject>(PartObject::window(), o.world().active());
                    }),
          member<A>(Verb::get, u"Selection", {},
                    [](auto& o, const auto&) -> Value { return TextObject::selection(o.world().active()); }),
          member<A>(
              Verb::get, u"Documents", {},
              [](auto&, const auto&) -> Value { return make<GlobalObject>(GlobalObject::documents()); }),
          member<A>(Verb::get, u"Options", {},
                    [](auto&, const auto&) -> Value { return make<GlobalObject>(GlobalObject::options()); }),
          member<A>(
              Verb::get, u"UndoRecord", {},
              [](auto&, const auto&) -> Value { return make<GlobalObject>(GlobalObject::undoRecord()); }),
          member<A>(Verb::get, u"PathSeparator", {}, [](auto&, const auto&) -> Value { return u"\\"; }),
          member<A>(Verb::get, u"ScreenUpdating", {},
                    [](auto& o, const auto&) -> Value { return o.world().screenUpdating; }),
          member<A>(Verb::put, u"ScreenUpdating", {flag(u"Value")},
                    [](auto& o, const auto& a) -> Value {
                      o.world().screenUpdating = a.flag(0);
                      return {};
                    }),
          member<A>(Verb::get, u"Visible", {},
                    [](auto& o, const auto&) -> Value { return o.world().visible; }),
          member<A>(Verb::put, u"Visible", {flag(u"Value")},
                    [](auto& o, const auto& a) -> Value {
                      o.world().visible = a.flag(0);
                      ShowWindow(o.world().window(), a.flag(0) ? SW_SHOW : SW_HIDE);
                      return {};
                    }),
          member<A>(Verb::call, u"Activate", {},
                    [](auto& o, const auto&) -> Value {
                      SetForegroundWindow(o.world().window());
                      return {};
                    }),
      },
      u"Name"};
  return kind;
}

const Interface& GlobalObject::documents() {
  using G = GlobalObject;
  static const Interface kind{
      u"Documents",
      {
          member<G>(Verb::get, u"Count", {},
                    [](auto& o, const auto&) -> Value {
                      return static_cast<std::int32_t>(o.world().documents.size());
                    }),
          member<G>(Verb::call, u"Item", {variant(u"Index", Type::either)}, document),
          member<G>(Verb::call, u"Open", openParameters(), openDocument),
          member<G>(Verb::call, u"Add", {},
                    [](auto& o, const auto&) -> Value {
                      return make<DocumentObject>(o.world().add(u"Document1", StoredFile{}));
                    }),
      },
      u"Item"};
  return kind;
}

const Interface& GlobalObject::options() {
  using G = GlobalObject;
  static const Interface kind{
      u"Options",
      {
          member<G>(Verb::get, u"DefaultFilePath", {number(u"Path")},
                    [](auto&, const auto& a) -> Value { return defaultPath(a.number(0)); }),
          member<G>(Verb::put, u"DefaultFilePath", {number(u"Path"), text(u"Value")},
                    [](auto& o, const auto& a) -> Value {
                      o.world().defaultPaths[a.number(0)] = a.text(1);
                      return {};
                    }),
          member<G>(Verb::get, u"SmartCutPaste", {},
                    [](auto& o, const auto&) -> Value { return o.world().smartCutPaste; }),
          member<G>(Verb::put, u"SmartCutPaste", {flag(u"Value")},
                    [](auto& o, const auto& a) -> Value {
                      o.world().smartCutPaste = a.flag(0);
                      return {};
                    }),
      }};
  return kind;
}

const Interface& GlobalObject::undoRecord() {
  using G = GlobalObject;
  static const Interface kind{
      u"UndoRecord",
      {
          member<G>(Verb::call, u"StartCustomRecord", {{u"Name", Type::text, false, true}}, startRecord),
          member<G>(Verb::call, u"EndCustomRecord", {}, endRecord),
          member<G>(Verb::get, u"IsRecordingCustomRecord", {},
                    [](auto& o, const auto&) -> Value { return o.world().undoLevel > 0; }),
          member<G>(Verb::get, u"CustomRecordName", {},
                    [](auto& o, const auto&) -> Value { return o.world().undoRecord; }),
          member<G>(Verb::get, u"CustomRecordLevel", {},
                    [](auto& o, const auto&) -> Value { return o.world().undoLevel; }),
      }};
  return kind;
}

}  // namespace pluvo::stand_in
