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
  return line + escaped(record.text) + "\n";
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
  } else {
    return std::nullopt;
  }
  auto text = unescaped(words.back());
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

std::vector<Record> recordsOf(std::string_view journal) {
  std::vector<Record> records;
  for (std::size_t end = 0; (end = journal.find('\n')) != std::string_view::npos;
       journal.remove_prefix(end + 1)) {
    if (auto record = recordOf(journal.substr(0, end))) records.push_back(*std::move(record));
  }
  return records;
}

}  // namespace pluvo::journal
