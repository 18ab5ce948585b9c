#include "package/sheet_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>

#include "formula/lexical.h"
#include "package/cell_patch.h"
#include "package/row_tag.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

constexpr std::uint8_t kChanged = kValueChanged | kFormulaChanged | kStyleChanged;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

template <typename Number>
void AppendNumber(std::string& out, Number number) {
  char buffer[32];
  auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number);
  out.append(buffer, end);
}

// As ToA1, without a text of its own for each of millions of cells.
void AppendPlace(std::string& out, CellAddress cell) {
  char letters[3];
  int count = 0;
  for (int column = cell.column; column > 0; column = (column - 1) / 26) {
    letters[count++] = static_cast<char>('A' + (column - 1) % 26);
  }
  while (count > 0) out += letters[--count];
  AppendNumber(out, cell.row);
}

// Where the columns of the part stand now.
class ColumnMap {
 public:
  explicit ColumnMap(const CellStore& cells) {
    int last = cells.LastColumn();
    beyond_ = last + 1 - cells.OriginOf(last + 1);
    for (int column = 1; column <= last; ++column) {
      int origin = cells.OriginOf(column);
      if (origin != column) moved_ = true;
      if (origin == CellStore::kNewColumn) continue;
      if (static_cast<int>(current_.size()) <= origin) {
        current_.resize(static_cast<std::size_t>(origin) + 1, 0);
      }
      current_[static_cast<std::size_t>(origin)] = column;
    }
  }

  bool moved() const { return moved_; }
  int operator[](int origin) const {
    if (origin < static_cast<int>(current_.size()) && current_[origin] != 0) {
      return current_[origin];
    }
    return origin + beyond_;
  }
  std::string Area(std::string_view text) const {
    std::optional<embedded::Area> area = ParseA1(text);
    if (!area) return std::string(text);
    area->first_column = (*this)[area->first_column];
    area->last_column = (*this)[area->last_column];
    return ToA1(*area);
  }

 private:
  // By original column; 0 where none is known.
  std::vector<int> current_;
  int beyond_ = 0;
  bool moved_ = false;
};

// The cells that differ from the part, row by row.
class ChangedCells {
 public:
  explicit ChangedCells(const CellStore& cells) : cells_(cells) {}

  // Columns of the changed cells of a row, ascending. Rows are asked for in ascending order.
  const std::vector<int>& InRow(int row) {
    int band = (row - 1) / CellStore::kBlockRows;
    if (band != band_) LoadBand(band);
    return rows_[static_cast<std::size_t>((row - 1) % CellStore::kBlockRows)];
  }
  bool AnyInBand(int row) {
    InRow(row);
    return any_;
  }

 private:
  void LoadBand(int band) {
    band_ = band;
    any_ = false;
    for (auto& row : rows_) row.clear();
    int first = band * CellStore::kBlockRows + 1;
    for (int column = 1; column <= cells_.LastColumn(); ++column) {
      cells_.ForEachInColumn(column, first, first + CellStore::kBlockRows - 1,
                             [&](int row, const Cell& cell) {
                               if (!(cell.flags & kChanged)) return;
                               any_ = true;
                               rows_[static_cast<std::size_t>(row - first)].push_back(column);
                             });
    }
  }

  const CellStore& cells_;
  int band_ = -1;
  bool any_ = false;
  std::array<std::vector<int>, CellStore::kBlockRows> rows_;
};

class SheetDataWriter {
 public:
  SheetDataWriter(std::string_view original, const SheetMarkup& markup, const WorkbookModel& model,
                  const SheetModel& sheet, const SharedStringIndex& shared_string,
                  WrittenSheet& written)
      : original_(original),
        prefix_(markup.prefix),
        model_(model),
        sheet_(sheet),
        shared_string_(shared_string),
        written_(written),
        out_(written.text),
        columns_(sheet.cells),
        changed_(sheet.cells),
        next_style_(sheet.row_styles.begin()) {
    for (const ArrayFormula& array : sheet.arrays) {
      arrays_.emplace(CellAddress{array.area.first_row, array.area.first_column}, array.area);
    }
  }

  void Write() {
    if (original_.empty() || !FindSheetData()) {
      WriteNewSheetData();
      return;
    }
    XmlScanner& xml = *xml_;
    out_ += original_.substr(lead_begin_, xml.begin() - lead_begin_);
    if (xml.is_empty()) {
      WriteNewSheetData();
      return;
    }
    const std::string end_tag = "</" + std::string(xml.name()) + ">";
    out_ += original_.substr(xml.begin(), xml.end() - xml.begin());
    while (xml.Next() != Token::kEnd) {
      if (xml.token() == Token::kStart && xml.local_name() == "row") {
        MergeRow();
      } else {
        CopyElement();
      }
    }
    WriteNewRowsBefore(kMaxRow + 1);
    out_ += end_tag;
  }

