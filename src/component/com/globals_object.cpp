#include "component/com/globals_object.h"

#include <memory>

#include "component/com/menus_access.h"
#include "core/host_error.h"
#include "hosts/excel/excel_application.h"
#include "hosts/excel/text.h"

namespace vantora::com {

namespace {

// The engine's object in a clsMenuManagement, which keeps that one alive; null for Nothing.
// HostError 13 for any other object.
std::shared_ptr<clsMenuManagement> EngineMenus(IDispatch* menus) {
  if (!menus) return nullptr;
  MenusAccess* access = nullptr;
  if (FAILED(menus->QueryInterface(kMenusAccessId, reinterpret_cast<void**>(&access)))) {
    throw HostError(HostError::kTypeMismatch, "Type mismatch: Menus takes a clsMenuManagement.",
                    "Orvanemcro1");
  }
  auto owner = ComPtr<IUnknown>::Adopt(access);
  return {&access->Menus(), [owner](clsMenuManagement*) {}};
}

}  // namespace

STDMETHODIMP GlobalsObject::putref_App(IDispatch* application) {
  return Run([&] { globals_.SetApp(excel::MakeExcelApplication(application)); });
}

STDMETHODIMP GlobalsObject::get_App(IDispatch** application) {
  if (!application) return E_POINTER;
  *application = nullptr;
  return Run([&] {
    if (!globals_.App()) return;
    *application = excel::DispatchOf(*globals_.App());
    (*application)->AddRef();
  });
}

STDMETHODIMP GlobalsObject::putref_Menus(IDispatch* menus) {
  return Run([&] {
    globals_.SetMenus(EngineMenus(menus));
    menus_ = ComPtr<IDispatch>::Share(menus);
  });
}

STDMETHODIMP GlobalsObject::get_Menus(IDispatch** menus) {
  if (!menus) return E_POINTER;
  *menus = menus_.get();
  if (*menus) (*menus)->AddRef();
  return S_OK;
}

STDMETHODIMP GlobalsObject::get_Version(BSTR* version) {
  if (!version) return E_POINTER;
  *version = nullptr;
  return Run([&] { *version = excel::MakeBstr(globals_.Version()); });
}

void* GlobalsObject::FindOwn(REFIID iid) {
  return iid == kGlobalsAccessId ? static_cast<GlobalsAccess*>(this) : nullptr;
}

}  // namespace vantora::com
