#include "ui/windows/window_text.h"

namespace vantora::ui {

std::wstring ToEditText(std::string_view text) {
  const std::wstring plain = ToUtf16(text);
  std::wstring lines;
  lines.reserve(plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    if (plain[i] == L'\n' && (i == 0 || plain[i - 1] != L'\r')) lines += L'\r';
    lines += plain[i];
  }
  return lines;
}

std::string FromEditText(std::wstring_view text) {
  std::wstring lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool ends_line = text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n';
    if (!ends_line) lines += text[i];
  }
  return ToUtf8(lines);
}

std::wstring TextOf(HWND window) {
  std::wstring text(GetWindowTextLengthW(window) + 1, L'\0');
  text.resize(GetWindowTextW(window, text.data(), static_cast<int>(text.size())));
  return text;
}

std::string ErrorText(DWORD error) {
  wchar_t buffer[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                error, 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
  while (length > 0 && buffer[length - 1] <= L' ') --length;
  return (length > 0 ? ToUtf8({buffer, length}) + " (" : "(") + "error " + std::to_string(error) +
         ")";
}

}  // namespace vantora::ui
