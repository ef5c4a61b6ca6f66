#include <ctype.h>
#include <stdio.h>
#include <string.h>

#include "support.h"
#include "testing.h"

TEST(DescribesEveryParameter) {
  for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter p;
    CHECK(channelstrip_parameter_info(i, &p, sizeof p) == CHANNELSTRIP_OK);
    CHECK(p.kind <= CHANNELSTRIP_SWITCH);
    CHECK(p.scale <= CHANNELSTRIP_LOGARITHMIC);
    CHECK(p.in_automation <= 1);
    CHECK(p.minimum < p.maximum && p.minimum <= p.initial && p.initial <= p.maximum);
    CHECK(p.step >= 0);
    CHECK(isalpha((unsigned char)p.symbol[0]));
    CHECK(strspn(p.symbol, "abcdefghijklmnopqrstuvwxyz0123456789_") == strlen(p.symbol));
    CHECK(*p.name != '\0' && *p.group != '\0' && *p.meaning != '\0');
    CHECK(*p.short_name != '\0' && strlen(p.short_name) <= 15);
    CHECK(strchr(p.meaning, '\n') == NULL && p.unit != NULL);
    CHECK((p.kind == CHANNELSTRIP_CHOICE) == (p.word_count > 0));
    if (p.kind == CHANNELSTRIP_CHOICE) CHECK(p.maximum == p.word_count - 1);
    if (p.kind == CHANNELSTRIP_SWITCH) CHECK(p.minimum == 0 && p.maximum == 1);
    for (uint32_t w = 0; w < p.word_count; ++w) CHECK(*p.words[w] != '\0');
    uint32_t id = NO_ID;
    CHECK(channelstrip_parameter_find(p.symbol, &id) == CHANNELSTRIP_OK && id == p.id);
  }
}

// parameters.txt has a line for each: id, symbol, the words of a choice. A line in it never changes
// and never goes; what is new is a line, or a word, more.
TEST(KeepsTheListedIdsSymbolsAndWords) {
  FILE* list = fopen(CHANNELSTRIP_SOURCE_DIR "/tests/control/interface/parameters.txt", "r");
  CHECK(list != NULL);
  if (!list) return;
  char line[512], found[512];
  uint32_t listed = 0, count = channelstrip_parameter_count();
  while (fgets(line, sizeof line, list)) {
    ++listed;
    line[strcspn(line, "\n")] = '\0';
    unsigned id = NO_ID;
    CHECK(sscanf(line, "%u", &id) == 1);
    int is_found = 0;
    for (uint32_t i = 0; i < count && !is_found; ++i) {
      channelstrip_parameter p;
      channelstrip_parameter_info(i, &p, sizeof p);
      if (p.id != id) continue;
      size_t length = (size_t)snprintf(found, sizeof found, "%u %s", (unsigned)p.id, p.symbol);
      for (uint32_t w = 0; w < p.word_count; ++w) {
        length += (size_t)snprintf(found + length, sizeof found - length, " %s", p.words[w]);
      }
      is_found = strcmp(found, line) == 0;
      if (!is_found) fprintf(stderr, "listed: %s\nfound:  %s\n", line, found);
    }
    CHECK(is_found);
  }
  fclose(list);
  CHECK(listed == count);
}

TEST(RefusesParametersThatThereAreNot) {
  channelstrip_parameter p = {.id = 5};
  uint32_t id = 77;
  CHECK(channelstrip_parameter_info(channelstrip_parameter_count(), &p, sizeof p) ==
        CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_parameter_info(0, NULL, sizeof p) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_parameter_info(0, &p, 0) == CHANNELSTRIP_INVALID);
  CHECK(p.id == 5);
  CHECK(channelstrip_parameter_find("eq9_gain", &id) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_parameter_find("EQ1_GAIN", &id) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_parameter_find("", &id) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_parameter_find(NULL, &id) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_parameter_find("mix", NULL) == CHANNELSTRIP_INVALID);
  CHECK(id == 77);
}
