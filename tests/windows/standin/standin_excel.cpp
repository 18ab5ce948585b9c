#include "standin_excel.h"

#include "standin_parts.h"

namespace vantora::standin {
namespace {

class CollectionObject final : public StandInObject {
 public:
  CollectionObject(ExcelPtr excel, std::string_view kind, std::vector<Variant> items)
      : StandInObject(std::move(excel), kind), kind_(kind), items_(std::move(items)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name == "Count") return static_cast<int>(items_.size());
    int index = call.Int(0);
    if (index < 1 || index > static_cast<int>(items_.size())) {
      throw HostError(HostError::kSubscriptOutOfRange, "Subscript out of range");
    }
    return CopyOf(items_[index - 1]);
  }
  // Panes are told by their place alone.
  std::vector<Variant> Items() override {
    if (kind_ == "Panes") throw NotServed{"an enumeration of panes, which Excel does not know"};
    std::vector<Variant> items;
    for (const Variant& item : items_) items.push_back(CopyOf(item));
    return items;
  }

  static Variant CopyOf(const Variant& item) { return Variant(item.get().pdispVal); }

  std::string_view kind_;
  std::vector<Variant> items_;
};

class SheetsObject final : public StandInObject {
 public:
  // `with_charts` tells Sheets from Worksheets.
  SheetsObject(ExcelPtr excel, host::WorkbookPtr workbook, bool with_charts)
      : StandInObject(std::move(excel), "Sheets"),
        workbook_(std::move(workbook)),
        with_charts_(with_charts) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (name == "Add") return Add(call);
    if (name == "Count") {
      return with_charts_ ? workbook_->Sheets()->Count()
                          : static_cast<int>(workbook_->Worksheets().size());
    }
    if (with_charts_) {
      host::SheetsPtr sheets = workbook_->Sheets();
      return Sheet(call.IsText(0) ? sheets->Item(call.Text(0)) : sheets->Item(call.Int(0)));
    }
    std::vector<host::WorksheetPtr> sheets = workbook_->Worksheets();
    int index = call.Int(0);
    if (index < 1 || index > static_cast<int>(sheets.size())) {
      throw HostError(HostError::kSubscriptOutOfRange, "Subscript out of range");
    }
    return MadeWorksheet(excel(), sheets[index - 1]);
  }
  std::vector<Variant> Items() override {
    std::vector<Variant> items;
    if (with_charts_) {
      host::SheetsPtr sheets = workbook_->Sheets();
      for (int i = 1; i <= sheets->Count(); ++i) {
        items.push_back(Sheet(sheets->Item(i)));
      }
    } else {
      for (const auto& sheet : workbook_->Worksheets()) {
        items.push_back(MadeWorksheet(excel(), sheet));
      }
    }
    return items;
  }

  // A host may give a worksheet as a mere sheet.
  Variant Sheet(host::SheetPtr sheet) {
    const std::string name = sheet->Name();
    for (host::WorksheetPtr& worksheet : workbook_->Worksheets()) {
      if (worksheet->Name() == name) return MadeWorksheet(excel(), std::move(worksheet));
    }
    return MadeSheet(excel(), std::move(sheet));
  }

  Variant Add(const Call& call) {
    if (call.Has(0)) Refuse(call);
    call.RefuseFrom(2);
    host::SheetPtr after = SheetOf(call.Object(1));
    if (!after) throw NotServed{"a sheet behind what is no sheet"};
    return MadeWorksheet(excel(), workbook_->Sheets()->Add(after));
  }

  host::WorkbookPtr workbook_;
  bool with_charts_;
};

