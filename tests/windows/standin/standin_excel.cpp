#include "standin_excel.h"

#include <algorithm>
#include <cstdint>

#include "hosts/excel/text.h"

namespace vantora::standin {
namespace {

constexpr int kTypeMismatch = 13;
constexpr int kLastRow = 1048576;
constexpr int kLastColumn = 16384;

template <typename T>
Variant Made(T* object) {
  auto owned = ComPtr<IDispatch>::Adopt(object);
  return Variant(owned.get());
}
Variant Nothing() { return Variant(static_cast<IDispatch*>(nullptr)); }
// What Excel's methods give when they succeed.
Variant Done() { return Variant(true); }

[[noreturn]] void Refuse(const Call& call) {
  throw NotServed{call.is_put() ? "a put" : "this member"};
}

class InteriorObject final : public StandInObject {
 public:
  InteriorObject(ExcelPtr excel, host::InteriorPtr interior)
      : StandInObject(std::move(excel), "Interior"), interior_(std::move(interior)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.is_put()) Refuse(call);
    return interior_->ColorIndex();
  }

  host::InteriorPtr interior_;
};

class CommentObject final : public StandInObject {
 public:
  CommentObject(ExcelPtr excel, host::CommentPtr comment)
      : StandInObject(std::move(excel), "Comment"), comment_(std::move(comment)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name == "Text") {
      call.RefuseFrom(1);
      std::string text = call.Text(0);
      comment_->Text(text);
      return Variant(std::string_view(text));
    }
    if (!call.is_put()) Refuse(call);
    comment_->SetVisible(call.put_value().ToBool().value());
    return {};
  }

  host::CommentPtr comment_;
};

class RangeObject final : public StandInObject {
 public:
  // What Count counts.
  enum class Unit { kCells, kRows, kColumns };

  RangeObject(ExcelPtr excel, host::RangePtr range, Unit unit = Unit::kCells)
      : StandInObject(std::move(excel), "Range"), range_(std::move(range)), unit_(unit) {}

  host::Range& range() { return *range_; }

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (name == "Value") return AnswerValue(call);
    if (name == "Cells") return AnswerCells(call);
    if (name == "Row") return range_->Row();
    if (name == "Column") return range_->Column();
    if (name == "Count") return Count();
    if (name == "Rows") return Lines(call, Unit::kRows);
    if (name == "Columns") return Lines(call, Unit::kColumns);
    if (name == "Interior") return Made(new InteriorObject(excel(), range_->Interior()));
    if (call.member().access == Access::kMethod) return Do(call);
    Refuse(call);
  }

  Variant Do(const Call& call) {
    std::string_view name = call.member().name;
    if (name == "AddComment") return AddComment(call);
    if (name == "PasteSpecial") {
      PasteSpecial(call);
    } else if (name == "Insert") {
      call.RefuseFrom(1);
      range_->Insert(static_cast<host::XlInsertShiftDirection>(call.Int(0)));
    } else if (name == "Copy") {
      call.RefuseFrom(0);
      range_->Copy();
    } else if (name == "Select") {
      range_->Select();
    } else if (name == "ClearFormats") {
      range_->ClearFormats();
    } else {
      Refuse(call);
    }
    return Done();
  }

  Variant AnswerValue(const Call& call) {
    call.RefuseFrom(0);
    if (call.is_put()) {
      auto value = call.put_value().ToValue();
      if (!value) throw NotServed{"a put of a value of this type"};
      range_->SetValue(*value);
      return {};
    }
    if (range_->RowsCount() == 1 && range_->ColumnsCount() == 1) {
      return Variant::From(range_->Value());
    }
    return Table();
  }

  // The values of several cells: an array of rows and columns, counted from 1.
  Variant Table() {
    LONG rows = range_->RowsCount();
    LONG columns = range_->ColumnsCount();
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
    Variant table;
    VARIANT* place = table.Receive();
    place->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
    place->vt = VT_ARRAY | VT_VARIANT;
    for (LONG row = 1; row <= rows; ++row) {
      for (LONG column = 1; column <= columns; ++column) {
        Variant value = Variant::From(range_->Cells(row, column)->Value());
        LONG indices[] = {row, column};
        SafeArrayPutElement(place->parray, indices, const_cast<VARIANT*>(&value.get()));
      }
    }
    return table;
  }

  Variant AnswerCells(const Call& call) {
    if (!call.Has(0) && !call.Has(1)) return Made(new RangeObject(excel(), range_));
    return Made(new RangeObject(excel(), range_->Cells(call.Int(0), call.Int(1))));
  }

  Variant Lines(const Call& call, Unit unit) {
    call.RefuseFrom(0);
    return Made(new RangeObject(excel(), range_, unit));
  }

  int Count() {
    if (unit_ == Unit::kRows) return range_->RowsCount();
    if (unit_ == Unit::kColumns) return range_->ColumnsCount();
    std::int64_t cells = std::int64_t{range_->RowsCount()} * range_->ColumnsCount();
    if (cells > INT32_MAX) throw HostError(6, "Overflow");
    return static_cast<int>(cells);
  }

  void PasteSpecial(const Call& call) {
    using host::XlPasteSpecialOperation;
    auto paste =
        call.Has(0) ? static_cast<host::XlPasteType>(call.Int(0)) : host::XlPasteType::kAll;
    auto operation = call.Has(1) ? static_cast<XlPasteSpecialOperation>(call.Int(1))
                                 : XlPasteSpecialOperation::kNone;
    if (operation != XlPasteSpecialOperation::kNone) throw NotServed{"an operation"};
    range_->PasteSpecial(paste, operation, call.Has(2) && call.Bool(2),
                         call.Has(3) && call.Bool(3));
  }

  Variant AddComment(const Call& call) {
    host::CommentPtr comment = range_->AddComment();
    if (call.Has(0)) comment->Text(call.Text(0));
    return Made(new CommentObject(excel(), std::move(comment)));
  }

  host::RangePtr range_;
  Unit unit_;
};

