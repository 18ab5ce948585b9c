#include "package/sheet_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "formula/lexical.h"
#include "package/row_tag.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// A group's number beyond it is no group that a sheet can have.
constexpr std::uint32_t kMostSharedFormulas = 1 << 24;

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
  text = Trimmed(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  Number number{};
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// Days from the first of January 1970 of a day in the Gregorian calendar.
std::int64_t DaysOf(int year, int month, int day) {
  year -= month <= 2;
  std::int64_t era = year / 400;
  int year_of_era = year - static_cast<int>(era) * 400;
  int day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year -
         719468;
}

// The serial number of "2024-01-31", "2024-01-31T12:00:00" or "12:00:00"; nullopt for other texts.
std::optional<double> ParseDate(std::string_view text, bool date_1904) {
  auto part = [&](std::size_t at, std::size_t length) -> std::optional<int> {
    return at + length <= text.size() ? ParseNumber<int>(text.substr(at, length)) : std::nullopt;
  };
  text = Trimmed(text);
  if (text.ends_with('Z')) text.remove_suffix(1);
  double serial = 0;
  if (text.size() >= 10 && text[4] == '-' && text[7] == '-') {
    auto year = part(0, 4);
    auto month = part(5, 2);
    auto day = part(8, 2);
    if (!year || !month || !day || *month < 1 || *month > 12) return std::nullopt;
    // Serial 60 is a 29th of February 1900 that never was; days before it count one less.
    std::int64_t days = DaysOf(*year, *month, *day) + 25569;
    serial = static_cast<double>(date_1904 ? days - 1462 : days < 61 ? days - 1 : days);
    text.remove_prefix(10);
    if (text.empty()) return serial;
    if (text.front() != 'T') return std::nullopt;
    text.remove_prefix(1);
  }
  auto hour = part(0, 2);
  auto minute = part(3, 2);
  std::optional<double> second = text.size() > 6 ? ParseNumber<double>(text.substr(6)) : 0.0;
  if (!hour || !minute || !second || text[2] != ':') return std::nullopt;
  return serial + (*hour * 3600 + *minute * 60 + *second) / 86400;
}

// Moves a relative part that runs off the sheet round to its other end, as Excel reads the members
// of a shared formula.
int Wrapped(int offset, int position, int last) {
  int target = position + offset;
  if (target < 1) return offset + last;
  if (target > last) return offset - last;
  return offset;
}

Formula WrapReferences(const Formula& formula, CellAddress cell) {
  Formula wrapped = formula;
  for (Reference& reference : wrapped.references) {
    if (!reference.row1_absolute) reference.row1 = Wrapped(reference.row1, cell.row, kMaxRow);
    if (!reference.row2_absolute) reference.row2 = Wrapped(reference.row2, cell.row, kMaxRow);
    if (!reference.column1_absolute) {
      reference.column1 = Wrapped(reference.column1, cell.column, kMaxColumn);
    }
    if (!reference.column2_absolute) {
      reference.column2 = Wrapped(reference.column2, cell.column, kMaxColumn);
    }
  }
  return wrapped;
}

bool AllOnSheet(const Formula& formula, CellAddress cell) {
  return std::all_of(formula.references.begin(), formula.references.end(),
                     [&](const Reference& reference) {
                       return reference.kind == Reference::Kind::kError || reference.At(cell);
                     });
}

class SheetReader {
 public:
  SheetReader(std::string_view text, WorkbookModel& model, SheetModel& sheet, SheetMarkup& markup,
              SheetRoom& room)
      : xml_(text), model_(model), sheet_(sheet), markup_(markup), room_(room) {}

  void Read() {
    while (xml_.Next() != Token::kStart) {
    }
    std::string_view root = xml_.name();
    markup_.prefix = root.substr(0, root.size() - xml_.local_name().size());
    markup_.start = xml_.document().substr(0, xml_.end());
    if (xml_.is_empty()) Fail("the sheet has no content");
    std::size_t from = xml_.end();
    for (Token token = xml_.Next(); token != Token::kEnd; token = xml_.Next()) {
      if (token != Token::kStart) continue;
      ReadChild(from);
      from = xml_.end();
    }
    while (xml_.Next() != Token::kDone) {
    }
    markup_.end = xml_.document().substr(from);
    if (sheet_.is_worksheet && !has_cells_) KeepPlaceOfCells();
    LoadPending();
    FillDataTables();
  }

 private:
  struct CellParts {
    std::string_view type;
    std::string_view value;  // raw
    bool has_value = false;
    std::string inline_text;
    FormulaId formula = 0;
    bool waits_for_group = false;
    std::uint32_t group = 0;
  };
  // A member of a shared formula that stands before the cell with the text.
  struct Pending {
    CellAddress cell;
    CellValue value;
    StyleId style;
    std::uint32_t group;
  };
  struct DataTable {
    Area area;
    FormulaId formula;
  };

  [[noreturn]] void Fail(const std::string& what) const {
    throw XmlError(what, xml_.begin(), FileError::Code::kBadContent);
  }
  [[noreturn]] void FailCell(CellAddress cell, const std::string& what) const {
    Fail("the cell " + ToA1(cell) + " " + what);
  }

  void ReadChild(std::size_t from) {
    std::string name(xml_.local_name());
    if (name == "sheetData" && sheet_.is_worksheet) {
      if (std::exchange(has_cells_, true)) Fail("a second element \"sheetData\"");
      if (!xml_.is_empty()) ReadRows();
      markup_.elements.push_back({std::move(name), {}});
      return;
    }
    if (name == "sheetProtection") {
      sheet_.is_protected = IsTrue(xml_.Attribute("sheet").value_or(""));
    }
    if (name == "sheetFormatPr") ReadRowDefaults();
    if (name == "cols") {
      ReadColumns();
    } else {
      xml_.SkipElement();
    }
    Claim(2 * sizeof(std::string));
    markup_.elements.push_back(
        {std::move(name), std::string(xml_.document().substr(from, xml_.end() - from))});
  }

  // For the cells that a sheet without any may get.
  void KeepPlaceOfCells() {
    const bool changed = markup_.changed;
    markup_.FindOrInsert("sheetData");
    markup_.changed = changed;
  }

  void ReadColumns() {
    if (xml_.is_empty()) return;
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      ColumnFormat format;
      for (const XmlAttribute& attribute : xml_.attributes()) {
        if (attribute.name == "min") {
          format.first = Number<int>(attribute.value);
        } else if (attribute.name == "max") {
          format.last = Number<int>(attribute.value);
        } else if (attribute.name == "style") {
          format.style = Number<StyleId>(attribute.value);
        } else {
          format.attributes += " " + std::string(attribute.name) + "=\"" +
                               EncodeXmlAttribute(DecodeXml(attribute.value)) + "\"";
        }
      }
      xml_.SkipElement();
      const auto& formats = sheet_.column_formats;
      if (format.first < 1 || format.last < format.first || format.last > kMaxColumn ||
          (!formats.empty() && format.first <= formats.back().last)) {
        Fail("the column formats are out of order");
      }
      sheet_.column_formats.push_back(std::move(format));
    }
  }

  void ReadRowDefaults() {
    RowFormat standard;
    // Rows that the part does not mention are hidden.
    standard.hidden = IsTrue(xml_.Attribute("zeroHeight").value_or(""));
    sheet_.rows.SetStandard(standard);
    auto height = xml_.Attribute("defaultRowHeight");
    sheet_.standard_row_height = ParseNumber<double>(height.value_or("")).value_or(15);
  }

  void ReadRows() {
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      if (xml_.local_name() == "row") {
        ReadRow();
      } else {
        xml_.SkipElement();
      }
    }
  }

  void ReadRow() {
    const RowTag tag = ReadRowTag(xml_);
    const int row = tag.number.data() ? Number<int>(tag.number) : row_ + 1;
    if (row <= row_ || row > kMaxRow) {
      Fail("the row " + std::to_string(row) + " is out of order");
    }
    row_ = row;
    column_ = 0;
    if (auto style = tag.Style())
      sheet_.row_styles.emplace_hint(sheet_.row_styles.end(), row, *style);
    sheet_.rows.Load(row, tag.Format());
    Claim(sizeof(RowTable::Entry));
    if (xml_.is_empty()) return;
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      if (xml_.local_name() == "c") {
        ReadCell();
      } else {
        xml_.SkipElement();
      }
    }
  }

  void ReadCell() {
    CellAddress cell{row_, column_ + 1};
    StyleId style = 0;
    CellParts parts;
    for (const XmlAttribute& attribute : xml_.attributes()) {
      if (attribute.name == "r") {
        cell = ParseCellPlace(attribute.value, xml_.begin());
      } else if (attribute.name == "s") {
        style = Number<StyleId>(attribute.value);
      } else if (attribute.name == "t") {
        parts.type = attribute.value;
      }
    }
    if (cell.row != row_ || cell.column <= column_ || cell.column > kMaxColumn) {
      FailCell(cell, "is out of order");
    }
    column_ = cell.column;
    if (!xml_.is_empty()) ReadCellContent(cell, parts);
    CellValue value = ValueOf(cell, parts);
    if (parts.waits_for_group) {
      pending_.push_back({cell, value, style, parts.group});
      Claim(sizeof(Pending));
    } else {
      Load(cell, value, parts.formula, style);
    }
  }

  void ReadCellContent(CellAddress cell, CellParts& parts) {
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      std::string_view name = xml_.local_name();
      if (name == "v") {
        parts.value = RawText();
        parts.has_value = true;
      } else if (name == "f") {
        ReadFormula(cell, parts);
      } else if (name == "is") {
        parts.inline_text = RichText();
      } else {
        xml_.SkipElement();
      }
    }
  }

  // The text of an element without children, as it stands.
  std::string_view RawText() {
    if (xml_.is_empty() || xml_.Next() == Token::kEnd) return {};
    if (xml_.token() != Token::kText || xml_.is_cdata()) Fail("a value that is no text");
    std::string_view text = xml_.text();
    if (xml_.Next() != Token::kEnd) Fail("a value that is no text");
    return text;
  }

  std::string RichText() {
    std::string joined;
    if (xml_.is_empty()) return joined;
    const std::size_t outside = xml_.depth();
    while (xml_.Next() != Token::kEnd || xml_.depth() > outside) {
      if (xml_.token() != Token::kStart) continue;
      if (xml_.local_name() == "rPh") {
        xml_.SkipElement();
      } else if (xml_.local_name() == "t") {
        joined += xml_.ElementText();
      }
    }
    return DecodeSpreadsheetText(EncodeXmlText(joined));
  }

  void ReadFormula(CellAddress cell, CellParts& parts) {
    std::string_view type, area, first_input, second_input;
    std::optional<std::uint32_t> group;
    bool two_inputs = false;
    bool by_row = false;
    for (const XmlAttribute& attribute : xml_.attributes()) {
      if (attribute.name == "t") {
        type = attribute.value;
      } else if (attribute.name == "si") {
        group = Number<std::uint32_t>(attribute.value);
      } else if (attribute.name == "ref") {
        area = attribute.value;
      } else if (attribute.name == "r1") {
        first_input = attribute.value;
      } else if (attribute.name == "r2") {
        second_input = attribute.value;
      } else if (attribute.name == "dt2D") {
        two_inputs = IsTrue(attribute.value);
      } else if (attribute.name == "dtr") {
        by_row = IsTrue(attribute.value);
      }
    }
    if (type == "dataTable") {
      xml_.SkipElement();
      std::string inputs(by_row || two_inputs ? first_input : std::string_view{});
      inputs += ",";
      inputs += two_inputs ? second_input : by_row ? std::string_view{} : first_input;
      ReadDataTable(cell, area, inputs, parts);
      return;
    }
    std::string text = xml_.ElementText();
    std::string_view formula = text;
    if (formula.starts_with('=')) formula.remove_prefix(1);
    if (type == "shared" && group) {
      if (*group >= kMostSharedFormulas) FailCell(cell, "has a malformed shared formula");
      parts.group = *group;
      if (formula.empty()) {
        UseGroup(cell, parts);
        return;
      }
      parts.formula = Intern(formula, cell);
      if (groups_.size() <= *group) groups_.resize(*group + 1);
      groups_[*group] = parts.formula;
      return;
    }
    if (formula.empty()) return;
    parts.formula = Intern(formula, cell);
    if (type == "array") ReadArrayArea(cell, area);
  }

  // The formula stands in the first cell of its area; written anywhere else it counts for its own
  // cell.
  void ReadArrayArea(CellAddress cell, std::string_view text) {
    Area area{cell.row, cell.column, cell.row, cell.column};
    std::optional<Area> written = ParseA1(text);
    if (written && written->first_row == cell.row && written->first_column == cell.column) {
      area = *written;
    }
    TakeArrayCells(cell, area, "an array formula");
    sheet_.arrays.push_back({area});
  }

  // A table over the whole sheet is short in the file, and so are thousands of them.
  void TakeArrayCells(CellAddress cell, const Area& area, const std::string& what) {
    array_cells_ += static_cast<std::uint64_t>(area.rows()) * static_cast<unsigned>(area.columns());
    if (array_cells_ > kMostArrayCells) {
      FailCell(cell, "has " + what + " over more cells than a sheet's results can fill");
    }
  }

  void ReadDataTable(CellAddress cell, std::string_view area, const std::string& inputs,
                     CellParts& parts) {
    std::optional<Area> place = ParseA1(area);
    if (!place) FailCell(cell, "has a malformed data table");
    TakeArrayCells(cell, *place, "a data table");
    parts.formula = Intern(std::string(kDataTableFormula) + inputs + ")", cell);
    data_tables_.push_back({*place, parts.formula});
  }

  FormulaId Intern(std::string_view formula, CellAddress cell) {
    return Intern(ParseFormula(formula, cell, model_));
  }

  FormulaId Intern(Formula formula) {
    const std::size_t size = sizeof formula + 2 * formula.text.size() +
                             formula.references.size() * sizeof(Reference) +
                             formula.names.size() * sizeof(std::string);
    const FormulaId known = sheet_.formulas.size();
    const FormulaId id = sheet_.formulas.Intern(std::move(formula));
    if (id > known) Claim(size);
    return id;
  }

  // Tells that the sheet takes so many bytes more. Claims are passed on in lots, as all sheets
  // share the room.
  void Claim(std::size_t bytes) {
    constexpr std::size_t kLot = 1 << 20;
    claimed_ += bytes;
    if (claimed_ < kLot) return;
    if (room_.used.fetch_add(claimed_) + claimed_ > room_.limit) {
      throw XmlError("the workbook has more cells, rows and formulas than can be held in memory",
                     xml_.begin(), FileError::Code::kTooLarge);
    }
    claimed_ = 0;
  }

  void UseGroup(CellAddress cell, CellParts& parts) {
    if (parts.group >= groups_.size() || groups_[parts.group] == 0) {
      parts.waits_for_group = true;
      return;
    }
    parts.formula = MemberFormula(groups_[parts.group], cell);
  }

  FormulaId MemberFormula(FormulaId group, CellAddress cell) {
    const Formula& formula = sheet_.formulas[group];
    if (AllOnSheet(formula, cell)) return group;
    return Intern(WrapReferences(formula, cell));
  }

  // A formula that was written without its value has yet to be calculated.
  void Load(CellAddress cell, const CellValue& value, FormulaId formula, StyleId style) {
    const std::size_t before = sheet_.cells.bytes();
    sheet_.cells.Load(cell, value, formula, style);
    Claim(sheet_.cells.bytes() - before);
    if (formula != 0 && value.kind == CellKind::kBlank) {
      sheet_.cells.SetFlag(cell, kNeedsCalculation, true);
    }
  }

  void LoadPending() {
    for (const Pending& pending : pending_) {
      FormulaId group = pending.group < groups_.size() ? groups_[pending.group] : 0;
      if (group == 0) FailCell(pending.cell, "belongs to a shared formula that is missing");
      Load(pending.cell, pending.value, MemberFormula(group, pending.cell), pending.style);
    }
  }

  // Every cell of a data table is calculated, though only the first one says so.
  void FillDataTables() {
    for (const DataTable& table : data_tables_) {
      int last = std::min(table.area.last_column, sheet_.cells.LastColumn());
      for (int column = table.area.first_column; column <= last; ++column) {
        sheet_.cells.ForEachInColumn(
            column, table.area.first_row, table.area.last_row, [&](int row, const Cell& cell) {
              sheet_.cells.Load({row, column}, cell.value, table.formula, cell.style);
            });
      }
    }
  }

  CellValue TextValue(const std::string& text) {
    Claim(text.size());
    return CellValue::Text(model_.strings.Intern(text));
  }

  CellValue ValueOf(CellAddress cell, const CellParts& parts) {
    if (parts.type == "inlineStr") return TextValue(parts.inline_text);
    if (!parts.has_value) return CellValue::Blank();
    if (parts.type.empty() || parts.type == "n") {
      if (Trimmed(parts.value).empty()) return CellValue::Blank();
      std::optional<double> number = ParseNumber<double>(parts.value);
      if (!number || !std::isfinite(*number)) FailValue(cell, parts);
      return CellValue::Number(*number);
    }
    if (parts.type == "s") {
      std::optional<TextId> index = ParseNumber<TextId>(parts.value);
      if (!index || *index >= model_.strings.shared_count()) FailValue(cell, parts);
      return CellValue::Text(*index);
    }
    if (parts.type == "str") {
      return TextValue(DecodeSpreadsheetText(parts.value));
    }
    if (parts.type == "b") return CellValue::Boolean(IsTrue(Trimmed(parts.value)));
    if (parts.type == "e") {
      return CellValue::Error(ErrorOfName(Trimmed(parts.value)).value_or(CellError::kValue));
    }
    if (parts.type == "d") {
      std::optional<double> serial = ParseDate(parts.value, model_.date_1904);
      if (!serial) FailValue(cell, parts);
      return CellValue::Number(*serial);
    }
    FailCell(cell, "has the unknown type \"" + std::string(parts.type) + "\"");
  }

  [[noreturn]] void FailValue(CellAddress cell, const CellParts& parts) const {
    FailCell(cell, "has the value \"" + std::string(parts.value.substr(0, 40)) +
                       "\", which its type \"" + std::string(parts.type) + "\" does not allow");
  }

  template <typename T>
  T Number(std::string_view text) const {
    std::optional<T> number = ParseNumber<T>(text);
    if (!number) Fail("\"" + std::string(text.substr(0, 40)) + "\" where a number is needed");
    return *number;
  }

  XmlScanner xml_;
  WorkbookModel& model_;
  SheetModel& sheet_;
  SheetMarkup& markup_;
  bool has_cells_ = false;
  int row_ = 0;
  int column_ = 0;
  // By the group's number; 0 where no text has come yet.
  std::vector<FormulaId> groups_;
  std::vector<Pending> pending_;
  std::vector<DataTable> data_tables_;
  std::uint64_t array_cells_ = 0;
  SheetRoom& room_;
  std::size_t claimed_ = 0;
};

}  // namespace

