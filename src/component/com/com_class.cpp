#include "component/com/com_class.h"

// Defines the identifiers that the interfaces' header declares.
#include <initguid.h>

#include "Orvanemcro1.h"
#include "component/com/automation_object.h"
#include "component/com/clear_all_data_object.h"
#include "component/com/copy_worksheet_object.h"
#include "component/com/freeze_object.h"
#include "component/com/globals_object.h"
#include "component/com/planning_spinners_object.h"
#include "component/com/ratios_comp_data_set_object.h"
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
      {L"clsFreeze", CLSID_clsFreeze, IID__clsFreeze, Create<FreezeObject>},
      {L"clsPlanningSpinners", CLSID_clsPlanningSpinners, IID__clsPlanningSpinners,
       Create<PlanningSpinnersObject>},
      {L"clsRatiosCompDataSet", CLSID_clsRatiosCompDataSet, IID__clsRatiosCompDataSet,
       Create<RatiosCompDataSetObject>},
      {L"clsClearAllData", CLSID_clsClearAllData, IID__clsClearAllData, Create<ClearAllDataObject>},
      {L"clsCopyWorksheet", CLSID_clsCopyWorksheet, IID__clsCopyWorksheet,
       Create<CopyWorksheetObject>},
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
