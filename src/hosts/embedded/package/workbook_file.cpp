#include "package/workbook_file.h"

#include <algorithm>
#include <map>
#include <set>

#include "core/convert.h"
#include "package/chart_caches.h"
#include "package/follow_markup.h"
#include "package/parallel.h"
#include "package/sheet_reader.h"
#include "package/sheet_writer.h"
#include "formula/rename_columns.h"
#include "package/table_headers.h"
#include "package/workbook_reader.h"
#include "package/workbook_writer.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kSpreadsheetNamespace =
    "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kRelationshipNamespace =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr std::string_view kXmlDeclaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
constexpr std::string_view kSharedStringsType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";
constexpr std::string_view kMacroEnabledType =
    "application/vnd.ms-excel.sheet.macroEnabled.main+xml";
constexpr std::string_view kEmptySheet = "<dimension ref=\"A1\"/><sheetData/>";

std::string SpreadsheetType(std::string_view kind) {
  return "application/vnd.openxmlformats-officedocument.spreadsheetml." + std::string(kind) +
         "+xml";
}

std::string RelationshipType(std::string_view kind) {
  return std::string(kRelationshipNamespace) + "/" + std::string(kind);
}

// A document whose root is `name`, in the spreadsheet namespace.
std::string Document(std::string_view name, std::string_view content) {
  std::string text(kXmlDeclaration);
  text += "<" + std::string(name) + " xmlns=\"" + std::string(kSpreadsheetNamespace) +
          "\" xmlns:r=\"" + std::string(kRelationshipNamespace) + "\">";
  text += content;
  return text + "</" + std::string(name) + ">";
}

// A package with the parts of a workbook with empty sheets; their names go to `parts`.
std::unique_ptr<OpcPackage> CreatePackage(const std::vector<std::string>& sheet_names,
                                          WorkbookParts& parts) {
  std::unique_ptr<OpcPackage> package = OpcPackage::Create();
  parts.workbook = "xl/workbook.xml";
  parts.styles = "xl/styles.xml";
  package->EnsureDefaultContentType("rels",
                                    "application/vnd.openxmlformats-package.relationships+xml");
  package->EnsureDefaultContentType("xml", "application/xml");
  package->SetContentType(parts.workbook, SpreadsheetType("sheet.main"));
  package->AddRelationship("", RelationshipType("officeDocument"), parts.workbook);
  std::string sheets;
  for (std::size_t i = 0; i < sheet_names.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    const std::string& part = parts.sheets.emplace_back("xl/worksheets/sheet" + number + ".xml");
    package->Write(part, Document("worksheet", kEmptySheet));
    package->SetContentType(part, SpreadsheetType("worksheet"));
    std::string id = package->AddRelationship(parts.workbook, RelationshipType("worksheet"), part);
    parts.sheet_relationships.push_back(id);
    sheets += "<sheet name=\"" + EncodeXmlAttribute(sheet_names[i]) + "\" sheetId=\"" + number +
              "\" r:id=\"" + id + "\"/>";
  }
  package->Write(parts.workbook,
                 Document("workbook",
                          "<bookViews><workbookView/></bookViews><sheets>" + sheets + "</sheets>"));
  package->Write(parts.styles, NewStylesPart());
  package->SetContentType(parts.styles, SpreadsheetType("styles"));
  package->AddRelationship(parts.workbook, RelationshipType("styles"), parts.styles);
  return package;
}

bool IsChart(const Relationship& relationship) {
  return relationship.IsType("chart") || relationship.IsType("chartEx");
}

}  // namespace

WorkbookFile::WorkbookFile() = default;
WorkbookFile::~WorkbookFile() = default;

std::unique_ptr<WorkbookFile> WorkbookFile::Create(const std::vector<std::string>& sheet_names,
                                                   const std::string& name) {
  std::unique_ptr<WorkbookFile> file(new WorkbookFile());
  file->name_ = name;
  file->parts_ = std::make_unique<WorkbookParts>();
  file->package_ = CreatePackage(sheet_names, *file->parts_);
  file->windows_ = {BookView{}};
  file->active_sheets_ = {0};
  const std::string text = Document("worksheet", kEmptySheet);
  for (const std::string& sheet_name : sheet_names) {
    SheetModel& sheet = file->model_.AddSheet(sheet_name);
    SheetPart& part = file->sheets_.emplace_back();
    part.part = file->parts_->sheets[sheet.id];
    SheetRoom room;
    ReadSheet(text, file->model_, sheet, part.markup, room);
  }
  return file;
}

