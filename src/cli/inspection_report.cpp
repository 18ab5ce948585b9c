#include "cli/inspection_report.h"

#include <nlohmann/json.hpp>

#include "cells/address.h"
#include "cli/cell_text.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

using embedded::ColumnLetters;
using Json = nlohmann::ordered_json;

std::string Rows(int first, int last) {
  if (last < first) return "no rows";
  if (last == first) return "row " + std::to_string(first);
  return "rows " + std::to_string(first) + " to " + std::to_string(last);
}

// "12, 15, 20", cut after the first dozen.
std::string Numbers(const std::vector<int>& numbers) {
  static constexpr std::size_t kShown = 12;
  std::string text;
  for (std::size_t i = 0; i < numbers.size() && i < kShown; ++i) {
    text += (i ? ", " : "") + std::to_string(numbers[i]);
  }
  if (numbers.size() > kShown) {
    text += " and " + std::to_string(numbers.size() - kShown) + " more";
  }
  return text;
}

std::string FlagsText(const inspection::SheetFacts& sheet) {
  std::string text;
  for (const inspection::SheetFlag& flag : sheet.flags) {
    if (!text.empty()) text += "; ";
    text += std::string(flag.letter) + " " + std::string(flag.meaning);
    if (flag.number) text += " " + std::to_string(*flag.number);
  }
  return text;
}

std::string OperationsText(const inspection::SheetFacts& sheet) {
  std::string text;
  for (std::string_view operation : sheet.operations) {
    text += (text.empty() ? "" : ", ") + std::string(operation);
  }
  return text;
}

void WriteLine(std::ostream& out, const std::string& label, const std::string& text) {
  out << "  " << label << ": " << ui::Printable(text) << '\n';
}

void WriteBlocks(const inspection::SheetFacts& sheet, std::ostream& out) {
  if (!sheet.base_rows.empty()) {
    WriteLine(out, "base rows", Numbers(sheet.base_rows));
    if (!sheet.spinner_base_rows.empty()) {
      WriteLine(out, "of these spinner base rows", Numbers(sheet.spinner_base_rows));
    }
  }
  if (sheet.inflation_row) WriteLine(out, "inflation row", std::to_string(*sheet.inflation_row));
  for (const inspection::SpinnerBlock& block : sheet.spinner_blocks) {
    WriteLine(out, "spin button \"" + ui::Printable(block.shape) + "\"",
              "linked to " + block.linked_cell + ", moves " +
                  Rows(block.first_row, block.last_row) +
                  (block.end_row ? ", end row " + std::to_string(*block.end_row)
                                 : std::string(", no end row")));
  }
  for (const inspection::KeyColumn& keys : sheet.key_columns) {
    WriteLine(out, "planning keys in column " + ColumnLetters(keys.column),
              Count(keys.keys, "key", "keys") + " below row " + std::to_string(keys.heading_row) +
                  (keys.defines ? ", defining the model's keys" : ", in use"));
  }
  if (sheet.ratio_keys) WriteLine(out, "ratio keys", std::to_string(sheet.ratio_keys));
  for (const inspection::RatioBlock& block : sheet.ratio_blocks) {
    const bool is_whole = block.first_row && block.last_row;
    WriteLine(out, "comparison data block " + std::to_string(block.number),
              is_whole ? Rows(*block.first_row, *block.last_row) : std::string("incomplete"));
  }
}

void WriteSheet(const inspection::SheetFacts& sheet, std::ostream& out) {
  out << ui::Printable(sheet.name);
  if (sheet.flags.empty()) {
    out << ": no flags\n";
  } else {
    out << " (A1: " << ui::Printable(sheet.a1) << ")\n";
    WriteLine(out, "flags", FlagsText(sheet));
    if (!sheet.operations.empty()) WriteLine(out, "taken by", OperationsText(sheet));
  }
  for (const inspection::ColumnFlag& flag : sheet.column_flags) {
    WriteLine(out, "row 1, column " + ColumnLetters(flag.column), flag.text + ", " + flag.meaning);
  }
  WriteBlocks(sheet, out);
}

void WriteReferenceSheet(const inspection::ReferenceSheetFacts& facts, std::ostream& out) {
  out << "Reference Sheet: " << ui::Printable(facts.sheet) << ", lists from row " << facts.lists_row
      << '\n';
  for (const inspection::ListFacts& list : facts.lists) {
    WriteLine(out, std::string(list.name) + " (" + std::string(list.flag) + ")",
              list.column ? "column " + ColumnLetters(*list.column) + ", " +
                                Count(list.entries, "entry", "entries")
                          : std::string("not there"));
  }
}

