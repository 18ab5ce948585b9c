#include "host/session.h"

#include "core/convert.h"
#include "host/application.h"
#include "host/change_recorder.h"
#include "host/objects.h"
#include "host/references.h"
#include "host/shapes.h"

namespace vantora::embedded {

struct Session::Impl {
  std::shared_ptr<ApplicationState> state = std::make_shared<ApplicationState>();
  std::optional<ChangeRecorder> recorder;

  OpenWorkbook& workbook() { return *state->workbooks.front(); }
  BookHandle book() { return {state, &workbook()}; }

  void Add(std::unique_ptr<WorkbookFile> file) {
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

host::ApplicationPtr Session::application() { return MakeApplication(impl_->state); }

WorkbookFile& Session::file() { return impl_->workbook().file(); }

void Session::RecordChanges() { impl_->recorder.emplace(impl_->workbook()); }

ChangeList Session::Changes() {
  if (!impl_->recorder) return {};
  Calculate();
  return impl_->recorder->Changes();
}

host::WorksheetPtr Session::Worksheet(std::string_view name) {
  auto sheet = impl_->workbook().model().IdOf(name);
  if (!sheet || !impl_->workbook().sheet(*sheet).is_worksheet) {
    throw HostError(
        HostError::kSubscriptOutOfRange,
        "Subscript out of range: the workbook has no worksheet \"" + std::string(name) + "\".");
  }
  return MakeWorksheet(impl_->book(), *sheet);
}

host::RangePtr Session::Range(std::string_view reference) {
  return ReferencedRange(impl_->book(), reference);
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

void Session::AddSheetRoutine(std::string_view routine) {
  impl_->workbook().AddSheetRoutine(routine);
}

std::vector<Uncalculated> Session::Calculate() { return impl_->workbook().Calculate(); }

void Session::Save(const std::filesystem::path& path) { impl_->workbook().Save(path); }

}  // namespace vantora::embedded
