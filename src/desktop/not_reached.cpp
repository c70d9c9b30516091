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
  // Plain text, which alone has an encoding, has nothing elsewhere: no work is shown for it.
  if (!document.file().stored().encoding().empty()) {
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
      [this, found, name, then = std::move(then)](std::exception_ptr thrown) {
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
  return where + base::utf16(elsewhere::inWords(found)) +
         u". Requests work in main text alone; see to the rest in a word processor.";
}

}  // namespace pluvo::desktop
