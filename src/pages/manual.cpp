#include "pages/manual.h"

#include "base/ascii.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <vector>

namespace pluvo::pages {
namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string joinedWithAnd(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i)
    text += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
  return text;
}

/// Commands that any option under the heading goes with, in the program's order.
std::vector<std::string> commandsOf(const Program& program, const std::string& group) {
  std::vector<std::string> commands;
  for (const Command& command : program.commands) {
    const bool any = std::ranges::any_of(program.options, [&](const Option& option) {
      return option.group == group && std::ranges::count(option.commands, command.name) > 0;
    });
    if (any) commands.push_back(command.name);
  }
  return commands;
}

/// Where an option goes with fewer commands than its heading does.
std::string restriction(const Program& program, const Option& option) {
  std::vector<std::string> missing = commandsOf(program, option.group);
  const std::size_t all = missing.size();
  std::erase_if(missing,
                [&](const std::string& name) { return std::ranges::count(option.commands, name) > 0; });
  if (missing.empty()) return {};
  if (missing.size() * 2 < all) return " Not with " + joinedWithAnd(missing) + ".";
  return " With " + joinedWithAnd(option.commands) + " only.";
}

std::string heading(const Program& program, const std::string& group) {
  std::string text = ".SS " + roff(group) + "\n";
  const std::vector<std::string> commands = commandsOf(program, group);
  if (commands.size() < program.commands.size()) text += "With " + joinedWithAnd(commands) + ".\n";
  return text;
}

std::string bold(std::string_view text) { return "\\fB" + roff(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + roff(text) + "\\fR"; }

/// Words that are typed as they stand are bold in a line of usage, those that stand for others are capitals.
std::string usage(std::string_view text) {
  std::string line;
  std::string word;
  const auto end = [&] {
    if (!word.empty()) line += italic(word);
    word.clear();
  };
  for (const char c : text) {
    if (c >= 'A' && c <= 'Z') {
      word += c;
    } else {
      end();
      line += roff(std::string_view(&c, 1));
    }
  }
  end();
  return line;
}

/// The help begins with a small letter, but where that is a value's.
std::string sentence(const Option& option) {
  std::string help = option.help;
  std::ranges::replace(help, '\n', ' ');
  const std::string first = help.substr(0, help.find_first_of(" ,"));
  if (std::ranges::find(option.choices, first) == option.choices.end()) help[0] = base::asciiUpper(help[0]);
  return help + (help.ends_with('.') ? "" : ".");
}

/// An option as it is typed.
std::string typed(const Option& option) {
  std::string text = option.letter == 0 ? "" : bold(std::string{'-', option.letter}) + ", ";
  text += bold("--" + option.name);
  if (option.value.empty()) return text;
  return text + (option.valueOnly ? " " + italic(option.value) : "[=" + italic(option.value) + "]");
}

/// An option as it stands in a file.
std::string key(const Option& option) {
  return bold(option.name) + " = " +
         (option.value.empty() ? bold("true") : "\"" + italic(option.value) + "\"");
}

std::string list(const Program& program, std::string (*name)(const Option& option)) {
  std::string text;
  std::string group;
  for (const Option& option : program.options) {
    if (option.group != group) text += heading(program, option.group);
    group = option.group;
    text += ".TP\n" + name(option) + "\n" + roff(sentence(option) + restriction(program, option)) + "\n";
  }
  return text;
}

}  // namespace

std::string roff(std::string_view text) {
  static const std::map<char, std::string_view> signs = {{'\\', "\\e"},  {'-', "\\-"},   {'\'', "\\(aq"},
                                                         {'`', "\\(ga"}, {'^', "\\(ha"}, {'~', "\\(ti"}};
  std::string result;
  bool lineBegins = true;
  char before = ' ';
  for (const char c : text) {
    // A line that begins with a full stop would be a request; a list without blanks may be broken at its
    // commas.
    if (lineBegins && c == '.') result += "\\&";
    if (before == ',' && c != ' ' && c != '\n') result += "\\:";
    before = c;
    const auto sign = signs.find(c);
    result += sign == signs.end() ? std::string_view(&c, 1) : sign->second;
    lineBegins = c == '\n';
  }
  return result;
}

std::string optionList(const Program& program) { return list(program, typed); }

std::string keyList(const Program& program) { return list(program, key); }

std::string commandList(const Program& program) {
  std::string list;
  for (const Command& command : program.commands)
    list +=
        ".TP\n" + bold(program.name + " " + command.name) + usage(command.usage) + "\n" + roff(command.about);
  return list;
}

std::string examples(std::string_view lines) {
  constexpr std::string_view kRemark = "      ";
  std::string list;
  for (const std::string_view line : linesOf(lines)) {
    if (line.starts_with(kRemark)) {
      list += ".RS 8\n" + roff(line.substr(kRemark.size())) + "\n.RE\n";
    } else {
      list += ".PP\n.nf\n.RS 4\n" + roff(line.substr(std::min<std::size_t>(2, line.size()))) + "\n.RE\n.fi\n";
    }
  }
  return list;
}

std::string exampleList(const Program& program) {
  std::string list;
  for (const Command& command : program.commands)
    list += ".SS " + roff(program.name + " " + command.name) + "\n" + examples(command.examples);
  return list;
}

std::string filled(std::string_view text, const std::map<std::string, std::string>& parts) {
  std::string result;
  std::set<std::string> used;
  while (true) {
    const std::size_t begin = text.find('@');
    result += text.substr(0, begin);
    if (begin == std::string_view::npos) break;
    const std::size_t end = text.find('@', begin + 1);
    if (end == std::string_view::npos) throw std::runtime_error("A name of a part ends nowhere.");
    const std::string name(text.substr(begin + 1, end - begin - 1));
    const auto part = parts.find(name);
    if (part == parts.end()) throw std::runtime_error("There is no part " + name + ".");
    used.insert(name);
    result += part->second;
    // A part that is whole lines brings its own line end.
    text.remove_prefix(end + 1);
    if (part->second.ends_with('\n') && text.starts_with('\n')) text.remove_prefix(1);
  }
  for (const auto& [name, part] : parts)
    if (!used.contains(name)) throw std::runtime_error("The part " + name + " has no place.");
  return result;
}

}  // namespace pluvo::pages
