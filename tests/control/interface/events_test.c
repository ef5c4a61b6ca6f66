#include <math.h>
#include <string.h>

#include "support.h"
#include "testing.h"

TEST(AnEventIsASettingAtItsFrame) {
  channelstrip_settings *settings = busy_settings(), *read = channelstrip_settings_new();
  channelstrip_strip *by_event = strip_of("Stereo", settings),
                     *by_call = strip_of("Stereo", settings);
  Stream *a = noise(4000, 6), *b = noise(4000, 6), *c = noise(4000, 6);
  const channelstrip_event events[] = {{320, id_of("eq1_gain"), -12},
                                       {320, id_of("mix"), 30},
                                       {1600, id_of("compressor_on"), 0},
                                       {4000, id_of("gain_out"), 1e9}};
  Buffers buffers;
  cut(&buffers, a, 0, 4000);
  buffers.block.events = events;
  buffers.block.event_count = 4;
  CHECK(channelstrip_strip_process(by_event, &buffers.block) == CHANNELSTRIP_OK);

  static const uint32_t cuts[] = {0, 320, 1600, 4000};
  for (int i = 0; i < 3; ++i) {
    for (int e = 0; e < 4; ++e) {
      if (events[e].frame == cuts[i])
        channelstrip_strip_set(by_call, events[e].id, events[e].value);
    }
    cut(&buffers, b, cuts[i], cuts[i + 1] - cuts[i]);
    CHECK(channelstrip_strip_process(by_call, &buffers.block) == CHANNELSTRIP_OK);
  }
  CHECK(have_same_outputs(a, b, 2));

  channelstrip_strip* without = strip_of("Stereo", settings);
  CHECK(process(without, c) == CHANNELSTRIP_OK);
  CHECK(memcmp(a->outputs[0], c->outputs[0], 320 * sizeof(float)) == 0);
  CHECK(memcmp(a->outputs[0] + 320, c->outputs[0] + 320, 320 * sizeof(float)) != 0);

  CHECK(channelstrip_strip_get_settings(by_event, read) == CHANNELSTRIP_OK);
  CHECK(get(read, "eq1_gain") == -12 && get(read, "mix") == 30);
  CHECK(get(read, "compressor_on") == 0 && get(read, "gain_out") == 60);
  CHECK(get(read, "eq2_gain") == -4);
  channelstrip_strip_free(by_event);
  channelstrip_strip_free(by_call);
  channelstrip_strip_free(without);
  channelstrip_settings_free(settings);
  channelstrip_settings_free(read);
  free(a);
  free(b);
  free(c);
}

static void refuse(const channelstrip_event* events, uint32_t count) {
  channelstrip_settings *initial = channelstrip_settings_new(), *read = channelstrip_settings_new();
  channelstrip_strip* strip = strip_of("Mono", NULL);
  Stream *stream = noise(100, 1), *before = noise(100, 1);
  Buffers buffers;
  cut(&buffers, stream, 0, 100);
  buffers.block.events = events;
  buffers.block.event_count = count;
  CHECK(channelstrip_strip_process(strip, &buffers.block) == CHANNELSTRIP_INVALID);
  CHECK(memcmp(stream, before, sizeof *stream) == 0);
  CHECK(channelstrip_strip_get_settings(strip, read) == CHANNELSTRIP_OK);
  CHECK(are_same(read, initial));
  channelstrip_strip_free(strip);
  channelstrip_settings_free(initial);
  channelstrip_settings_free(read);
  free(stream);
  free(before);
}

TEST(EventsThatCannotBeAreRefusedWithTheirCall) {
  const uint32_t mix = id_of("mix");
  const channelstrip_event backwards[] = {{50, mix, 1}, {49, mix, 2}};
  const channelstrip_event beyond[] = {{0, mix, 1}, {101, mix, 2}};
  const channelstrip_event unknown[] = {{0, mix, 1}, {50, NO_ID, 2}};
  const channelstrip_event none[] = {{0, mix, 1}, {50, mix, NAN}};
  refuse(backwards, 2);
  refuse(beyond, 2);
  refuse(unknown, 2);
  refuse(none, 2);
  refuse(NULL, 1);
}

TEST(ACallHasUpTo1024Events) {
  static channelstrip_event events[1025];
  channelstrip_strip* strip = strip_of("Mono", NULL);
  channelstrip_settings* read = channelstrip_settings_new();
  for (uint32_t i = 0; i < 1025; ++i)
    events[i] = (channelstrip_event){i / 11, id_of("mix"), i % 100};
  refuse(events, 1025);
  Stream* stream = noise(100, 1);
  Buffers buffers;
  cut(&buffers, stream, 0, 100);
  buffers.block.events = events;
  buffers.block.event_count = 1024;
  CHECK(channelstrip_strip_process(strip, &buffers.block) == CHANNELSTRIP_OK);
  channelstrip_strip_get_settings(strip, read);
  CHECK(get(read, "mix") == 23);
  channelstrip_strip_free(strip);
  channelstrip_settings_free(read);
  free(stream);
}
