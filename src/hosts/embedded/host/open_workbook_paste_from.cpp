// Pasting cells of another sheet, of the same workbook or of another one.
#include <algorithm>
#include <map>

#include "formula/unknown_sheets.h"
#include "host/column_formats.h"
#include "host/open_workbook.h"
#include "package/feature_transfer.h"

namespace vantora::embedded {
// The cells of one paste on their way from sheet to sheet.
class OpenWorkbook::CellTransfer {
 public:
  CellTransfer(OpenWorkbook& source, int source_sheet, OpenWorkbook& target, int target_sheet,
               unsigned parts)
      : source_(source),
        origin_(source.sheet(source_sheet)),
        target_(target),
        destination_(target.sheet(target_sheet)),
        same_workbook_(&source == &target),
        parts_(parts) {}

  void Run(const Area& from, const Area& to) {
    const Area used = source_.UsedRange(origin_.id);
    const Area replaced = target_.UsedRange(destination_.id);
    const int rows =
        std::min(from.rows(),
                 std::max(used.last_row - from.first_row, replaced.last_row - to.first_row) + 1);
    for (int column = 0; column < from.columns(); ++column) {
      for (int row = 0; row < rows; ++row) {
        Move({from.first_row + row, from.first_column + column},
             {to.first_row + row, to.first_column + column});
      }
    }
  }

  StyleId Style(StyleId style) {
    if (same_workbook_) return style;
    auto known = styles_.find(style);
    if (known == styles_.end()) {
      known = styles_
                  .emplace(style, target_.file().style_editor().Import(
                                      source_.file().style_editor(), style))
                  .first;
    }
    return known->second;
  }

 private:
  void Move(CellAddress from, CellAddress to) {
    if (parts_ & (kPasteFormulas | kPasteValues)) MoveContent(origin_.cells.Get(from), from, to);
    if (!(parts_ & kPasteFormats)) return;
    const StyleId style = Style(origin_.StyleOf(from));
    if (destination_.StyleOf(to) != style) destination_.cells.SetStyle(to, style);
  }

  void MoveContent(const Cell& cell, CellAddress from, CellAddress to) {
    CellStore& cells = destination_.cells;
    if (!cell.has_content()) {
      if (cells.Exists(to)) cells.SetConstant(to, CellValue::Blank());
      return;
    }
    if (!cells.Exists(to)) cells.SetStyle(to, destination_.StyleOf(to));
    if ((parts_ & kPasteFormulas) && cell.formula != 0) {
      cells.SetFormula(to, Relocated(cell.formula, from, to));
      cells.SetValue(to, Value(cell.value));
    } else {
      cells.SetConstant(to, Value(cell.value));
    }
  }

  CellValue Value(const CellValue& value) {
    if (same_workbook_ || value.kind != CellKind::kText) return value;
    return CellValue::Text(target_.model().strings.Intern(source_.model().strings[value.text]));
  }

  // References without a sheet's name mean the sheet that the formula comes to.
  FormulaId Relocated(FormulaId id, CellAddress from, CellAddress to) {
    const Formula& formula = origin_.formulas[id];
    if (auto relocated = RelocateForPaste(formula, from, to)) {
      return destination_.formulas.Intern(std::move(*relocated));
    }
    auto known = formulas_.find(id);
    if (known == formulas_.end()) {
      Formula copy = formula;
      copy.program.reset();
      known = formulas_.emplace(id, destination_.formulas.Intern(std::move(copy))).first;
    }
    return known->second;
  }

