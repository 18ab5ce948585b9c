// Range and what belongs to it over an open workbook.
#include <algorithm>

#include "host/format_objects.h"
#include "host/objects.h"
#include "host/row_edits.h"

namespace vantora::embedded {
namespace {

using host::XlInsertShiftDirection;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

CellAddress TopLeft(const Area& area) { return {area.first_row, area.first_column}; }

class EmbeddedComment : public host::Comment {
 public:
  EmbeddedComment(BookHandle book, int sheet, CellAddress cell)
      : book_(std::move(book)), sheet_(sheet), cell_(cell) {}

  void SetVisible(bool visible) override { book_->SetCommentVisible(sheet_, cell_, visible); }
  void Text(std::string_view text) override { book_->SetCommentText(sheet_, cell_, text); }

 private:
  BookHandle book_;
  int sheet_;
  CellAddress cell_;
};

class EmbeddedRange : public host::Range {
 public:
  EmbeddedRange(BookHandle book, int sheet, std::vector<Area> areas)
      : book_(std::move(book)), sheet_(sheet), area_(areas.front()), areas_(std::move(areas)) {}

  // The range of both ranges' cells; areas that both have count once.
  static host::RangePtr Union(const EmbeddedRange& first, const EmbeddedRange& second);

  vantora::Value Value() override { return book_->Read(sheet_, TopLeft(area_)); }
  void SetValue(const vantora::Value& value) override;

  void SetValues(std::span<const vantora::Value> rows) override;

  std::string Formula() override;

  void SetFormula(std::string_view formula) override;

  bool HasFormula() override;

  host::WorksheetPtr Worksheet() override { return MakeWorksheet(book_, sheet_); }

  std::vector<host::RangePtr> Areas() override;

  int Row() override { return area_.first_row; }
  int Column() override { return area_.first_column; }
  int RowsCount() override { return area_.rows(); }
  int ColumnsCount() override { return area_.columns(); }
  host::RangePtr Cells(int row, int column) override {
    return MakeRange(book_, sheet_,
                     OneCell(std::int64_t{area_.first_row} + row - 1,
                             std::int64_t{area_.first_column} + column - 1));
  }

  host::InteriorPtr Interior() override {
    return MakeInterior(book_, sheet_, areas_);
  }

  host::FontPtr Font() override;

  host::BordersPtr Borders(host::XlBordersIndex index) override;

  void BorderAround(host::XlBorderWeight weight, int color_index) override;

  void SetHorizontalAlignment(host::XlHAlign alignment) override;

  void SetWrapText(bool wrap) override;

  bool RowsHidden() override;

  void SetRowsHidden(bool hidden) override;

  bool ColumnsHidden() override;

  void SetColumnsHidden(bool hidden) override;

  double Left() override;

  double Width() override;

  double RowHeight() override;

  void SetRowHeight(double points) override;

  double ColumnWidth() override;

  void SetColumnWidth(double characters) override;

  int OutlineLevel() override;

  void SetOutlineLevel(int level) override;

  host::NamePtr Name() override;

  void Select() override;

  void Activate() override;

  void Clear() override;

  void ClearContents() override;

  void ClearFormats() override;

  void Copy() override;
  void Insert(XlInsertShiftDirection shift) override;
  void PasteSpecial(XlPasteType paste, XlPasteSpecialOperation operation, bool skip_blanks,
                    bool transpose) override;
  host::CommentPtr AddComment() override;

  void ListNames() override;

  void Sort(const host::RangePtr& key1, const host::RangePtr& key2) override;

 private:
  // An edit ends a copy in progress.
  void EndCopy() { book_.application->copied.reset(); }

