// A workbook of Excel and its sheets, late-bound.
#pragma once

#include <string>
#include <vector>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

// A worksheet, or a sheet of another kind.
host::SheetPtr MakeSheet(Object sheet);

class ExcelWorkbook : public host::Workbook {
 public:
  explicit ExcelWorkbook(Object object) : object_(std::move(object)) {}

  std::string Name() override;
  host::NamesPtr Names() override;
  std::vector<host::WorksheetPtr> Worksheets() override;
  host::SheetsPtr Sheets() override;
  void Save() override;
  void SaveAs(std::string_view filename, host::XlFileFormat format) override;
  host::Palette Colors() override;
  void SetColors(const host::Palette& colors) override;
  std::vector<host::WindowPtr> Windows() override;
  host::WindowPtr NewWindow() override;

 private:
  Object object_;
};

}  // namespace vantora::excel
