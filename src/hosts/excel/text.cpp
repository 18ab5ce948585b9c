#include "hosts/excel/text.h"

#include <new>

namespace vantora::excel {

BSTR MakeBstr(std::string_view utf8) {
  const std::wstring wide = windows::ToUtf16(utf8);
  BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (!text) throw std::bad_alloc();
  return text;
}

std::string ToUtf8(BSTR text) {
  return windows::ToUtf8(std::wstring_view(text ? text : L"", SysStringLen(text)));
}

}  // namespace vantora::excel
