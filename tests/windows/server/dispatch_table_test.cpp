// Late-bound calls of members with every kind of parameter.
#include "component/com/dispatch_table.h"

#include <gtest/gtest.h>

// Defines the identifiers that the header declares.
#include <initguid.h>

#include "TestCalls.h"
#include "component/com/automation_error.h"
#include "core/host_error.h"
#include "hosts/excel/text.h"

namespace vantora::com {
namespace {

class TestCalls : public ITestCalls {
 public:
  STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return E_NOTIMPL;
  }

  STDMETHODIMP Join(BSTR text, LONG number, VARIANT_BOOL flag, BSTR* joined) override {
    *joined = excel::MakeBstr(excel::ToUtf8(text) + "|" + std::to_string(number) + "|" +
                              (flag == VARIANT_TRUE ? "yes" : "no"));
    return S_OK;
  }
  STDMETHODIMP Kind(VARIANT value, LONG* type) override {
    *type = value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND ? -1 : value.vt;
    return S_OK;
  }
  STDMETHODIMP Defaulted(LONG number, LONG* passed) override {
    *passed = number;
    return S_OK;
  }
  STDMETHODIMP Change(LONG* number, BSTR* text) override {
    *number += 1;
    std::string longer = excel::ToUtf8(*text) + "!";
    SysFreeString(*text);
    *text = excel::MakeBstr(longer);
    return S_OK;
  }
  STDMETHODIMP Fill(VARIANT* array) override {
    EXPECT_EQ(array->vt, VT_BYREF | VT_ARRAY | VT_I4);
    LONG index = 0;
    LONG number = 5;
    return SafeArrayPutElement(*array->pparray, &index, &number);
  }
  STDMETHODIMP put_Size(LONG size) override {
    size_ = size;
    return S_OK;
  }
  STDMETHODIMP get_Size(LONG* size) override {
    *size = size_;
    return S_OK;
  }
  STDMETHODIMP Fail() override {
    return Guarded(IID_ITestCalls, L"clsTest", [] { throw HostError(1004, "no", "Host"); });
  }
  STDMETHODIMP ChangeOptional(VARIANT* value) override {
    omitted_ = value->vt == VT_ERROR && value->scode == DISP_E_PARAMNOTFOUND;
    if (!omitted_) {
      VariantClear(value);
      value->vt = VT_I4;
      value->lVal = 9;
    }
    return S_OK;
  }

  bool omitted() const { return omitted_; }

 private:
  LONG size_ = 0;
  bool omitted_ = false;
};

VARIANT Plain(VARTYPE type) {
  VARIANT value;
  VariantInit(&value);
  value.vt = type;
  return value;
}
VARIANT Number(LONG number) {
  VARIANT value = Plain(VT_I4);
  value.lVal = number;
  return value;
}
VARIANT Flag(bool flag) {
  VARIANT value = Plain(VT_BOOL);
  value.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}
VARIANT Omitted() {
  VARIANT value = Plain(VT_ERROR);
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}
VARIANT ReferenceTo(VARIANT& variable) {
  VARIANT value = Plain(VT_BYREF | VT_VARIANT);
  value.pvarVal = &variable;
  return value;
}
// The caller frees it.
void SetText(VARIANT& value, const char* text) {
  value.vt = VT_BSTR;
  value.bstrVal = excel::MakeBstr(text);
}

class DispatchTableTest : public ::testing::Test {
 protected:
  enum Member { kJoin = 1, kKind, kDefaulted, kChange, kFill, kSize, kFail, kChangeOptional };

  DispatchTableTest() {
    ComPtr<ITypeLib> library;
    EXPECT_HRESULT_SUCCEEDED(LoadTypeLibEx(TEST_CALLS_LIBRARY, REGKIND_NONE, library.Receive()));
    ComPtr<ITypeInfo> info;
    EXPECT_HRESULT_SUCCEEDED(library->GetTypeInfoOfGuid(IID_ITestCalls, info.Receive()));
    table_ = std::make_unique<DispatchTable>(info.get());
  }

  // `arguments` in the order of the declaration.
  HRESULT Call(DISPID member, std::vector<VARIANT> arguments, WORD flags = DISPATCH_METHOD) {
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    return CallWith(member, reversed, {}, flags);
  }
  // `arguments` as Invoke gets them, the named ones first.
  HRESULT CallWith(DISPID member, std::vector<VARIANT>& arguments, std::vector<DISPID> names,
                   WORD flags = DISPATCH_METHOD) {
    DISPPARAMS parameters = {arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                             static_cast<UINT>(names.size())};
    VariantClear(&result_);
    return table_->Invoke(&calls_, member, LOCALE_USER_DEFAULT, flags, parameters, &result_,
                          &exception_, &argument_error_);
  }
  std::string ResultText() {
    return result_.vt == VT_BSTR ? excel::ToUtf8(result_.bstrVal) : "not a text";
  }

