// A host of VBScript, to time what a script does: the script engine that other hosts use, too.
#ifndef ARD_BENCHMARKS_SCRIPT_HOST_H_
#define ARD_BENCHMARKS_SCRIPT_HOST_H_

#include <windows.h>
// After windows.h.
#include <activscp.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "benchmarks/dispatch_recorder.h"
#include "windows/engine/com.h"

namespace ard::benchmarks {

// An object that scripts know by a name.
using NamedObject = std::pair<std::wstring, windows::ComPtr<IDispatch>>;

// A procedure `name` that asks for the same as a recording, by name and as often as its argument
// says. The host's objects that it needs are added to `objects`. Throws Error when a member has no
// name, or an argument cannot be written down.
std::wstring ScriptOf(const std::wstring& name, const Recording& recording,
                      std::vector<NamedObject>& objects);

class ScriptHost {
 public:
  // Throws Error when there is no VBScript, or the script is wrong.
  ScriptHost(const std::vector<NamedObject>& objects, const std::wstring& script);
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;
  ~ScriptHost();

  // Calls a procedure of the script. Throws Error when it breaks off.
  void Run(const std::wstring& procedure, int argument) const;

 private:
  windows::ComPtr<IActiveScript> engine_;
};

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_SCRIPT_HOST_H_
