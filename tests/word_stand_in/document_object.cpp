#include "word/enums.h"
#include "word_objects.h"

#include <algorithm>

namespace pluvo::stand_in {
namespace {

using text::Span;

Value range(DocumentObject& object, const Arguments& given) {
  OpenDocument& document = object.open();
  const text::Position start = given.number(0, 0);
  const text::Position end = given.number(1, document.length());
  document.requirePosition(start);
  document.requirePosition(end);
  return TextObject::range(object.document(), {std::min(start, end), end});
}

Value protect(DocumentObject& object, const Arguments& given) {
  OpenDocument& document = object.open();
  if (document.file.protection != word::wdNoProtection) {
    throw WordError{4605, u"This method or property is not available because the document is protected."};
  }
  if (given.number(0) < word::wdAllowOnlyRevisions || given.number(0) > word::wdAllowOnlyReading) {
    throw WordError{4608, u"Value out of range"};
  }
  document.file.protection = given.number(0);
  document.file.protectionPassword = given.text(2);
  document.saved = false;
  return {};
}

Value unprotect(DocumentObject& object, const Arguments& given) {
  OpenDocument& document = object.open();
  if (document.file.protection == word::wdNoProtection) {
    throw WordError{4605, u"This method or property is not available because the document is not protected."};
  }
  if (document.file.protectionPassword != given.text(0)) {
    throw WordError{5485, u"The password is incorrect."};
  }
  document.file.protection = word::wdNoProtection;
  document.saved = false;
  return {};
}

/// SaveChanges is one of Word's constants or a truth value, which coincide; missing, Word asks, and the user
/// cancels.
Value close(DocumentObject& object, const Arguments& given) {
  constexpr std::int32_t kSave = -1;
  constexpr std::int32_t kAsk = -2;
  OpenDocument& document = object.open();
  const std::int32_t saveChanges = given.number(0, kAsk);
  if (saveChanges < kAsk || saveChanges > 0) throw WordError{4608, u"Value out of range"};
  if (saveChanges == kAsk && !document.saved) throw WordError{4198, u"Command failed"};
  if (saveChanges == kSave && !document.saved) TextObject::world().save(document);
  TextObject::world().close(object.document());
  return {};
}

Value window(DocumentObject& object, const Arguments&) {
  object.open();
  return make<PartObject>(PartObject::window(), object.document());
}

}  // namespace

const Interface& DocumentObject::members() {
  static const Interface kind{
      u"Document",
      {
          member<DocumentObject>(Verb::call, u"Range",
                                 {optional(u"Start", Type::number), optional(u"End", Type::number)}, range),
          member<DocumentObject>(Verb::get, u"Content", {},
                                 [](auto& o, const auto&) -> Value {
                                   return TextObject::range(o.document(), Span{0, o.open().length()});
                                 }),
          member<DocumentObject>(Verb::get, u"Name", {},
                                 [](auto& o, const auto&) -> Value { return o.open().name(); }),
          member<DocumentObject>(Verb::get, u"Path", {},
                                 [](auto& o, const auto&) -> Value { return o.open().folder(); }),
          member<DocumentObject>(Verb::get, u"FullName", {},
                                 [](auto& o, const auto&) -> Value { return o.open().path; }),
          member<DocumentObject>(Verb::get, u"ReadOnly", {},
                                 [](auto& o, const auto&) -> Value { return o.open().readOnly; }),
          member<DocumentObject>(Verb::put, u"WritePassword", {text(u"Value")},
                                 [](auto& o, const auto& a) -> Value {
                                   o.open().file.writePassword = a.text(0);
                                   o.open().saved = false;
                                   return {};
                                 }),
          member<DocumentObject>(Verb::get, u"ProtectionType", {},
                                 [](auto& o, const auto&) -> Value { return o.open().file.protection; }),
          member<DocumentObject>(
              Verb::call, u"Protect",
              {number(u"Type"), optional(u"NoReset", Type::flag), optional(u"Password", Type::text),
               optional(u"UseIRM", Type::flag), optional(u"EnforceStyleLock", Type::flag)},
              protect),
          member<DocumentObject>(Verb::call, u"Unprotect", {optional(u"Password", Type::text)}, unprotect),
          member<DocumentObject>(Verb::get, u"StoryRanges", {},
                                 [](auto& o, const auto&) -> Value {
                                   return make<PartObject>(PartObject::stories(), o.document());
                                 }),
          member<DocumentObject>(Verb::get, u"Saved", {},
                                 [](auto& o, const auto&) -> Value { return o.open().saved; }),
          member<DocumentObject>(Verb::put, u"Saved", {flag(u"Value")},
                                 [](auto& o, const auto& a) -> Value {
                                   o.open().saved = a.flag(0);
                                   return {};
                                 }),
          member<DocumentObject>(Verb::call, u"Save", {},
                                 [](auto& o, const auto&) -> Value {
                                   TextObject::world().save(o.open());
                                   return {};
                                 }),
          member<DocumentObject>(
              Verb::call, u"Close",
              {optional(u"SaveChanges", Type::number), optional(u"OriginalFormat", Type::number),
               optional(u"RouteDocument", Type::flag)},
              close),
          member<DocumentObject>(Verb::call, u"Activate", {},
                                 [](auto& o, const auto&) -> Value {
                                   TextObject::world().activate(o.document());
                                   return {};
                                 }),
          member<DocumentObject>(Verb::get, u"ActiveWindow", {}, window),
          member<DocumentObject>(Verb::get, u"Application", {},
                                 [](auto&, const auto&) -> Value { return ApplicationObject::instance(); }),
      },
      u"Name"};
  return kind;
}

bool PartObject::has(std::u16string_view name) const {
  // Windows tell their handle since Word 2013.
  constexpr std::int32_t kWord2013 = 15;
  return name != u"Hwnd" || world().majorVersion() >= kWord2013;
}

const Interface& PartObject::window() {
  static const Interface kind{
      u"Window",
      {
          member<PartObject>(
              Verb::get, u"View", {},
              [](auto& o, const auto&) -> Value { return make<PartObject>(view(), o.document()); }),
          member<PartObject>(Verb::get, u"Caption", {},
                             [](auto& o, const auto&) -> Value { return o.open().name(); }),
          member<PartObject>(Verb::get, u"Hwnd", {},
                             [](auto&, const auto&) -> Value {
                               return static_cast<std::int32_t>(
                                   reinterpret_cast<std::intptr_t>(TextObject::world().window()));
                             }),
          member<PartObject>(
              Verb::get, u"Document", {},
              [](auto& o, const auto&) -> Value { return make<DocumentObject>(o.document()); }),
          member<PartObject>(Verb::get, u"Application", {},
                             [](auto&, const auto&) -> Value { return ApplicationObject::instance(); }),
          member<PartObject>(Verb::call, u"Activate", {},
                             [](auto& o, const auto&) -> Value {
                               TextObject::world().activate(o.document());
                               return {};
                             }),
      },
      u"Caption"};
  return kind;
}

const Interface& PartObject::view() {
  static const Interface kind{
      u"View",
      {
          member<PartObject>(
              Verb::get, u"ShowFieldCodes", {},
              [](auto& o, const auto&) -> Value { return o.open().view == text::View::codes; }),
          member<PartObject>(Verb::put, u"ShowFieldCodes", {flag(u"Value")},
                             [](auto& o, const auto& a) -> Value {
                               o.open().view = a.flag(0) ? text::View::codes : text::View::results;
                               return {};
                             }),
      }};
  return kind;
}

const Interface& PartObject::stories() {
  static const Interface kind{
      u"StoryRanges",
      {
          member<PartObject>(Verb::get, u"Count", {}, [](auto&, const auto&) -> Value { return 1; }),
          member<PartObject>(
              Verb::call, u"Item", {number(u"Index")},
              [](auto& o, const auto& a) -> Value {
                if (a.number(0) != word::wdMainTextStory) {
                  throw WordError{5941, u"The requested member of the collection does not exist."};
                }
                return TextObject::range(o.document(), Span{0, o.open().length()});
              }),
      },
      u"Item"};
  return kind;
}

}  // namespace pluvo::stand_in
