// Changes to a workbook's own parts: its main part, shared strings, what stands before a sheet's
// cells.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formula/workbook_model.h"
#include "package/sheet_markup.h"
#include "package/workbook_reader.h"

namespace vantora::embedded {

// What the main part is to say.
struct WorkbookChanges {
  bool calculate_on_opening = false;
  // Whether the workbook is calculated manually; nullopt leaves what it says.
  std::optional<bool> manual_calculation = std::nullopt;
  // The relationships of the sheets' parts, by sheet id.
  std::vector<std::string> sheet_relationships;
};

// The main part's text with the changes and the model's names; nullopt when it stays. Throws
// XmlError.
std::optional<std::string> PatchWorkbook(std::string_view text, const WorkbookModel& model,
                                         const WorkbookChanges& changes);

// The texts that cells hold beyond the shared strings table as it was read, each with its place in
// the table to be.
class NewSharedStrings {
 public:
  explicit NewSharedStrings(const StringPool& strings) : strings_(strings) {}
  void Add(TextId id);
  TextId IndexOf(TextId id) const;
  bool empty() const { return added_.empty(); }
  // `original` with the texts added ("" where there is no table yet). `count` is the number of
  // cells with a shared string. Throws XmlError.
  std::string AppendTo(std::string_view original, std::size_t count) const;

 private:
  const StringPool& strings_;
  std::vector<TextId> added_;
  std::unordered_map<TextId, TextId> index_;
};

// Puts the columns' formats as the model has them in the place of <cols>. `max_digit_width` as of
// Styles.
void WriteColumnFormats(SheetMarkup& markup, const std::vector<ColumnFormat>& formats,
                        int max_digit_width);
// Makes <sheetFormatPr> say how deep the rows' outline is.
void WriteRowOutline(SheetMarkup& markup, const SheetModel& sheet);
// Makes <dimension> say `area` (nullopt: an empty sheet).
void WriteDimension(SheetMarkup& markup, const std::optional<Area>& area);

}  // namespace vantora::embedded
