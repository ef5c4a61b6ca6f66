#include "sndfile_handle.h"

#include <mutex>

#include "../system/output_file.h"

namespace channelstrip::host {

Sndfile opened(const std::string& path, const std::function<Sndfile()>& open) {
  static std::mutex opening;
  const std::scoped_lock lock(opening);
  Sndfile file = open();
  if (!file) fail_on(path, sf_strerror(nullptr));
  return file;
}

}  // namespace channelstrip::host
