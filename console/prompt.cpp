#include "console/prompt.h"

#include <algorithm>
#include <istream>
#include <numeric>
#include <ostream>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::console {
namespace {

// Reads a line from left to right, and knows where it is when something is wrong.
class Reader {
 public:
  explicit Reader(std::wstring_view line) : line_(line) {}

  [[noreturn]] void Fail(std::wstring text) const { throw PromptError{std::move(text), at_ + 1}; }

  bool Take(wchar_t c) {
    SkipBlanks();
    if (at_ == line_.size() || line_[at_] != c) return false;
    ++at_;
    return true;
  }
  void Expect(wchar_t c) {
    if (!Take(c)) Fail(std::wstring(L"Expected \"") + c + L"\".");
  }
  bool AtEnd() {
    SkipBlanks();
    return at_ == line_.size();
  }
  std::wstring_view Word() {
    SkipBlanks();
    const std::size_t start = at_;
    while (at_ < line_.size() && IsWordCharacter(line_[at_])) ++at_;
    if (at_ == start) Fail(L"Expected a name.");
    return line_.substr(start, at_ - start);
  }
  // "text" with "" for a quotation mark, a number, True or False.
  Value Literal() {
    if (Take(L'"')) return Text();
    const std::size_t start = at_;
    while (at_ < line_.size() && line_[at_] != L',' && line_[at_] != L')') ++at_;
    const std::wstring_view literal = Trimmed(line_.substr(start, at_ - start));
    if (EqualsIgnoreCase(literal, L"True")) return Value(true);
    if (EqualsIgnoreCase(literal, L"False")) return Value(false);
    try {
      return Value(Value(literal).ToDouble());
    } catch (const Error&) {
      at_ = start;
      Fail(L"Expected \"text\", a number, True or False.");
    }
  }

 private:
  static bool IsWordCharacter(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
  }
  void SkipBlanks() {
    while (at_ < line_.size() && line_[at_] == L' ') ++at_;
  }
  Value Text() {
    std::wstring text;
    for (;;) {
      if (at_ == line_.size()) Fail(L"The text does not end.");
      const wchar_t c = line_[at_++];
      if (c == L'"' && (at_ == line_.size() || line_[at_] != L'"')) return Value(std::move(text));
      if (c == L'"') ++at_;
      text += c;
    }
  }

  std::wstring_view line_;
  std::size_t at_ = 0;
};

// A value as one would type it.
std::wstring AsLiteral(const Value& value) {
  const std::wstring* text = std::get_if<std::wstring>(&value.storage());
  if (!text) return value.ToText();
  std::wstring literal = L"\"";
  for (const wchar_t c : *text) {
    if (c == L'"') literal += L'"';
    literal += c;
  }
  return literal + L'"';
}

Arguments ReadArguments(Reader& reader, const Member& member) {
  Arguments arguments;
  if (reader.Take(L'(') && !reader.Take(L')')) {
    do {
      arguments.push_back(reader.Literal());
    } while (reader.Take(L','));
    reader.Expect(L')');
  }
  const std::vector<Parameter>& parameters = member.parameters;
  const std::size_t most = parameters.size();
  const auto least = static_cast<std::size_t>(
      std::count_if(parameters.begin(), parameters.end(),
                    [](const Parameter& parameter) { return !parameter.default_value; }));
  if (arguments.size() < least || arguments.size() > most) {
    reader.Fail(std::wstring(member.name) + L" takes " +
                (least < most ? std::to_wstring(least) + L" to " : L"") + std::to_wstring(most) +
                L" argument(s).");
  }
  while (arguments.size() < most) {
    arguments.push_back(Value(parameters[arguments.size()].default_value));
  }
  return arguments;
}

// In the order of their first members.
std::vector<std::wstring_view> ClassNames(const Classes& classes) {
  std::vector<std::wstring_view> names;
  for (const Member& member : classes.members()) {
    if (std::find(names.begin(), names.end(), member.class_name) == names.end()) {
      names.push_back(member.class_name);
    }
  }
  return names;
}

using Members = std::vector<const Member*>;

Members MembersOf(const Classes& classes, std::wstring_view class_name) {
  Members members;
  for (const Member& member : classes.members()) {
    if (EqualsIgnoreCase(member.class_name, class_name)) members.push_back(&member);
  }
  return members;
}

// How many letters are to be changed, put in or left out.
std::size_t EditDistance(std::wstring_view a, std::wstring_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const wchar_t c : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 0; i < b.size(); ++i) {
      const std::size_t replaced = diagonal + (c == b[i] ? 0 : 1);
      diagonal = row[i + 1];
      row[i + 1] = std::min({replaced, row[i] + 1, row[i + 1] + 1});
    }
  }
  return row.back();
}

[[noreturn]] void FailUnknown(const Reader& reader, const std::wstring& what,
                              std::wstring_view word, const std::vector<std::wstring_view>& names) {
  const std::wstring upper = UpperCase(word);
  const auto distance = [&](std::wstring_view name) {
    return EditDistance(upper, UpperCase(name));
  };
  const std::wstring_view nearest = *std::min_element(
      names.begin(), names.end(),
      [&](std::wstring_view a, std::wstring_view b) { return distance(a) < distance(b); });
  const bool meant = 2 * distance(nearest) < nearest.size();
  reader.Fail(L"There is no " + what + std::wstring(word) + L"." +
              (meant ? L" Do you mean " + std::wstring(nearest) + L"?" : L" \"help\" lists them."));
}

