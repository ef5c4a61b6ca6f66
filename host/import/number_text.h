// Numbers as other programs write them: with either decimal separator, thousands separators, units.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

inline bool is_digit(char c) {
  return '0' <= c && c <= '9';
}

// The words of `text` in capitals; a unit right after its number becomes a word of its own.
std::vector<std::string> capital_words(std::string_view text);

// Which of '.' and ',' is the decimal separator, judging by the number; 0 if it doesn't tell, as
// when there is one separator with three digits after it.
char decimal_separator(std::string_view number);

// For a number without thousands separators: both '.' and ',' are decimal, U+2212 is a minus too.
// Throws std::invalid_argument that says `what` the number is for.
double plain_number(std::string_view what, std::string text);

// For a number that may have thousands separators. The decimal separator is the one that the number
// itself shows, or else `decimal`, which the numbers beside it show; 0 if they show none. Throws
// likewise.
double grouped_number(std::string_view what, std::string text, char decimal);

// The gain in dB of "-6.0 dB". Throws likewise.
double parse_decibels(std::string_view text);

}  // namespace channelstrip::host
