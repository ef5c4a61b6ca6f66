#include "xml.h"

#include <algorithm>

namespace channelstrip::host {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

bool continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Bytes of the character that `text` begins with; 0 if that is no UTF-8 (RFC 3629): overlong,
// a surrogate or above U+10FFFF, or one of U+FFFE and U+FFFF.
std::size_t character_size(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return 0;
  if (!std::ranges::all_of(text.substr(1, size - 1), continues)) return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second >= 0xA0;
  const bool too_great = lead == 0xF4 && second >= 0x90;
  const std::string_view character = text.substr(0, size);
  const bool no_character = character == "\uFFFE" || character == "\uFFFF";
  return overlong || surrogate || too_great || no_character ? 0 : size;
}

std::string_view escape(std::string_view character) {
  switch (const char c = character[0]) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    case '\t':
    case '\n':
      return character;
    default:
      return static_cast<unsigned char>(c) < ' ' || c == 127 ? kReplacement : character;
  }
}

}  // namespace

std::string escape_xml(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const std::size_t size = character_size(text);
    escaped += size == 0 ? kReplacement : escape(text.substr(0, size));
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return escaped;
}

int length(std::string_view text) {
  return static_cast<int>(std::ranges::count_if(text, [](char byte) { return !continues(byte); }));
}

}  // namespace channelstrip::host