 private:
  // What became of a shared formula whose text stands in one of its cells.
  struct Group {
    bool kept = false;
    int delta = 0;
  };

  // Moves the scanner to the start tag of <sheetData>.
  bool FindSheetData() {
    xml_.emplace(original_);
    XmlScanner& xml = *xml_;
    while (xml.Next() != Token::kStart) {
    }
    lead_begin_ = xml.end();
    while (xml.Next() != Token::kEnd) {
      if (xml.token() != Token::kStart) continue;
      if (xml.local_name() == "sheetData") return true;
      xml.SkipElement();
      lead_begin_ = xml.end();
    }
    return false;
  }

  void WriteNewSheetData() {
    std::size_t start = out_.size();
    out_ += "<" + prefix_ + "sheetData>";
    std::size_t inside = out_.size();
    WriteNewRowsBefore(kMaxRow + 1);
    if (out_.size() == inside) {
      out_.resize(start);
      out_ += "<" + prefix_ + "sheetData/>";
    } else {
      out_ += "</" + prefix_ + "sheetData>";
    }
  }

  // A token that is copied as it stands, with all that an element holds.
  void CopyElement() {
    std::size_t begin = xml_->begin();
    if (xml_->token() == Token::kStart) xml_->SkipElement();
    out_ += original_.substr(begin, xml_->end() - begin);
  }

  // Rows that the part does not have.
  void WriteNewRowsBefore(int row) {
    while (next_row_ < row) {
      if (!changed_.AnyInBand(next_row_)) {
        // On to the row behind the band, or to one in it that has something of its own.
        const int band_end =
            (next_row_ - 1) / CellStore::kBlockRows * CellStore::kBlockRows + CellStore::kBlockRows;
        next_row_ = std::min({row, band_end + 1, NextRowOfItsOwn()});
        if (next_row_ == row || next_row_ > band_end) continue;
      }
      WriteNewRow();
      ++next_row_;
    }
  }

  // The next row, from `next_row_` on, with a format, a height or the like.
  int NextRowOfItsOwn() {
    const auto& entries = sheet_.rows.entries();
    while (next_entry_ < entries.size() && entries[next_entry_].row < next_row_) ++next_entry_;
    while (next_style_ != sheet_.row_styles.end() && next_style_->first < next_row_) ++next_style_;
    return std::min(next_entry_ < entries.size() ? entries[next_entry_].row : kMaxRow + 1,
                    next_style_ != sheet_.row_styles.end() ? next_style_->first : kMaxRow + 1);
  }

  std::optional<StyleId> StyleOfRow(int row) const {
    auto style = sheet_.row_styles.find(row);
    if (style == sheet_.row_styles.end()) return std::nullopt;
    return style->second;
  }

  void WriteNewRow() {
    const std::vector<int>& columns = changed_.InRow(next_row_);
    const bool has_cells = std::any_of(columns.begin(), columns.end(), [&](int column) {
      return IsWritten({next_row_, column}, sheet_.cells.Get({next_row_, column}));
    });
    if (!has_cells && NextRowOfItsOwn() != next_row_) return;
    out_ += "<" + prefix_ + "row r=\"" + std::to_string(next_row_) + "\"";
    AppendRowAttributes(out_, sheet_.rows.Of(next_row_), StyleOfRow(next_row_));
    if (!has_cells) {
      out_ += "/>";
      return;
    }
    out_ += ">";
    for (int column : columns) WriteNewCell({next_row_, column});
    out_ += "</" + prefix_ + "row>";
  }

  // The scanner stands at the row's start tag.
  void MergeRow() {
    XmlScanner& xml = *xml_;
    const RowTag tag = ReadRowTag(xml);
    int row = next_in_part_;
    if (tag.number.data()) {
      std::from_chars(tag.number.data(), tag.number.data() + tag.number.size(), row);
    }
    next_in_part_ = row + 1;
    WriteNewRowsBefore(row);
    next_row_ = row + 1;
    const std::vector<int>& changed = changed_.InRow(row);
    const std::string name(xml.name());
    const bool is_empty = xml.is_empty();
    AppendRowTag(row, tag, changed);
    column_in_part_ = 1;
    auto next_changed = changed.begin();
    std::size_t inside = out_.size();
    while (!is_empty && xml.Next() != Token::kEnd) {
      if (xml.token() == Token::kStart && xml.local_name() == "c") {
        ReadOriginalCell(xml, cell_);
        MergeCell(row, next_changed, changed.end());
      } else {
        CopyElement();
      }
    }
    for (; next_changed != changed.end(); ++next_changed) WriteNewCell({row, *next_changed});
    if (!is_empty) {
      out_ += "</" + name + ">";
    } else if (out_.size() > inside) {
      // The tag ended with "/>".
      out_.erase(inside - 2, 1);
      out_ += "</" + name + ">";
    }
  }