namespace {

// The rows below the heading of a filter that has a condition.
std::optional<std::pair<int, int>> FilteredRows(const SheetMarkup& markup) {
  const MarkupElement* filter = markup.Find("autoFilter");
  if (!filter) return std::nullopt;
  std::optional<Area> area;
  bool chooses = false;
  XmlScanner xml(filter->text);
  while (xml.Next() != Token::kDone) {
    if (xml.token() != Token::kStart) continue;
    if (xml.local_name() == "autoFilter") area = ParseA1(xml.Attribute("ref").value_or(""));
    if (xml.local_name() == "filterColumn") chooses = true;
  }
  if (!area || !chooses) return std::nullopt;
  return std::pair(area->first_row + 1, area->last_row);
}

}  // namespace

void ReadSheet(std::string_view text, WorkbookModel& model, SheetModel& sheet, SheetMarkup& markup,
               SheetRoom& room) {
  SheetReader(text, model, sheet, markup, room).Read();
  sheet.filtered_rows = FilteredRows(markup);
}

CellAddress ParseCellPlace(std::string_view text, std::size_t offset) {
  CellAddress cell{0, 0};
  std::size_t at = 0;
  while (at < text.size() && at < 3) {
    char letter = static_cast<char>(text[at] & ~0x20);
    if (letter < 'A' || letter > 'Z') break;
    cell.column = cell.column * 26 + (letter - 'A' + 1);
    ++at;
  }
  const char* end = text.data() + text.size();
  auto [parsed, error] = std::from_chars(text.data() + at, end, cell.row);
  if (at == 0 || error != std::errc() || parsed != end || cell.row < 1 || cell.row > kMaxRow ||
      cell.column > kMaxColumn) {
    throw XmlError("\"" + std::string(text.substr(0, 40)) + "\" is no place of a cell", offset,
                   FileError::Code::kBadContent);
  }
  return cell;
}

bool IsTrue(std::string_view value) { return value == "1" || value == "true"; }

}  // namespace vantora::embedded
