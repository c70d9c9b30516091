#include "dialog/tips.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kProduct = u"P.L.U.V.O.";

class MachineRandomSource final : public RandomSource {
 public:
  void seedFromTimer() override {
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    std::seed_seq mixed{static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
    engine_.seed(mixed);
  }
  float draw() override { return std::generate_canonical<float, 24>(engine_); }

 private:
  std::mt19937 engine_;
};

}  // namespace

std::unique_ptr<RandomSource> machineRandomSource() { return std::make_unique<MachineRandomSource>(); }

// NOLINTBEGIN(bugprone-suspicious-missing-comma): the tips are long
std::vector<std::u16string> usageTips() {
  return {
      std::u16string(u"You can copy an paste text directly into the Begins with, Ends with, and Inside Text "
                     u"boxes by simply clicking on your open document and then copying the text and then "
                     u"reselecting ") +
          kProduct + u" and pasting it directly in.",
      u"You are able to paste multiple lines of text into the 'Begins with', 'Ends with', 'Inside Text', and "
      u"'with the following' text boxes.  To place a new line(paragraph mark) press the Ctrl+Enter or "
      u"Shift+Enter button and a new line is entered.  This is great for Replacement text and inserts where "
      u"you need a new paragraph started.",
      u"If you need to mark up your document with different colors simply run the Highlight operation twice "
      u"selecting different portions of the text to highlight on.  You could select the entire selection for "
      u"red on one pass, and the inside text to yellow on a second pass to create whatever desired effect "
      u"you may need.",
      u"If you need to go farther apart than 9 of either words, sentences, or paragraphs then simply click "
      u"the (More...) option in the No farther apart than box.  You can also type directly into this box to "
      u"quickly choose your desired distance apart.",
      std::u16string(u"If you need to see the text of your document you can shrink your window by clicking "
                     u"the - in the upper left of the screen this will make the ") +
          kProduct +
          u" window smaller.  You can always select your document though even if you window is maximized.",
      u"Not only can you place multiple lines of text into the begins with, ends with, inside text & "
      u"replace/insert with text, but you can put multiple paragraphs in.  Allowing you to perform large "
      u"block text replacements on text using either full paragraphs for your finds or beginning..{Unknown "
      u"text}..ending and replace with a new standard paragraph.",
      u"From the Options Tab you can set up options that will remain permanently for future find operations "
      u"by clicking the Save Options button.",
      u"If you want to know what is new, or need a hand, visit our web page.  Go to the About Tab and click "
      u"Download your Fresh PLUVO today!  It opens in your browser.",
      u"If you notice that a particular find operation isn't working,  Send us your Word Doc and the "
      u"operation you wanted to make happen that isn't functioning, and we'll look into it and try to update "
      u"our product with the fix.",
      u"There are two different ways you can paste data into the above text boxes.  From the options screen "
      u"you can choose to insert data from your recent selection or to paste data from the clipboard.  "
      u"Inserting from your recent selection will insert text from whatever is currently selected in the "
      u"document.  Pasting from the clipboard will insert data from the clipboard buffer.  When using the "
      u"paste data from clipboard option be aware that the clipboard may have extra data that will not be "
      u"found when attempting a find.  Items such as bullets in a bulleted list will appear but will not be "
      u"found since they are not considered text when searching through Microsoft\u00AE Word\u00AE.",
  };
}
// NOLINTEND(bugprone-suspicious-missing-comma)

std::u16string usageTip(RandomSource& random) {
  const std::vector<std::u16string> tips = usageTips();
  random.seedFromTimer();
  const float place = std::floor(random.draw() * static_cast<float>(tips.size()));
  return tips[std::min(static_cast<std::size_t>(place), tips.size() - 1)];
}

}  // namespace pluvo::dialog
