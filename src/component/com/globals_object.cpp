#include "component/com/globals_object.h"

#include "hosts/excel/excel_application.h"
#include "hosts/excel/text.h"

namespace vantora::com {

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
  return Run([&] { menus_ = ComPtr<IDispatch>::Share(menus); });
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
