// The context properties, one layer each over an automation object: a class is built of the layers
// for the properties that its interface publishes. A missing layer leaves the class abstract.
#ifndef ARD_WINDOWS_SERVER_CONTEXT_PROPERTIES_H_
#define ARD_WINDOWS_SERVER_CONTEXT_PROPERTIES_H_

#include "windows/database/ado.h"
#include "windows/engine/late_bound.h"
#include "windows/server/automation_object.h"

namespace ard::windows {

template <class Base>
class WithAppName : public Base {
 public:
  using Base::Base;
  HRESULT STDMETHODCALLTYPE put_AppName(BSTR value) override {
    return this->PutText(L"AppName", &Context::app_name, value);
  }
  HRESULT STDMETHODCALLTYPE get_AppName(BSTR* value) override {
    return this->GetText(L"AppName", &Context::app_name, value);
  }
};

template <class Base>
class WithRegistryPath : public Base {
 public:
  using Base::Base;
  HRESULT STDMETHODCALLTYPE put_RegistryPath(BSTR value) override {
    return this->PutText(L"RegistryPath", &Context::registry_path, value);
  }
  HRESULT STDMETHODCALLTYPE get_RegistryPath(BSTR* value) override {
    return this->GetText(L"RegistryPath", &Context::registry_path, value);
  }
};

template <class Base>
class WithArdWorkspace : public Base {
 public:
  using Base::Base;
  HRESULT STDMETHODCALLTYPE putref_ArdWorkspace(IDispatch* value) override {
    return this->PutObject(L"ArdWorkspace", this->workspace_, value, &Context::workspace,
                           WrapWorkspace);
  }
  HRESULT STDMETHODCALLTYPE get_ArdWorkspace(IDispatch** value) override {
    return this->GetObject(L"ArdWorkspace", this->workspace_, value);
  }
};

template <class Base>
class WithArdEngine : public Base {
 public:
  using Base::Base;
  HRESULT STDMETHODCALLTYPE putref_ArdEngine(IDispatch* value) override {
    return this->PutObject(L"ArdEngine", this->engine_, value, &Context::engine, WrapEngine);
  }
  HRESULT STDMETHODCALLTYPE get_ArdEngine(IDispatch** value) override {
    return this->GetObject(L"ArdEngine", this->engine_, value);
  }
};

template <class Base>
class WithDBaseConn : public Base {
 public:
  using Base::Base;
  HRESULT STDMETHODCALLTYPE putref_oDBaseConn(IDispatch* value) override {
    return this->PutObject(L"oDBaseConn", this->connection_, value, &Context::database,
                           WrapConnection);
  }
  HRESULT STDMETHODCALLTYPE get_oDBaseConn(IDispatch** value) override {
    return this->GetObject(L"oDBaseConn", this->connection_, value);
  }
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_CONTEXT_PROPERTIES_H_
