// Sheets.
#include <algorithm>

#include "core/convert.h"
#include "standin_parts.h"

namespace vantora::standin {
namespace {

// An object that has a sheet behind it.
class AnySheet : public StandInObject {
 public:
  virtual host::SheetPtr sheet() = 0;

 protected:
  using StandInObject::StandInObject;
};

class OutlineObject final : public StandInObject {
 public:
  OutlineObject(ExcelPtr excel, host::WorksheetPtr sheet)
      : StandInObject(std::move(excel), "Outline"), sheet_(std::move(sheet)) {}

 private:
  Variant Answer(const Call& call) override {
    call.RefuseFrom(1);
    sheet_->OutlineShowLevels(call.Int(0));
    return Done();
  }

  host::WorksheetPtr sheet_;
};

class WorksheetObject final : public AnySheet {
 public:
  WorksheetObject(ExcelPtr excel, host::WorksheetPtr sheet)
      : AnySheet(std::move(excel), "Worksheet"), sheet_(sheet) {
    this->excel()->worksheets.emplace_back(std::move(sheet), this);
  }

  host::SheetPtr sheet() override { return sheet_; }

 private:
  ~WorksheetObject() override {
    std::erase_if(excel()->worksheets, [this](const auto& known) { return known.second == this; });
  }

  // Every sheet can have a code module with the routines of a Reference Sheet; the host decides.
  bool HasRoutine(const std::string& name) override {
    return EqualsIgnoreCase(name, "ResetKeySortButtons") ||
           EqualsIgnoreCase(name, "resetNamesSortButtons");
  }
  void CallRoutine(const std::string& name) override { sheet_->CallRoutine(name); }

  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (call.is_put()) return Put(call);
    if (name == "Name") return Variant(std::string_view(sheet_->Name()));
    if (name == "Visible") return static_cast<int>(sheet_->Visible());
    if (name == "ProtectContents") return sheet_->ProtectContents();
    if (name == "Cells") return AnswerCells(call);
    if (name == "Columns") return MadeRange(excel(), sheet_->Columns(call.Int(0)));
    if (name == "Range") return AnswerRange(call);
    if (name == "UsedRange") return MadeRange(excel(), sheet_->UsedRange());
    if (name == "Outline") return Made(new OutlineObject(excel(), sheet_));
    if (name == "Shapes") return MadeShapes(excel(), sheet_);
    if (name == "ChartObjects") return ChartObjects(call);
    return Do(call);
  }

  Variant Put(const Call& call) {
    if (call.member().name == "Name") {
      sheet_->SetName(call.PutText());
    } else {
      sheet_->SetVisible(static_cast<host::XlSheetVisibility>(call.PutEnumerated({-1, 0, 2})));
    }
    return {};
  }

  Variant Do(const Call& call) {
    std::string_view name = call.member().name;
    if (name == "Protect") {
      if (call.Has(0)) Refuse(call);
      call.RefuseFrom(4);
      for (std::size_t place : {1, 2, 3}) {
        if (!call.Bool(place)) throw NotServed{"a protection in part"};
      }
      sheet_->Protect();
      return {};
    }
    call.RefuseFrom(0);
    if (name == "Activate") {
      sheet_->Activate();
    } else if (name == "Select") {
      sheet_->Select();
    } else if (name == "Paste") {
      sheet_->Paste();
    } else if (name == "Unprotect") {
      sheet_->Unprotect();
    } else {
      Refuse(call);
    }
    return Done();
  }

  Variant AnswerCells(const Call& call) {
    if (!call.Has(0) && !call.Has(1)) {
      return MadeRange(excel(), sheet_->Range(1, 1, kLastRow, kLastColumn));
    }
    return MadeCell(excel(), sheet_->Cells(call.Int(0), call.Int(1)));
  }

  // The smallest rectangle around both ranges.
  Variant AnswerRange(const Call& call) {
    host::RangePtr a = RangeOf(call.Object(0));
    host::RangePtr b = RangeOf(call.Object(call.Has(1) ? 1 : 0));
    if (!a || !b) throw NotServed{"a reference that is no range"};
    int first_row = a->Row(), first_column = a->Column();
    int other_row = b->Row(), other_column = b->Column();
    int end_row = std::max(first_row + a->RowsCount(), other_row + b->RowsCount()) - 1;
    int end_column =
        std::max(first_column + a->ColumnsCount(), other_column + b->ColumnsCount()) - 1;
    return MadeRange(
        excel(), sheet_->Range(std::min(first_row, other_row), std::min(first_column, other_column),
                               end_row, end_column));
  }

  Variant ChartObjects(const Call& call) {
    call.RefuseFrom(0);
    std::vector<Variant> charts;
    for (host::ChartObjectPtr& chart : sheet_->ChartObjects()) {
      charts.push_back(MadeChartObject(excel(), std::move(chart)));
    }
    return MadeCollection(excel(), "ChartObjects", std::move(charts));
  }

  host::WorksheetPtr sheet_;
};

class ChartSheetObject final : public AnySheet {
 public:
  ChartSheetObject(ExcelPtr excel, host::SheetPtr sheet)
      : AnySheet(std::move(excel), "Chart"), sheet_(std::move(sheet)) {}

  host::SheetPtr sheet() override { return sheet_; }

 private:
  Variant Answer(const Call& call) override {
    if (call.is_put()) Refuse(call);
    if (call.member().name == "Name") return Variant(std::string_view(sheet_->Name()));
    if (call.member().name == "Activate") {
      sheet_->Activate();
    } else if (call.member().name == "Select") {
      sheet_->Select();
    } else {
      Refuse(call);
    }
    return Done();
  }

  host::SheetPtr sheet_;
};

}  // namespace

Variant MadeWorksheet(const ExcelPtr& excel, host::WorksheetPtr sheet) {
  if (!sheet) return Nothing();
  for (const auto& [known, object] : excel->worksheets) {
    if (known->IsSame(*sheet)) return Variant(static_cast<IDispatch*>(object));
  }
  return Made(new WorksheetObject(excel, std::move(sheet)));
}

Variant MadeSheet(const ExcelPtr& excel, host::SheetPtr sheet) {
  if (!sheet) return Nothing();
  if (auto worksheet = std::dynamic_pointer_cast<host::Worksheet>(sheet)) {
    return MadeWorksheet(excel, std::move(worksheet));
  }
  return Made(new ChartSheetObject(excel, std::move(sheet)));
}

host::SheetPtr SheetOf(IDispatch* object) {
  auto* any = dynamic_cast<AnySheet*>(object);
  return any ? any->sheet() : nullptr;
}

}  // namespace vantora::standin
