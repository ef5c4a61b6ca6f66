#include "encoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace channelstrip::host {
namespace {

struct CloseConversion {
  void operator()(iconv_t conversion) const { iconv_close(conversion); }
};
using Conversion = std::unique_ptr<std::remove_pointer_t<iconv_t>, CloseConversion>;

// None where the bytes aren't text of that encoding.
std::optional<std::string> converted(std::string_view bytes, const char* encoding) {
  iconv_t opened = iconv_open("UTF-8", encoding);
  if (reinterpret_cast<std::intptr_t>(opened) == -1) {
    throw std::runtime_error(std::string("no conversion from ") + encoding + ": " +
                             strerror(errno));
  }
  const Conversion conversion(opened);
  std::string text(2 * bytes.size(), '\0');  // UTF-16 grows by half, ISO 8859-1 twofold
  char* from = const_cast<char*>(bytes.data());
  char* to = text.data();
  std::size_t unread = bytes.size();
  std::size_t room = text.size();
  if (iconv(opened, &from, &unread, &to, &room) == static_cast<std::size_t>(-1)) {
    return std::nullopt;
  }
  text.resize(text.size() - room);
  return text;
}

}  // namespace

std::string to_utf8(std::string_view bytes) {
  constexpr std::pair<std::string_view, const char*> kMarks[] = {
      {"\xEF\xBB\xBF", "UTF-8"}, {"\xFF\xFE", "UTF-16LE"}, {"\xFE\xFF", "UTF-16BE"}};
  for (const auto& [mark, encoding] : kMarks) {
    if (!bytes.starts_with(mark)) continue;
    if (auto text = converted(bytes.substr(mark.size()), encoding)) return *text;
  }
  if (auto text = converted(bytes, "UTF-8")) return *text;
  return converted(bytes, "ISO-8859-1").value();
}

}  // namespace channelstrip::host
