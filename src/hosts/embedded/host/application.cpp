#include "host/application.h"

#include <algorithm>
#include <cstdint>

namespace vantora::embedded {

namespace {

using StatePtr = std::shared_ptr<ApplicationState>;
using host::XlCutCopyMode;
using host::XlInsertShiftDirection;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

[[noreturn]] void Refuse(const std::string& text) {
  throw HostError(HostError::kApplicationDefined, text);
}

CellAddress TopLeft(const Area& area) { return {area.first_row, area.first_column}; }

Area OneCell(std::int64_t row, std::int64_t column) {
  if (row < 1 || row > kMaxRow || column < 1 || column > kMaxColumn) {
    Refuse("Application-defined or object-defined error: there is no cell in row " +
           std::to_string(row) + ", column " + std::to_string(column) + ".");
  }
  int valid_row = static_cast<int>(row);
  int valid_column = static_cast<int>(column);
  return {valid_row, valid_column, valid_row, valid_column};
}

// Pastes what was copied at `target` of `sheet`; a single target cell stands for an area of the
// copied size. `method` names the call in what is refused.
void PasteCopied(ApplicationState& state, int sheet, const Area& target, unsigned parts,
                 const std::string& method) {
  if (!state.copied) Refuse(method + " failed: nothing has been copied.");
  const Area& from = state.copied->area;
  if (state.copied->sheet != sheet) {
    Refuse(method + " failed: a copy can be pasted on its own sheet only.");
  }
  Area to = target;
  if (target.rows() == 1 && target.columns() == 1) {
    to.last_row = to.first_row + from.rows() - 1;
    to.last_column = to.first_column + from.columns() - 1;
  }
  if (to.rows() != from.rows() || to.columns() != from.columns() || to.last_row > kMaxRow ||
      to.last_column > kMaxColumn) {
    Refuse("You can't paste this here because the Copy area and paste area aren't the same size.");
  }
  state.workbook->Paste(sheet, from, to, parts);
}

class EmbeddedInterior : public host::Interior {
 public:
  EmbeddedInterior(StatePtr state, int sheet, CellAddress cell)
      : state_(std::move(state)), sheet_(sheet), cell_(cell) {}

  int ColorIndex() override { return state_->workbook->FillColorIndex(sheet_, cell_); }

 private:
  StatePtr state_;
  int sheet_;
  CellAddress cell_;
};

class EmbeddedComment : public host::Comment {
 public:
  EmbeddedComment(StatePtr state, int sheet, CellAddress cell)
      : state_(std::move(state)), sheet_(sheet), cell_(cell) {}

  void SetVisible(bool visible) override {
    state_->workbook->SetCommentVisible(sheet_, cell_, visible);
  }
  void Text(std::string_view text) override {
    state_->workbook->SetCommentText(sheet_, cell_, text);
  }

 private:
  StatePtr state_;
  int sheet_;
  CellAddress cell_;
};

class EmbeddedRange : public host::Range {
 public:
  EmbeddedRange(StatePtr state, int sheet, const Area& area)
      : state_(std::move(state)), sheet_(sheet), area_(area) {}

  vantora::Value Value() override { return book().Read(sheet_, TopLeft(area_)); }
  void SetValue(const vantora::Value& value) override {
    state_->copied.reset();
    book().Put(sheet_, area_, value);
  }

  int Row() override { return area_.first_row; }
  int Column() override { return area_.first_column; }
  int RowsCount() override { return area_.rows(); }
  int ColumnsCount() override { return area_.columns(); }
  host::RangePtr Cells(int row, int column) override {
    return MakeRange(state_, sheet_,
                     OneCell(std::int64_t{area_.first_row} + row - 1,
                             std::int64_t{area_.first_column} + column - 1));
  }
  host::InteriorPtr Interior() override {
    return std::make_shared<EmbeddedInterior>(state_, sheet_, TopLeft(area_));
  }

