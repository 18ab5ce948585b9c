// The list of sheets in a workbook's main part, and the places of tabs that follow from it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formula/workbook_model.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

class SheetList {
 public:
  // Reads <sheets> of the main part's text, which must outlive it. `relationships` are those of the
  // sheets, by sheet id. Throws XmlError.
  SheetList(std::string_view text, const std::vector<std::string>& relationships);

  // Where the tab that the text has at `position` (0-based) is now; a place that it does not have
  // stays.
  int PositionNow(int position, const WorkbookModel& model) const;
  // The sheet at that place in the text; -1 when there is none.
  int IdAt(int position) const;

  // Adds the sheets that came and puts the names right.
  void Patch(const WorkbookModel& model, TextPatch& patch) const;

 private:
  struct Entry {
    int id = -1;
    std::string_view name;  // raw
    std::size_t end = 0;
  };
  std::string NewElement(const WorkbookModel& model, int id, int sheet_id) const;

  const std::vector<std::string>& relationships_;
  std::vector<Entry> entries_;
  std::string tag_ = "sheet";  // with its prefix
  std::string relationship_attribute_ = "r:id";
  std::size_t list_begin_ = 0;  // where the list's content begins
  int last_sheet_id_ = 0;
};

}  // namespace vantora::embedded