  void AppendRowTag(int row, const RowTag& tag, const std::vector<int>& changed) {
    patch_.Reset(original_);
    if (!tag.number.data()) {
      std::size_t after_name = xml_->begin() + 1 + xml_->name().size();
      patch_.Replace(after_name, after_name, " r=\"" + std::to_string(row) + "\"");
    }
    // The spans only help to read faster; where they may no longer hold they go.
    if (tag.spans.data() && (columns_.moved() || !Covers(tag.spans, changed))) {
      patch_.RemoveAttribute(tag.spans);
    }
    PatchRowTag(tag, xml_->end() - (xml_->is_empty() ? 2 : 1), sheet_.rows.Of(row), StyleOfRow(row),
                patch_);
    patch_.AppendTo(out_, xml_->begin(), xml_->end());
  }

  static bool Covers(std::string_view spans, const std::vector<int>& columns) {
    if (columns.empty()) return true;
    int first = 0;
    int last = 0;
    const char* end = spans.data() + spans.size();
    auto colon = std::from_chars(spans.data(), end, first);
    if (colon.ptr == end || *colon.ptr != ':') return false;
    auto rest = std::from_chars(colon.ptr + 1, end, last);
    return rest.ptr == end && first <= columns.front() && columns.back() <= last;
  }

  void MergeCell(int row, std::vector<int>::const_iterator& next_changed,
                 std::vector<int>::const_iterator end) {
    int origin =
        cell_.place.data() ? ParseCellPlace(cell_.place, cell_.begin).column : column_in_part_;
    column_in_part_ = origin + 1;
    CellAddress place{row, columns_[origin]};
    for (; next_changed != end && *next_changed < place.column; ++next_changed) {
      WriteNewCell({row, *next_changed});
    }
    if (next_changed != end && *next_changed == place.column) ++next_changed;
    Cell now = sheet_.cells.Get(place);
    if (!now.exists() || ((now.flags & kChanged) && !IsWritten(place, now))) {
      if (cell_.has_formula()) written_.breaks_calculation_chain = true;
      // A group whose text is gone stays unknown, so its members get texts of their own.
      if (IsGroupText()) groups_.erase(std::string(cell_.formula_group));
      return;
    }
    WriteMergedCell(place, place.column - origin, now);
  }

  bool IsGroupText() const { return cell_.formula_type == "shared" && !cell_.formula_text.empty(); }

  void WriteMergedCell(CellAddress place, int delta, const Cell& now) {
    patch_.Reset(original_);
    if (!cell_.place.data()) {
      std::size_t after_name = cell_.begin + 1 + cell_.name.size();
      patch_.Replace(after_name, after_name, " r=\"" + ToA1(place) + "\"");
    } else if (delta != 0) {
      patch_.Replace(cell_.place, ToA1(place));
    }
    if (now.flags & kStyleChanged) PatchStyle(now.style);
    content_.clear();
    PatchFormula(place, delta, now);
    bool formula_came_or_went =
        cell_.has_formula() != (now.formula != 0) && (now.flags & kFormulaChanged) != 0;
    if ((now.flags & kValueChanged) || formula_came_or_went) PatchValue(now);
    if (!content_.empty() && cell_.is_empty) {
      patch_.Replace(cell_.tag_end - 2, cell_.tag_end,
                     ">" + content_ + "</" + std::string(cell_.name) + ">");
    }
    if (patch_.empty()) {
      out_ += original_.substr(cell_.begin, cell_.end - cell_.begin);
    } else {
      patch_.AppendTo(out_, cell_.begin, cell_.end);
    }
  }

  std::size_t TagBodyEnd() const { return cell_.tag_end - (cell_.is_empty ? 2 : 1); }

  void PatchStyle(StyleId style) {
    if (cell_.style.data()) {
      patch_.Replace(cell_.style, std::to_string(style));
    } else if (style != 0) {
      patch_.Replace(TagBodyEnd(), TagBodyEnd(), " s=\"" + std::to_string(style) + "\"");
    }
  }

