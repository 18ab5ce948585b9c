#include "hosts/excel/excel_application.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "scripted_excel.h"

namespace vantora::excel {
namespace {

using std::chrono::milliseconds;
using testing::Answer;
using testing::FailsWith;
using testing::Gives;
using testing::Journal;
using testing::MemberKind;
using testing::Raises;
using testing::Reply;
using testing::ScriptedExcel;
using testing::ScriptedObject;

constexpr SCODE kRefused = static_cast<SCODE>(0x800A03EC);

// Fills in what a failing call put off.
HRESULT STDAPICALLTYPE SayLate(EXCEPINFO* info) {
  info->scode = kRefused;
  info->bstrDescription = SysAllocString(L"said late");
  return S_OK;
}

// Another dispatch interface of an object, as a marshalled one has: the object is the same although
// the pointers differ.
class OtherInterface : public IDispatch {
 public:
  explicit OtherInterface(ComPtr<ScriptedObject> object) : object_(std::move(object)) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** result) override {
    if (iid != IID_IDispatch) return object_->QueryInterface(iid, result);
    AddRef();
    *result = this;
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return object_->AddRef(); }
  STDMETHOD_(ULONG, Release)() override { return object_->Release(); }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)
  (REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
    return object_->GetIDsOfNames(iid, names, count, locale, ids);
  }
  STDMETHOD(Invoke)
  (DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
   EXCEPINFO* info, UINT* wrong_argument) override {
    return object_->Invoke(id, iid, locale, flags, parameters, result, info, wrong_argument);
  }

 private:
  ComPtr<ScriptedObject> object_;
};

class ExcelApplicationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    excel_ = std::make_unique<ScriptedExcel>(journal_);
    application_ = MakeExcelApplication(excel_->application.get(),
                                        [this](milliseconds wait) { waits_.push_back(wait); });
  }

  // Whatever a test did, every reference that was taken has been given back.
  void TearDown() override {
    application_.reset();
    excel_.reset();
    EXPECT_EQ(journal_.living_objects, 0);
  }

  host::Application& app() { return *application_; }
  host::WorksheetPtr Sheet() { return app().ActiveSheet(); }
  host::RangePtr Cell() { return app().Selection(); }

  milliseconds Waited() const {
    milliseconds sum{0};
    for (milliseconds wait : waits_) sum += wait;
    return sum;
  }

  // The error of `call`; a number of 0 when there was none.
  template <typename Call>
  static HostError ErrorOf(const Call& call) {
    try {
      call();
    } catch (const HostError& error) {
      return error;
    }
    return HostError(0, "no error");
  }

  Journal journal_;
  std::unique_ptr<ScriptedExcel> excel_;
  std::vector<milliseconds> waits_;
  host::ApplicationPtr application_;
};

