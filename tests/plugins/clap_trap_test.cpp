// A CLAP plugin's calls on the audio thread neither allocate, lock, throw nor call the system.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <deque>
#include <random>

#include "clap_host.h"
#include "tests/control/realtime/confined.h"
#include "tests/control/realtime/trap.h"

namespace channelstrip::plugin_test::clap_trap_test {
namespace {

const ClapBinary& binary() {
  static const ClapBinary loaded(CHANNELSTRIP_CLAP);
  return loaded;
}

TEST(ClapTrap, SeesWhatAPluginAllocates) {
  binary();
  const test::Trapped counted = test::trapped([] { const ClapInstance instance(binary()); });
  EXPECT_GT(counted.allocations, 0);
}

TEST(ClapPlugin, RunsWithoutAllocationLockOrException) {
  std::minstd_rand drawn(1);
  const auto random = [&drawn] { return static_cast<std::uint32_t>(drawn()); };
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    ClapInstance instance(binary());
    ASSERT_TRUE(instance.select(format));
    const std::uint32_t channels = channels_of(format);
    Planar audio(channels + 1, std::vector<float>(2048, 0.25f));
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (std::uint32_t c = 0; c < channels; ++c) {
      inputs.push_back(audio[c].data());
      outputs.push_back(audio[c].data());
    }
    instance.activate();
    for (int call = 0; call < 400; ++call) {
      const auto frames = random() % 2049;
      ClapEvents events;
      const std::size_t count = call % 100 == 7 ? 3000 : random() % 20;
      for (std::size_t i = 0; i < count; ++i) {
        channelstrip_parameter p{};
        channelstrip_parameter_info(random() % channelstrip_parameter_count(), &p, sizeof p);
        const double share = static_cast<double>(random() % 1001) / 1000;
        const double value = p.minimum + share * (p.maximum - p.minimum);
        events.set(random() % (frames + 1), p.id, i % 50 == 49 ? std::nan("") : value);
      }
      if (call % 50 == 30) audio[0][3] = std::nanf("");
      if (call % 100 == 99) instance.load(*instance.save());
      const float* key = call % 3 == 0 ? audio[channels].data() : nullptr;
      const test::Trapped counted = test::trapped([&] {
        if (call % 40 == 3) instance.plugin()->reset(instance.plugin());
        if (call % 10 == 5) instance.flush(events);
        instance.process(inputs, key, outputs, frames, events.list());
      });
      ASSERT_EQ(counted, test::Trapped{}) << format << ", call " << call;
    }
  }
}

TEST(ClapPlugin, RunsWithoutASystemCall) {
  std::minstd_rand drawn(2);
  const auto random = [&drawn] { return static_cast<std::uint32_t>(drawn()); };
  std::array<ClapEvents, 40> events;
  for (ClapEvents& some : events) {
    for (std::uint32_t frame = 0; frame < 500; frame += random() % 60) {
      channelstrip_parameter p{};
      channelstrip_parameter_info(random() % channelstrip_parameter_count(), &p, sizeof p);
      some.set(frame, p.id, random() % 2 ? p.maximum : p.minimum);
    }
  }
  struct Player {
    Planar audio;
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    ClapInstance instance{binary()};
  };
  std::deque<Player> players(channelstrip_format_count());
  for (std::uint32_t format = 0; format < players.size(); ++format) {
    Player& player = players[format];
    player.audio = noise(channels_of(format), 500);
    for (auto& channel : player.audio) {
      player.inputs.push_back(channel.data());
      player.outputs.push_back(channel.data());
    }
    ASSERT_TRUE(player.instance.select(format));
    player.instance.activate();
  }
  struct Done {
    int calls;
  };
  const auto end = test::confined<Done>([&](Done& done) {
    for (Player& player : players) {
      for (std::uint32_t call = 0; call < events.size(); ++call, ++done.calls) {
        const float* key = call % 3 ? player.inputs[0] : nullptr;
        player.instance.process(player.inputs, key, player.outputs, 500 - call,
                                events[call].list());
        if (call % 9 == 4) player.instance.plugin()->reset(player.instance.plugin());
        if (call % 9 == 7) player.instance.flush(events[call]);
      }
    }
  });
  EXPECT_TRUE(end.ended()) << "status " << end.status;
  EXPECT_EQ(end.report.calls, 11 * 40);
}

}  // namespace
}  // namespace channelstrip::plugin_test::clap_trap_test
