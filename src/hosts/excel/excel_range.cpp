#include "hosts/excel/excel_range.h"

#include "hosts/excel/call_error.h"

namespace vantora::excel {

namespace {

class ExcelInterior : public host::Interior {
 public:
  explicit ExcelInterior(Object object) : object_(std::move(object)) {}

  int ColorIndex() override { return object_.GetInt(Member::kInteriorColorIndex); }

 private:
  Object object_;
};

class ExcelComment : public host::Comment {
 public:
  explicit ExcelComment(Object object) : object_(std::move(object)) {}

  void SetVisible(bool visible) override { object_.Put(Member::kCommentVisible, visible); }
  // Without a start position the method replaces the whole text.
  void Text(std::string_view text) override { object_.Call(Member::kCommentText, {text}); }

 private:
  Object object_;
};

}  // namespace

vantora::Value ExcelRange::Value() {
  Variant variant = object_.Get(Member::kRangeValue);
  if (variant.IsArray()) {
    variant = object_.Child(Member::kRangeCells, {1, 1}).Get(Member::kRangeValue);
  }
  std::optional<vantora::Value> value = variant.ToValue();
  if (!value) throw WrongTypeError(FullNameOf(Member::kRangeValue), "a cell value");
  return *std::move(value);
}

void ExcelRange::SetValue(const vantora::Value& value) {
  object_.Put(Member::kRangeValue, Variant::From(value));
}

int ExcelRange::Row() { return object_.GetInt(Member::kRangeRow); }

int ExcelRange::Column() { return object_.GetInt(Member::kRangeColumn); }

int ExcelRange::RowsCount() {
  return object_.Child(Member::kRangeRows).GetInt(Member::kRangeCount);
}

int ExcelRange::ColumnsCount() {
  return object_.Child(Member::kRangeColumns).GetInt(Member::kRangeCount);
}

host::RangePtr ExcelRange::Cells(int row, int column) {
  return std::make_shared<ExcelRange>(object_.Child(Member::kRangeCells, {row, column}));
}

host::InteriorPtr ExcelRange::Interior() {
  return std::make_shared<ExcelInterior>(object_.Child(Member::kRangeInterior));
}

void ExcelRange::Select() { object_.Call(Member::kRangeSelect); }

void ExcelRange::ClearFormats() { object_.Call(Member::kRangeClearFormats); }

void ExcelRange::Copy() { object_.Call(Member::kRangeCopy); }

void ExcelRange::Insert(host::XlInsertShiftDirection shift) {
  object_.Call(Member::kRangeInsert, {static_cast<int>(shift)});
}

void ExcelRange::PasteSpecial(host::XlPasteType paste, host::XlPasteSpecialOperation operation,
                              bool skip_blanks, bool transpose) {
  object_.Call(Member::kRangePasteSpecial,
               {static_cast<int>(paste), static_cast<int>(operation), skip_blanks, transpose});
}

host::CommentPtr ExcelRange::AddComment() {
  return std::make_shared<ExcelComment>(object_.Child(Member::kRangeAddComment));
}

}  // namespace vantora::excel
