#include <math.h>
#include <stdalign.h>
#include <string.h>

#include "support.h"
#include "testing.h"

TEST(AStripPassesAudioAsItIsAtFirst) {
  for (uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    channelstrip_format info;
    channelstrip_format_info(f, &info, sizeof info);
    channelstrip_strip* strip = strip_of(info.name, NULL);
    Stream* stream = noise(1000, f + 1);
    CHECK(process(strip, stream) == CHANNELSTRIP_OK);
    for (uint32_t c = 0; c < info.channels; ++c) {
      CHECK(are_near(stream->outputs[c], stream->inputs[c], 1000));
      CHECK(stream->outputs[c][1000] == 0);  // nothing beyond
    }
    for (uint32_t c = info.channels; c < kChannels; ++c) CHECK(stream->outputs[c][0] == 77);
    channelstrip_strip_free(strip);
    free(stream);
  }
}

TEST(AStripIsRefusedForOptionsThatCannotBe) {
  const channelstrip_strip_options good = {.format = 1, .sample_rate = 48000};
  const double rates[] = {0, 999, 1000001, -48000, NAN, INFINITY};
  const double ends[] = {1000, 1000000};
  channelstrip_strip *kept = strip_of("Mono", NULL), *strip = kept;
  channelstrip_strip_options options = good;
  for (size_t i = 0; i < sizeof rates / sizeof *rates; ++i) {
    options.sample_rate = rates[i];
    CHECK(channelstrip_strip_new(&options, &strip) == CHANNELSTRIP_INVALID);
  }
  options = good;
  options.format = channelstrip_format_count();
  CHECK(channelstrip_strip_new(&options, &strip) == CHANNELSTRIP_UNKNOWN);
  options = good;
  options.order = 2;
  CHECK(channelstrip_strip_new(&options, &strip) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_strip_new(NULL, &strip) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_new(&good, NULL) == CHANNELSTRIP_INVALID);
  CHECK(strip == kept);
  channelstrip_strip_free(kept);
  for (int i = 0; i < 2; ++i) {
    options = good;
    options.sample_rate = ends[i];
    CHECK(channelstrip_strip_new(&options, &strip) == CHANNELSTRIP_OK);
    channelstrip_strip_free(strip);
  }
  channelstrip_strip_free(NULL);
}

// Not every system has C11's aligned_alloc.
static char* aligned_to_64(char* memory) {
  return memory + (64 - (uintptr_t)memory % 64);
}

TEST(AStripCanBeInMemoryOfTheCaller) {
  const size_t size = channelstrip_strip_size();
  CHECK(size > 0 && size % 64 == 0);
  char* const whole = malloc(size + 128);
  char* const memory = aligned_to_64(whole);
  channelstrip_settings* settings = busy_settings();
  const channelstrip_strip_options options = {
      .format = format_of("5.1"), .sample_rate = 48000, .settings = settings};
  channelstrip_strip* strip = NULL;
  memset(memory, 0x55, size + 64);
  CHECK(channelstrip_strip_init(memory, size, &options, &strip) == CHANNELSTRIP_OK);
  CHECK((void*)strip == (void*)memory);
  for (int i = 0; i < 64; ++i) CHECK(memory[size + (size_t)i] == 0x55);

  channelstrip_strip* own = strip_of("5.1", settings);
  Stream *a = noise(3000, 1), *b = noise(3000, 1);
  CHECK(process(strip, a) == CHANNELSTRIP_OK);
  CHECK(process(own, b) == CHANNELSTRIP_OK);
  CHECK(have_same_outputs(a, b, 6));
  channelstrip_strip_free(own);
  channelstrip_settings_free(settings);
  free(whole);
  free(a);
  free(b);
}

