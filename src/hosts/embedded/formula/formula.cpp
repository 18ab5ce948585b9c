#include "formula/formula.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <utility>

#include "formula/function.h"
#include "formula/lexical.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

// As the table of functions has it; some that can't be calculated here are volatile, too.
Changes ChangesOfFunction(std::string_view name) {
  const std::string upper = UpperAscii(name);
  const std::string_view known = WithoutPrefix(upper);
  if (const FunctionEntry* function = FindFunction(known)) return function->changes;
  return known == "RANDARRAY" || known == "INFO" ? Changes::kAlways : Changes::kWithArguments;
}

// One end of a reference: a cell, a column (row 0) or a row (column 0).
struct Corner {
  int row = 0;
  int column = 0;
  bool row_absolute = false;
  bool column_absolute = false;

  bool IsCell() const { return row != 0 && column != 0; }
  bool IsColumn() const { return row == 0 && column != 0; }
  bool IsRow() const { return row != 0 && column == 0; }
};

std::optional<Corner> ReadCorner(std::string_view word) {
  Corner corner;
  std::size_t position = 0;
  auto dollar = [&] {
    if (position < word.size() && word[position] == '$') {
      ++position;
      return true;
    }
    return false;
  };
  bool absolute = dollar();
  const std::size_t letters = position;
  while (position < word.size() && IsLetter(word[position])) {
    if (position - letters == 3) return std::nullopt;
    corner.column = corner.column * 26 + (UpperAscii(word[position]) - 'A' + 1);
    ++position;
  }
  if (corner.column > kMaxColumn) return std::nullopt;
  if (position > letters) {
    corner.column_absolute = absolute;
    if (position == word.size()) return corner;
    absolute = dollar();
  }
  const std::size_t digits = position;
  while (position < word.size() && IsDigit(word[position])) {
    if (position - digits == 7) return std::nullopt;
    corner.row = corner.row * 10 + (word[position] - '0');
    ++position;
  }
  if (position == digits || position != word.size()) return std::nullopt;
  if (corner.row < 1 || corner.row > kMaxRow) return std::nullopt;
  corner.row_absolute = absolute;
  return corner;
}

// Reads the text once from left to right and splits it into text and references.
class Reader {
 public:
  Reader(std::string_view text, CellAddress cell, const SheetDirectory& sheets)
      : text_(text), cell_(cell), sheets_(sheets) {}

  Formula Read() {
    formula_.text.reserve(text_.size());
    // The mark can't be told from a placeholder: such a text is kept as it is.
    if (text_.find(kReferenceMark) != std::string_view::npos) {
      formula_.text = text_;
      formula_.is_volatile = true;
      return std::move(formula_);
    }
    while (position_ < text_.size()) ReadPiece();
    formula_.text.shrink_to_fit();
    return std::move(formula_);
  }

 private:
  void ReadPiece() {
    const char c = text_[position_];
    if (IsNameStart(c) || c == '$') {
      ReadWord();
    } else if (IsDigit(c) || c == '.') {
      if (!IsDigit(c) || !ReadReference(SheetSpan{})) KeepUntil(EndOfNumber(text_, position_));
    } else if (c == '"') {
      KeepUntil(EndOfQuoted(text_, position_));
    } else if (c == '\'') {
      ReadQuotedSheet();
    } else if (c == '[') {
      ReadBrackets();
    } else if (c == '#') {
      ReadHash();
    } else {
      KeepUntil(position_ + 1);
    }
  }

