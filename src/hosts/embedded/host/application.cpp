#include "host/application.h"

#include "host/objects.h"
#include "host/references.h"

namespace vantora::embedded {
namespace {

class EmbeddedApplication : public host::Application {
 public:
  explicit EmbeddedApplication(std::shared_ptr<ApplicationState> state)
      : state_(std::move(state)) {}

  host::WorkbookPtr ActiveWorkbook() override {
    return HasWindow() ? MakeWorkbook(Book()) : nullptr;
  }
  host::WorksheetPtr ActiveSheet() override;
  host::SheetPtr ActiveAnySheet() override;
  host::RangePtr Selection() override;
  void Goto(std::string_view reference) override;
  bool ScreenUpdating() override { return state_->screen_updating; }
  void SetScreenUpdating(bool on) override { state_->screen_updating = on; }
  std::string Caller() override { return state_->caller; }
  void SetCutCopyMode(host::XlCutCopyMode) override { state_->copied.reset(); }

  std::vector<host::WorkbookPtr> Workbooks() override;

  host::WindowPtr ActiveWindow() override;

  void SetCalculation(host::XlCalculation calculation) override;

  double UsableHeight() override { return state_->usable_height; }
  double UsableWidth() override { return state_->usable_width; }
  bool DisplayFullScreen() override { return state_->full_screen; }

  std::string Version() override { return state_->version; }

  host::RangePtr Union(const host::RangePtr& first, const host::RangePtr& second) override;

  host::RangePtr InputRange(std::string_view prompt, std::string_view title) override;

  std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                               std::string_view file_filter,
                                               std::string_view title) override;

  host::CommandBarPtr ActiveMenuBar() override { return MakeMenuBar(state_); }

 private:
  // Refuses where nobody answers.
  Prompts& Asking();
  // Without a window the workbook counts as closed.
  bool HasWindow() const { return !state_->active_workbook->windows().order().empty(); }
  BookHandle Book() const { return {state_, state_->active_workbook}; }

  std::shared_ptr<ApplicationState> state_;
};

host::WorksheetPtr EmbeddedApplication::ActiveSheet() {
  if (!HasWindow()) return nullptr;
  BookHandle book = Book();
  int sheet = book->active_sheet();
  return book->sheet(sheet).is_worksheet ? MakeWorksheet(book, sheet) : nullptr;
}

host::SheetPtr EmbeddedApplication::ActiveAnySheet() {
  return HasWindow() ? MakeSheet(Book(), Book()->active_sheet()) : nullptr;
}

host::RangePtr EmbeddedApplication::Selection() {
  if (!HasWindow()) return nullptr;
  BookHandle book = Book();
  int sheet = book->active_sheet();
  if (!book->sheet(sheet).is_worksheet) return nullptr;
  return MakeRange(book, sheet, book->SelectedAreas(sheet));
}

void EmbeddedApplication::Goto(std::string_view reference) {
  BookHandle book = Book();
  const DefinedName* name = book->model().FindName(reference, book->active_sheet());
  auto place = name ? book->PlaceOf(*name) : std::nullopt;
  if (!place) {
    Refuse("Reference isn't valid: the workbook has no name \"" + std::string(reference) +
           "\" that refers to cells.");
  }
  book->Activate(place->sheet);
  book->Select(place->sheet, place->area);
}

std::vector<host::WorkbookPtr> EmbeddedApplication::Workbooks() {
  std::vector<host::WorkbookPtr> workbooks;
  for (const auto& workbook : state_->workbooks) {
    if (workbook->windows().order().empty()) continue;
    workbooks.push_back(MakeWorkbook({state_, workbook.get()}));
  }
  return workbooks;
}

host::WindowPtr EmbeddedApplication::ActiveWindow() {
  return HasWindow() ? MakeWindows(Book()).front() : nullptr;
}

// The mode is the application's: it holds for all its workbooks.
void EmbeddedApplication::SetCalculation(host::XlCalculation calculation) {
  for (const auto& workbook : state_->workbooks) {
    workbook->SetManualCalculation(calculation == host::XlCalculation::kManual);
  }
}

host::RangePtr EmbeddedApplication::Union(const host::RangePtr& first,
                                          const host::RangePtr& second) {
  return UnionOf(first, second);
}

Prompts& EmbeddedApplication::Asking() {
  if (!state_->prompts) Refuse("There is nobody to answer what the operation asks.");
  return *state_->prompts;
}

host::RangePtr EmbeddedApplication::InputRange(std::string_view prompt, std::string_view title) {
  std::string refusal;
  while (true) {
    const std::optional<std::string> reference = Asking().InputRange(prompt, title, refusal);
    if (!reference) return nullptr;
    try {
      return ReferencedRange(Book(), *reference);
    } catch (const HostError& error) {
      refusal = error.description();
    }
  }
}

std::optional<std::string> EmbeddedApplication::GetSaveAsFilename(std::string_view initial_filename,
                                                                  std::string_view file_filter,
                                                                  std::string_view title) {
  return Asking().GetSaveAsFilename(initial_filename, file_filter, title);
}

}  // namespace

host::ApplicationPtr MakeApplication(std::shared_ptr<ApplicationState> state) {
  return std::make_shared<EmbeddedApplication>(std::move(state));
}

}  // namespace vantora::embedded
