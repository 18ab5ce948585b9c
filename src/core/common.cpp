#include "core/common.h"

#include "core/convert.h"

namespace vantora {
namespace {

constexpr int kLargestFlagNumber = 5000;

// The text of the flag cell; nullopt when there is none to search.
std::optional<std::string> FlagCellText(host::Worksheet& sheet) {
  Value value = sheet.Cells(1, 1)->Value();
  if (value.IsEmpty() || value.IsError()) return std::nullopt;
  return ValueToText(value);
}

std::string_view NumberedMessage(int number) {
  return number == kInvalidGlobals
             ? "Class initiated with invalid clsGlobals object"
             : "clsGlobals was not initialized with the Excel application object";
}

std::string Paragraph(std::string_view text) {
  std::string paragraph(text);
  paragraph += kLineBreak;
  paragraph += kLineBreak;
  return paragraph;
}

std::string NoVersionInformation(int step) {
  return std::to_string(step) + ": No version information available for DLL";
}

// A little-endian 16-bit number.
unsigned WordAt(const std::vector<std::byte>& bytes, std::size_t at) {
  return std::to_integer<unsigned>(bytes[at]) | std::to_integer<unsigned>(bytes[at + 1]) << 8;
}

std::string TextUpToNul(const std::vector<std::byte>& bytes) {
  std::string text;
  for (std::byte byte : bytes) {
    if (byte == std::byte{0}) break;
    text += std::to_integer<char>(byte);
  }
  return text;
}

}  // namespace

bool SheetHasFlag(const host::WorksheetPtr& sheet, std::string_view flag) {
  if (!sheet) return false;
  std::optional<std::string> text = FlagCellText(*sheet);
  return text && FindIgnoreCase(*text, flag);
}

int FlagNumber(const host::WorksheetPtr& sheet, std::string_view flag, int default_number) {
  std::optional<std::string> text = FlagCellText(*sheet);
  if (!text) return default_number;
  std::optional<std::size_t> position = FindIgnoreCase(*text, flag);
  if (!position || *position == text->size()) return default_number;
  std::optional<int> number =
      NumberToInteger(LeadingNumber(std::string_view(*text).substr(*position + 1)));
  return number && *number > 0 && *number <= kLargestFlagNumber ? *number : default_number;
}

host::WorkbookPtr ActiveWorkbookOf(host::Application& application) {
  host::WorkbookPtr workbook = application.ActiveWorkbook();
  if (!workbook) throw MacroError(HostError::kObjectNotSet, "No workbook is open.");
  return workbook;
}

host::WindowPtr ActiveWindowOf(host::Application& application) {
  host::WindowPtr window = application.ActiveWindow();
  if (!window) throw MacroError(HostError::kObjectNotSet, "No window is open.");
  return window;
}

host::WorksheetPtr ActiveWorksheetOf(host::Application& application) {
  host::WorksheetPtr sheet = application.ActiveSheet();
  if (!sheet && application.ActiveWorkbook()) {
    throw MacroError(HostError::kTypeMismatch, "Type mismatch: the active sheet is no worksheet.");
  }
  return sheet;
}

host::WorksheetPtr FindFlaggedSheet(host::Application& application, std::string_view flag) {
  host::WorksheetPtr active = application.ActiveSheet();
  if (SheetHasFlag(active, flag)) return active;
  host::WorkbookPtr workbook = application.ActiveWorkbook();
  if (!workbook) return nullptr;
  for (const host::WorksheetPtr& sheet : workbook->Worksheets()) {
    if (SheetHasFlag(sheet, flag)) return sheet;
  }
  return nullptr;
}

MessageBoxResult ConfirmSaveFirst(UserInterface& user_interface, std::string_view preface) {
  std::string text;
  if (!preface.empty()) text += Paragraph(preface);
  text +=
      Paragraph("It's a good idea to save your model before doing this, as it is not undo-able.");
  text += "If you're ready to let it continue, click OK, else click Cancel.";
  return user_interface.MessageBox(text, kOkCancel | kExclamation, kProductName);
}

void ReportProgrammingError(UserInterface& user_interface, const ProgrammingError& error) {
  std::string text = Paragraph(
      "A programming error has been encountered.  Please record the information below "
      "and contact Vantora support with these details ");
  if (error.module) text += Paragraph("Module: " + std::string(*error.module));
  if (error.number && *error.number > 0) {
    text += *error.number > kNoApplication
                ? Paragraph("error message #: " + std::to_string(*error.number))
                : Paragraph(NumberedMessage(*error.number));
  }
  if (error.detail) text += Paragraph(*error.detail);
  user_interface.MessageBox(text, kOkOnly | kCritical, kProductName);
}

void BringToFront(UserInterface& user_interface, WindowHandle window) {
  WindowSystem* windows = user_interface.windows();
  if (!windows) return;
  if (windows->ThreadOf(windows->Foreground()) != windows->ThreadOf(window)) {
    user_interface.DoEvents();
    return;
  }
  windows->SetForeground(window);
}

std::string LookUpVersion(FileVersions& file_versions) {
  std::string path = file_versions.ProgramFilesFolder() + "\\Orvane\\Vantora\\Orvanemcro1.dll";
  std::size_t size = file_versions.Size(path);
  if (size == 0) return NoVersionInformation(1);
  auto information = file_versions.Read(path, size);
  if (!information) return NoVersionInformation(2);
  auto translation = file_versions.Query(*information, "\\VarFileInfo\\Translation");
  if (!translation || translation->size() < 4) return NoVersionInformation(3);
  std::string entry = "\\StringFileInfo\\" + ZeroPaddedHex(WordAt(*translation, 0), 4) +
                      ZeroPaddedHex(WordAt(*translation, 2), 4) + "\\FileVersion";
  auto version = file_versions.Query(*information, entry);
  return "Vantora DLL version being used: " + (version ? TextUpToNul(*version) : "Not Available");
}

}  // namespace vantora