  char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }

  void KeepUntil(std::size_t end) {
    // At least one character, so that no malformed text can stop the reading.
    end = std::max(end, position_ + 1);
    formula_.text.append(text_.substr(position_, end - position_));
    position_ = end;
  }

  // A word without quotes: a function's name, a sheet's, a reference, a defined name, a constant.
  void ReadWord() {
    const std::size_t end = EndOfName(text_, position_);
    const std::string_view word = text_.substr(position_, end - position_);
    switch (At(end)) {
      case '!':
        ReadBehindSheet(word, end + 1);
        return;
      case '(':
        NoteFunction(word);
        KeepUntil(end);
        return;
      case '[':
        ReadTable();
        return;
      case ':': {
        const std::size_t second_end = EndOfName(text_, end + 1);
        if (second_end > end + 1 && At(second_end) == '!' && sheets_.IdOf(word)) {
          ReadBehindSheet(text_.substr(position_, second_end - position_), second_end + 1);
          return;
        }
        break;
      }
      default:
        break;
    }
    if (ReadReference(SheetSpan{})) return;
    if (word[0] != '$' && !EqualIgnoringAsciiCase(word, "TRUE") &&
        !EqualIgnoringAsciiCase(word, "FALSE")) {
      formula_.names.push_back(UpperAscii(word));
    }
    KeepUntil(end);
  }

  void NoteFunction(std::string_view name) {
    const Changes changes = ChangesOfFunction(name);
    if (changes == Changes::kAlways) formula_.is_volatile = true;
    if (changes == Changes::kWithHiddenRows) formula_.sees_hidden_rows = true;
  }

  // A table's name with its brackets, or these alone.
  void ReadTable() {
    std::size_t end = position_;
    if (std::optional<TableReference> table = ReadTableReference(text_, end)) {
      formula_.tables.push_back(*std::move(table));
    } else {
      formula_.is_volatile = true;
      end = EndOfBrackets(text_, EndOfName(text_, position_));
    }
    KeepUntil(end);
  }

  void ReadQuotedSheet() {
    const std::size_t end = EndOfQuoted(text_, position_);
    if (At(end) != '!') {
      KeepUntil(end);
      return;
    }
    const std::string_view quoted = text_.substr(position_ + 1, end - position_ - 2);
    if (quoted.find('[') != std::string_view::npos) {
      KeepForeign(end + 1);
    } else if (quoted.find('\'') != std::string_view::npos) {
      ReadBehindSheet(WithoutDoubledQuotes(quoted), end + 1);
    } else {
      ReadBehindSheet(quoted, end + 1);
    }
  }

  // Another workbook's sheet ("[1]Sheet1!A1"), or a table's column ("[@Amount]").
  void ReadBrackets() {
    const std::size_t bracket_end = EndOfBrackets(text_, position_);
    std::size_t end = EndOfName(text_, bracket_end);
    if (At(end) == ':') end = EndOfName(text_, end + 1);
    if (At(end) == '!') {
      KeepForeign(end + 1);
    } else {
      ReadTable();
    }
  }

  // "#REF!A1" is what is left of a reference to a sheet that is gone.
  void ReadHash() {
    const std::size_t length = ErrorNameLength(text_, position_);
    std::size_t end = position_ + std::max<std::size_t>(length, 1);
    if (length == 5 && text_[position_ + 4] == '!') end = EndOfReferenceText(end);
    KeepUntil(end);
  }

  // `sheet` names one sheet or two with a colon; what belongs to it starts at `start`.
  void ReadBehindSheet(std::string_view sheet, std::size_t start) {
    const std::optional<SheetSpan> span = FindSheets(sheet, sheets_);
    const std::size_t word_end = EndOfName(text_, start);
    const std::size_t prefix_start = position_;
    if (span) {
      position_ = start;
      if (ReadReference(*span)) return;
      position_ = prefix_start;
      if (ErrorOfName(text_.substr(start, 5)) == CellError::kRef) {
        Reference reference;
        reference.kind = Reference::Kind::kError;
        Add(reference, *span, start + 5);
        return;
      }
    }
    if (span && word_end > start) {
      formula_.names.push_back(UpperAscii(std::string(sheet) + "!" +
                                          std::string(text_.substr(start, word_end - start))));
    }
    KeepUntil(span ? word_end : EndOfReferenceText(start));
  }

  // A reference that can't be followed stays as it is written, up to its end.
  void KeepForeign(std::size_t start) {
    formula_.is_volatile = true;
    KeepUntil(EndOfReferenceText(start));
  }

  std::size_t EndOfReferenceText(std::size_t start) const {
    if (At(start) == '#') return start + ErrorNameLength(text_, start);
    std::size_t end = EndOfName(text_, start);
    if (At(end) == ':' && ReadCorner(text_.substr(start, end - start))) {
      const std::size_t second_end = EndOfName(text_, end + 1);
      if (ReadCorner(text_.substr(end + 1, second_end - end - 1))) end = second_end;
    }
    return end;
  }

  // A cell, an area, whole columns or whole rows at the current position; false when what stands
  // there is something else.
  bool ReadReference(const SheetSpan& span) {
    std::size_t end = EndOfName(text_, position_);
    const std::optional<Corner> first = ReadCorner(text_.substr(position_, end - position_));
    if (!first) return false;
    Reference reference;
    std::optional<Corner> second;
    if (At(end) == ':') {
      const std::size_t second_end = EndOfName(text_, end + 1);
      const char behind = At(second_end);
      if (behind != '!' && behind != '(' && behind != '[') {
        second = ReadCorner(text_.substr(end + 1, second_end - end - 1));
      }
      if (second && second->IsCell() == first->IsCell() && second->IsRow() == first->IsRow()) {
        end = second_end;
      } else {
        second.reset();
      }
    }
    if (second) {
      reference.kind = first->IsCell()     ? Reference::Kind::kArea
                       : first->IsColumn() ? Reference::Kind::kColumns
                                           : Reference::Kind::kRows;
    } else if (!first->IsCell()) {
      return false;
    }
    SetFirst(reference, *first);
    SetSecond(reference, second ? *second : *first);
    Add(reference, span, end);
    return true;
  }

  int RelativeRow(const Corner& corner) const {
    return corner.row == 0 || corner.row_absolute ? corner.row : corner.row - cell_.row;
  }
  int RelativeColumn(const Corner& corner) const {
    return corner.column == 0 || corner.column_absolute ? corner.column
                                                        : corner.column - cell_.column;
  }
  void SetFirst(Reference& reference, const Corner& corner) const {
    reference.row1 = RelativeRow(corner);
    reference.column1 = RelativeColumn(corner);
    reference.row1_absolute = corner.row_absolute;
    reference.column1_absolute = corner.column_absolute;
  }
  void SetSecond(Reference& reference, const Corner& corner) const {
    reference.row2 = RelativeRow(corner);
    reference.column2 = RelativeColumn(corner);
    reference.row2_absolute = corner.row_absolute;
    reference.column2_absolute = corner.column_absolute;
  }

  void Add(Reference& reference, const SheetSpan& span, std::size_t end) {
    reference.first_sheet = span.first;
    reference.last_sheet = span.last;
    formula_.references.push_back(reference);
    formula_.text.push_back(kReferenceMark);
    position_ = end;
  }

  std::string_view text_;
  CellAddress cell_;
  const SheetDirectory& sheets_;
  std::size_t position_ = 0;
  Formula formula_;
};