class WorksheetObject final : public StandInObject {
 public:
  WorksheetObject(ExcelPtr excel, host::WorksheetPtr sheet)
      : StandInObject(std::move(excel), "Worksheet"), sheet_(sheet) {
    this->excel()->worksheets.emplace_back(std::move(sheet), this);
  }

 private:
  ~WorksheetObject() override {
    std::erase_if(excel()->worksheets, [this](const auto& known) { return known.second == this; });
  }

  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (call.is_put()) Refuse(call);
    if (name == "Name") return Variant(std::string_view(sheet_->Name()));
    if (name == "Cells") return AnswerCells(call);
    if (name == "Columns") return MadeRange(sheet_->Columns(call.Int(0)));
    if (name == "Range") return AnswerRange(call);
    if (name == "UsedRange") return MadeRange(sheet_->UsedRange());
    call.RefuseFrom(0);
    if (name == "Activate") {
      sheet_->Activate();
    } else if (name == "Select") {
      sheet_->Select();
    } else if (name == "Paste") {
      sheet_->Paste();
    } else {
      Refuse(call);
    }
    return Done();
  }

  Variant MadeRange(host::RangePtr range) {
    return Made(new RangeObject(excel(), std::move(range)));
  }

  Variant AnswerCells(const Call& call) {
    if (!call.Has(0) && !call.Has(1)) return MadeRange(sheet_->Range(1, 1, kLastRow, kLastColumn));
    return MadeRange(sheet_->Cells(call.Int(0), call.Int(1)));
  }

  // The smallest rectangle around both ranges.
  Variant AnswerRange(const Call& call) {
    auto* first = dynamic_cast<RangeObject*>(call.Object(0));
    auto* last = dynamic_cast<RangeObject*>(call.Object(call.Has(1) ? 1 : 0));
    if (!first || !last) throw NotServed{"a reference that is no range"};
    host::Range& a = first->range();
    host::Range& b = last->range();
    int first_row = a.Row(), first_column = a.Column();
    int other_row = b.Row(), other_column = b.Column();
    int end_row = std::max(first_row + a.RowsCount(), other_row + b.RowsCount()) - 1;
    int end_column = std::max(first_column + a.ColumnsCount(), other_column + b.ColumnsCount()) - 1;
    return MadeRange(sheet_->Range(std::min(first_row, other_row),
                                   std::min(first_column, other_column), end_row, end_column));
  }

  host::WorksheetPtr sheet_;
};

