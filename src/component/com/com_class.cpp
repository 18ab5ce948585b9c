#include "component/com/com_class.h"

// Defines the identifiers that the interfaces' header declares.
#include <initguid.h>

#include "Orvanemcro1.h"
#include "component/com/automation_object.h"
#include "component/com/globals_object.h"
#include "component/com/ref_sheet_object.h"
#include "component/com/year_end_object.h"

namespace vantora::com {
namespace {

template <typename Object>
IUnknown* Create(const ComClass& com_class) {
  return static_cast<typename Object::DualInterface*>(new Object(com_class));
}

}  // namespace

std::span<const ComClass> ComClasses() {
  static const ComClass classes[] = {
      {L"clsGlobals", CLSID_clsGlobals, IID__clsGlobals, Create<GlobalsObject>},
      {L"clsRefSheet", CLSID_clsRefSheet, IID__clsRefSheet, Create<RefSheetObject>},
      {L"clsYearEnd", CLSID_clsYearEnd, IID__clsYearEnd, Create<YearEndObject>},
  };
  return classes;
}

const ComClass* FindComClass(REFCLSID class_id) {
  for (const ComClass& com_class : ComClasses()) {
    if (com_class.class_id == class_id) return &com_class;
  }
  return nullptr;
}

}  // namespace vantora::com
