// The cells of Excel, late-bound.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelRange : public host::Range {
 public:
  explicit ExcelRange(Object object) : object_(std::move(object)) {}

  const Object& object() const { return object_; }

  vantora::Value Value() override;
  void SetValue(const vantora::Value& value) override;
  void SetValues(std::span<const vantora::Value> rows) override;
  std::string Formula() override;
  void SetFormula(std::string_view formula) override;
  bool HasFormula() override;

  host::WorksheetPtr Worksheet() override;
  std::vector<host::RangePtr> Areas() override;
  int Row() override;
  int Column() override;
  int RowsCount() override;
  int ColumnsCount() override;
  host::RangePtr Cells(int row, int column) override;

  host::InteriorPtr Interior() override;
  host::FontPtr Font() override;
  host::BordersPtr Borders(host::XlBordersIndex index) override;
  void BorderAround(host::XlBorderWeight weight, int color_index) override;
  void SetHorizontalAlignment(host::XlHAlign alignment) override;
  void SetWrapText(bool wrap) override;

  bool RowsHidden() override;
  void SetRowsHidden(bool hidden) override;
  bool ColumnsHidden() override;
  void SetColumnsHidden(bool hidden) override;
  double Left() override;
  double Width() override;
  double RowHeight() override;
  void SetRowHeight(double points) override;
  double ColumnWidth() override;
  void SetColumnWidth(double characters) override;
  int OutlineLevel() override;
  void SetOutlineLevel(int level) override;

  host::NamePtr Name() override;

  void Select() override;
  void Activate() override;
  void Clear() override;
  void ClearContents() override;
  void ClearFormats() override;
  void Copy() override;
  void Insert(host::XlInsertShiftDirection shift) override;
  void PasteSpecial(host::XlPasteType paste, host::XlPasteSpecialOperation operation,
                    bool skip_blanks, bool transpose) override;
  host::CommentPtr AddComment() override;
  void ListNames() override;
  void Sort(const host::RangePtr& key1, const host::RangePtr& key2) override;

 private:
  // The range's own value of a member, or that of its top left cell where the cells differ (Excel
  // then gives Null, or an array of values).
  Variant OfFirstCell(Member member) const;
  double NumberOfFirstCell(Member member) const;

  Object object_;
};

// Excel's own object of a range, which the caller does not own. HostError 13 for another host's.
IDispatch* DispatchOf(const host::RangePtr& range);

}  // namespace vantora::excel
