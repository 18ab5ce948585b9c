#include "formula/rename_columns.h"

#include <algorithm>
#include <map>
#include <optional>

#include "formula/lexical.h"
#include "formula/run_merger.h"
#include "formula/table_reference.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

// As it stands between brackets.
std::string Escaped(std::string_view column) {
  std::string text;
  for (char c : column) {
    if (c == '[' || c == ']' || c == '#' || c == '\'' || c == '@') text.push_back('\'');
    text.push_back(c);
  }
  return text;
}

std::string Unescaped(std::string_view written) {
  std::string name;
  for (std::size_t i = 0; i < written.size(); ++i) {
    if (written[i] == '\'' && i + 1 < written.size()) ++i;
    name.push_back(written[i]);
  }
  while (!name.empty() && name.back() == ' ') name.pop_back();
  return name;
}

const std::string* NewName(std::string_view column, const ColumnRenames& renames) {
  for (const auto& [before, after] : renames.names) {
    if (EqualIgnoringCase(column, before)) return &after;
  }
  return nullptr;
}

bool Means(const TableReference& reference, bool in_table, const ColumnRenames& renames) {
  return reference.table.empty() ? in_table : EqualIgnoringCase(reference.table, renames.table);
}

class Writer {
 public:
  Writer(std::string_view text, bool in_table, const ColumnRenames& renames)
      : text_(text), in_table_(in_table), renames_(renames) {}

  RenamedFormula Write() {
    while (position_ < text_.size()) {
      const char c = text_[position_];
      if (c == '"' || c == '\'') {
        Keep(EndOfQuoted(text_, position_));
      } else if (c == '[') {
        WriteTable(position_);
      } else if (IsNameStart(c)) {
        const std::size_t end = EndOfName(text_, position_);
        if (end < text_.size() && text_[end] == '[') {
          WriteTable(end);
        } else {
          Keep(end);
        }
      } else {
        Keep(IsDigit(c) ? EndOfNumber(text_, position_) : position_ + 1);
      }
    }
    return std::move(result_);
  }

 private:
  void Keep(std::size_t end) {
    end = std::max(end, position_ + 1);
    result_.text += text_.substr(position_, end - position_);
    position_ = end;
  }

  // A reference to a table whose bracket is at `bracket`, or another workbook's cells.
  void WriteTable(std::size_t bracket) {
    const std::size_t brackets_end = EndOfBrackets(text_, bracket);
    std::size_t end = position_;
    const std::optional<TableReference> reference = ReadTableReference(text_, end);
    const std::size_t behind = EndOfName(text_, brackets_end);
    if (behind < text_.size() && text_[behind] == '!') {
      Keep(behind);
    } else if (!reference) {
      if (MayNameColumn(text_.substr(bracket, brackets_end - bracket))) {
        result_.is_certain = false;
      }
      Keep(brackets_end);
    } else if (!Means(*reference, in_table_, renames_)) {
      Keep(end);
    } else {
      if (bracket > position_) Keep(bracket);
      WriteColumns(end);
    }
  }

  bool MayNameColumn(std::string_view brackets) const {
    return std::ranges::any_of(renames_.names, [&](const auto& names) {
      const std::string written = Escaped(names.first);
      for (std::size_t i = 0; i + written.size() <= brackets.size(); ++i) {
        if (EqualIgnoringCase(brackets.substr(i, written.size()), written)) return true;
      }
      return false;
    });
  }

  // From the bracket up to `end`. A column's name stands behind a bracket or an "@", unless it is a
  // part ("#Data").
  void WriteColumns(std::size_t end) {
    while (position_ < end) {
      const char c = text_[position_];
      Keep(position_ + 1);
      if (c != '[' && c != '@') continue;
      while (position_ < end && IsBlank(text_[position_])) Keep(position_ + 1);
      if (position_ >= end) return;
      const char next = text_[position_];
      if (next == '[' || next == ']' || next == '@') continue;
      std::size_t name_end = position_;
      while (name_end < end && text_[name_end] != ']') name_end += text_[name_end] == '\'' ? 2 : 1;
      name_end = std::min(name_end, end);
      const std::string_view written = text_.substr(position_, name_end - position_);
      const std::string* renamed = next == '#' ? nullptr : NewName(Unescaped(written), renames_);
      if (!renamed) {
        Keep(name_end);
        continue;
      }
      // Behind an "@" not every name can stand bare.
      result_.text += c == '@' ? "[" + Escaped(*renamed) + "]" : Escaped(*renamed);
      result_.changed = true;
      position_ = name_end;
    }
  }

