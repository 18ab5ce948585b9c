// The smallest pieces of formula text, shared by reading and compiling formulas.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/value.h"

namespace vantora::embedded {

// Stands for a reference in Formula::text.
inline constexpr char kReferenceMark = '\x01';

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
inline bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
// Letters beyond ASCII are taken as they come; no operator is one.
inline bool IsBeyondAscii(char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; }
inline bool IsNameStart(char c) { return IsLetter(c) || c == '_' || c == '\\' || IsBeyondAscii(c); }
inline bool IsNameCharacter(char c) { return IsNameStart(c) || IsDigit(c) || c == '.' || c == '?'; }
inline bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

inline char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
std::string UpperAscii(std::string_view text);
bool EqualIgnoringAsciiCase(std::string_view a, std::string_view b);

// Each returns the position behind what starts at `position`, or the end of the text when it is not
// closed: a "text" in quotes (doubled quotes inside), a [bracketed] part (nested, ' escapes), a run
// of name characters and `$`, a number.
std::size_t EndOfQuoted(std::string_view text, std::size_t position);
std::size_t EndOfBrackets(std::string_view text, std::size_t position);
std::size_t EndOfName(std::string_view text, std::size_t position);
std::size_t EndOfNumber(std::string_view text, std::size_t position);

// The length of the error value's name that starts at `position` ("#DIV/0!"), 0 when there is none.
std::size_t ErrorNameLength(std::string_view text, std::size_t position);
// The error of that name; nullopt for the newer ones that have no code here ("#SPILL!").
std::optional<CellError> ErrorOfName(std::string_view name);
std::string_view NameOfError(CellError error);

}  // namespace vantora::embedded
