#pragma once

#include "automation.h"
#include "world.h"

#include <string_view>
#include <utility>
#include <vector>

/// Word's objects, so far as they are used, under Word's names.
namespace pluvo::stand_in {

using Handle = ComPtr<IDispatch>;

inline World& world() { return World::instance(); }

/// One of Word's, of which the book of calls knows.
inline Handle object(std::u16string_view name, std::vector<Member> members) {
  return new Object(name, std::move(members), &world().calls);
}

/// One at a time, which is in the running object table while it lives.
Handle application();
Handle documentObject(const Document& document);
/// The window that shows a document.
Handle windowObject(const Document& document);
Handle rangeObject(const Document& document, text::Span span);
Handle selectionObject(const Document& document);

/// The class under which Word is known, and the one that scripts its stand-in.
// {000209FF-0000-0000-C000-000000000046}
inline constexpr GUID kWordClass = {0x000209FF, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
// {5B0E4A0C-6D0B-4C0E-9B59-2F8C6A7D3E11}
inline constexpr GUID kControlClass = {
    0x5B0E4A0C, 0x6D0B, 0x4C0E, {0x9B, 0x59, 0x2F, 0x8C, 0x6A, 0x7D, 0x3E, 0x11}};

/// What scripts use to set the stand-in up and to look at what was done: ProgID PLUVO.StandIn.
Handle controlObject();

}  // namespace pluvo::stand_in
