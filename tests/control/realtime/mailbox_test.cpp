// Messages from one thread to another.

#include "control/live/mailbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

namespace channelstrip::test::mailbox_test {
namespace {

using host::Mailbox;

// What was written from `first` to `last`, each number once.
struct Numbers {
  std::uint32_t first = 0, last = 0;
  std::array<std::uint32_t, 100> copies = {};  // of the last

  bool is_whole() const {
    return std::ranges::all_of(copies, [&](std::uint32_t copy) { return copy == last; });
  }
};

Numbers number(std::uint32_t n) {
  Numbers numbers{.first = n, .last = n};
  numbers.copies.fill(n);
  return numbers;
}

void append(Numbers& older, const Numbers& later) {
  older.last = later.last;
  older.copies = later.copies;
}

TEST(Mailbox, IsEmptyUntilSomethingIsWrittenAndAfterItWasRead) {
  Mailbox<Numbers> mailbox;
  EXPECT_EQ(mailbox.read(), nullptr);
  mailbox.write(number(1), append);
  EXPECT_NE(mailbox.read(), nullptr);
  EXPECT_EQ(mailbox.read(), nullptr);
}

TEST(Mailbox, AppendsToWhatWasNotRead) {
  Mailbox<Numbers> mailbox;
  std::uint32_t written = 0;
  for (const std::uint32_t count : {1u, 2u, 3u, 1u, 1u, 7u}) {
    for (std::uint32_t i = 0; i < count; ++i) mailbox.write(number(++written), append);
    const Numbers* const read = mailbox.read();
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->first, written - count + 1);
    EXPECT_EQ(read->last, written);
    EXPECT_TRUE(read->is_whole());
  }
}

TEST(Mailbox, KeepsWhatWasReadUntilTheNextReading) {
  Mailbox<Numbers> mailbox;
  mailbox.write(number(1), append);
  const Numbers* const read = mailbox.read();
  for (std::uint32_t n = 2; n < 6; ++n) mailbox.write(number(n), append);
  EXPECT_EQ(read->first, 1u);
  EXPECT_EQ(read->last, 1u);
}

TEST(Mailbox, LosesRepeatsAndTearsNothingBetweenThreads) {
  constexpr std::uint32_t kMessages = 100000;
  Mailbox<Numbers> mailbox;
  // Halfway the writer waits for a reading, so that it can't be done before the first.
  std::atomic<bool> has_read = false;
  std::jthread writer([&] {
    for (std::uint32_t n = 1; n <= kMessages; ++n) {
      if (n == kMessages / 2) has_read.wait(false);
      mailbox.write(number(n), append);
    }
  });
  std::uint32_t last = 0, readings = 0;
  while (last < kMessages) {
    const Numbers* const read = mailbox.read();
    if (!read) continue;
    has_read = true;
    has_read.notify_one();
    ASSERT_EQ(read->first, last + 1);
    ASSERT_GE(read->last, read->first);
    ASSERT_TRUE(read->is_whole());
    last = read->last;
    ++readings;
  }
  EXPECT_GT(readings, 1u);
}

}  // namespace
}  // namespace channelstrip::test::mailbox_test
