// Makes what stands around the cells follow inserted columns. Each function takes a part's text (or
// a sheet's markup) and gives what it reads after the insertions, changing only the attributes and
// texts concerned; nullopt or false when nothing changes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// `sheet` is the id of the sheet that the markup or part belongs to; insertions on other sheets
// matter to the formulas in it. Insertions are applied one after the other. Throws XmlError for a
// part that is not well-formed.
//
// Sheet markup: merged cells, conditional formats and validations (areas and formulas), hyperlinks
// (where they stand, not where they lead), autofilter, sort state, protected ranges, scenarios,
// page breaks, ignored errors, data consolidation, cell watches, sparklines and the other extension
// lists, anchors of form controls and embedded objects, the same in custom views. Selections, panes
// and scroll positions stay at their addresses, as in Excel. (<cols> and <dimension> are the
// writer's.)
bool FollowInSheetMarkup(SheetMarkup& markup, int sheet,
                         std::span<const ColumnInsertion> insertions, const SheetDirectory& sheets);
// xl/drawings/drawingN.xml: anchors of charts, pictures, shapes and controls (as their editAs
// says), and the cells that shapes' texts are linked to.
std::optional<std::string> FollowInDrawing(std::string_view text, int sheet,
                                           std::span<const ColumnInsertion> insertions,
                                           const SheetDirectory& sheets);
// vmlDrawingN.vml: note rows and columns, anchors, linked cells, list fill ranges, macros stay.
std::optional<std::string> FollowInVmlDrawing(std::string_view text, int sheet,
                                              std::span<const ColumnInsertion> insertions,
                                              const SheetDirectory& sheets);
// commentsN.xml, threadedCommentN.xml: the cells.
std::optional<std::string> FollowInComments(std::string_view text, int sheet,
                                            std::span<const ColumnInsertion> insertions);
// chartN.xml: every formula of series, categories, titles, labels. Caches stay: an insertion
// changes no value.
std::optional<std::string> FollowInChart(std::string_view text,
                                         std::span<const ColumnInsertion> insertions,
                                         const SheetDirectory& sheets);
// The text that the header cell of a new table column must hold, for the table and the cells to
// agree.
struct TableHeader {
  CellAddress cell;
  std::string text;
};

// tableN.xml: area, autofilter, sort state, calculated columns; a column inserted within becomes a
// table column ("Column1" or the next free name). Adds the headers of such columns to `headers`,
// with their cells after all insertions.
std::optional<std::string> FollowInTable(std::string_view text, int sheet,
                                         std::span<const ColumnInsertion> insertions,
                                         const SheetDirectory& sheets,
                                         std::vector<TableHeader>* headers = nullptr);
// ctrlPropN.xml: linked cell, list fill range, group text.
std::optional<std::string> FollowInControlProperties(std::string_view text, int sheet,
                                                     std::span<const ColumnInsertion> insertions,
                                                     const SheetDirectory& sheets);
// Pivot cache definitions (source area) and pivot tables (location).
std::optional<std::string> FollowInPivot(std::string_view text, int sheet,
                                         std::span<const ColumnInsertion> insertions,
                                         const SheetDirectory& sheets);

}  // namespace vantora::embedded
