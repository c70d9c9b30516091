#include "call_book.h"

#include <array>
#include <utility>

namespace pluvo::stand_in {
namespace {

constexpr std::array<std::u16string_view, 3> kVerbs = {u"get", u"put", u"call"};

std::u16string hexadecimal(HRESULT status) {
  std::u16string digits;
  for (int shift = 28; shift >= 0; shift -= 4) {
    digits += u"0123456789ABCDEF"[(static_cast<unsigned>(status) >> shift) & 15U];
  }
  return digits;
}

}  // namespace

void CallBook::refuse(std::u16string member, std::int32_t code, std::int32_t nth, std::int32_t times) {
  refusals_.push_back({std::move(member), code, nth - 1, times});
}

std::int32_t CallBook::alive(std::u16string_view kind) const {
  std::int32_t count = 0;
  for (const auto& [name, living] : alive_) {
    if (kind.empty() || name == kind) count += living;
  }
  return count;
}

void CallBook::called(const Interface& kind, Verb verb, std::u16string_view member,
                      const DISPPARAMS& arguments) {
  ++calls_;
  const std::u16string name = std::u16string(kind.name) + u"." + std::u16string(member);
  const std::u16string_view verbName = kVerbs[static_cast<std::size_t>(verb)];
  if (writing_) {
    std::u16string line = std::u16string(verbName) + u" " + name + u"(";
    for (UINT i = arguments.cArgs; i-- > 0;) {
      line += describe(arguments.rgvarg[i]);
      if (i > 0) line += u", ";
    }
    lines_.push_back(line + u")");
  }
  refuseIfAsked(verbName, name);
}

void CallBook::refuseIfAsked(std::u16string_view verb, const std::u16string& member) {
  for (std::size_t i = 0; i < refusals_.size(); ++i) {
    Refusal& refusal = refusals_[i];
    if (refusal.member != member && refusal.member != std::u16string(verb) + u" " + member) continue;
    if (refusal.before-- > 0) continue;
    const std::int32_t code = refusal.code;
    if (refusal.times > 0 && --refusal.times == 0) {
      refusals_.erase(refusals_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    if (code > 0 && code <= 0xFFFF) throw WordError{code, u"Refused as asked: " + member};
    throw Failure{code};
  }
}

void CallBook::returned(const Value& value) {
  if (writing_ && !lines_.empty()) lines_.back() += u" -> " + describe(value.variant());
}

void CallBook::failed(HRESULT status) {
  if (writing_ && !lines_.empty()) lines_.back() += u" !" + hexadecimal(status);
}

}  // namespace pluvo::stand_in
