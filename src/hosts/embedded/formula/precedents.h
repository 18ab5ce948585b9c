// What a formula refers to, defined names and references across sheets resolved.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formula/dependency_index.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

struct Precedent {
  int sheet = 0;
  ReferenceShape shape;
  auto operator<=>(const Precedent&) const = default;
};

// Remembers the defined names it has looked up and read; Reset when names or sheets change.
class PrecedentFinder {
 public:
  explicit PrecedentFinder(const WorkbookModel& model) : model_(model) {}

  void Reset();

  // The references of a formula that stands in cells of `source` on `sheet`, without duplicates.
  std::vector<Precedent> PrecedentsOf(const Formula& formula, int sheet, const Area& source);
  // Whether the formula refers to cells of a table, directly or through a name.
  bool UsesTable(const Formula& formula, int sheet);
  // Whether the formula is volatile, or sees hidden rows, itself or through a name.
  bool IsVolatile(const Formula& formula, int sheet);
  bool SeesHiddenRows(const Formula& formula, int sheet);
  // Whether the formula uses one of the names (indices into model.names), directly or through
  // another name.
  bool UsesName(const Formula& formula, int sheet, const std::vector<bool>& names);

  // The formula that a name (index into model.names) stands for, relative to cell A1.
  const Formula& FormulaOfName(std::size_t name);
  // The text of a name has changed.
  void ForgetName(std::size_t name) { name_formulas_[name].reset(); }

 private:
  // Of "NAME" or "SHEET!NAME" as seen from a sheet; nullopt when there is none.
  std::optional<std::size_t> FindName(const std::string& name, int from_sheet);
  // The names that a formula uses, directly or through other names.
  std::vector<std::size_t> NamesOf(const Formula& formula, int sheet);
  void AddReferences(const Formula& formula, int sheet, const Area& source,
                     std::vector<Precedent>& precedents) const;
  void AddTables(const Formula& formula, int sheet, const Area& source,
                 std::vector<Precedent>& precedents) const;
  // The table that a name means which is no defined name.
  const Table* TableOfName(const std::string& name, int sheet);

  const WorkbookModel& model_;
  std::vector<std::optional<Formula>> name_formulas_;
  std::map<std::pair<std::string, int>, std::optional<std::size_t>> found_;
};

}  // namespace vantora::embedded
