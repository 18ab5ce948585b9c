// A host whose n-th call fails: wraps another host's objects and counts every call on them.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/host.h"

namespace vantora::testing {

// Which call fails. Shared by all objects of one faulty host.
struct FaultPlan {
  static constexpr int kNumber = 1004;
  static constexpr const char* kText = "injected";

  // Number of calls so far.
  int calls = 0;
  // The 1-based number of the call that fails; 0 for none.
  int failing_call = 0;

  void Count() {
    if (++calls == failing_call) throw HostError(kNumber, kText);
  }
};

using FaultPlanPtr = std::shared_ptr<FaultPlan>;

// How a wrapper is told from the host's own objects.
template <typename Interface>
class FaultyBase {
 public:
  virtual ~FaultyBase() = default;
  virtual std::shared_ptr<Interface> wrapped() const = 0;
};

// What every wrapper is: an object of the wrapped host, and the plan.
template <typename Interface>
class Faulty : public Interface, public FaultyBase<Interface> {
 public:
  Faulty(std::shared_ptr<Interface> inner, FaultPlanPtr plan)
      : inner_(std::move(inner)), plan_(std::move(plan)) {}
  std::shared_ptr<Interface> wrapped() const override { return inner_; }

 protected:
  // The wrapped object, for one counted call.
  Interface& Call() {
    plan_->Count();
    return *inner_;
  }
  const Interface& inner() const { return *inner_; }
  // The wrapper of an object that a call returned; null for null.
  template <typename Wrapper, typename Other>
  std::shared_ptr<Other> Wrap(std::shared_ptr<Other> object) {
    if (!object) return nullptr;
    return std::make_shared<Wrapper>(std::move(object), plan_);
  }
  template <typename Wrapper, typename Other>
  std::vector<std::shared_ptr<Other>> WrapAll(std::vector<std::shared_ptr<Other>> objects) {
    for (auto& object : objects) object = Wrap<Wrapper>(std::move(object));
    return objects;
  }
  // The host's own object for an argument that is a wrapper.
  template <typename Other>
  static std::shared_ptr<Other> Unwrapped(const std::shared_ptr<Other>& argument) {
    auto* wrapper = dynamic_cast<const FaultyBase<Other>*>(argument.get());
    return wrapper ? wrapper->wrapped() : argument;
  }

