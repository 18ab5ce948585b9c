#include "host/session.h"

#include <deque>

#include "core/convert.h"
#include "host/application.h"
#include "host/change_recorder.h"
#include "host/objects.h"
#include "host/recalculation.h"
#include "host/references.h"
#include "host/shapes.h"

namespace vantora::embedded {

class Session::Impl {
 public:
  std::shared_ptr<ApplicationState> state = std::make_shared<ApplicationState>();
  // By workbook; empty while nothing is recorded.
  std::deque<ChangeRecorder> recorders;

  OpenWorkbook& workbook(int number = 0) { return *state->workbooks.at(number); }
  BookHandle book(int number = 0) { return {state, &workbook(number)}; }
  int WorksheetId(std::string_view name, int number);

  void RefuseOpenName(const std::string& name) {
    for (const auto& open : state->workbooks) {
      if (!EqualsIgnoreCase(open->file().name(), name)) continue;
      throw FileError(FileError::Code::kUnsupported,
                      "A workbook called \"" + name +
                          "\" is open already; two open workbooks can't have the same name.");
    }
  }

  // The first workbook sets the calculation mode, which is the application's, for all others.
  void Add(std::unique_ptr<WorkbookFile> file) {
    if (state->active_workbook) {
      const bool manual = workbook().model().manual_calculation;
      if (file->model().manual_calculation != manual) file->RecordCalculationMode();
      file->model().manual_calculation = manual;
    }
    state->workbooks.push_back(std::make_unique<OpenWorkbook>(std::move(file)));
    if (!state->active_workbook) state->active_workbook = state->workbooks.front().get();
  }
};

Session::Session() : impl_(std::make_unique<Impl>()) {}
Session::~Session() = default;

std::unique_ptr<Session> Session::Open(const std::filesystem::path& path) {
  std::unique_ptr<Session> session(new Session);
  session->impl_->Add(WorkbookFile::Open(path));
  return session;
}

std::unique_ptr<Session> Session::Create(const std::vector<std::string>& sheet_names) {
  std::unique_ptr<Session> session(new Session);
  session->impl_->Add(WorkbookFile::Create(sheet_names));
  return session;
}

int Session::OpenFurther(const std::filesystem::path& path) {
  impl_->RefuseOpenName(path.filename().string());
  impl_->Add(WorkbookFile::Open(path));
  return workbook_count() - 1;
}

int Session::CreateFurther(const std::string& name, const std::vector<std::string>& sheet_names) {
  impl_->RefuseOpenName(name);
  impl_->Add(WorkbookFile::Create(sheet_names, name));
  return workbook_count() - 1;
}

int Session::workbook_count() const { return static_cast<int>(impl_->state->workbooks.size()); }

void Session::ActivateWorkbook(int workbook) {
  impl_->state->active_workbook = &impl_->workbook(workbook);
}

host::ApplicationPtr Session::application() { return MakeApplication(impl_->state); }

WorkbookFile& Session::file(int workbook) { return impl_->workbook(workbook).file(); }

void Session::RecordChanges() {
  impl_->recorders.clear();
  for (const auto& workbook : impl_->state->workbooks) impl_->recorders.emplace_back(*workbook);
}

ChangeList Session::Changes(int workbook) {
  if (workbook >= static_cast<int>(impl_->recorders.size())) return {};
  Calculate(workbook);
  return impl_->recorders[workbook].Changes();
}

int Session::Impl::WorksheetId(std::string_view name, int number) {
  auto sheet = workbook(number).model().IdOf(name);
  if (!sheet || !workbook(number).sheet(*sheet).is_worksheet) {
    throw HostError(
        HostError::kSubscriptOutOfRange,
        "Subscript out of range: the workbook has no worksheet \"" + std::string(name) + "\".");
  }
  return *sheet;
}

host::WorksheetPtr Session::Worksheet(std::string_view name, int workbook) {
  return MakeWorksheet(impl_->book(workbook), impl_->WorksheetId(name, workbook));
}

std::vector<std::string> Session::ShapesOf(std::string_view sheet) {
  WorkbookFile& file = impl_->workbook().file();
  return ShapeNames(file.package(), file.part_of(impl_->WorksheetId(sheet, 0)));
}

host::RangePtr Session::Range(std::string_view reference, int workbook) {
  return ReferencedRange(impl_->book(workbook), reference);
}

void Session::SetVersion(std::string version) { impl_->state->version = std::move(version); }

void Session::SetPrompts(Prompts& prompts) { impl_->state->prompts = &prompts; }

void Session::DirectSaves(SaveDirector director) {
  impl_->state->saves.SetDirector(std::move(director));
}

const PendingSaves& Session::saves() const { return impl_->state->saves; }

std::vector<std::filesystem::path> Session::CommitSaves(
    std::vector<std::unique_ptr<ReplacementFile>> others) {
  return impl_->state->saves.Commit(std::move(others));
}

void Session::SetCaller(std::string_view shape) {
  OpenWorkbook& workbook = impl_->workbook();
  int sheet = workbook.active_sheet();
  if (auto name = ShapeOnSheet(workbook.file(), sheet, shape)) {
    impl_->state->caller = *std::move(name);
    return;
  }
  throw HostError(HostError::kApplicationDefined, "The sheet \"" + workbook.sheet(sheet).name +
                                                      "\" has no shape or control \"" +
                                                      std::string(shape) + "\".");
}

std::vector<WindowPlace> Session::Windows() {
  OpenWorkbook& workbook = impl_->workbook();
  std::vector<WindowPlace> places;
  for (int id : workbook.windows().order()) {
    const BookWindow& window = *workbook.windows().Find(id);
    places.push_back({workbook.sheet(window.active_sheet).name, window.place.left, window.place.top,
                      window.width(), window.height()});
  }
  return places;
}

void Session::SetUsableArea(double width, double height, bool full_screen) {
  impl_->state->usable_width = width;
  impl_->state->usable_height = height;
  impl_->state->full_screen = full_screen;
}

std::vector<MenuEntry> Session::MenuBar() const { return EntriesOf(*impl_->state->menu_bar); }

void Session::AddSheetRoutine(std::string_view routine) {
  impl_->workbook().AddSheetRoutine(routine);
}

const std::vector<std::string>& Session::SkippedRoutines() const {
  return impl_->workbook().skipped_routines();
}

std::vector<Uncalculated> Session::Calculate(int workbook) {
  return impl_->workbook(workbook).Calculate();
}

Recalculation Session::RecalculateAll() { return embedded::RecalculateAll(impl_->workbook()); }

std::unique_ptr<ReplacementFile> Session::WriteBeside(const std::filesystem::path& path,
                                                      int workbook) {
  return impl_->workbook(workbook).WriteBeside(path);
}

void Session::Save(const std::filesystem::path& path, int workbook) {
  impl_->workbook(workbook).Save(path);
}

}  // namespace vantora::embedded
