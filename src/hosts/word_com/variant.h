#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::word_com {

/// A VARIANT, owning its value.
class Variant {
 public:
  Variant() noexcept { VariantInit(&value_); }
  Variant(Variant&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  Variant& operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  /// An argument left out: VT_ERROR holding DISP_E_PARAMNOTFOUND.
  static Variant missing();
  static Variant integer(std::int32_t value);
  /// VT_BYREF|VT_I2, which stays the caller's.
  static Variant reference(std::int16_t* value);
  /// 16-bit: true is -1.
  static Variant boolean(bool value);
  /// May hold any character, zeros too.
  static Variant text(const std::u16string& value);

  // The result of a call. Throw Fault kTypeMismatch where it is something else and cannot be changed into it.
  std::int32_t toInteger() const;
  bool toBoolean() const;
  /// No text at all is an empty one.
  std::u16string toText() const;
  /// Null where there is no object.
  Microsoft::WRL::ComPtr<IDispatch> toObject() const;

  /// For a callee to fill; empty until then.
  VARIANT* out();
  const VARIANT& get() const { return value_; }

 private:
  VARIANT value_;
};

/// The arguments of a call, in the order in which Word declares its parameters.
class Arguments {
 public:
  Arguments() = default;
  Arguments&& integer(std::int32_t value) && { return std::move(*this).add(Variant::integer(value)); }
  Arguments&& reference(std::int16_t* value) && { return std::move(*this).add(Variant::reference(value)); }
  Arguments&& boolean(bool value) && { return std::move(*this).add(Variant::boolean(value)); }
  Arguments&& text(const std::u16string& value) && { return std::move(*this).add(Variant::text(value)); }
  Arguments&& missing(int count = 1) &&;

  /// In the order in which IDispatch takes them: the last first. They stay owned here.
  std::vector<VARIANT> reversed() const;

 private:
  Arguments&& add(Variant argument) && {
    values_.push_back(std::move(argument));
    return std::move(*this);
  }

  std::vector<Variant> values_;
};

}  // namespace pluvo::word_com
