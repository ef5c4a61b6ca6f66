#include <gtest/gtest.h>
#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>

#include <array>
#include <barrier>
#include <deque>
#include <thread>
#include <vector>

namespace channelstrip::test::thread_test {
namespace {

constexpr size_t kThreads = 8;
constexpr size_t kStripsPerThread = 64;
constexpr int kCalls = 10;

// The strips of all threads, allocated in turn, so that neighbours in memory belong to different
// threads.
class Instances {
 public:
  Instances() {
    const auto formats = host::stem_formats();
    for (size_t i = 0; i < kThreads * kStripsPerThread; ++i) {
      const size_t format = i / kThreads % formats.size();
      BusyStrip& strip = strips_.emplace_back(formats[format].name, 32, static_cast<unsigned>(i));
      if (i % 3 == 1) {
        strip.key_index = strip.channels;
        strip.dyn.keyEnable = strip.dyn.detectorMode = 1;
      }
      ranges_[i % kThreads][format].push_back(strip.context());
    }
    for (const host::StemFormat& format : formats) entries_.push_back(entry_point(format));
  }

  // One call per format.
  void process(size_t thread) const {
    for (size_t format = 0; format < entries_.size(); ++format) {
      const auto& range = ranges_[thread][format];
      entries_[format](range.data(), range.data() + range.size());
    }
  }

  const std::deque<BusyStrip>& strips() const { return strips_; }

 private:
  using Range = std::vector<const SChannelStrip_Alg_Context*>;
  std::deque<BusyStrip> strips_;
  std::array<std::array<Range, 11>, kThreads> ranges_;
  std::vector<AlgEntry_16_Stem*> entries_;
};

TEST(Threads, DisjointInstancesComeOutAsInTurn) {
  Instances at_once, in_turn;
  for (int call = 0; call < kCalls; ++call) {
    {
      std::barrier together(kThreads);
      std::vector<std::jthread> threads;
      for (size_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
          together.arrive_and_wait();
          at_once.process(thread);
        });
      }
    }
    for (size_t thread = 0; thread < kThreads; ++thread) in_turn.process(thread);
    // After every call, before the filters forget a difference.
    for (size_t i = 0; i < at_once.strips().size(); ++i) {
      const Strip& strip = at_once.strips()[i];
      ASSERT_EQ(differences(strip, in_turn.strips()[i]), "") << "strip " << i << ", call " << call;
      ASSERT_GT(strip.output_peak(0), 0) << "strip " << i;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::thread_test