  BookHandle book_;
  int sheet_;
  // The first one.
  Area area_;
  std::vector<Area> areas_;
};

host::RangePtr EmbeddedRange::Union(const EmbeddedRange& first, const EmbeddedRange& second) {
  if (!(first.book_ == second.book_) || first.sheet_ != second.sheet_) {
    Refuse("Method 'Union' of object '_Application' failed: the ranges are on different sheets.");
  }
  std::vector<Area> areas = first.areas_;
  for (const Area& area : second.areas_) {
    if (std::find(areas.begin(), areas.end(), area) == areas.end()) areas.push_back(area);
  }
  return MakeRange(first.book_, first.sheet_, std::move(areas));
}

unsigned PartsOf(XlPasteType paste) {
  switch (paste) {
    case XlPasteType::kAll:
      return kPasteAll;
    case XlPasteType::kValues:
      return kPasteValues;
    case XlPasteType::kFormats:
      return kPasteFormats;
    case XlPasteType::kFormulas:
      return kPasteFormulas;
    case XlPasteType::kComments:
      return kPasteComments;
    case XlPasteType::kValidation:
      return kPasteValidations;
  }
  Refuse("PasteSpecial method of Range class failed: unknown paste type.");
}

void EmbeddedRange::SetValue(const vantora::Value& value) {
  EndCopy();
  book_->Put(sheet_, area_, value);
}

void EmbeddedRange::SetValues(std::span<const vantora::Value> rows) {
  EndCopy();
  book_->PutColumn(sheet_, TopLeft(area_),
                   rows.first(std::min(rows.size(), static_cast<std::size_t>(area_.rows()))));
}

std::string EmbeddedRange::Formula() { return book_->FormulaOf(sheet_, TopLeft(area_)); }

void EmbeddedRange::SetFormula(std::string_view formula) {
  EndCopy();
  book_->PutFormula(sheet_, area_, formula);
}

bool EmbeddedRange::HasFormula() { return book_->HasFormula(sheet_, TopLeft(area_)); }

std::vector<host::RangePtr> EmbeddedRange::Areas() {
  std::vector<host::RangePtr> areas;
  for (const Area& area : areas_) areas.push_back(MakeRange(book_, sheet_, area));
  return areas;
}

host::FontPtr EmbeddedRange::Font() { return MakeFont(book_, sheet_, areas_); }

host::BordersPtr EmbeddedRange::Borders(host::XlBordersIndex index) {
  if (index != host::XlBordersIndex::kInsideVertical) RefuseMember("such lines of Range.Borders");
  return MakeInsideVerticals(book_, sheet_, areas_);
}

void EmbeddedRange::BorderAround(host::XlBorderWeight weight, int color_index) {
  EndCopy();
  book_->FormatOutline(
      sheet_, areas_,
      {.weight = LineWeightOf(weight),
       .color_index = CheckedColor(color_index, true, "lines around the range")});
}

void EmbeddedRange::SetHorizontalAlignment(host::XlHAlign alignment) {
  EndCopy();
  FormatChange change;
  change.horizontal_alignment = alignment == host::XlHAlign::kLeft ? HorizontalAlignment::kLeft
                                                                   : HorizontalAlignment::kRight;
  book_->Format(sheet_, areas_, change);
}

void EmbeddedRange::SetWrapText(bool wrap) {
  EndCopy();
  FormatChange change;
  change.wrap_text = wrap;
  book_->Format(sheet_, areas_, change);
}

bool EmbeddedRange::RowsHidden() { return embedded::RowsHidden(*book_, sheet_, area_); }

void EmbeddedRange::SetRowsHidden(bool hidden) {
  EndCopy();
  embedded::SetRowsHidden(*book_, sheet_, area_, hidden);
}

bool EmbeddedRange::ColumnsHidden() { RefuseMember("Range.Columns.Hidden"); }

void EmbeddedRange::SetColumnsHidden(bool) { RefuseMember("Range.Columns.Hidden (put)"); }

double EmbeddedRange::Left() { RefuseMember("Range.Left"); }

double EmbeddedRange::Width() { RefuseMember("Range.Width"); }

double EmbeddedRange::RowHeight() { return embedded::RowHeight(*book_, sheet_, area_.first_row); }

void EmbeddedRange::SetRowHeight(double points) {
  EndCopy();
  embedded::SetRowHeight(*book_, sheet_, area_, points);
}

double EmbeddedRange::ColumnWidth() { RefuseMember("Range.ColumnWidth"); }

void EmbeddedRange::SetColumnWidth(double) { RefuseMember("Range.ColumnWidth (put)"); }

int EmbeddedRange::OutlineLevel() { return RowOutlineLevel(*book_, sheet_, area_.first_row); }

void EmbeddedRange::SetOutlineLevel(int level) {
  EndCopy();
  SetRowOutlineLevel(*book_, sheet_, area_, level);
}

host::NamePtr EmbeddedRange::Name() {
  if (areas_.size() > 1) return nullptr;
  std::optional<NameKey> name = book_->names().NameOf({sheet_, area_});
  return name ? MakeName(book_, std::move(*name)) : nullptr;
}

void EmbeddedRange::Select() {
  if (book_->active_sheet() != sheet_) {
    Refuse("Select method of Range class failed: the sheet \"" + book_->sheet(sheet_).name +
           "\" is not the active sheet.");
  }
  book_->SelectAreas(sheet_, areas_);
}

void EmbeddedRange::Activate() { RefuseMember("Range.Activate"); }

void EmbeddedRange::Clear() {
  EndCopy();
  for (const Area& area : areas_) book_->Clear(sheet_, area);
}

void EmbeddedRange::ClearContents() {
  EndCopy();
  book_->ClearContents(sheet_, area_);
}

void EmbeddedRange::ClearFormats() {
  EndCopy();
  for (const Area& area : areas_) book_->ClearFormats(sheet_, area);
}

void EmbeddedRange::Copy() {
  if (areas_.size() > 1) {
    Refuse("Copy method of Range class failed: the embedded host copies one area at a time.");
  }
  book_.application->copied = ApplicationState::CopySource{book_.workbook, sheet_, area_};
}

void EmbeddedRange::Insert(XlInsertShiftDirection shift) {
  if (book_.application->copied) {
    Refuse(
        "Insert method of Range class failed: a copy is in progress, and the embedded host "
        "does not insert copied cells.");
  }
  if (!area_.IsWholeColumns() || shift != XlInsertShiftDirection::kToRight) {
    Refuse("Insert method of Range class failed: the embedded host inserts whole columns only.");
  }
  book_->InsertColumns(sheet_, area_.first_column, area_.columns());
}

void EmbeddedRange::PasteSpecial(XlPasteType paste, XlPasteSpecialOperation, bool skip_blanks,
                                 bool transpose) {
  static constexpr const char* kMethod = "PasteSpecial method of Range class";
  if (skip_blanks || transpose) {
    Refuse(std::string(kMethod) +
           " failed: the embedded host neither skips blanks nor transposes.");
  }
  for (const Area& area : areas_) PasteCopied(book_, sheet_, area, PartsOf(paste), kMethod);
}

host::CommentPtr EmbeddedRange::AddComment() {
  EndCopy();
  book_->AddComment(sheet_, TopLeft(area_));
  return std::make_shared<EmbeddedComment>(book_, sheet_, TopLeft(area_));
}

void EmbeddedRange::ListNames() {
  EndCopy();
  book_->ListNames(sheet_, TopLeft(area_));
}

void EmbeddedRange::Sort(const host::RangePtr& key1, const host::RangePtr& key2) {
  EndCopy();
  const auto column_of = [&](const host::RangePtr& key) {
    const auto* cell = dynamic_cast<const EmbeddedRange*>(key.get());
    const bool within = cell && cell->book_ == book_ && cell->sheet_ == sheet_ &&
                        cell->area_.first_column >= area_.first_column &&
                        cell->area_.first_column <= area_.last_column;
    if (!within) {
      Refuse(
          "The sort reference is not valid. Make sure that it's within the data you want to sort.");
    }
    return cell->area_.first_column;
  };
  if (areas_.size() > 1) {
    Refuse("Sort method of Range class failed: several areas can't be sorted at once.");
  }
  book_->Sort(sheet_, area_, column_of(key1), column_of(key2));
}

}  // namespace

host::RangePtr MakeRange(BookHandle book, int sheet, const Area& area) {
  return MakeRange(std::move(book), sheet, std::vector<Area>{area});
}

host::RangePtr MakeRange(BookHandle book, int sheet, std::vector<Area> areas) {
  return std::make_shared<EmbeddedRange>(std::move(book), sheet, std::move(areas));
}

host::RangePtr UnionOf(const host::RangePtr& first, const host::RangePtr& second) {
  const auto* one = dynamic_cast<const EmbeddedRange*>(first.get());
  const auto* other = dynamic_cast<const EmbeddedRange*>(second.get());
  if (!one || !other) Refuse("Method 'Union' of object '_Application' failed: a range is missing.");
  return EmbeddedRange::Union(*one, *other);
}

}  // namespace vantora::embedded
