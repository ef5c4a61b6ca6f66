#include <string.h>

#include "support.h"
#include "testing.h"

TEST(ListsFormatsInAnOrderThatStays) {
  static const struct {
    const char* name;
    uint32_t channels, groups;
    const char *wav, *film;
  } formats[] = {{"Mono", 1, 1, "M", "M"},
                 {"Stereo", 2, 1, "L R", "L R"},
                 {"LCR", 3, 2, "L R C", "L C R"},
                 {"Quad", 4, 2, "L R Ls Rs", "L R Ls Rs"},
                 {"LCRS", 4, 3, "L R C S", "L C R S"},
                 {"5.0", 5, 3, "L R C Ls Rs", "L C R Ls Rs"},
                 {"5.1", 6, 4, "L R C LFE Ls Rs", "L C R Ls Rs LFE"},
                 {"6.0", 6, 4, "L R C Cs Ls Rs", "L C R Ls Cs Rs"},
                 {"6.1", 7, 5, "L R C LFE Cs Ls Rs", "L C R Ls Cs Rs LFE"},
                 {"7.0", 7, 4, "L R C Lb Rb Ls Rs", "L C R Ls Rs Lb Rb"},
                 {"7.1", 8, 5, "L R C LFE Lb Rb Ls Rs", "L C R Ls Rs Lb Rb LFE"}};
  CHECK(channelstrip_format_count() == sizeof formats / sizeof *formats);
  for (uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    channelstrip_format info;
    CHECK(channelstrip_format_info(f, &info, sizeof info) == CHANNELSTRIP_OK);
    CHECK(strcmp(info.name, formats[f].name) == 0);
    CHECK(info.channels == formats[f].channels);
    CHECK(info.groups == formats[f].groups);
    for (int order = 0; order < 2; ++order) {
      char roles[64] = "";
      for (uint32_t c = 0; c < info.channels; ++c) {
        const char* role = channelstrip_format_role(f, order, c);
        CHECK(role != NULL);
        if (c > 0) strcat(roles, " ");
        if (role) strcat(roles, role);
      }
      CHECK(strcmp(roles, order == CHANNELSTRIP_ORDER_WAV ? formats[f].wav : formats[f].film) == 0);
      CHECK(channelstrip_format_role(f, order, info.channels) == NULL);
    }
  }
}

TEST(FindsFormatsWhateverTheirLettersCase) {
  uint32_t format = 77;
  CHECK(channelstrip_format_find("sTeReO", &format) == CHANNELSTRIP_OK && format == 1);
  CHECK(channelstrip_format_find("7.1", &format) == CHANNELSTRIP_OK && format == 10);
}

TEST(RefusesFormatsThatThereAreNot) {
  channelstrip_format info = {.name = "kept", .channels = 5};
  uint32_t format = 77;
  const uint32_t count = channelstrip_format_count();
  CHECK(channelstrip_format_info(count, &info, sizeof info) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_format_info(UINT32_MAX, &info, sizeof info) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_format_info(0, NULL, sizeof info) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_format_info(0, &info, 0) == CHANNELSTRIP_INVALID);
  CHECK(strcmp(info.name, "kept") == 0 && info.channels == 5);
  CHECK(channelstrip_format_find("9.9", &format) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_format_find("", &format) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_format_find(NULL, &format) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_format_find("5.1", NULL) == CHANNELSTRIP_INVALID);
  CHECK(format == 77);
  CHECK(channelstrip_format_role(count, CHANNELSTRIP_ORDER_WAV, 0) == NULL);
  CHECK(channelstrip_format_role(0, 2, 0) == NULL);
  CHECK(channelstrip_format_role(0, -1, 0) == NULL);
  CHECK(channelstrip_format_role(0, CHANNELSTRIP_ORDER_WAV, UINT32_MAX) == NULL);
}

TEST(FillsStructuresOfOtherVersions) {
  channelstrip_format info = {.name = "kept", .channels = 5};
  CHECK(channelstrip_format_info(1, &info, sizeof info.name) == CHANNELSTRIP_OK);
  CHECK(strcmp(info.name, "Stereo") == 0 && info.channels == 5);
  struct {
    channelstrip_format known;
    uint32_t later[4];
  } longer;
  memset(&longer, 1, sizeof longer);
  CHECK(channelstrip_format_info(1, &longer.known, sizeof longer) == CHANNELSTRIP_OK);
  CHECK(longer.known.channels == 2);
  for (int i = 0; i < 4; ++i) CHECK(longer.later[i] == 0);
}

TEST(SaysWhatEachStatusMeansAndItsVersion) {
  for (channelstrip_status a = CHANNELSTRIP_OK; a <= CHANNELSTRIP_NO_MEMORY + 1; ++a) {
    CHECK(strlen(channelstrip_status_text(a)) > 5);
    for (channelstrip_status b = CHANNELSTRIP_OK; b < a; ++b) {
      CHECK(strcmp(channelstrip_status_text(a), channelstrip_status_text(b)) != 0);
    }
  }
  CHECK(strcmp(channelstrip_status_text(-1), channelstrip_status_text(1000)) == 0);
  CHECK(strcmp(channelstrip_version(), CHANNELSTRIP_VERSION) == 0);
}
