#include "sndfile_handle.h"

#include <fmt/format.h>

#include <mutex>
#include <stdexcept>

namespace channelstrip::host {

void fail_on(const std::string& path, std::string_view what) {
  const std::string_view plain = what.substr(0, what.find_last_not_of(".\n") + 1);
  throw std::runtime_error(fmt::format("{}: {}", path, plain));
}

Sndfile opened(const std::string& path, const std::function<Sndfile()>& open) {
  static std::mutex opening;
  const std::scoped_lock lock(opening);
  Sndfile file = open();
  if (!file) fail_on(path, sf_strerror(nullptr));
  return file;
}

}  // namespace channelstrip::host
