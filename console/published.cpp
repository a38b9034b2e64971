#include "console/published.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

#include "frame/text.h"

namespace ard::console {
namespace {

// A class on a line of its own, its members below it: "  call GetName(in String AccRef, out retval
// String* Result)".
constexpr std::wstring_view kPublished =
#include "testing/published_members.inc"
    ;

// A parameter as it is published.
struct Published {
  bool result;
  std::wstring_view type;
  std::wstring_view name;
};

std::vector<std::wstring_view> Split(std::wstring_view text, std::wstring_view separator) {
  std::vector<std::wstring_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::wstring_view::npos) return parts;
    text.remove_prefix(end + separator.size());
  }
}

// The parameters of each member that is called or read, by "Class.Member": "in String AccRef, ...".
std::map<std::wstring, std::wstring_view> ReadPublished() {
  std::map<std::wstring, std::wstring_view> members;
  std::wstring_view class_name;
  for (const std::wstring_view line : Split(kPublished, L"\n")) {
    if (!line.starts_with(L' ')) class_name = line;
    const std::size_t name = Trimmed(line).find(L' ') + 3;
    const std::size_t open = line.find(L'(');
    if (!line.starts_with(L"  call ") && !line.starts_with(L"  get ")) continue;
    members[std::wstring(class_name) + L'.' + std::wstring(line.substr(name, open - name))] =
        line.substr(open + 1, line.rfind(L')') - open - 1);
  }
  return members;
}

std::vector<Published> Find(const Member& member) {
  static const std::map<std::wstring, std::wstring_view> members = ReadPublished();
  std::vector<Published> parameters;
  const auto found =
      members.find(std::wstring(member.class_name) + L'.' + std::wstring(member.name));
  if (found == members.end()) return parameters;
  for (std::wstring_view text : Split(found->second, L", ")) {
    text = Trimmed(text.substr(0, text.find(L'=')));
    const std::size_t name = text.rfind(L' ');
    std::wstring_view type = text.substr(0, name);
    type = type.substr(type.rfind(L' ') + 1);
    if (type.ends_with(L'*')) type.remove_suffix(1);
    if (type == L"Enumeration") type = L"Long";
    parameters.push_back({text.find(L" retval ") != text.npos, type, text.substr(name + 1)});
  }
  return parameters;
}

std::wstring As(const Published& published) { return L" As " + std::wstring(published.type); }

}  // namespace

std::wstring Signature(const Member& member) {
  const std::vector<Published> published = Find(member);
  std::wstring text = std::wstring(member.class_name) + L'.' + std::wstring(member.name);
  if (member.put) return text + L" = " + std::wstring(published.at(0).type);

  std::wstring answers;
  for (const Published& p : published) {
    const bool passed = std::count(member.parameters.begin(), member.parameters.end(), p.name) > 0;
    if (p.result) {
      answers.insert(0, As(p));
    } else if (!passed && p.type != L"Object") {
      answers += L", " + std::wstring(p.name) + As(p);
    }
  }
  text += L'(';
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    if (i > 0) text += L", ";
    std::wstring parameter(member.parameters[i]);
    const auto typed = std::find_if(published.begin(), published.end(),
                                    [&](const Published& p) { return p.name == parameter; });
    // The prompt has neither arrays nor objects: it takes something else for them.
    if (typed != published.end() && typed->type != L"Object" && !typed->type.ends_with(L')')) {
      parameter += As(*typed);
    }
    const bool optional = i >= member.parameters.size() - member.defaults.size();
    text += optional ? L'[' + parameter + L']' : parameter;
  }
  return L"? " + text + L')' + answers;
}

}  // namespace ard::console