TEST(MemoryThatIsTooSmallOrUnalignedIsRefused) {
  const size_t size = channelstrip_strip_size();
  char* const whole = malloc(size + 128);
  char* const memory = aligned_to_64(whole);
  const channelstrip_strip_options options = {.sample_rate = 48000};
  const channelstrip_strip_options bad = {.sample_rate = 48};
  channelstrip_strip* strip = NULL;
  memset(memory, 0x55, size + 64);
  CHECK(channelstrip_strip_init(memory, size - 1, &options, &strip) == CHANNELSTRIP_TOO_SMALL);
  CHECK(channelstrip_strip_init(memory, 0, &options, &strip) == CHANNELSTRIP_TOO_SMALL);
  CHECK(channelstrip_strip_init(memory + 32, size, &options, &strip) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_init(memory + 1, size, &options, &strip) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_init(NULL, size, &options, &strip) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_init(memory, size, NULL, &strip) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_init(memory, size, &options, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_init(memory, size, &bad, &strip) == CHANNELSTRIP_INVALID);
  CHECK(strip == NULL);
  size_t changed = 0;
  for (size_t i = 0; i < size + 64; ++i) changed += memory[i] != 0x55;
  CHECK(changed == 0);
  free(whole);
}

TEST(AStripStartsOnItsSettingsWithoutAGlide) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "gain_out", 20);
  channelstrip_strip* strip = strip_of("Mono", settings);
  Stream* stream = noise(64, 3);
  CHECK(process(strip, stream) == CHANNELSTRIP_OK);
  for (int i = 0; i < 64; ++i) {
    CHECK(fabsf(stream->outputs[0][i] - 10 * stream->inputs[0][i]) < 1e-5f);
  }
  channelstrip_strip_free(strip);
  channelstrip_settings_free(settings);
  free(stream);
}

TEST(ControlsSetAStripAndReadItBack) {
  channelstrip_settings *busy = busy_settings(), *read = channelstrip_settings_new();
  channelstrip_strip* strip = strip_of("Stereo", NULL);
  channelstrip_settings_set_links(busy, format_of("Stereo"), "L | R");
  CHECK(channelstrip_strip_set_settings(strip, busy) == CHANNELSTRIP_OK);
  CHECK(channelstrip_strip_get_settings(strip, read) == CHANNELSTRIP_OK);
  CHECK(are_same(read, busy));
  CHECK(channelstrip_strip_set(strip, id_of("mix"), 1e9) == CHANNELSTRIP_OK);
  CHECK(channelstrip_strip_get_settings(strip, read) == CHANNELSTRIP_OK);
  CHECK(get(read, "mix") == 100);

  const uint32_t mix = id_of("mix");
  channelstrip_settings_copy(busy, read);
  CHECK(channelstrip_strip_set(NULL, mix, 5) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_set(strip, NO_ID, 5) == CHANNELSTRIP_UNKNOWN);
  CHECK(channelstrip_strip_set(strip, mix, NAN) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_set_settings(NULL, busy) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_set_settings(strip, NULL) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_get_settings(NULL, read) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_get_settings(strip, NULL) == CHANNELSTRIP_INVALID);
  channelstrip_strip_get_settings(strip, read);
  CHECK(are_same(read, busy));
  channelstrip_strip_free(strip);
  channelstrip_settings_free(busy);
  channelstrip_settings_free(read);
}

TEST(ASettingIsHeardFromTheNextCallOn) {
  channelstrip_strip* strip = strip_of("Mono", NULL);
  Stream* stream = noise(4096, 3);
  Buffers buffers;
  cut(&buffers, stream, 0, 2048);
  CHECK(channelstrip_strip_set(strip, id_of("glide"), 1) == CHANNELSTRIP_OK);
  CHECK(channelstrip_strip_process(strip, &buffers.block) == CHANNELSTRIP_OK);
  CHECK(are_near(stream->outputs[0], stream->inputs[0], 2048));
  CHECK(channelstrip_strip_set(strip, id_of("gain_out"), 20) == CHANNELSTRIP_OK);
  cut(&buffers, stream, 2048, 2048);
  CHECK(channelstrip_strip_process(strip, &buffers.block) == CHANNELSTRIP_OK);
  for (int i = 4000; i < 4096; ++i) {
    CHECK(fabsf(stream->outputs[0][i] - 10 * stream->inputs[0][i]) < 1e-4f);
  }
  channelstrip_strip_free(strip);
  free(stream);
}