  void Select() override {
    if (book().active_sheet() != sheet_) {
      Refuse("Select method of Range class failed: the sheet \"" + book().sheet(sheet_).name +
             "\" is not the active sheet.");
    }
    book().Select(sheet_, area_);
  }
  void ClearFormats() override {
    state_->copied.reset();
    book().ClearFormats(sheet_, area_);
  }
  void Copy() override {
    state_->copied = ApplicationState::CopySource{sheet_, area_};
  }
  void Insert(XlInsertShiftDirection shift) override {
    if (state_->copied) {
      Refuse("Insert method of Range class failed: a copy is in progress, and the embedded host "
             "does not insert copied cells.");
    }
    if (!area_.IsWholeColumns() || shift != XlInsertShiftDirection::kToRight) {
      Refuse("Insert method of Range class failed: the embedded host inserts whole columns only.");
    }
    book().InsertColumns(sheet_, area_.first_column, area_.columns());
  }
  void PasteSpecial(XlPasteType paste, XlPasteSpecialOperation, bool skip_blanks,
                    bool transpose) override {
    static constexpr const char* kMethod = "PasteSpecial method of Range class";
    if (skip_blanks || transpose) {
      Refuse(std::string(kMethod) +
             " failed: the embedded host neither skips blanks nor transposes.");
    }
    PasteCopied(*state_, sheet_, area_, PartsOf(paste), kMethod);
  }
  host::CommentPtr AddComment() override {
    state_->copied.reset();
    book().AddComment(sheet_, TopLeft(area_));
    return std::make_shared<EmbeddedComment>(state_, sheet_, TopLeft(area_));
  }

 private:
  OpenWorkbook& book() { return *state_->workbook; }

  static unsigned PartsOf(XlPasteType paste) {
    switch (paste) {
      case XlPasteType::kAll: return kPasteAll;
      case XlPasteType::kValues: return kPasteValues;
      case XlPasteType::kFormats: return kPasteFormats;
      case XlPasteType::kFormulas: return kPasteFormulas;
      case XlPasteType::kComments: return kPasteComments;
      case XlPasteType::kValidation: return kPasteValidations;
    }
    Refuse("PasteSpecial method of Range class failed: unknown paste type.");
  }

  StatePtr state_;
  int sheet_;
  Area area_;
};

class EmbeddedWorksheet : public host::Worksheet {
 public:
  EmbeddedWorksheet(StatePtr state, int sheet) : state_(std::move(state)), sheet_(sheet) {}

  bool IsSame(const host::Worksheet& other) const override {
    auto* worksheet = dynamic_cast<const EmbeddedWorksheet*>(&other);
    return worksheet && worksheet->state_ == state_ && worksheet->sheet_ == sheet_;
  }
  std::string Name() override { return book().sheet(sheet_).name; }
  void Activate() override { book().Activate(sheet_); }
  void Select() override { book().Activate(sheet_); }
  host::RangePtr Cells(int row, int column) override {
    return MakeRange(state_, sheet_, OneCell(row, column));
  }
  host::RangePtr Range(int first_row, int first_column, int last_row, int last_column) override {
    Area first = OneCell(first_row, first_column);
    Area last = OneCell(last_row, last_column);
    return MakeRange(state_, sheet_,
                     {std::min(first.first_row, last.first_row),
                      std::min(first.first_column, last.first_column),
                      std::max(first.first_row, last.first_row),
                      std::max(first.first_column, last.first_column)});
  }
  host::RangePtr Columns(int column) override {
    OneCell(1, column);
    return MakeRange(state_, sheet_, WholeColumns(column, column));
  }
  host::RangePtr UsedRange() override {
    return MakeRange(state_, sheet_, book().UsedRange(sheet_));
  }
  void Paste() override {
    static constexpr const char* kMethod = "Paste method of Worksheet class";
    if (book().active_sheet() != sheet_) {
      Refuse(std::string(kMethod) + " failed: the sheet is not the active sheet.");
    }
    PasteCopied(*state_, sheet_, book().Selection(sheet_), kPasteAll, kMethod);
  }

 private:
  OpenWorkbook& book() { return *state_->workbook; }

