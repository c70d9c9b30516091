#include "record.h"

#include "files/saving.h"

#include <array>
#include <charconv>
#include <set>
#include <utility>

namespace pluvo::journal {

namespace {

constexpr std::string_view kCommand = "command";
constexpr std::string_view kKept = "kept";
constexpr std::string_view kNotKept = "not-kept";
constexpr std::string_view kTakenBack = "taken-back";
constexpr std::string_view kBegun = "begun";
constexpr std::string_view kEnded = "ended";
constexpr std::string_view kListed = "listed";
constexpr std::string_view kIntended = "intended";
constexpr std::string_view kResult = "result";
constexpr std::string_view kOthers = "others";

bool plain(char c) { return c > ' ' && c < 0x7F && c != '%'; }

std::string escaped(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string out;
  for (const char c : bytes) {
    if (plain(c)) {
      out += c;
    } else {
      const auto value = static_cast<unsigned char>(c);
      out += {'%', kDigits[value >> 4], kDigits[value & 15U]};
    }
  }
  return out;
}

template <class Number>
bool parse(std::string_view word, Number& value, int base = 10) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, base);
  return error == std::errc() && end == word.data() + word.size();
}

std::optional<std::string> unescaped(std::string_view word) {
  std::string out;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] != '%') {
      out += word[i];
      continue;
    }
    unsigned value = 0;
    if (word.size() - i < 3 || !parse(word.substr(i + 1, 2), value, 16)) return std::nullopt;
    out += static_cast<char>(value);
    i += 2;
  }
  return out;
}

