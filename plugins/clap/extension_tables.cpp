#include "extension_tables.h"

#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>

#include "extensions.h"
#include "formats.h"
#include "gui.h"
#include "instance.h"

namespace channelstrip::clap {
namespace {

// Hosts are in C: what has no memory fails.
template <class Call>
bool guarded(Call call) {
  try {
    return call();
  } catch (const std::exception&) {
    return false;
  }
}

bool describe_port(std::uint32_t format, std::uint32_t index, bool is_input,
                   clap_audio_port_info_t& info) {
  info = {};
  if (index == kMainPort) {
    const std::uint32_t channels = channels_of(format);
    write(is_input ? "Input" : "Output", info.name);
    info.id = info.in_place_pair = kMainPort;
    info.flags = CLAP_AUDIO_PORT_IS_MAIN;
    info.channel_count = channels;
    info.port_type = port_type_of(channels);
    return true;
  }
  if (index != kKeyPort || !is_input) return false;
  write("Key", info.name);
  info.id = kKeyPort;
  info.channel_count = 1;
  info.port_type = CLAP_PORT_MONO;
  info.in_place_pair = CLAP_INVALID_ID;
  return true;
}

bool describe_format(std::uint32_t format, PortsConfig& config) {
  channelstrip_format info{};
  if (channelstrip_format_info(format, &info, sizeof info) != CHANNELSTRIP_OK) return false;
  config = {};
  config.id = format;
  write(info.name, config.name);
  config.input_ports = 2;
  config.output_ports = 1;
  config.has_main_input = config.has_main_output = true;
  config.main_input_channels = config.main_output_channels = info.channels;
  config.main_input_type = config.main_output_type = port_type_of(info.channels);
  return true;
}

constexpr clap_plugin_audio_ports_t kPorts{
    .count = [](const clap_plugin_t*, bool is_input) { return is_input ? 2u : 1u; },
    .get =
        [](const clap_plugin_t* plugin, std::uint32_t index, bool is_input,
           clap_audio_port_info_t* info) {
          return describe_port(instance_of(plugin).format(), index, is_input, *info);
        }};

constexpr PortsConfigExtension kPortsConfig{
    .count = [](const clap_plugin_t*) { return channelstrip_format_count(); },
    .get = [](const clap_plugin_t*, std::uint32_t index,
              PortsConfig* config) { return describe_format(index, *config); },
    .select = [](const clap_plugin_t* plugin,
                 clap_id config) { return instance_of(plugin).select(config); }};

constexpr SurroundExtension kSurround{
    .is_channel_mask_supported =
        [](const clap_plugin_t*, std::uint64_t mask) {
          return guarded([&] { return is_a_format(mask); });
        },
    .get_channel_map = [](const clap_plugin_t* plugin, bool, std::uint32_t port, std::uint8_t* map,
                          std::uint32_t capacity) -> std::uint32_t {
      std::uint32_t count = 0;
      guarded([&] {
        const auto speakers = speakers_of(instance_of(plugin).format());
        if (port != kMainPort || capacity < speakers.size()) return false;
        std::ranges::copy(speakers, map);
        count = static_cast<std::uint32_t>(speakers.size());
        return true;
      });
      return count;
    }};

constexpr clap_plugin_params_t kParameters{
    .count = [](const clap_plugin_t*) { return parameter_count(); },
    .get_info = [](const clap_plugin_t*, std::uint32_t index,
                   clap_param_info_t* info) { return describe_parameter(index, *info); },
    .get_value =
        [](const clap_plugin_t* plugin, clap_id id, double* value) {
          const auto found = instance_of(plugin).value(id);
          if (found) *value = *found;
          return found.has_value();
        },
    .value_to_text =
        [](const clap_plugin_t*, clap_id id, double value, char* display, std::uint32_t size) {
          return guarded([&] {
            const std::string text = text_of(id, value);
            if (text.empty() || text.size() >= size) return false;
            display[text.copy(display, size - 1)] = '\0';
            return true;
          });
        },
    .text_to_value =
        [](const clap_plugin_t*, clap_id id, const char* display, double* value) {
          return guarded([&] {
            const auto found = value_of(id, display);
            if (found) *value = *found;
            return found.has_value();
          });
        },
    .flush = [](const clap_plugin_t* plugin, const clap_input_events_t* in,
                const clap_output_events_t* out) { instance_of(plugin).flush(in, out); }};

constexpr clap_plugin_state_t kState{
    .save =
        [](const clap_plugin_t* plugin, const clap_ostream_t* stream) {
          return guarded([&] { return instance_of(plugin).save(*stream); });
        },
    .load =
        [](const clap_plugin_t* plugin, const clap_istream_t* stream) {
          return guarded([&] { return instance_of(plugin).load(*stream); });
        }};

constexpr clap_plugin_latency_t kLatency{.get = [](const clap_plugin_t*) { return 0u; }};

constexpr TailExtension kTail{
    .get = [](const clap_plugin_t* plugin) { return instance_of(plugin).tail(); }};

// Offline it does what it does in real time.
constexpr RenderExtension kRender{
    .has_hard_realtime_requirement = [](const clap_plugin_t*) { return false; },
    .set = [](const clap_plugin_t*, std::int32_t) { return true; }};

struct Named {
  std::string_view id;
  const void* table;
};
constexpr Named kExtensions[] = {
    {CLAP_EXT_AUDIO_PORTS, &kPorts},  {kPortsConfigExtension, &kPortsConfig},
    {kSurroundExtension, &kSurround}, {kSurroundDraft, &kSurround},
    {CLAP_EXT_PARAMS, &kParameters},  {CLAP_EXT_STATE, &kState},
    {CLAP_EXT_LATENCY, &kLatency},    {kTailExtension, &kTail},
    {kRenderExtension, &kRender},     {CLAP_EXT_GUI, &kGui},
    {CLAP_EXT_TIMER_SUPPORT, &kTimer}};

}  // namespace

const void* extension(const char* id) {
  const auto found = std::ranges::find(kExtensions, std::string_view(id), &Named::id);
  return found == std::end(kExtensions) ? nullptr : found->table;
}

}  // namespace channelstrip::clap
