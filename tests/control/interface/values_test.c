#include <math.h>
#include <string.h>

#include "support.h"
#include "testing.h"

static double text_value(const char* symbol, const char* text) {
  double value = NAN;
  CHECK(channelstrip_text_to_value(id_of(symbol), text, &value) == CHANNELSTRIP_OK);
  return value;
}

static void check_text(const char* symbol, double value, const char* expected) {
  char text[64] = "";
  size_t length = 0;
  CHECK(channelstrip_value_to_text(id_of(symbol), value, text, sizeof text, &length) ==
        CHANNELSTRIP_OK);
  CHECK(strcmp(text, expected) == 0 && length == strlen(expected));
}

TEST(TextsOfEveryParameterReadBack) {
  for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter p;
    channelstrip_parameter_info(i, &p, sizeof p);
    for (int n = 0; n <= 40; ++n) {
      double value = p.initial, read = NAN;
      char text[64], again[64];
      if (n < 40) channelstrip_position_to_value(p.id, n / 39.0, &value);
      CHECK(channelstrip_value_to_text(p.id, value, text, sizeof text, NULL) == CHANNELSTRIP_OK);
      CHECK(channelstrip_text_to_value(p.id, text, &read) == CHANNELSTRIP_OK);
      CHECK(fabs(read - value) <= 5e-4 * fabs(value));  // four digits
      if (p.kind != CHANNELSTRIP_NUMBER || p.step > 0) CHECK(read == value);
      channelstrip_value_to_text(p.id, read, again, sizeof again, NULL);
      CHECK(strcmp(text, again) == 0);
    }
    for (uint32_t w = 0; w < p.word_count; ++w) CHECK(text_value(p.symbol, p.words[w]) == w);
  }
}

TEST(WritesValuesAsPeopleDo) {
  check_text("eq1_frequency", 2500, "2.5 kHz");
  check_text("eq1_frequency", 440, "440 Hz");
  check_text("compressor_ratio", 4, "4:1");
  check_text("compressor_ratio", 1000, "inf:1");
  check_text("compressor_threshold", -18, "-18 dB");
  check_text("compressor_release", 1500, "1.5 s");
  check_text("compressor_threshold", -1e9, "-120 dB");
  check_text("eq1_shelf_slope", 0, "off");
  check_text("bypass", 1, "on");
  check_text("eq1_type", 2, "high_shelf");
}

TEST(ReadsValuesAsPeopleWriteThem) {
  CHECK(text_value("eq1_frequency", " 2.5k ") == 2500);
  CHECK(text_value("eq1_frequency", "2.5 khz") == 2500);
  CHECK(text_value("eq1_frequency", "440") == 440);
  CHECK(text_value("compressor_ratio", "4") == 4);
  CHECK(text_value("compressor_ratio", "inf") == 1000);
  CHECK(text_value("compressor_threshold", "+3 dB") == 3);
  CHECK(text_value("compressor_threshold", "-1000") == -120);
  CHECK(text_value("eq1_type", "High_Shelf") == 2);
  CHECK(text_value("bypass", "ON") == 1);
}

TEST(RefusesTextsAndValuesThatMeanNothing) {
  static const char* const bad[] = {"", "loud", "nan", "3 apples", "4:1", "1e", "--3", "3 Hz"};
  const uint32_t threshold = id_of("compressor_threshold");
  double value = 77;
  for (size_t i = 0; i < sizeof bad / sizeof *bad; ++i) {
    CHECK(channelstrip_text_to_value(threshold, bad[i], &value) == CHANNELSTRIP_UNKNOWN);
  }
  CHECK(channelstrip_text_to_value(id_of("eq1_type"), "2", &value) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_text_to_value(NO_ID, "3", &value) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_text_to_value(threshold, NULL, &value) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_text_to_value(threshold, "3", NULL) == CHANNELSTRIP_INVALID);
  CHECK(value == 77);
  char text[8] = "kept";
  size_t length = 77;
  CHECK(channelstrip_value_to_text(NO_ID, 0, text, sizeof text, &length) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_value_to_text(threshold, NAN, text, sizeof text, &length) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_value_to_text(threshold, INFINITY, text, sizeof text, &length) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_value_to_text(threshold, 0, NULL, 8, &length) == CHANNELSTRIP_INVALID);
  CHECK(strcmp(text, "kept") == 0 && length == 77);
}

TEST(SaysHowLongATextIsThatDoesNotFit) {
  char text[8] = "kept";
  size_t length = 0;
  const uint32_t threshold = id_of("compressor_threshold");
  CHECK(channelstrip_value_to_text(threshold, -18, text, 6, &length) == CHANNELSTRIP_TOO_SMALL);
  CHECK(length == 6 && strcmp(text, "kept") == 0);
  CHECK(channelstrip_value_to_text(threshold, -18, NULL, 0, &length) == CHANNELSTRIP_TOO_SMALL);
  CHECK(channelstrip_value_to_text(threshold, -18, text, 7, NULL) == CHANNELSTRIP_OK);
  CHECK(strcmp(text, "-18 dB") == 0);
}

TEST(PositionsRunFromOneEndToTheOtherAndBack) {
  for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter p;
    channelstrip_parameter_info(i, &p, sizeof p);
    double last = -INFINITY;
    for (int n = 0; n <= 100; ++n) {
      double value = NAN, position = NAN, again = NAN;
      CHECK(channelstrip_position_to_value(p.id, n / 100.0, &value) == CHANNELSTRIP_OK);
      CHECK(channelstrip_value_to_position(p.id, value, &position) == CHANNELSTRIP_OK);
      CHECK(channelstrip_position_to_value(p.id, position, &again) == CHANNELSTRIP_OK);
      CHECK(value >= last && position >= 0 && position <= 1);
      CHECK(fabs(again - value) <= 1e-9 * (p.maximum - p.minimum));
      const int is_free = p.step == 0 && (p.minimum != 0 || value > 0);  // some jump to 0
      if (is_free) CHECK(fabs(position - n / 100.0) < 1e-9);
      if (n == 0) CHECK(value == p.minimum);
      if (n == 100) CHECK(value == p.maximum);
      last = value;
    }
    double value = NAN;
    CHECK(channelstrip_position_to_value(p.id, -3, &value) == CHANNELSTRIP_OK);
    CHECK(value == p.minimum);
    CHECK(channelstrip_position_to_value(p.id, 3, &value) == CHANNELSTRIP_OK);
    CHECK(value == p.maximum);
  }
}

TEST(RefusesPositionsThatAreNone) {
  const uint32_t mix = id_of("mix");
  double result = 77;
  CHECK(channelstrip_position_to_value(mix, NAN, &result) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_position_to_value(mix, 0.5, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_position_to_value(NO_ID, 0.5, &result) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_value_to_position(mix, -INFINITY, &result) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_value_to_position(mix, 50, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_value_to_position(NO_ID, 50, &result) == CHANNELSTRIP_UNKNOWN);
  CHECK(result == 77);
}
