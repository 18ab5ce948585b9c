#include "operations/test_model.h"

#include <cmath>

#include "core/convert.h"
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
  std::string sheet = reference.substr(0, mark);
  if (sheet.starts_with('\'')) sheet = sheet.substr(1, sheet.size() - 2);
  return {sheet, {area.first_row, area.first_column}};
}

std::string InBracketsWhenHidden(const std::string& text, const embedded::MenuEntry& entry) {
  return entry.visible ? text : "(" + text + ")";
}

void DescribeEntries(const std::vector<embedded::MenuEntry>& entries, const std::string& indent,
                     std::vector<std::string>& lines) {
  for (const embedded::MenuEntry& entry : entries) {
    if (entry.begins_group) lines.push_back(indent + "-");
    std::string text = entry.caption;
    if (!entry.macro.empty()) text += " = " + entry.macro;
    if (entry.face_id != 0) text += " #" + std::to_string(entry.face_id);
    if (!entry.tag.empty()) text += " [" + entry.tag + "]";
    if (entry.is_popup) text += ":";
    lines.push_back(indent + InBracketsWhenHidden(text, entry));
    DescribeEntries(entry.entries, indent + "  ", lines);
  }
}

}  // namespace

TestModel::TestModel(const std::vector<std::string>& sheet_names)
    : session_(embedded::Session::Create(sheet_names)) {
  session_->SetPrompts(*user_);
  session_->DirectSaves([requests = save_requests_.get(),
                         folder = folder_.path()](const embedded::SaveRequest& request) {
    requests->push_back(request.filename ? "SaveAs " + *request.filename + " " + request.ending
                                         : "Save " + request.ending);
    return folder / ("saved" + request.ending);
  });
}

TestModel& TestModel::operator=(TestModel&& other) noexcept {
  // What this one held goes with `other`.
  session_.swap(other.session_);
  std::swap(workbook_, other.workbook_);
  user_.swap(other.user_);
  save_requests_.swap(other.save_requests_);
  folder_.swap(other.folder_);
  return *this;
}

TestModel::~TestModel() { session_.reset(); }

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
    const embedded::Area cells = {area->Row(), area->Column(), area->Row() + area->RowsCount() - 1,
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
  host::RangePtr first = session_->Range(cell, workbook_);
  int column = 1;
  for (const Value& value : values) first->Cells(1, column++)->SetValue(value);
}

std::vector<Value> TestModel::Get(const std::string& first_cell, int count) {
  host::RangePtr first = session_->Range(first_cell, workbook_);
  std::vector<Value> values;
  for (int column = 1; column <= count; ++column) {
    values.push_back(first->Cells(1, column)->Value());
  }
  return values;
}

std::vector<std::string> TestModel::Windows() {
  auto text = [](double points) { return NumberToText(points); };
  std::vector<std::string> windows;
  for (const embedded::WindowPlace& place : session_->Windows()) {
    windows.push_back(place.sheet + " " + text(place.left) + "," + text(place.top) + " " +
                      text(place.width) + "x" + text(place.height));
  }
  return windows;
}

void TestModel::Fill(const std::string& cell) {
  Place place = PlaceOf(cell);
  embedded::SheetModel& sheet = SheetOf(place.sheet);
  embedded::FormatChange change;
  change.fill_color_index = kFillColor;
  sheet.cells.SetStyle(place.cell, session_->file(workbook_).style_editor().Changed(
                                       sheet.StyleOf(place.cell), change));
}

bool TestModel::IsFilled(const std::string& cell) {
  return session_->Range(cell, workbook_)->Interior()->ColorIndex() == kFillColor;
}

std::vector<std::string> TestModel::SheetNames() {
  std::vector<std::string> names;
  for (int sheet : model().tab_order) names.push_back(model().NameOf(sheet));
  return names;
}

void TestModel::Name(std::string name, std::string refers_to) {
  model().names.push_back({.name = std::move(name), .refers_to = std::move(refers_to)});
}

