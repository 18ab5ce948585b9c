#include "hosts/excel/text.h"

#include <new>

namespace vantora::excel {

std::string ToUtf8(std::wstring_view text) {
  std::string utf8;
  if (text.empty()) return utf8;
  int length = static_cast<int>(text.size());
  // A UTF-16 unit takes at most three bytes; a pair of them takes four.
  utf8.resize(text.size() * 3);
  int written = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(),
                                    static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(written);
  return utf8;
}

BSTR MakeBstr(std::string_view utf8) {
  int length = static_cast<int>(utf8.size());
  int units = length == 0 ? 0 : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
  BSTR text = SysAllocStringLen(nullptr, units);
  if (!text) throw std::bad_alloc();
  if (units != 0) MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text, units);
  return text;
}

std::string ToUtf8(BSTR text) {
  return ToUtf8(std::wstring_view(text ? text : L"", SysStringLen(text)));
}

}  // namespace vantora::excel
