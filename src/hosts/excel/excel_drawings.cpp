#include "hosts/excel/excel_drawings.h"

namespace vantora::excel {

void ExcelComment::SetVisible(bool visible) { object_.Put(Member::kCommentVisible, visible); }

// Without a start position the method replaces the whole text.
void ExcelComment::Text(std::string_view text) { object_.Call(Member::kCommentText, {text}); }

std::string ExcelShape::LinkedCell() {
  return object_.Child(Member::kShapeControlFormat).GetText(Member::kControlFormatLinkedCell);
}

double ExcelChartObject::Left() { return object_.GetDouble(Member::kChartObjectLeft); }

double ExcelChartObject::Top() { return object_.GetDouble(Member::kChartObjectTop); }

double ExcelChartObject::Width() { return object_.GetDouble(Member::kChartObjectWidth); }

std::string ExcelChartObject::TitleCaption() {
  return object_.Child(Member::kChartObjectChart)
      .Child(Member::kChartChartTitle)
      .GetText(Member::kChartTitleCaption);
}

}  // namespace vantora::excel