void WriteProblems(const std::vector<inspection::Problem>& problems, std::ostream& out) {
  if (problems.empty()) {
    out << "No problems found.\n";
    return;
  }
  out << Count(static_cast<int>(problems.size()), "problem", "problems") << ":\n";
  for (const inspection::Problem& problem : problems) {
    out << "  ";
    if (!problem.sheet.empty()) {
      out << ui::Printable(problem.sheet) << (problem.cell.empty() ? "" : "!" + problem.cell)
          << ": ";
    }
    out << ui::Printable(problem.text) << '\n';
  }
}

Json RowJson(const std::optional<int>& row) { return row ? Json(*row) : Json(nullptr); }

Json FlagsJson(const inspection::SheetFacts& sheet) {
  Json flags = Json::array();
  for (const inspection::SheetFlag& flag : sheet.flags) {
    flags.push_back(
        {{"letter", flag.letter}, {"meaning", flag.meaning}, {"number", RowJson(flag.number)}});
  }
  return flags;
}

Json SheetJson(const inspection::SheetFacts& sheet) {
  Json columns = Json::array();
  for (const inspection::ColumnFlag& flag : sheet.column_flags) {
    columns.push_back(
        {{"column", ColumnLetters(flag.column)}, {"text", flag.text}, {"meaning", flag.meaning}});
  }
  Json blocks = Json::array();
  for (const inspection::SpinnerBlock& block : sheet.spinner_blocks) {
    blocks.push_back({{"shape", block.shape},
                      {"linked_cell", block.linked_cell},
                      {"first_row", block.first_row},
                      {"last_row", block.last_row},
                      {"end_row", RowJson(block.end_row)}});
  }
  Json keys = Json::array();
  for (const inspection::KeyColumn& column : sheet.key_columns) {
    keys.push_back({{"column", ColumnLetters(column.column)},
                    {"heading_row", column.heading_row},
                    {"keys", column.keys},
                    {"defines", column.defines}});
  }
  Json ratios = Json::array();
  for (const inspection::RatioBlock& block : sheet.ratio_blocks) {
    ratios.push_back({{"number", block.number},
                      {"first_row", RowJson(block.first_row)},
                      {"last_row", RowJson(block.last_row)}});
  }
  return {{"name", sheet.name},
          {"a1", sheet.a1},
          {"flags", FlagsJson(sheet)},
          {"operations", sheet.operations},
          {"row_1", columns},
          {"base_rows", sheet.base_rows},
          {"spinner_base_rows", sheet.spinner_base_rows},
          {"inflation_row", RowJson(sheet.inflation_row)},
          {"spinner_blocks", blocks},
          {"key_columns", keys},
          {"ratio_keys", sheet.ratio_keys},
          {"ratio_blocks", ratios}};
}

Json ReferenceSheetJson(const inspection::ReferenceSheetFacts& facts) {
  Json lists = Json::array();
  for (const inspection::ListFacts& list : facts.lists) {
    lists.push_back({{"flag", list.flag},
                     {"name", list.name},
                     {"column", list.column ? Json(ColumnLetters(*list.column)) : Json(nullptr)},
                     {"entries", list.entries}});
  }
  return {{"sheet", facts.sheet}, {"lists_row", facts.lists_row}, {"lists", lists}};
}

}  // namespace

void WriteInspection(const inspection::Inspection& inspection, std::ostream& out) {
  if (inspection.reference_sheet) WriteReferenceSheet(*inspection.reference_sheet, out);
  out << "\nNames\n";
  for (const inspection::NameFacts& name : inspection.names) {
    WriteLine(out, std::string(name.name) + " (" + std::string(name.meaning) + ")",
              name.refers_to.empty() ? "not there" : name.refers_to);
  }
  out << '\n';
  for (const inspection::SheetFacts& sheet : inspection.sheets) WriteSheet(sheet, out);
  out << '\n';
  WriteProblems(inspection.problems, out);
}

void WriteInspectionJson(const inspection::Inspection& inspection, std::ostream& out) {
  Json sheets = Json::array();
  for (const inspection::SheetFacts& sheet : inspection.sheets) sheets.push_back(SheetJson(sheet));
  Json names = Json::array();
  for (const inspection::NameFacts& name : inspection.names) {
    names.push_back(
        {{"name", name.name}, {"meaning", name.meaning}, {"refers_to", name.refers_to}});
  }
  Json problems = Json::array();
  for (const inspection::Problem& problem : inspection.problems) {
    problems.push_back({{"sheet", problem.sheet}, {"cell", problem.cell}, {"text", problem.text}});
  }
  const Json json = {{"reference_sheet", inspection.reference_sheet
                                             ? ReferenceSheetJson(*inspection.reference_sheet)
                                             : Json(nullptr)},
                     {"names", names},
                     {"sheets", sheets},
                     {"problems", problems}};
  out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace vantora::cli
