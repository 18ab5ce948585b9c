// The Reference Sheet: the worksheet that holds the model's metadata, marked by an "X" in its cell
// A1. Flags in its row 1 tell in which column each list starts; a list's entries stand from the
// lists row down, one a row.
//
// Every list member does nothing, and returns its type's empty value, unless the object is
// initialised and the list is defined (`...IsDefined`); exceptions are named. Members that take
// `values` and `count` write that many of the texts as one block into a column of the list; a text
// that reads as a number becomes one, and a row that no text is left for shows #N/A. A failing host
// call reaches the caller.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/public_object.h"

namespace vantora {

class clsRefSheet : public BoundObject {
 public:
  explicit clsRefSheet(Services& services) : BoundObject("clsRefSheet", services) {}

  // Writes the component's version line into cell C6. Does nothing unless initialised.
  void PutDLLVersion(std::string_view version_text);

  // --- Planning keys: key, sheet and sheet column, in three columns of their own ---

  bool KeysListIsDefined();
  // Selects the list, from the leftmost to the rightmost of its columns, on the Reference Sheet.
  // Here and for the other lists: an empty list is selected as its first row, and so is one that
  // fills the sheet's used range to its last row.
  void KeysListSelect();
  // Here and for the other lists: selects the cell two rows above the list.
  void KeysListDeselect();
  // Here and for the other lists: selects the list and clears contents and formats.
  void KeysListClear();
  void KeysListLoadKeysCol(const std::vector<std::string>& values, int count);
  void KeysListLoadSheetsCol(const std::vector<std::string>& values, int count);
  // The columns' numbers, left-aligned.
  void KeysListLoadColsCol(const std::vector<std::string>& values, int count);
  void KeysListSortbyKey();
  void KeysListSortbySheet();
  // Calls the sheet's own routine; also without the list.
  void KeysListResetSortButtons();

  // --- Names: each defined name and what it refers to ---

  bool NamesListIsDefined();
  // Whether the list was selected.
  bool NamesListSelect();
  void NamesListDeselect();
  // Lists the workbook's names anew, marks the broken references and tells the user of them.
  void NamesListPopulate();
  void NamesListSortbyName();
  void NamesListSortbySheet();

  // --- Key discrepancies: lines of text ---

  bool DiscrListIsDefined();
  void DiscrListSelect();
  void DiscrListDeselect();
  void DiscrListClear();
  // The lines do not wrap.
  void DiscrListLoadCol(const std::vector<std::string>& values, int count);

  // --- Charts of the dashboard: column, position, title ---

  bool ChartsListIsDefined();
  void ChartsListSelect();
  void ChartsListDeselect();
  void ChartsListClear();
  void ChartsListKeysListLoadColsCol(const std::vector<std::string>& values, int count);
  void ChartsListLoadPosCol(const std::vector<std::string>& values, int count);
  void ChartsListLoadTitlesCol(const std::vector<std::string>& values, int count);
  // By column, then position.
  void ChartsListSort();

  // Here and for the other iterators: Init loads the first entry; while IsMore, the fields are that
  // entry's, and Next loads the following one.
  void ChartsListIteratorInit();
  void ChartsListIteratorNext();
  bool ChartsListIteratorIsMore();
  std::string ChartsTitle();
  // 0 when the entry's column is no number. Throws 6 for one that is too large.
  int ChartsColumn();

  // --- Dashboard configurations: number and name ---

  // Puts each configuration's name at its number; the other elements become "". A number beyond
  // the last element is left out. Throws 13 for a number that is none, 6 for one beyond 16 bits.
  void ConfigsListGet(std::vector<std::string>& configs);
  // How many names the last ConfigsListGet stored.
  int cCount();
  // Writes the list anew from the names at their numbers; element 0 is not used.
  void ConfigsListPut(const std::vector<std::string>& configs);
  bool ConfigsListIsDefined();
  void ConfigsListIteratorInit();
  // Throws 13 for a number that is none, an empty one too, and 6 for one beyond 16 bits.
  void ConfigsListIteratorNext();
  bool ConfigsListIteratorIsMore();
  std::string ConfigsName();
  int ConfigsNum();

  // --- Menu table: item, sub-item, macro, button face ---

  void MenusListIteratorInit();
  // Throws 13 for a face that is no number, 6 for one beyond 16 bits.
  void MenusListIteratorNext();
  bool MenusListIteratorIsMore();
  std::string MenusListItem();
  std::string MenusListSubItem();
  std::string MenusListMacroName();
  // 0 for an empty cell.
  int MenusListFaceID();
  bool MenusListIsDefined();

 protected:
  // Finds the sheet and reads where its lists are; fixed until the next Init. Without a Reference
  // Sheet the object stays unusable; missing flags are reported and leave it usable.
  bool Bind() override;

 private:
  enum List { kNames, kKeys, kKeyColumns, kKeySheets, kDiscrepancies, kMenus, kCharts, kConfigs };
  static constexpr int kLists = kConfigs + 1;

  // Where an iterator stands.
  struct Iteration {
    int row = 0;
    bool is_more = false;
  };
  struct MenuEntry {
    std::string item;
    std::string sub_item;
    std::string macro_name;
    int face_id = 0;
  };
  struct ChartEntry {
    std::string title;
    int column = 0;
  };
  struct ConfigEntry {
    std::string name;
    int number = 0;
  };

  void ReadListFlags();
  void ReportMissingFlags();

  int column_of(List list) const { return list_columns_[list]; }
  bool IsDefined(List list) const;
  // Whether an iteration was begun.
  bool BeginIteration(List list, Iteration& iteration);

  // The last row of the list whose length the column decides.
  int LastRowOf(int length_column);
  void SelectList(int first_column, int last_column, int length_column);
  // Selects the cell above the list that starts in the column.
  void SelectHeading(int column);
  // What is selected in the application. Throws 91 when that is no cells.
  host::RangePtr Selection();
  // Selects the keys list and sorts it by two of its columns.
  void SortKeysList(List first_key, List second_key);
  void SortNamesList(int first_key_column, int second_key_column);
  void SortSelection(int first_key_column, int second_key_column);
  // Null when there is nothing to write.
  host::RangePtr LoadColumn(int column, const std::vector<std::string>& values, int count);
  std::string TextAt(int row, int column);
  std::string TrimmedTextAt(int row, int column);

  host::WorksheetPtr sheet_;
  // The row of each list's first entry.
  int lists_row_ = 0;
  // The first column of each list, indexed by List; 0 when its flag is missing.
  std::array<int, kLists> list_columns_{};

  Iteration menu_iteration_;
  MenuEntry menu_;
  Iteration chart_iteration_;
  ChartEntry chart_;
  Iteration config_iteration_;
  ConfigEntry config_;
  int config_count_ = 0;
};

}  // namespace vantora