TEST_F(ExcelApplicationTest, CallsExcelsMembersWithTheirArgumentsInOrder) {
  using host::XlCutCopyMode;
  auto sheet = Sheet();
  auto cell = Cell();
  auto comment = cell->AddComment();
  auto interior = cell->Interior();
  auto names = app().ActiveWorkbook()->Names();
  auto name = names->Item("marker");
  struct Case {
    std::function<void()> act;
    std::string calls;
  } const cases[] = {
      {[&] { app().Goto("marker"); }, "Application.Goto call(\"marker\")\n"},
      {[&] { EXPECT_TRUE(app().ScreenUpdating()); }, "Application.ScreenUpdating get()\n"},
      {[&] { app().SetScreenUpdating(false); }, "Application.ScreenUpdating put(False)\n"},
      {[&] { EXPECT_EQ(app().Caller(), "Spinner 3"); }, "Application.Caller get()\n"},
      {[&] { app().SetCutCopyMode(XlCutCopyMode::kCopy); }, "Application.CutCopyMode put(1)\n"},
      {[&] { app().SetCutCopyMode(XlCutCopyMode::kNone); }, "Application.CutCopyMode put(False)\n"},
      {[&] { EXPECT_EQ(app().ActiveWorkbook()->Name(), "Model.xlsm"); },
       "Application.ActiveWorkbook get()\nWorkbook.Name get()\n"},
      {[&] { names->Item("Grüße"); }, "Names.Item call(\"Grüße\")\n"},
      {[&] { EXPECT_EQ(name->RefersToRange()->Row(), 3); },
       "Name.RefersToRange get()\nRange.Row get()\n"},
      {[&] { EXPECT_EQ(sheet->Name(), "Überblick"); }, "Worksheet.Name get()\n"},
      {[&] { sheet->Activate(); }, "Worksheet.Activate call()\n"},
      {[&] { sheet->Select(); }, "Worksheet.Select call()\n"},
      {[&] { sheet->Cells(2, 15); }, "Worksheet.Cells get(2, 15)\n"},
      {[&] { sheet->Range(1, 2, 30, 4); },
       "Worksheet.Cells get(1, 2)\nWorksheet.Cells get(30, 4)\n"
       "Worksheet.Range get(object, object)\n"},
      {[&] { sheet->Columns(28); }, "Worksheet.Columns get(28)\n"},
      {[&] { sheet->UsedRange(); }, "Worksheet.UsedRange get()\n"},
      {[&] { sheet->Paste(); }, "Worksheet.Paste call()\n"},
      {[&] { EXPECT_EQ(cell->Value(), Value(2.5)); }, "Range.Value get()\n"},
      {[&] { cell->SetValue("=1+1"); }, "Range.Value put(\"=1+1\")\n"},
      {[&] { EXPECT_EQ(cell->Column(), 15); }, "Range.Column get()\n"},
      {[&] { EXPECT_EQ(cell->RowsCount(), 7); }, "Range.Rows get()\nRange.Count get()\n"},
      {[&] { EXPECT_EQ(cell->ColumnsCount(), 7); }, "Range.Columns get()\nRange.Count get()\n"},
      {[&] { cell->Select(); }, "Range.Select call()\n"},
      {[&] { cell->ClearFormats(); }, "Range.ClearFormats call()\n"},
      {[&] { cell->Copy(); }, "Range.Copy call()\n"},
      {[&] { cell->Insert(host::XlInsertShiftDirection::kToRight); }, "Range.Insert call(-4161)\n"},
      {[&] {
         cell->PasteSpecial(host::XlPasteType::kValidation, host::XlPasteSpecialOperation::kNone,
                            true, false);
       },
       "Range.PasteSpecial call(6, -4142, True, False)\n"},
      {[&] { EXPECT_EQ(interior->ColorIndex(), host::kColorIndexNone); },
       "Interior.ColorIndex get()\n"},
      {[&] { comment->SetVisible(false); }, "Comment.Visible put(False)\n"},
      {[&] { comment->Text("Saved 11/21/2026"); }, "Comment.Text call(\"Saved 11/21/2026\")\n"},
  };
  EXPECT_EQ(
      journal_.Take(),
      "Application.ActiveSheet get()\nApplication.Selection get()\n"
      "Range.AddComment call()\nRange.Interior get()\n"
      "Application.ActiveWorkbook get()\nWorkbook.Names get()\nNames.Item call(\"marker\")\n");
  for (const Case& c : cases) {
    c.act();
    EXPECT_EQ(journal_.Take(), c.calls);
  }
}

TEST_F(ExcelApplicationTest, GivesACellRelativeToARange) {
  auto other = ScriptedObject::Make(journal_, "Range");
  other->Has("Cells", MemberKind::kRead, Gives(Answer(excel_->range)));
  excel_->first_sheet->Has("Columns", MemberKind::kRead, Gives(Answer(other)));
  auto column = app().ActiveWorkbook()->Worksheets().at(0)->Columns(4);
  journal_.Take();
  EXPECT_EQ(column->Cells(0, -1)->Row(), 3);
  EXPECT_EQ(journal_.Take(), "Range.Cells get(0, -1)\nRange.Row get()\n");
}

TEST_F(ExcelApplicationTest, EnumeratesTheWorksheetsInTabOrder) {
  auto worksheets = app().ActiveWorkbook()->Worksheets();
  ASSERT_EQ(worksheets.size(), 2u);
  EXPECT_EQ(worksheets[0]->Name(), "Reference Sheet");
  EXPECT_EQ(worksheets[1]->Name(), "Überblick");
  excel_->worksheets->Holds({});
  EXPECT_TRUE(app().ActiveWorkbook()->Worksheets().empty());
}

TEST_F(ExcelApplicationTest, LooksUpEachMemberOnceForAllObjectsOfAKind) {
  for (int i = 0; i < 3; ++i) {
    for (auto& sheet : app().ActiveWorkbook()->Worksheets()) {
      sheet->Select();
      sheet->Cells(1, 1)->Select();
      sheet->Columns(2)->ColumnsCount();
    }
  }
  for (const char* member :
       {"Application.ActiveWorkbook", "Workbook.Worksheets", "Worksheet.Select", "Worksheet.Cells",
        "Worksheet.Columns", "Range.Select", "Range.Columns", "Range.Count"}) {
    EXPECT_EQ(journal_.look_ups[member], 1) << member;
  }
}