bool WorkbookFile::has_macros() const {
  const auto& relationships = package_->RelationshipsOf(parts_->workbook);
  return std::any_of(relationships.begin(), relationships.end(),
                     [](const Relationship& r) { return r.IsType("vbaProject"); });
}

std::string WorkbookFile::main_content_type() const {
  return package_->ContentTypeOf(parts_->workbook);
}

void WorkbookFile::SetMainContentType(const std::string& content_type) {
  if (content_type != main_content_type()) {
    package_->SetContentType(parts_->workbook, content_type);
  }
}

bool WorkbookFile::is_macro_enabled() const {
  return main_content_type().find(".macroEnabled.") != std::string::npos;
}

void WorkbookFile::MakeMacroEnabled() {
  if (!is_macro_enabled()) SetMainContentType(std::string(kMacroEnabledType));
}

std::span<const ColumnInsertion> WorkbookFile::Pending(std::size_t& followed) {
  std::span<const ColumnInsertion> pending = std::span(insertions_).subspan(followed);
  followed = insertions_.size();
  return pending;
}

void WorkbookFile::FollowInsertions(int sheet) {
  SheetPart& part = sheets_[sheet];
  auto pending = Pending(part.insertions_followed);
  if (pending.empty()) return;
  if (FollowInSheetMarkup(part.markup, sheet, pending, model_)) part.markup.changed = true;
  FollowInParts(sheet, pending);
}

void WorkbookFile::FollowInParts(int sheet, std::span<const ColumnInsertion> pending) {
  // Copied: a part that is written makes the package read relationships anew.
  const std::vector<Relationship> relationships = package_->RelationshipsOf(sheets_[sheet].part);
  for (const Relationship& relationship : relationships) {
    if (relationship.external || !package_->Has(relationship.target)) continue;
    const std::string& part = relationship.target;
    auto follow = [&](auto&& function) {
      try {
        if (std::optional<std::string> text = function(package_->Read(part))) {
          package_->Write(part, std::move(*text));
        }
      } catch (const XmlError& error) {
        ThrowDamaged(part, error);
      }
    };
    if (relationship.IsType("drawing")) {
      follow(
          [&](const std::string& text) { return FollowInDrawing(text, sheet, pending, model_); });
    } else if (relationship.IsType("vmlDrawing")) {
      follow([&](const std::string& text) {
        return FollowInVmlDrawing(text, sheet, pending, model_);
      });
    } else if (relationship.IsType("comments") || relationship.IsType("threadedComment")) {
      follow([&](const std::string& text) { return FollowInComments(text, sheet, pending); });
    } else if (relationship.IsType("table")) {
      follow([&](const std::string& text) { return FollowInTable(text, sheet, pending, model_); });
    } else if (relationship.IsType("ctrlProp")) {
      follow([&](const std::string& text) {
        return FollowInControlProperties(text, sheet, pending, model_);
      });
    } else if (relationship.IsType("pivotTable")) {
      follow([&](const std::string& text) { return FollowInPivot(text, sheet, pending, model_); });
    }
  }
}

// Charts and pivot caches belong to no sheet's cells: every insertion may concern each of them.
void WorkbookFile::FollowInSharedParts() {
  auto pending = Pending(insertions_followed_);
  if (pending.empty()) return;
  for (const std::string& part : ChartParts()) {
    try {
      if (auto text = FollowInChart(package_->Read(part), pending, model_)) {
        package_->Write(part, std::move(*text));
      }
    } catch (const XmlError& error) {
      ThrowDamaged(part, error);
    }
  }
  const std::vector<Relationship> relationships = package_->RelationshipsOf(parts_->workbook);
  for (const Relationship& relationship : relationships) {
    if (!relationship.IsType("pivotCacheDefinition") || !package_->Has(relationship.target)) {
      continue;
    }
    try {
      if (auto text = FollowInPivot(package_->Read(relationship.target), -1, pending, model_)) {
        package_->Write(relationship.target, std::move(*text));
      }
    } catch (const XmlError& error) {
      ThrowDamaged(relationship.target, error);
    }
  }
}

