// Numbers in other programs' words: either decimal separator, separators of thousands, units.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

inline bool is_digit(char c) {
  return '0' <= c && c <= '9';
}

// In capitals; a unit that sticks to its number is a word of its own.
std::vector<std::string> capital_words(std::string_view text);

// What a number's separators say about which of '.' and ',' is the decimal one; 0: nothing, as with
// three digits behind a single one.
char decimal_separator(std::string_view number);

// Without separators of thousands; '.' and ',' are both decimal, U+2212 is a minus too. Throws
// std::invalid_argument, naming `what` it is.
double plain_number(std::string_view what, std::string text);

// With separators of thousands, told by the number itself or by `decimal`, the separator that other
// numbers beside it show; 0: they don't. Throws likewise.
double grouped_number(std::string_view what, std::string text, char decimal);

// The gain in dB of "-6.0 dB". Throws likewise.
double parse_decibels(std::string_view text);

}  // namespace channelstrip::host
