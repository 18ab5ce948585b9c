#include "cli/report.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/cell_text.h"
#include "cli/changes_json.h"
#include "core/convert.h"
#include "core/message_box.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kUncalculatedShown = 10;

std::string_view OutcomeWord(ExitCode exit_code) {
  switch (exit_code) {
    case ExitCode::kDone:
      return "done";
    case ExitCode::kError:
      return "error";
    case ExitCode::kUsage:
      return "usage";
    case ExitCode::kCancelled:
      return "cancelled";
    case ExitCode::kUnanswered:
      return "unanswered";
  }
  return "";
}

std::string ColumnsText(const embedded::InsertedColumns& inserted) {
  const std::string first = embedded::ColumnLetters(inserted.column);
  if (inserted.count == 1) return "column " + first + " inserted";
  return "columns " + first + " to " +
         embedded::ColumnLetters(inserted.column + inserted.count - 1) + " inserted";
}

// The changed sheets, each once.
std::vector<std::string> SheetsOf(const embedded::ChangeList& changes) {
  std::vector<std::string> sheets;
  const auto add = [&](const std::string& sheet) {
    if (std::find(sheets.begin(), sheets.end(), sheet) == sheets.end()) sheets.push_back(sheet);
  };
  for (const auto& inserted : changes.inserted) add(inserted.sheet);
  for (std::size_t i = 0; i < changes.cells.size(); ++i) {
    if (i == 0 || changes.cells[i].sheet != changes.cells[i - 1].sheet) add(changes.cells[i].sheet);
  }
  return sheets;
}

void WriteCells(const embedded::ChangeList& changes, const std::string& sheet, std::ostream& out,
                std::size_t limit) {
  // A sheet's cells stand together.
  const auto is_of_sheet = [&](const embedded::CellChange& cell) { return cell.sheet == sheet; };
  const auto first = std::find_if(changes.cells.begin(), changes.cells.end(), is_of_sheet);
  const auto last = std::find_if_not(first, changes.cells.end(), is_of_sheet);
  const auto count = static_cast<std::size_t>(last - first);
  const auto shown_end = first + static_cast<std::ptrdiff_t>(std::min(count, limit));
  for (auto cell = first; cell != shown_end; ++cell) {
    out << "  " << embedded::ToA1(cell->cell) << "  " << OnOneLine(cell->before) << "  ->  "
        << OnOneLine(cell->after) << '\n';
  }
  if (count > limit) out << "  ... and " << Count(count - limit, "more cell", "more cells") << '\n';
}

void WriteUncalculated(const std::vector<UncalculatedFormula>& formulas, std::ostream& err) {
  if (formulas.empty()) return;
  err << Count(formulas.size(), "formula", "formulas")
      << " could not be calculated: such a cell keeps its last value, and Excel calculates it when "
         "it opens the file.\n";
  const std::size_t shown = std::min(formulas.size(), kUncalculatedShown);
  for (std::size_t i = 0; i < shown; ++i) {
    err << "  " << ui::Printable(formulas[i].sheet) << "!" << embedded::ToA1(formulas[i].cell)
        << ": " << ui::Printable(formulas[i].reason) << '\n';
  }
  if (formulas.size() > shown) err << "  ... and " << formulas.size() - shown << " more\n";
}

void WriteError(const ReportedError& error, std::ostream& err) {
  if (error.was_shown) {
    err << "vantora: the model reported an error.\n";
    if (!error.save_failure.empty()) err << ui::Printable(error.save_failure) << '\n';
    return;
  }
  err << "vantora: " << ui::Printable(error.text);
  if (error.number) err << " (error " << *error.number << ")";
  err << '\n';
}

void WriteUnusedAnswers(const std::vector<std::string>& answers, std::ostream& err) {
  for (const std::string& answer : answers) {
    err << "vantora: warning: nothing asked for the answer \"" << ui::Printable(answer) << "\".\n";
  }
}

// Changes that nothing was said to be done with.
void WriteUnsaved(const std::vector<FurtherOutcome>& further, std::ostream& err) {
  for (const FurtherOutcome& workbook : further) {
    if (!workbook.changed || workbook.written) continue;
    const std::string name = ui::Printable(workbook.name);
    err << "vantora: warning: " << name << " was changed, and the changes are not saved; save them "
        << "with --output-for " << name << "=FILE.\n";
  }
}

void WriteEnd(const RunOutcome& outcome, std::ostream& err) {
  switch (outcome.exit_code) {
    case ExitCode::kDone:
      break;
    case ExitCode::kCancelled:
      err << "vantora: cancelled; nothing was written.\n";
      return;
    case ExitCode::kUsage:
      return;
    case ExitCode::kError:
    case ExitCode::kUnanswered:
      // Where only the journal is missing, the error tells of the result.
      if (!outcome.written) err << "Nothing was written.\n";
      return;
  }
  if (!outcome.written) {
    err << "Nothing was written (--dry-run).\n";
    return;
  }
  err << "Written: " << outcome.written->string();
  if (outcome.backup) err << " (before: " << outcome.backup->string() << ")";
  err << '\n';
  for (const FurtherOutcome& workbook : outcome.further) {
    if (workbook.written) err << "Written: " << workbook.written->string() << '\n';
  }
}

Json ErrorJson(const ReportedError& error) {
  Json json = {{"text", error.text}};
  if (error.number) {
    json["number"] = *error.number;
    json["source"] = error.source;
  }
  if (error.file_error) json["file_error"] = *error.file_error;
  if (!error.part.empty()) json["part"] = error.part;
  if (!error.place.empty()) json["place"] = error.place;
  if (!error.save_failure.empty()) json["save_failure"] = error.save_failure;
  return json;
}

