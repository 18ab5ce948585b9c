// Which of Excel's members the host calls, and with which arguments: windows, menus, formats,
// drawings, names, sheets.
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "hosts/excel/excel_application.h"
#include "scripted_excel.h"

namespace vantora::excel {
namespace {

using testing::Answer;
using testing::FailsWith;
using testing::Gives;
using testing::Journal;
using testing::MemberKind;
using testing::Raises;
using testing::ScriptedExcel;
using testing::ScriptedObject;
using ObjectPtr = ComPtr<ScriptedObject>;

constexpr SCODE kRefused = static_cast<SCODE>(0x800A03EC);

class ExcelMembersTest : public ::testing::Test {
 protected:
  void SetUp() override {
    application_ = MakeExcelApplication(excel_->application.get(), [](auto) {});
  }
  void TearDown() override {
    application_.reset();
    excel_.reset();
    EXPECT_EQ(journal_.living_objects, 0);
  }

  ObjectPtr Make(const char* kind) { return ScriptedObject::Make(journal_, kind); }
  // Properties that hold other objects.
  static void Holds(const ObjectPtr& object, const char* member, const ObjectPtr& part) {
    object->Has(member, MemberKind::kRead, Gives(Answer(part)));
  }
  static void HasMethods(const ObjectPtr& object, std::initializer_list<const char*> names) {
    for (const char* name : names) object->Has(name, MemberKind::kMethod);
  }
  static void HasNumbers(const ObjectPtr& object, std::initializer_list<const char*> names) {
    for (const char* name : names) object->Has(name, MemberKind::kReadWrite, Gives(12.5));
  }

  host::Application& app() { return *application_; }
  host::WorkbookPtr Book() { return app().ActiveWorkbook(); }
  host::WorksheetPtr Sheet() { return app().ActiveSheet(); }
  host::RangePtr Cell() { return app().Selection(); }

  struct Case {
    std::function<void()> act;
    std::string calls;
  };
  void Expect(const std::vector<Case>& cases) {
    journal_.Take();
    for (const Case& c : cases) {
      c.act();
      EXPECT_EQ(journal_.Take(), c.calls);
    }
  }

