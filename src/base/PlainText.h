#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Text from outside, as it may be shown. [any]
namespace volvelle {

// How many bytes from the start on are whole characters in UTF-8.
std::size_t utf8Length(std::string_view bytes);

// The number of one whole character in UTF-8.
char32_t codePointOf(std::string_view character);

// The bytes of a text as UTF-8: as they are where they are that, else each as the character of its number.
std::string utf8Text(std::string_view bytes);

// A text in UTF-8 with small letters for capitals, of any script.
std::string smallLetters(std::string_view text);

// A text as UTF-8 with a question mark for each control character but tabs and line ends, and for each mark
// that turns the direction of writing; a line end for each separator of lines or paragraphs.
std::string plainText(std::string_view text);

// The same in one line, with a space for each tab and line end.
std::string plainLine(std::string_view text);

} // namespace volvelle
