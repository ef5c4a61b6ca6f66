// A plugin's calls on the audio thread neither allocate, lock nor throw.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "lv2_host.h"
#include "tests/control/realtime/trap.h"

namespace channelstrip::test::lv2_trap_test {
namespace {

const Lv2Binary& binary() {
  static const Lv2Binary loaded(CHANNELSTRIP_LV2);
  return loaded;
}

TEST(Lv2Trap, SeesWhatAPluginAllocates) {
  binary();
  const Trapped counted = trapped([] { const Lv2Instance plugin(binary(), 1, 48000); });
  EXPECT_GT(counted.allocations, 0);
}

TEST(Lv2Plugin, RunsWithoutAllocationLockOrException) {
  std::minstd_rand random(1);
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    Lv2Instance plugin(binary(), format, 48000);
    if (format % 2) plugin.scatter_controls();
    const std::uint32_t channels = plugin.ports().channels();
    Planar audio(channels + 1, std::vector<float>(2048, 0.25f));
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (std::uint32_t c = 0; c < channels; ++c) {
      inputs.push_back(audio[c].data());
      outputs.push_back(audio[c].data());
    }
    std::vector<float*> controls{&plugin.control("enabled")};
    for (const channelstrip_parameter& p : lv2::port_parameters()) {
      controls.push_back(&plugin.control(p.symbol));
    }
    plugin.activate();
    for (int call = 0; call < 400; ++call) {
      for (std::size_t i = 0; i < controls.size() && call != 1; ++i) {
        if (random() % 16) continue;
        if (i == 0) {
          *controls[i] = static_cast<float>(random() % 2);
          continue;
        }
        const channelstrip_parameter& p = lv2::port_parameters()[i - 1];
        const double share = static_cast<double>(random() % 1001) / 1000;
        *controls[i] = static_cast<float>(p.minimum + share * (p.maximum - p.minimum));
      }
      if (call % 50 == 20) *controls[5] = std::nanf("");
      if (call % 50 == 30) audio[0][3] = std::nanf("");
      if (call % 100 == 99) {
        Lv2State links;
        plugin.save(links);
        plugin.restore(links);
      }
      const auto frames = static_cast<std::uint32_t>(random() % 2049);
      const float* key = call % 3 == 0 ? audio[channels].data() : nullptr;
      const Trapped counted = trapped([&] { plugin.run(inputs, key, outputs, frames); });
      ASSERT_EQ(counted, Trapped{}) << format << ", call " << call;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::lv2_trap_test
