// What a CLAP host finds before it plays anything.

#include <clap/ext/latency.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "clap_host.h"
#include "plugins/clap/extensions.h"

namespace channelstrip::plugin_test::clap_description_test {
namespace {

using clap::PortsConfig;
using clap::PortsConfigExtension;
using clap::SurroundExtension;

const ClapBinary& binary() {
  static const ClapBinary loaded(CHANNELSTRIP_CLAP);
  return loaded;
}

clap_audio_port_info_t port_of(const ClapInstance& instance, std::uint32_t index, bool is_input) {
  clap_audio_port_info_t info{};
  const auto& ports = instance.extension<clap_plugin_audio_ports_t>(CLAP_EXT_AUDIO_PORTS);
  EXPECT_TRUE(ports.get(instance.plugin(), index, is_input, &info)) << index;
  return info;
}

TEST(ClapBinary, HasOnePluginAndNothingElse) {
  const clap_plugin_factory_t& factory = binary().factory();
  ASSERT_EQ(factory.get_plugin_count(&factory), 1u);
  const clap_plugin_descriptor_t* found = factory.get_plugin_descriptor(&factory, 0);
  EXPECT_STREQ(found->id, "channelstrip.strip");  // hosts store it
  EXPECT_STREQ(found->version, channelstrip_version());
  std::set<std::string> features;
  for (const char** feature = found->features; *feature; ++feature) features.insert(*feature);
  EXPECT_TRUE(features.contains("audio-effect"));
  EXPECT_TRUE(features.contains("surround"));
  EXPECT_EQ(factory.get_plugin_descriptor(&factory, 1), nullptr);
  EXPECT_EQ(factory.create_plugin(&factory, nullptr, "channelstrip.other"), nullptr);
  EXPECT_EQ(binary().entry().get_factory("some.other-factory"), nullptr);
  const ClapInstance instance(binary());
  EXPECT_EQ(instance.plugin()->get_extension(instance.plugin(), "clap.note-ports"), nullptr);
}

TEST(ClapBinary, IsLoadedAndUnloadedAgain) {
  for (int i = 0; i < 100; ++i) {
    const ClapBinary again(CHANNELSTRIP_CLAP);
    ClapInstance instance(again);
    instance.activate();
    instance.play(noise(2, 100), {}, [] { return 50; });
  }
}

TEST(ClapPorts, AreThoseOfTheFormatAndAKey) {
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    ClapInstance instance(binary());
    ASSERT_TRUE(instance.select(format));
    const auto& ports = instance.extension<clap_plugin_audio_ports_t>(CLAP_EXT_AUDIO_PORTS);
    EXPECT_EQ(ports.count(instance.plugin(), true), 2u);
    EXPECT_EQ(ports.count(instance.plugin(), false), 1u);
    const auto input = port_of(instance, 0, true), output = port_of(instance, 0, false);
    const auto key = port_of(instance, 1, true);
    const std::uint32_t channels = channels_of(format);
    const std::string type = channels == 1 ? "mono" : channels == 2 ? "stereo" : "surround";
    for (const auto& main : {input, output}) {
      EXPECT_EQ(main.channel_count, channels);
      EXPECT_EQ(main.port_type, type);
      EXPECT_EQ(main.flags, CLAP_AUDIO_PORT_IS_MAIN);
      EXPECT_EQ(main.in_place_pair, main.id);
    }
    EXPECT_EQ(input.id, output.id);
    EXPECT_EQ(key.channel_count, 1u);
    EXPECT_EQ(key.flags, 0u);
    EXPECT_EQ(key.in_place_pair, CLAP_INVALID_ID);
    EXPECT_NE(key.id, input.id);
    clap_audio_port_info_t none;
    EXPECT_FALSE(ports.get(instance.plugin(), 2, true, &none));
    EXPECT_FALSE(ports.get(instance.plugin(), 1, false, &none));
  }
}

TEST(ClapPorts, AreConfiguredByFormatWhileInactive) {
  ClapInstance instance(binary());
  const auto& configs = instance.extension<PortsConfigExtension>(clap::kPortsConfigExtension);
  ASSERT_EQ(configs.count(instance.plugin()), 11u);
  EXPECT_EQ(port_of(instance, 0, true).channel_count, 2u);  // before one is selected
  for (std::uint32_t i = 0; i < 11; ++i) {
    PortsConfig config{};
    ASSERT_TRUE(configs.get(instance.plugin(), i, &config));
    channelstrip_format format{};
    channelstrip_format_info(config.id, &format, sizeof format);
    EXPECT_STREQ(config.name, format.name);
    EXPECT_EQ(config.main_input_channels, format.channels);
    EXPECT_EQ(config.main_output_channels, format.channels);
    EXPECT_EQ(config.input_ports, 2u);
    EXPECT_EQ(config.output_ports, 1u);
    ASSERT_TRUE(configs.select(instance.plugin(), config.id));
    const auto port = port_of(instance, 0, true);
    EXPECT_EQ(port.channel_count, format.channels);
    EXPECT_STREQ(port.port_type, config.main_input_type);
  }
  PortsConfig none;
  EXPECT_FALSE(configs.get(instance.plugin(), 11, &none));
  EXPECT_FALSE(configs.select(instance.plugin(), 11));
  instance.activate();
  EXPECT_FALSE(configs.select(instance.plugin(), 0));
  EXPECT_EQ(port_of(instance, 0, true).channel_count, 8u);
}

std::vector<int> speakers(const char* format) {
  ClapInstance instance(binary());
  EXPECT_TRUE(instance.select(format_of(format)));
  std::uint8_t map[8];
  const auto& surround = instance.extension<SurroundExtension>(clap::kSurroundExtension);
  const std::uint32_t count = surround.get_channel_map(instance.plugin(), true, 0, map, 8);
  return {map, map + count};
}

// The numbers are CLAP's: 0 left, 1 right, 2 centre, 3 low frequencies, 4 and 5 back, 8 back
// centre, 9 and 10 sides.
TEST(ClapSurround, SaysWhatEveryChannelIs) {
  EXPECT_EQ(speakers("Mono"), (std::vector<int>{2}));
  EXPECT_EQ(speakers("Stereo"), (std::vector<int>{0, 1}));
  EXPECT_EQ(speakers("Quad"), (std::vector<int>{0, 1, 4, 5}));
  EXPECT_EQ(speakers("LCRS"), (std::vector<int>{0, 1, 2, 8}));
  EXPECT_EQ(speakers("5.1"), (std::vector<int>{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(speakers("6.1"), (std::vector<int>{0, 1, 2, 3, 8, 9, 10}));
  EXPECT_EQ(speakers("7.1"), (std::vector<int>{0, 1, 2, 3, 4, 5, 9, 10}));
}

TEST(ClapSurround, TakesTheMasksOfItsFormats) {
  const ClapInstance instance(binary());
  const auto& surround = instance.extension<SurroundExtension>(clap::kSurroundExtension);
  const auto takes = [&](std::uint64_t mask) {
    return surround.is_channel_mask_supported(instance.plugin(), mask);
  };
  EXPECT_TRUE(takes(0x03));
  EXPECT_TRUE(takes(0x3f));   // 5.1, surrounds in the back
  EXPECT_TRUE(takes(0x60f));  // 5.1, surrounds at the sides
  EXPECT_TRUE(takes(0x63f));  // 7.1
  EXPECT_FALSE(takes(0));
  EXPECT_FALSE(takes(0x0f));
  EXPECT_FALSE(takes(0xff));
  std::uint8_t map[8];
  EXPECT_EQ(surround.get_channel_map(instance.plugin(), true, 1, map, 8), 0u);
  EXPECT_EQ(surround.get_channel_map(instance.plugin(), true, 0, map, 1), 0u);
}

TEST(ClapPlugin, HasNoLatencyAFiniteTailAndPlaysOfflineToo) {
  ClapInstance instance(binary());
  const clap_plugin_t* plugin = instance.plugin();
  EXPECT_EQ(instance.extension<clap_plugin_latency_t>(CLAP_EXT_LATENCY).get(plugin), 0u);
  const auto& render = instance.extension<clap::RenderExtension>(clap::kRenderExtension);
  EXPECT_FALSE(render.has_hard_realtime_requirement(plugin));
  EXPECT_TRUE(render.set(plugin, 1));
  instance.activate();
  EXPECT_EQ(instance.extension<clap::TailExtension>(clap::kTailExtension).get(plugin), 105600u);
}

TEST(ClapPlugin, RefusesSampleRatesThatNoStripHas) {
  for (const double rate : {0.0, -48000.0, 999.0, 1000001.0, std::nan(""), HUGE_VAL}) {
    EXPECT_FALSE(ClapInstance(binary()).activate(rate)) << rate;
  }
}

}  // namespace
}  // namespace channelstrip::plugin_test::clap_description_test