  TestCalls calls_;
  std::unique_ptr<DispatchTable> table_;
  OwnedVariant result_;
  EXCEPINFO exception_ = {};
  UINT argument_error_ = 99;
};

TEST_F(DispatchTableTest, ConvertsValuesAndReferencesToTheParametersTypes) {
  OwnedVariant text;
  SetText(text, "12");
  OwnedVariant digits;
  SetText(digits, "34");
  ASSERT_EQ(Call(kJoin, {text, Number(3), Flag(true)}), S_OK);
  EXPECT_EQ(ResultText(), "12|3|yes");
  // The same as a script passes its variables, each of another type than the parameter.
  VARIANT number = Number(12);
  VARIANT zero = Number(0);
  ASSERT_EQ(Call(kJoin, {ReferenceTo(number), ReferenceTo(digits), ReferenceTo(zero)}), S_OK);
  EXPECT_EQ(ResultText(), "12|34|no");
  ASSERT_EQ(Call(kJoin, {Flag(true), Number(1), Number(2)}), S_OK);
  EXPECT_EQ(ResultText(), "True|1|yes");
}

TEST_F(DispatchTableTest, RefusesWhatDoesNotFitAndTellsWhichArgument) {
  OwnedVariant text;
  SetText(text, "twelve");
  EXPECT_EQ(Call(kJoin, {text, text, Flag(true)}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(argument_error_, 1u);
  EXPECT_EQ(Call(kJoin, {text, Number(1)}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call(kJoin, {text, Omitted(), Flag(true)}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call(kFail, {Number(1)}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call(77, {}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Call(kJoin, {}, DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
}

TEST_F(DispatchTableTest, FillsInWhatIsLeftOut) {
  ASSERT_EQ(Call(kKind, {}), S_OK);
  EXPECT_EQ(result_.lVal, -1);
  ASSERT_EQ(Call(kKind, {Omitted()}), S_OK);
  EXPECT_EQ(result_.lVal, -1);
  VARIANT empty = Plain(VT_EMPTY);
  ASSERT_EQ(Call(kKind, {ReferenceTo(empty)}), S_OK);
  EXPECT_EQ(result_.lVal, VT_EMPTY);
  ASSERT_EQ(Call(kDefaulted, {}), S_OK);
  EXPECT_EQ(result_.lVal, 7);
  ASSERT_EQ(Call(kChangeOptional, {}), S_OK);
  EXPECT_TRUE(calls_.omitted());
}

TEST_F(DispatchTableTest, PutsChangesBackIntoTheClientsVariables) {
  OwnedVariant number;
  SetText(number, "4");
  OwnedVariant text;
  SetText(text, "a");
  ASSERT_EQ(Call(kChange, {ReferenceTo(number), ReferenceTo(text)}), S_OK);
  EXPECT_EQ(number.vt, VT_I4);
  EXPECT_EQ(number.lVal, 5);
  EXPECT_EQ(excel::ToUtf8(text.bstrVal), "a!");

  SHORT small = 4;
  VARIANT small_reference = Plain(VT_BYREF | VT_I2);
  small_reference.piVal = &small;
  VARIANT text_reference = Plain(VT_BYREF | VT_BSTR);
  text_reference.pbstrVal = &text.bstrVal;
  ASSERT_EQ(Call(kChange, {small_reference, text_reference}), S_OK);
  EXPECT_EQ(small, 5);
  EXPECT_EQ(excel::ToUtf8(text.bstrVal), "a!!");

  ASSERT_EQ(Call(kChange, {Number(1), text}), S_OK) << "values instead of variables";
  EXPECT_EQ(excel::ToUtf8(text.bstrVal), "a!!");

  OwnedVariant any;
  SetText(any, "x");
  ASSERT_EQ(Call(kChangeOptional, {ReferenceTo(any)}), S_OK);
  EXPECT_EQ(any.lVal, 9);
}

TEST_F(DispatchTableTest, FillsTheClientsOwnArray) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 2);
  VARIANT reference = Plain(VT_BYREF | VT_ARRAY | VT_I4);
  reference.pparray = &array;
  ASSERT_EQ(Call(kFill, {reference}), S_OK);
  LONG index = 0;
  LONG number = 0;
  SafeArrayGetElement(array, &index, &number);
  EXPECT_EQ(number, 5);
  SafeArrayDestroy(array);
}

TEST_F(DispatchTableTest, TakesNamedArgumentsAndPropertyValues) {
  OwnedVariant text;
  SetText(text, "a");
  // Named: the third parameter, then the second; the first by its position.
  std::vector<VARIANT> arguments = {Flag(true), Number(6), text};
  ASSERT_EQ(CallWith(kJoin, arguments, {2, 1}), S_OK);
  EXPECT_EQ(ResultText(), "a|6|yes");
  EXPECT_EQ(CallWith(kJoin, arguments, {2, 5}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(argument_error_, 1u);
  EXPECT_EQ(CallWith(kJoin, arguments, {2, 0}), DISP_E_PARAMNOTFOUND) << "given twice";

  std::vector<VARIANT> value = {Number(8)};
  ASSERT_EQ(CallWith(kSize, value, {DISPID_PROPERTYPUT}, DISPATCH_PROPERTYPUT), S_OK);
  ASSERT_EQ(Call(kSize, {}, DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(result_.lVal, 8);
}

TEST_F(DispatchTableTest, HandsOverWhatTheMemberReports) {
  ASSERT_EQ(Call(kFail, {}), DISP_E_EXCEPTION);
  EXPECT_EQ(exception_.scode, static_cast<SCODE>(0x800A03EC));
  EXPECT_EQ(excel::ToUtf8(exception_.bstrSource), "Host");
  EXPECT_EQ(excel::ToUtf8(exception_.bstrDescription), "no");
  SysFreeString(exception_.bstrSource);
  SysFreeString(exception_.bstrDescription);
  ComPtr<IErrorInfo> left;
  EXPECT_EQ(GetErrorInfo(0, left.Receive()), S_FALSE) << "the report was moved, not copied";
}

}  // namespace
}  // namespace vantora::com
