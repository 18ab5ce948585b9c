#include "component/com/array_argument.h"

#include <algorithm>

#include "core/host_error.h"
#include "hosts/excel/text.h"
#include "hosts/excel/variant.h"

namespace vantora::com {
namespace {

constexpr char kSource[] = "Orvanemcro1";

[[noreturn]] void RefuseType() {
  throw HostError(HostError::kTypeMismatch,
                  "Type mismatch: an array of texts or of True and False is expected, of one "
                  "dimension.",
                  kSource);
}

// The memory of an element as SafeArrayGetElement and SafeArrayPutElement want it.
void* Memory(VARIANT& value, VARTYPE type) {
  return type == VT_VARIANT ? static_cast<void*>(&value) : &value.byref;
}

}  // namespace

ArrayArgument::ArrayArgument(const VARIANT& argument) {
  const VARIANT* holder = &argument;
  while (holder->vt == (VT_BYREF | VT_VARIANT)) holder = holder->pvarVal;
  if ((holder->vt & VT_ARRAY) == 0) RefuseType();
  array_ = holder->vt & VT_BYREF ? *holder->pparray : holder->parray;
  type_ = holder->vt & VT_TYPEMASK;
  if (!array_) return;
  if (SafeArrayGetDim(array_) != 1 || FAILED(SafeArrayGetLBound(array_, 1, &first_)) ||
      FAILED(SafeArrayGetUBound(array_, 1, &last_))) {
    RefuseType();
  }
}

std::vector<std::string> ArrayArgument::Texts() const {
  std::vector<std::string> texts;
  for (LONG number = first_; number <= last_; ++number) texts.push_back(TextAt(number));
  return texts;
}

std::vector<std::string> ArrayArgument::NumberedTexts() const {
  std::vector<std::string> texts(NumberedSize());
  for (LONG number = std::max(first_, 0L); number <= last_; ++number) {
    texts[number] = TextAt(number);
  }
  return texts;
}

std::vector<bool> ArrayArgument::NumberedFlags() const {
  std::vector<bool> flags(NumberedSize());
  for (LONG number = std::max(first_, 0L); number <= last_; ++number) {
    OwnedVariant flag;
    Get(number, VT_BOOL, &flag);
    flags[number] = flag.boolVal != VARIANT_FALSE;
  }
  return flags;
}

void ArrayArgument::PutNumbered(const std::vector<std::string>& texts) {
  const LONG end = static_cast<LONG>(texts.size());
  for (LONG number = std::max(first_, 0L); number <= last_ && number < end; ++number) {
    excel::Variant text{std::string_view(texts[number])};
    Put(number, text.get());
  }
}

void ArrayArgument::PutNumbered(const std::vector<bool>& flags) {
  const LONG end = static_cast<LONG>(flags.size());
  for (LONG number = std::max(first_, 0L); number <= last_ && number < end; ++number) {
    excel::Variant flag(static_cast<bool>(flags[number]));
    Put(number, flag.get());
  }
}

void ArrayArgument::Get(LONG number, VARTYPE type, VARIANT* value) const {
  OwnedVariant element;
  if (type_ != VT_VARIANT) element.vt = type_;
  if (FAILED(SafeArrayGetElement(array_, &number, Memory(element, type_)))) {
    if (type_ != VT_VARIANT) element.vt = VT_EMPTY;
    RefuseType();
  }
  if (FAILED(VariantChangeTypeEx(value, &element, LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, type))) {
    RefuseType();
  }
}

void ArrayArgument::Put(LONG number, const VARIANT& value) {
  OwnedVariant element;
  VARIANT* given = const_cast<VARIANT*>(&value);
  const HRESULT converted =
      type_ == VT_VARIANT
          ? VariantCopy(&element, given)
          : VariantChangeTypeEx(&element, given, LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, type_);
  if (FAILED(converted)) RefuseType();
  // A text is passed by its pointer, everything else by where it is.
  void* memory = type_ == VT_BSTR ? static_cast<void*>(element.bstrVal) : Memory(element, type_);
  if (FAILED(SafeArrayPutElement(array_, &number, memory))) RefuseType();
}

std::string ArrayArgument::TextAt(LONG number) const {
  OwnedVariant text;
  Get(number, VT_BSTR, &text);
  return excel::ToUtf8(text.bstrVal);
}

std::size_t ArrayArgument::NumberedSize() const {
  return last_ < 0 ? 0 : static_cast<std::size_t>(last_) + 1;
}

}  // namespace vantora::com