  void PatchFormula(CellAddress place, int delta, const Cell& now) {
    const bool is_data_table =
        now.formula != 0 && sheet_.formulas[now.formula].text.starts_with(kDataTableFormula);
    const bool changed = (now.flags & kFormulaChanged) && !is_data_table;
    if (!cell_.has_formula()) {
      if (now.formula == 0 || !changed) return;
      AddContent(FormulaElement(place, now), cell_.tag_end);
      written_.breaks_calculation_chain = true;
      return;
    }
    if (delta != 0 || now.formula == 0) written_.breaks_calculation_chain = true;
    if (IsGroupText()) {
      groups_[std::string(cell_.formula_group)] = {now.formula != 0 && !changed, delta};
    }
    if (now.formula == 0) {
      patch_.Replace(cell_.formula.begin, cell_.formula.end, "");
      if (cell_.cell_metadata.data()) patch_.RemoveAttribute(cell_.cell_metadata);
    } else if (cell_.formula_type == "shared" && !IsGroupText()) {
      auto group = groups_.find(std::string(cell_.formula_group));
      bool follows = group != groups_.end() && group->second.kept && group->second.delta == delta;
      if (changed || !follows) ReplaceFormula(place, now);
    } else if (changed) {
      ReplaceFormula(place, now);
    } else if (delta != 0) {
      MoveFormula(place, now);
    }
  }

  void ReplaceFormula(CellAddress place, const Cell& now) {
    patch_.Replace(cell_.formula.begin, cell_.formula.end, FormulaElement(place, now));
    if (cell_.cell_metadata.data() && !arrays_.contains(place)) {
      patch_.RemoveAttribute(cell_.cell_metadata);
    }
  }

  // The formula reads the same relative to its cell: the text and areas follow.
  void MoveFormula(CellAddress place, const Cell& now) {
    auto array = arrays_.find(place);
    if (cell_.formula_type == "array" && array != arrays_.end()) {
      patch_.Replace(cell_.formula_area, ToA1(array->second));
    } else {
      for (std::string_view area :
           {cell_.formula_area, cell_.formula_input_1, cell_.formula_input_2}) {
        if (area.data()) patch_.Replace(area, columns_.Area(area));
      }
    }
    if (cell_.formula_type == "dataTable" || cell_.formula_text.empty()) return;
    std::string text = FormulaText(sheet_.formulas[now.formula], place, model_);
    if (text != DecodeXml(cell_.formula_text)) {
      patch_.Replace(cell_.formula_text, EncodeXmlText(text));
    }
  }

  std::string FormulaElement(CellAddress place, const Cell& now) const {
    std::string element = "<" + prefix_ + "f";
    if (auto array = arrays_.find(place); array != arrays_.end()) {
      element += " t=\"array\" ref=\"" + ToA1(array->second) + "\"";
    }
    element += ">" + EncodeXmlText(FormulaText(sheet_.formulas[now.formula], place, model_));
    return element + "</" + prefix_ + "f>";
  }

  void PatchValue(const Cell& now) {
    std::string_view type = TypeOf(now);
    if (cell_.type.data()) {
      if (type.empty()) {
        patch_.RemoveAttribute(cell_.type);
      } else {
        patch_.Replace(cell_.type, std::string(type));
      }
    } else if (!type.empty()) {
      patch_.Replace(TagBodyEnd(), TagBodyEnd(), " t=\"" + std::string(type) + "\"");
    }
    if (cell_.value_metadata.data()) patch_.RemoveAttribute(cell_.value_metadata);
    std::string value;
    AppendValue(value, now);
    if (cell_.inline_text.exists()) {
      patch_.Replace(cell_.inline_text.begin, cell_.inline_text.end, "");
    }
    if (cell_.value.exists()) {
      patch_.Replace(cell_.value.begin, cell_.value.end, std::move(value));
    } else if (!value.empty()) {
      AddContent(value, cell_.has_formula() ? cell_.formula.end : cell_.tag_end);
    }
  }

  // Puts an element in at `at`, or within an empty cell's tag when that is opened.
  void AddContent(const std::string& element, std::size_t at) {
    if (cell_.is_empty) {
      content_ += element;
    } else {
      patch_.Replace(at, at, element);
    }
  }

  static std::string_view TypeOf(const Cell& cell) {
    switch (cell.value.kind) {
      case CellKind::kText:
        return cell.formula != 0 ? "str" : "s";
      case CellKind::kBoolean:
        return "b";
      case CellKind::kError:
        return "e";
      default:
        return {};
    }
  }