// The name of a class, and its members.
std::pair<std::wstring_view, Members> ReadClass(Reader& reader, const Classes& classes) {
  const std::wstring_view word = reader.Word();
  Members members = MembersOf(classes, word);
  if (members.empty()) FailUnknown(reader, L"class ", word, ClassNames(classes));
  return {members[0]->class_name, std::move(members)};
}

const Member* ReadMember(Reader& reader, const Members& members) {
  const std::wstring_view word = reader.Word();
  std::vector<std::wstring_view> names;
  for (const Member* const member : members) {
    if (EqualsIgnoreCase(member->name, word)) return member;
    names.push_back(member->name);
  }
  FailUnknown(reader, L"member " + std::wstring(members[0]->class_name) + L".", word, names);
}

}  // namespace

Prompt::Prompt(std::istream& in, std::ostream& out, const Stores& stores)
    : in_(in), out_(out), environment_(in, out), classes_(environment_, stores) {}

bool Prompt::Run(bool interactive, const ReadCommand& read_command) {
  bool good = true;
  std::string line;
  environment_.set_echo(!interactive);
  if (interactive) out_ << "\"help\" lists what there is, \"quit\" ends.\n";
  for (;;) {
    if (interactive && !read_command) out_ << "> ";
    out_ << std::flush;
    if (!(read_command ? read_command(line) : static_cast<bool>(std::getline(in_, line)))) {
      return good;
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::wstring text = FromUtf8(line);
    const std::wstring_view command = Trimmed(text);
    if (command.empty() || command.front() == L'\'') continue;
    const std::wstring_view word = command.substr(0, command.find(L' '));
    if (EqualsIgnoreCase(command, L"quit") || EqualsIgnoreCase(command, L"exit")) return good;
    const bool help = EqualsIgnoreCase(word, L"help");
    if (!interactive && !help) out_ << ToUtf8(WithoutPassword(command)) << '\n';
    try {
      const std::wstring answer = help ? Help(command) : Evaluate(command);
      if (!answer.empty()) out_ << ToUtf8(answer) << '\n';
    } catch (const PromptError& error) {
      good = false;
      out_ << "Error at character " << error.column << ": " << ToUtf8(error.text) << '\n';
    }
  }
}

std::wstring Prompt::Evaluate(std::wstring_view line) {
  Reader reader(line);
  reader.Take(L'?');
  const Members members = ReadClass(reader, classes_).second;
  reader.Expect(L'.');
  const Member* const member = ReadMember(reader, members);
  try {
    if (member->put && reader.Take(L'=')) {
      Value value = reader.Literal();
      if (!reader.AtEnd()) reader.Fail(L"Nothing may follow the value.");
      member->put(std::move(value));
      return {};
    }
    Arguments arguments = ReadArguments(reader, *member);
    if (!reader.AtEnd()) reader.Fail(L"Nothing may follow the call.");
    std::wstring answer;
    for (const Answer& part : member->call(arguments)) {
      if (!answer.empty()) answer += L", ";
      if (!part.name.empty()) answer += std::wstring(part.name) + L" = ";
      answer += AsLiteral(part.value);
    }
    return answer;
  } catch (const Error& error) {
    reader.Fail(L"An argument does not fit: " + error.text());
  }
}

std::wstring Prompt::Help(std::wstring_view line) const {
  Reader reader(line);
  reader.Word();
  std::wstring help;
  const auto add_class = [&](std::wstring_view name, const Members& members) {
    help += std::wstring(name) + L'\n';
    for (const Member* const member : members) help += L"  " + Signature(*member) + L'\n';
  };
  if (reader.AtEnd()) {
    for (const std::wstring_view name : ClassNames(classes_))
      add_class(name, MembersOf(classes_, name));
    return help + L"\"help Class\" shows one of them, \"quit\" ends.";
  }
  const auto [name, members] = ReadClass(reader, classes_);
  if (reader.Take(L'.')) {
    const Member* const member = ReadMember(reader, members);
    help = Signature(*member) + L'\n' + std::wstring(member->help);
  } else {
    add_class(name, members);
    help.pop_back();
  }
  if (!reader.AtEnd()) reader.Fail(L"Nothing may follow the name.");
  return help;
}

std::vector<std::string> Prompt::Completions(std::string_view word) const {
  const std::wstring begun = FromUtf8(word);
  const std::size_t dot = begun.find(L'.');
  std::vector<std::string> completions;
  const auto add = [&](const std::wstring& name) {
    if (StartsWithIgnoreCase(name, begun)) completions.push_back(ToUtf8(name));
  };
  if (dot == std::wstring::npos) {
    for (const std::wstring_view name : ClassNames(classes_)) add(std::wstring(name) + L'.');
    return completions;
  }
  for (const Member& member : classes_.members()) {
    std::wstring name = std::wstring(member.class_name) + L'.' + std::wstring(member.name);
    if (!member.put && !member.parameters.empty()) name += L'(';
    add(name);
  }
  return completions;
}

}  // namespace ard::console
