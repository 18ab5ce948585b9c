#include "operations/test_model.h"

#include <stdlib.h>

#include <system_error>

#include "package/xml_scanner.h"

namespace vantora::testing {
namespace {

constexpr int kFillColor = 36;

struct Place {
  std::string sheet;
  embedded::CellAddress cell;
};

Place PlaceOf(const std::string& reference) {
  std::size_t mark = reference.find('!');
  embedded::Area area = embedded::ParseA1(reference.substr(mark + 1)).value();
  return {reference.substr(0, mark), {area.first_row, area.first_column}};
}

}  // namespace

TestModel::TestModel(const std::vector<std::string>& sheet_names)
    : session_(embedded::Session::Create(sheet_names)) {
  std::string pattern = (std::filesystem::temp_directory_path() / "vantora-model-XXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  session_->SetPrompts(*user_);
  session_->DirectSaves([requests = save_requests_.get(),
                         folder = folder_](const embedded::SaveRequest& request) {
    requests->push_back(request.filename ? "SaveAs " + *request.filename + " " + request.ending
                                         : "Save " + request.ending);
    return folder / ("saved" + request.ending);
  });
}

TestModel::~TestModel() {
  session_.reset();
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

std::optional<std::string> HostUser::InputRange(std::string_view prompt, std::string_view title,
                                                std::string_view refusal) {
  asked.push_back(refusal.empty() ? std::string(title) + "|" + std::string(prompt)
                                  : std::string(refusal));
  return Answer();
}

std::optional<std::string> HostUser::GetSaveAsFilename(std::string_view initial_filename,
                                                       std::string_view file_filter,
                                                       std::string_view title) {
  asked.push_back(std::string(title) + "|" + std::string(initial_filename) + "|" +
                  std::string(file_filter));
  return Answer();
}

std::optional<std::string> HostUser::Answer() {
  if (answers.empty()) return std::nullopt;
  std::string answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

std::string TestModel::Selected() {
  std::string text;
  for (const host::RangePtr& area : application()->Selection()->Areas()) {
    const embedded::Area cells = {area->Row(), area->Column(),
                                  area->Row() + area->RowsCount() - 1,
                                  area->Column() + area->ColumnsCount() - 1};
    text += (text.empty() ? "" : " ") + embedded::ToA1(cells);
  }
  return text;
}

std::unique_ptr<embedded::Session> TestModel::Saved() {
  return embedded::Session::Open(session_->CommitSaves().back());
}

std::string TestModel::StyleOf(const std::string& cell, std::string_view table,
                               std::string_view id) {
  using Token = embedded::XmlScanner::Token;
  session_->Save(folder_ / "styles.xlsx");
  const std::string part = session_->file().package().Read("xl/styles.xml");
  // The n-th child of a table of the part.
  const auto entry = [&](std::string_view wanted, std::size_t index) -> std::string {
    embedded::XmlScanner xml(part);
    while (xml.Next() != Token::kDone) {
      if (xml.token() != Token::kStart || xml.local_name() != wanted) continue;
      for (std::size_t at = 0; xml.Next() != Token::kEnd;) {
        if (xml.token() != Token::kStart) continue;
        const std::size_t begin = xml.begin();
        xml.SkipElement();
        if (at++ == index) return part.substr(begin, xml.end() - begin);
      }
      break;
    }
    return "";
  };
  Place place = PlaceOf(cell);
  const std::string format = entry("cellXfs", SheetOf(place.sheet).StyleOf(place.cell));
  if (id.empty()) return format;
  embedded::XmlScanner xml(format);
  xml.Next();
  return entry(table, std::stoul(std::string(xml.Attribute(id).value_or("0"))));
}

void TestModel::Put(const std::string& cell, const std::vector<Value>& values) {
  host::RangePtr first = session_->Range(cell);
  int column = 1;
  for (const Value& value : values) first->Cells(1, column++)->SetValue(value);
}

std::vector<Value> TestModel::Get(const std::string& first_cell, int count) {
  host::RangePtr first = session_->Range(first_cell);
  std::vector<Value> values;
  for (int column = 1; column <= count; ++column) {
    values.push_back(first->Cells(1, column)->Value());
  }
  return values;
}

void TestModel::Fill(const std::string& cell) {
  session_->Range(cell)->Interior()->SetColorIndex(kFillColor);
}

bool TestModel::IsFilled(const std::string& cell) {
  return session_->Range(cell)->Interior()->ColorIndex() == kFillColor;
}

void TestModel::Name(std::string name, std::string refers_to) {
  model().names.push_back({.name = std::move(name), .refers_to = std::move(refers_to)});
}

std::string TestModel::RefersTo(std::string_view name) {
  return model().FindName(name, 0)->refers_to;
}

void TestModel::Hide(std::string_view sheet) {
  SheetOf(sheet).visibility = embedded::Visibility::kHidden;
}

void TestModel::Protect(std::string_view sheet) { SheetOf(sheet).is_protected = true; }

void TestModel::AddSpinner(std::string_view sheet, std::string_view name,
                           std::string_view linked_cell) {
  embedded::OpcPackage& package = session_->file().package();
  const std::string part = package.FreePartName("xl/drawings/vmlDrawing", ".vml");
  std::string id(name);
  for (std::size_t at; (at = id.find(' ')) != std::string::npos;) id.replace(at, 1, "_x0020_");
  package.Write(part, "<xml><v:shape id=\"" + id + "\"><x:ClientData ObjectType=\"Spin\">" +
                          "<x:FmlaLink>" + std::string(linked_cell) +
                          "</x:FmlaLink></x:ClientData></v:shape></xml>");
  package.AddRelationship(
      session_->file().part_of(*model().IdOf(sheet)),
      "http://schemas.openxmlformats.org/officeDocument/2006/relationships/vmlDrawing", part);
}

std::string TestModel::Formula(const std::string& cell) {
  Place place = PlaceOf(cell);
  embedded::SheetModel& sheet = SheetOf(place.sheet);
  embedded::FormulaId id = sheet.cells.Get(place.cell).formula;
  return id == 0 ? "" : embedded::FormulaText(sheet.formulas[id], place.cell, model());
}

std::string TestModel::PartOf(std::string_view sheet, std::string_view kind) {
  embedded::WorkbookFile& file = session_->file();
  for (const auto& relationship :
       file.package().RelationshipsOf(file.part_of(*model().IdOf(sheet)))) {
    if (relationship.IsType(kind)) return file.package().Read(relationship.target);
  }
  return "";
}

std::string TestModel::Comment(const std::string& cell) {
  using Token = embedded::XmlScanner::Token;
  Place place = PlaceOf(cell);
  const std::string comments = PartOf(place.sheet, "comments");
  if (comments.empty()) return "none";
  const std::string reference = embedded::ToA1(place.cell);
  std::string text = "none";
  bool inside = false;
  for (embedded::XmlScanner xml(comments); xml.Next() != Token::kDone;) {
    if (xml.token() != Token::kStart) continue;
    if (xml.local_name() == "comment") {
      inside = xml.Attribute("ref") == reference;
      if (inside) text.clear();
    } else if (inside && xml.local_name() == "t" && !xml.is_empty()) {
      text += xml.ElementText();
    }
  }
  return text;
}

bool TestModel::CommentsAreHidden(std::string_view sheet) {
  std::string drawing = PartOf(sheet, "vmlDrawing");
  return drawing.find("visibility:hidden") != std::string::npos &&
         drawing.find("x:Visible") == std::string::npos;
}

std::vector<std::string> TestModel::Changes() {
  embedded::ChangeList changes = session_->Changes();
  std::vector<std::string> lines;
  for (const auto& columns : changes.inserted) {
    lines.push_back(columns.sheet + "!" + embedded::ColumnLetters(columns.column) + " inserted");
  }
  for (const auto& change : changes.cells) {
    lines.push_back(change.sheet + "!" + embedded::ToA1(change.cell) + ": " + change.before +
                    " -> " + change.after);
  }
  return lines;
}

}  // namespace vantora::testing