Json ResultJson(const Value& value) {
  if (value.IsEmpty()) return nullptr;
  if (value.IsBoolean()) return value.AsBoolean();
  if (value.IsNumber()) return value.AsNumber();
  return ValueToText(value);
}

Json ListJson(const FilledArray& array) {
  return std::visit([](const auto& elements) { return Json(elements); }, array.elements);
}

Json ArraysJson(const std::vector<FilledArray>& arrays) {
  Json json = Json::object();
  for (const FilledArray& array : arrays) json[array.parameter] = ListJson(array);
  return json;
}

// As a list that can be given to a method again.
void WriteArrays(const std::vector<FilledArray>& arrays, std::ostream& out) {
  for (const FilledArray& array : arrays) {
    out << array.parameter << ": "
        << ui::Printable(ListJson(array).dump(-1, ' ', false, Json::error_handler_t::replace))
        << '\n';
  }
}

Json PathJson(const std::optional<std::filesystem::path>& path) {
  return path ? Json(path->string()) : Json(nullptr);
}

Json FurtherJson(const std::vector<FurtherOutcome>& further) {
  Json json = Json::array();
  for (const FurtherOutcome& workbook : further) {
    json.push_back({{"workbook", workbook.name},
                    {"changed", workbook.changed},
                    {"changes", ChangesJson(workbook.changes)},
                    {"written", PathJson(workbook.written)}});
  }
  return json;
}

Json OutcomeJson(const RunOutcome& outcome) {
  Json messages = Json::array();
  for (const ShownMessage& message : outcome.messages) {
    messages.push_back({{"title", message.title},
                        {"icon", IconWordOf(message.style)},
                        {"text", message.text},
                        {"buttons", message.buttons},
                        {"answer", message.answer}});
  }
  Json uncalculated = Json::array();
  for (const UncalculatedFormula& formula : outcome.uncalculated) {
    uncalculated.push_back({{"sheet", formula.sheet},
                            {"cell", embedded::ToA1(formula.cell)},
                            {"reason", formula.reason}});
  }
  return {{"outcome", OutcomeWord(outcome.exit_code)},
          {"exit_code", static_cast<int>(outcome.exit_code)},
          {"error", outcome.error ? ErrorJson(*outcome.error) : Json(nullptr)},
          {"result", ResultJson(outcome.result)},
          {"arrays", ArraysJson(outcome.arrays)},
          {"messages", messages},
          {"unused_answers", outcome.unused_answers},
          {"remarks", outcome.remarks},
          {"changes", ChangesJson(outcome.changes)},
          {"uncalculated", uncalculated},
          {"written", PathJson(outcome.written)},
          {"backup", PathJson(outcome.backup)},
          {"further", FurtherJson(outcome.further)}};
}

}  // namespace

void WriteChanges(const embedded::ChangeList& changes, std::ostream& out,
                  std::size_t cells_of_a_sheet) {
  if (changes.inserted.empty() && changes.cells.empty() && changes.others.empty()) {
    out << "Nothing changed.\n";
    return;
  }
  for (const std::string& sheet : SheetsOf(changes)) {
    out << ui::Printable(sheet) << '\n';
    for (const auto& inserted : changes.inserted) {
      if (inserted.sheet == sheet) out << "  " << ColumnsText(inserted) << '\n';
    }
    WriteCells(changes, sheet, out, cells_of_a_sheet);
  }
  if (!changes.others.empty()) out << "Other changes\n";
  for (const std::string& other : changes.others) out << "  " << OnOneLine(other) << '\n';
}

void Report(const RunOutcome& outcome, const RunOptions& options, std::ostream& out,
            std::ostream& err) {
  const bool done = outcome.exit_code == ExitCode::kDone;
  std::ostream& words = options.json ? err : out;
  if (options.json) {
    // Text that is no UTF-8 (a file name) is replaced rather than refused.
    out << OutcomeJson(outcome).dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  } else if (done) {
    if (!outcome.result.IsEmpty()) out << ui::Printable(ValueToText(outcome.result)) << '\n';
    WriteArrays(outcome.arrays, out);
  }
  if (done && options.changes) {
    WriteChanges(outcome.changes, words);
    for (const FurtherOutcome& workbook : outcome.further) {
      words << "In " << ui::Printable(workbook.name) << ":\n";
      WriteChanges(workbook.changes, words);
    }
  }
  if (outcome.error) WriteError(*outcome.error, err);
  WriteUncalculated(outcome.uncalculated, err);
  if (done) WriteUnusedAnswers(outcome.unused_answers, err);
  for (const std::string& remark : outcome.remarks) {
    err << "vantora: note: " << ui::Printable(remark) << '\n';
  }
  if (done && outcome.written) WriteUnsaved(outcome.further, err);
  WriteEnd(outcome, err);
}

ReportedError ReportedFileError(const embedded::FileError& error) {
  return {.text = error.what(),
          .number = {},
          .source = "",
          .file_error = static_cast<int>(error.code()),
          .part = error.part(),
          .place = error.place()};
}

void ReportFailure(const std::exception& error, bool json, std::ostream& out, std::ostream& err) {
  err << "vantora: " << error.what() << '\n';
  if (!json) return;
  const auto* file_error = dynamic_cast<const embedded::FileError*>(&error);
  const ReportedError reported =
      file_error ? ReportedFileError(*file_error)
                 : ReportedError{.text = error.what(), .number = {}, .source = ""};
  const Json object = {{"error", ErrorJson(reported)}};
  out << object.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace vantora::cli
