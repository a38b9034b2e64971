#include "console/prompt.h"

#include <algorithm>
#include <istream>
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
  const std::size_t most = member.parameters.size();
  const std::size_t least = most - member.defaults.size();
  if (arguments.size() < least || arguments.size() > most) {
    reader.Fail(std::wstring(member.name) + L" takes " +
                (least < most ? std::to_wstring(least) + L" to " : L"") + std::to_wstring(most) +
                L" argument(s).");
  }
  while (arguments.size() < most) arguments.push_back(member.defaults[arguments.size() - least]);
  return arguments;
}

}  // namespace

Prompt::Prompt(std::istream& in, std::ostream& out, const Stores& stores)
    : in_(in), out_(out), environment_(in, out), classes_(environment_, stores) {}

bool Prompt::Run(bool interactive) {
  bool good = true;
  std::string line;
  environment_.set_echo(!interactive);
  if (interactive) out_ << "\"help\" lists what there is, \"quit\" ends.\n";
  for (;;) {
    if (interactive) out_ << "> " << std::flush;
    if (!std::getline(in_, line)) return good;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::wstring text = FromUtf8(line);
    const std::wstring_view command = Trimmed(text);
    if (command.empty() || command.front() == L'\'') continue;
    if (command == L"quit") return good;
    if (command == L"help") {
      out_ << Help();
      continue;
    }
    if (!interactive) out_ << ToUtf8(WithoutPassword(command)) << '\n';
    try {
      const std::wstring answer = Evaluate(command);
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
  const std::wstring_view class_name = reader.Word();
  reader.Expect(L'.');
  const std::wstring_view name = reader.Word();
  const auto member =
      std::find_if(classes_.members().begin(), classes_.members().end(), [&](const Member& m) {
        return EqualsIgnoreCase(m.class_name, class_name) && EqualsIgnoreCase(m.name, name);
      });
  if (member == classes_.members().end()) {
    reader.Fail(L"There is no member " + std::wstring(class_name) + L"." + std::wstring(name) +
                L".");
  }
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

std::string Prompt::Help() const {
  std::string help;
  for (const Member& member : classes_.members()) {
    std::wstring line = L"  " + std::wstring(member.put ? L"" : L"? ");
    line += std::wstring(member.class_name) + L"." + std::wstring(member.name);
    if (member.put) {
      line += L" = value";
    } else {
      line += L"(";
      for (std::size_t i = 0; i < member.parameters.size(); ++i) {
        if (i > 0) line += L", ";
        const bool optional = i >= member.parameters.size() - member.defaults.size();
        line += optional ? L"[" + std::wstring(member.parameters[i]) + L"]"
                         : std::wstring(member.parameters[i]);
      }
      line += L")";
    }
    help += ToUtf8(line) + '\n';
  }
  return help + "  quit\n";
}

}  // namespace ard::console
