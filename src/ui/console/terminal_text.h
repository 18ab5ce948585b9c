// Text as a terminal shows it: without control characters, measured and cut in columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantora::ui {

// The text with every control character but the line break replaced by '?', so that a text of a
// workbook can't steer the terminal it is shown on. Bytes that are no UTF-8 become '?' as well.
std::string Printable(std::string_view text);

// True when a text that was typed can go into a workbook: valid UTF-8 without control characters
// (a tab is none).
bool IsPlainText(std::string_view text);

// Columns the text takes on a terminal: two for East Asian wide characters, none for combining
// marks.
int DisplayWidth(std::string_view text);

// The text's longest start that fits into `width` columns, ended by "..." when something was cut.
std::string CutToWidth(std::string_view text, int width);

// The text in lines of at most `width` columns, broken at blanks where there are some; line breaks
// stay. An empty text is one empty line.
std::vector<std::string> WrapText(std::string_view text, int width);

// A control's caption without its accelerator marks ("&Cancel" is "Cancel", "&&" is "&").
std::string WithoutAccelerators(std::string_view caption);

}  // namespace vantora::ui
