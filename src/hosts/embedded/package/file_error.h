// A workbook file that can't be opened or saved.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace vantora::embedded {

// `what()` is one plain sentence or two: what is wrong, where (file, part, place), and what to do.
class FileError : public std::runtime_error {
 public:
  // The numbers stay: other programs tell errors by them.
  enum class Code : int {
    kNotFound = 1,       // no such file, or it can't be read
    kNotAPackage = 2,    // not a zip archive
    kDamaged = 3,        // an archive that is truncated or has bad checksums
    kEncrypted = 4,      // a password-protected workbook
    kLegacyFormat = 5,   // .xls, .xlsb: must be saved as .xlsm
    kNotAWorkbook = 6,   // a package, but not a spreadsheet
    kUnsupported = 7,    // a workbook of a kind that can't be handled
    kCannotWrite = 8,    // the target can't be written
    kChangedSince = 9,   // not the file that an earlier run left
    kTooLarge = 10,      // beyond one of the limits of file_limits.h
    kBadPartName = 11,   // duplicate, absolute or climbing names of parts
    kMalformedXml = 12,  // a part that is no well-formed XML, or in an encoding that is not known
    kMissingPart = 13,   // a part that the workbook needs is not there
    kBadContent = 14,    // well-formed, but contradictory: cells off the sheet, unknown texts
  };

  // `part`: name of the part concerned, "" for the whole file. `place`: where in it ("byte 1234"),
  // "" where there is no such place.
  FileError(Code code, const std::string& what, std::string part = {}, std::string place = {})
      : std::runtime_error(what), code_(code), part_(std::move(part)), place_(std::move(place)) {}
  Code code() const { return code_; }
  const std::string& part() const { return part_; }
  const std::string& place() const { return place_; }

 private:
  Code code_;
  std::string part_;
  std::string place_;
};

}  // namespace vantora::embedded