std::string TestModel::RefersTo(std::string_view name) {
  return model().FindName(name, 0)->refers_to;
}

std::string TestModel::Alignment(const std::string& cell) {
  using Token = embedded::XmlScanner::Token;
  Place place = PlaceOf(cell);
  const embedded::StyleId style = SheetOf(place.sheet).StyleOf(place.cell);
  const std::string text = session_->file().style_editor().Text();
  bool is_format = false;
  embedded::StyleId next = 0;
  std::string alignment;
  for (embedded::XmlScanner xml(text); xml.Next() != Token::kDone;) {
    if (xml.token() != Token::kStart) continue;
    if (xml.depth() == 1) is_format = xml.local_name() == "cellXfs";
    if (is_format && xml.local_name() == "xf") ++next;
    if (!is_format || next != style + 1 || xml.local_name() != "alignment") continue;
    for (const embedded::XmlAttribute& attribute : xml.attributes()) {
      alignment += " " + std::string(attribute.name) + "=\"" + std::string(attribute.value) + "\"";
    }
  }
  return alignment;
}

std::string TestModel::Selection() {
  host::RangePtr range = application()->Selection();
  const embedded::Area area{range->Row(), range->Column(), range->Row() + range->RowsCount() - 1,
                            range->Column() + range->ColumnsCount() - 1};
  return range->Worksheet()->Name() + "!" + embedded::ToA1(area);
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

void TestModel::AddCharts(std::string_view sheet, const std::vector<TestChart>& charts) {
  constexpr std::string_view kType =
      "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
  constexpr double kUnits = 12700;
  embedded::WorkbookFile& file = session_->file();
  const std::string drawing = file.package().FreePartName("xl/drawings/drawing", ".xml");
  file.package().AddRelationship(file.part_of(*model().IdOf(sheet)), std::string(kType) + "drawing",
                                 drawing);
  auto units = [](double points) { return std::to_string(std::llround(points * kUnits)); };
  std::string anchors;
  for (const TestChart& chart : charts) {
    const std::string part = file.package().FreePartName("xl/charts/chart", ".xml");
    const std::string title = chart.title.empty() ? "<autoTitleDeleted val=\"1\"/>"
                                                  : "<title><tx><rich><p><r><t>" +
                                                        embedded::EncodeXmlText(chart.title) +
                                                        "</t></r></p></rich></tx></title>";
    file.package().Write(part, "<chartSpace><chart>" + title + "<plotArea/></chart></chartSpace>");
    const std::string id =
        file.package().AddRelationship(drawing, std::string(kType) + "chart", part);
    anchors += "<absoluteAnchor><pos x=\"" + units(chart.left) + "\" y=\"" + units(chart.top) +
               "\"/><ext cx=\"" + units(chart.width) +
               "\" cy=\"1\"/><graphicFrame><graphic><graphicData><chart id=\"" + id +
               "\"/></graphicData></graphic></graphicFrame></absoluteAnchor>";
  }
  file.package().Write(drawing, "<wsDr>" + anchors + "</wsDr>");
}

std::string TestModel::PartOf(std::string_view sheet, std::string_view kind) {
  embedded::WorkbookFile& file = session_->file(workbook_);
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

std::vector<std::string> TestModel::MenuBar() {
  std::vector<std::string> captions;
  for (const embedded::MenuEntry& menu : session_->MenuBar()) {
    captions.push_back(InBracketsWhenHidden(menu.caption, menu));
  }
  return captions;
}

std::vector<std::string> TestModel::Menu(std::string_view tag, std::size_t n) {
  std::vector<std::string> lines;
  for (const embedded::MenuEntry& menu : session_->MenuBar()) {
    if (menu.tag != tag || n-- > 0) continue;
    DescribeEntries(menu.entries, "", lines);
    return lines;
  }
  return {"no such menu"};
}

std::vector<std::string> TestModel::Changes() {
  embedded::ChangeList changes = session_->Changes(workbook_);
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
