#include "workbook_tools/name_management.h"

#include "core/common.h"
#include "core/convert.h"
#include "refsheet/ref_sheet.h"
#include "workbook_tools/name_definition.h"

namespace vantora {
namespace {

// With which the names list marks what is broken.
constexpr int kErrorFillColor = 45;

}  // namespace

template <typename Work>
void clsNameManagement::Reporting(Work work) {
  try {
    work();
  } catch (const HostError& error) {
    ReportProgrammingError(
        services().user_interface,
        {.module = class_name(), .detail = error.description(), .number = error.number()});
  }
}

void clsNameManagement::NameDefinition() {
  if (!initialized()) return;
  Reporting([this] { NameDefinitionRun(*application(), services().user_interface).Run(); });
}

void clsNameManagement::NameCleanup() {
  if (!initialized()) return;
  if (ConfirmSaveFirst(services().user_interface,
                       "This will delete all Excel names flagged as in error.") !=
      MessageBoxResult::kOk) {
    return;
  }
  Reporting([this] { DeleteFlaggedNames(); });
}

void clsNameManagement::DeleteFlaggedNames() {
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  if (!ref_sheet.NamesListSelect()) return;
  const host::RangePtr list = application()->Selection();
  const host::WorksheetPtr sheet = list->Worksheet();
  const host::NamesPtr names = ActiveWorkbookOf(*application())->Names();
  const int last_row = list->Row() + list->RowsCount() - 1;
  const int flag_column = list->Column() + 1;
  for (int row = list->Row(); row <= last_row; ++row) {
    if (sheet->Cells(row, flag_column)->Interior()->ColorIndex() != kErrorFillColor) continue;
    const std::string text = ValueToText(sheet->Cells(row, flag_column - 1)->Value());
    host::NamePtr name;
    try {
      name = names->Item(text);
    } catch (const HostError&) {
      continue;  // it was deleted since the list was made
    }
    name->Delete();
  }
}

}  // namespace vantora
