#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace channelstrip::host {

void in_parallel(std::size_t count, std::size_t threads,
                 const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next = 0;
  std::atomic<bool> stop = false;
  std::mutex mutex;
  std::exception_ptr failure;
  // No exception may leave a thread.
  const auto take_turns = [&]() noexcept {
    try {
      for (std::size_t i = 0; !stop && (i = next++) < count;) work(i);
    } catch (...) {
      const std::scoped_lock lock(mutex);
      if (!failure) failure = std::current_exception();
      stop = true;
    }
  };
  {
    std::vector<std::jthread> others;
    try {
      while (others.size() + 1 < std::min(threads, count)) others.emplace_back(take_turns);
    } catch (const std::system_error&) {
    }
    take_turns();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace channelstrip::host
