// A host whose n-th call fails: wraps another host's objects and counts every call on them.
#pragma once

#include <memory>
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

// What every wrapper is: an object of the wrapped host, and the plan.
template <typename Interface>
class Faulty : public Interface {
 public:
  Faulty(std::shared_ptr<Interface> inner, FaultPlanPtr plan)
      : inner_(std::move(inner)), plan_(std::move(plan)) {}

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

 private:
  std::shared_ptr<Interface> inner_;
  FaultPlanPtr plan_;
};

class FaultyInterior : public Faulty<host::Interior> {
 public:
  using Faulty::Faulty;
  int ColorIndex() override { return Call().ColorIndex(); }
};

class FaultyComment : public Faulty<host::Comment> {
 public:
  using Faulty::Faulty;
  void SetVisible(bool visible) override { Call().SetVisible(visible); }
  void Text(std::string_view text) override { Call().Text(text); }
};

class FaultyRange : public Faulty<host::Range> {
 public:
  using Faulty::Faulty;
  vantora::Value Value() override { return Call().Value(); }
  void SetValue(const vantora::Value& value) override { Call().SetValue(value); }
  int Row() override { return Call().Row(); }
  int Column() override { return Call().Column(); }
  int RowsCount() override { return Call().RowsCount(); }
  int ColumnsCount() override { return Call().ColumnsCount(); }
  host::RangePtr Cells(int row, int column) override {
    return Wrap<FaultyRange>(Call().Cells(row, column));
  }
  host::InteriorPtr Interior() override { return Wrap<FaultyInterior>(Call().Interior()); }
  void Select() override { Call().Select(); }
  void ClearFormats() override { Call().ClearFormats(); }
  void Copy() override { Call().Copy(); }
  void Insert(host::XlInsertShiftDirection shift) override { Call().Insert(shift); }
  void PasteSpecial(host::XlPasteType paste, host::XlPasteSpecialOperation operation,
                    bool skip_blanks, bool transpose) override {
    Call().PasteSpecial(paste, operation, skip_blanks, transpose);
  }
  host::CommentPtr AddComment() override { return Wrap<FaultyComment>(Call().AddComment()); }
};

class FaultyName : public Faulty<host::Name> {
 public:
  using Faulty::Faulty;
  host::RangePtr RefersToRange() override { return Wrap<FaultyRange>(Call().RefersToRange()); }
};

class FaultyNames : public Faulty<host::Names> {
 public:
  using Faulty::Faulty;
  host::NamePtr Item(std::string_view name) override { return Wrap<FaultyName>(Call().Item(name)); }
};

class FaultyWorksheet : public Faulty<host::Worksheet> {
 public:
  using Faulty::Faulty;
  bool IsSame(const host::Worksheet& other) const override {
    auto* wrapper = dynamic_cast<const FaultyWorksheet*>(&other);
    return inner().IsSame(wrapper ? wrapper->inner() : other);
  }
  std::string Name() override { return Call().Name(); }
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
};

class FaultyWorkbook : public Faulty<host::Workbook> {
 public:
  using Faulty::Faulty;
  std::string Name() override { return Call().Name(); }
  host::NamesPtr Names() override { return Wrap<FaultyNames>(Call().Names()); }
  std::vector<host::WorksheetPtr> Worksheets() override {
    std::vector<host::WorksheetPtr> sheets = Call().Worksheets();
    for (host::WorksheetPtr& sheet : sheets) sheet = Wrap<FaultyWorksheet>(std::move(sheet));
    return sheets;
  }
};

// Give it to clsGlobals in place of the application that it wraps.
class FaultyApplication : public Faulty<host::Application> {
 public:
  using Faulty::Faulty;
  host::WorkbookPtr ActiveWorkbook() override {
    return Wrap<FaultyWorkbook>(Call().ActiveWorkbook());
  }
  host::WorksheetPtr ActiveSheet() override { return Wrap<FaultyWorksheet>(Call().ActiveSheet()); }
  host::RangePtr Selection() override { return Wrap<FaultyRange>(Call().Selection()); }
  void Goto(std::string_view reference) override { Call().Goto(reference); }
  bool ScreenUpdating() override { return Call().ScreenUpdating(); }
  void SetScreenUpdating(bool on) override { Call().SetScreenUpdating(on); }
  std::string Caller() override { return Call().Caller(); }
  void SetCutCopyMode(host::XlCutCopyMode mode) override { Call().SetCutCopyMode(mode); }
};

}  // namespace vantora::testing
