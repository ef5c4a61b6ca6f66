// A strip in memory of its own. For one in memory of the caller's there are the functions in C
// alone.

#ifndef CHANNELSTRIP_STRIP_HPP
#define CHANNELSTRIP_STRIP_HPP

#include <channelstrip/channelstrip.h>
#include <channelstrip/error.hpp>
#include <channelstrip/settings.hpp>

#include <cstdint>
#include <memory>
#include <span>

namespace channelstrip {

class Strip {
 public:
  // In memory of its own. [any]
  explicit Strip(const channelstrip_strip_options& options) {
    channelstrip_strip* strip = nullptr;
    detail::check(channelstrip_strip_new(&options, &strip));
    strip_.reset(strip);
  }

  // [audio]
  [[nodiscard]] Status process(const channelstrip_block& block) noexcept {
    return channelstrip_strip_process(get(), &block);
  }
  // [audio]
  [[nodiscard]] Status process(const float* const* inputs, float* const* outputs,
                               std::uint32_t frames, const float* key = nullptr,
                               std::span<const channelstrip_event> events = {}) noexcept {
    return process({inputs, key, outputs, frames, detail::count_of(events.size()), events.data()});
  }
  // A block for each strip. [audio]
  [[nodiscard]] static Status process_many(std::span<channelstrip_strip* const> strips,
                                           std::span<const channelstrip_block> blocks) noexcept {
    if (strips.size() != blocks.size()) return CHANNELSTRIP_INVALID;
    return channelstrip_strip_process_many(strips.data(), blocks.data(),
                                           detail::count_of(strips.size()));
  }
  // [audio]
  Status reset() noexcept { return channelstrip_strip_reset(get()); }

  // [control]
  [[nodiscard]] Status set(std::uint32_t id, double value) noexcept {
    return channelstrip_strip_set(get(), id, value);
  }
  Status set(const Settings& settings) noexcept {
    return channelstrip_strip_set_settings(get(), settings.get());
  }
  Status read_settings(Settings& settings) noexcept {
    return channelstrip_strip_get_settings(get(), settings.get());
  }

  // Whether anything was processed since the last reading; if not, `meters` stays. [meters]
  bool read_meters(channelstrip_meters& meters) noexcept {
    std::uint32_t has_news = 0;
    channelstrip_strip_read_meters(get(), &meters, sizeof meters, &has_news);
    return has_news != 0;
  }

  // For the functions in C. Null in an object that was moved from.
  channelstrip_strip* get() const noexcept { return strip_.get(); }

 private:
  struct Free {
    void operator()(channelstrip_strip* strip) const noexcept { channelstrip_strip_free(strip); }
  };
  std::unique_ptr<channelstrip_strip, Free> strip_;
};

static_assert(sizeof(Strip) == sizeof(void*));

}  // namespace channelstrip

#endif
