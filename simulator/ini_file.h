// Private profiles ("ini files") in memory, for where there is no Windows to keep them.
#ifndef ARD_SIMULATOR_INI_FILE_H_
#define ARD_SIMULATOR_INI_FILE_H_

#include <map>
#include <string>
#include <string_view>

#include "frame/environment.h"
#include "frame/text.h"

namespace ard::simulator {

// They read as Windows reads them: names in any case, values without the blanks around them and cut
// off at Environment::kIniValueLength characters.
class IniFiles {
 public:
  std::wstring Read(std::wstring_view file, std::wstring_view section,
                    std::wstring_view key) const {
    const auto value = values_.find(NameOf(file, section, key));
    if (value == values_.end()) return {};
    return std::wstring(Trimmed(value->second).substr(0, Environment::kIniValueLength));
  }
  void Write(std::wstring_view file, std::wstring_view section, std::wstring_view key,
             std::wstring_view value) {
    values_[NameOf(file, section, key)] = value;
  }

 private:
  static std::wstring NameOf(std::wstring_view file, std::wstring_view section,
                             std::wstring_view key) {
    std::wstring name(file);
    name.append(L"[").append(section).append(L"]").append(key);
    return UpperCase(name);
  }

  std::map<std::wstring, std::wstring> values_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_INI_FILE_H_