class WorkbookObject final : public StandInObject {
 public:
  WorkbookObject(ExcelPtr excel, host::WorkbookPtr workbook)
      : StandInObject(std::move(excel), "Workbook"), workbook_(std::move(workbook)) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (name == "Colors") return Colors(call);
    if (name == "Name") return Variant(std::string_view(workbook_->Name()));
    if (name == "Names") return MadeNames(excel(), workbook_->Names());
    if (name == "Sheets") return Made(new SheetsObject(excel(), workbook_, true));
    if (name == "Worksheets") return Made(new SheetsObject(excel(), workbook_, false));
    if (name == "NewWindow") return MadeWindow(excel(), workbook_->NewWindow());
    if (name == "Windows") {
      std::vector<Variant> windows;
      for (host::WindowPtr& window : workbook_->Windows()) {
        windows.push_back(MadeWindow(excel(), std::move(window)));
      }
      return MadeCollection(excel(), "Windows", std::move(windows));
    }
    if (name == "Save") {
      workbook_->Save();
    } else {
      call.RefuseFrom(2);
      workbook_->SaveAs(call.Text(0), static_cast<host::XlFileFormat>(
                                          call.Enumerated(1, {6, 50, 51, 52, 56, -4143})));
    }
    return {};
  }

  // The whole palette.
  Variant Colors(const Call& call) {
    call.RefuseFrom(0);
    if (!call.is_put()) return Variant::ListOf(workbook_->Colors());
    auto colors = call.put_value().ToInts();
    if (!colors || colors->size() != host::kPaletteSize) {
      throw NotServed{"a palette that is no list of 56 numbers"};
    }
    workbook_->SetColors(*colors);
    return {};
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
    if (name == "ActiveSheet") return MadeSheet(excel(), application().ActiveAnySheet());
    if (name == "ActiveWindow") return MadeWindow(excel(), application().ActiveWindow());
    if (name == "ActiveWorkbook") return MadeWorkbook(excel(), application().ActiveWorkbook());
    if (name == "CommandBars") return MadeCommandBars(excel());
    if (name == "DisplayFullScreen") return application().DisplayFullScreen();
    if (name == "ScreenUpdating") return application().ScreenUpdating();
    if (name == "Selection") return MadeRange(excel(), application().Selection());
    if (name == "Sheets") return Sheets();
    if (name == "UsableHeight") return application().UsableHeight();
    if (name == "UsableWidth") return application().UsableWidth();
    if (name == "Version") return Variant(std::string_view(application().Version()));
    if (name == "Workbooks") return Workbooks();
    return Do(call);
  }

  Variant Put(const Call& call) {
    if (call.member().name == "ScreenUpdating") {
      application().SetScreenUpdating(call.PutBool());
    } else if (call.member().name == "Calculation") {
      application().SetCalculation(
          static_cast<host::XlCalculation>(call.PutEnumerated({-4105, -4135, 2})));
    } else if (call.member().name == "CutCopyMode") {
      // True, False or a mode; each of them ends the copy.
      call.PutInt();
      application().SetCutCopyMode(host::XlCutCopyMode::kNone);
    } else {
      Refuse(call);
    }
    return {};
  }

  Variant Do(const Call& call) {
    std::string_view name = call.member().name;
    if (name == "Union") return Union(call);
    if (name == "InputBox") return InputBox(call);
    if (name == "GetSaveAsFilename") return GetSaveAsFilename(call);
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

  // Those of the active workbook.
  Variant Sheets() {
    host::WorkbookPtr workbook = application().ActiveWorkbook();
    return workbook ? Made(new SheetsObject(excel(), std::move(workbook), true)) : Nothing();
  }

  Variant Workbooks() {
    std::vector<Variant> workbooks;
    for (host::WorkbookPtr& workbook : application().Workbooks()) {
      workbooks.push_back(MadeWorkbook(excel(), std::move(workbook)));
    }
    return MadeCollection(excel(), "Workbooks", std::move(workbooks));
  }

  Variant Union(const Call& call) {
    call.RefuseFrom(2);
    host::RangePtr first = RangeOf(call.Object(0));
    host::RangePtr second = RangeOf(call.Object(1));
    if (!first || !second) throw HostError(HostError::kTypeMismatch, "Type mismatch");
    return MadeRange(excel(), application().Union(first, second));
  }

  // False when the user cancels.
  Variant InputBox(const Call& call) {
    constexpr std::size_t kType = 7;
    constexpr int kRangeType = 8;
    if (!call.Has(kType) || call.Int(kType) != kRangeType) Refuse(call);
    for (std::size_t place = 2; place < kType; ++place) {
      if (call.Has(place)) Refuse(call);
    }
    host::RangePtr range = application().InputRange(call.Text(0), call.Text(1));
    return range ? MadeRange(excel(), std::move(range)) : Variant(false);
  }

  // False when the user cancels.
  Variant GetSaveAsFilename(const Call& call) {
    if (call.Has(2)) Refuse(call);
    call.RefuseFrom(4);
    auto path = application().GetSaveAsFilename(call.Text(0), call.Text(1), call.Text(3));
    return path ? Variant(std::string_view(*path)) : Variant(false);
  }
};

}  // namespace

void Refuse(const Call& call) { throw NotServed{call.is_put() ? "a put" : "this member"}; }

Variant MadeCollection(const ExcelPtr& excel, std::string_view kind, std::vector<Variant> items) {
  return Made(new CollectionObject(excel, kind, std::move(items)));
}

Variant MadeWorkbook(const ExcelPtr& excel, host::WorkbookPtr workbook) {
  return workbook ? Made(new WorkbookObject(excel, std::move(workbook))) : Nothing();
}

ComPtr<IDispatch> MakeApplication(ExcelPtr excel) {
  return ComPtr<IDispatch>::Adopt(new ApplicationObject(std::move(excel)));
}

}  // namespace vantora::standin