  std::string_view text_;
  bool in_table_;
  const ColumnRenames& renames_;
  std::size_t position_ = 0;
  RenamedFormula result_;
};

// The formulas of a sheet that change, by id. What names no table means this one in cells of the
// table alone.
class SheetRenamer {
 public:
  SheetRenamer(SheetModel& sheet, const Table* table, const ColumnRenames& renames)
      : sheet_(sheet), table_(table), renames_(renames) {}

  std::vector<std::pair<int, Area>> Run() {
    std::vector<std::pair<int, Area>> changed;
    bool any = false;
    for (FormulaId id = 1; id <= sheet_.formulas.size() && !any; ++id) {
      any = !sheet_.formulas[id].tables.empty();
    }
    if (!any) return changed;
    RunMerger merger([&](const Area& area, FormulaId) { changed.emplace_back(sheet_.id, area); });
    for (int column = 1; column <= sheet_.cells.LastColumn(); ++column) {
      sheet_.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        if (cell.formula == 0) return;
        const CellAddress address{row, column};
        const FormulaId after = After(cell.formula, table_ && table_->area.Contains(address));
        if (after == cell.formula) return;
        sheet_.cells.SetFormula(address, after);
        merger.Add(column, row, row, after);
      });
    }
    merger.Finish();
    return changed;
  }

 private:
  FormulaId After(FormulaId id, bool in_table) {
    if (sheet_.formulas[id].tables.empty()) return id;
    auto [known, is_new] = after_.try_emplace({id, in_table}, id);
    if (!is_new) return known->second;
    Formula formula = sheet_.formulas[id];
    RenamedFormula renamed = WithRenamedColumns(formula.text, in_table, renames_);
    if (!renamed.changed) return id;
    formula.text = std::move(renamed.text);
    formula.program.reset();
    for (TableReference& reference : formula.tables) {
      if (!Means(reference, in_table, renames_)) continue;
      for (std::string* column : {&reference.first_column, &reference.last_column}) {
        if (const std::string* name = NewName(*column, renames_)) *column = *name;
      }
    }
    return known->second = sheet_.formulas.Intern(std::move(formula));
  }

  SheetModel& sheet_;
  const Table* table_;
  const ColumnRenames& renames_;
  std::map<std::pair<FormulaId, bool>, FormulaId> after_;
};

}  // namespace

RenamedFormula WithRenamedColumns(std::string_view text, bool in_table,
                                  const ColumnRenames& renames) {
  return Writer(text, in_table, renames).Write();
}

bool CanRenameColumns(const WorkbookModel& model, const ColumnRenames& renames) {
  const auto is_certain = [&](std::string_view text) {
    return text.find('[') == std::string_view::npos ||
           WithRenamedColumns(text, true, renames).is_certain;
  };
  for (const auto& sheet : model.sheets) {
    for (FormulaId id = 1; id <= sheet->formulas.size(); ++id) {
      if (!is_certain(sheet->formulas[id].text)) return false;
    }
  }
  return std::ranges::all_of(model.names,
                             [&](const DefinedName& name) { return is_certain(name.refers_to); });
}

RenameOutcome RenameColumns(WorkbookModel& model, const ColumnRenames& renames) {
  RenameOutcome outcome;
  const Table* table = model.FindTable(renames.table);
  for (const auto& sheet : model.sheets) {
    const bool is_own = table && table->sheet == sheet->id;
    for (auto& cells : SheetRenamer(*sheet, is_own ? table : nullptr, renames).Run()) {
      outcome.cells.push_back(cells);
    }
  }
  for (DefinedName& name : model.names) {
    RenamedFormula renamed = WithRenamedColumns(name.refers_to, false, renames);
    if (!renamed.changed) continue;
    name.refers_to = std::move(renamed.text);
    outcome.names_changed = true;
  }
  return outcome;
}

}  // namespace vantora::embedded
