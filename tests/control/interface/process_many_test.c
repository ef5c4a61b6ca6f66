#include <string.h>

#include "support.h"
#include "testing.h"

enum { kStrips = 80 };

typedef struct Many {
  channelstrip_strip *alone[kStrips], *together[kStrips];
  Stream *a[kStrips], *b[kStrips];
  Buffers buffers[kStrips];
  channelstrip_block blocks[kStrips];
  uint32_t channels[kStrips], count;
} Many;

static Many* make(const char* const* formats, uint32_t format_count, uint32_t count,
                  const channelstrip_settings* settings) {
  Many* many = calloc(1, sizeof *many);
  many->count = count;
  for (uint32_t i = 0; i < count; ++i) {
    const char* format = formats[i % format_count];
    channelstrip_format info;
    channelstrip_format_info(format_of(format), &info, sizeof info);
    many->channels[i] = info.channels;
    many->alone[i] = strip_of(format, settings);
    many->together[i] = strip_of(format, settings);
    many->a[i] = noise(1600, i + 1);
    many->b[i] = noise(1600, i + 1);
  }
  return many;
}

static void end(Many* many) {
  for (uint32_t i = 0; i < many->count; ++i) {
    channelstrip_strip_free(many->alone[i]);
    channelstrip_strip_free(many->together[i]);
    free(many->a[i]);
    free(many->b[i]);
  }
  free(many);
}

// In calls of some frames each.
static void compare(Many* many, uint32_t frames) {
  for (uint32_t at = 0; at < 1600; at += frames) {
    for (uint32_t i = 0; i < many->count; ++i) {
      cut(&many->buffers[i], many->a[i], at, frames);
      CHECK(channelstrip_strip_process(many->alone[i], &many->buffers[i].block) == CHANNELSTRIP_OK);
      cut(&many->buffers[i], many->b[i], at, frames);
      many->blocks[i] = many->buffers[i].block;
    }
    CHECK(channelstrip_strip_process_many(many->together, many->blocks, many->count) ==
          CHANNELSTRIP_OK);
  }
  for (uint32_t i = 0; i < many->count; ++i) {
    CHECK(have_same_outputs(many->a[i], many->b[i], many->channels[i]));
    channelstrip_meters a, b;
    channelstrip_strip_read_meters(many->alone[i], &a, sizeof a, NULL);
    channelstrip_strip_read_meters(many->together[i], &b, sizeof b, NULL);
    CHECK(a.frames == b.frames && a.output_peak[0] == b.output_peak[0]);
    CHECK(a.compressor_reduction == b.compressor_reduction);
  }
  end(many);
}

// What the processing library does alone, so that strips can share its calls.
static channelstrip_settings* plain_settings(void) {
  channelstrip_settings* settings = busy_settings();
  set(settings, "mix", 100);
  set(settings, "gain_in", 0);
  return settings;
}

TEST(ManyStripsTogetherAreTheSameAsOneByOne) {
  static const char* const mono[] = {"Mono"};
  static const char* const surround[] = {"7.1"};
  for (int plain = 0; plain < 2; ++plain) {
    channelstrip_settings* settings = plain ? plain_settings() : busy_settings();
    compare(make(mono, 1, kStrips, settings), 64);
    compare(make(mono, 1, 5, settings), 100);  // no whole blocks
    compare(make(surround, 1, 3, settings), 400);
    channelstrip_settings_free(settings);
  }
}

TEST(StripsProcessedTogetherMayHaveSeveralFormats) {
  static const char* const formats[] = {"Quad", "LCRS", "7.0",  "6.1", "Mono",
                                        "5.1",  "6.0",  "Mono", "Mono"};
  for (int style = 0; style < 5; ++style) {  // pairs to none
    channelstrip_settings* settings = plain_settings();
    set(settings, "link_style", style);
    compare(make(formats, 9, 30, settings), 160);
    channelstrip_settings_free(settings);
  }
}

TEST(BadBlocksOfManyAreRefusedWhole) {
  static const char* const mono[] = {"Mono"};
  Many* many = make(mono, 1, 3, NULL);
  for (uint32_t i = 0; i < 3; ++i) {
    cut(&many->buffers[i], many->b[i], 0, 160);
    many->blocks[i] = many->buffers[i].block;
  }
  const channelstrip_event event = {0, id_of("mix"), 50};
  channelstrip_block* last = &many->blocks[2];
  CHECK(channelstrip_strip_process_many(NULL, many->blocks, 3) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_process_many(many->together, NULL, 3) == CHANNELSTRIP_INVALID);
  last->frames = 144;
  CHECK(channelstrip_strip_process_many(many->together, many->blocks, 3) == CHANNELSTRIP_INVALID);
  last->frames = 160;
  last->events = &event;
  last->event_count = 1;
  CHECK(channelstrip_strip_process_many(many->together, many->blocks, 3) == CHANNELSTRIP_INVALID);
  last->event_count = 0;
  last->inputs = NULL;
  CHECK(channelstrip_strip_process_many(many->together, many->blocks, 3) == CHANNELSTRIP_INVALID);
  last->inputs = many->buffers[2].inputs;
  many->buffers[2].outputs[0] = NULL;
  CHECK(channelstrip_strip_process_many(many->together, many->blocks, 3) == CHANNELSTRIP_INVALID);
  many->buffers[2].outputs[0] = many->b[2]->outputs[0];
  channelstrip_strip* strips[] = {many->together[0], many->together[1], NULL};
  CHECK(channelstrip_strip_process_many(strips, many->blocks, 3) == CHANNELSTRIP_INVALID);
  for (uint32_t i = 0; i < 3; ++i) CHECK(memcmp(many->a[i], many->b[i], sizeof(Stream)) == 0);
  CHECK(channelstrip_strip_process_many(NULL, NULL, 0) == CHANNELSTRIP_OK);
  CHECK(channelstrip_strip_process_many(many->together, many->blocks, 3) == CHANNELSTRIP_OK);
  end(many);
}