std::vector<std::string_view> wordsOf(std::string_view line) {
  std::vector<std::string_view> words;
  while (!line.empty()) {
    const std::size_t end = std::min(line.find(' '), line.size());
    words.push_back(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return words;
}

/// Ends the lines that came later: the beginning of an incomplete one could be another document's name.
constexpr std::string_view kEnd = ".";

bool readEnded(const std::vector<std::string_view>& words, Record& record) {
  if (words.back() != kEnd) return false;
  const auto moreIn = [&](std::size_t at) {
    auto more = unescaped(words[at]);
    if (!more) return false;
    record.more = *std::move(more);
    return true;
  };
  if (words[0] == kBegun) {
    record.kind = Record::Kind::begun;
    return words.size() == 5 && parse(words[1], record.time) && parse(words[2], record.number);
  }
  if (words[0] == kEnded) {
    record.kind = Record::Kind::ended;
    return words.size() == 4 && parse(words[1], record.time);
  }
  if (words[0] == kListed || words[0] == kResult) {
    record.kind = words[0] == kListed ? Record::Kind::listed : Record::Kind::result;
    return words.size() == 4 && moreIn(1);
  }
  if (words[0] == kOthers) {
    record.kind = Record::Kind::others;
    return words.size() == 4 && parse(words[1], record.number);
  }
  files::Stamp& old = record.before.stamp;
  files::Stamp& now = record.after;
  record.kind = Record::Kind::intended;
  return words[0] == kIntended && words.size() == 11 && parse(words[1], old.size) &&
         parse(words[2], old.modifiedSeconds) && parse(words[3], old.modifiedNanoseconds) &&
         parse(words[4], now.inode) && parse(words[5], now.size) && parse(words[6], now.modifiedSeconds) &&
         parse(words[7], now.modifiedNanoseconds) && moreIn(8);
}

}  // namespace

std::string lineOf(const Record& record) {
  const auto number = [](auto value) { return std::to_string(value) + " "; };
  std::string line;
  switch (record.kind) {
    case Record::Kind::command:
      line += std::string(kCommand) + " ";
      break;
    case Record::Kind::notKept:
      line += std::string(kNotKept) + " ";
      break;
    case Record::Kind::begun:
      line += std::string(kBegun) + " " + number(record.time) + number(record.number);
      break;
    case Record::Kind::ended:
      line += std::string(kEnded) + " " + number(record.time);
      break;
    case Record::Kind::listed:
      line += std::string(kListed) + " " + escaped(record.more) + " ";
      break;
    case Record::Kind::result:
      line += std::string(kResult) + " " + escaped(record.more) + " ";
      break;
    case Record::Kind::intended: {
      const files::Stamp& old = record.before.stamp;
      const files::Stamp& now = record.after;
      line += std::string(kIntended) + " " + number(old.size) + number(old.modifiedSeconds) +
              number(old.modifiedNanoseconds) + number(now.inode) + number(now.size) +
              number(now.modifiedSeconds) + number(now.modifiedNanoseconds) + escaped(record.more) + " ";
      break;
    }
    case Record::Kind::others:
      line += std::string(kOthers) + " " + number(record.number);
      break;
    case Record::Kind::takenBack:
      line += std::string(kTakenBack) + " " + number(record.number);
      break;
    case Record::Kind::kept: {
      const files::Stamp& old = record.before.stamp;
      line += std::string(kKept) + " " + number(record.number) + number(record.before.permissions) +
              number(old.size) + number(old.modifiedSeconds) + number(old.modifiedNanoseconds);
      const files::Stamp& now = record.after;
      line += number(now.device) + number(now.inode) + number(now.size) + number(now.modifiedSeconds) +
              number(now.modifiedNanoseconds) + number(old.device) + number(old.inode) +
              number(record.before.owner) + number(record.before.group) + escaped(record.beside) + " ";
      break;
    }
  }
  line += escaped(record.text);
  if (record.kind >= Record::Kind::begun) line += " " + std::string(kEnd);
  return line + "\n";
}

std::optional<Record> recordOf(std::string_view line) {
  const std::vector<std::string_view> words = wordsOf(line);
  if (words.empty()) return std::nullopt;
  Record record;
  if (words[0] == kKept) {
    constexpr std::size_t kWords = 17;
    constexpr std::size_t kWordsOfOld = 13;
    files::Stamp& old = record.before.stamp;
    files::Stamp& now = record.after;
    record.kind = Record::Kind::kept;
    const bool knowsFile = words.size() == kWords;
    const bool sound =
        (knowsFile || words.size() == kWordsOfOld) && parse(words[1], record.number) &&
        parse(words[2], record.before.permissions) && parse(words[3], old.size) &&
        parse(words[4], old.modifiedSeconds) && parse(words[5], old.modifiedNanoseconds) &&
        parse(words[6], now.device) && parse(words[7], now.inode) && parse(words[8], now.size) &&
        parse(words[9], now.modifiedSeconds) && parse(words[10], now.modifiedNanoseconds) &&
        (!knowsFile || (parse(words[11], old.device) && parse(words[12], old.inode) &&
                        parse(words[13], record.before.owner) && parse(words[14], record.before.group)));
    const auto beside = sound ? unescaped(words[words.size() - 2]) : std::nullopt;
    const auto document = sound ? unescaped(words.back()) : std::nullopt;
    if (!beside || !document) return std::nullopt;
    // Earlier journals have the whole path.
    const std::size_t folder = beside->rfind('/') + 1;
    if (folder != 0 && beside->substr(0, folder) != document->substr(0, document->rfind('/') + 1))
      return std::nullopt;
    record.beside = beside->substr(folder);
    if (!files::isTemporaryName(record.beside)) return std::nullopt;
  } else if (words[0] == kCommand || words[0] == kNotKept) {
    record.kind = words[0] == kCommand ? Record::Kind::command : Record::Kind::notKept;
    if (words.size() != 2) return std::nullopt;
  } else if (words[0] == kTakenBack) {
    record.kind = Record::Kind::takenBack;
    if (words.size() != 3 || !parse(words[1], record.number)) return std::nullopt;
  } else if (!readEnded(words, record)) {
    return std::nullopt;
  }
  const bool isEnded = record.kind >= Record::Kind::begun;
  auto text = unescaped(words[words.size() - (isEnded ? 2 : 1)]);
  if (!text) return std::nullopt;
  record.text = *std::move(text);
  return record;
}

std::vector<Record> keptOf(const std::vector<Record>& records) {
  std::set<std::uint64_t> takenBack;
  for (const Record& record : records)
    if (record.kind == Record::Kind::takenBack) takenBack.insert(record.number);
  std::vector<Record> kept;
  for (const Record& record : records)
    if (record.kind == Record::Kind::kept && !takenBack.contains(record.number)) kept.push_back(record);
  return kept;
}

void forEachRecord(std::string_view journal, const std::function<void(Record)>& visit) {
  for (std::size_t end = 0; (end = journal.find('\n')) != std::string_view::npos;
       journal.remove_prefix(end + 1)) {
    if (auto record = recordOf(journal.substr(0, end))) visit(*std::move(record));
  }
}

std::vector<Record> recordsOf(std::string_view journal) {
  std::vector<Record> records;
  forEachRecord(journal, [&](Record record) { records.push_back(std::move(record)); });
  return records;
}

}  // namespace pluvo::journal
