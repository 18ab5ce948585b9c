// What every object of the server has besides its own members: identity, lifetime, late-bound
// calls, error and type information.
#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "component/com/automation.h"
#include "component/com/automation_error.h"
#include "component/com/com_class.h"
#include "component/com/module.h"
#include "component/com/windows_services.h"

namespace vantora::com {

// `Interface` is the class's dual interface. Objects are made with one reference and destroy
// themselves. Used on the thread that created them.
template <typename Interface>
class AutomationObject : public Interface, public ISupportErrorInfo, public IProvideClassInfo {
 public:
  using DualInterface = Interface;

  // IUnknown
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = Find(iid);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  // IDispatch
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return Run([&] { *info = AddedReference(Description().interface_info.get()); });
  }
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                             DISPID* ids) override {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    HRESULT found = S_OK;
    HRESULT outcome =
        Run([&] { found = Description().interface_info->GetIDsOfNames(names, count, ids); });
    return FAILED(outcome) ? outcome : found;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                      DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                      UINT* argument_error) override {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!arguments) return E_POINTER;
    HRESULT invoked = S_OK;
    HRESULT outcome = Run([&] {
      invoked =
          Description().dispatch_table.Invoke(static_cast<Interface*>(this), member, locale, flags,
                                              *arguments, result, exception, argument_error);
    });
    return FAILED(outcome) ? outcome : invoked;
  }

  // ISupportErrorInfo
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == com_class_.interface_id || iid == IID_IDispatch ? S_OK : S_FALSE;
  }

  // IProvideClassInfo
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override {
    if (!info) return E_POINTER;
    *info = nullptr;
    return Run([&] { *info = AddedReference(Description().class_info.get()); });
  }

 protected:
  explicit AutomationObject(const ComClass& com_class) : com_class_(com_class) {}
  virtual ~AutomationObject() = default;

  // An interface that only this class has; null for all others.
  virtual void* FindOwn(REFIID) { return nullptr; }

  // Runs the body of a member, turning what it throws into an error of the interface. The object
  // outlives the call, even if the client lets go of it meanwhile (while a dialog is shown).
  template <typename Body>
  HRESULT Run(Body&& body) {
    auto alive = ComPtr<IUnknown>::Share(static_cast<Interface*>(this));
    return Guarded(com_class_.interface_id, com_class_.name, std::forward<Body>(body));
  }

  Services& services() { return services_->services(); }

 private:
  template <typename Shared>
  static Shared* AddedReference(Shared* object) {
    object->AddRef();
    return object;
  }

  void* Find(REFIID iid) {
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == com_class_.interface_id) {
      return static_cast<Interface*>(this);
    }
    if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    if (iid == IID_IProvideClassInfo) return static_cast<IProvideClassInfo*>(this);
    return FindOwn(iid);
  }

  const TypeDescription& Description() {
    if (!description_) description_ = DescriptionOf(com_class_);
    return *description_;
  }

  ModuleUse module_use_;  // first, so that it ends last
  const ComClass& com_class_;
  std::atomic<ULONG> references_ = 1;
  std::shared_ptr<const TypeDescription> description_;
  std::unique_ptr<ObjectServices> services_ = MakeObjectServices();
};

}  // namespace vantora::com
