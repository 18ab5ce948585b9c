// The stand-in itself: as strict as Excel, and loud about every call that Excel does not document.
#include <gmock/gmock.h>

#include "hosts/excel/text.h"
#include "operations/test_model.h"
#include "standin_excel.h"

namespace vantora::standin {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

class StandInTest : public ::testing::Test {
 protected:
  StandInTest() {
    excel->application = model.application();
    application = MakeApplication(excel);
  }
  ~StandInTest() override {
    application = {};
    result.Receive();  // lets go of the last result
    EXPECT_EQ(excel->living_objects, 0);
  }

  // Calls a member with arguments in the order of their declaration, then `named` ones.
  HRESULT Call(IDispatch* object, const wchar_t* name, WORD kind,
               const std::vector<Variant>& arguments = {},
               const std::vector<std::pair<const wchar_t*, int>>& named = {}) {
    std::vector<LPOLESTR> names{const_cast<LPOLESTR>(name)};
    for (const auto& argument : named) names.push_back(const_cast<LPOLESTR>(argument.first));
    std::vector<DISPID> ids(names.size());
    HRESULT found = object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                          excel::kMacroLocale, ids.data());
    if (FAILED(found)) return found;
    std::vector<VARIANT> values;
    for (const auto& argument : named) values.push_back(Variant(argument.second).get());
    for (auto next = arguments.rbegin(); next != arguments.rend(); ++next) {
      values.push_back(next->get());
    }
    const bool is_put = kind == DISPATCH_PROPERTYPUT;
    if (is_put) ids.push_back(DISPID_PROPERTYPUT);
    DISPPARAMS parameters{values.data(), ids.data() + 1, static_cast<UINT>(values.size()),
                          static_cast<UINT>(ids.size() - 1)};
    VARIANT* place = is_put ? nullptr : result.Receive();
    return object->Invoke(ids[0], IID_NULL, excel::kMacroLocale, kind, &parameters, place, &info,
                          nullptr);
  }
  ComPtr<IDispatch> Get(IDispatch* object, const wchar_t* name,
                        const std::vector<Variant>& arguments = {}) {
    EXPECT_EQ(Call(object, name, kRead, arguments), S_OK);
    return result.ToObject();
  }
  ComPtr<IDispatch> Cell(int row, int column) {
    std::vector<Variant> place;
    place.emplace_back(row);
    place.emplace_back(column);
    return Get(Get(application.get(), L"ActiveSheet").get(), L"Cells", place);
  }

  testing::TestModel model{{"Data", "Other"}};
  ExcelPtr excel = std::make_shared<Excel>();
  ComPtr<IDispatch> application;
  Variant result;
  EXCEPINFO info{};
};

TEST_F(StandInTest, WritesDownWhatExcelDoesNotDocument) {
  ComPtr<IDispatch> cell = Cell(2, 3);
  EXPECT_EQ(Call(cell.get(), L"Colour", kRead), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Call(cell.get(), L"Row", kRead, std::vector<Variant>(1)), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call(cell.get(), L"Select", DISPATCH_PROPERTYGET), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Call(cell.get(), L"Row", DISPATCH_PROPERTYPUT, std::vector<Variant>(1)),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Call(cell.get(), L"PasteSpecial", DISPATCH_METHOD, {}, {{L"Kind", 1}}),
            DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Call(cell.get(), L"Cells", kRead, {}, {{L"RowIndex", 1}}), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Call(Get(application.get(), L"ActiveSheet").get(), L"Range", kRead),
            DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call(cell.get(), L"Copy", DISPATCH_METHOD, std::vector<Variant>(1)), E_NOTIMPL);
  EXPECT_THAT(excel->failures,
              ElementsAre(HasSubstr("Range.Colour"), HasSubstr("Range.Row"),
                          HasSubstr("Range.Select"), HasSubstr("Range.Row"),
                          HasSubstr("no argument Kind"), HasSubstr("no argument RowIndex"),
                          HasSubstr("Worksheet.Range"), HasSubstr("Range.Copy")));
}

TEST_F(StandInTest, TakesArgumentsByPlaceByNameAndByReference) {
  constexpr int kPasteValues = -4163;
  model.Put("Data!C2", {"=1+1"});
  Call(Cell(2, 3).get(), L"Copy", DISPATCH_METHOD);
  EXPECT_EQ(
      Call(Cell(2, 4).get(), L"pastespecial", DISPATCH_METHOD, {}, {{L"Paste", kPasteValues}}),
      S_OK);
  EXPECT_EQ(model.Get("Data!D2"), Value(2));
  EXPECT_EQ(model.Formula("Data!D2"), "");

  std::vector<Variant> left_out;
  left_out.push_back(Variant::Missing());
  EXPECT_EQ(Call(Cell(2, 5).get(), L"PasteSpecial", DISPATCH_METHOD, left_out), S_OK);
  EXPECT_EQ(model.Formula("Data!E2"), "1+1");

  Variant text("by reference");
  std::vector<Variant> reference(1);
  reference[0].Receive()->vt = VT_BYREF | VT_VARIANT;
  const_cast<VARIANT&>(reference[0].get()).pvarVal = const_cast<VARIANT*>(&text.get());
  EXPECT_EQ(Call(Cell(3, 3).get(), L"Value", DISPATCH_PROPERTYPUT, reference), S_OK);
  EXPECT_EQ(model.Get("Data!C3"), Value("by reference"));
  EXPECT_THAT(excel->failures, IsEmpty());
}

TEST_F(StandInTest, RefusesAsExcelDoes) {
  std::vector<Variant> name;
  name.emplace_back("no such name");
  EXPECT_EQ(Call(application.get(), L"Goto", DISPATCH_METHOD, name), DISP_E_EXCEPTION);
  EXPECT_EQ(info.scode, static_cast<SCODE>(0x800A03EC));
  EXPECT_EQ(info.wCode, 0);
  EXPECT_STREQ(info.bstrSource, L"Microsoft Excel");
  EXPECT_THAT(excel::ToUtf8(info.bstrDescription), HasSubstr("no such name"));
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  EXPECT_THAT(excel->failures, IsEmpty());
}

TEST_F(StandInTest, GivesASheetAsOneObjectAndSeveralCellsAsAnArray) {
  ComPtr<IDispatch> active = Get(application.get(), L"ActiveSheet");
  ComPtr<IDispatch> sheets = Get(Get(application.get(), L"ActiveWorkbook").get(), L"Worksheets");
  std::vector<Variant> index;
  index.emplace_back(1);
  EXPECT_EQ(Get(sheets.get(), L"Item", index).get(), active.get());
  model.Put("Data!C2", {1, "two"});
  ComPtr<IDispatch> used = Get(active.get(), L"UsedRange");
  EXPECT_EQ(Call(used.get(), L"Value", kRead), S_OK);
  EXPECT_EQ(result.type(), VT_ARRAY | VT_VARIANT);
  LONG place[] = {1, 2};
  Variant second;
  EXPECT_EQ(SafeArrayGetElement(result.get().parray, place, second.Receive()), S_OK);
  EXPECT_EQ(second.ToText(), "two");
}

}  // namespace
}  // namespace vantora::standin
