// A worksheet of Excel, late-bound.
#pragma once

#include <string>
#include <vector>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelWorksheet : public host::Worksheet {
 public:
  explicit ExcelWorksheet(Object object) : object_(std::move(object)) {}

  const Object& object() const { return object_; }

  bool IsSame(const host::Worksheet& other) const override;
  std::string Name() override;
  void Activate() override;
  void Select() override;
  host::RangePtr Cells(int row, int column) override;
  host::RangePtr Range(int first_row, int first_column, int last_row, int last_column) override;
  host::RangePtr Columns(int column) override;
  host::RangePtr UsedRange() override;
  void Paste() override;
  void SetName(std::string_view name) override;
  host::XlSheetVisibility Visible() override;
  void SetVisible(host::XlSheetVisibility visible) override;
  bool ProtectContents() override;
  void Unprotect() override;
  void Protect() override;
  void OutlineShowLevels(int row_levels) override;
  host::ShapePtr Shapes(std::string_view name) override;
  std::vector<host::ChartObjectPtr> ChartObjects() override;
  void CallRoutine(std::string_view routine) override;

 private:
  Object object_;
};

}  // namespace vantora::excel