// What the table's part names otherwise than the model does. Refused where a formula that can't be
// read may use one of the names: a wrong name in it would make the file count as damaged.
ColumnRenames WorkbookFile::CheckedRenames(const Table& now, const std::string& part) const {
  ColumnRenames renames{now.name, {}};
  const Table* before = model_.FindTable(now.name);
  if (!before) return renames;
  for (std::size_t i = 0; i < std::min(before->columns.size(), now.columns.size()); ++i) {
    if (before->columns[i] == now.columns[i]) continue;
    renames.names.emplace_back(before->columns[i], now.columns[i]);
  }
  if (renames.names.empty() || CanRenameColumns(model_, renames)) return renames;
  throw FileError(FileError::Code::kUnsupported,
                  "The operation changes the header \"" + renames.names[0].first +
                      "\" of the table in " + part +
                      ", and a formula that may refer to the column by that name can't be read. "
                      "Run it in Excel, or make the table a plain range first.");
}

// Formulas that refer to the columns follow, and the model's table is as its part has it.
void WorkbookFile::RenameTableColumns(const ColumnRenames& renames, Table now,
                                      const std::string& part, TableMatches& matches) {
  if (!renames.names.empty()) {
    RenameOutcome outcome = RenameColumns(model_, renames);
    matches.formulas.insert(matches.formulas.end(), outcome.cells.begin(), outcome.cells.end());
    matches.names_changed = matches.names_changed || outcome.names_changed;
    for (const SheetPart& sheet : sheets_) {
      for (const Relationship& relationship : package_->RelationshipsOf(sheet.part)) {
        if (!relationship.IsType("table") || !package_->Has(relationship.target)) continue;
        const bool is_own = relationship.target == part;
        if (auto text = RenameInTablePart(package_->Read(relationship.target), is_own, renames)) {
          package_->Write(relationship.target, std::move(*text));
        }
      }
    }
  }
  for (Table& table : model_.tables) {
    if (table.name == now.name) table.columns = now.columns;
  }
}

TableMatches WorkbookFile::MatchTables() {
  TableMatches matches;
  for (int id = 0; id < static_cast<int>(sheets_.size()); ++id) {
    const std::vector<Relationship> relationships = package_->RelationshipsOf(sheets_[id].part);
    for (const Relationship& relationship : relationships) {
      if (!relationship.IsType("table") || !package_->Has(relationship.target)) continue;
      FollowInsertions(id);
      TableHeaderEdits edits;
      try {
        if (auto text = MatchTableHeaders(package_->Read(relationship.target), *model_.sheets[id],
                                          model_.strings, edits)) {
          const std::optional<Table> now = ReadTable(*text, id);
          const ColumnRenames renames =
              now ? CheckedRenames(*now, relationship.target) : ColumnRenames{};
          package_->Write(relationship.target, std::move(*text));
          if (now) RenameTableColumns(renames, *now, relationship.target, matches);
        }
      } catch (const XmlError& error) {
        ThrowDamaged(relationship.target, error);
      }
      for (CellAddress header : edits.written) matches.headers.emplace_back(id, header);
    }
  }
  return matches;
}

StyleEditor& WorkbookFile::style_editor() {
  if (!style_editor_) {
    style_editor_ =
        std::make_unique<StyleEditor>(*package_, parts_->styles, parts_->theme, model_.styles);
  }
  return *style_editor_;
}

void WorkbookFile::WriteStyles() {
  if (!style_editor_ || !style_editor_->changed()) return;
  std::string& part = parts_->styles;
  if (part.empty()) {
    part = package_->FreePartName("xl/styles", ".xml");
    package_->SetContentType(part, SpreadsheetType("styles"));
    package_->AddRelationship(parts_->workbook, RelationshipType("styles"), part);
  }
  package_->Write(part, style_editor_->Text());
}

std::set<std::string> WorkbookFile::ChartParts() const {
  std::set<std::string> charts;
  for (const SheetPart& sheet : sheets_) {
    for (const Relationship& drawing : package_->RelationshipsOf(sheet.part)) {
      if (!drawing.IsType("drawing") || drawing.external) continue;
      for (const Relationship& chart : package_->RelationshipsOf(drawing.target)) {
        if (IsChart(chart) && !chart.external && package_->Has(chart.target)) {
          charts.insert(chart.target);
        }
      }
    }
  }
  return charts;
}

