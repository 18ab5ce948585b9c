#include "hosts/excel/excel_application.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/excel/excel_command_bars.h"
#include "hosts/excel/excel_range.h"
#include "hosts/excel/excel_window.h"
#include "hosts/excel/excel_workbook.h"
#include "hosts/excel/excel_worksheet.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

namespace {

class ExcelApplication : public host::Application {
 public:
  explicit ExcelApplication(Object object) : object_(std::move(object)) {}

  IDispatch* dispatch() const { return object_.dispatch(); }

  host::WorkbookPtr ActiveWorkbook() override {
    auto workbook = object_.FindChild(Member::kApplicationActiveWorkbook);
    return workbook ? std::make_shared<ExcelWorkbook>(*std::move(workbook)) : nullptr;
  }
  host::WorksheetPtr ActiveSheet() override {
    return Find<ExcelWorksheet>(Member::kApplicationActiveSheet, L"UsedRange");
  }
  host::SheetPtr ActiveAnySheet() override {
    auto sheet = object_.FindChild(Member::kApplicationActiveSheet);
    return sheet ? MakeSheet(*std::move(sheet)) : nullptr;
  }
  host::RangePtr Selection() override {
    return Find<ExcelRange>(Member::kApplicationSelection, L"Areas");
  }
  void Goto(std::string_view reference) override {
    object_.Call(Member::kApplicationGoto, {reference});
  }
  bool ScreenUpdating() override { return object_.GetBool(Member::kApplicationScreenUpdating); }
  void SetScreenUpdating(bool on) override { object_.Put(Member::kApplicationScreenUpdating, on); }
  // A shape gives its name. A cell, a menu or the macro list give a range, an array or an error.
  std::string Caller() override {
    Variant caller = object_.Get(Member::kApplicationCaller);
    return caller.type() == VT_BSTR ? caller.ToText().value_or("") : "";
  }
  // The end of a copy mode is written False, not 0.
  void SetCutCopyMode(host::XlCutCopyMode mode) override {
    bool ends = mode == host::XlCutCopyMode::kNone;
    object_.Put(Member::kApplicationCutCopyMode,
                ends ? Variant(false) : Variant(static_cast<int>(mode)));
  }
  std::vector<host::WorkbookPtr> Workbooks() override {
    std::vector<host::WorkbookPtr> workbooks;
    for (Object& workbook : object_.Items(Member::kApplicationWorkbooks)) {
      workbooks.push_back(std::make_shared<ExcelWorkbook>(std::move(workbook)));
    }
    return workbooks;
  }
  host::WindowPtr ActiveWindow() override {
    auto window = object_.FindChild(Member::kApplicationActiveWindow);
    return window ? std::make_shared<ExcelWindow>(*std::move(window)) : nullptr;
  }
  void SetCalculation(host::XlCalculation calculation) override {
    object_.Put(Member::kApplicationCalculation, static_cast<int>(calculation));
  }
  double UsableHeight() override { return object_.GetDouble(Member::kApplicationUsableHeight); }
  double UsableWidth() override { return object_.GetDouble(Member::kApplicationUsableWidth); }
  bool DisplayFullScreen() override {
    return object_.GetBool(Member::kApplicationDisplayFullScreen);
  }
  std::string Version() override { return object_.GetText(Member::kApplicationVersion); }
  host::RangePtr Union(const host::RangePtr& first, const host::RangePtr& second) override {
    return std::make_shared<ExcelRange>(
        object_.Child(Member::kApplicationUnion, {DispatchOf(first), DispatchOf(second)}));
  }
  // Gives False when the user cancels.
  host::RangePtr InputRange(std::string_view prompt, std::string_view title) override {
    constexpr int kRangeType = 8;
    auto range = object_.FindChild(Member::kApplicationInputBox, {},
                                   {{L"Prompt", prompt}, {L"Title", title}, {L"Type", kRangeType}});
    return range ? std::make_shared<ExcelRange>(*std::move(range)) : nullptr;
  }
  // Gives False when the user cancels.
  std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                               std::string_view file_filter,
                                               std::string_view title) override {
    Variant path = object_.Get(
        Member::kApplicationGetSaveAsFilename, {},
        {{L"InitialFilename", initial_filename}, {L"FileFilter", file_filter}, {L"Title", title}});
    return path.type() == VT_BSTR ? path.ToText() : std::nullopt;
  }
  host::CommandBarPtr ActiveMenuBar() override {
    return std::make_shared<ExcelCommandBar>(
        object_.Child(Member::kApplicationCommandBars).Child(Member::kCommandBarsActiveMenuBar));
  }

 private:
  // What the member gives as a `Handle`; null when it gives nothing, or an object of another kind,
  // which is one without the member `telling`.
  template <typename Handle>
  std::shared_ptr<Handle> Find(Member member, const wchar_t* telling) {
    auto found = object_.FindChild(member);
    if (!found || !found->Has(telling)) return nullptr;
    return std::make_shared<Handle>(*std::move(found));
  }

  Object object_;
};

void SleepFor(std::chrono::milliseconds time) { Sleep(static_cast<DWORD>(time.count())); }

}  // namespace

host::ApplicationPtr MakeExcelApplication(IDispatch* application, WaitFunction wait) {
  if (!application) return nullptr;
  auto shared = ComPtr<IDispatch>::Share(application);
  auto connection = std::make_shared<Connection>(shared, wait ? std::move(wait) : SleepFor);
  return std::make_shared<ExcelApplication>(Object(std::move(connection), std::move(shared)));
}

IDispatch* DispatchOf(host::Application& application) {
  auto* excel = dynamic_cast<ExcelApplication*>(&application);
  return excel ? excel->dispatch() : nullptr;
}

}  // namespace vantora::excel
