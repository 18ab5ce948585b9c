#include "cli/diff.h"

#include <nlohmann/json.hpp>

#include "cli/cell_text.h"
#include "cli/report.h"
#include "host/cell_differences.h"
#include "package/part_differences.h"
#include "package/workbook_file.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

using embedded::PartDifference;
using Json = nlohmann::ordered_json;

struct Differences {
  std::vector<std::string> removed_sheets;
  std::vector<std::string> added_sheets;
  std::vector<embedded::CellDifference> cells;
  std::vector<PartDifference> parts;

  bool empty() const {
    return removed_sheets.empty() && added_sheets.empty() && cells.empty() && parts.empty();
  }
};

Differences Compare(const DiffOptions& options) {
  const auto before = embedded::WorkbookFile::Open(options.before);
  const auto after = embedded::WorkbookFile::Open(options.after);
  return {SheetsMissingIn(after->model(), before->model()),
          SheetsMissingIn(before->model(), after->model()),
          CompareCells(before->model(), after->model()),
          CompareParts(before->package(), after->package())};
}

std::string_view WordOf(PartDifference::Kind kind) {
  switch (kind) {
    case PartDifference::Kind::kRemoved:
      return "removed";
    case PartDifference::Kind::kAdded:
      return "added";
    case PartDifference::Kind::kChanged:
      return "changed";
  }
  return "";
}

void Write(const Differences& differences, std::ostream& out) {
  if (differences.empty()) {
    out << "The workbooks are the same.\n";
    return;
  }
  for (const std::string& name : differences.removed_sheets) {
    out << ui::Printable(name) << ": sheet removed\n";
  }
  for (const std::string& name : differences.added_sheets) {
    out << ui::Printable(name) << ": sheet added\n";
  }
  std::string_view sheet;
  for (const embedded::CellDifference& difference : differences.cells) {
    if (difference.sheet != sheet) out << ui::Printable(difference.sheet) << '\n';
    sheet = difference.sheet;
    out << "  " << embedded::ToA1(difference.cell) << "  " << ContentText(difference.before)
        << "  ->  " << ContentText(difference.after) << '\n';
  }
  if (!differences.parts.empty()) out << "Parts\n";
  for (const PartDifference& difference : differences.parts) {
    out << "  " << ui::Printable(difference.part) << ' ' << WordOf(difference.kind) << '\n';
  }
}

Json ContentJson(const embedded::CellContent& content) {
  return {{"formula", content.formula}, {"value", content.value}};
}

void WriteJson(const Differences& differences, std::ostream& out) {
  Json cells = Json::array();
  for (const embedded::CellDifference& difference : differences.cells) {
    cells.push_back({{"sheet", difference.sheet},
                     {"cell", embedded::ToA1(difference.cell)},
                     {"before", ContentJson(difference.before)},
                     {"after", ContentJson(difference.after)}});
  }
  Json parts = Json::array();
  for (const PartDifference& difference : differences.parts) {
    parts.push_back({{"part", difference.part}, {"change", WordOf(difference.kind)}});
  }
  const Json json = {{"removed_sheets", differences.removed_sheets},
                     {"added_sheets", differences.added_sheets},
                     {"cells", cells},
                     {"parts", parts}};
  out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

ExitCode Diff(const DiffOptions& options, Environment& environment) {
  try {
    const Differences differences = Compare(options);
    options.json ? WriteJson(differences, environment.out) : Write(differences, environment.out);
    return ExitCode::kDone;
  } catch (const std::exception& error) {
    ReportFailure(error, options.json, environment.out, environment.err);
    return ExitCode::kError;
  }
}

}  // namespace vantora::cli
