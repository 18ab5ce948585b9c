#include "component/com/windows_services.h"

#include <stdexcept>

#include "component/com/automation.h"
// After the automation headers.
#include <shlobj.h>

#include "hosts/excel/text.h"
#include "ui/windows/window_text.h"

namespace vantora::com {
namespace {

std::string ToUtf8AndFree(BSTR text) {
  std::string utf8 = excel::ToUtf8(text);
  SysFreeString(text);
  return utf8;
}

}  // namespace

std::string WindowsClock::NowAsGeneralDate() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  DATE date = 0;
  BSTR text = nullptr;
  if (!SystemTimeToVariantTime(&now, &date) ||
      FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &text))) {
    throw std::runtime_error("the current date can't be written as a text");
  }
  return ToUtf8AndFree(text);
}

std::string WindowsFileVersions::ProgramFilesFolder() {
  PIDLIST_ABSOLUTE folder = nullptr;
  if (FAILED(SHGetSpecialFolderLocation(nullptr, CSIDL_PROGRAM_FILES, &folder))) return "";
  wchar_t path[MAX_PATH] = L"";
  BOOL has_path = SHGetPathFromIDListW(folder, path);
  CoTaskMemFree(folder);
  return has_path ? excel::ToUtf8(std::wstring_view(path)) : "";
}

std::size_t WindowsFileVersions::Size(std::string_view path) {
  DWORD unused = 0;
  return GetFileVersionInfoSizeA(ui::ToAnsi(path).c_str(), &unused);
}

std::optional<std::vector<std::byte>> WindowsFileVersions::Read(std::string_view path,
                                                                std::size_t size) {
  std::vector<std::byte> information(size);
  if (!GetFileVersionInfoA(ui::ToAnsi(path).c_str(), 0, static_cast<DWORD>(size),
                           information.data())) {
    return std::nullopt;
  }
  return information;
}

std::optional<std::vector<std::byte>> WindowsFileVersions::Query(
    const std::vector<std::byte>& information, std::string_view entry) {
  void* found = nullptr;
  UINT size = 0;
  if (!VerQueryValueA(information.data(), ui::ToAnsi(entry).c_str(), &found, &size)) {
    return std::nullopt;
  }
  const std::byte* bytes = static_cast<const std::byte*>(found);
  return std::vector<std::byte>(bytes, bytes + size);
}

}  // namespace vantora::com
