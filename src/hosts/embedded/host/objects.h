// Making the host's objects over an open workbook, and what all of them share.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/host.h"
#include "host/application.h"

namespace vantora::embedded {

// What every object of a workbook holds: the application it belongs to, and the workbook. Workbooks
// stay open as long as their application.
struct BookHandle {
  std::shared_ptr<ApplicationState> application;
  OpenWorkbook* workbook = nullptr;

  OpenWorkbook& operator*() const { return *workbook; }
  OpenWorkbook* operator->() const { return workbook; }
  bool operator==(const BookHandle&) const = default;
};

host::WorkbookPtr MakeWorkbook(BookHandle book);
host::SheetsPtr MakeSheets(BookHandle book);
// Of any kind.
host::SheetPtr MakeSheet(BookHandle book, int sheet);
host::WorksheetPtr MakeWorksheet(BookHandle book, int sheet);
host::RangePtr MakeRange(BookHandle book, int sheet, const Area& area);
// A range of several areas; there is at least one.
host::RangePtr MakeRange(BookHandle book, int sheet, std::vector<Area> areas);
// The areas of both ranges, of this host and on one sheet.
host::RangePtr UnionOf(const host::RangePtr& first, const host::RangePtr& second);
host::NamesPtr MakeNames(BookHandle book);
host::NamePtr MakeName(BookHandle book, NameKey key);
host::ShapePtr MakeShape(BookHandle book, int sheet, std::string_view name);
std::vector<host::ChartObjectPtr> MakeChartObjects(BookHandle book, int sheet);
// The open windows of the workbook, the active one first.
std::vector<host::WindowPtr> MakeWindows(BookHandle book);
host::CommandBarPtr MakeMenuBar(std::shared_ptr<ApplicationState> application);

// Throws HostError 1004 with the text.
[[noreturn]] void Refuse(const std::string& text);
// Throws HostError 1004 for a member that the embedded host does not have.
[[noreturn]] void RefuseMember(const std::string& member);

// The area of one cell; refuses one outside the sheet.
Area OneCell(std::int64_t row, std::int64_t column);

// Pastes what was copied at `target` of `sheet`; a single target cell stands for an area of the
// copied size, and an area of a multiple of that size is filled with copies. `method` names the
// call in what is refused.
void PasteCopied(const BookHandle& book, int sheet, const Area& target, unsigned parts,
                 const std::string& method);

}  // namespace vantora::embedded
