// A workbook file that can't be opened or saved.
#pragma once

#include <stdexcept>
#include <string>

namespace vantora::embedded {

// `what()` is one plain sentence or two: what is wrong, where (file, part, place), and what to do.
class FileError : public std::runtime_error {
 public:
  enum class Code {
    kNotFound,      // no such file, or it can't be read
    kNotAPackage,   // not a zip archive
    kDamaged,       // truncated, bad checksum, malformed XML, missing required parts
    kEncrypted,     // a password-protected workbook
    kLegacyFormat,  // .xls, .xlsb: must be saved as .xlsm
    kNotAWorkbook,  // a package, but not a spreadsheet
    kUnsupported,   // a workbook of a kind that can't be handled
    kCannotWrite,   // the target can't be written
    kChangedSince,  // not the file that an earlier run left
  };

  FileError(Code code, const std::string& what) : std::runtime_error(what), code_(code) {}
  Code code() const { return code_; }

 private:
  Code code_;
};

}  // namespace vantora::embedded
