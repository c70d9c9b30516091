#pragma once

#include <oaidl.h>
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Objects that are driven by name (IDispatch), described by tables of their members.
namespace pluvo::stand_in {

/// A counted reference.
template <class T>
class Held {
 public:
  Held() = default;
  Held(T* object) : object_(object) {  // NOLINT(google-explicit-constructor): as a plain pointer
    if (object_ != nullptr) object_->AddRef();
  }
  Held(const Held& other) : Held(other.object_) {}
  Held(Held&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Held& operator=(Held other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Held() {
    if (object_ != nullptr) object_->Release();
  }
  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T* release() { return std::exchange(object_, nullptr); }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  T* object_ = nullptr;
};

/// Makes an object whose first reference the caller holds.
template <class T, class... Parameters>
Held<T> make(Parameters&&... parameters) {
  return Held<T>(new T(std::forward<Parameters>(parameters)...));
}

/// A call that Word refuses: reaches the caller as an exception with the code 0x800A0000 + number.
struct WordError {
  std::int32_t number;
  std::u16string text;
};

/// A call that fails with a bare status. The argument is its place in the caller's array.
struct Failure {
  HRESULT status;
  UINT argument = 0;
};

/// What a member returns; owns what it holds.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  Value(std::int32_t number);                                   // NOLINT(google-explicit-constructor)
  Value(bool flag);                                             // NOLINT(google-explicit-constructor)
  Value(const std::u16string& text);                            // NOLINT(google-explicit-constructor)
  Value(const char16_t* text) : Value(std::u16string(text)) {}  // NOLINT(google-explicit-constructor)
  template <class T>
  Value(Held<T> object) : Value() {  // NOLINT(google-explicit-constructor)
    variant_.vt = VT_DISPATCH;
    variant_.pdispVal = object.release();
  }
  Value(Value&& other) noexcept : variant_(other.release()) {}
  Value& operator=(Value&&) = delete;
  ~Value() { VariantClear(&variant_); }

  const VARIANT& variant() const { return variant_; }
  VARIANT release() {
    const VARIANT released = variant_;
    VariantInit(&variant_);
    return released;
  }

 private:
  VARIANT variant_;
};

enum class Verb { get, put, call };
/// Either is a number or a text.
enum class Type { number, flag, text, either };

/// A declared parameter. One of a type of its own takes whatever automation can change into that type. One
/// declared VARIANT is looked at by Word itself and must hold the type that is asked for.
struct Parameter {
  std::u16string_view name;
  Type type;
  bool variant = false;
  bool optional = false;
};

constexpr Parameter number(std::u16string_view name) { return {name, Type::number}; }
constexpr Parameter flag(std::u16string_view name) { return {name, Type::flag}; }
constexpr Parameter text(std::u16string_view name) { return {name, Type::text}; }
constexpr Parameter variant(std::u16string_view name, Type type) { return {name, type, true, false}; }
constexpr Parameter optional(std::u16string_view name, Type type) { return {name, type, true, true}; }

/// The arguments of one call, checked and changed into what was declared.
class Arguments {
 public:
  struct Argument {
    bool given = false;
    bool isText = false;
    std::int32_t number = 0;
    std::u16string text;
  };

  explicit Arguments(std::vector<Argument> arguments) : arguments_(std::move(arguments)) {}
  bool given(std::size_t i) const { return arguments_[i].given; }
  std::int32_t number(std::size_t i) const { return arguments_[i].number; }
  std::int32_t number(std::size_t i, std::int32_t missing) const { return given(i) ? number(i) : missing; }
  bool flag(std::size_t i) const { return arguments_[i].number != 0; }
  const std::u16string& text(std::size_t i) const { return arguments_[i].text; }
  bool isText(std::size_t i) const { return arguments_[i].isText; }
  const std::u16string* textIfGiven(std::size_t i) const { return given(i) ? &text(i) : nullptr; }

 private:
  std::vector<Argument> arguments_;
};

class Object;

struct Member {
  Verb verb;
  std::u16string_view name;
  std::vector<Parameter> parameters;
  std::function<Value(Object&, const Arguments&)> run;
};

/// The members of one kind of object. A property is up to two members of one name.
struct Interface {
  std::u16string_view name;
  std::vector<Member> members;
  /// The member that the object stands for where none is named; may be empty.
  std::u16string_view standsFor = {};
};

template <class T>
Member member(Verb verb, std::u16string_view name, std::vector<Parameter> parameters,
              Value (*run)(T&, const Arguments&)) {
  return {verb, name, std::move(parameters), [run](Object& object, const Arguments& arguments) {
            return run(static_cast<T&>(object), arguments);
          }};
}

/// Sees every call: may refuse it by an exception, and hears what came of it.
class Observer {
 public:
  virtual ~Observer() = default;
  virtual void born(const Interface& kind) = 0;
  virtual void gone(const Interface& kind) = 0;
  virtual void called(const Interface& kind, Verb verb, std::u16string_view member,
                      const DISPPARAMS& arguments) = 0;
  /// Exactly one of these follows.
  virtual void returned(const Value& value) = 0;
  virtual void failed(HRESULT status) = 0;
};

/// One object driven by name. Not for several threads.
class Object : public IDispatch {
 public:
  /// Both must outlive the object. Without an observer its calls are nobody's business.
  explicit Object(const Interface& kind, Observer* observer);
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 protected:
  virtual ~Object();
  /// Whether this version of the object has the member.
  virtual bool has(std::u16string_view /*member*/) const { return true; }

 private:
  const Member* memberOf(DISPID id, WORD flags) const;
  Value call(const Member& member, const DISPPARAMS& arguments);

  const Interface& kind_;
  Observer* observer_;
  ULONG references_ = 0;
};

/// A VARIANT in words: "VT_I4 5", "VT_BYREF|VT_I2 3", "VT_BSTR \"text\"", "missing".
std::u16string describe(const VARIANT& variant);

}  // namespace pluvo::stand_in
