#include "cli/workbook_macros.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/call.h"
#include "cli/run_options.h"
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"

namespace vantora::cli {
namespace {

using embedded::MenuEntry;

constexpr std::string_view kMacroPrefix = "VA_";

[[noreturn]] void RefuseEntry(const MenuEntry& entry, const std::string& why) {
  throw UsageError("The entry \"" + entry.caption + "\" can't be carried out: " + why);
}

int NumberIn(std::string_view text) { return NumberToInteger(LeadingNumber(text)).value_or(0); }

void SelectSheet(const MenuEntry& entry, ModelSession& session) {
  for (const auto& sheet : session.application().ActiveWorkbook()->Worksheets()) {
    if (EqualsIgnoreCase(sheet->Name(), entry.caption)) return sheet->Activate();
  }
  RefuseEntry(entry, "the workbook has no worksheet of that name.");
}

void SelectChart(const MenuEntry& entry, ModelSession& session) {
  host::Application& application = session.application();
  const auto dashboard = FindFlaggedSheet(application, model::kDashboardSheetFlag);
  if (!dashboard) RefuseEntry(entry, "the workbook has no dashboard.");
  const std::string_view tag = entry.tag;
  const std::size_t colon = std::min(tag.find(':'), tag.size());
  const int side = NumberIn(tag.substr(0, colon));
  const int column = colon == tag.size() ? 0 : NumberIn(tag.substr(colon + 1));
  if (side < 1 || column < 1) RefuseEntry(entry, "its tag is no side and column, such as 2:7.");
  dashboard->Activate();
  const std::vector<host::PanePtr> panes = application.ActiveWindow()->Panes();
  // A window that is not split shows the charts of both sides.
  panes.at(std::min<std::size_t>(side, panes.size()) - 1)->SetScrollColumn(column);
}

void SelectConfig(const MenuEntry& entry, ModelSession& session) {
  // With its sign turned the configuration is applied and the dashboard activated.
  session.menus().SelectConfig(static_cast<std::int16_t>(-NumberIn(entry.tag)));
}

// The class that has the method; empty when none does.
std::string_view ClassWithMethod(std::string_view method) {
  for (const component::PublicClass& entry : component::PublicClasses()) {
    if (component::FindMethod(entry, method)) return entry.name;
  }
  return "";
}

}  // namespace

void RunWorkbookMacro(const MenuEntry& entry, ModelSession& session, RunOutcome& outcome) {
  struct Macro {
    std::string_view name;
    void (*run)(const MenuEntry&, ModelSession&);
  };
  static constexpr Macro kMacros[] = {
      {"VA_SelSheet", SelectSheet}, {"VA_SelChart", SelectChart}, {"VA_selConfig", SelectConfig}};
  for (const Macro& macro : kMacros) {
    if (EqualsIgnoreCase(entry.macro, macro.name)) return macro.run(entry, session);
  }
  const std::string_view macro = entry.macro;
  const bool has_prefix = EqualsIgnoreCase(macro.substr(0, kMacroPrefix.size()), kMacroPrefix);
  const std::string method(has_prefix ? macro.substr(kMacroPrefix.size()) : "");
  const std::string_view class_name = ClassWithMethod(method);
  if (class_name.empty()) {
    RefuseEntry(entry,
                "its macro " + entry.macro + " is the workbook's own, and runs in Excel only.");
  }
  Call call(std::string(class_name), method, {});
  outcome.result = call.Run(session.services(), session.globals());
}

}  // namespace vantora::cli