  OpenWorkbook& source_;
  SheetModel& origin_;
  OpenWorkbook& target_;
  SheetModel& destination_;
  bool same_workbook_;
  unsigned parts_;
  std::map<StyleId, StyleId> styles_;
  std::map<FormulaId, FormulaId> formulas_;
};

// A formula that names sheets or names of its workbook would become a link to that workbook.
void OpenWorkbook::RefuseLinks(OpenWorkbook& source, int source_sheet, const Area& from) {
  SheetModel& origin = source.sheet(source_sheet);
  for (int column = from.first_column;
       column <= std::min(from.last_column, origin.cells.LastColumn()); ++column) {
    origin.cells.ForEachInColumn(
        column, from.first_row, from.last_row, [&](int row, const Cell& cell) {
          if (cell.formula == 0) return;
          const Formula& formula = origin.formulas[cell.formula];
          const bool is_own = std::all_of(formula.references.begin(), formula.references.end(),
                                          [](const Reference& reference) {
                                            return reference.first_sheet == Reference::kOwnSheet;
                                          });
          if (is_own && formula.names.empty() && formula.tables.empty() &&
              !UnknownSheetIn(formula, source.model())) {
            return;
          }
          Refuse("The formula in " + source.Describe(source_sheet, {row, column, row, column}) +
                 " of \"" + source.file().name() +
                 "\" refers to sheets, names or tables of its workbook. Pasted into another "
                 "workbook it would "
                 "become a link, which the embedded host does not make. Paste values instead.");
        });
  }
}

void OpenWorkbook::PasteFrom(OpenWorkbook& source, int source_sheet, int sheet_id, const Area& from,
                             const Area& to, unsigned parts) {
  RefuseOnProtectedSheet(sheet_id, to);
  RefusePartOfArray(sheet_id, to);
  RefusePartOfMerge(sheet_id, to);
  SheetModel& origin = source.sheet(source_sheet);
  if (parts & kPasteFormulas) {
    for (const ArrayFormula& array : origin.arrays) {
      if (!from.Intersects(array.area)) continue;
      Refuse("The embedded host does not paste array formulas on another sheet: " +
             source.Describe(source_sheet, array.area) + ".");
    }
    if (&source != this) RefuseLinks(source, source_sheet, from);
  }
  if (parts & kPasteValues) {
    for (int column = from.first_column; column <= from.last_column; ++column) {
      origin.cells.ForEachInColumn(column, from.first_row, from.last_row,
                                   [&](int row, const Cell&) {
                                     source.Read(source_sheet, {row, column});
                                   });
    }
  }
  source.file_->FollowInsertions(source_sheet);
  file_->FollowInsertions(sheet_id);
  if (parts & (kPasteFormulas | kPasteValues)) ForgetArrays(sheet_id, to);
  CellTransfer cells(source, source_sheet, *this, sheet_id, parts);
  cells.Run(from, to);
  if ((parts & kPasteFormats) && from.IsWholeColumns()) {
    for (int index = 0; index < from.columns(); ++index) {
      const ColumnFormat* format = FormatOfColumn(origin.column_formats, from.first_column + index);
      const int column = to.first_column + index;
      SetColumnStyle(sheet(sheet_id), column, column, cells.Style(format ? format->style : 0));
      SetColumnsWidth(sheet_id, column, column,
                      source.ColumnWidth(source_sheet, from.first_column + index));
    }
  }
  PasteFeaturesFrom(source, source_sheet, sheet_id, from, to, parts);
  if (parts & kPasteComments) {
    SheetComments origin_comments = source.Comments(source_sheet);
    Comments(sheet_id).PasteFrom(origin_comments, from, to);
  }
  if (parts & (kPasteFormulas | kPasteValues)) ContentsChanged(sheet_id, to);
}

void OpenWorkbook::PasteFeaturesFrom(OpenWorkbook& source, int source_sheet, int sheet_id,
                                     const Area& from, const Area& to, unsigned parts) {
  unsigned features = 0;
  if (parts & kPasteFormats) features |= kConditionalFormats | kMergedCells;
  if (parts & kPasteValidations) features |= kValidations;
  if (parts & kPasteHyperlinks) features |= kHyperlinks;
  if (features == 0) return;
  const bool same_workbook = &source == this;
  TransferContext context{
      .differential_format =
          [&](int id) {
            return same_workbook
                       ? id
                       : file_->style_editor().ImportDifferential(source.file().style_editor(), id);
          },
      .fits =
          [&](const std::string& formula) {
            return same_workbook ||
                   !UnknownSheetIn(ParseFormula(formula, {1, 1}, model()), model());
          },
      .relationship =
          [&](const std::string& id) {
            return file_->package().CopyExternalRelationship(source.file().package(),
                                                             source.file().part_of(source_sheet),
                                                             id, file_->part_of(sheet_id));
          },
  };
  const int left_out = TransferFeatures(source.file().markup(source_sheet), from,
                                        file_->markup(sheet_id), to, features, context);
  if (left_out == 0) return;
  notes_.push_back(std::to_string(left_out) + " conditional formats or validations left out at " +
                   Describe(sheet_id, to) +
                   ": they refer to sheets that the workbook does not have");
}

}  // namespace vantora::embedded
