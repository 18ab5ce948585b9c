#include "workbook_tools/copy_worksheet.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "core/common.h"
#include "core/convert.h"
#include "core/progress_dialog.h"

namespace vantora {
namespace {

using host::XlCutCopyMode;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

constexpr std::string_view kMacroLanguage = "Orvanemcro1";
constexpr int kOutlineLevels = 5;

HostError ModelError(int number, const std::string& what) {
  return HostError(number, what, std::string(kMacroLanguage));
}

// The model's bounds are 16-bit numbers: sheets that reach below row 32,767 can't be copied.
std::int16_t ToBound(int number) {
  if (number > std::numeric_limits<std::int16_t>::max()) {
    throw ModelError(HostError::kOverflow,
                     "Overflow: the cells to copy reach to row or column " +
                         std::to_string(number) + ", and the last one that can be copied is " +
                         std::to_string(std::numeric_limits<std::int16_t>::max()) + ".");
  }
  return static_cast<std::int16_t>(number);
}

// The object of the first entry with that name.
template <typename Entries>
auto FindByName(const Entries& entries, const std::string& name, const char* kind) {
  auto found = std::find_if(entries.begin(), entries.end(),
                            [&](const auto& entry) { return entry.name == name; });
  if (found == entries.end()) {
    throw ModelError(HostError::kSubscriptOutOfRange, "Subscript out of range: there is no open " +
                                                          std::string(kind) + " \"" + name + "\".");
  }
  return found->object;
}

template <typename Entries>
std::vector<std::string> NamesOf(const Entries& entries) {
  std::vector<std::string> names;
  for (const auto& entry : entries) names.push_back(entry.name);
  return names;
}

std::vector<std::string> SheetNames(host::Workbook& workbook) {
  host::SheetsPtr sheets = workbook.Sheets();
  std::vector<std::string> names;
  const int count = sheets->Count();
  for (int index = 1; index <= count; ++index) names.push_back(sheets->Item(index)->Name());
  return names;
}

host::WorksheetPtr AddLast(host::Workbook& workbook) {
  host::SheetsPtr sheets = workbook.Sheets();
  return sheets->Add(sheets->Item(sheets->Count()));
}

// "Copy of Plan", or the first of "Copy of Plan_1", "Copy of Plan_2", ... that is free. The model
// compares the names exactly.
std::string FreeName(host::Workbook& workbook, const std::string& source_name) {
  const std::vector<std::string> taken = SheetNames(workbook);
  const auto is_taken = [&](const std::string& name) {
    return std::find(taken.begin(), taken.end(), name) != taken.end();
  };
  const std::string base = "Copy of " + source_name;
  std::string name = base;
  for (int number = 1; is_taken(name); ++number) name = base + "_" + std::to_string(number);
  return name;
}

ReferencedSheets ScanReferences(host::Range& source, int rows, int columns) {
  ReferencedSheets referenced;
  for (int row = 1; row <= rows; ++row) {
    for (int column = 1; column <= columns; ++column) {
      referenced.Add(source.Cells(row, column)->Formula());
    }
  }
  return referenced;
}

std::string Paragraph(const std::string& text) {
  return text + std::string(kLineBreak) + std::string(kLineBreak);
}

}  // namespace

void clsCopyWorksheet::CopyWorksheet() {
  if (!initialized()) return;
  frmCopyWorksheet dialog;
  try {
    Run(dialog);
  } catch (const HostError& error) {
    Report(error);
    application()->SetScreenUpdating(true);
  }
  workbooks_.clear();
  worksheets_.clear();
  active_workbook_.reset();
}

void clsCopyWorksheet::Run(frmCopyWorksheet& dialog) {
  application()->SetScreenUpdating(false);
  // A chart sheet can't be the source: then the dialog begins with the first worksheet.
  if (host::WorksheetPtr active = application()->ActiveSheet()) {
    dialog.SetSourceRangeName(active->Name());
  }
  if (Ask(dialog)) {
    dialog.SetMessage(Copy(dialog));
    dialog.EnableCopy(false);
    services().user_interface.ShowModal(dialog);
  }
  dialog.Unload();
  application()->SetScreenUpdating(true);
}

bool clsCopyWorksheet::Ask(frmCopyWorksheet& dialog) {
  active_workbook_ = application()->ActiveWorkbook();
  if (!active_workbook_) throw ModelError(HostError::kObjectNotSet, "No workbook is open.");
  workbooks_.clear();
  for (const host::WorkbookPtr& workbook : application()->Workbooks()) {
    workbooks_.push_back({workbook->Name(), workbook});
  }
  dialog.SetTargetNames(NamesOf(workbooks_));
  if (dialog.IsEmptyTargetName()) dialog.SetTargetWorkbookName(workbooks_.at(0).name);
  worksheets_.clear();
  for (const host::WorksheetPtr& sheet : active_workbook_->Worksheets()) {
    worksheets_.push_back({sheet->Name(), sheet});
  }
  dialog.SetSourceNames(NamesOf(worksheets_));
  if (dialog.IsEmptySourceName() && !worksheets_.empty()) {
    dialog.SetSourceWorksheetName(worksheets_.front().name);
  }
  dialog.SetMessage("Choose source and target, then hit copy button");
  dialog.EnableCopy(true);
  services().user_interface.ShowModal(dialog);
  return !dialog.IsCancelled();
}

host::RangePtr clsCopyWorksheet::SourceRange(const frmCopyWorksheet& dialog,
                                             host::Worksheet& sheet) {
  if (!dialog.IsSourceSelectionARange()) sheet.OutlineShowLevels(kOutlineLevels);
  host::RangePtr used = sheet.UsedRange();
  const int first_row = used->Row();
  const int first_column = used->Column();
  Bounds bounds{
      .first_row = ToBound(first_row),
      .first_column = ToBound(first_column),
      .last_row = ToBound(first_row + used->RowsCount() - 1),
      .last_column = ToBound(first_column + used->ColumnsCount() - 1),
  };
  if (dialog.IsSourceSelectionARange()) TakeSelection(bounds);
  // A selection that lies outside the used cells leaves bounds in the wrong order: the host takes
  // the rectangle between the two corners, and the model copies that.
  return sheet.Range(bounds.first_row, bounds.first_column, bounds.last_row, bounds.last_column);
}

// Intersects the bounds with the selected cells, which need not lie on the source sheet: only their
// place counts.
void clsCopyWorksheet::TakeSelection(Bounds& bounds) {
  host::RangePtr selection = application()->Selection();
  if (!selection) throw ModelError(HostError::kObjectNotSet, "No cells are selected.");
  const int first_row = selection->Row();
  const int first_column = selection->Column();
  const int last_row = first_row + selection->RowsCount() - 1;
  const int last_column = first_column + selection->ColumnsCount() - 1;
  bounds.first_row = ToBound(std::max<int>(bounds.first_row, first_row));
  bounds.first_column = ToBound(std::max<int>(bounds.first_column, first_column));
  bounds.last_row = ToBound(std::min<int>(bounds.last_row, last_row));
  bounds.last_column = ToBound(std::min<int>(bounds.last_column, last_column));
}

std::string clsCopyWorksheet::Copy(const frmCopyWorksheet& dialog) {
  host::WorksheetPtr sheet = FindByName(worksheets_, dialog.SourceWorksheetName(), "worksheet");
  host::WorkbookPtr target = FindByName(workbooks_, dialog.TargetWorkbookName(), "workbook");
  host::RangePtr source = SourceRange(dialog, *sheet);
  const int rows = source->RowsCount();
  const int columns = source->ColumnsCount();

  const std::string name = FreeName(*target, sheet->Name());
  host::WorksheetPtr copy = AddLast(*target);
  copy->SetName(name);
  CopyLayout(*source, *copy, rows, columns);
  CopyFormats(*source, *copy, rows, columns);
  if (dialog.CopyColors()) target->SetColors(active_workbook_->Colors());

  const ReferencedSheets referenced = ScanReferences(*source, rows, columns);
  const std::string report = AddPlaceholders(*target, referenced);
  return CopyCells(*source, *copy, rows, columns, report);
}

void clsCopyWorksheet::CopyLayout(host::Range& source, host::Worksheet& target, int rows,
                                  int columns) {
  for (int row = 1; row <= rows; ++row) {
    host::RangePtr from = source.Cells(row, 1);
    host::RangePtr to = target.Cells(row, 1);
    to->SetRowHeight(from->RowHeight());
    to->SetOutlineLevel(from->OutlineLevel());
  }
  for (int column = 1; column <= columns; ++column) {
    target.Cells(1, column)->SetColumnWidth(source.Cells(1, column)->ColumnWidth());
  }
}

void clsCopyWorksheet::CopyFormats(host::Range& source, host::Worksheet& target, int rows,
                                   int columns) {
  host::RangePtr destination = target.Range(1, 1, rows, columns);
  source.Copy();
  for (XlPasteType part :
       {XlPasteType::kComments, XlPasteType::kFormats, XlPasteType::kValidation}) {
    destination->PasteSpecial(part, XlPasteSpecialOperation::kNone, /*skip_blanks=*/false,
                              /*transpose=*/false);
  }
  application()->SetCutCopyMode(XlCutCopyMode::kNone);
}

std::string clsCopyWorksheet::AddPlaceholders(host::Workbook& target,
                                              const ReferencedSheets& referenced) {
  const std::vector<std::string>& names = referenced.names();
  if (names.empty()) return {};
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : ", ") + name;
  std::string report =
      Paragraph("There were explicit references to the following other worksheets: " + joined);
  std::vector<std::string> present = SheetNames(target);
  for (const std::string& name : names) {
    const bool exists = std::any_of(present.begin(), present.end(), [&](const std::string& sheet) {
      return EqualsIgnoreCase(sheet, name);
    });
    if (exists) continue;
    try {
      AddLast(target)->SetName(name);
    } catch (const HostError& error) {
      throw HostError(
          error.number(),
          "No worksheet placeholder can be added for " + name + ": " + error.description(),
          error.source());
    }
    present.push_back(name);
    report += Paragraph("Added dummy worksheet placeholder for " + name + ".");
  }
  return report;
}

std::string clsCopyWorksheet::CopyCells(host::Range& source, host::Worksheet& target, int rows,
                                        int columns, const std::string& report) {
  frmProgressBar progress(services().user_interface);
  progress.SetTitle("Worksheet Copy");
  progress.SetText("copying individual cells, please be patient");
  progress.SetMin(1);
  progress.SetMax(rows);
  progress.ShowForm();
  std::string outcome = report + "Copy is complete.  Hit Cancel/Done button to move on.";
  for (int row = 1; row <= rows; ++row) {
    for (int column = 1; column <= columns; ++column) {
      target.Cells(row, column)->SetFormula(source.Cells(row, column)->Formula());
    }
    if (progress.Cancelled()) {
      outcome = "Operation cancelled, worksheet partially copied";
      break;
    }
    progress.SetProgress(row);
  }
  progress.Unload();
  return outcome;
}

void clsCopyWorksheet::Report(const HostError& error) {
  const std::string detail = error.description();
  ReportProgrammingError(services().user_interface,
                         {.module = class_name(), .detail = detail, .number = error.number()});
}

}  // namespace vantora
