// The cells of Excel, late-bound.
#pragma once

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelRange : public host::Range {
 public:
  explicit ExcelRange(Object object) : object_(std::move(object)) {}

  const Object& object() const { return object_; }

  vantora::Value Value() override;
  void SetValue(const vantora::Value& value) override;
  int Row() override;
  int Column() override;
  int RowsCount() override;
  int ColumnsCount() override;
  host::RangePtr Cells(int row, int column) override;
  host::InteriorPtr Interior() override;
  void Select() override;
  void ClearFormats() override;
  void Copy() override;
  void Insert(host::XlInsertShiftDirection shift) override;
  void PasteSpecial(host::XlPasteType paste, host::XlPasteSpecialOperation operation,
                    bool skip_blanks, bool transpose) override;
  host::CommentPtr AddComment() override;

 private:
  Object object_;
};

}  // namespace vantora::excel
