// The component's objects as the tests of operations use them. What stands behind them differs from
// program to program: the engine's classes themselves, or the automation server's objects and the
// Excel host.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/host.h"
#include "core/user_interface.h"
#include "core/value.h"

namespace vantora::testing {

// A value, or an array of texts or of Booleans whose first element stands at index 0.
using Argument = std::variant<Value, std::vector<std::string>, std::vector<bool>>;

// An object of a public class. What its members throw is the same wherever it lives: HostError for
// what the host refuses.
class Client {
 public:
  // Creates the object and calls Init. Without an application, Init is not called. The services
  // must outlive the client.
  Client(std::string_view class_name, Services& services, host::ApplicationPtr application);
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // Calls Init with the application once more.
  void Init();
  // Gives the session context the menu object of another client (`clsGlobals.Menus`).
  void SetMenus(Client& menus);
  // Calls a method and gives its result, empty for one without.
  Value Call(std::string_view method, std::vector<Argument> arguments = {});
  // The same for a method that fills arrays: `arguments` holds them afterwards.
  Value CallByReference(std::string_view method, std::vector<Argument>& arguments);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// The number of the error that the call ends with; 0 for none.
template <typename Function>
int ErrorOf(Function call) {
  try {
    call();
  } catch (const HostError& error) {
    return error.number();
  }
  return 0;
}

class YearEndClient : public Client {
 public:
  YearEndClient(Services& services, host::ApplicationPtr application)
      : Client("clsYearEnd", services, std::move(application)) {}

  void SaveHistoryYear() { Call("SaveHistoryYear"); }
  void SaveCurrentYear() { Call("SaveCurrentYear"); }
  void SaveLastYear() { Call("SaveLastYear"); }
  void ShiftHistory() { Call("ShiftHistory"); }
  void CopyCurrentYear() { Call("CopyCurrentYear"); }
};

class DevelopmentModeClient : public Client {
 public:
  DevelopmentModeClient(Services& services, host::ApplicationPtr application)
      : Client("clsDevelopmentMode", services, std::move(application)) {}

  void DevelopmentMode() { Call("DevelopmentMode"); }
  void AlignSheets() { Call("AlignSheets"); }
  void CheckPlanningKeys() { Call("CheckPlanningKeys"); }
};

class RefSheetClient : public Client {
 public:
  RefSheetClient(Services& services, host::ApplicationPtr application)
      : Client("clsRefSheet", services, std::move(application)) {}

  void PutDLLVersion(std::string_view text) { Call("PutDLLVersion", {Value(text)}); }

  void Load(std::string_view method, const std::vector<std::string>& values) {
    Call(method, {values, Value(static_cast<int>(values.size()))});
  }
  bool Is(std::string_view method) { return Call(method).AsBoolean(); }
  std::string Text(std::string_view method) { return Call(method).AsText(); }
  int Number(std::string_view method) { return static_cast<int>(Call(method).AsNumber()); }
  // `configs` holds configuration 1 first.
  void ConfigsListGet(std::vector<std::string>& configs) {
    std::vector<Argument> arguments = {Numbered(configs)};
    CallByReference("ConfigsListGet", arguments);
    const auto& filled = std::get<std::vector<std::string>>(arguments[0]);
    configs.assign(filled.begin() + 1, filled.end());
  }
  void ConfigsListPut(const std::vector<std::string>& configs) {
    Call("ConfigsListPut", {Numbered(configs)});
  }

 private:
  static std::vector<std::string> Numbered(std::vector<std::string> configs) {
    configs.insert(configs.begin(), "");
    return configs;
  }
};

class MenuManagementClient : public Client {
 public:
  MenuManagementClient(Services& services, host::ApplicationPtr application)
      : Client("clsMenuManagement", services, std::move(application)) {}

  void CreateVAMenuBar() { Call("CreateVAMenuBar"); }
  void RemoveVAMenuBar() { Call("RemoveVAMenuBar"); }
  void CreateDashboardMenuBar() { Call("CreateDashboardMenuBar"); }
  void RemoveDashboardMenuBar() { Call("RemoveDashboardMenuBar"); }
  void SetDashboardMenuPanes() { Call("SetDashboardMenuPanes"); }
  void ExposeDashMenu(bool visible) { Call("ExposeDashMenu", {Value(visible)}); }
  void SelectConfig(int number) { Call("SelectConfig", {Value(number)}); }
};

class DisplayModesClient : public Client {
 public:
  DisplayModesClient(Services& services, host::ApplicationPtr application)
      : Client("clsDisplayModes", services, std::move(application)) {}

