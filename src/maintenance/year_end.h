// The year-round operations on the yearly columns: saving a year as a snapshot at the marker
// column, shifting the history years, copying the current year into the prior one.
#pragma once

#include <string>
#include <string_view>

#include "core/public_object.h"

namespace vantora {

class frmProgressBar;

// Every operation asks for confirmation, works on the worksheets of the active workbook that carry
// an "S" in cell A1, and does nothing unless the object is initialised. A failing host call ends it
// at that point: the HostError reaches the caller, the sheets already done keep their changes, and
// screen updating stays off.
class clsYearEnd : public BoundObject {
 public:
  explicit clsYearEnd(Services& services) : BoundObject("clsYearEnd", services) {}

  // Asks which of the five history years to save, then saves its column at the marker.
  void SaveHistoryYear();
  // Saves column O at the marker.
  void SaveCurrentYear();
  // Saves column N at the marker.
  void SaveLastYear();
  // Moves the history columns K to N one column to the left; the oldest year is lost.
  void ShiftHistory();
  // Copies the values of column O into column N where N's cell has no fill.
  void CopyCurrentYear();

 private:
  // Saves the column as a new column at the marker; `caption` tells the user which one it is.
  void SaveAtMarker(int source_column, std::string_view caption);
  void SaveSheetAtMarker(frmProgressBar& progress, int source_column, int marker_column,
                         const std::string& comment);
  // The column of the current sheet's own marker flag, else `marker_column`.
  int TargetColumn(int marker_column);
  // Goes to the name "marker" and returns its column.
  int GoToMarkerColumn();
  void ShiftSheet(frmProgressBar& progress);
  void CopyCurrentYearOfSheet(frmProgressBar& progress);

  // Remembers the active sheet and switches screen updating off.
  void Start();
  // Runs `work` on each history sheet, which is then the current sheet, then unloads the progress
  // dialog, switches screen updating on and selects the remembered sheet.
  template <typename Work>
  void RunOnHistorySheets(frmProgressBar& progress, Work&& work);

  host::SheetPtr remembered_sheet_;
  host::WorksheetPtr current_sheet_;
};

}  // namespace vantora
