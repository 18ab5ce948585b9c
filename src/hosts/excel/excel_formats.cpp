#include "hosts/excel/excel_formats.h"

namespace vantora::excel {

int ExcelInterior::ColorIndex() { return object_.GetInt(Member::kInteriorColorIndex); }

void ExcelInterior::SetColorIndex(int color_index) {
  object_.Put(Member::kInteriorColorIndex, color_index);
}

void ExcelInterior::SetPattern(host::XlPattern pattern) {
  object_.Put(Member::kInteriorPattern, static_cast<int>(pattern));
}

void ExcelFont::SetSize(double points) { object_.Put(Member::kFontSize, points); }

void ExcelFont::SetBold(bool bold) { object_.Put(Member::kFontBold, bold); }

void ExcelFont::SetItalic(bool italic) { object_.Put(Member::kFontItalic, italic); }

void ExcelFont::SetColorIndex(int color_index) {
  object_.Put(Member::kFontColorIndex, color_index);
}

void ExcelBorders::SetWeight(host::XlBorderWeight weight) {
  object_.Put(Member::kBorderWeight, static_cast<int>(weight));
}

void ExcelBorders::SetColorIndex(int color_index) {
  object_.Put(Member::kBorderColorIndex, color_index);
}

}  // namespace vantora::excel