  void MultiWindowUD() { Call("MultiWindowUD"); }
  void MultiWindowLR() { Call("MultiWindowLR"); }
  void SetPresentationDisplay() {
    Call("SetPresentationDisplay", {Value("1"), Value(), Value("x")});
  }
};

class DashboardClient : public Client {
 public:
  DashboardClient(Services& services, host::ApplicationPtr application)
      : Client("clsDashboard", services, std::move(application)) {}

  void BuildChartList() { Call("BuildChartList"); }
  void DashboardConfigure() { Call("DashboardConfigure"); }
  // `flags` holds configuration 1 first.
  void RetrieveColumnConfig(int column, std::vector<bool>& flags) {
    std::vector<Argument> arguments = {Value(column), Numbered(flags)};
    CallByReference("RetrieveColumnConfig", arguments);
    const auto& filled = std::get<std::vector<bool>>(arguments[1]);
    flags.assign(filled.begin() + 1, filled.end());
  }
  void SaveColumnConfig(int column, const std::vector<bool>& flags) {
    Call("SaveColumnConfig", {Value(column), Numbered(flags)});
  }

 private:
  static std::vector<bool> Numbered(std::vector<bool> flags) {
    flags.insert(flags.begin(), false);
    return flags;
  }
};

class FreezeClient : public Client {
 public:
  FreezeClient(Services& services, host::ApplicationPtr application)
      : Client("clsFreeze", services, std::move(application)) {}

  void FreezeCurrentResults() { Call("FreezeCurrentResults"); }
  void SetSpinnerstoBase() { Call("SetSpinnerstoBase"); }
};

class PlanningSpinnersClient : public Client {
 public:
  PlanningSpinnersClient(Services& services, host::ApplicationPtr application)
      : Client("clsPlanningSpinners", services, std::move(application)) {}

  void SpinnerChange() { Call("SpinnerChange"); }
};

class ClearAllDataClient : public Client {
 public:
  ClearAllDataClient(Services& services, host::ApplicationPtr application)
      : Client("clsClearAllData", services, std::move(application)) {}

  void ClearAllData() { Call("ClearAllData"); }
};

class RatiosCompDataSetClient : public Client {
 public:
  RatiosCompDataSetClient(Services& services, host::ApplicationPtr application)
      : Client("clsRatiosCompDataSet", services, std::move(application)) {}

  void RatiosCompDataSet() { Call("RatiosCompDataSet"); }
};

class CopyWorksheetClient : public Client {
 public:
  CopyWorksheetClient(Services& services, host::ApplicationPtr application)
      : Client("clsCopyWorksheet", services, std::move(application)) {}

  void CopyWorksheet() { Call("CopyWorksheet"); }
};

class NameManagementClient : public Client {
 public:
  NameManagementClient(Services& services, host::ApplicationPtr application)
      : Client("clsNameManagement", services, std::move(application)) {}

  void NameDefinition() { Call("NameDefinition"); }
  void NameCleanup() { Call("NameCleanup"); }
};

class FormattingClient : public Client {
 public:
  FormattingClient(Services& services, host::ApplicationPtr application)
      : Client("clsFormatting", services, std::move(application)) {}

  // Without an index for 0.
  void RangeSelect(bool forward, int index = 0) {
    Call("RangeSelect", {Value(forward), index == 0 ? Value() : Value(index)});
  }
  void LeftFormat() { Call("LeftFormat"); }
  void RightFormat() { Call("RightFormat"); }
  void PasteFormula() { Call("PasteFormula"); }
};

class HiderClient : public Client {
 public:
  HiderClient(Services& services, host::ApplicationPtr application)
      : Client("clsHider", services, std::move(application)) {}

  void AtOpen() { Call("AtOpen"); }
  void BeforeSave(bool save_as_ui) { Call("BeforeSave", {Value(save_as_ui)}); }
};

}  // namespace vantora::testing
