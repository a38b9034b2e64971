#include "simulator/windows/automation.h"

#include <exception>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

HRESULT Report(EXCEPINFO* info, std::int32_t number, std::wstring_view text) {
  if (info) {
    *info = EXCEPINFO{};
    info->scode = number;
    info->bstrSource = SysAllocString(L"ArdSimulator");
    info->bstrDescription = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  return DISP_E_EXCEPTION;
}

}  // namespace

bool IsSameName(const wchar_t* a, const wchar_t* b) {
  return CompareStringOrdinal(a, -1, b, -1, TRUE) == CSTR_EQUAL;
}

HRESULT ReportException(EXCEPINFO* info) noexcept {
  try {
    throw;
  } catch (const Error& error) {
    return Report(info, error.number(), error.text());
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    return Report(info, kErrorFailed, FromUtf8(error.what()));
  }
}

}  // namespace ard::simulator
