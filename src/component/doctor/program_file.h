// What a program file (a DLL or an executable) tells about itself.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace vantora::doctor {

enum class WordSize { k32, k64, kUnknown };

std::wstring TextOf(WordSize word_size);  // "32-bit"

struct FileVersion {
  std::array<std::uint16_t, 4> parts = {};  // all 0 when the file has none

  auto operator<=>(const FileVersion&) const = default;
  std::wstring Text() const;  // "1.0.0.0"
};

struct ProgramFile {
  bool exists = false;
  WordSize word_size = WordSize::kUnknown;
  FileVersion version;
};

// A file that can't be read as a program exists with an unknown word size.
ProgramFile ReadProgramFile(const std::wstring& path);

}  // namespace vantora::doctor
