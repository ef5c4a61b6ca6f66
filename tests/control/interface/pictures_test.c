#include <math.h>

#include "support.h"
#include "testing.h"

static double response_at(const channelstrip_settings* settings, uint32_t part, double frequency) {
  double decibels = NAN;
  CHECK(channelstrip_settings_response(settings, 48000, part, &frequency, &decibels, 1) ==
        CHANNELSTRIP_OK);
  return decibels;
}

TEST(APeakHasItsGainAtItsFrequency) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "eq3_on", 1);
  set(settings, "eq3_frequency", 1000);
  set(settings, "eq3_gain", 6);
  set(settings, "eq3_q", 2);
  CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_ALL, 1000) - 6) < 1e-3);
  CHECK(fabs(response_at(settings, 3, 1000) - 6) < 1e-3);
  CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_PRE, 1000) - 6) < 1e-3);
  CHECK(response_at(settings, CHANNELSTRIP_EQ_POST, 1000) == 0);
  CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_ALL, 0)) < 1e-3);
  CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_ALL, 24000)) < 1e-3);
  set(settings, "eq3_position", 1);
  CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_POST, 1000) - 6) < 1e-3);
  set(settings, "eq3_on", 0);
  CHECK(response_at(settings, CHANNELSTRIP_EQ_ALL, 1000) == 0);
  CHECK(fabs(response_at(settings, 3, 1000) - 6) < 1e-3);
  channelstrip_settings_free(settings);
}

TEST(BandsAddUpInTheWholeResponse) {
  channelstrip_settings* settings = busy_settings();
  for (double f = 20; f < 20000; f *= 1.7) {
    const double sum = response_at(settings, 1, f) + response_at(settings, 2, f);
    CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_ALL, f) - sum) < 1e-9);
    CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_PRE, f) +
               response_at(settings, CHANNELSTRIP_EQ_POST, f) - sum) < 1e-9);
  }
  channelstrip_settings_free(settings);
}

TEST(TheKeyFilterHasAResponse) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "key_filter_type", 4);  // high_pass
  set(settings, "key_filter_frequency", 1000);
  CHECK(fabs(response_at(settings, CHANNELSTRIP_EQ_KEY_FILTER, 1000) + 3.01) < 0.01);
  CHECK(response_at(settings, CHANNELSTRIP_EQ_KEY_FILTER, 0) < -100);
  CHECK(response_at(settings, CHANNELSTRIP_EQ_ALL, 1000) == 0);
  channelstrip_settings_free(settings);
}

TEST(ResponsesAreRefusedOutsideTheirLimits) {
  channelstrip_settings* settings = busy_settings();
  const double good[] = {100, 200}, above[] = {100, 24001}, below[] = {-1, 100};
  const double none[] = {100, NAN};
  double found[] = {77, 77};
  CHECK(channelstrip_settings_response(NULL, 48000, 0, good, found, 2) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 0, 0, good, found, 2) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, NAN, 0, good, found, 2) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 48000, 12, good, found, 2) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 48000, 0, NULL, found, 2) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 48000, 0, good, NULL, 2) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 48000, 0, above, found, 2) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 48000, 0, below, found, 2) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_response(settings, 48000, 0, none, found, 2) == CHANNELSTRIP_INVALID);
  CHECK(found[0] == 77 && found[1] == 77);
  CHECK(channelstrip_settings_response(settings, 48000, 0, NULL, NULL, 0) == CHANNELSTRIP_OK);
  channelstrip_settings_free(settings);
}

TEST(ACompressorOfFourToOneHasItsStaticGains) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "compressor_on", 1);
  set(settings, "compressor_threshold", -20);
  set(settings, "compressor_ratio", 4);
  set(settings, "compressor_knee", 0);
  const double levels[] = {-60, -20, -12, 0};
  const double expected[] = {0, 0, -6, -15};
  double compressor[4], expander[4];
  CHECK(channelstrip_settings_static_gains(settings, 1, levels, compressor, expander, 4) ==
        CHANNELSTRIP_OK);
  for (int i = 0; i < 4; ++i) {
    CHECK(fabs(compressor[i] - expected[i]) < 1e-4);
    CHECK(expander[i] == 0);
  }
  CHECK(channelstrip_settings_static_gains(settings, 1, levels, NULL, NULL, 4) == CHANNELSTRIP_OK);
  channelstrip_settings_free(settings);
}

TEST(AGateIsOpenOrShut) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "expander_on", 1);
  set(settings, "expander_gate", 1);
  set(settings, "expander_ratio", 2);
  set(settings, "expander_knee", 0);
  set(settings, "expander_threshold", -40);
  set(settings, "expander_hysteresis", 6);
  set(settings, "expander_range", -50);
  const double levels[] = {-100, -43, -20};
  const double open_gains[] = {-50, -3, 0};
  double open[3], shut[3];
  CHECK(channelstrip_settings_static_gains(settings, 1, levels, NULL, open, 3) == CHANNELSTRIP_OK);
  CHECK(channelstrip_settings_static_gains(settings, 0, levels, NULL, shut, 3) == CHANNELSTRIP_OK);
  for (int i = 0; i < 3; ++i) {
    CHECK(fabs(open[i] - open_gains[i]) < 1e-3);
    CHECK(shut[i] == -50);
  }
  set(settings, "expander_gate", 0);
  CHECK(channelstrip_settings_static_gains(settings, 0, levels, NULL, shut, 3) == CHANNELSTRIP_OK);
  for (int i = 0; i < 3; ++i) CHECK(shut[i] == open[i]);  // never shut
  channelstrip_settings_free(settings);
}

TEST(StaticGainsAreRefusedWithoutSettingsOrLevels) {
  channelstrip_settings* settings = busy_settings();
  const double levels[] = {0, INFINITY};
  double gains[] = {77, 77};
  CHECK(channelstrip_settings_static_gains(NULL, 1, levels, gains, gains, 1) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_static_gains(settings, 1, NULL, gains, NULL, 1) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_static_gains(settings, 1, levels, gains, NULL, 2) ==
        CHANNELSTRIP_INVALID);
  CHECK(gains[0] == 77);
  CHECK(channelstrip_settings_static_gains(settings, 1, NULL, NULL, NULL, 0) == CHANNELSTRIP_OK);
  channelstrip_settings_free(settings);
}
