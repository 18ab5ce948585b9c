#include "host/session.h"

#include <deque>

#include "core/convert.h"
#include "host/application.h"
#include "host/change_recorder.h"
#include "host/objects.h"
#include "host/references.h"
#include "host/shapes.h"

namespace vantora::embedded {

struct Session::Impl {
  std::shared_ptr<ApplicationState> state = std::make_shared<ApplicationState>();
  // By workbook; empty while nothing is recorded.
  std::deque<ChangeRecorder> recorders;

  OpenWorkbook& workbook(int number = 0) { return *state->workbooks.at(number); }
  BookHandle book(int number = 0) { return {state, &workbook(number)}; }

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

host::WorksheetPtr Session::Worksheet(std::string_view name, int workbook) {
  auto sheet = impl_->workbook(workbook).model().IdOf(name);
  if (!sheet || !impl_->workbook(workbook).sheet(*sheet).is_worksheet) {
    throw HostError(
        HostError::kSubscriptOutOfRange,
        "Subscript out of range: the workbook has no worksheet \"" + std::string(name) + "\".");
  }
  return MakeWorksheet(impl_->book(workbook), *sheet);
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

std::vector<std::filesystem::path> Session::CommitSaves() { return impl_->state->saves.Commit(); }

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

std::vector<Uncalculated> Session::Calculate(int workbook) {
  return impl_->workbook(workbook).Calculate();
}

std::unique_ptr<ReplacementFile> Session::WriteBeside(const std::filesystem::path& path,
                                                      int workbook) {
  return impl_->workbook(workbook).WriteBeside(path);
}

void Session::Save(const std::filesystem::path& path, int workbook) {
  impl_->workbook(workbook).Save(path);
}

}  // namespace vantora::embedded