TEST_F(ExcelApplicationTest, GivesNullForWhatIsNoWorksheetAndNoRange) {
  auto chart = ScriptedObject::Make(journal_, "Chart");
  chart->Has("Name", MemberKind::kRead, Gives("Chart1"));
  Variant nothing(static_cast<IDispatch*>(nullptr));
  Reply const replies[] = {Gives(Answer(chart)), Gives(std::move(nothing)), Gives(Variant())};
  for (const Reply& reply : replies) {
    excel_->application->Has("ActiveSheet", MemberKind::kRead, reply);
    excel_->application->Has("Selection", MemberKind::kRead, reply);
    EXPECT_EQ(app().ActiveSheet(), nullptr);
    EXPECT_EQ(app().Selection(), nullptr);
  }
  excel_->application->Has("ActiveWorkbook", MemberKind::kRead, replies[1]);
  EXPECT_EQ(app().ActiveWorkbook(), nullptr);
}

TEST_F(ExcelApplicationTest, HasNoCallerUnlessAShapeRanTheMacro) {
  auto cell = Answer(excel_->range);
  Reply const replies[] = {Gives(Variant::From(CellError::kRef)), Gives(std::move(cell)),
                           Gives(Variant()), Gives(1)};
  for (const Reply& reply : replies) {
    excel_->application->Has("Caller", MemberKind::kRead, reply);
    EXPECT_EQ(app().Caller(), "");
  }
}

TEST_F(ExcelApplicationTest, ComparesWorksheetsByTheirIdentity) {
  OtherInterface second_sheet(excel_->second_sheet);
  auto worksheets = app().ActiveWorkbook()->Worksheets();
  excel_->application->Has("ActiveSheet", MemberKind::kRead, Gives(Variant(&second_sheet)));
  EXPECT_TRUE(worksheets[1]->IsSame(*app().ActiveSheet()));
  EXPECT_FALSE(worksheets[0]->IsSame(*worksheets[1]));
  excel_->application->Has("ActiveSheet", MemberKind::kRead);
}

TEST_F(ExcelApplicationTest, HandsBackTheObjectItWasGiven) {
  EXPECT_EQ(DispatchOf(app()), excel_->application.get());
  EXPECT_EQ(MakeExcelApplication(nullptr), nullptr);
}

TEST_F(ExcelApplicationTest, ReadsTheTopLeftCellOfSeveral) {
  SAFEARRAYBOUND bounds[] = {{2, 1}, {2, 1}};
  VARIANT block;
  VariantInit(&block);
  block.vt = VT_ARRAY | VT_VARIANT;
  block.parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  auto several = ScriptedObject::Make(journal_, "Range");
  several->Has("Areas", MemberKind::kRead);
  several->Has("Value", MemberKind::kReadWrite,
               [&](VARIANT* result, EXCEPINFO*) { return VariantCopy(result, &block); });
  several->Has("Cells", MemberKind::kRead, Gives(Answer(excel_->range)));
  excel_->application->Has("Selection", MemberKind::kRead, Gives(Answer(several)));
  EXPECT_EQ(app().Selection()->Value(), Value(2.5));
  VariantClear(&block);
}

TEST_F(ExcelApplicationTest, ReportsExcelsOwnErrors) {
  struct Case {
    Reply reply;
    int number;
    std::string source;
    std::string description;
  } const cases[] = {
      {Raises(kRefused, 0, "Microsoft Excel", "Select method of Range class failed"), 1004,
       "Microsoft Excel", "Select method of Range class failed"},
      {Raises(0, 9, "VBAProject", "Subscript out of range"), 9, "VBAProject",
       "Subscript out of range"},
      {Raises(kRefused, 0, "", ""), 1004, "Microsoft Excel",
       "Excel refused Range.Select without saying why (error 1004)."},
      {Raises(E_OUTOFMEMORY, 0, "", ""), 7, "Microsoft Excel",
       "Range.Select failed: there is not enough memory."},
      {Raises(static_cast<SCODE>(0x80040201), 0, "Add-in", "Größe"), static_cast<int>(0x80040201),
       "Add-in", "Größe"},
      {Raises(0, 0, "", ""), 440, "Microsoft Excel",
       "Excel refused Range.Select without saying why (error 440)."},
      {[](VARIANT*, EXCEPINFO* info) {
         info->pfnDeferredFillIn = SayLate;
         return DISP_E_EXCEPTION;
       },
       1004, "Microsoft Excel", "said late"},
  };
  for (const Case& c : cases) {
    excel_->range->Has("Select", MemberKind::kMethod, c.reply);
    HostError error = ErrorOf([&] { Cell()->Select(); });
    EXPECT_EQ(error.number(), c.number) << c.description;
    EXPECT_EQ(error.source(), c.source);
    EXPECT_EQ(error.description(), c.description);
  }
  EXPECT_TRUE(waits_.empty());
}

