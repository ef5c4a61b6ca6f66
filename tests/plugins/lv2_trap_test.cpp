// An LV2 plugin's calls on the audio thread neither allocate, lock, throw nor call the system.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <deque>
#include <random>

#include "lv2_host.h"
#include "plugins/tap.h"
#include "tests/control/realtime/confined.h"
#include "tests/control/realtime/trap.h"

namespace channelstrip::plugin_test::lv2_trap_test {
namespace {

const Lv2Binary& binary() {
  static const Lv2Binary loaded(CHANNELSTRIP_LV2);
  return loaded;
}

TEST(Lv2Trap, SeesWhatAPluginAllocates) {
  binary();
  const test::Trapped counted = test::trapped([] { const Lv2Instance plugin(binary(), 1, 48000); });
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
      const test::Trapped counted =
          test::trapped([&] { plugin.run(inputs, key, outputs, frames); });
      ASSERT_EQ(counted, test::Trapped{}) << format << ", call " << call;
    }
  }
}

TEST(Lv2Plugin, RunsWithoutASystemCall) {
  struct Player {
    explicit Player(std::uint32_t format) : instance(binary(), format, kRate) {
      audio = noise(channels_of(format), 500);
      for (auto& channel : audio) {
        inputs.push_back(channel.data());
        outputs.push_back(channel.data());
      }
      for (const channelstrip_parameter& p : lv2::port_parameters()) {
        controls.push_back(&instance.control(p.symbol));
      }
      instance.activate();
    }
    Planar audio;
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    std::vector<float*> controls;
    Lv2Instance instance;
  };
  std::deque<Player> players;
  for (std::uint32_t f = 0; f < channelstrip_format_count(); ++f) players.emplace_back(f);
  struct Done {
    int calls;
  };
  const auto end = test::confined<Done>([&](Done& done) {
    std::minstd_rand random(2);
    for (Player& player : players) {
      for (std::uint32_t call = 0; call < 60; ++call, ++done.calls) {
        for (std::size_t i = random() % 16; i < player.controls.size(); i += 16) {
          const channelstrip_parameter& p = lv2::port_parameters()[i];
          *player.controls[i] = static_cast<float>(random() % 2 ? p.maximum : p.minimum);
        }
        const float* key = call % 3 ? player.inputs[0] : nullptr;
        player.instance.run(player.inputs, key, player.outputs, 500 - call);
      }
    }
  });
  EXPECT_TRUE(end.ended()) << "status " << end.status;
  EXPECT_EQ(end.report.calls, 11 * 60);
}

// While somebody looks.
TEST(Tap, HandsOverWithoutAllocationLockOrException) {
  plugins::Tap tap(2);
  tap.look();
  const std::vector<float> samples(5000, 0.5f);
  const std::array<const float*, 2> channels{samples.data(), samples.data()};
  const std::array<const float*, 2> missing{samples.data(), nullptr};
  const channelstrip_meters reading{};
  const test::Trapped trapped = test::trapped([&] {
    for (int call = 0; call < 300; ++call) {
      tap.see_inputs(channels.data(), 5000);
      tap.see_outputs(missing.data(), 5000);
      tap.see_meters(reading);
      tap.see_key(call % 2 == 0);
    }
  });
  EXPECT_EQ(trapped.allocations, 0);
  EXPECT_EQ(trapped.locks, 0);
  EXPECT_EQ(tap.rings()->inputs.written(), 1500000U);
  EXPECT_EQ(tap.rings()->outputs.written(), 0U);
}

}  // namespace
}  // namespace channelstrip::plugin_test::lv2_trap_test
