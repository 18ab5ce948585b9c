// Sheets that come into an open workbook, and their names.
#include <algorithm>

#include "core/convert.h"
#include "formula/lexical.h"
#include "host/open_workbook.h"
#include "host/sheet_names.h"

namespace vantora::embedded {

int OpenWorkbook::AddSheet(int after) {
  if (model().structure_is_protected) {
    Refuse("Add method of Sheets class failed: the structure of \"" + file_->name() +
           "\" is protected.");
  }
  const int id = file_->AddSheet(FreeSheetName(model()), model().PositionOf(after) + 1);
  // References that span sheets may take the new one in.
  calculator_.NamesChanged();
  windows_.active().active_sheet = id;
  notes_.push_back("worksheet \"" + sheet(id).name + "\" added");
  return id;
}

void OpenWorkbook::RenameSheet(int sheet_id, const std::string& name) {
  const std::string before = sheet(sheet_id).name;
  if (name == before) return;
  const std::string subject = "The sheet \"" + before + "\" can't be named \"" + name + "\": ";
  if (std::optional<std::string> fault = FaultOfSheetName(name)) Refuse(subject + *fault + ".");
  if (auto owner = model().IdOf(name); owner && *owner != sheet_id) {
    Refuse(subject + "another sheet of the workbook has that name.");
  }
  if (model().structure_is_protected) {
    Refuse(subject + "the structure of the workbook is protected.");
  }
  const SheetRename rename{before, name};
  try {
    file_->RenameSheet(sheet_id, name);
  } catch (const FileError& error) {
    Refuse(subject + error.what());
  }
  for (DefinedName& defined : model().names) {
    if (auto text = RenameSheetInText(defined.refers_to, rename)) defined.refers_to = *text;
  }
  names_.Forget();
  for (const auto& sheet : model().sheets) RenameInFormulas(*sheet, sheet_id, rename);
  renames_.push_back(rename);
  notes_.push_back("worksheet \"" + before + "\" renamed to \"" + name + "\"");
}

namespace {

// Whether the formula names the sheet before a name of the sheet's own.
bool UsesNameOf(const Formula& formula, const std::string& sheet) {
  return std::any_of(formula.names.begin(), formula.names.end(), [&](const std::string& name) {
    const std::size_t mark = name.rfind('!');
    return mark != std::string::npos && EqualsIgnoreCase(name.substr(0, mark), sheet);
  });
}

bool RefersTo(const Formula& formula, int sheet) {
  return std::any_of(formula.references.begin(), formula.references.end(),
                     [&](const Reference& reference) {
                       return reference.first_sheet == sheet || reference.last_sheet == sheet;
                     });
}

// Names of the sheet's own stand in the formula's text.
Formula WithNewName(Formula formula, const SheetRename& rename) {
  formula.text = RenameSheetInText(formula.text, rename).value_or(formula.text);
  for (std::string& name : formula.names) {
    const std::size_t mark = name.rfind('!');
    if (mark == std::string::npos || !EqualsIgnoreCase(name.substr(0, mark), rename.before)) {
      continue;
    }
    name = UpperAscii(rename.after) + name.substr(mark);
  }
  formula.program.reset();
  return formula;
}

}  // namespace

// References know sheets by their ids: all there is to do is to have the formulas written anew.
void OpenWorkbook::RenameInFormulas(SheetModel& sheet, int renamed, const SheetRename& rename) {
  constexpr FormulaId kUnconcerned = 0;
  // By formula: what it is now.
  std::vector<FormulaId> now(sheet.formulas.size() + 1, kUnconcerned);
  bool any = false;
  for (FormulaId id = 1; id < now.size(); ++id) {
    const Formula& formula = sheet.formulas[id];
    if (UsesNameOf(formula, rename.before)) {
      now[id] = sheet.formulas.Intern(WithNewName(formula, rename));
    } else if (RefersTo(formula, renamed)) {
      now[id] = id;
    }
    any |= now[id] != kUnconcerned;
  }
  if (!any) return;
  for (int column = 1; column <= sheet.cells.LastColumn(); ++column) {
    sheet.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
      if (cell.formula == 0 || cell.formula >= now.size() || now[cell.formula] == kUnconcerned) {
        return;
      }
      const CellAddress place{row, column};
      if (now[cell.formula] == cell.formula) {
        sheet.cells.SetFlag(place, kFormulaChanged, true);
      } else {
        sheet.cells.SetFormula(place, now[cell.formula]);
        calculator_.Changed(sheet.id, {row, column, row, column});
      }
    });
  }
}

void OpenWorkbook::SetPalette(const Palette& palette) {
  if (palette == model().styles.palette) return;
  file_->style_editor().SetPalette(palette);
  notes_.push_back("colour palette replaced");
}

}  // namespace vantora::embedded
