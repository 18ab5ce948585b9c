#include "component/doctor/program_file.h"

#include <windows.h>

#include <winver.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace vantora::doctor {
namespace {

// The type of processor in the header that all programs have.
WordSize ReadWordSize(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  IMAGE_DOS_HEADER start = {};
  file.read(reinterpret_cast<char*>(&start), sizeof start);
  if (!file || start.e_magic != IMAGE_DOS_SIGNATURE) return WordSize::kUnknown;
  struct {
    DWORD signature;
    IMAGE_FILE_HEADER header;
  } image = {};
  file.seekg(start.e_lfanew);
  file.read(reinterpret_cast<char*>(&image), sizeof image);
  if (!file || image.signature != IMAGE_NT_SIGNATURE) return WordSize::kUnknown;
  switch (image.header.Machine) {
    case IMAGE_FILE_MACHINE_I386:
      return WordSize::k32;
    case IMAGE_FILE_MACHINE_AMD64:
      return WordSize::k64;
    default:
      return WordSize::kUnknown;
  }
}

FileVersion ReadVersion(const std::wstring& path) {
  DWORD unused = 0;
  DWORD size = GetFileVersionInfoSizeW(path.c_str(), &unused);
  std::vector<std::byte> information(size);
  void* found = nullptr;
  UINT found_size = 0;
  if (size == 0 || !GetFileVersionInfoW(path.c_str(), 0, size, information.data()) ||
      !VerQueryValueW(information.data(), L"\\", &found, &found_size) ||
      found_size < sizeof(VS_FIXEDFILEINFO)) {
    return {};
  }
  const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(found);
  return {.parts = {HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
                    HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS)}};
}

}  // namespace

std::wstring TextOf(WordSize word_size) {
  switch (word_size) {
    case WordSize::k32:
      return L"32-bit";
    case WordSize::k64:
      return L"64-bit";
    default:
      return L"unknown word size";
  }
}

std::wstring FileVersion::Text() const {
  std::wstring text;
  for (std::uint16_t part : parts) {
    if (!text.empty()) text += L'.';
    text += std::to_wstring(part);
  }
  return text;
}

ProgramFile ReadProgramFile(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY)) return {};
  return {.exists = true, .word_size = ReadWordSize(path), .version = ReadVersion(path)};
}

}  // namespace vantora::doctor
