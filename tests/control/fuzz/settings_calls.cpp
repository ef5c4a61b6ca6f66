#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "caller.h"

namespace channelstrip::test {

std::string text_of(const channelstrip_settings* settings) {
  if (!settings) return "";
  std::size_t length = 0;
  channelstrip_settings_write(settings, nullptr, 0, &length);
  std::string text(length + 1, 'x');
  demand(
      channelstrip_settings_write(settings, text.data(), text.size(), nullptr) == CHANNELSTRIP_OK,
      "settings aren't written into as much room as they said");
  demand(text[length] == '\0', "a text ends without a zero");
  text.resize(length);
  return text;
}

void Caller::change_settings(Bytes& bytes) {
  channelstrip_settings* const settings = some_settings(bytes);
  const AnyValue any = any_value(bytes);
  const std::string before = text_of(settings);
  if (channelstrip_settings_set(settings, any.id, any.value) != CHANNELSTRIP_OK) {
    demand(text_of(settings) == before, "settings_set failed and changed something");
    return;
  }
  demand(std::isfinite(any.value), "settings_set took a value that isn't finite");
  double value = 0;
  demand(channelstrip_settings_get(settings, any.id, &value) == CHANNELSTRIP_OK,
         "what was set can't be got");
  double again = 0;
  channelstrip_settings_set(settings, any.id, value);
  channelstrip_settings_get(settings, any.id, &again);
  demand(value == again, "a legal value isn't kept");
}

void Caller::set_links(Bytes& bytes) {
  channelstrip_settings* const settings = some_settings(bytes);
  const std::uint32_t format = any_format(bytes);
  const std::string map = any_word(bytes), before = text_of(settings);
  if (channelstrip_settings_set_links(settings, format, map.c_str()) != CHANNELSTRIP_OK) {
    demand(text_of(settings) == before, "set_links failed and changed something");
    return;
  }
  char text[64] = {};
  std::size_t length = 0;
  demand(channelstrip_settings_get_links(settings, format, text, sizeof text, &length) ==
             CHANNELSTRIP_OK,
         "a link map that was set can't be got");
  demand((length == 0) == map.empty(), "a link map is lost");
}

void Caller::read_text(Bytes& bytes) {
  channelstrip_settings* const settings = some_settings(bytes);
  const std::string text = any_toml(bytes), before = text_of(settings);
  const auto report = +[](void* user, std::uint32_t line, std::uint32_t column, const char* what) {
    demand(what && *what != '\0' && std::string(what).find('\n') == std::string::npos,
           "a report isn't one line");
    demand(line > 0 && column > 0, "a report has no place");
    ++*static_cast<int*>(user);
  };
  int reports = 0;
  const channelstrip_status status =
      channelstrip_settings_read(settings, text.data(), text.size(), report, &reports);
  if (status == CHANNELSTRIP_OK) return;
  demand(text_of(settings) == before, "settings_read failed and changed something");
  demand(status != CHANNELSTRIP_SYNTAX || reports == 1, "settings_read doesn't say why");
}

void Caller::write_and_read_again(Bytes& bytes) {
  const channelstrip_settings* const settings = some_settings(bytes);
  if (!settings) return;
  const std::string text = text_of(settings);
  const Settings again(channelstrip_settings_new());
  int reports = 0;
  const auto report =
      +[](void* user, std::uint32_t, std::uint32_t, const char*) { ++*static_cast<int*>(user); };
  demand(channelstrip_settings_read(again.get(), text.data(), text.size(), report, &reports) ==
             CHANNELSTRIP_OK,
         "settings can't be read as they are written");
  demand(reports == 0, "settings that were written are reported");
  demand(text_of(again.get()) == text, "settings are written otherwise after they were read");
  for (std::uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter p{};
    channelstrip_parameter_info(i, &p, sizeof p);
    double value = 0, other = 1;
    channelstrip_settings_get(settings, p.id, &value);
    channelstrip_settings_get(again.get(), p.id, &other);
    demand(value >= p.minimum && value <= p.maximum, "a value is out of its limits");
    demand(value == other, "a value changes when it is written and read");
  }
}

void Caller::copy_settings(Bytes& bytes) {
  Settings& to = settings_[bytes.byte() % kSlots];
  const channelstrip_settings* const from = some_settings(bytes);
  if (!to) to.reset(channelstrip_settings_new());
  const std::string before = text_of(to.get());
  const bool copied = channelstrip_settings_copy(to.get(), from) == CHANNELSTRIP_OK;
  demand(copied == (from != nullptr), "settings aren't copied");
  demand(text_of(to.get()) == (copied ? text_of(from) : before), "a copy differs");
  if (bytes.byte() % 16 == 0) to.reset(channelstrip_settings_new());
}

void Caller::look_at_settings(Bytes& bytes) {
  const channelstrip_settings* const settings = some_settings(bytes);
  const double rate = any_number(bytes);
  const std::uint32_t count = bytes.byte() % 20;
  channelstrip_adjustment adjustments[20];
  std::fill(std::begin(adjustments), std::end(adjustments), channelstrip_adjustment{~0u, ~0u, -1});
  std::uint32_t total = 0;
  const channelstrip_status status =
      channelstrip_settings_adjustments(settings, rate, adjustments, count, &total);
  const std::uint32_t written = status == CHANNELSTRIP_OK ? std::min(count, total) : 0;
  demand(total <= 18, "there are more adjustments than there can be");
  for (std::uint32_t i = 0; i < std::size(adjustments); ++i) {
    const channelstrip_adjustment& it = adjustments[i];
    demand((it.id != ~0u) == (i < written), "adjustments are written that there aren't");
    demand(i >= written || (it.adjustment <= CHANNELSTRIP_SHALLOWER && std::isfinite(it.used)),
           "an adjustment makes no sense");
  }
}

void Caller::look_at_pictures(Bytes& bytes) {
  const channelstrip_settings* const settings = some_settings(bytes);
  const double rate = bytes.byte() % 2 ? 48000 : any_number(bytes);
  double at[4], one[4] = {7, 7, 7, 7}, other[4] = {7, 7, 7, 7};
  for (double& x : at) x = any_number(bytes);
  const auto are_untouched = [&] { return std::ranges::count(one, 7.0) == 4; };
  const auto are_numbers = [](const double* values) {
    return std::all_of(values, values + 4, [](double x) { return std::isfinite(x); });
  };
  if (channelstrip_settings_response(settings, rate, bytes.byte() % 14, at, one, 4) ==
      CHANNELSTRIP_OK) {
    demand(are_numbers(one), "a response isn't finite");
  } else {
    demand(are_untouched(), "settings_response failed and wrote something");
  }
  std::ranges::fill(one, 7.0);
  if (channelstrip_settings_static_gains(settings, bytes.byte() % 2, at, one, other, 4) ==
      CHANNELSTRIP_OK) {
    demand(are_numbers(one) && are_numbers(other), "a static gain isn't finite");
  } else {
    demand(are_untouched(), "settings_static_gains failed and wrote something");
  }
}

}  // namespace channelstrip::test