 private:
  std::shared_ptr<Interface> inner_;
  FaultPlanPtr plan_;
};

class FaultyInterior : public Faulty<host::Interior> {
 public:
  using Faulty::Faulty;
  int ColorIndex() override { return Call().ColorIndex(); }
  void SetColorIndex(int color_index) override { Call().SetColorIndex(color_index); }
  void SetPattern(host::XlPattern pattern) override { Call().SetPattern(pattern); }
};

class FaultyFont : public Faulty<host::Font> {
 public:
  using Faulty::Faulty;
  void SetSize(double points) override { Call().SetSize(points); }
  void SetBold(bool bold) override { Call().SetBold(bold); }
  void SetItalic(bool italic) override { Call().SetItalic(italic); }
  void SetColorIndex(int color_index) override { Call().SetColorIndex(color_index); }
};

class FaultyBorders : public Faulty<host::Borders> {
 public:
  using Faulty::Faulty;
  void SetWeight(host::XlBorderWeight weight) override { Call().SetWeight(weight); }
  void SetColorIndex(int color_index) override { Call().SetColorIndex(color_index); }
};

class FaultyComment : public Faulty<host::Comment> {
 public:
  using Faulty::Faulty;
  void SetVisible(bool visible) override { Call().SetVisible(visible); }
  void Text(std::string_view text) override { Call().Text(text); }
};

class FaultyShape : public Faulty<host::Shape> {
 public:
  using Faulty::Faulty;
  std::string LinkedCell() override { return Call().LinkedCell(); }
};

class FaultyChartObject : public Faulty<host::ChartObject> {
 public:
  using Faulty::Faulty;
  double Left() override { return Call().Left(); }
  double Top() override { return Call().Top(); }
  double Width() override { return Call().Width(); }
  std::string TitleCaption() override { return Call().TitleCaption(); }
};

class FaultyPane : public Faulty<host::Pane> {
 public:
  using Faulty::Faulty;
  int ScrollColumn() override { return Call().ScrollColumn(); }
  void SetScrollColumn(int column) override { Call().SetScrollColumn(column); }
};

class FaultyWindow : public Faulty<host::Window> {
 public:
  using Faulty::Faulty;
  double Top() override { return Call().Top(); }
  void SetTop(double points) override { Call().SetTop(points); }
  double Left() override { return Call().Left(); }
  void SetLeft(double points) override { Call().SetLeft(points); }
  double Height() override { return Call().Height(); }
  void SetHeight(double points) override { Call().SetHeight(points); }
  double Width() override { return Call().Width(); }
  void SetWidth(double points) override { Call().SetWidth(points); }
  void SetWindowState(host::XlWindowState state) override { Call().SetWindowState(state); }
  void Activate() override { Call().Activate(); }
  void Close() override { Call().Close(); }
  void SetFreezePanes(bool freeze) override { Call().SetFreezePanes(freeze); }
  int ScrollRow() override { return Call().ScrollRow(); }
  void SetScrollRow(int row) override { Call().SetScrollRow(row); }
  int ScrollColumn() override { return Call().ScrollColumn(); }
  void SetScrollColumn(int column) override { Call().SetScrollColumn(column); }
  std::vector<host::PanePtr> Panes() override { return WrapAll<FaultyPane>(Call().Panes()); }
};

class FaultyCommandBarControls;

class FaultyCommandBarControl : public Faulty<host::CommandBarControl> {
 public:
  using Faulty::Faulty;
  std::string Caption() override { return Call().Caption(); }
  void SetCaption(std::string_view caption) override { Call().SetCaption(caption); }
  std::string Tag() override { return Call().Tag(); }
  void SetTag(std::string_view tag) override { Call().SetTag(tag); }
  void SetOnAction(std::string_view macro) override { Call().SetOnAction(macro); }
  void SetVisible(bool visible) override { Call().SetVisible(visible); }
  void SetBeginGroup(bool begins_group) override { Call().SetBeginGroup(begins_group); }
  void SetFaceId(int face_id) override { Call().SetFaceId(face_id); }
  int Index() override { return Call().Index(); }
  void Delete() override { Call().Delete(); }
  host::CommandBarControlsPtr Controls() override;
};

class FaultyCommandBarControls : public Faulty<host::CommandBarControls> {
 public:
  using Faulty::Faulty;
  std::vector<host::CommandBarControlPtr> Items() override {
    return WrapAll<FaultyCommandBarControl>(Call().Items());
  }
  host::CommandBarControlPtr Add(host::MsoControlType type, std::optional<int> before) override {
    return Wrap<FaultyCommandBarControl>(Call().Add(type, before));
  }
};

inline host::CommandBarControlsPtr FaultyCommandBarControl::Controls() {
  return Wrap<FaultyCommandBarControls>(Call().Controls());
}

class FaultyCommandBar : public Faulty<host::CommandBar> {
 public:
  using Faulty::Faulty;
  host::CommandBarControlsPtr Controls() override {
    return Wrap<FaultyCommandBarControls>(Call().Controls());
  }
  host::CommandBarControlPtr FindControl(std::string_view tag) override {
    return Wrap<FaultyCommandBarControl>(Call().FindControl(tag));
  }
};

class FaultyRange : public Faulty<host::Range> {
 public:
  using Faulty::Faulty;
  vantora::Value Value() override { return Call().Value(); }
  void SetValue(const vantora::Value& value) override { Call().SetValue(value); }
  void SetValues(std::span<const vantora::Value> rows) override { Call().SetValues(rows); }
  std::string Formula() override { return Call().Formula(); }
  void SetFormula(std::string_view formula) override { Call().SetFormula(formula); }
  bool HasFormula() override { return Call().HasFormula(); }
  host::WorksheetPtr Worksheet() override;
  std::vector<host::RangePtr> Areas() override { return WrapAll<FaultyRange>(Call().Areas()); }
  int Row() override { return Call().Row(); }
  int Column() override { return Call().Column(); }
  int RowsCount() override { return Call().RowsCount(); }
  int ColumnsCount() override { return Call().ColumnsCount(); }
  host::RangePtr Cells(int row, int column) override {
    return Wrap<FaultyRange>(Call().Cells(row, column));
  }
  host::InteriorPtr Interior() override { return Wrap<FaultyInterior>(Call().Interior()); }
  host::FontPtr Font() override { return Wrap<FaultyFont>(Call().Font()); }
  host::BordersPtr Borders(host::XlBordersIndex index) override {
    return Wrap<FaultyBorders>(Call().Borders(index));
  }
  void BorderAround(host::XlBorderWeight weight, int color_index) override {
    Call().BorderAround(weight, color_index);
  }
  void SetHorizontalAlignment(host::XlHAlign alignment) override {
    Call().SetHorizontalAlignment(alignment);
  }
  void SetWrapText(bool wrap) override { Call().SetWrapText(wrap); }
  bool RowsHidden() override { return Call().RowsHidden(); }
  void SetRowsHidden(bool hidden) override { Call().SetRowsHidden(hidden); }
  bool ColumnsHidden() override { return Call().ColumnsHidden(); }
  void SetColumnsHidden(bool hidden) override { Call().SetColumnsHidden(hidden); }
  double Left() override { return Call().Left(); }
  double Width() override { return Call().Width(); }
  double RowHeight() override { return Call().RowHeight(); }
  void SetRowHeight(double points) override { Call().SetRowHeight(points); }
  double ColumnWidth() override { return Call().ColumnWidth(); }
  void SetColumnWidth(double characters) override { Call().SetColumnWidth(characters); }
  int OutlineLevel() override { return Call().OutlineLevel(); }
  void SetOutlineLevel(int level) override { Call().SetOutlineLevel(level); }
  host::NamePtr Name() override;
  void Select() override { Call().Select(); }
  void Activate() override { Call().Activate(); }
  void Clear() override { Call().Clear(); }
  void ClearContents() override { Call().ClearContents(); }
  void ClearFormats() override { Call().ClearFormats(); }
  void Copy() override { Call().Copy(); }
  void Insert(host::XlInsertShiftDirection shift) override { Call().Insert(shift); }
  void PasteSpecial(host::XlPasteType paste, host::XlPasteSpecialOperation operation,
                    bool skip_blanks, bool transpose) override {
    Call().PasteSpecial(paste, operation, skip_blanks, transpose);
  }
  host::CommentPtr AddComment() override { return Wrap<FaultyComment>(Call().AddComment()); }
  void ListNames() override { Call().ListNames(); }
  void Sort(const host::RangePtr& key1, const host::RangePtr& key2) override {
    Call().Sort(Unwrapped(key1), Unwrapped(key2));
  }
};

class FaultyName : public Faulty<host::Name> {
 public:
  using Faulty::Faulty;
  std::string OwnName() override { return Call().OwnName(); }
  host::RangePtr RefersToRange() override { return Wrap<FaultyRange>(Call().RefersToRange()); }
  void Delete() override { Call().Delete(); }
};

inline host::NamePtr FaultyRange::Name() { return Wrap<FaultyName>(Call().Name()); }

class FaultyNames : public Faulty<host::Names> {
 public:
  using Faulty::Faulty;
  host::NamePtr Item(std::string_view name) override { return Wrap<FaultyName>(Call().Item(name)); }
  bool Add(std::string_view name, std::string_view refers_to_r1c1) override {
    return Call().Add(name, refers_to_r1c1);
  }
};

class FaultySheet : public Faulty<host::Sheet> {
 public:
  using Faulty::Faulty;
  std::string Name() override { return Call().Name(); }
  void Activate() override { Call().Activate(); }
  void Select() override { Call().Select(); }
};

class FaultyWorksheet : public Faulty<host::Worksheet> {
 public:
  using Faulty::Faulty;
  bool IsSame(const host::Worksheet& other) const override {
    auto* wrapper = dynamic_cast<const FaultyWorksheet*>(&other);
    return inner().IsSame(wrapper ? wrapper->inner() : other);
  }
  std::string Name() override { return Call().Name(); }
  void SetName(std::string_view name) override { Call().SetName(name); }
  void Activate() override { Call().Activate(); }
  void Select() override { Call().Select(); }
  host::RangePtr Cells(int row, int column) override {
    return Wrap<FaultyRange>(Call().Cells(row, column));
  }
  host::RangePtr Range(int first_row, int first_column, int last_row, int last_column) override {
    return Wrap<FaultyRange>(Call().Range(first_row, first_column, last_row, last_column));
  }
  host::RangePtr Columns(int column) override { return Wrap<FaultyRange>(Call().Columns(column)); }
  host::RangePtr UsedRange() override { return Wrap<FaultyRange>(Call().UsedRange()); }
  void Paste() override { Call().Paste(); }
  host::XlSheetVisibility Visible() override { return Call().Visible(); }
  void SetVisible(host::XlSheetVisibility visible) override { Call().SetVisible(visible); }
  bool ProtectContents() override { return Call().ProtectContents(); }
  void Unprotect() override { Call().Unprotect(); }
  void Protect() override { Call().Protect(); }
  void OutlineShowLevels(int row_levels) override { Call().OutlineShowLevels(row_levels); }
  host::ShapePtr Shapes(std::string_view name) override {
    return Wrap<FaultyShape>(Call().Shapes(name));
  }
  std::vector<host::ChartObjectPtr> ChartObjects() override {
    return WrapAll<FaultyChartObject>(Call().ChartObjects());
  }
  void CallRoutine(std::string_view routine) override { Call().CallRoutine(routine); }
};

inline host::WorksheetPtr FaultyRange::Worksheet() {
  return Wrap<FaultyWorksheet>(Call().Worksheet());
}

class FaultySheets : public Faulty<host::Sheets> {
 public:
  using Faulty::Faulty;
  int Count() override { return Call().Count(); }
  host::SheetPtr Item(int index) override { return Wrap<FaultySheet>(Call().Item(index)); }
  host::SheetPtr Item(std::string_view name) override {
    return Wrap<FaultySheet>(Call().Item(name));
  }
  host::WorksheetPtr Add(const host::SheetPtr& after) override {
    return Wrap<FaultyWorksheet>(Call().Add(Unwrapped(after)));
  }
};

class FaultyWorkbook : public Faulty<host::Workbook> {
 public:
  using Faulty::Faulty;
  std::string Name() override { return Call().Name(); }
  host::NamesPtr Names() override { return Wrap<FaultyNames>(Call().Names()); }
  std::vector<host::WorksheetPtr> Worksheets() override {
    return WrapAll<FaultyWorksheet>(Call().Worksheets());
  }
  host::SheetsPtr Sheets() override { return Wrap<FaultySheets>(Call().Sheets()); }
  void Save() override { Call().Save(); }
  void SaveAs(std::string_view filename, host::XlFileFormat format) override {
    Call().SaveAs(filename, format);
  }
  host::Palette Colors() override { return Call().Colors(); }
  void SetColors(const host::Palette& colors) override { Call().SetColors(colors); }
  std::vector<host::WindowPtr> Windows() override {
    return WrapAll<FaultyWindow>(Call().Windows());
  }
  host::WindowPtr NewWindow() override { return Wrap<FaultyWindow>(Call().NewWindow()); }
};

// Give it to clsGlobals in place of the application that it wraps.
class FaultyApplication : public Faulty<host::Application> {
 public:
  using Faulty::Faulty;
  host::WorkbookPtr ActiveWorkbook() override {
    return Wrap<FaultyWorkbook>(Call().ActiveWorkbook());
  }
  host::WorksheetPtr ActiveSheet() override { return Wrap<FaultyWorksheet>(Call().ActiveSheet()); }
  host::SheetPtr ActiveAnySheet() override {
    host::SheetPtr sheet = Call().ActiveAnySheet();
    if (auto worksheet = std::dynamic_pointer_cast<host::Worksheet>(sheet)) {
      return Wrap<FaultyWorksheet>(std::move(worksheet));
    }
    return Wrap<FaultySheet>(std::move(sheet));
  }
  host::RangePtr Selection() override { return Wrap<FaultyRange>(Call().Selection()); }
  void Goto(std::string_view reference) override { Call().Goto(reference); }
  bool ScreenUpdating() override { return Call().ScreenUpdating(); }
  void SetScreenUpdating(bool on) override { Call().SetScreenUpdating(on); }
  std::string Caller() override { return Call().Caller(); }
  void SetCutCopyMode(host::XlCutCopyMode mode) override { Call().SetCutCopyMode(mode); }
  std::vector<host::WorkbookPtr> Workbooks() override {
    return WrapAll<FaultyWorkbook>(Call().Workbooks());
  }
  host::WindowPtr ActiveWindow() override { return Wrap<FaultyWindow>(Call().ActiveWindow()); }
  void SetCalculation(host::XlCalculation calculation) override {
    Call().SetCalculation(calculation);
  }
  double UsableHeight() override { return Call().UsableHeight(); }
  double UsableWidth() override { return Call().UsableWidth(); }
  bool DisplayFullScreen() override { return Call().DisplayFullScreen(); }
  std::string Version() override { return Call().Version(); }
  host::RangePtr Union(const host::RangePtr& first, const host::RangePtr& second) override {
    return Wrap<FaultyRange>(Call().Union(Unwrapped(first), Unwrapped(second)));
  }
  host::RangePtr InputRange(std::string_view prompt, std::string_view title) override {
    return Wrap<FaultyRange>(Call().InputRange(prompt, title));
  }
  std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                               std::string_view file_filter,
                                               std::string_view title) override {
    return Call().GetSaveAsFilename(initial_filename, file_filter, title);
  }
  host::CommandBarPtr ActiveMenuBar() override {
    return Wrap<FaultyCommandBar>(Call().ActiveMenuBar());
  }
};

}  // namespace vantora::testing
