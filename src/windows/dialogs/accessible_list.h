// AccessibleList: what a screen reader is told of a list view. All but the names is what the system
// tells of any list view, which knows nothing of rows beyond the page that it shows.
#ifndef ARD_WINDOWS_DIALOGS_ACCESSIBLE_LIST_H_
#define ARD_WINDOWS_DIALOGS_ACCESSIBLE_LIST_H_

// clang-format off
#include <windows.h>  // before any other header of the system
#include <oleacc.h>
// clang-format on

#include <functional>
#include <string>

namespace ard::windows {

class AccessibleList final : public IAccessible {
 public:
  // The name of the row, from 1, that the list view shows, or of the list itself: 0.
  using Name = std::function<std::wstring(LONG row)>;

  // Null where the system cannot tell anything of the list view. The caller owns a reference.
  static AccessibleList* Create(HWND list, Name name);
  // The answer to WM_GETOBJECT.
  LRESULT Answer(WPARAM wparam);
  // Before the list view goes: nobody else refers to this any more, and no name is asked for.
  void Disconnect();

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP get_accName(VARIANT child, BSTR* name) override;

  STDMETHODIMP GetTypeInfoCount(UINT* count) override { return list_->GetTypeInfoCount(count); }
  STDMETHODIMP GetTypeInfo(UINT i, LCID locale, ITypeInfo** info) override {
    return list_->GetTypeInfo(i, locale, info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* ids) override {
    return list_->GetIDsOfNames(iid, names, count, locale, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrong) override {
    return list_->Invoke(id, iid, locale, flags, arguments, result, exception, wrong);
  }
  STDMETHODIMP get_accParent(IDispatch** out) override { return list_->get_accParent(out); }
  STDMETHODIMP get_accChildCount(LONG* out) override { return list_->get_accChildCount(out); }
  STDMETHODIMP get_accChild(VARIANT c, IDispatch** out) override {
    return list_->get_accChild(c, out);
  }
  STDMETHODIMP get_accValue(VARIANT c, BSTR* out) override { return list_->get_accValue(c, out); }
  STDMETHODIMP get_accDescription(VARIANT c, BSTR* out) override {
    return list_->get_accDescription(c, out);
  }
  STDMETHODIMP get_accRole(VARIANT c, VARIANT* out) override { return list_->get_accRole(c, out); }
  STDMETHODIMP get_accState(VARIANT c, VARIANT* out) override {
    return list_->get_accState(c, out);
  }
  STDMETHODIMP get_accHelp(VARIANT c, BSTR* out) override { return list_->get_accHelp(c, out); }
  STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT c, LONG* topic) override {
    return list_->get_accHelpTopic(file, c, topic);
  }
  STDMETHODIMP get_accKeyboardShortcut(VARIANT c, BSTR* out) override {
    return list_->get_accKeyboardShortcut(c, out);
  }
  STDMETHODIMP get_accFocus(VARIANT* out) override { return list_->get_accFocus(out); }
  STDMETHODIMP get_accSelection(VARIANT* out) override { return list_->get_accSelection(out); }
  STDMETHODIMP get_accDefaultAction(VARIANT c, BSTR* out) override {
    return list_->get_accDefaultAction(c, out);
  }
  STDMETHODIMP accSelect(LONG flags, VARIANT c) override { return list_->accSelect(flags, c); }
  STDMETHODIMP accLocation(LONG* x, LONG* y, LONG* width, LONG* height, VARIANT c) override {
    return list_->accLocation(x, y, width, height, c);
  }
  STDMETHODIMP accNavigate(LONG way, VARIANT c, VARIANT* out) override {
    return list_->accNavigate(way, c, out);
  }
  STDMETHODIMP accHitTest(LONG x, LONG y, VARIANT* out) override {
    return list_->accHitTest(x, y, out);
  }
  STDMETHODIMP accDoDefaultAction(VARIANT c) override { return list_->accDoDefaultAction(c); }
  STDMETHODIMP put_accName(VARIANT c, BSTR name) override { return list_->put_accName(c, name); }
  STDMETHODIMP put_accValue(VARIANT c, BSTR value) override {
    return list_->put_accValue(c, value);
  }

 private:
  AccessibleList(IAccessible* list, Name name) : list_(list), name_(std::move(name)) {}
  ~AccessibleList() { list_->Release(); }

  ULONG references_ = 1;
  IAccessible* list_;  // as the system has it
  Name name_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_ACCESSIBLE_LIST_H_
