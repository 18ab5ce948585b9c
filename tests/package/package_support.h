// Small packages built from the texts of their parts.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "package/workbook_file.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {

using Parts = std::map<std::string, std::string>;

// A folder of its own for each test, removed with the fixture.
class PackageTest : public ::testing::Test {
 protected:
  std::filesystem::path Path(const std::string& name) const { return folder_ / name; }
  // Writes a zip archive of the parts.
  std::filesystem::path WriteZipFile(const std::string& name, const Parts& parts) const;
  // Opens a workbook of these parts.
  std::unique_ptr<WorkbookFile> OpenParts(const Parts& parts) const;
  // The part after a save.
  std::string Saved(WorkbookFile& file, const std::string& part) const;

 private:
  testing::TemporaryFolder folder_;
};

// Parts of a workbook with one sheet, "Data", of this content of <worksheet>.
Parts OneSheet(std::string_view sheet_content);
// The same with an element such as <definedNames> behind <sheets>.
Parts OneSheet(std::string_view sheet_content, std::string_view workbook_content);
// Adds a shared strings part with these items.
void AddSharedStrings(Parts& parts, std::string_view items);
// Adds a part with a relationship of the workbook's.
void AddWorkbookPart(Parts& parts, const std::string& kind, const std::string& name,
                     const std::string& text);
inline constexpr char kSheetPart[] = "xl/worksheets/sheet1.xml";
inline constexpr char kWorkbookPart[] = "xl/workbook.xml";

// What stands between <sheetData> and its end tag.
std::string SheetData(std::string_view sheet);
// The cells (by place) and the other elements (by name, numbered) of a sheet, as they stand.
std::map<std::string, std::string> SheetElements(std::string_view sheet);
// Keys whose values differ or that only one side has.
std::vector<std::string> Differences(const std::map<std::string, std::string>& a,
                                     const std::map<std::string, std::string>& b);

// The realistic workbooks beside the checkout; empty when there are none.
std::vector<std::filesystem::path> ModelWorkbooks();

}  // namespace vantora::embedded
