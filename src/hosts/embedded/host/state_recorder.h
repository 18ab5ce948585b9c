// Tells in plain words what changed in a workbook around its cells: names, sheets, rows, windows.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/open_workbook.h"

namespace vantora::embedded {

class StateRecorder {
 public:
  // Remembers the workbook as it is now. `workbook` must outlive the recorder.
  explicit StateRecorder(OpenWorkbook& workbook);

  // A line for each thing that differs now from then; of many alike, the first ones and how many
  // more there are. Names that only followed an insertion of columns are no change.
  std::vector<std::string> Changes() const;

 private:
  // Of a sheet.
  struct SheetThen {
    Visibility visibility;
    bool is_protected;
    std::vector<RowTable::Entry> rows;
    SheetView view;  // in the active window
  };
  struct WindowThen {
    BookView place;
    int active_sheet;
  };
  using Lines = std::vector<std::string>;

  std::string SheetName(int sheet) const;
  void AddSheet(int sheet, Lines& lines) const;
  void AddRows(Lines& lines) const;
  void AddView(int sheet, Lines& lines) const;
  void AddNames(Lines& lines) const;
  void AddWindows(Lines& lines) const;
  // What a name of then refers to after the insertions made since, and under the sheets' new names.
  std::string ReferenceNow(DefinedName name) const;

  OpenWorkbook& workbook_;
  std::vector<SheetThen> sheets_;
  // By scope and case-folded name.
  std::map<std::pair<int, std::u32string>, DefinedName> names_;
  // By id.
  std::map<int, WindowThen> windows_;
  int active_window_;
  std::size_t insertions_;
  std::size_t renames_;
};

}  // namespace vantora::embedded
