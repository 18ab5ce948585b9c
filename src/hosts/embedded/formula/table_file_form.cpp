#include "formula/table_file_form.h"

#include <algorithm>
#include <optional>

#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

std::string Bracketed(std::string_view column) {
  std::string text = "[";
  for (char c : column) {
    if (c == '[' || c == ']' || c == '#' || c == '\'' || c == '@') text.push_back('\'');
    text.push_back(c);
  }
  return text + "]";
}

std::string RowReference(const std::string& table, const TableReference& reference) {
  if (reference.first_column.empty()) return table + "[#This Row]";
  std::string text = table + "[[#This Row]," + Bracketed(reference.first_column);
  if (reference.last_column != reference.first_column) {
    text += ":" + Bracketed(reference.last_column);
  }
  return text + "]";
}

class Writer {
 public:
  Writer(std::string_view text, const WorkbookModel& model, int sheet, CellAddress cell)
      : text_(text), model_(model), sheet_(sheet), cell_(cell) {}

  std::string Write() {
    while (position_ < text_.size()) {
      const char c = text_[position_];
      if (c == '"' || c == '\'') {
        Keep(EndOfQuoted(text_, position_));
      } else if (c == '[') {
        WriteBrackets();
      } else if (IsNameStart(c)) {
        WriteWord();
      } else {
        Keep(IsDigit(c) ? EndOfNumber(text_, position_) : position_ + 1);
      }
    }
    return std::move(out_);
  }

 private:
  char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }
  void Keep(std::size_t end) {
    end = std::max(end, position_ + 1);
    out_ += text_.substr(position_, end - position_);
    position_ = end;
  }

  // The cell's own table, or another workbook.
  void WriteBrackets() {
    const std::size_t end = EndOfBrackets(text_, position_);
    if (At(EndOfName(text_, end)) == '!') {
      Keep(end);
    } else {
      WriteTable();
    }
  }

  void WriteWord() {
    const std::size_t end = EndOfName(text_, position_);
    const std::string_view word = text_.substr(position_, end - position_);
    if (At(end) == '[') {
      WriteTable();
      return;
    }
    if (At(end) == '!') {
      // Whatever follows belongs to the sheet.
      Keep(EndOfName(text_, end + 1));
      return;
    }
    const bool is_table =
        At(end) != '(' && model_.FindTable(word) && !model_.FindName(word, sheet_);
    Keep(end);
    if (is_table) out_ += "[]";
  }

  void WriteTable() {
    std::size_t end = position_;
    const std::optional<TableReference> reference = ReadTableReference(text_, end);
    if (!reference) {
      Keep(EndOfBrackets(text_, EndOfName(text_, position_)));
      return;
    }
    std::string table = reference->table;
    if (table.empty()) {
      if (const Table* own = model_.TableAt(sheet_, cell_)) table = own->name;
    }
    const std::string_view written = text_.substr(position_, end - position_);
    const std::size_t inner = written.find_first_not_of(' ', written.find('[') + 1);
    if (table.empty()) {
      out_ += written;
    } else if (written[inner] == '@') {
      out_ += RowReference(table, *reference);
    } else {
      out_ += table;
      out_ += written.substr(reference->table.size());
    }
    position_ = end;
  }

  std::string_view text_;
  const WorkbookModel& model_;
  int sheet_;
  CellAddress cell_;
  std::size_t position_ = 0;
  std::string out_;
};

}  // namespace

std::string WithTableNames(std::string_view formula, const WorkbookModel& model, int sheet,
                           CellAddress cell) {
  if (model.tables.empty()) return std::string(formula);
  return Writer(formula, model, sheet, cell).Write();
}

}  // namespace vantora::embedded
