#include <cmath>
#include <string>
#include <vector>

#include "../design/link_map.h"
#include "../parameters/state.h"
#include "layouts.h"
#include "objects.h"

using namespace channelstrip::host;

channelstrip_settings* channelstrip_settings_new(void) {
  return new (std::nothrow) channelstrip_settings;
}

void channelstrip_settings_free(channelstrip_settings* settings) {
  delete settings;
}

channelstrip_status channelstrip_settings_copy(channelstrip_settings* to,
                                               const channelstrip_settings* from) {
  if (!to || !from) return CHANNELSTRIP_INVALID;
  to->values = Values(from->values);
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_settings_set(channelstrip_settings* settings, uint32_t id,
                                              double value) {
  if (!settings || !std::isfinite(value)) return CHANNELSTRIP_INVALID;
  const auto index = index_of(id);
  if (!index) return CHANNELSTRIP_UNKNOWN;
  settings->values.of[*index] = nearest_value(parameters()[*index], value);
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_settings_get(const channelstrip_settings* settings, uint32_t id,
                                              double* value) {
  if (!settings || !value) return CHANNELSTRIP_INVALID;
  const auto index = index_of(id);
  if (!index) return CHANNELSTRIP_UNKNOWN;
  *value = settings->values.of[*index];
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_settings_set_links(channelstrip_settings* settings,
                                                    uint32_t format, const char* map) {
  if (!settings) return CHANNELSTRIP_INVALID;
  return guarded([&]() -> channelstrip_status {
    const ChannelLayout* layout = layout_of(format, CHANNELSTRIP_ORDER_WAV);
    if (!layout) return CHANNELSTRIP_UNKNOWN;
    LinkTexts links;
    for (const LinkText& link : settings->values.links) {
      if (link.format.view() != layout->format->name) links.push_back(link);
    }
    if (map && *map != '\0') {
      const std::string text = text_of(parse_link_map(map, *layout), *layout);
      links[layout->format->name] = std::string_view(text);
    }
    settings->values.links = links;
    return CHANNELSTRIP_OK;
  });
}

channelstrip_status channelstrip_settings_get_links(const channelstrip_settings* settings,
                                                    uint32_t format, char* text, size_t size,
                                                    size_t* length) {
  if (!settings) return CHANNELSTRIP_INVALID;
  if (format >= stem_formats().size()) return CHANNELSTRIP_UNKNOWN;
  const auto* map = settings->values.links.find(stem_formats()[format].name);
  return hand_out(map ? map->view() : std::string_view(), text, size, length);
}

channelstrip_status channelstrip_settings_write(const channelstrip_settings* settings, char* text,
                                                size_t size, size_t* length) {
  if (!settings) return CHANNELSTRIP_INVALID;
  return guarded([&] { return hand_out(write_state(settings->values), text, size, length); });
}

channelstrip_status channelstrip_settings_read(channelstrip_settings* settings, const char* text,
                                               size_t length, channelstrip_report* report,
                                               void* user) {
  if (!settings || (!text && length > 0)) return CHANNELSTRIP_INVALID;
  return guarded([&]() -> channelstrip_status {
    std::vector<StateProblem> problems;
    const auto values = read_state({text, length}, problems);
    for (const StateProblem& problem : problems) {
      if (report) report(user, problem.line, problem.column, problem.what.c_str());
    }
    if (!values) return CHANNELSTRIP_SYNTAX;
    settings->values = *values;
    return CHANNELSTRIP_OK;
  });
}

channelstrip_status channelstrip_settings_adjustments(const channelstrip_settings* settings,
                                                      double sample_rate,
                                                      channelstrip_adjustment* adjustments,
                                                      uint32_t count, uint32_t* total) {
  if (!settings || !is_rate(sample_rate) || (!adjustments && count > 0))
    return CHANNELSTRIP_INVALID;
  AdjustedList list;
  settings_of(settings->values, sample_rate, &list);
  for (std::size_t i = 0; i < std::min<std::size_t>(count, list.size()); ++i) {
    adjustments[i] = {.id = parameters()[list[i].parameter].id,
                      .adjustment = static_cast<uint32_t>(list[i].adjustment),
                      .used = list[i].used};
  }
  if (total) *total = static_cast<uint32_t>(list.size());
  return CHANNELSTRIP_OK;
}
