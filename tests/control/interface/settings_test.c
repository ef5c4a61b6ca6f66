#include <math.h>
#include <string.h>

#include "support.h"
#include "testing.h"

TEST(SettingsBeginWithTheInitialValues) {
  channelstrip_settings* settings = channelstrip_settings_new();
  for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter p;
    channelstrip_parameter_info(i, &p, sizeof p);
    CHECK(get(settings, p.symbol) == p.initial);
  }
  channelstrip_settings_free(settings);
  channelstrip_settings_free(NULL);
}

TEST(SettingsTakeTheNearestLegalValue) {
  channelstrip_settings* settings = channelstrip_settings_new();
  for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter p;
    channelstrip_parameter_info(i, &p, sizeof p);
    CHECK(channelstrip_settings_set(settings, p.id, 1e300) == CHANNELSTRIP_OK);
    CHECK(get(settings, p.symbol) == p.maximum);
    CHECK(channelstrip_settings_set(settings, p.id, -1e300) == CHANNELSTRIP_OK);
    CHECK(get(settings, p.symbol) == p.minimum);
  }
  channelstrip_settings_set(settings, id_of("eq1_slope"), 20);
  CHECK(get(settings, "eq1_slope") == 18);
  channelstrip_settings_set(settings, id_of("bypass"), 0.7);
  CHECK(get(settings, "bypass") == 1);
  channelstrip_settings_set(settings, id_of("compressor_knee"), 0.05);
  CHECK(get(settings, "compressor_knee") == 0);
  channelstrip_settings_free(settings);
}

TEST(SettingsRefuseWhatCannotBeUsed) {
  channelstrip_settings* settings = busy_settings();
  channelstrip_settings* before = busy_settings();
  double value = 77;
  const uint32_t mix = id_of("mix");
  CHECK(channelstrip_settings_set(NULL, mix, 5) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_set(settings, mix, NAN) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_set(settings, mix, INFINITY) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_set(settings, NO_ID, 5) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_settings_get(NULL, mix, &value) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_get(settings, mix, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_get(settings, NO_ID, &value) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_settings_copy(NULL, before) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_copy(settings, NULL) == CHANNELSTRIP_INVALID);
  CHECK(value == 77);
  CHECK(are_same(settings, before));
  channelstrip_settings_free(settings);
  channelstrip_settings_free(before);
}

TEST(ACopyOfSettingsIsTheSameAndApart) {
  channelstrip_settings* from = busy_settings();
  channelstrip_settings* to = channelstrip_settings_new();
  CHECK(channelstrip_settings_set_links(from, format_of("Stereo"), "L | R") == CHANNELSTRIP_OK);
  CHECK(channelstrip_settings_copy(to, from) == CHANNELSTRIP_OK);
  CHECK(are_same(to, from));
  CHECK(channelstrip_settings_copy(to, to) == CHANNELSTRIP_OK);
  CHECK(are_same(to, from));
  set(from, "mix", 12);
  CHECK(get(to, "mix") == 80);
  channelstrip_settings_free(from);
  channelstrip_settings_free(to);
}

TEST(LinkMapsAreKeptForEachFormat) {
  channelstrip_settings* settings = channelstrip_settings_new();
  const uint32_t surround = format_of("5.1"), stereo = format_of("Stereo");
  char map[64] = "kept";
  size_t length = 77;
  CHECK(channelstrip_settings_get_links(settings, surround, map, sizeof map, &length) ==
        CHANNELSTRIP_OK);
  CHECK(*map == '\0' && length == 0);
  CHECK(channelstrip_settings_set_links(settings, surround, " Ls Rs|L C R | LFE") ==
        CHANNELSTRIP_OK);
  CHECK(channelstrip_settings_set_links(settings, stereo, "L | R") == CHANNELSTRIP_OK);
  channelstrip_settings_get_links(settings, surround, map, sizeof map, &length);
  CHECK(strcmp(map, "L R C | LFE | Ls Rs") == 0 && length == strlen(map));
  CHECK(channelstrip_settings_get_links(settings, surround, map, length, &length) ==
        CHANNELSTRIP_TOO_SMALL);
  CHECK(channelstrip_settings_set_links(settings, surround, NULL) == CHANNELSTRIP_OK);
  channelstrip_settings_get_links(settings, surround, map, sizeof map, NULL);
  CHECK(*map == '\0');
  channelstrip_settings_get_links(settings, stereo, map, sizeof map, NULL);
  CHECK(strcmp(map, "L | R") == 0);
  CHECK(channelstrip_settings_set_links(settings, stereo, "") == CHANNELSTRIP_OK);
  channelstrip_settings_get_links(settings, stereo, map, sizeof map, NULL);
  CHECK(*map == '\0');
  channelstrip_settings_free(settings);
}

TEST(EveryFormatCanHaveALinkMapOfItsOwn) {
  channelstrip_settings* settings = channelstrip_settings_new();
  for (uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    channelstrip_format info;
    char apart[64] = "", map[64] = "";
    channelstrip_format_info(f, &info, sizeof info);
    for (uint32_t c = 0; c < info.channels; ++c) {
      if (c > 0) strcat(apart, " | ");
      strcat(apart, channelstrip_format_role(f, CHANNELSTRIP_ORDER_WAV, c));
    }
    CHECK(channelstrip_settings_set_links(settings, f, apart) == CHANNELSTRIP_OK);
    CHECK(channelstrip_settings_get_links(settings, f, map, sizeof map, NULL) == CHANNELSTRIP_OK);
    CHECK(strcmp(map, apart) == 0);
  }
  channelstrip_settings_free(settings);
}

TEST(LinkMapsMustNameEachChannelOnce) {
  channelstrip_settings* settings = channelstrip_settings_new();
  static const char* const bad[] = {"L", "L L R", "L | R | C", "L R | L", "|", "L || R", "x y"};
  const uint32_t stereo = format_of("Stereo");
  char map[64] = "kept";
  channelstrip_settings_set_links(settings, stereo, "L | R");
  for (size_t i = 0; i < sizeof bad / sizeof *bad; ++i) {
    CHECK(channelstrip_settings_set_links(settings, stereo, bad[i]) == CHANNELSTRIP_INVALID);
  }
  CHECK(channelstrip_settings_set_links(settings, 99, "L R") == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_settings_set_links(NULL, stereo, "L R") == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_get_links(NULL, stereo, map, sizeof map, NULL) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_get_links(settings, 99, map, sizeof map, NULL) ==
        CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_settings_get_links(settings, stereo, NULL, 9, NULL) == CHANNELSTRIP_INVALID);
  CHECK(strcmp(map, "kept") == 0);
  channelstrip_settings_get_links(settings, stereo, map, sizeof map, NULL);
  CHECK(strcmp(map, "L | R") == 0);
  channelstrip_settings_free(settings);
}
