#include "hosts/excel/variant.h"

#include <new>

#include "hosts/excel/text.h"

namespace vantora::excel {

namespace {

// An error value travels as an automation error of the control facility whose low word is the
// host's code: #VALUE! (2015) is 0x800A07DF.
SCODE ScodeOf(CellError error) {
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<int>(error));
}

std::optional<Value> ValueOfScode(SCODE scode) {
  // The missing argument and others are no cell values.
  if (HRESULT_FACILITY(scode) != FACILITY_CONTROL) return std::nullopt;
  return Value(static_cast<CellError>(HRESULT_CODE(scode)));
}

double NumberOf(const DECIMAL& decimal) {
  double number = 0;
  VarR8FromDec(const_cast<DECIMAL*>(&decimal), &number);
  return number;
}

// `variant` is not by reference.
std::optional<Value> ValueOf(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return Value();
    case VT_I1:
      return Value(static_cast<signed char>(variant.cVal));
    case VT_UI1:
      return Value(variant.bVal);
    case VT_I2:
      return Value(variant.iVal);
    case VT_UI2:
      return Value(variant.uiVal);
    case VT_I4:
      return Value(static_cast<double>(variant.lVal));
    case VT_UI4:
      return Value(static_cast<double>(variant.ulVal));
    case VT_INT:
      return Value(static_cast<double>(variant.intVal));
    case VT_UINT:
      return Value(static_cast<double>(variant.uintVal));
    case VT_I8:
      return Value(static_cast<double>(variant.llVal));
    case VT_UI8:
      return Value(static_cast<double>(variant.ullVal));
    case VT_R4:
      return Value(static_cast<double>(variant.fltVal));
    case VT_R8:
      return Value(variant.dblVal);
    case VT_CY:
      return Value(static_cast<double>(variant.cyVal.int64) / 10000);
    case VT_DATE:
      return Value(variant.date);
    case VT_DECIMAL:
      return Value(NumberOf(variant.decVal));
    case VT_BSTR:
      return Value(ToUtf8(variant.bstrVal));
    case VT_BOOL:
      return Value(variant.boolVal != VARIANT_FALSE);
    case VT_ERROR:
      return ValueOfScode(variant.scode);
    default:
      return std::nullopt;
  }
}

// The elements of an array of VARIANTs, accessible while this lives.
class Elements {
 public:
  explicit Elements(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array, &data_))) throw std::bad_alloc();
  }
  ~Elements() { SafeArrayUnaccessData(array_); }
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;

  VARIANT& operator[](std::size_t index) { return static_cast<VARIANT*>(data_)[index]; }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

// A new array of VARIANTs whose dimensions are counted from 1, in `variant`.
SAFEARRAY* MakeArray(VARIANT* variant, std::initializer_list<std::size_t> sizes) {
  std::vector<SAFEARRAYBOUND> bounds;
  for (std::size_t size : sizes) bounds.push_back({static_cast<ULONG>(size), 1});
  variant->parray = SafeArrayCreate(VT_VARIANT, static_cast<UINT>(bounds.size()), bounds.data());
  if (!variant->parray) throw std::bad_alloc();
  variant->vt = VT_ARRAY | VT_VARIANT;
  return variant->parray;
}

}  // namespace

Variant::Variant(std::string_view text) : Variant(VT_BSTR) { variant_.bstrVal = MakeBstr(text); }

Variant Variant::From(const Value& value) {
  if (value.IsNumber()) return Variant(value.AsNumber());
  if (value.IsText()) return Variant(std::string_view(value.AsText()));
  if (value.IsBoolean()) return Variant(value.AsBoolean());
  if (!value.IsError()) return Variant();
  Variant error(VT_ERROR);
  error.variant_.scode = ScodeOf(value.AsError());
  return error;
}

Variant Variant::ColumnOf(std::span<const Value> rows) {
  Variant column;
  Elements elements(MakeArray(&column.variant_, {rows.size(), 1}));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Variant value = From(rows[i]);
    std::swap(elements[i], value.variant_);
  }
  return column;
}

Variant Variant::ListOf(std::span<const int> numbers) {
  Variant list;
  Elements elements(MakeArray(&list.variant_, {numbers.size()}));
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    elements[i].vt = VT_I4;
    elements[i].lVal = numbers[i];
  }
  return list;
}

Variant Variant::Missing() {
  Variant missing(VT_ERROR);
  missing.variant_.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

std::optional<Value> Variant::ToValue() const {
  if ((variant_.vt & VT_BYREF) == 0) return ValueOf(variant_);
  Variant target;
  if (FAILED(VariantCopyInd(&target.variant_, const_cast<VARIANT*>(&variant_))))
    return std::nullopt;
  return ValueOf(target.variant_);
}

std::optional<int> Variant::ToInt() const {
  Variant number = ConvertTo(VT_I4);
  if (number.type() != VT_I4) return std::nullopt;
  return number.variant_.lVal;
}

std::optional<double> Variant::ToDouble() const {
  Variant number = ConvertTo(VT_R8);
  if (number.type() != VT_R8) return std::nullopt;
  return number.variant_.dblVal;
}

std::optional<bool> Variant::ToBool() const {
  Variant boolean = ConvertTo(VT_BOOL);
  if (boolean.type() != VT_BOOL) return std::nullopt;
  return boolean.variant_.boolVal != VARIANT_FALSE;
}

std::optional<std::string> Variant::ToText() const {
  Variant text = ConvertTo(VT_BSTR);
  if (text.type() != VT_BSTR) return std::nullopt;
  return ToUtf8(text.variant_.bstrVal);
}

std::optional<std::vector<int>> Variant::ToInts() const {
  if (variant_.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(variant_.parray) != 1) {
    return std::nullopt;
  }
  std::vector<int> numbers;
  Elements elements(variant_.parray);
  const ULONG count = variant_.parray->rgsabound[0].cElements;
  for (ULONG i = 0; i < count; ++i) {
    Variant element;
    if (FAILED(VariantCopyInd(&element.variant_, &elements[i]))) return std::nullopt;
    std::optional<int> number = element.ToInt();
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

Variant Variant::ConvertTo(VARENUM type) const {
  Variant converted;
  VARIANT* source = const_cast<VARIANT*>(&variant_);
  VariantChangeTypeEx(&converted.variant_, source, kMacroLocale, 0, static_cast<VARTYPE>(type));
  return converted;
}

ComPtr<IDispatch> Variant::ToObject() const {
  if (variant_.vt == VT_DISPATCH) return ComPtr<IDispatch>::Share(variant_.pdispVal);
  if (variant_.vt == VT_UNKNOWN) {
    return ComPtr<IUnknown>::Share(variant_.punkVal).As<IDispatch>();
  }
  return {};
}

}  // namespace vantora::excel
