#include "host/system/parallel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <latch>
#include <stdexcept>
#include <thread>
#include <vector>

namespace channelstrip::test::parallel_test {
namespace {

using host::in_parallel;

TEST(Parallel, CallsEachOnce) {
  for (const std::size_t threads : {1u, 2u, 7u, 200u}) {
    std::vector<std::atomic<int>> calls(100);
    in_parallel(calls.size(), threads, [&](std::size_t i) { ++calls[i]; });
    EXPECT_TRUE(std::ranges::all_of(calls, [](const auto& count) { return count == 1; }));
  }
  in_parallel(0, 2, [](std::size_t) { FAIL(); });
}

TEST(Parallel, RunsAtTheSameTime) {
  std::latch both(2);
  in_parallel(2, 2, [&](std::size_t) { both.arrive_and_wait(); });
}

TEST(Parallel, OneThreadIsTheCallingOne) {
  in_parallel(3, 1, [caller = std::this_thread::get_id()](std::size_t) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
  });
}

TEST(Parallel, ThrowsOnceAllCallsHaveReturned) {
  std::latch both(2);
  std::atomic<int> returned = 0;
  const auto work = [&](std::size_t i) {
    if (i >= 2) ADD_FAILURE() << "call " << i << " began after an exception";
    both.arrive_and_wait();
    if (i == 0) throw std::runtime_error("first");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ++returned;
    throw std::logic_error("second");
  };
  EXPECT_THROW(in_parallel(100, 2, work), std::runtime_error);
  EXPECT_EQ(returned, 1);
}

}  // namespace
}  // namespace channelstrip::test::parallel_test
