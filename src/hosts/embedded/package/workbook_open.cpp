// Opening a package: the one place where a workbook file is read. Everything else of the class
// works on the model and the parts, wherever they come from.
#include <algorithm>

#include "package/column_width.h"
#include "package/sheet_reader.h"
#include "package/styles_reader.h"
#include "package/table_headers.h"
#include "package/workbook_file.h"
#include "package/workbook_reader.h"

namespace vantora::embedded {

std::unique_ptr<WorkbookFile> WorkbookFile::Open(const std::filesystem::path& path) {
  std::unique_ptr<WorkbookFile> file(new WorkbookFile());
  file->name_ = path.filename().string();
  file->package_ = OpcPackage::Open(path);
  file->ReadParts();
  const std::filesystem::path folder = std::filesystem::absolute(path).parent_path() / "";
  file->model_.folder = folder.string();
  file->model_.file_name = file->name_;
  return file;
}

void WorkbookFile::ReadParts() {
  std::string workbook = FindWorkbookPart(*package_, name_);
  parts_ =
      std::make_unique<WorkbookParts>(ReadWorkbook(*package_, workbook, model_, active_sheet_));
  try {
    windows_ = ReadBookViews(package_->Read(workbook));
  } catch (const XmlError& error) {
    ThrowDamaged(workbook, error);
  }
  for (const BookView& window : windows_) {
    const int last = static_cast<int>(model_.tab_order.size()) - 1;
    active_sheets_.push_back(model_.tab_order[std::min(window.active_tab, last)]);
  }
  model_.styles = ReadStyles(*package_, parts_->styles, parts_->theme);
  ReadSharedStrings(*package_, parts_->shared_strings, model_.strings);
  sheets_.resize(parts_->sheets.size());
  std::vector<SheetMarkup*> markups;
  for (std::size_t id = 0; id < sheets_.size(); ++id) {
    sheets_[id].part = parts_->sheets[id];
    markups.push_back(&sheets_[id].markup);
  }
  ReadSheets(*package_, *parts_, model_, markups);
  for (std::size_t id = 0; id < sheets_.size(); ++id) {
    sheets_[id].loaded_cells = model_.sheets[id]->cells.size();
    sheets_[id].loaded_area = model_.sheets[id]->cells.UsedArea();
    sheets_[id].loaded_visibility = model_.sheets[id]->visibility;
    model_.sheets[id]->standard_column_width =
        DefaultColumnWidth(sheets_[id].markup, model_.styles.max_digit_width);
  }
  ReadTables();
}

void WorkbookFile::ReadTables() {
  for (std::size_t id = 0; id < sheets_.size(); ++id) {
    for (const Relationship& relationship : package_->RelationshipsOf(sheets_[id].part)) {
      if (!relationship.IsType("table") || !package_->Has(relationship.target)) continue;
      try {
        const std::string text = package_->Read(relationship.target);
        if (std::optional<Table> table = ReadTable(text, static_cast<int>(id))) {
          model_.tables.push_back(*std::move(table));
        }
      } catch (const XmlError& error) {
        ThrowDamaged(relationship.target, error);
      }
    }
  }
}

}  // namespace vantora::embedded
