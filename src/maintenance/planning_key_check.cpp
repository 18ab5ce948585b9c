#include "maintenance/planning_key_check.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"

namespace vantora {
namespace {

struct Key {
  std::string text;
  // The same for keys that differ in upper and lower case alone.
  std::u32string folded;
  int row;
  int column;
  bool is_definition;
};

struct KeySheet {
  std::string name;
  std::vector<Key> keys;
};

void ReadColumn(host::Worksheet& sheet, int column, int first_row, int last_row, bool defines,
                std::vector<Key>& keys) {
  bool below_heading = false;
  for (int row = first_row; row <= last_row; ++row) {
    const Value value = sheet.Cells(row, column)->Value();
    if (value.IsEmpty() || value.IsError() || (!below_heading && !value.IsText())) continue;
    std::string text(TrimBlanks(ValueToText(value)));
    if (EqualsIgnoreCase(text, model::kKeyHeading)) {
      below_heading = true;
    } else if (below_heading && !text.empty()) {
      std::u32string folded = CaseFolded(text);
      keys.push_back({std::move(text), std::move(folded), row, column, defines});
    }
  }
}

KeySheet ReadSheet(const host::WorksheetPtr& sheet) {
  KeySheet result{.name = sheet->Name(), .keys = {}};
  const bool has_key_list = SheetHasFlag(sheet, model::kKeyListSheetFlag);
  const host::RangePtr used = sheet->UsedRange();
  const int first_row = used->Row();
  const int last_row = first_row + used->RowsCount() - 1;
  const int first_column = used->Column();
  const int last_column = first_column + used->ColumnsCount() - 1;
  for (int column = first_column; column <= last_column; ++column) {
    ReadColumn(*sheet, column, first_row, last_row, has_key_list && column == model::kKeyColumn,
               result.keys);
  }
  return result;
}

std::vector<KeySheet> ReadSheets(host::Application& application) {
  std::vector<KeySheet> sheets;
  const host::WorksheetPtr reference_sheet =
      FindFlaggedSheet(application, model::kReferenceSheetFlag);
  const host::WorkbookPtr workbook = application.ActiveWorkbook();
  if (!workbook) return sheets;
  for (const host::WorksheetPtr& sheet : workbook->Worksheets()) {
    // What stands on the Reference Sheet is what this check wrote before.
    if (reference_sheet && sheet->IsSame(*reference_sheet)) continue;
    sheets.push_back(ReadSheet(sheet));
  }
  return sheets;
}

// What all sheets together define and use.
class KeyIndex {
 public:
  explicit KeyIndex(const std::vector<KeySheet>& sheets) {
    for (const KeySheet& sheet : sheets) {
      for (const Key& key : sheet.keys) {
        if (key.is_definition) {
          ++definitions_[key.folded];
        } else {
          used_.insert(key.folded);
        }
      }
    }
  }

  int DefinitionsOf(const Key& key) const {
    auto found = definitions_.find(key.folded);
    return found == definitions_.end() ? 0 : found->second;
  }
  bool IsUsed(const Key& key) const { return used_.contains(key.folded); }

 private:
  std::unordered_map<std::u32string, int> definitions_;
  std::unordered_set<std::u32string> used_;
};

using Lines = std::vector<std::string>;
using KeySet = std::unordered_set<std::u32string>;

void AddDuplicates(const KeySheet& sheet, const KeyIndex& index, Lines& lines) {
  KeySet listed;
  std::string duplicates;
  for (const Key& key : sheet.keys) {
    if (!key.is_definition || index.DefinitionsOf(key) < 2) continue;
    if (!listed.insert(key.folded).second) continue;
    if (!duplicates.empty()) duplicates += ", ";
    duplicates += key.text;
  }
  if (!duplicates.empty()) lines.push_back("Duplicate keys: " + duplicates);
}

void AddMissing(const KeySheet& sheet, const KeyIndex& index, Lines& lines) {
  bool any = false;
  for (const Key& key : sheet.keys) {
    if (key.is_definition || index.DefinitionsOf(key) > 0) continue;
    if (!any) lines.push_back("Keys used on " + sheet.name + " Sheet but not in model: ");
    any = true;
    lines.push_back("missing key " + key.text + " used on row " + std::to_string(key.row));
  }
}

// `told` holds the keys that earlier sheets told of.
void AddUnused(const KeySheet& sheet, const KeyIndex& index, KeySet& told, Lines& lines) {
  for (const Key& key : sheet.keys) {
    if (!key.is_definition || index.IsUsed(key)) continue;
    if (told.insert(key.folded).second) lines.push_back("unused key " + key.text);
  }
}

Lines Discrepancies(const std::vector<KeySheet>& sheets) {
  const KeyIndex index(sheets);
  Lines all;
  KeySet told_unused;
  for (const KeySheet& sheet : sheets) {
    Lines lines;
    AddDuplicates(sheet, index, lines);
    AddMissing(sheet, index, lines);
    AddUnused(sheet, index, told_unused, lines);
    if (lines.empty()) continue;
    all.push_back(sheet.name + " Sheet Discrepancies: ");
    all.insert(all.end(), lines.begin(), lines.end());
  }
  return all;
}

void WriteKeys(const std::vector<KeySheet>& sheets, clsRefSheet& ref_sheet) {
  struct Entry {
    const Key* key;
    const std::string* sheet;
  };
  std::vector<Entry> entries;
  for (const KeySheet& sheet : sheets) {
    for (const Key& key : sheet.keys) entries.push_back({&key, &sheet.name});
  }
  // Put in order here as well: the list's own sorting leaves one alone that reaches the end of the
  // used range.
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.key->folded < b.key->folded; });
  Lines keys;
  Lines names;
  Lines columns;
  for (const Entry& entry : entries) {
    keys.push_back(entry.key->text);
    names.push_back(*entry.sheet);
    columns.push_back(std::to_string(entry.key->column));
  }
  const int count = static_cast<int>(entries.size());
  ref_sheet.KeysListLoadKeysCol(keys, count);
  ref_sheet.KeysListLoadSheetsCol(names, count);
  ref_sheet.KeysListLoadColsCol(columns, count);
  ref_sheet.KeysListSortbyKey();
}

}  // namespace

void CheckPlanningKeys(host::Application& application, clsRefSheet& ref_sheet,
                       UserInterface& user_interface) {
  if (!ref_sheet.KeysListIsDefined() || !ref_sheet.DiscrListIsDefined()) return;
  ref_sheet.KeysListClear();
  ref_sheet.DiscrListClear();
  const std::vector<KeySheet> sheets = ReadSheets(application);
  WriteKeys(sheets, ref_sheet);
  const Lines lines = Discrepancies(sheets);
  ref_sheet.DiscrListLoadCol(lines, static_cast<int>(lines.size()));
  ref_sheet.DiscrListDeselect();
  ref_sheet.KeysListResetSortButtons();
  if (lines.empty()) return;
  user_interface.MessageBox("Please see Reference Sheet for list of Planning Key discrepancies",
                            kOkOnly | kInformation, kProductName);
}

}  // namespace vantora
