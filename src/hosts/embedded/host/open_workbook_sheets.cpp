// Sheets that come into an open workbook, and their names.
#include <algorithm>

#include "core/convert.h"
#include "host/open_workbook.h"
#include "host/sheet_names.h"

namespace vantora::embedded {

int OpenWorkbook::AddSheet(int after) {
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
  if (!file_->IsAdded(sheet_id)) {
    Refuse(subject +
           "the embedded host renames only sheets that were added since the workbook was opened, "
           "because charts, validations and other parts name the others.");
  }
  // The texts of defined names follow as formulas do.
  std::vector<std::pair<DefinedName*, Formula>> concerned;
  for (DefinedName& defined : model().names) {
    Formula formula = ParseFormula(defined.refers_to, {1, 1}, model());
    const bool names_sheet = std::any_of(
        formula.references.begin(), formula.references.end(), [&](const Reference& reference) {
          return reference.first_sheet == sheet_id || reference.last_sheet == sheet_id;
        });
    if (names_sheet) concerned.emplace_back(&defined, std::move(formula));
  }
  model().RenameSheet(sheet_id, name);
  for (auto& [defined, formula] : concerned) {
    defined->refers_to = FormulaText(formula, {1, 1}, model());
  }
  names_.Forget();
  notes_.push_back("worksheet \"" + before + "\" renamed to \"" + name + "\"");
}

void OpenWorkbook::SetPalette(const Palette& palette) {
  if (palette == model().styles.palette) return;
  file_->style_editor().SetPalette(palette);
  notes_.push_back("colour palette replaced");
}

}  // namespace vantora::embedded
