#include "not_reached.h"

#include "base/text.h"
#include "base/utf.h"
#include "elsewhere/words.h"
#include "errors/context.h"

#include <algorithm>
#include <utility>

namespace pluvo::desktop {

namespace {

std::u16string number(std::size_t value) { return base::decimal(static_cast<std::int64_t>(value)); }

std::u16string namesInWords(const std::vector<std::u16string>& names) {
  constexpr std::size_t kMostNamed = 3;
  std::u16string words;
  for (std::size_t i = 0; i < std::min(names.size(), kMostNamed); ++i)
    words += (words.empty() ? u"" : u", ") + names[i];
  if (names.size() > kMostNamed) words += u" and " + number(names.size() - kMostNamed) + u" more";
  return words;
}

}  // namespace

void NotReached::passBegins(const std::shared_ptr<memory::MemoryDocument>& document,
                            engine::Request request) {
  document_ = document;
  request_ = std::move(request);
}

void NotReached::look(const OpenDocument& document, std::function<void()> then) {
  document_.reset();
  const std::u16string name = document.shown().Name();
  // Plain text, which alone has an encoding, has nothing but main text: no work is shown for it.
  const bool worksInMainText = (request_.stories & word::kMainTextAlone) != 0;
  if (!document.file().stored().encoding().empty() && worksInMainText) {
    add(name, {});
    return then();
  }
  const auto found = std::make_shared<elsewhere::Elsewhere>();
  const formats::Source& source = document.file().stored().source();
  const document::Document& stories = document.document()->stories();
  work_.run(
      [this, found, &source, &stories] {
        *found = elsewhere::lookElsewhere(source, stories, {&request_, 1});
      },
      [this, found, name, then = std::move(then)](const std::exception_ptr& thrown) {
        try {
          if (thrown) std::rethrow_exception(thrown);
        } catch (...) {
          found->damaged.push_back({"other parts", base::utf8(errors::faultInFlight().description)});
        }
        add(name, *found);
        then();
      });
}

void NotReached::add(std::u16string name, const elsewhere::Elsewhere& found) {
  ++documents_;
  if (!needsCare(found)) return;
  found_ += found;
  names_.push_back(std::move(name));
}

std::u16string NotReached::takeWords() {
  const std::size_t documents = std::exchange(documents_, 0);
  const auto found = std::exchange(found_, {});
  const auto names = std::exchange(names_, {});
  if (names.empty()) return {};
  const std::u16string where = documents == 1
                                   ? names.front() + u": not reached: "
                                   : u"Not reached in " + number(names.size()) + u" of " + number(documents) +
                                         u" documents (" + namesInWords(names) + u"): ";
  const bool isAll = occurrencesIn(found) == 0 && found.damaged.empty();
  std::u16string advice = u" See to it in a word processor.";
  if (blocksIn(found) > 0) {
    advice = u" The list of places beside the document says where a run works";
    advice += isAll ? u"." : u"; see to the rest in a word processor.";
  }
  return where + base::utf16(elsewhere::inWords(found)) + u"." + advice;
}

}  // namespace pluvo::desktop
