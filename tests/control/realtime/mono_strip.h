// A mono strip for tests of threads, and threads that meet in all orders.

#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "strips.h"

namespace channelstrip::test {

// Calls each work again and again in a thread of its own, until each was called `rounds` times.
inline void run_together(int rounds, const std::vector<std::function<void()>>& works) {
  // Relaxed, so that they order nothing that the strip doesn't order itself.
  std::vector<std::atomic<int>> done(works.size());
  const auto are_done = [&] {
    return std::ranges::all_of(
        done, [=](const auto& each) { return each.load(std::memory_order_relaxed) >= rounds; });
  };
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < works.size(); ++i) {
    threads.emplace_back([&, i] {
      while (!are_done()) {
        works[i]();
        done[i].fetch_add(1, std::memory_order_relaxed);
      }
    });
  }
}

// So that threads meet in all orders.
inline void pause_at_times(std::minstd_rand& random) {
  if (random() % 16 == 0) std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
}

class Mono {
 public:
  explicit Mono(const channelstrip_settings* settings = nullptr)
      : strip_(strip_of(format_of("Mono"), settings)) {}

  channelstrip_strip* get() const { return strip_.get(); }

  void process(std::vector<float>& samples, const std::vector<channelstrip_event>& events = {}) {
    const float* const inputs[] = {samples.data()};
    float* const outputs[] = {samples.data()};
    const channelstrip_block block{.inputs = inputs,
                                   .key = nullptr,
                                   .outputs = outputs,
                                   .frames = static_cast<std::uint32_t>(samples.size()),
                                   .event_count = static_cast<std::uint32_t>(events.size()),
                                   .events = events.data()};
    succeed(channelstrip_strip_process(get(), &block));
  }

  void set(std::uint32_t id, double value) { succeed(channelstrip_strip_set(get(), id, value)); }
  void set(const Settings& settings) {
    succeed(channelstrip_strip_set_settings(get(), settings.get()));
  }

  Settings settings() const {
    Settings settings(channelstrip_settings_new());
    succeed(channelstrip_strip_get_settings(get(), settings.get()));
    return settings;
  }

 private:
  LiveStripPointer strip_;
};

inline double value_of(const Settings& settings, std::uint32_t id) {
  double value = 0;
  succeed(channelstrip_settings_get(settings.get(), id, &value));
  return value;
}

inline std::string text_of(const Settings& settings) {
  std::string text(20000, '\0');
  std::size_t length = 0;
  succeed(channelstrip_settings_write(settings.get(), text.data(), text.size(), &length));
  text.resize(length);
  return text;
}

}  // namespace channelstrip::test
