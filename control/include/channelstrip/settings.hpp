// A value for every parameter, and link maps. Functions without a thread are the [owner]'s.

#ifndef CHANNELSTRIP_SETTINGS_HPP
#define CHANNELSTRIP_SETTINGS_HPP

#include <channelstrip/channelstrip.h>
#include <channelstrip/error.hpp>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace channelstrip {

class Settings {
 public:
  // The initial ones. [any]
  Settings() : settings_(channelstrip_settings_new()) {
    if (!settings_) throw Error(CHANNELSTRIP_NO_MEMORY);
  }

  // Makes these what the others are. [owner of both]
  void assign(const Settings& from) {
    detail::check(channelstrip_settings_copy(get(), from.get()));
  }

  void set(std::uint32_t id, double value) {
    detail::check(channelstrip_settings_set(get(), id, value));
  }
  double value(std::uint32_t id) const {
    double value = 0;
    detail::check(channelstrip_settings_get(get(), id, &value));
    return value;
  }

  void set_links(std::uint32_t format, const std::string& map) {
    detail::check(channelstrip_settings_set_links(get(), format, map.c_str()));
  }
  std::string links(std::uint32_t format) const {
    return detail::text_of([=, this](char* text, std::size_t size, std::size_t* length) {
      return channelstrip_settings_get_links(get(), format, text, size, length);
    });
  }

  std::string write() const {
    return detail::text_of([this](char* text, std::size_t size, std::size_t* length) {
      return channelstrip_settings_write(get(), text, size, length);
    });
  }

  void read(std::string_view toml) {
    detail::check(channelstrip_settings_read(get(), toml.data(), toml.size(), nullptr, nullptr));
  }
  // Calls report(line, column, what) for what was read otherwise than it is written. What it throws
  // ends the reports and comes out of here.
  template <class Report>
  void read(std::string_view toml, Report&& report) {
    struct Reports {
      std::remove_reference_t<Report>& report;
      std::exception_ptr thrown;
    } reports{report, nullptr};
    const Status status = channelstrip_settings_read(
        get(), toml.data(), toml.size(),
        [](void* user, std::uint32_t line, std::uint32_t column, const char* what) {
          auto& to = *static_cast<Reports*>(user);
          if (to.thrown) return;
          try {
            to.report(line, column, std::string_view(what));
          } catch (...) {
            to.thrown = std::current_exception();
          }
        },
        &reports);
    if (reports.thrown) std::rethrow_exception(reports.thrown);
    detail::check(status);
  }

  std::vector<channelstrip_adjustment> adjustments(double sample_rate) const {
    std::uint32_t total = 0;
    detail::check(channelstrip_settings_adjustments(get(), sample_rate, nullptr, 0, &total));
    std::vector<channelstrip_adjustment> all(total);
    detail::check(channelstrip_settings_adjustments(get(), sample_rate, all.data(), total, &total));
    return all;
  }

  // As many decibels as frequencies. [any; owner]
  void response(double sample_rate, std::uint32_t part, std::span<const double> frequencies,
                std::span<double> decibels) const {
    if (decibels.size() != frequencies.size()) throw Error(CHANNELSTRIP_INVALID);
    detail::check(channelstrip_settings_response(get(), sample_rate, part, frequencies.data(),
                                                 decibels.data(),
                                                 detail::count_of(frequencies.size())));
  }

  // As many of each as levels; none of what isn't wanted. [any; owner]
  void static_gains(bool gate_open, std::span<const double> levels, std::span<double> compressor,
                    std::span<double> expander) const {
    const auto fits = [&](auto gains) { return gains.empty() || gains.size() == levels.size(); };
    if (!fits(compressor) || !fits(expander)) throw Error(CHANNELSTRIP_INVALID);
    detail::check(channelstrip_settings_static_gains(
        get(), gate_open ? 1 : 0, levels.data(), compressor.empty() ? nullptr : compressor.data(),
        expander.empty() ? nullptr : expander.data(), detail::count_of(levels.size())));
  }

  // For the functions in C. Null in an object that was moved from.
  channelstrip_settings* get() const noexcept { return settings_.get(); }

 private:
  struct Free {
    void operator()(channelstrip_settings* settings) const noexcept {
      channelstrip_settings_free(settings);
    }
  };
  std::unique_ptr<channelstrip_settings, Free> settings_;
};

static_assert(sizeof(Settings) == sizeof(void*));

}  // namespace channelstrip

#endif
