#include "component/com/com_class.h"

// Defines the identifiers that the interfaces' header declares.
#include <initguid.h>

#include "Orvanemcro1.h"
#include "component/com/automation_object.h"
#include "component/com/chart_list_control_object.h"
#include "component/com/clear_all_data_object.h"
#include "component/com/copy_worksheet_object.h"
#include "component/com/dashboard_object.h"
#include "component/com/development_mode_object.h"
#include "component/com/display_modes_object.h"
#include "component/com/formatting_object.h"
#include "component/com/freeze_object.h"
#include "component/com/globals_object.h"
#include "component/com/hider_object.h"
#include "component/com/menu_management_object.h"
#include "component/com/name_management_object.h"
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
      {L"clsDisplayModes", CLSID_clsDisplayModes, IID__clsDisplayModes, Create<DisplayModesObject>},
      {L"clsRatiosCompDataSet", CLSID_clsRatiosCompDataSet, IID__clsRatiosCompDataSet,
       Create<RatiosCompDataSetObject>},
      {L"clsDevelopmentMode", CLSID_clsDevelopmentMode, IID__clsDevelopmentMode,
       Create<DevelopmentModeObject>},
      {L"clsClearAllData", CLSID_clsClearAllData, IID__clsClearAllData, Create<ClearAllDataObject>},
      {L"clsMenuManagement", CLSID_clsMenuManagement, IID__clsMenuManagement,
       Create<MenuManagementObject>},
      {L"clsDashboard", CLSID_clsDashboard, IID__clsDashboard, Create<DashboardObject>},
      {L"clsCopyWorksheet", CLSID_clsCopyWorksheet, IID__clsCopyWorksheet,
       Create<CopyWorksheetObject>},
      {L"clsHider", CLSID_clsHider, IID__clsHider, Create<HiderObject>},
      {L"clsChartListControl", CLSID_clsChartListControl, IID__clsChartListControl,
       Create<ChartListControlObject>},
      {L"clsNameManagement", CLSID_clsNameManagement, IID__clsNameManagement,
       Create<NameManagementObject>},
      {L"clsFormatting", CLSID_clsFormatting, IID__clsFormatting, Create<FormattingObject>},
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
