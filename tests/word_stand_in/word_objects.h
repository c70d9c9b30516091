#pragma once

#include "automation.h"
#include "open_document.h"
#include "world.h"

#include <memory>

/// Word's objects, so far as they are used, under Word's names. Members are declared as Word's type library
/// declares them.
namespace pluvo::stand_in {

class WordObject : public Object {
 public:
  explicit WordObject(const Interface& kind) : Object(kind, &World::instance().calls) {}
  static World& world() { return World::instance(); }
};

/// One at a time, which is in the running object table while it lives.
class ApplicationObject : public WordObject {
 public:
  static Held<ApplicationObject> instance();
  static const Interface& members();

 protected:
  ~ApplicationObject() override;
  bool has(std::u16string_view member) const override;

 private:
  template <class T, class... Parameters>
  friend Held<T> make(Parameters&&... parameters);
  ApplicationObject() : WordObject(members()) {}

  DWORD registration_ = 0;
};

class DocumentObject : public WordObject {
 public:
  explicit DocumentObject(std::shared_ptr<OpenDocument> document)
      : WordObject(members()), document_(std::move(document)) {}
  static const Interface& members();

  const std::shared_ptr<OpenDocument>& document() const { return document_; }
  /// Error 5825 once it is closed.
  OpenDocument& open() const {
    document_->model();
    return *document_;
  }

 private:
  std::shared_ptr<OpenDocument> document_;
};

/// What a document has that needs no state of its own beside the document: its window, view, stories.
class PartObject : public WordObject {
 public:
  PartObject(const Interface& kind, std::shared_ptr<OpenDocument> document)
      : WordObject(kind), document_(std::move(document)) {}
  static const Interface& window();
  static const Interface& view();
  static const Interface& stories();

  const std::shared_ptr<OpenDocument>& document() const { return document_; }
  OpenDocument& open() const {
    document_->model();
    return *document_;
  }

 protected:
  bool has(std::u16string_view member) const override;

 private:
  std::shared_ptr<OpenDocument> document_;
};

/// What needs no state beside the application's: its documents, options, undo record.
class GlobalObject : public WordObject {
 public:
  using WordObject::WordObject;
  static const Interface& documents();
  static const Interface& options();
  static const Interface& undoRecord();
};

/// A range or the selection.
class TextObject : public WordObject {
 public:
  static Held<TextObject> range(const std::shared_ptr<OpenDocument>& document, text::Span span);
  static Held<TextObject> selection(const std::shared_ptr<OpenDocument>& document);

  TextObject(const Interface& kind, std::shared_ptr<OpenDocument> document, std::unique_ptr<Place> own)
      : WordObject(kind), document_(std::move(document)), own_(std::move(own)) {}

  bool isSelection() const { return own_ == nullptr; }
  const std::shared_ptr<OpenDocument>& document() const { return document_; }
  OpenDocument& open() const {
    document_->model();
    return *document_;
  }
  Place& place() const { return own_ ? *own_ : open().selection(); }
  text::Span span() const { return place().span(); }
  FindSettings& find() { return own_ ? find_ : world().dialogFind; }

  /// The span that the selection's text and counts speak of: an insertion point's is the character behind it.
  text::Span spoken() const;
  std::int32_t count(std::int32_t unit);

 private:
  static std::vector<Member> common();
  static const Interface& rangeMembers();
  static const Interface& selectionMembers();

  std::shared_ptr<OpenDocument> document_;
  std::unique_ptr<Place> own_;  ///< none for the selection, which is the document's
  FindSettings find_ = world().dialogFind;
};

/// The units of a range, so far as they are counted.
class UnitsObject : public WordObject {
 public:
  UnitsObject(Held<TextObject> owner, std::int32_t unit)
      : WordObject(kind(unit)), owner_(std::move(owner)), unit_(unit) {}
  TextObject& owner() const { return *owner_.get(); }
  std::int32_t unit() const { return unit_; }

 private:
  static const Interface& kind(std::int32_t unit);

  Held<TextObject> owner_;
  std::int32_t unit_;
};

class FindObject : public WordObject {
 public:
  explicit FindObject(Held<TextObject> owner) : WordObject(members()), owner_(std::move(owner)) {}
  static const Interface& members();
  TextObject& owner() const { return *owner_.get(); }
  FindSettings& settings() const { return owner_->find(); }
  bool execute();

 private:
  Held<TextObject> owner_;
};

/// The class under which Word is known, and the one that scripts its stand-in.
// {000209FF-0000-0000-C000-000000000046}
inline constexpr GUID kWordClass = {0x000209FF, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
// {5B0E4A0C-6D0B-4C0E-9B59-2F8C6A7D3E11}
inline constexpr GUID kControlClass = {
    0x5B0E4A0C, 0x6D0B, 0x4C0E, {0x9B, 0x59, 0x2F, 0x8C, 0x6A, 0x7D, 0x3E, 0x11}};

/// What scripts use to set the stand-in up and to look at what was done: ProgID PLUVO.StandIn.
class ControlObject : public Object {
 public:
  ControlObject() : Object(members(), nullptr) {}
  static const Interface& members();
};

}  // namespace pluvo::stand_in
