#include "host/row_edits.h"

#include "host/objects.h"
#include "host/sheet_protection.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

constexpr double kMaxRowHeight = 409.5;

void RefuseProperty(const std::string& property, const std::string& why) {
  Refuse("Unable to set the " + property + " property of the Range class: " + why);
}

void RefuseIfProtected(OpenWorkbook& book, int sheet, const std::string& property) {
  if (MayFormatRows(book, sheet)) return;
  RefuseProperty(property,
                 "the sheet \"" + book.sheet(sheet).name + "\" is protected. Unprotect it first.");
}

bool IsHidden(const RowFormat& format) { return format.hidden || format.height == 0.0; }

template <typename Edit>
void EditRows(OpenWorkbook& book, int sheet_id, const Area& area, Edit edit) {
  SheetModel& sheet = book.sheet(sheet_id);
  bool changes_hidden = false;
  sheet.rows.EditRows(area.first_row, area.last_row, [&](RowFormat& format) {
    const bool was_hidden = IsHidden(format);
    edit(format);
    changes_hidden = changes_hidden || IsHidden(format) != was_hidden;
  });
  sheet.rows_changed = true;
  if (!changes_hidden) return;
  book.calculator().RowsHidden(sheet_id, {area.first_row, 1, area.last_row, kMaxColumn});
}

// Whether the row that sums up a group stands below it.
bool SummaryIsBelow(OpenWorkbook& book, int sheet) {
  const MarkupElement* properties = book.file().markup(sheet).Find("sheetPr");
  if (!properties) return true;
  XmlScanner xml(properties->text);
  while (xml.Next() != XmlScanner::Token::kDone) {
    if (xml.token() != XmlScanner::Token::kStart || xml.local_name() != "outlinePr") continue;
    auto below = xml.Attribute("summaryBelow");
    return !below || IsTrue(*below);
  }
  return true;
}

}  // namespace

bool RowsHidden(OpenWorkbook& book, int sheet, const Area& area) {
  const RowTable& rows = book.sheet(sheet).rows;
  for (int row = area.first_row; row <= area.last_row; ++row) {
    if (!IsHidden(rows.Of(row))) return false;
  }
  return true;
}

void SetRowsHidden(OpenWorkbook& book, int sheet, const Area& area, bool hidden) {
  RefuseIfProtected(book, sheet, "Hidden");
  EditRows(book, sheet, area, [&](RowFormat& format) {
    format.hidden = hidden;
    if (hidden || format.height != 0.0) return;
    format.height.reset();
    format.custom_height = false;
  });
}

double RowHeight(const SheetModel& sheet, const RowFormat& format) {
  return IsHidden(format) ? 0 : format.height.value_or(sheet.standard_row_height);
}

double RowHeight(OpenWorkbook& book, int sheet, int row) {
  const SheetModel& target = book.sheet(sheet);
  return RowHeight(target, target.rows.Of(row));
}

void SetRowHeight(OpenWorkbook& book, int sheet, const Area& area, double points) {
  RefuseIfProtected(book, sheet, "RowHeight");
  if (!(points >= 0 && points <= kMaxRowHeight)) {
    RefuseProperty("RowHeight", "a row is between 0 and 409.5 points high.");
  }
  EditRows(book, sheet, area, [&](RowFormat& format) {
    format.hidden = points == 0;
    if (points == 0) return;
    format.height = points;
    format.custom_height = true;
  });
}

int RowOutlineLevel(OpenWorkbook& book, int sheet, int row) {
  return book.sheet(sheet).rows.Of(row).outline_level + 1;
}

void SetRowOutlineLevel(OpenWorkbook& book, int sheet, const Area& area, int level) {
  RefuseIfProtected(book, sheet, "OutlineLevel");
  if (level < 1 || level > kMaxOutlineLevel + 1) {
    RefuseProperty("OutlineLevel", "a level is between 1 and 8.");
  }
  EditRows(book, sheet, area,
           [&](RowFormat& format) { format.outline_level = static_cast<std::uint8_t>(level - 1); });
}

void ShowRowLevels(OpenWorkbook& book, int sheet_id, int levels) {
  SheetModel& sheet = book.sheet(sheet_id);
  if (sheet.is_protected) {
    Refuse("ShowLevels method of Outline class failed: the sheet \"" + sheet.name +
           "\" is protected. Unprotect it first.");
  }
  if (levels < 0 || levels > kMaxOutlineLevel + 1) {
    Refuse("ShowLevels method of Outline class failed: there are levels 1 to 8.");
  }
  // 0 leaves the rows as they are.
  if (levels == 0) return;
  const int to_summary = SummaryIsBelow(book, sheet_id) ? 1 : -1;
  const std::vector<RowTable::Entry> before = sheet.rows.entries();
  for (const RowTable::Entry& entry : before) {
    const int level = entry.format.outline_level;
    if (level == 0) continue;
    const bool hidden = level >= levels;
    if (entry.format.hidden != hidden) {
      SetRowsHidden(book, sheet_id, {entry.row, 1, entry.row, kMaxColumn}, hidden);
    }
    const int summary = entry.row + to_summary;
    if (summary < 1 || summary > kMaxRow) continue;
    const RowFormat& sums_up = sheet.rows.Of(summary);
    if (sums_up.outline_level >= level) continue;
    // Excel marks only where a user sees the mark: not within a group that is hidden as a whole.
    const bool collapsed = hidden && sums_up.outline_level < levels;
    if (sums_up.collapsed == collapsed) continue;
    EditRows(book, sheet_id, {summary, 1, summary, kMaxColumn},
             [&](RowFormat& format) { format.collapsed = collapsed; });
  }
}

}  // namespace vantora::embedded
