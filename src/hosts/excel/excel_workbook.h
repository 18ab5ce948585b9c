// A workbook of Excel and its defined names, late-bound.
#pragma once

#include <string>
#include <vector>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelWorkbook : public host::Workbook {
 public:
  explicit ExcelWorkbook(Object object) : object_(std::move(object)) {}

  std::string Name() override;
  host::NamesPtr Names() override;
  std::vector<host::WorksheetPtr> Worksheets() override;

 private:
  Object object_;
};

}  // namespace vantora::excel
