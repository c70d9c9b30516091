#include "conditions.h"

#include "base/ascii.h"
#include "style.h"
#include "tokens.h"

namespace pluvo::formats::html {

namespace {

constexpr std::string_view kIf = "[if";
constexpr std::string_view kEnd = "<![endif]";

/// Whether an expression holds for the version of Word that this system goes by.
class Evaluation {
 public:
  explicit Evaluation(std::string_view text) : rest_(text) {}
  bool holds() {
    const bool result = any();
    return result && withoutBlanks(rest_).empty();
  }

 private:
  static constexpr int kWord = 16;
  static constexpr int kDeepest = 32;

  bool any() {
    bool result = all();
    while (takes('|')) result = all() || result;
    return result;
  }
  bool all() {
    bool result = one();
    while (takes('&')) result = one() && result;
    return result;
  }
  bool one() {
    if (++depth_ > kDeepest) return false;
    if (takes('!')) return !one();
    if (takes('(')) {
      const bool result = any();
      takes(')');
      return result;
    }
    return feature();
  }

  bool feature() {
    std::string_view name = word();
    std::string_view comparison;
    if (name == "gte" || name == "gt" || name == "lte" || name == "lt") {
      comparison = name;
      name = word();
    }
    rest_ = withoutBlanks(rest_);
    const bool hasVersion = !rest_.empty() && isDigit(rest_.front());
    int version = 0;
    for (bool isWhole = true; !rest_.empty() && (isDigit(rest_.front()) || rest_.front() == '.');) {
      isWhole = isWhole && rest_.front() != '.';
      if (isWhole && version <= kWord) version = version * 10 + rest_.front() - '0';
      rest_.remove_prefix(1);
    }
    if (base::startsWithIgnoringAsciiCase(name, "support") || base::equalsIgnoringAsciiCase(name, "true"))
      return true;
    if (!base::equalsIgnoringAsciiCase(name, "mso")) return false;
    if (!hasVersion) return true;
    if (comparison == "gte") return kWord >= version;
    if (comparison == "gt") return kWord > version;
    if (comparison == "lte") return kWord <= version;
    if (comparison == "lt") return kWord < version;
    return kWord == version;
  }

  std::string_view word() {
    rest_ = withoutBlanks(rest_);
    std::size_t length = 0;
    while (length < rest_.size() && isLetter(rest_[length])) ++length;
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }

  bool takes(char c) {
    rest_ = withoutBlanks(rest_);
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string_view rest_;
  int depth_ = 0;
};

/// The expression of "[if E]" that a text begins with, and where it ends.
std::optional<std::string_view> expressionOf(std::string_view text, std::size_t& end) {
  if (!base::equalsIgnoringAsciiCase(text.substr(0, kIf.size()), kIf)) return std::nullopt;
  const std::size_t close = text.find(']');
  if (close == text.npos) return std::nullopt;
  end = close + 1;
  return text.substr(kIf.size(), close - kIf.size());
}

}  // namespace

Condition conditionOfComment(std::string_view inside) {
  std::size_t end = 0;
  const auto expression = expressionOf(inside, end);
  if (!expression) {
    const std::string_view text = withoutBlanks(inside);
    const bool isEnd =
        base::equalsIgnoringAsciiCase(text, "[endif]") || base::equalsIgnoringAsciiCase(text, kEnd);
    return {isEnd ? Condition::Kind::end : Condition::Kind::none};
  }
  const bool holds = Evaluation(*expression).holds();
  const std::string_view rest = inside.substr(end);
  if (rest.empty() || rest == "><!") return {Condition::Kind::revealed, holds};
  if (rest.front() != '>' || inside.size() < kEnd.size() + end + 1) return {};
  const std::size_t contentTo = inside.size() - kEnd.size();
  if (!base::equalsIgnoringAsciiCase(inside.substr(contentTo), kEnd)) return {};
  return {Condition::Kind::hidden, holds, end + 1, contentTo};
}

Condition conditionOfDeclaration(std::string_view inside) {
  std::size_t end = 0;
  if (base::equalsIgnoringAsciiCase(withoutBlanks(inside), "[endif]")) return {Condition::Kind::end};
  const auto expression = expressionOf(inside, end);
  if (!expression || end != inside.size()) return {};
  return {Condition::Kind::revealed, Evaluation(*expression).holds()};
}

}  // namespace pluvo::formats::html
