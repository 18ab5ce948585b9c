#include "formula/table_reference.h"

#include <algorithm>
#include <utility>

#include "formula/lexical.h"
#include "formula/unicode.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {
namespace {

// Thrown within this file alone.
struct NoReference {};

class Reader {
 public:
  Reader(std::string_view text, std::size_t position) : text_(text), position_(position) {}

  TableReference Read() {
    const std::size_t name_end = EndOfName(text_, position_);
    reference_.table = text_.substr(position_, name_end - position_);
    position_ = name_end;
    Expect('[');
    SkipBlanks();
    switch (Peek()) {
      case ']':
        // Behind a table's name: its data.
        if (reference_.table.empty()) throw NoReference();
        break;
      case '@':
        ++position_;
        reference_.parts = TableReference::kThisRow;
        ReadColumnsOfRow();
        break;
      case '#':
        reference_.parts = ReadPart();
        break;
      case '[':
        ReadList();
        break;
      default:
        reference_.first_column = reference_.last_column = ReadName();
    }
    Expect(']');
    return std::move(reference_);
  }
  std::size_t position() const { return position_; }

 private:
  char Peek() const { return position_ < text_.size() ? text_[position_] : '\0'; }
  void SkipBlanks() {
    while (IsBlank(Peek())) ++position_;
  }
  void Expect(char c) {
    if (Peek() != c) throw NoReference();
    ++position_;
  }

  // Up to the closing bracket. An apostrophe stands before brackets, "#", "@" and itself.
  std::string ReadName() {
    std::string name;
    for (; Peek() != ']'; ++position_) {
      if (Peek() == '\0' || Peek() == '[') throw NoReference();
      if (Peek() == '\'') ++position_;
      if (Peek() == '\0') throw NoReference();
      name.push_back(Peek());
    }
    while (!name.empty() && name.back() == ' ') name.pop_back();
    if (name.empty()) throw NoReference();
    return name;
  }

  unsigned ReadPart() {
    static constexpr std::pair<std::string_view, unsigned> kParts[] = {
        {"#All", TableReference::kHeaders | TableReference::kData | TableReference::kTotals},
        {"#Data", TableReference::kData},
        {"#Headers", TableReference::kHeaders},
        {"#Totals", TableReference::kTotals},
        {"#This Row", TableReference::kThisRow}};
    const std::string name = ReadName();
    for (const auto& [written, part] : kParts) {
      if (EqualIgnoringAsciiCase(name, written)) return part;
    }
    throw NoReference();
  }

  std::string ReadBracketedName() {
    Expect('[');
    std::string name = ReadName();
    Expect(']');
    return name;
  }

  void ReadColumns() {
    reference_.first_column = reference_.last_column = ReadBracketedName();
    SkipBlanks();
    if (Peek() != ':') return;
    ++position_;
    SkipBlanks();
    reference_.last_column = ReadBracketedName();
  }

  void ReadColumnsOfRow() {
    SkipBlanks();
    if (Peek() == '[') {
      ReadColumns();
      SkipBlanks();
    } else if (Peek() != ']') {
      reference_.first_column = reference_.last_column = ReadName();
    }
  }

  // "[#Headers],[#Data],[Jan]:[Mar]": any parts first, then the columns.
  void ReadList() {
    unsigned parts = 0;
    for (;;) {
      SkipBlanks();
      if (text_.substr(position_).starts_with("[#")) {
        ++position_;
        parts |= ReadPart();
        Expect(']');
      } else {
        ReadColumns();
      }
      SkipBlanks();
      if (Peek() != ',') break;
      if (!reference_.first_column.empty()) throw NoReference();
      ++position_;
    }
    if (parts == 0) return;
    constexpr unsigned kOutside = TableReference::kHeaders | TableReference::kTotals;
    if (parts == kOutside || (parts > TableReference::kThisRow)) throw NoReference();
    reference_.parts = parts;
  }

  std::string_view text_;
  std::size_t position_;
  TableReference reference_;
};

}  // namespace

std::optional<TableReference> ReadTableReference(std::string_view text, std::size_t& position) {
  try {
    Reader reader(text, position);
    TableReference reference = reader.Read();
    position = reader.position();
    return reference;
  } catch (const NoReference&) {
    return std::nullopt;
  }
}

TableCells FindCells(const TableReference& reference, const Table& table) {
  TableCells cells{TableCells::Outcome::kFound, table.area};
  if (!reference.first_column.empty()) {
    const std::optional<int> first = table.ColumnOf(reference.first_column);
    const std::optional<int> last = table.ColumnOf(reference.last_column);
    if (!first || !last) return {TableCells::Outcome::kNoColumn, {}};
    cells.area.first_column = table.area.first_column + std::min(*first, *last);
    cells.area.last_column = table.area.first_column + std::max(*first, *last);
  }
  const unsigned parts = reference.parts == TableReference::kThisRow
                             ? unsigned{TableReference::kData}
                             : reference.parts;
  if (!(parts & TableReference::kHeaders)) cells.area.first_row += table.header_rows;
  if (!(parts & TableReference::kTotals)) cells.area.last_row -= table.total_rows;
  if (!(parts & TableReference::kData)) {
    const bool headers = parts & TableReference::kHeaders;
    if ((headers ? table.header_rows : table.total_rows) == 0) {
      return {TableCells::Outcome::kNoCells, {}};
    }
    if (headers) {
      cells.area.last_row = table.area.first_row;
    } else {
      cells.area.first_row = table.area.last_row;
    }
  }
  if (cells.area.first_row > cells.area.last_row) return {TableCells::Outcome::kNoCells, {}};
  return cells;
}

}  // namespace vantora::embedded
