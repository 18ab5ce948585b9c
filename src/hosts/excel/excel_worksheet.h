// A worksheet of Excel, late-bound.
#pragma once

#include <string>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelWorksheet : public host::Worksheet {
 public:
  explicit ExcelWorksheet(Object object) : object_(std::move(object)) {}

  bool IsSame(const host::Worksheet& other) const override;
  std::string Name() override;
  void Activate() override;
  void Select() override;
  host::RangePtr Cells(int row, int column) override;
  host::RangePtr Range(int first_row, int first_column, int last_row, int last_column) override;
  host::RangePtr Columns(int column) override;
  host::RangePtr UsedRange() override;
  void Paste() override;

 private:
  Object object_;
};

}  // namespace vantora::excel
