// What a host finds in the binary: a factory for one plugin, and the plugin's life.

#include <clap/entry.h>
#include <clap/plugin-factory.h>

#include <new>
#include <string_view>

#include "extension_tables.h"
#include "gui.h"
#include "instance.h"

namespace channelstrip::clap {
namespace {

const clap_plugin_descriptor_t& descriptor() {
  static const char* features[] = {CLAP_PLUGIN_FEATURE_AUDIO_EFFECT,
                                   CLAP_PLUGIN_FEATURE_EQUALIZER,
                                   CLAP_PLUGIN_FEATURE_COMPRESSOR,
                                   CLAP_PLUGIN_FEATURE_MULTI_EFFECTS,
                                   CLAP_PLUGIN_FEATURE_MIXING,
                                   CLAP_PLUGIN_FEATURE_MONO,
                                   CLAP_PLUGIN_FEATURE_STEREO,
                                   CLAP_PLUGIN_FEATURE_SURROUND,
                                   nullptr};
  static const clap_plugin_descriptor_t described{
      .clap_version = CLAP_VERSION,
      .id = "channelstrip.strip",
      .name = "ChannelStrip",
      .vendor = "ChannelStrip",
      .url = "",
      .manual_url = "",
      .support_url = "",
      .version = channelstrip_version(),
      .description =
          "Equaliser of eight bands, compressor, expander and gate with a side-chain, "
          "from mono to 7.1",
      .features = features};
  return described;
}

const clap_plugin_t* create(const clap_host_t* host) {
  struct Plugin : Instance {
    using Instance::Instance;
    clap_plugin_t table;
  };
  try {
    auto* const plugin = new Plugin(host);
    plugin->table = {
        .desc = &descriptor(),
        .plugin_data = static_cast<Instance*>(plugin),
        .init = [](const clap_plugin_t*) { return true; },
        .destroy =
            [](const clap_plugin_t* self) { delete static_cast<Plugin*>(&instance_of(self)); },
        .activate = [](const clap_plugin_t* self, double sample_rate, std::uint32_t,
                       std::uint32_t) { return instance_of(self).activate(sample_rate); },
        .deactivate = [](const clap_plugin_t* self) { instance_of(self).deactivate(); },
        .start_processing = [](const clap_plugin_t*) { return true; },
        .stop_processing = [](const clap_plugin_t*) {},
        .reset = [](const clap_plugin_t* self) { instance_of(self).reset(); },
        .process = [](const clap_plugin_t* self,
                      const clap_process_t* call) { return instance_of(self).process(*call); },
        .get_extension = [](const clap_plugin_t*, const char* id) { return extension(id); },
        .on_main_thread = [](const clap_plugin_t*) {}};
    return &plugin->table;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

constexpr clap_plugin_factory_t kFactory{
    .get_plugin_count = [](const clap_plugin_factory_t*) { return std::uint32_t{1}; },
    .get_plugin_descriptor =
        [](const clap_plugin_factory_t*, std::uint32_t index) {
          return index == 0 ? &descriptor() : nullptr;
        },
    .create_plugin =
        [](const clap_plugin_factory_t*, const clap_host_t* host, const char* id) {
          return std::string_view(id) == descriptor().id ? create(host) : nullptr;
        }};

}  // namespace
}  // namespace channelstrip::clap

const clap_plugin_entry_t clap_entry{.clap_version = CLAP_VERSION,
                                     .init =
                                         [](const char* path) {
                                           channelstrip::clap::set_binary_path(path);
                                           return true;
                                         },
                                     .deinit = [] {},
                                     .get_factory = [](const char* id) -> const void* {
                                       return std::string_view(id) == CLAP_PLUGIN_FACTORY_ID
                                                  ? &channelstrip::clap::kFactory
                                                  : nullptr;
                                     }};