  Journal journal_;
  std::unique_ptr<ScriptedExcel> excel_ = std::make_unique<ScriptedExcel>(journal_);
  host::ApplicationPtr application_;
};

TEST_F(ExcelMembersTest, AsksTheUserWithNamedArguments) {
  excel_->application->Has("InputBox", MemberKind::kMethod, Gives(Answer(excel_->range)),
                           {"Prompt", "Title", "Type"});
  excel_->application->Has("GetSaveAsFilename", MemberKind::kMethod, Gives("C:\\Größe.xls"),
                           {"InitialFilename", "FileFilter", "Title"});
  Expect({
      {[&] { EXPECT_NE(app().InputRange("Which?", "Vantora"), nullptr); },
       "Application.InputBox call(Type:=8, Title:=\"Vantora\", Prompt:=\"Which?\")\n"},
      {[&] {
         EXPECT_EQ(app().GetSaveAsFilename("Model", "Excel, *.xls", "Save"), "C:\\Größe.xls");
       },
       "Application.GetSaveAsFilename call(Title:=\"Save\", FileFilter:=\"Excel, *.xls\", "
       "InitialFilename:=\"Model\")\n"},
  });
  // What both give when the user cancels.
  excel_->application->Has("InputBox", MemberKind::kMethod, Gives(false),
                           {"Prompt", "Title", "Type"});
  excel_->application->Has("GetSaveAsFilename", MemberKind::kMethod, Gives(false),
                           {"InitialFilename", "FileFilter", "Title"});
  EXPECT_EQ(app().InputRange("Which?", "Vantora"), nullptr);
  EXPECT_EQ(app().GetSaveAsFilename("Model", "Excel, *.xls", "Save"), std::nullopt);
}

TEST_F(ExcelMembersTest, ArrangesWindows) {
  auto window = Make("Window");
  auto pane = Make("Pane");
  auto panes = Make("Panes");
  auto windows = Make("Windows");
  HasNumbers(window, {"Top", "Left", "Height", "Width", "ScrollRow", "ScrollColumn", "FreezePanes",
                      "WindowState"});
  HasMethods(window, {"Activate", "Close"});
  Holds(window, "Panes", panes);
  pane->Has("ScrollColumn", MemberKind::kReadWrite, Gives(4));
  panes->Has("Count", MemberKind::kRead, Gives(2));
  Holds(panes, "Item", pane);
  windows->Holds({window, window});
  Holds(excel_->application, "ActiveWindow", window);
  Holds(excel_->workbook, "Windows", windows);
  excel_->workbook->Has("NewWindow", MemberKind::kMethod, Gives(Answer(window)));
  HasNumbers(excel_->application, {"UsableHeight", "Calculation"});
  auto active = app().ActiveWindow();
  auto workbook = Book();
  Expect({
      {[&] { EXPECT_EQ(active->Top(), 12.5); }, "Window.Top get()\n"},
      {[&] { active->SetWidth(100.5); }, "Window.Width put(100.5)\n"},
      {[&] { active->SetWindowState(host::XlWindowState::kNormal); },
       "Window.WindowState put(-4143)\n"},
      {[&] { active->SetFreezePanes(false); }, "Window.FreezePanes put(False)\n"},
      {[&] { active->SetScrollRow(7); }, "Window.ScrollRow put(7)\n"},
      {[&] { active->Close(); }, "Window.Close call()\n"},
      {[&] { active->Panes().at(1)->SetScrollColumn(9); },
       "Window.Panes get()\nPanes.Count get()\nPanes.Item get(1)\nPanes.Item get(2)\n"
       "Pane.ScrollColumn put(9)\n"},
      {[&] { EXPECT_EQ(workbook->Windows().size(), 2u); }, "Workbook.Windows get()\n"},
      {[&] { workbook->NewWindow()->Activate(); },
       "Workbook.NewWindow call()\nWindow.Activate call()\n"},
      {[&] { EXPECT_EQ(app().UsableHeight(), 12.5); }, "Application.UsableHeight get()\n"},
      {[&] { app().SetCalculation(host::XlCalculation::kManual); },
       "Application.Calculation put(-4135)\n"},
  });
  excel_->application->Has("ActiveWindow", MemberKind::kRead);
  EXPECT_EQ(app().ActiveWindow(), nullptr);
}

TEST_F(ExcelMembersTest, BuildsMenus) {
  auto button = Make("CommandBarButton");
  auto popup = Make("CommandBarPopup");
  auto controls = Make("CommandBarControls");
  auto bar = Make("CommandBar");
  auto bars = Make("CommandBars");
  for (const ObjectPtr& control : {button, popup}) {
    for (const char* member : {"Caption", "Tag", "OnAction", "Visible", "BeginGroup"}) {
      control->Has(member, MemberKind::kReadWrite, Gives("&File"));
    }
    control->Has("Index", MemberKind::kRead, Gives(3));
    control->Has("Delete", MemberKind::kMethod);
  }
  button->Has("FaceId", MemberKind::kReadWrite);
  Holds(popup, "Controls", controls);
  controls->Holds({button});
  controls->Has("Add", MemberKind::kMethod, Gives(Answer(button)), {"Type", "Before", "Temporary"});
  bar->Has("FindControl", MemberKind::kMethod, Gives(Answer(popup)), {"Tag"});
  Holds(bar, "Controls", controls);
  Holds(bars, "ActiveMenuBar", bar);
  Holds(excel_->application, "CommandBars", bars);
  auto menu_bar = app().ActiveMenuBar();
  auto found = menu_bar->FindControl("Vantora");
  auto item = menu_bar->Controls()->Items().at(0);
  journal_.Take();
  Expect({
      {[&] { menu_bar->FindControl("Vantora"); },
       "CommandBar.FindControl call(Tag:=\"Vantora\")\n"},
      {[&] { menu_bar->Controls()->Add(host::MsoControlType::kPopup, 4); },
       "CommandBar.Controls get()\n"
       "CommandBarControls.Add call(Temporary:=True, Before:=4, Type:=10)\n"},
      {[&] { found->Controls()->Add(host::MsoControlType::kButton, std::nullopt); },
       "CommandBarPopup.Controls get()\n"
       "CommandBarControls.Add call(Temporary:=True, Type:=1)\n"},
      {[&] { item->SetCaption("&Größe"); }, "CommandBarButton.Caption put(\"&Größe\")\n"},
      {[&] { item->SetFaceId(59); }, "CommandBarButton.FaceId put(59)\n"},
      {[&] { EXPECT_EQ(item->Index(), 3); }, "CommandBarButton.Index get()\n"},
      {[&] { item->Delete(); }, "CommandBarButton.Delete call()\n"},
  });
  // Each kind of control has members that the other has not.
  EXPECT_THROW(found->SetFaceId(1), HostError);
  EXPECT_THROW(item->Controls(), HostError);
  EXPECT_EQ(journal_.Take(), "");
  bar->Has("FindControl", MemberKind::kMethod, {}, {"Tag"});
  EXPECT_EQ(menu_bar->FindControl("Vantora"), nullptr);
}

TEST_F(ExcelMembersTest, FormatsAndMeasuresCells) {
  auto font = Make("Font");
  auto border = Make("Border");
  auto borders = Make("Borders");
  auto lines = Make("Range");
  HasNumbers(font, {"Size", "Bold", "Italic", "ColorIndex"});
  HasNumbers(border, {"Weight", "ColorIndex"});
  Holds(borders, "Item", border);
  excel_->interior->Has("Pattern", MemberKind::kReadWrite);
  Holds(excel_->range, "Font", font);
  Holds(excel_->range, "Borders", borders);
  Holds(excel_->range, "Rows", lines);
  Holds(excel_->range, "Columns", lines);
  Holds(excel_->range, "Cells", excel_->range);
  auto areas = Make("Areas");
  areas->Has("Count", MemberKind::kRead, Gives(2));
  areas->Has("Item", MemberKind::kRead, Gives(Answer(lines)));
  Holds(excel_->range, "Areas", areas);
  HasNumbers(excel_->range,
             {"Left", "Width", "RowHeight", "ColumnWidth", "HorizontalAlignment", "WrapText"});
  lines->Has("Hidden", MemberKind::kReadWrite, Gives(true));
  lines->Has("OutlineLevel", MemberKind::kReadWrite, Gives(2));
  excel_->range->Has("BorderAround", MemberKind::kMethod, {}, {"Weight", "ColorIndex"});
  auto cell = Cell();
  Expect({
      {[&] { cell->Font()->SetSize(9); }, "Range.Font get()\nFont.Size put(9)\n"},
      {[&] { cell->Interior()->SetPattern(host::XlPattern::kSolid); },
       "Range.Interior get()\nInterior.Pattern put(1)\n"},
      {[&] { cell->Borders(host::XlBordersIndex::kInsideVertical)->SetColorIndex(3); },
       "Range.Borders get()\nBorders.Item get(11)\nBorder.ColorIndex put(3)\n"},
      {[&] { cell->BorderAround(host::XlBorderWeight::kThin, 5); },
       "Range.BorderAround call(ColorIndex:=5, Weight:=2)\n"},
      {[&] { cell->SetHorizontalAlignment(host::XlHAlign::kLeft); },
       "Range.HorizontalAlignment put(-4131)\n"},
      {[&] { EXPECT_TRUE(cell->RowsHidden()); }, "Range.Rows get()\nRange.Hidden get()\n"},
      {[&] { cell->SetColumnsHidden(false); }, "Range.Columns get()\nRange.Hidden put(False)\n"},
      {[&] { EXPECT_EQ(cell->OutlineLevel(), 2); },
       "Range.Cells get(1, 1)\nRange.Rows get()\nRange.OutlineLevel get()\n"},
      {[&] { EXPECT_EQ(cell->Areas().size(), 2u); },
       "Range.Areas get()\nAreas.Count get()\nAreas.Item get(1)\nAreas.Item get(2)\n"},
      {[&] { EXPECT_EQ(cell->Left(), 12.5); }, "Range.Left get()\n"},
      {[&] { cell->SetRowHeight(15.75); }, "Range.RowHeight put(15.75)\n"},
  });
  // Where only some rows are hidden Excel gives Null.
  lines->Has("Hidden", MemberKind::kReadWrite, [](VARIANT* result, EXCEPINFO*) {
    result->vt = VT_NULL;
    return S_OK;
  });
  EXPECT_FALSE(cell->RowsHidden());
  excel_->range->Has("Cells", MemberKind::kRead);  // it held itself
}

TEST_F(ExcelMembersTest, PutsAColumnOfValuesInOneAssignment) {
  VARIANT put;
  VariantInit(&put);
  auto block = Make("Range");
  block->Has("Areas", MemberKind::kRead);
  block->TakesPut("Value",
                  [&](const VARIANT& value) { VariantCopy(&put, const_cast<VARIANT*>(&value)); });
  Holds(excel_->application, "Selection", block);
  const Value rows[] = {Value("=1+1"), Value(2.5), Value(), Value(CellError::kRef)};
  Cell()->SetValues(rows);
  ASSERT_EQ(put.vt, VT_ARRAY | VT_VARIANT);
  ASSERT_EQ(SafeArrayGetDim(put.parray), 2u);
  EXPECT_EQ(put.parray->rgsabound[1].cElements, 4u);  // the first dimension: the rows
  EXPECT_EQ(put.parray->rgsabound[0].cElements, 1u);
  for (LONG row = 1; row <= 4; ++row) {
    LONG place[] = {row, 1};
    Variant element;
    ASSERT_EQ(SafeArrayGetElement(put.parray, place, element.Receive()), S_OK);
    EXPECT_EQ(element.ToValue(), rows[row - 1]);
  }
  VariantClear(&put);
}

TEST_F(ExcelMembersTest, ReadsAndPutsThePalette) {
  VARIANT put;
  VariantInit(&put);
  std::vector<int> colors(host::kPaletteSize, 0x123456);
  colors[55] = 7;
  excel_->workbook->Has("Colors", MemberKind::kReadWrite, Gives(Variant::ListOf(colors)));
  EXPECT_EQ(Book()->Colors(), colors);
  excel_->workbook->TakesPut(
      "Colors", [&](const VARIANT& value) { VariantCopy(&put, const_cast<VARIANT*>(&value)); });
  Book()->SetColors(colors);
  LONG last = 56;
  Variant element;
  ASSERT_EQ(put.vt, VT_ARRAY | VT_VARIANT);
  ASSERT_EQ(SafeArrayGetElement(put.parray, &last, element.Receive()), S_OK);
  EXPECT_EQ(element.type(), VT_I4);
  EXPECT_EQ(element.ToInt(), 7);
  VariantClear(&put);
}

TEST_F(ExcelMembersTest, DefinesAndFindsNames) {
  HasMethods(excel_->name, {"Delete"});
  excel_->name->Has("Name", MemberKind::kReadWrite, Gives("Sheet1!marker"));
  excel_->names->Has("Add", MemberKind::kMethod, Gives(Answer(excel_->name)),
                     {"Name", "RefersToR1C1"});
  Holds(excel_->range, "Name", excel_->name);
  auto names = Book()->Names();
  Expect({
      {[&] { EXPECT_TRUE(names->Add("row_1", "=Plan!R1C1")); },
       "Names.Add call(RefersToR1C1:=\"=Plan!R1C1\", Name:=\"row_1\")\n"},
      {[&] { EXPECT_EQ(Cell()->Name()->OwnName(), "Sheet1!marker"); },
       "Application.Selection get()\nRange.Name get()\nName.Name get()\n"},
  });
  // A refusal is an answer; an Excel that is gone is not.
  excel_->names->Has("Add", MemberKind::kMethod, Raises(kRefused, 0, "", "That name is not valid."),
                     {"Name", "RefersToR1C1"});
  excel_->range->Has("Name", MemberKind::kRead, Raises(kRefused, 0, "", ""));
  EXPECT_FALSE(names->Add("1", "=Plan!R1C1"));
  EXPECT_EQ(Cell()->Name(), nullptr);
  excel_->names->Has("Add", MemberKind::kMethod, {}, {"Name", "RefersToR1C1"});
  EXPECT_FALSE(names->Add("gone", "=Gone!R1C1"));
  const auto gone = FailsWith(static_cast<HRESULT>(0x800706BA));
  excel_->names->Has("Add", MemberKind::kMethod, gone, {"Name", "RefersToR1C1"});
  excel_->range->Has("Name", MemberKind::kRead, gone);
  EXPECT_THROW(names->Add("row_1", "=Plan!R1C1"), HostError);
  EXPECT_THROW(Cell()->Name(), HostError);
}

TEST_F(ExcelMembersTest, WorksOnSheetsAndWorkbooks) {
  auto chart = Make("Chart");
  auto sheets = Make("Sheets");
  auto outline = Make("Outline");
  auto& sheet = excel_->second_sheet;
  chart->Has("Name", MemberKind::kRead, Gives("Chart1"));
  HasMethods(chart, {"Activate", "Select"});
  sheets->Has("Count", MemberKind::kRead, Gives(2));
  sheets->Has("Item", MemberKind::kRead, Gives(Answer(chart)));
  sheets->Has("Add", MemberKind::kMethod, Gives(Answer(sheet)), {"After"});
  Holds(excel_->workbook, "Sheets", sheets);
  Holds(sheet, "Outline", outline);
  Holds(excel_->application, "Sheets", sheets);
  HasMethods(outline, {"ShowLevels"});
  HasMethods(excel_->workbook, {"Save"});
  HasMethods(sheet, {"Unprotect", "ResetKeySortButtons"});
  sheet->Has("Visible", MemberKind::kReadWrite, Gives(-1));
  sheet->Has("Protect", MemberKind::kMethod, {}, {"DrawingObjects", "Contents", "Scenarios"});
  excel_->workbook->Has("SaveAs", MemberKind::kMethod, {}, {"Filename", "FileFormat"});
  auto workbook = Book();
  auto all = workbook->Sheets();
  auto worksheet = Sheet();
  Expect({
      {[&] { EXPECT_EQ(all->Item(2)->Name(), "Chart1"); },
       "Sheets.Item get(2)\nChart.Name get()\n"},
      {[&] { all->Item("Chart1"); }, "Sheets.Item get(\"Chart1\")\n"},
      {[&] { all->Item(2)->Activate(); }, "Sheets.Item get(2)\nChart.Activate call()\n"},
      {[&] { all->Item(2)->Select(); }, "Sheets.Item get(2)\nChart.Select call()\n"},
      {[&] { all->Add(all->Item(2)); }, "Sheets.Item get(2)\nSheets.Add call(After:=object)\n"},
      {[&] { workbook->SaveAs("C:\\a.xlsm", host::XlFileFormat::kOpenXmlWorkbookMacroEnabled); },
       "Workbook.SaveAs call(FileFormat:=52, Filename:=\"C:\\a.xlsm\")\n"},
      {[&] { worksheet->SetVisible(host::XlSheetVisibility::kVeryHidden); },
       "Worksheet.Visible put(2)\n"},
      {[&] { worksheet->Unprotect(); }, "Worksheet.Unprotect call()\n"},
      {[&] { worksheet->Protect(); },
       "Worksheet.Protect call(Scenarios:=True, Contents:=True, DrawingObjects:=True)\n"},
      {[&] { worksheet->OutlineShowLevels(1); },
       "Worksheet.Outline get()\nOutline.ShowLevels call(1)\n"},
  });
  EXPECT_EQ(std::dynamic_pointer_cast<host::Worksheet>(all->Item(2)), nullptr);

  sheets->Has("Item", MemberKind::kRead, Gives(Answer(sheet)));
  EXPECT_NE(std::dynamic_pointer_cast<host::Worksheet>(all->Item(1)), nullptr);
  journal_.Take();
  worksheet->CallRoutine("ResetKeySortButtons");
  EXPECT_EQ(journal_.Take(),
            "Worksheet.Name get()\nApplication.Sheets get()\n"
            "Sheets.Item get(\"Überblick\")\nWorksheet.ResetKeySortButtons call()\n");
  EXPECT_THROW(worksheet->CallRoutine("NoSuchRoutine"), HostError);
}

TEST_F(ExcelMembersTest, ReadsChartsAndControls) {
  auto title = Make("ChartTitle");
  auto chart = Make("Chart");
  auto chart_object = Make("ChartObject");
  auto chart_objects = Make("ChartObjects");
  auto control = Make("ControlFormat");
  auto shape = Make("Shape");
  auto shapes = Make("Shapes");
  title->Has("Caption", MemberKind::kReadWrite, Gives("Umsatz"));
  Holds(chart, "ChartTitle", title);
  Holds(chart_object, "Chart", chart);
  HasNumbers(chart_object, {"Left", "Top", "Width"});
  chart_objects->Has("Count", MemberKind::kRead, Gives(1));
  chart_objects->Has("Item", MemberKind::kMethod, Gives(Answer(chart_object)));
  control->Has("LinkedCell", MemberKind::kReadWrite, Gives("$C$12"));
  Holds(shape, "ControlFormat", control);
  shapes->Has("Item", MemberKind::kMethod, Gives(Answer(shape)));
  Holds(excel_->second_sheet, "Shapes", shapes);
  excel_->second_sheet->Has("ChartObjects", MemberKind::kMethod, Gives(Answer(chart_objects)));
  auto sheet = Sheet();
  Expect({
      {[&] { EXPECT_EQ(sheet->Shapes("Spinner 3")->LinkedCell(), "$C$12"); },
       "Worksheet.Shapes get()\nShapes.Item call(\"Spinner 3\")\nShape.ControlFormat get()\n"
       "ControlFormat.LinkedCell get()\n"},
      {[&] { EXPECT_EQ(sheet->ChartObjects().at(0)->TitleCaption(), "Umsatz"); },
       "Worksheet.ChartObjects call()\nChartObjects.Count get()\nChartObjects.Item call(1)\n"
       "ChartObject.Chart get()\nChart.ChartTitle get()\nChartTitle.Caption get()\n"},
  });
}

TEST_F(ExcelMembersTest, SortsByTwoKeysWithEveryArgumentNamed) {
  excel_->range->Has("Sort", MemberKind::kMethod, {},
                     {"Key1", "Order1", "Key2", "Order2", "Header", "OrderCustom", "MatchCase",
                      "Orientation", "DataOption1", "DataOption2"});
  HasMethods(excel_->range, {"ListNames"});
  auto cell = Cell();
  Expect({
      {[&] { cell->Sort(cell, cell); },
       "Range.Sort call(DataOption2:=0, DataOption1:=0, Orientation:=1, MatchCase:=False, "
       "OrderCustom:=1, Header:=0, Order2:=1, Key2:=object, Order1:=1, Key1:=object)\n"},
      {[&] { cell->ListNames(); }, "Range.ListNames call()\n"},
  });
}

}  // namespace
}  // namespace vantora::excel
