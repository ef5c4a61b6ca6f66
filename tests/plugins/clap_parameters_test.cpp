// A CLAP plugin's parameters: what they are, and how they change.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <string>

#include "clap_host.h"
#include "plugins/clap/parameters.h"

namespace channelstrip::plugin_test::clap_parameters_test {
namespace {

const ClapBinary& binary() {
  static const ClapBinary loaded(CHANNELSTRIP_CLAP);
  return loaded;
}

std::vector<clap_param_info_t> parameters_of(const ClapInstance& instance) {
  std::vector<clap_param_info_t> all(instance.params().count(instance.plugin()));
  for (std::uint32_t i = 0; i < all.size(); ++i) {
    EXPECT_TRUE(instance.params().get_info(instance.plugin(), i, &all[i])) << i;
  }
  return all;
}

bool is_read_only(const clap_param_info_t& parameter) {
  return (parameter.flags & CLAP_PARAM_IS_READONLY) != 0;
}

std::optional<std::string> text_of(const ClapInstance& instance, clap_id id, double value,
                                   std::uint32_t size = 64) {
  char text[64] = {};
  if (!instance.params().value_to_text(instance.plugin(), id, value, text, size)) {
    return std::nullopt;
  }
  return text;
}

TEST(ClapParameters, AreThoseOfTheControlSideUnderTheirIds) {
  const ClapInstance instance(binary());
  const auto all = parameters_of(instance);
  ASSERT_EQ(all.size(), channelstrip_parameter_count() + 4);
  std::set<clap_id> ids;
  for (std::uint32_t i = 0; i < all.size(); ++i) {
    const clap_param_info_t& p = all[i];
    EXPECT_TRUE(ids.insert(p.id).second) << p.name;
    EXPECT_LT(p.min_value, p.max_value) << p.name;
    EXPECT_LE(p.min_value, p.default_value) << p.name;
    EXPECT_LE(p.default_value, p.max_value) << p.name;
    double value = 0;
    EXPECT_TRUE(instance.params().get_value(instance.plugin(), p.id, &value));
    EXPECT_EQ(value, p.default_value) << p.name;
    channelstrip_parameter same{};
    if (channelstrip_parameter_info(i, &same, sizeof same) != CHANNELSTRIP_OK) {
      EXPECT_TRUE(is_read_only(p)) << p.name;
      continue;
    }
    EXPECT_EQ(p.id, same.id);
    EXPECT_STREQ(p.name, same.name);
    EXPECT_STREQ(p.module, same.group);
    EXPECT_EQ(p.min_value, same.minimum);
    EXPECT_EQ(p.max_value, same.maximum);
    const bool is_bypass = std::string(same.symbol) == "bypass";
    EXPECT_EQ((p.flags & CLAP_PARAM_IS_BYPASS) != 0, is_bypass) << p.name;
    EXPECT_EQ((p.flags & CLAP_PARAM_IS_STEPPED) != 0, same.kind != CHANNELSTRIP_NUMBER);
    EXPECT_TRUE(p.flags & CLAP_PARAM_IS_AUTOMATABLE);
  }
}

TEST(ClapParameters, OfOtherNumbersAreRefused) {
  const ClapInstance instance(binary());
  const clap_plugin_params_t& params = instance.params();
  clap_param_info_t info;
  double value = 7;
  EXPECT_FALSE(params.get_info(instance.plugin(), params.count(instance.plugin()), &info));
  for (const clap_id id : {clap_id{999999}, clap::kFirstMeterId + 4, CLAP_INVALID_ID}) {
    EXPECT_FALSE(params.get_value(instance.plugin(), id, &value)) << id;
    EXPECT_FALSE(params.text_to_value(instance.plugin(), id, "1", &value)) << id;
    EXPECT_FALSE(text_of(instance, id, 1)) << id;
  }
  EXPECT_EQ(value, 7);
}

TEST(ClapParameters, AreTextsAndBackTheSameText) {
  const ClapInstance instance(binary());
  for (const clap_param_info_t& p : parameters_of(instance)) {
    for (int step = 0; step <= 20; ++step) {
      const double value = p.min_value + (p.max_value - p.min_value) * step / 20;
      const auto text = text_of(instance, p.id, value);
      ASSERT_TRUE(text) << p.name;
      double back = 0;
      ASSERT_TRUE(instance.params().text_to_value(instance.plugin(), p.id, text->c_str(), &back))
          << p.name << " " << *text;
      EXPECT_EQ(text_of(instance, p.id, back), text) << p.name;
    }
    double value = 7;
    EXPECT_FALSE(instance.params().text_to_value(instance.plugin(), p.id, "no such", &value));
  }
  EXPECT_EQ(text_of(instance, id_of("eq1_frequency"), 2500), "2.5 kHz");
  EXPECT_FALSE(text_of(instance, id_of("eq1_frequency"), 2500, 7));  // no room for the zero
}

TEST(ClapParameters, ChangeTheSameByFlushingAndByProcessing) {
  for (const bool is_active : {false, true}) {
    ClapInstance flushed(binary()), processed(binary());
    if (is_active) flushed.activate();
    processed.activate();
    ClapEvents events;
    std::mt19937 random(2);
    for (const clap_param_info_t& p : parameters_of(flushed)) {
      const double share = static_cast<double>(random() % 1000) / 999;
      events.set(0, p.id, p.min_value + share * (p.max_value - p.min_value));
    }
    flushed.flush(events);
    processed.process({noise(2, 1)[0].data(), noise(2, 1)[0].data()}, nullptr, {}, 0);
    Planar silence(2, std::vector<float>(16));
    processed.process({silence[0].data(), silence[1].data()}, nullptr,
                      {silence[0].data(), silence[1].data()}, 16, events.list());
    for (const clap_param_info_t& p : parameters_of(flushed)) {
      if (is_read_only(p)) continue;
      double one = 0, other = 1;
      flushed.params().get_value(flushed.plugin(), p.id, &one);
      processed.params().get_value(processed.plugin(), p.id, &other);
      EXPECT_EQ(one, other) << p.name;
    }
  }
}

TEST(ClapParameters, TakeNearestLegalValues) {
  ClapInstance instance(binary());
  instance.set("eq1_gain", 1e9);
  EXPECT_EQ(instance.value("eq1_gain"), 40);
  instance.set("compressor_on", 0.7);
  EXPECT_EQ(instance.value("compressor_on"), 1);
}

TEST(ClapParameters, StayWhenEventsAreNotForThem) {
  ClapInstance instance(binary());
  instance.set("eq1_gain", 3);
  for (const bool is_active : {false, true}) {
    if (is_active) instance.activate();
    ClapEvents events;
    const clap_id gain = id_of("eq1_gain");
    for (int i = 0; i < 6; ++i) events.set(0, gain, -9);
    events.all()[0].header.space_id = 0xb33f;
    events.all()[1].header.type = CLAP_EVENT_PARAM_GESTURE_BEGIN;
    events.all()[2].param_id = 999999;
    events.all()[3].value = std::nan("");
    events.all()[4].value = std::numeric_limits<double>::infinity();
    events.all()[5].param_id = clap::kFirstMeterId;
    instance.flush(events);
    EXPECT_EQ(instance.value("eq1_gain"), 3);
  }
}

TEST(ClapMeters, AreReadOnlyParametersThatFall) {
  ClapInstance instance(binary());
  instance.activate();
  Planar input(2, std::vector<float>(1024));
  input[0][7] = 0.5f;
  instance.play(input, {}, [] { return 1024; });
  const auto meter = [&](clap::Meter which) {
    double value = 0;
    EXPECT_TRUE(instance.params().get_value(
        instance.plugin(), clap::kFirstMeterId + static_cast<clap_id>(which), &value));
    return value;
  };
  EXPECT_NEAR(meter(clap::kInputPeak), -6.0, 1e-5);
  EXPECT_NEAR(meter(clap::kOutputPeak), -6.0, 1e-5);
  EXPECT_EQ(meter(clap::kCompressorReduction), 0);
  ASSERT_EQ(instance.shown.size(), 2u);  // what has changed
  EXPECT_EQ(instance.shown[0].param_id, clap::kFirstMeterId);
  EXPECT_NEAR(instance.shown[0].value, -6.0, 1e-5);
  instance.play(Planar(2, std::vector<float>(48000)), {}, [] { return 480; });
  EXPECT_NEAR(meter(clap::kInputPeak), -6 - 20 / 1.7, 0.3);
  instance.deactivate();
  instance.set_busy();
  instance.activate();
  instance.play(noise(2, 24000), {}, [] { return 480; });
  EXPECT_GT(meter(clap::kCompressorReduction), 6);
  EXPECT_LT(meter(clap::kCompressorReduction), 30);
}

}  // namespace
}  // namespace channelstrip::plugin_test::clap_parameters_test