Variant WorksheetVariant(const ExcelPtr& excel, host::WorksheetPtr sheet) {
  if (!sheet) return Nothing();
  for (const auto& [known, object] : excel->worksheets) {
    if (known->IsSame(*sheet)) return Variant(static_cast<IDispatch*>(object));
  }
  return Made(new WorksheetObject(excel, std::move(sheet)));
}

class SheetsObject final : public StandInObject {
 public:
  SheetsObject(ExcelPtr excel, std::vector<host::WorksheetPtr> sheets)
      : StandInObject(std::move(excel), "Sheets"), sheets_(std::move(sheets)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name == "Count") return static_cast<int>(sheets_.size());
    int index = call.Int(0);
    if (index < 1 || index > static_cast<int>(sheets_.size())) {
      throw HostError(HostError::kSubscriptOutOfRange, "Subscript out of range");
    }
    return WorksheetVariant(excel(), sheets_[index - 1]);
  }
  std::vector<Variant> Items() override {
    std::vector<Variant> items;
    for (const auto& sheet : sheets_) items.push_back(WorksheetVariant(excel(), sheet));
    return items;
  }

  std::vector<host::WorksheetPtr> sheets_;
};

class NameObject final : public StandInObject {
 public:
  NameObject(ExcelPtr excel, host::NamePtr name)
      : StandInObject(std::move(excel), "Name"), name_(std::move(name)) {}

 private:
  Variant Answer(const Call&) override {
    return Made(new RangeObject(excel(), name_->RefersToRange()));
  }

  host::NamePtr name_;
};

class NamesObject final : public StandInObject {
 public:
  NamesObject(ExcelPtr excel, host::NamesPtr names)
      : StandInObject(std::move(excel), "Names"), names_(std::move(names)) {}

 private:
  Variant Answer(const Call& call) override {
    call.RefuseFrom(1);
    return Made(new NameObject(excel(), names_->Item(call.Text(0))));
  }

  host::NamesPtr names_;
};

class WorkbookObject final : public StandInObject {
 public:
  WorkbookObject(ExcelPtr excel, host::WorkbookPtr workbook)
      : StandInObject(std::move(excel), "Workbook"), workbook_(std::move(workbook)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name == "Name") return Variant(std::string_view(workbook_->Name()));
    if (call.member().name == "Names") return Made(new NamesObject(excel(), workbook_->Names()));
    call.RefuseFrom(0);
    return Made(new SheetsObject(excel(), workbook_->Worksheets()));
  }

  host::WorkbookPtr workbook_;
};

class ApplicationObject final : public StandInObject {
 public:
  explicit ApplicationObject(ExcelPtr excel) : StandInObject(std::move(excel), "Application") {}

 private:
  host::Application& application() { return *excel()->application; }

  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (call.is_put()) return Put(call);
    if (name == "ActiveSheet") return WorksheetVariant(excel(), application().ActiveSheet());
    if (name == "ScreenUpdating") return application().ScreenUpdating();
    if (name == "ActiveWorkbook") {
      host::WorkbookPtr workbook = application().ActiveWorkbook();
      return workbook ? Made(new WorkbookObject(excel(), std::move(workbook))) : Nothing();
    }
    if (name == "Selection") {
      host::RangePtr range = application().Selection();
      return range ? Made(new RangeObject(excel(), std::move(range))) : Nothing();
    }
    if (name == "Goto") {
      call.RefuseFrom(1);
      application().Goto(call.Text(0));
      return Done();
    }
    if (name == "Caller") {
      call.RefuseFrom(0);
      std::string caller = application().Caller();
      // Excel gives an error value where no shape ran the macro.
      return caller.empty() ? Variant::From(CellError::kRef) : Variant(std::string_view(caller));
    }
    Refuse(call);
  }

  Variant Put(const Call& call) {
    if (call.member().name == "ScreenUpdating") {
      application().SetScreenUpdating(call.put_value().ToBool().value());
    } else {
      // True, False or a mode; each of them ends the copy.
      if (!call.put_value().ToInt()) throw HostError(kTypeMismatch, "Type mismatch");
      application().SetCutCopyMode(host::XlCutCopyMode::kNone);
    }
    return {};
  }
};

}  // namespace

ComPtr<IDispatch> MakeApplication(ExcelPtr excel) {
  return ComPtr<IDispatch>::Adopt(new ApplicationObject(std::move(excel)));
}

}  // namespace vantora::standin
