#include <stdio.h>
#include <string.h>

#include "support.h"
#include "testing.h"

enum { kMostText = 16384 };

typedef struct Reports {
  uint32_t count;
  uint32_t line, column;  // of the first
  char what[128];
} Reports;

static void note(void* user, uint32_t line, uint32_t column, const char* what) {
  Reports* reports = user;
  if (reports->count++ > 0) return;
  reports->line = line;
  reports->column = column;
  snprintf(reports->what, sizeof reports->what, "%s", what);
}

static channelstrip_status read_text(channelstrip_settings* settings, const char* text,
                                     Reports* reports) {
  *reports = (Reports){0};
  return channelstrip_settings_read(settings, text, strlen(text), note, reports);
}

TEST(SettingsAreWrittenReadAndWrittenTheSame) {
  static char first[kMostText], second[kMostText];
  channelstrip_settings* read = channelstrip_settings_new();
  uint32_t random = 7;
  for (int round = 0; round < 300; ++round) {
    channelstrip_settings* written = channelstrip_settings_new();
    for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
      channelstrip_parameter p;
      double value = 0;
      channelstrip_parameter_info(i, &p, sizeof p);
      if (next_random(&random) % 300 > (uint32_t)round) continue;  // more and more
      channelstrip_position_to_value(p.id, next_random(&random) / 2147483646.0, &value);
      set(written, p.symbol, value);
    }
    if (round % 2) channelstrip_settings_set_links(written, format_of("5.1"), "L R|C|LFE Ls Rs");
    if (round % 3) channelstrip_settings_set_links(written, format_of("Stereo"), "L|R");
    size_t length = 0, again = 0;
    Reports reports;
    CHECK(channelstrip_settings_write(written, first, sizeof first, &length) == CHANNELSTRIP_OK);
    CHECK(length == strlen(first));
    CHECK(read_text(read, first, &reports) == CHANNELSTRIP_OK && reports.count == 0);
    CHECK(are_same(read, written));
    CHECK(channelstrip_settings_write(read, second, sizeof second, &again) == CHANNELSTRIP_OK);
    CHECK(length == again && memcmp(first, second, length) == 0);
    channelstrip_settings_free(written);
  }
  channelstrip_settings_free(read);
}

TEST(InitialSettingsAreAnEmptyText) {
  channelstrip_settings* settings = channelstrip_settings_new();
  channelstrip_settings* busy = busy_settings();
  char text[8] = "kept";
  size_t length = 77;
  CHECK(channelstrip_settings_write(settings, text, sizeof text, &length) == CHANNELSTRIP_OK);
  CHECK(*text == '\0' && length == 0);
  CHECK(channelstrip_settings_read(busy, NULL, 0, NULL, NULL) == CHANNELSTRIP_OK);
  CHECK(are_same(busy, settings));
  channelstrip_settings_free(settings);
  channelstrip_settings_free(busy);
}

TEST(WhatIsReadOtherwiseIsToldWithItsPlace) {
  static const struct {
    const char* text;
    uint32_t count, line, column;
    const char* what;  // that the report contains
  } cases[] = {
      {"mix = 50\nloudness = 3\n", 1, 2, 1, "loudness"},
      {"[compressor]\nratio = 3\n  wobble = 1\n", 1, 3, 3, "wobble"},
      {"mix = 250\n", 1, 1, 7, "100"},
      {"mix = \"much\"\n", 1, 1, 7, "mix"},
      {"mix = 50\n[[at]]\ntime = 1\nmix = 3\n", 1, 2, 3, "changes in time"},
      {"[link]\nstereo = \"L\"\n", 1, 2, 10, ""},
      {"a = 1\nb = 2\n", 2, 1, 1, "a"},
  };
  for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
    channelstrip_settings* settings = channelstrip_settings_new();
    Reports reports;
    CHECK(read_text(settings, cases[i].text, &reports) == CHANNELSTRIP_OK);
    CHECK(reports.count == cases[i].count);
    CHECK(reports.line == cases[i].line);
    CHECK(reports.column == cases[i].column);
    CHECK(strstr(reports.what, cases[i].what) != NULL && strchr(reports.what, '\n') == NULL);
    CHECK(channelstrip_settings_read(settings, cases[i].text, strlen(cases[i].text), NULL, NULL) ==
          CHANNELSTRIP_OK);
    channelstrip_settings_free(settings);
  }
}

TEST(TextThatIsNotTomlChangesNothing) {
  static const char* const bad[] = {"mix = ", "mix 50", "[compressor\n", "mix = 1\nmix = 2\n",
                                    "name = \"\xff\"\n"};
  channelstrip_settings* settings = busy_settings();
  channelstrip_settings* before = busy_settings();
  for (size_t i = 0; i < sizeof bad / sizeof *bad; ++i) {
    Reports reports;
    CHECK(read_text(settings, bad[i], &reports) == CHANNELSTRIP_SYNTAX);
    CHECK(reports.count == 1 && reports.line >= 1 && reports.what[0] != '\0');
    CHECK(channelstrip_settings_read(settings, bad[i], strlen(bad[i]), NULL, NULL) ==
          CHANNELSTRIP_SYNTAX);
  }
  CHECK(channelstrip_settings_read(NULL, "", 0, NULL, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_read(settings, NULL, 3, NULL, NULL) == CHANNELSTRIP_INVALID);
  CHECK(are_same(settings, before));
  channelstrip_settings_free(settings);
  channelstrip_settings_free(before);
}

TEST(AShortBufferForSettingsStaysAsItIs) {
  static char text[kMostText];
  channelstrip_settings* settings = busy_settings();
  size_t length = 0;
  CHECK(channelstrip_settings_write(settings, NULL, 0, &length) == CHANNELSTRIP_TOO_SMALL);
  CHECK(length > 100 && length < sizeof text);
  memset(text, 'x', sizeof text - 1);
  CHECK(channelstrip_settings_write(settings, text, length, NULL) == CHANNELSTRIP_TOO_SMALL);
  CHECK(strspn(text, "x") >= length);
  CHECK(channelstrip_settings_write(settings, text, length + 1, NULL) == CHANNELSTRIP_OK);
  CHECK(strlen(text) == length && text[length + 1] == 'x');
  CHECK(channelstrip_settings_write(NULL, text, sizeof text, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_settings_write(settings, NULL, 9, NULL) == CHANNELSTRIP_INVALID);
  channelstrip_settings_free(settings);
}

TEST(ReadsAPresetThatShips) {
  static char text[kMostText];
  FILE* file = fopen(CHANNELSTRIP_SOURCE_DIR "/presets/voice.toml", "r");
  CHECK(file != NULL);
  if (!file) return;
  const size_t length = fread(text, 1, sizeof text - 1, file);
  fclose(file);
  CHECK(length > 0);
  channelstrip_settings* settings = channelstrip_settings_new();
  Reports reports;
  CHECK(read_text(settings, text, &reports) == CHANNELSTRIP_OK && reports.count == 0);
  CHECK(get(settings, "compressor_on") == 1);
  channelstrip_settings_free(settings);
}
