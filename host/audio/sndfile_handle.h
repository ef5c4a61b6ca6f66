// libsndfile's handle.

#pragma once

#include <sndfile.h>

#include <functional>
#include <memory>
#include <string>

namespace channelstrip::host {

struct CloseSndfile {
  void operator()(SNDFILE* file) const { sf_close(file); }
};
using Sndfile = std::unique_ptr<SNDFILE, CloseSndfile>;

// The result of `open`, called by one thread at a time: libsndfile keeps the message of a failed
// open in one place for all threads. Throws as fail_on() does.
Sndfile opened(const std::string& path, const std::function<Sndfile()>& open);

}  // namespace channelstrip::host
