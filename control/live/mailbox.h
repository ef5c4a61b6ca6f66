// Hands messages from one thread to another without waiting on either side.
//
// Three slots: the writer has one, the reader another, and the third lies between them. A message
// that the reader hasn't taken is replaced by one that holds both. So nothing is lost, nothing is
// seen twice, and nothing is torn.

#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace channelstrip::host {

template <class Message>
class Mailbox {
 public:
  // The writer's. `append(older, later)` makes of a message that wasn't read one with both.
  template <class Append>
  void write(const Message& message, Append append) {
    std::uint32_t between = between_.load(std::memory_order_acquire);
    if (between & kUnread) {
      // Nobody writes to it: the reader may look at it meanwhile, but so may the writer.
      slots_[writers_] = slots_[between & kIndex];
      append(slots_[writers_], message);
      if (between_.compare_exchange_strong(between, writers_ | kUnread,
                                           std::memory_order_acq_rel)) {
        writers_ = between & kIndex;
        return;
      }
    }
    // The reader has taken everything before, and won't take anything until there is more.
    slots_[writers_] = message;
    writers_ = between_.exchange(writers_ | kUnread, std::memory_order_acq_rel) & kIndex;
  }

  // The writer's: whether the reader hasn't taken the last message.
  bool is_unread() const { return (between_.load(std::memory_order_relaxed) & kUnread) != 0; }

  // The reader's: what was written since the last call, valid until the next; null if nothing was.
  const Message* read() {
    if ((between_.load(std::memory_order_relaxed) & kUnread) == 0) return nullptr;
    readers_ = between_.exchange(readers_, std::memory_order_acq_rel) & kIndex;
    return &slots_[readers_];
  }

 private:
  static constexpr std::uint32_t kIndex = 3, kUnread = 4;

  std::array<Message, 3> slots_ = {};
  std::atomic<std::uint32_t> between_{1};
  std::uint32_t writers_ = 0, readers_ = 2;
  static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
};

}  // namespace channelstrip::host
