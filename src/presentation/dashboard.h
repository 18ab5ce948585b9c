// The dashboard: the worksheet of charts laid out in columns, marked by a "D" in its cell A1. It
// lists its charts on the Reference Sheet, and keeps in row 1 of each of its columns in which
// configurations the column is hidden: "H(2,5)" beside any other text.
#pragma once

#include <string>
#include <vector>

#include "core/public_object.h"

namespace vantora {

class clsRefSheet;
class frmDashConfigure;

// Every member does nothing unless the object is initialised. A failing host call reaches the
// caller, where nothing else is said.
class clsDashboard : public BoundObject {
 public:
  explicit clsDashboard(Services& services) : BoundObject("clsDashboard", services) {}

  // Lists the dashboard's charts anew in the Reference Sheet's chart list, by column and position,
  // at most 80 of them. The user is told of charts that stand outside of their columns (a chart
  // belongs to the column whose left edge is within a twentieth of a column from its own), and of
  // charts beyond the 80. Does nothing without a chart list. A chart whose title or place can't be
  // read is left out.
  void BuildChartList();

  // Both: flags[k] tells whether the column is shown in configuration k; element 0 is not used.
  // Columns are 1-based. Numbers beyond the last element are left out when reading, and dropped
  // from the cell when writing.
  void RetrieveColumnConfig(int column, std::vector<bool>& flags);
  void SaveColumnConfig(int column, const std::vector<bool>& flags);

  // Lets the user choose which columns each configuration shows. Throws 13 when the active sheet is
  // no worksheet, 9 when the chart list has more than five charts in one column. Screen updating is
  // off afterwards when there is no chart list.
  void DashboardConfigure();

 protected:
  // Finds the dashboard; without one the object stays unusable, which is reported.
  bool Bind() override;

 private:
  struct ListedCharts;
  struct ChartEntry;

  // What row 1 of the column holds, without blanks around it.
  std::string ConfigText(int column);
  std::vector<host::ChartObjectPtr> Charts();
  // Sorts the dashboard's charts into those listed and those to be reported.
  ListedCharts CollectCharts();
  static std::vector<ChartEntry> ReadChartList(clsRefSheet& reference_sheet);
  // Hands the dialog a column and the titles of its charts, `count` times.
  static void AddColumns(frmDashConfigure& dialog, const std::vector<ChartEntry>& charts,
                         int count);

  host::WorksheetPtr sheet_;
};

}  // namespace vantora