void AppendNumber(std::string& out, int number) {
  char buffer[12];
  out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

void AppendColumn(std::string& out, int column, bool absolute) {
  if (absolute) out.push_back('$');
  char letters[3];
  int count = 0;
  for (; column > 0; column = (column - 1) / 26) {
    letters[count++] = static_cast<char>('A' + (column - 1) % 26);
  }
  while (count > 0) out.push_back(letters[--count]);
}

void AppendRow(std::string& out, int row, bool absolute) {
  if (absolute) out.push_back('$');
  AppendNumber(out, row);
}

void AppendReference(std::string& out, const Reference& reference, CellAddress cell,
                     const SheetDirectory& sheets) {
  if (reference.first_sheet != Reference::kOwnSheet) {
    AppendSheetPrefix(out, reference.first_sheet, reference.last_sheet, sheets);
  }
  const std::optional<Area> area = reference.At(cell);
  if (!area) {
    out += "#REF!";
    return;
  }
  // The corners are put in order as they are written; each keeps its own `$`.
  bool row1 = reference.row1_absolute, row2 = reference.row2_absolute;
  bool column1 = reference.column1_absolute, column2 = reference.column2_absolute;
  if ((row1 ? 0 : cell.row) + reference.row1 > (row2 ? 0 : cell.row) + reference.row2) {
    std::swap(row1, row2);
  }
  if ((column1 ? 0 : cell.column) + reference.column1 >
      (column2 ? 0 : cell.column) + reference.column2) {
    std::swap(column1, column2);
  }
  const bool has_columns = reference.kind != Reference::Kind::kRows;
  const bool has_rows = reference.kind != Reference::Kind::kColumns;
  if (has_columns) AppendColumn(out, area->first_column, column1);
  if (has_rows) AppendRow(out, area->first_row, row1);
  if (reference.kind == Reference::Kind::kCell) return;
  out.push_back(':');
  if (has_columns) AppendColumn(out, area->last_column, column2);
  if (has_rows) AppendRow(out, area->last_row, row2);
}

std::size_t HashOf(const Formula& formula) {
  std::size_t hash = std::hash<std::string>{}(formula.text);
  auto mix = [&hash](int value) {
    hash ^= static_cast<std::size_t>(static_cast<unsigned>(value)) + 0x9e3779b97f4a7c15u +
            (hash << 6) + (hash >> 2);
  };
  for (const Reference& reference : formula.references) {
    mix(static_cast<int>(reference.kind) + 16 * reference.row1_absolute +
        32 * reference.column1_absolute + 64 * reference.row2_absolute +
        128 * reference.column2_absolute);
    mix(reference.first_sheet);
    mix(reference.last_sheet);
    mix(reference.row1);
    mix(reference.column1);
    mix(reference.row2);
    mix(reference.column2);
  }
  return hash;
}

}  // namespace

Formula ParseFormula(std::string_view text, CellAddress cell, const SheetDirectory& sheets) {
  return Reader(text, cell, sheets).Read();
}

std::string FormulaText(const Formula& formula, CellAddress cell, const SheetDirectory& sheets) {
  std::string out;
  out.reserve(formula.text.size() + formula.references.size() * 8);
  std::size_t next = 0;
  for (char c : formula.text) {
    if (c == kReferenceMark && next < formula.references.size()) {
      AppendReference(out, formula.references[next++], cell, sheets);
    } else {
      out.push_back(c);
    }
  }
  return out;
}

FormulaId FormulaTable::Intern(Formula formula) {
  const std::size_t hash = HashOf(formula);
  auto [begin, end] = by_hash_.equal_range(hash);
  for (auto entry = begin; entry != end; ++entry) {
    const Formula& known = (*this)[entry->second];
    if (known.text == formula.text && known.references == formula.references) return entry->second;
  }
  formulas_.push_back(std::move(formula));
  by_hash_.emplace(hash, size());
  return size();
}

}  // namespace vantora::embedded