void WorkbookFile::WriteWindows(const std::vector<WindowToWrite>& windows) {
  std::vector<BookViewToWrite> book_views;
  for (const WindowToWrite& window : windows) {
    book_views.push_back({window.origin, window.view});
    book_views.back().view.active_tab = model_.PositionOf(window.active_sheet);
  }
  try {
    if (auto text = PatchBookViews(package_->Read(parts_->workbook), book_views)) {
      package_->Write(parts_->workbook, std::move(*text));
    }
  } catch (const XmlError& error) {
    ThrowDamaged(parts_->workbook, error);
  }
  for (int id = 0; id < static_cast<int>(sheets_.size()); ++id) {
    std::vector<SheetViewToWrite> views;
    for (const WindowToWrite& window : windows) {
      SheetViewToWrite& view = views.emplace_back();
      view.origin = window.origin;
      if (auto sheet = window.sheets.find(id); sheet != window.sheets.end()) {
        view.view = sheet->second;
      }
      const bool same_tab = window.origin && active_sheets_[*window.origin] == window.active_sheet;
      // A hidden sheet that stays in a group of selected tabs would take edits unseen.
      const bool same_visibility = model_.sheets[id]->visibility == sheets_[id].loaded_visibility;
      if (!same_tab || !same_visibility) view.tab_selected = id == window.active_sheet;
    }
    WriteSheetViews(sheets_[id].markup, views, active_sheets_.size());
  }
  active_sheets_.clear();
  for (const WindowToWrite& window : windows) active_sheets_.push_back(window.active_sheet);
}

bool WorkbookFile::CellsDiffer(int sheet) const {
  const CellStore& cells = model_.sheets[sheet]->cells;
  if (cells.size() != sheets_[sheet].loaded_cells) return true;
  bool differ = false;
  for (int column = 1; column <= cells.LastColumn() && !differ; ++column) {
    if (cells.OriginOf(column) != column) return true;
    cells.ForEachInColumn(column, 1, kMaxRow, [&](int, const Cell& cell) {
      differ |= (cell.flags & (kValueChanged | kFormulaChanged | kStyleChanged)) != 0;
    });
  }
  return differ;
}

std::vector<int> WorkbookFile::ChangedSheets() {
  std::vector<char> changed(sheets_.size());
  ForEachInParallel(static_cast<int>(sheets_.size()), [&](int id) {
    SheetPart& part = sheets_[id];
    const SheetModel& sheet = *model_.sheets[id];
    bool cells_differ = sheet.is_worksheet && CellsDiffer(id);
    if (sheet.column_formats_changed) {
      WriteColumnFormats(part.markup, sheet.column_formats, model_.styles.max_digit_width);
    }
    if (sheet.rows_changed) WriteRowOutline(part.markup, sheet);
    if (cells_differ) {
      std::optional<Area> area = sheet.cells.UsedArea();
      if (area != part.loaded_area) WriteDimension(part.markup, area);
    }
    changed[id] = cells_differ || sheet.rows_changed || part.markup.changed;
  });
  std::vector<int> sheets;
  for (int id = 0; id < static_cast<int>(changed.size()); ++id) {
    if (changed[id]) sheets.push_back(id);
  }
  return sheets;
}

NewSharedStrings WorkbookFile::CollectSharedStrings(const std::vector<int>& sheets) {
  NewSharedStrings added(model_.strings);
  for (int id : sheets) {
    const CellStore& cells = model_.sheets[id]->cells;
    for (int column = 1; column <= cells.LastColumn(); ++column) {
      cells.ForEachInColumn(column, 1, kMaxRow, [&](int, const Cell& cell) {
        if (NeedsSharedString(cell)) added.Add(cell.value.text);
      });
    }
  }
  return added;
}

void WorkbookFile::WriteSharedStrings(const NewSharedStrings& added) {
  std::string& part = parts_->shared_strings;
  if (added.empty()) {
    // What an earlier save added may be needed no more.
    if (!part.empty()) package_->Revert(part);
    return;
  }
  std::size_t count = 0;
  for (const auto& sheet : model_.sheets) {
    for (int column = 1; column <= sheet->cells.LastColumn(); ++column) {
      sheet->cells.ForEachInColumn(column, 1, kMaxRow, [&](int, const Cell& cell) {
        if (cell.value.kind == CellKind::kText && cell.formula == 0) ++count;
      });
    }
  }
  if (part.empty()) {
    std::size_t slash = parts_->workbook.rfind('/');
    part = parts_->workbook.substr(0, slash == std::string::npos ? 0 : slash + 1) +
           "sharedStrings.xml";
    if (package_->Has(part)) part = package_->FreePartName("xl/sharedStrings", ".xml");
    package_->SetContentType(part, kSharedStringsType);
    package_->AddRelationship(parts_->workbook, RelationshipType("sharedStrings"), part);
  }
  std::string original = package_->HasOriginal(part) ? package_->ReadOriginal(part) : "";
  package_->Write(part, added.AppendTo(original, count));
}

