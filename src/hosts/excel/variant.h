// A VARIANT that frees what it holds, and the cell values in it.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/value.h"
#include "hosts/excel/com_ptr.h"

namespace vantora::excel {

// The locale under which Excel's members are called: that of a macro, whatever the user's own is.
// Texts put into cells are read, and members named, the American way.
inline constexpr LCID kMacroLocale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), 0);

class Variant {
 public:
  Variant() { VariantInit(&variant_); }
  Variant(int number) : Variant(VT_I4) { variant_.lVal = number; }       // NOLINT: an argument
  Variant(double number) : Variant(VT_R8) { variant_.dblVal = number; }  // NOLINT
  Variant(bool boolean) : Variant(VT_BOOL) {                             // NOLINT
    variant_.boolVal = boolean ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Variant(std::string_view text);                                 // NOLINT
  Variant(const char* text) : Variant(std::string_view(text)) {}  // NOLINT
  // Takes a reference of its own; null is Nothing.
  Variant(IDispatch* object) : Variant(VT_DISPATCH) {  // NOLINT
    variant_.pdispVal = object;
    if (object) object->AddRef();
  }
  static Variant From(const Value& value);
  // A block of one column with a row for each value, as one assignment takes it. Throws
  // std::bad_alloc.
  static Variant ColumnOf(std::span<const Value> rows);
  // A list of numbers, counted from 1. Throws std::bad_alloc.
  static Variant ListOf(std::span<const int> numbers);
  // An optional argument that is left out.
  static Variant Missing();

  Variant(Variant&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(&variant_); }

  const VARIANT& get() const { return variant_; }
  VARTYPE type() const { return variant_.vt; }
  bool IsArray() const { return (variant_.vt & VT_ARRAY) != 0; }
  // Frees what the variant holds and tells where a call is to store its result.
  VARIANT* Receive() {
    VariantClear(&variant_);
    return &variant_;
  }

  // The cell value: dates are serial numbers, every kind of number is a double, Null is empty.
  // std::nullopt for what is no cell value: an array, an object, an unknown error.
  std::optional<Value> ToValue() const;
  // std::nullopt for what does not convert. A fraction is rounded half to even.
  std::optional<int> ToInt() const;
  std::optional<double> ToDouble() const;
  std::optional<bool> ToBool() const;
  std::optional<std::string> ToText() const;
  // The numbers of a list, in its order.
  std::optional<std::vector<int>> ToInts() const;
  // The object; empty for Nothing and for what is no object.
  ComPtr<IDispatch> ToObject() const;

 private:
  explicit Variant(VARENUM type) {
    VariantInit(&variant_);
    variant_.vt = static_cast<VARTYPE>(type);
  }

  // Empty when it does not convert.
  Variant ConvertTo(VARENUM type) const;

  VARIANT variant_;
};

}  // namespace vantora::excel
