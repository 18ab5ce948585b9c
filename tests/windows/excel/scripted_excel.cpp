#include "scripted_excel.h"

namespace vantora::excel::testing {

namespace {

using enum MemberKind;

// The members of a kind that need no answer of their own.
void HasMethods(const ComPtr<ScriptedObject>& object, std::initializer_list<const char*> names) {
  for (const char* name : names) object->Has(name, kMethod);
}

void GiveRangeMembers(const ScriptedExcel& excel, Journal& journal) {
  ScriptedObject& range = *excel.range;
  auto counted = ScriptedObject::Make(journal, "Range");
  counted->Has("Count", kRead, Gives(7));
  range.Has("Areas", kRead);
  range.Has("Row", kRead, Gives(3));
  range.Has("Column", kRead, Gives(15));
  range.Has("Rows", kRead, Gives(Answer(counted)));
  range.Has("Columns", kRead, Gives(Answer(counted)));
  range.Has("Value", kReadWrite, Gives(2.5));
  range.Has("Interior", kRead, Gives(Answer(excel.interior)));
  range.Has("AddComment", kMethod, Gives(Answer(excel.comment)));
  range.Has("PasteSpecial", kMethod, {}, {"Paste", "Operation", "SkipBlanks", "Transpose"});
  HasMethods(excel.range, {"Select", "ClearFormats", "Copy", "Insert"});
}

void GiveWorksheetMembers(const ComPtr<ScriptedObject>& sheet, const ScriptedExcel& excel,
                          const char* name) {
  sheet->Has("Name", kReadWrite, Gives(name));
  for (const char* member : {"Cells", "Range", "Columns", "UsedRange"}) {
    sheet->Has(member, kRead, Gives(Answer(excel.range)));
  }
  HasMethods(sheet, {"Activate", "Select", "Paste"});
}

}  // namespace

Variant Answer(const ComPtr<ScriptedObject>& object) {
  return Variant(static_cast<IDispatch*>(object.get()));
}

ScriptedExcel::ScriptedExcel(Journal& journal)
    : comment(ScriptedObject::Make(journal, "Comment")),
      interior(ScriptedObject::Make(journal, "Interior")),
      range(ScriptedObject::Make(journal, "Range")),
      first_sheet(ScriptedObject::Make(journal, "Worksheet")),
      second_sheet(ScriptedObject::Make(journal, "Worksheet")),
      worksheets(ScriptedObject::Make(journal, "Sheets")),
      name(ScriptedObject::Make(journal, "Name")),
      names(ScriptedObject::Make(journal, "Names")),
      workbook(ScriptedObject::Make(journal, "Workbook")),
      application(ScriptedObject::Make(journal, "Application")) {
  comment->Has("Visible", kReadWrite);
  comment->Has("Text", kMethod);
  interior->Has("ColorIndex", kReadWrite, Gives(-4142));
  GiveRangeMembers(*this, journal);
  GiveWorksheetMembers(first_sheet, *this, "Reference Sheet");
  GiveWorksheetMembers(second_sheet, *this, "Überblick");
  worksheets->Holds({first_sheet, second_sheet});
  name->Has("RefersToRange", kRead, Gives(Answer(range)));
  names->Has("Item", kMethod, Gives(Answer(name)));
  workbook->Has("Name", kRead, Gives("Model.xlsm"));
  workbook->Has("Names", kRead, Gives(Answer(names)));
  workbook->Has("Worksheets", kRead, Gives(Answer(worksheets)));
  application->Has("ActiveWorkbook", kRead, Gives(Answer(workbook)));
  application->Has("ActiveSheet", kRead, Gives(Answer(second_sheet)));
  application->Has("Selection", kRead, Gives(Answer(range)));
  application->Has("Caller", kRead, Gives("Spinner 3"));
  application->Has("ScreenUpdating", kReadWrite, Gives(true));
  application->Has("CutCopyMode", kReadWrite, Gives(false));
  application->Has("Goto", kMethod);
}

}  // namespace vantora::excel::testing