void WorkbookFile::WriteSheets(const std::vector<int>& sheets, const NewSharedStrings& added) {
  SharedStringIndex index = [&](TextId id) { return added.IndexOf(id); };
  std::vector<char> breaks_chain(sheets.size());
  ForEachInParallel(static_cast<int>(sheets.size()), [&](int i) {
    const SheetPart& part = sheets_[sheets[i]];
    // Always merged with the part as it was read, whatever earlier saves wrote.
    std::string original =
        package_->HasOriginal(part.part) ? package_->ReadOriginal(part.part) : "";
    WrittenSheet written =
        WriteSheet(original, part.markup, model_, *model_.sheets[sheets[i]], index);
    breaks_chain[i] = written.breaks_calculation_chain;
    original = {};
    package_->Write(part.part, std::move(written.text));
  });
  if (std::find(breaks_chain.begin(), breaks_chain.end(), 1) != breaks_chain.end()) {
    RemoveCalculationChain();
  }
}

void WorkbookFile::RemoveCalculationChain() {
  const std::vector<Relationship> relationships = package_->RelationshipsOf(parts_->workbook);
  for (const Relationship& relationship : relationships) {
    if (!relationship.IsType("calcChain")) continue;
    package_->RemoveRelationship(parts_->workbook, relationship.id);
    package_->RemoveContentType(relationship.target);
    package_->Remove(relationship.target);
  }
}

void WorkbookFile::UpdateCharts(const std::vector<int>& sheets) {
  std::set<int> with_erased;
  for (int id : sheets) {
    if (model_.sheets[id]->cells.size() != sheets_[id].loaded_cells) with_erased.insert(id);
  }
  for (const std::string& part : ChartParts()) {
    const bool followed = package_->IsChanged(part);
    auto concerns = [&](int id, const Area& area) {
      if (followed || with_erased.contains(id)) return true;
      const CellStore& cells = model_.sheets[id]->cells;
      bool changed = false;
      for (int column = area.first_column;
           column <= std::min(area.last_column, cells.LastColumn()) && !changed; ++column) {
        cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int, const Cell& cell) {
          changed |= (cell.flags & kValueChanged) != 0;
        });
      }
      return changed;
    };
    try {
      if (auto text = UpdateChartCaches(package_->Read(part), model_, concerns)) {
        package_->Write(part, std::move(*text));
      }
    } catch (const XmlError& error) {
      ThrowDamaged(part, error);
    }
  }
}

void WorkbookFile::WriteWorkbookPart() {
  WorkbookChanges changes;
  changes.calculate_on_opening = calculate_on_opening_;
  if (records_calculation_mode_) changes.manual_calculation = model_.manual_calculation;
  changes.sheet_relationships = parts_->sheet_relationships;
  try {
    if (auto text = PatchWorkbook(package_->Read(parts_->workbook), model_, changes)) {
      package_->Write(parts_->workbook, std::move(*text));
    }
  } catch (const XmlError& error) {
    ThrowDamaged(parts_->workbook, error);
  }
}

std::unique_ptr<ReplacementFile> WorkbookFile::WriteBeside(const std::filesystem::path& path) {
  if (failed_) std::rethrow_exception(failed_);
  try {
    WriteParts();
  } catch (...) {
    failed_ = std::current_exception();
    throw;
  }
  return package_->WriteBeside(path);
}

void WorkbookFile::WriteParts() {
  for (int id = 0; id < static_cast<int>(sheets_.size()); ++id) FollowInsertions(id);
  FollowInSharedParts();
  MatchTables();
  WriteWorkbookPart();
  WriteStyles();
  std::vector<int> sheets = ChangedSheets();
  if (!sheets.empty()) {
    NewSharedStrings added = CollectSharedStrings(sheets);
    WriteSharedStrings(added);
    WriteSheets(sheets, added);
    UpdateCharts(sheets);
  }
}

}  // namespace vantora::embedded
