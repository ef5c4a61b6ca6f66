// Work on several threads.

#pragma once

#include <cstddef>
#include <functional>

namespace channelstrip::host {

// Calls work(0) ... work(count - 1), each once, on `threads` threads at most, the calling one
// included; where no more threads are to be had, those that there are do all the work. Returns once
// all calls have. After an exception no more calls begin, and the first one is thrown at the end.
void in_parallel(std::size_t count, std::size_t threads,
                 const std::function<void(std::size_t)>& work);

}  // namespace channelstrip::host