TEST_F(ExcelApplicationTest, ReportsOtherFailuresUnderTheNumbersAMacroSees) {
  struct Case {
    HRESULT result;
    int number;
  } const cases[] = {
      {DISP_E_MEMBERNOTFOUND, 438},
      {DISP_E_TYPEMISMATCH, 13},
      {DISP_E_BADPARAMCOUNT, 450},
      {DISP_E_PARAMNOTOPTIONAL, 449},
      {static_cast<HRESULT>(0x800A03EC), 1004},
      {static_cast<HRESULT>(0x800706BA), 462},
      {static_cast<HRESULT>(0x800401A8), 424},
      {E_FAIL, static_cast<int>(E_FAIL)},
  };
  for (const Case& c : cases) {
    excel_->range->Has("Select", MemberKind::kMethod, FailsWith(c.result));
    HostError error = ErrorOf([&] { Cell()->Select(); });
    EXPECT_EQ(error.number(), c.number);
    EXPECT_EQ(error.description().find("Range.Select "), 0u) << error.description();
  }
  auto empty = ScriptedObject::Make(journal_, "Application");
  auto other = MakeExcelApplication(empty.get());
  EXPECT_EQ(ErrorOf([&] { other->Goto("marker"); }).number(), 438);
}

TEST_F(ExcelApplicationTest, ReportsAnswersOfTheWrongKind) {
  VARIANT null;
  VariantInit(&null);
  null.vt = VT_NULL;
  excel_->interior->Has("ColorIndex", MemberKind::kRead, [null](VARIANT* result, EXCEPINFO*) {
    *result = null;
    return S_OK;
  });
  excel_->range->Has("Value", MemberKind::kReadWrite, Gives(Answer(excel_->comment)));
  excel_->workbook->Has("Names", MemberKind::kRead);
  EXPECT_EQ(ErrorOf([&] { Cell()->Interior()->ColorIndex(); }).number(), 13);
  EXPECT_EQ(ErrorOf([&] { Cell()->Value(); }).number(), 13);
  EXPECT_EQ(ErrorOf([&] { app().ActiveWorkbook()->Names(); }).number(), 91);
}

TEST_F(ExcelApplicationTest, TriesAgainWhileExcelIsBusy) {
  constexpr HRESULT kIgnored = static_cast<HRESULT>(0x800AC472);
  Reply const busy[] = {FailsWith(RPC_E_CALL_REJECTED), FailsWith(RPC_E_SERVERCALL_RETRYLATER),
                        FailsWith(kIgnored), Raises(kIgnored, 0, "Microsoft Excel", "busy")};
  auto cell = Cell();
  cell->Value();
  for (const Reply& reply : busy) {
    waits_.clear();
    excel_->range->IsBusy(8, reply);
    EXPECT_EQ(cell->Value(), Value(2.5));
    EXPECT_EQ(waits_.size(), 8u);
    EXPECT_EQ(waits_.front(), milliseconds(10));
    EXPECT_EQ(waits_.back(), milliseconds(500));
  }
  // Look-ups are refused in the same way.
  waits_.clear();
  excel_->interior->IsBusy(2, FailsWith(RPC_E_CALL_REJECTED));
  EXPECT_EQ(cell->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_EQ(waits_.size(), 2u);
}

TEST_F(ExcelApplicationTest, GivesUpAfterTenSecondsOfBeingBusy) {
  auto cell = Cell();
  excel_->range->IsBusy(1000, FailsWith(RPC_E_CALL_REJECTED));
  HostError error = ErrorOf([&] { cell->Select(); });
  EXPECT_EQ(error.number(), static_cast<int>(RPC_E_CALL_REJECTED));
  EXPECT_EQ(error.description(),
            "Excel was busy for 10 seconds and did not take Range.Select. Finish editing the cell "
            "or close the open dialog box in Excel, then run the operation again.");
  EXPECT_GE(Waited(), std::chrono::seconds(10));
  EXPECT_LT(Waited(), std::chrono::seconds(11));
  EXPECT_EQ(journal_.Take(), "Application.Selection get()\n");
}

TEST_F(ExcelApplicationTest, StopsTryingAtAnyOtherFailure) {
  auto cell = Cell();
  excel_->range->Has("Select", MemberKind::kMethod, FailsWith(E_FAIL));
  excel_->range->IsBusy(1, FailsWith(RPC_E_CALL_REJECTED));
  EXPECT_EQ(ErrorOf([&] { cell->Select(); }).number(), static_cast<int>(E_FAIL));
  EXPECT_EQ(waits_.size(), 1u);
}

}  // namespace
}  // namespace vantora::excel