  StatePtr state_;
  int sheet_;
};

class EmbeddedName : public host::Name {
 public:
  EmbeddedName(StatePtr state, std::string name) : state_(std::move(state)), name_(std::move(name)) {}

  host::RangePtr RefersToRange() override {
    OpenWorkbook& book = *state_->workbook;
    const DefinedName* name = book.model().FindName(name_, book.active_sheet());
    auto place = name ? book.PlaceOf(*name) : std::nullopt;
    if (!place) {
      Refuse("Application-defined or object-defined error: the name \"" + name_ +
             "\" does not refer to a range.");
    }
    return MakeRange(state_, place->sheet, place->area);
  }

 private:
  StatePtr state_;
  std::string name_;
};

class EmbeddedNames : public host::Names {
 public:
  explicit EmbeddedNames(StatePtr state) : state_(std::move(state)) {}

  host::NamePtr Item(std::string_view name) override {
    OpenWorkbook& book = *state_->workbook;
    if (!book.model().FindName(name, book.active_sheet())) {
      Refuse("Application-defined or object-defined error: the workbook has no name \"" +
             std::string(name) + "\".");
    }
    return std::make_shared<EmbeddedName>(state_, std::string(name));
  }

 private:
  StatePtr state_;
};

class EmbeddedWorkbook : public host::Workbook {
 public:
  explicit EmbeddedWorkbook(StatePtr state) : state_(std::move(state)) {}

  std::string Name() override { return state_->workbook->file().name(); }
  host::NamesPtr Names() override { return std::make_shared<EmbeddedNames>(state_); }
  std::vector<host::WorksheetPtr> Worksheets() override {
    WorkbookModel& model = state_->workbook->model();
    std::vector<host::WorksheetPtr> worksheets;
    for (int sheet : model.tab_order) {
      if (model.sheets[sheet]->is_worksheet) worksheets.push_back(MakeWorksheet(state_, sheet));
    }
    return worksheets;
  }

 private:
  StatePtr state_;
};

class EmbeddedApplication : public host::Application {
 public:
  explicit EmbeddedApplication(StatePtr state) : state_(std::move(state)) {}

  host::WorkbookPtr ActiveWorkbook() override { return std::make_shared<EmbeddedWorkbook>(state_); }
  host::WorksheetPtr ActiveSheet() override {
    int sheet = book().active_sheet();
    return book().sheet(sheet).is_worksheet ? MakeWorksheet(state_, sheet) : nullptr;
  }
  host::RangePtr Selection() override {
    int sheet = book().active_sheet();
    if (!book().sheet(sheet).is_worksheet) return nullptr;
    return MakeRange(state_, sheet, book().Selection(sheet));
  }
  void Goto(std::string_view reference) override {
    const DefinedName* name = book().model().FindName(reference, book().active_sheet());
    auto place = name ? book().PlaceOf(*name) : std::nullopt;
    if (!place) {
      Refuse("Reference isn't valid: the workbook has no name \"" + std::string(reference) +
             "\" that refers to cells.");
    }
    book().Activate(place->sheet);
    book().Select(place->sheet, place->area);
  }
  bool ScreenUpdating() override { return state_->screen_updating; }
  void SetScreenUpdating(bool on) override { state_->screen_updating = on; }
  std::string Caller() override { return state_->caller; }
  void SetCutCopyMode(XlCutCopyMode) override { state_->copied.reset(); }

 private:
  OpenWorkbook& book() { return *state_->workbook; }

  StatePtr state_;
};

}  // namespace

host::ApplicationPtr MakeApplication(std::shared_ptr<ApplicationState> state) {
  return std::make_shared<EmbeddedApplication>(std::move(state));
}

host::WorksheetPtr MakeWorksheet(std::shared_ptr<ApplicationState> state, int sheet) {
  return std::make_shared<EmbeddedWorksheet>(std::move(state), sheet);
}

host::RangePtr MakeRange(std::shared_ptr<ApplicationState> state, int sheet, const Area& area) {
  return std::make_shared<EmbeddedRange>(std::move(state), sheet, area);
}

}  // namespace vantora::embedded
