#include "hosts/excel/excel_application.h"

#include <string>
#include <utility>

#include "hosts/excel/excel_range.h"
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
    ComPtr<IDispatch> workbook = object_.Get(Member::kApplicationActiveWorkbook).ToObject();
    if (!workbook) return nullptr;
    return std::make_shared<ExcelWorkbook>(Object(object_.connection(), std::move(workbook)));
  }
  host::WorksheetPtr ActiveSheet() override {
    return Find<ExcelWorksheet>(Member::kApplicationActiveSheet, L"UsedRange");
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

 private:
  // What the member gives as a `Handle`; null when it gives nothing, or an object of another kind,
  // which is one without the member `telling`.
  template <typename Handle>
  std::shared_ptr<Handle> Find(Member member, const wchar_t* telling) {
    ComPtr<IDispatch> dispatch = object_.Get(member).ToObject();
    if (!dispatch) return nullptr;
    Object found(object_.connection(), std::move(dispatch));
    if (!found.Has(telling)) return nullptr;
    return std::make_shared<Handle>(std::move(found));
  }

  Object object_;
};

void SleepFor(std::chrono::milliseconds time) { Sleep(static_cast<DWORD>(time.count())); }

}  // namespace

host::ApplicationPtr MakeExcelApplication(IDispatch* application, WaitFunction wait) {
  if (!application) return nullptr;
  auto connection = std::make_shared<Connection>(wait ? std::move(wait) : SleepFor);
  return std::make_shared<ExcelApplication>(
      Object(std::move(connection), ComPtr<IDispatch>::Share(application)));
}

IDispatch* DispatchOf(host::Application& application) {
  auto* excel = dynamic_cast<ExcelApplication*>(&application);
  return excel ? excel->dispatch() : nullptr;
}

}  // namespace vantora::excel
