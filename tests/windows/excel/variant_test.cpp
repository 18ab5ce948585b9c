#include "hosts/excel/variant.h"

#include <gtest/gtest.h>

#include <string>

#include "hosts/excel/text.h"

namespace vantora::excel {
namespace {

// A variant of that type in which `set` stores its value.
template <typename Set>
Variant Make(int type, const Set& set) {
  Variant variant;
  VARIANT* raw = variant.Receive();
  raw->vt = static_cast<VARTYPE>(type);
  set(*raw);
  return variant;
}

TEST(Variant, GivesTheCellValueOfEveryKindThatExcelReturns) {
  struct Case {
    Variant variant;
    Value value;
  } const cases[] = {
      {Variant(), Value()},
      {Make(VT_NULL, [](VARIANT&) {}), Value()},
      {Make(VT_I1, [](VARIANT& v) { v.cVal = -5; }), Value(-5)},
      {Make(VT_UI1, [](VARIANT& v) { v.bVal = 200; }), Value(200)},
      {Make(VT_I2, [](VARIANT& v) { v.iVal = -300; }), Value(-300)},
      {Make(VT_UI2, [](VARIANT& v) { v.uiVal = 65535; }), Value(65535)},
      {Make(VT_I4, [](VARIANT& v) { v.lVal = -70000; }), Value(-70000)},
      {Make(VT_UI4, [](VARIANT& v) { v.ulVal = 4000000000u; }), Value(4e9)},
      {Make(VT_INT, [](VARIANT& v) { v.intVal = -1; }), Value(-1)},
      {Make(VT_UINT, [](VARIANT& v) { v.uintVal = 1; }), Value(1)},
      {Make(VT_I8, [](VARIANT& v) { v.llVal = -(1ll << 40); }), Value(-1099511627776.0)},
      {Make(VT_UI8, [](VARIANT& v) { v.ullVal = 1ull << 63; }), Value(9223372036854775808.0)},
      {Make(VT_R4, [](VARIANT& v) { v.fltVal = 0.5f; }), Value(0.5)},
      {Make(VT_R8, [](VARIANT& v) { v.dblVal = 1e300; }), Value(1e300)},
      {Make(VT_CY, [](VARIANT& v) { v.cyVal.int64 = -12345678; }), Value(-1234.5678)},
      {Make(VT_DATE, [](VARIANT& v) { v.date = 46347.5; }), Value(46347.5)},
      {Make(VT_BOOL, [](VARIANT& v) { v.boolVal = VARIANT_TRUE; }), Value(true)},
      {Make(VT_BSTR, [](VARIANT& v) { v.bstrVal = nullptr; }), Value("")},
      {Make(VT_ERROR, [](VARIANT& v) { v.scode = static_cast<SCODE>(0x800A07DF); }),
       Value(CellError::kValue)},
      {Make(VT_ERROR, [](VARIANT& v) { v.scode = static_cast<SCODE>(0x800A07FA); }),
       Value(CellError::kNotAvailable)},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.variant.ToValue(), c.value) << "type " << c.variant.type();
  }
  DECIMAL decimal;
  ASSERT_EQ(VarDecFromR8(12.25, &decimal), S_OK);
  Variant exact = Make(VT_DECIMAL, [&](VARIANT& v) {
    v.decVal = decimal;
    v.vt = VT_DECIMAL;
  });
  EXPECT_EQ(exact.ToValue(), Value(12.25));
}

TEST(Variant, FollowsReferencesToValues) {
  double number = 7.5;
  Variant inner("inner");
  VARIANT target = inner.get();
  EXPECT_EQ(Make(VT_BYREF | VT_R8, [&](VARIANT& v) { v.pdblVal = &number; }).ToValue(), Value(7.5));
  EXPECT_EQ(Make(VT_BYREF | VT_VARIANT, [&](VARIANT& v) { v.pvarVal = &target; }).ToValue(),
            Value("inner"));
}

TEST(Variant, IsNoCellValueForObjectsArraysAndOtherErrors) {
  EXPECT_EQ(Variant(static_cast<IDispatch*>(nullptr)).ToValue(), std::nullopt);
  EXPECT_EQ(Variant::Missing().ToValue(), std::nullopt);
  Variant array =
      Make(VT_ARRAY | VT_R8, [](VARIANT& v) { v.parray = SafeArrayCreateVector(VT_R8, 0, 2); });
  EXPECT_EQ(array.ToValue(), std::nullopt);
  EXPECT_EQ(array.ToInt(), std::nullopt);
}

TEST(Variant, CarriesCellValuesThereAndBack) {
  const Value values[] = {Value(),
                          Value(-0.1),
                          Value(""),
                          Value("Größe 東京 😀"),
                          Value(true),
                          Value(false),
                          Value(std::string("a\0b", 3)),
                          Value(CellError::kName)};
  for (const Value& value : values) EXPECT_EQ(Variant::From(value).ToValue(), value);
}

TEST(Variant, ConvertsNumbersTheAmericanWayAndRoundsHalfToEven) {
  EXPECT_EQ(Variant(2.5).ToInt(), 2);
  EXPECT_EQ(Variant("3.0").ToInt(), 3);
  EXPECT_EQ(Variant("many").ToInt(), std::nullopt);
  EXPECT_EQ(Variant(-1).ToBool(), true);
  EXPECT_EQ(Variant(1.5).ToText(), "1.5");
}

TEST(Text, ReplacesWhatIsNotValid) {
  const wchar_t lone_surrogate[] = {L'a', 0xD83D, L'b'};
  EXPECT_EQ(ToUtf8(std::wstring_view(lone_surrogate, 3)),
            "a\xEF\xBF\xBD"
            "b");
  BSTR text = MakeBstr(
      "a\xFF"
      "b");
  EXPECT_EQ(ToUtf8(text),
            "a\xEF\xBF\xBD"
            "b");
  SysFreeString(text);
}

}  // namespace
}  // namespace vantora::excel
