// The saves that operations make while they run. A workbook is written at once, as it is at that
// moment, but beside its target: the target changes only when the program that runs the operation
// says so.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/host.h"
#include "host/open_workbook.h"

namespace vantora::embedded {

struct SaveRequest {
  // Name of the workbook ("Model.xlsm").
  std::string workbook;
  // What SaveAs was given; nullopt for Save.
  std::optional<std::string> filename;
  // The ending of the file's format: ".xls", ".xlsm", or ".xlsx".
  std::string ending;
};

// Says where a save goes; nullopt writes nothing. Throws HostError to refuse it.
using SaveDirector = std::function<std::optional<std::filesystem::path>(const SaveRequest&)>;

class PendingSaves {
 public:
  void SetDirector(SaveDirector director) { director_ = std::move(director); }

  // Throws HostError 1004 with what is wrong; failure() says it as well.
  void Save(OpenWorkbook& workbook);
  // kExcel8, and kWorkbookNormal under a name that ends in ".xls", are written by way of an
  // installed LibreOffice. The workbook has the name from then on.
  void SaveAs(OpenWorkbook& workbook, const std::string& filename, host::XlFileFormat format);

  // Whether a save succeeded; one that the director sent nowhere counts.
  bool any() const { return any_; }
  // Why the last save failed; "" when it did not.
  const std::string& failure() const { return failure_; }
  // Puts the files in their places, together with others, and gives those of the saves. Throws
  // FileError, and all is as it was then.
  std::vector<std::filesystem::path> Commit(
      std::vector<std::unique_ptr<ReplacementFile>> others = {});

 private:
  void Write(OpenWorkbook& workbook, const SaveRequest& request);

  SaveDirector director_;
  std::vector<std::unique_ptr<ReplacementFile>> written_;
  bool any_ = false;
  std::string failure_;
};

}  // namespace vantora::embedded
