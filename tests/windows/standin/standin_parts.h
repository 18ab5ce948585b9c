// The stand-in's objects, made of what another host has.
#pragma once

#include <vector>

#include "standin_object.h"

namespace vantora::standin {

inline constexpr int kLastRow = 1048576;
inline constexpr int kLastColumn = 16384;

// `object` has one reference, which the result takes over.
template <typename T>
Variant Made(T* object) {
  auto owned = ComPtr<IDispatch>::Adopt(object);
  return Variant(owned.get());
}
inline Variant Nothing() { return Variant(static_cast<IDispatch*>(nullptr)); }
// What Excel's methods give when they succeed.
inline Variant Done() { return Variant(true); }
// A member that the stand-in's object does not serve.
[[noreturn]] void Refuse(const Call& call);

// A collection whose objects are told by their place; `kind` says whether it can be enumerated.
Variant MadeCollection(const ExcelPtr& excel, std::string_view kind, std::vector<Variant> items);

Variant MadeWorkbook(const ExcelPtr& excel, host::WorkbookPtr workbook);
Variant MadeNames(const ExcelPtr& excel, host::NamesPtr names);
Variant MadeName(const ExcelPtr& excel, host::NamePtr name);
// Both give nothing for null, and one object for each worksheet.
Variant MadeWorksheet(const ExcelPtr& excel, host::WorksheetPtr sheet);
Variant MadeSheet(const ExcelPtr& excel, host::SheetPtr sheet);
// The sheet behind an object that MadeSheet gave; null for anything else.
host::SheetPtr SheetOf(IDispatch* object);
Variant MadeRange(const ExcelPtr& excel, host::RangePtr range);
// The same for a range that is known to be one cell.
Variant MadeCell(const ExcelPtr& excel, host::RangePtr cell);
// The range behind an object that MadeRange gave; null for anything else.
host::RangePtr RangeOf(IDispatch* object);
Variant MadeInterior(const ExcelPtr& excel, host::InteriorPtr interior);
Variant MadeFont(const ExcelPtr& excel, host::FontPtr font);
Variant MadeBorders(const ExcelPtr& excel, host::RangePtr range);
Variant MadeComment(const ExcelPtr& excel, host::CommentPtr comment);
Variant MadeShapes(const ExcelPtr& excel, host::WorksheetPtr sheet);
Variant MadeChartObject(const ExcelPtr& excel, host::ChartObjectPtr chart);
Variant MadeWindow(const ExcelPtr& excel, host::WindowPtr window);
Variant MadeCommandBars(const ExcelPtr& excel);

}  // namespace vantora::standin
