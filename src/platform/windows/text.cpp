#include "platform/windows/text.h"

#include <windows.h>

namespace vantora::windows {
namespace {

std::string FromUtf16(UINT code_page, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  if (length == 0) return "";
  const int size =
      WideCharToMultiByte(code_page, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string converted(size, '\0');
  WideCharToMultiByte(code_page, 0, text.data(), length, converted.data(), size, nullptr, nullptr);
  return converted;
}

}  // namespace

std::wstring ToUtf16(std::string_view text) {
  const int length = static_cast<int>(text.size());
  if (length == 0) return L"";
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  std::wstring converted(size, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, converted.data(), size);
  return converted;
}

std::string ToUtf8(std::wstring_view text) { return FromUtf16(CP_UTF8, text); }

std::string ToAnsi(std::string_view text) { return FromUtf16(CP_ACP, ToUtf16(text)); }

}  // namespace vantora::windows