  // Appends <v>; nothing for a blank cell.
  void AppendValue(std::string& out, const Cell& cell) const {
    if (cell.value.kind == CellKind::kBlank || cell.value.kind == CellKind::kAbsent) return;
    const std::string* text = nullptr;
    if (cell.value.kind == CellKind::kText && cell.formula != 0) {
      text = &model_.strings[cell.value.text];
    }
    out += "<" + prefix_ + "v";
    if (text && !text->empty() && (IsBlank(text->front()) || IsBlank(text->back()))) {
      out += " xml:space=\"preserve\"";
    }
    out += ">";
    switch (cell.value.kind) {
      case CellKind::kNumber:
        AppendNumber(out, cell.value.number);
        break;
      case CellKind::kText:
        if (text) {
          out += EncodeSpreadsheetText(*text);
        } else {
          AppendNumber(out, shared_string_(cell.value.text));
        }
        break;
      case CellKind::kBoolean:
        out += cell.value.boolean ? "1" : "0";
        break;
      default:
        out += NameOfError(cell.value.error);
    }
    out += "</" + prefix_ + "v>";
  }

  // A blank cell of the default format is written only where its row or column has another one.
  bool IsWritten(CellAddress place, const Cell& cell) const {
    if (cell.style != 0 || cell.has_content()) return true;
    if (sheet_.row_styles.contains(place.row)) return true;
    auto run = std::partition_point(
        sheet_.column_formats.begin(), sheet_.column_formats.end(),
        [&](const ColumnFormat& format) { return format.last < place.column; });
    return run != sheet_.column_formats.end() && run->first <= place.column && run->style != 0;
  }

  void WriteNewCell(CellAddress place) {
    Cell cell = sheet_.cells.Get(place);
    if (!cell.exists() || !IsWritten(place, cell)) return;
    out_ += "<" + prefix_ + "c r=\"";
    AppendPlace(out_, place);
    out_ += '"';
    if (cell.style != 0) {
      out_ += " s=\"";
      AppendNumber(out_, cell.style);
      out_ += '"';
    }
    std::string_view type = TypeOf(cell);
    if (!type.empty()) {
      out_ += " t=\"";
      out_ += type;
      out_ += '"';
    }
    const std::size_t inside = out_.size();
    out_ += '>';
    if (cell.formula != 0) {
      out_ += FormulaElement(place, cell);
      written_.breaks_calculation_chain = true;
    }
    AppendValue(out_, cell);
    if (out_.size() == inside + 1) {
      out_.resize(inside);
      out_ += "/>";
    } else {
      out_ += "</" + prefix_ + "c>";
    }
  }

  std::string_view original_;
  const std::string& prefix_;
  const WorkbookModel& model_;
  const SheetModel& sheet_;
  const SharedStringIndex& shared_string_;
  WrittenSheet& written_;
  std::string& out_;
  ColumnMap columns_;
  ChangedCells changed_;
  std::map<CellAddress, Area> arrays_;
  std::optional<XmlScanner> xml_;
  std::size_t lead_begin_ = 0;
  std::unordered_map<std::string, Group> groups_;
  // The next row that has not been written, and that a row without a number would be.
  int next_row_ = 1;
  int next_in_part_ = 1;
  int column_in_part_ = 1;
  // The next rows that have something of their own.
  std::size_t next_entry_ = 0;
  std::map<int, StyleId>::const_iterator next_style_;
  OriginalCell cell_;
  ElementPatch patch_;
  // What an empty cell is to hold.
  std::string content_;
};

}  // namespace

WrittenSheet WriteSheet(std::string_view original, const SheetMarkup& markup,
                        const WorkbookModel& model, const SheetModel& sheet,
                        const SharedStringIndex& shared_string) {
  WrittenSheet written;
  written.text.reserve(original.size() + original.size() / 8);
  written.text += markup.start;
  for (const MarkupElement& element : markup.elements) {
    if (element.name == "sheetData" && sheet.is_worksheet) {
      SheetDataWriter(original, markup, model, sheet, shared_string, written).Write();
    } else {
      written.text += element.text;
    }
  }
  written.text += markup.end;
  return written;
}

bool NeedsSharedString(const Cell& cell) {
  return cell.value.kind == CellKind::kText && cell.formula == 0 &&
         (cell.flags & (kValueChanged | kFormulaChanged)) != 0;
}

std::string NumberText(double number) {
  std::string text;
  AppendNumber(text, number);
  return text;
}

}  // namespace vantora::embedded
