#include <math.h>
#include <string.h>

#include "support.h"
#include "testing.h"

static void check_adjustments(const channelstrip_settings* settings, double sample_rate,
                              const channelstrip_adjustment* expected, uint32_t count) {
  channelstrip_adjustment found[18];
  uint32_t total = 77;
  CHECK(channelstrip_settings_adjustments(settings, sample_rate, found, 18, &total) ==
        CHANNELSTRIP_OK);
  CHECK(total == count);
  for (uint32_t i = 0; i < count && i < total; ++i) {
    CHECK(found[i].id == expected[i].id);
    CHECK(found[i].adjustment == expected[i].adjustment);
    CHECK(fabs(found[i].used - expected[i].used) <= 1e-12 * expected[i].used);
  }
}

TEST(BandsAboveHalfTheRateAreLeftOut) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "eq2_on", 1);
  set(settings, "eq2_frequency", 24000);
  const channelstrip_adjustment expected = {id_of("eq2_frequency"),
                                            CHANNELSTRIP_LEFT_OUT_ABOVE_RATE, 0};
  check_adjustments(settings, 48000, &expected, 1);
  check_adjustments(settings, 48100, NULL, 0);
  set(settings, "eq2_on", 0);
  check_adjustments(settings, 48000, NULL, 0);
  channelstrip_settings_free(settings);
}

TEST(FrequenciesThatAreTooLowAreRaised) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "eq1_on", 1);
  set(settings, "eq1_frequency", 1);
  const channelstrip_adjustment expected = {id_of("eq1_frequency"), CHANNELSTRIP_RAISED,
                                            3e-5 * 192000};
  check_adjustments(settings, 192000, &expected, 1);
  check_adjustments(settings, 32000, NULL, 0);
  channelstrip_settings_free(settings);
}

TEST(BandsTakeTheSectionsInOrder) {
  channelstrip_settings* settings = channelstrip_settings_new();
  for (int band = 1; band <= 3; ++band) {
    char on[] = "eq0_on";
    on[2] = (char)('0' + band);
    set(settings, on, 1);
  }
  set(settings, "eq1_type", 4);  // high_pass
  set(settings, "eq1_slope", 84);
  set(settings, "eq2_type", 3);  // low_pass
  set(settings, "eq2_slope", 48);
  const channelstrip_adjustment expected[] = {
      {id_of("eq2_slope"), CHANNELSTRIP_SHALLOWER, 12},
      {id_of("eq3_on"), CHANNELSTRIP_LEFT_OUT_FOR_SECTIONS, 0}};
  check_adjustments(settings, 48000, expected, 2);

  channelstrip_adjustment one[2] = {{5, 5, 5}, {5, 5, 5}};
  uint32_t total = 0;
  CHECK(channelstrip_settings_adjustments(settings, 48000, one, 1, &total) == CHANNELSTRIP_OK);
  CHECK(total == 2 && one[0].id == expected[0].id && one[1].id == 5);
  CHECK(channelstrip_settings_adjustments(settings, 48000, NULL, 0, NULL) == CHANNELSTRIP_OK);
  channelstrip_settings_free(settings);
}

TEST(AdjustmentsAreRefusedWithoutSettingsOrRate) {
  channelstrip_settings* settings = channelstrip_settings_new();
  channelstrip_adjustment one = {5, 5, 5};
  uint32_t total = 77;
  CHECK(channelstrip_settings_adjustments(NULL, 48000, &one, 1, &total) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_adjustments(settings, 999, &one, 1, &total) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_adjustments(settings, 1000001, &one, 1, &total) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_adjustments(settings, NAN, &one, 1, &total) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_adjustments(settings, 48000, NULL, 1, &total) ==
        CHANNELSTRIP_INVALID);
  CHECK(total == 77 && one.id == 5);
  channelstrip_settings_free(settings);
}
