#include "workbook_tools/hider.h"

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "dialogs/frm_save_msg.h"

namespace vantora {
namespace {

using host::XlFileFormat;
using host::XlSheetVisibility;

constexpr std::string_view kInstruction = "You must enable Excel macros to run Vantora";

// On the title sheet.
constexpr int kFirstFlagColumn = 2;
constexpr int kDefaultMessageColumn = 3;
constexpr int kActiveSheetColumn = 40;  // AN, in row 1

// The last version of the host that knows nothing of the formats of Excel 2007.
constexpr double kLastOldVersion = 11;

bool EndsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() &&
         EqualsIgnoreCase(text.substr(text.size() - ending.size()), ending);
}

// Takes a step that may fail without consequences.
template <typename Step>
void Ignoring(Step step) {
  try {
    step();
  } catch (const HostError&) {
    // The sheet stays as it is; the others are looked after all the same.
  }
}

// Switches the host's screen updating off, and back to what it was.
class ScreenUpdatingOff {
 public:
  explicit ScreenUpdatingOff(host::ApplicationPtr application)
      : application_(std::move(application)), was_on_(application_->ScreenUpdating()) {
    application_->SetScreenUpdating(false);
  }
  void Restore() { application_->SetScreenUpdating(was_on_); }

 private:
  host::ApplicationPtr application_;
  bool was_on_;
};

}  // namespace

void clsHider::BeforeSave(bool save_as_ui) {
  if (!initialized()) return;
  const host::SheetPtr active = application()->ActiveAnySheet();
  const std::string active_sheet = active ? active->Name() : std::string();
  ScreenUpdatingOff screen(application());
  std::optional<SaveTarget> target;
  if (save_as_ui) target = AskForTarget();
  if (!save_as_ui || target) SaveHidden(target, active_sheet);
  screen.Restore();
}

bool clsHider::IsNewFormatHost() {
  return LeadingNumber(application()->Version()) > kLastOldVersion;
}

std::optional<clsHider::SaveTarget> clsHider::AskForTarget() {
  const bool is_new = IsNewFormatHost();
  std::string filter = "Excel 2003 (*.xls), *.xls";
  if (is_new) filter = "Excel 2007 (*.xlsm), *.xlsm, " + filter;
  const std::string name = ActiveWorkbookOf(*application())->Name();
  const std::optional<std::string> filename =
      application()->GetSaveAsFilename(name.substr(0, name.rfind('.')), filter, "Vantora SaveAs");
  if (!filename) return std::nullopt;
  XlFileFormat format = XlFileFormat::kWorkbookNormal;
  if (EndsWith(*filename, "xlsm")) {
    format = XlFileFormat::kOpenXmlWorkbookMacroEnabled;
  } else if (EndsWith(*filename, "xls") && is_new) {
    format = XlFileFormat::kExcel8;
  }
  return SaveTarget{*filename, format};
}

void clsHider::SaveHidden(const std::optional<SaveTarget>& target,
                          const std::string& active_sheet) {
  const std::vector<SheetState> states = HideSheets();
  if (!title_sheet_) {
    ReportProgrammingError(services().user_interface,
                           {.module = class_name(), .detail = "No sheet flagged as Title Sheet"});
    AtOpen();
    return;
  }
  LocateMessage();
  WriteMessage(std::string(kInstruction));
  title_sheet_->Cells(model::kFlagRow, kActiveSheetColumn)->SetValue(Value(active_sheet));
  Save(target);
  WriteMessage("");
  RestoreSheets(states, active_sheet);
}

std::vector<clsHider::SheetState> clsHider::HideSheets() {
  std::vector<SheetState> states;
  title_sheet_ = nullptr;
  std::vector<host::WorksheetPtr> sheets;
  Ignoring([&] { sheets = ActiveWorkbookOf(*application())->Worksheets(); });
  for (const host::WorksheetPtr& sheet : sheets) {
    SheetState& state = states.emplace_back();
    state.sheet = sheet;
    Ignoring([&] { state.visible = sheet->Visible(); });
    Ignoring([&] { state.was_protected = sheet->ProtectContents(); });
    Ignoring([&] { sheet->Unprotect(); });
    Ignoring([&] {
      if (SheetHasFlag(sheet, model::kTitleSheetFlag)) {
        title_sheet_ = sheet;
      } else {
        sheet->SetVisible(XlSheetVisibility::kVeryHidden);
      }
    });
  }
  return states;
}

