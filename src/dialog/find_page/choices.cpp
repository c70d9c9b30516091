#include "choices.h"

#include "base/text.h"
#include "dialog/clsProcessFind.h"
#include "engine/request.h"
#include "errors/numbers.h"
#include "placing.h"

#include <optional>

namespace pluvo::dialog {

namespace {

using forms::ComboBox;

constexpr std::size_t kCodeColumn = 1;
constexpr std::u16string_view kMore = u"(More...)";
constexpr const char16_t* kMostUnitsApart = u"9999";
constexpr std::size_t kDigitsOfMost = 4;

/// The code a list has, and what none has where it has none.
std::int32_t codeOf(const ComboBox& list) {
  constexpr std::int32_t kNoCode = -1;
  const auto value = list.Value();
  return value ? errors::toInteger(*value) : kNoCode;
}

}  // namespace

Choices::Choices(FindPage& page, errors::Context& context, forms::MessageBoxes& boxes,
                 forms::InputBoxes& inputs)
    : page_(page), context_(context), boxes_(boxes), inputs_(inputs) {
  refuseWhatIsNotListed(page_.cboxHighlighters, u"FF:10");
  refuseWhatIsNotListed(page_.cboxProcOperation1, u"FF:13");
  refuseWhatIsNotListed(page_.cboxProcRelativePosition1, u"FF:15");
  refuseWhatIsNotListed(page_.cboxProcSelection1, u"FF:16");
  refuseWhatIsNotListed(page_.cboxUnitDistanceApart, u"FF:19");
  auto& distance = page_.cboxNumberDistanceApart;
  distance.BeforeUpdate.handledBy([this](bool& cancel) { cboxNumberDistanceApart_BeforeUpdate(cancel); });
  distance.Change.handledBy([this] { cboxNumberDistanceApart_Change(); });
  page_.cboxProcOperation1.Change.handledBy([this] { cboxProcOperation1_Change(); });
  page_.cboxProcSelection1.Change.handledBy([this] { cboxProcSelection1_Change(); });
}

void Choices::refuseWhatIsNotListed(ComboBox& list, std::u16string_view tag) {
  list.BeforeUpdate.handledBy([this, &list, tag](bool& cancel) {
    errors::guarded(context_, tag, [&] {
      if (IsValueInList(list.Name(), kCodeColumn)) return;
      refuse(u"Please Select one of the values provided.");
      cancel = true;
    });
  });
}

/// By its name, as scripts know controls.
bool Choices::IsValueInList(std::u16string_view name, std::size_t column) {
  return errors::guarded(context_, u"FF:23", [&] {
    const auto& list = page_.get<ComboBox>(name);
    const std::optional<std::u16string> value = list.Value();
    bool found = false;
    for (std::size_t row = 0; row < list.ListCount(); ++row) {
      if (value == list.List(row, column)) found = true;
    }
    return found;
  });
}

void Choices::refuse(const std::u16string& text) const {
  boxes_.show(text, forms::Buttons::ok, u"Improper Value Selection");
}

void Choices::cboxNumberDistanceApart_BeforeUpdate(bool& cancel) {
  errors::guarded(context_, u"FF:11", [&] {
    const std::u16string value = page_.cboxNumberDistanceApart.Value().value_or(std::u16string());
    if (value == kSame || errors::isNumeric(value)) return;
    refuse(u"Please Select one of the values provided or a numerical value between 1 and 9999.");
    cancel = true;
  });
}

void Choices::cboxNumberDistanceApart_Change() {
  errors::guarded(context_, u"FF:12", [&] {
    auto& distance = page_.cboxNumberDistanceApart;
    if (distance.Value() != kMore) return;
    const std::u16string answer =
        inputs_.ask(u"Please input a value between 1 and 9999.", u"Distance apart value.");
    if (!errors::isNumeric(answer)) {
      distance.Value(kSame);
    } else if (answer.size() <= kDigitsOfMost) {
      distance.Value(base::decimal(errors::toInteger(answer)));
    } else {
      distance.Value(kMostUnitsApart);
    }
  });
}

void Choices::cboxProcOperation1_Change() {
  errors::guarded(context_, u"FF:14", [&] {
    auto& colour = page_.cboxHighlighters;
    auto& position = page_.cboxProcRelativePosition1;
    colour.Visible(false);
    const std::int32_t operation = codeOf(page_.cboxProcOperation1);
    if (operation < engine::kNone || operation > engine::kHighlight) return;
    const bool inserts = operation == engine::kInsert;
    position.Value(inserts ? base::decimal(engine::kBefore) : u"");
    switchOn(position, inserts);
    switchOn(page_.txtTextToEnter, inserts || operation == engine::kReplace);
    switchOn(page_.cboxProcSelection1, operation != engine::kNone);
    colour.Visible(operation == engine::kHighlight);
  });
}

void Choices::cboxProcSelection1_Change() {
  errors::guarded(context_, u"FF:17", [&] { CheckBlockTexts(); });
}

bool Choices::CheckBlockTexts() {
  return errors::guarded(context_, u"FF:18", [&] {
    auto& place = page_.cboxProcSelection1;
    std::u16string refusal;
    switch (codeOf(place)) {
      case engine::kBeginning:
        if (page_.txtBeginText.Text().empty())
          refusal = u"You must fill in 'Begins with' text before selecting an operation on it.";
        break;
      case engine::kEnding:
        if (page_.txtEndText.Text().empty())
          refusal = u"You must fill in 'Ends with' text before selecting an operation on it.";
        break;
      case engine::kInsideText:
        if (page_.txtInsideText1.Text().empty()) {
          refusal = u"You must fill in 'Inside Text' text before selecting an operation on it.";
        } else if (page_.txtEndText.Text().empty()) {
          refusal = u"You must fill in 'Ends with' text before selecting an operation on Inside text.";
        }
        break;
      default:
        break;
    }
    if (refusal.empty()) return true;
    boxes_.show(refusal, forms::Buttons::ok, u"Pluvorama");
    place.Value(base::decimal(engine::kSelection));
    return false;
  });
}

}  // namespace pluvo::dialog