void clsHider::Save(const std::optional<SaveTarget>& target) {
  frmSaveMsg message(services().user_interface);
  try {
    const host::WindowPtr window = ActiveWindowOf(*application());
    message.OuterWindow(window->Top(), window->Left(), window->Height(), window->Width());
    message.ShowForm();
    const host::WorkbookPtr workbook = ActiveWorkbookOf(*application());
    if (target) {
      workbook->SaveAs(target->filename, target->format);
    } else {
      workbook->Save();
    }
  } catch (const HostError& error) {
    const std::string detail =
        "error " + std::to_string(error.number()) + " during workbook save operation";
    ReportProgrammingError(services().user_interface, {.module = class_name(), .detail = detail});
  }
  message.Unload();
}

void clsHider::RestoreSheets(const std::vector<SheetState>& states,
                             const std::string& active_sheet) {
  for (const SheetState& state : states) {
    if (state.visible) state.sheet->SetVisible(*state.visible);
  }
  ActivateSheet(active_sheet);
  for (const SheetState& state : states) {
    if (state.was_protected) state.sheet->Protect();
  }
}

void clsHider::LocateMessage() {
  message_row_ = model::kDefaultMessageRow;
  message_column_ = kDefaultMessageColumn;
  const host::RangePtr used = title_sheet_->UsedRange();
  const int last_column = used->Column() + used->ColumnsCount() - 1;
  for (int column = kFirstFlagColumn; column <= last_column; ++column) {
    // The name of a sheet that stands there is no flag, whatever letters it has.
    if (column == kActiveSheetColumn) continue;
    const std::string text = ValueToText(title_sheet_->Cells(model::kFlagRow, column)->Value());
    const std::optional<std::size_t> flag = FindIgnoreCase(text, model::kMessageFlag);
    if (!flag) continue;
    message_column_ = column;
    const auto row = NumberToInteger(LeadingNumber(std::string_view(text).substr(*flag + 1)));
    if (row && *row >= 1 && *row <= model::kLastMessageRow) message_row_ = *row;
    return;
  }
}

void clsHider::WriteMessage(const std::string& text) {
  title_sheet_->Cells(message_row_, message_column_)->SetValue(Value(text));
}

void clsHider::ActivateSheet(const std::string& name) {
  for (const host::WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    if (EqualsIgnoreCase(sheet->Name(), name)) {
      sheet->Activate();
      return;
    }
  }
}

void clsHider::AtOpen() {
  if (!initialized()) return;
  title_sheet_ = nullptr;
  for (const host::WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    if (SheetHasFlag(sheet, model::kTitleSheetFlag)) {
      title_sheet_ = sheet;
    } else {
      sheet->SetVisible(XlSheetVisibility::kVisible);
    }
  }
  if (title_sheet_) {
    LocateMessage();
    const std::string active_sheet =
        ValueToText(title_sheet_->Cells(model::kFlagRow, kActiveSheetColumn)->Value());
    const bool was_protected = title_sheet_->ProtectContents();
    title_sheet_->Unprotect();
    WriteMessage("");
    if (was_protected) title_sheet_->Protect();
    ActivateSheet(active_sheet);
  }
  ProtectFlaggedSheets();
}

// Row 1 holds the sheets' flags, which only development mode shows.
void clsHider::ProtectFlaggedSheets() {
  const host::WorksheetPtr active = application()->ActiveSheet();
  if (!active || !active->Range(model::kFlagRow, 1, model::kFlagRow, 1)->RowsHidden()) return;
  for (const host::WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    if (SheetHasFlag(sheet, model::kProtectedSheetFlag)) sheet->Protect();
  }
}

}  // namespace vantora
