// What the fragments of docs/embedding.md promise, against the built library.

#include <fragments.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

enum { LENGTH = 4800 };  // samples, a multiple of 16
static const double kRate = 48000;
static void* library;

static const struct format {
  const char* entry_point;
  int channels, groups;
  int32_t pairs[8];
} kFormats[] = {
#include <formats.h>
};
enum { FORMATS = sizeof kFormats / sizeof *kFormats };

static int failures;

static void expect(bool holds, const char* what) {
  if (holds) return;
  fprintf(stderr, "not so: %s\n", what);
  ++failures;
}

static void expect_near(double value, double wanted, double bound, const char* what) {
  if (fabs(value - wanted) <= bound) return;
  fprintf(stderr, "%s: %.9g, not %.9g within %.3g\n", what, value, wanted, bound);
  ++failures;
}

// Nine channels of audio, one of them for a key.
struct audio {
  float samples[9][LENGTH];
};
static struct audio input, output, other_output;
static const float* in[9];
static float *out[8], *other_out[8];

static void point_to_buffers(void) {
  for (int c = 0; c < 9; ++c) in[c] = input.samples[c];
  for (int c = 0; c < 8; ++c) {
    out[c] = output.samples[c];
    other_out[c] = other_output.samples[c];
  }
}

static void fill(float* to, float level) {
  for (int i = 0; i < LENGTH; ++i) to[i] = level;
}

static void fill_with_noise(void) {
  uint32_t random = 1;
  for (int c = 0; c < 9; ++c) {
    for (int i = 0; i < LENGTH; ++i) {
      random = random * 1664525u + 1013904223u;
      // Swells, so that the dynamics work.
      const double swell = 0.05 + 0.45 * (1 - cos(2 * acos(-1) * i / 1600));
      input.samples[c][i] = (float)(((double)random / 0x1p31 - 1) * swell);
    }
  }
}

static void fill_with_sine(float* to, double frequency, double level) {
  for (int i = 0; i < LENGTH; ++i) {
    to[i] = (float)(level * sin(2 * acos(-1) * frequency * i / kRate));
  }
}

static struct strip make(const char* name, int channels) {
  struct strip s = {.entry_point = resolve(library, name), .channels = channels};
  if (!s.entry_point) {
    fprintf(stderr, "the library has no %s\n", name);
    exit(1);
  }
  s.dyn = neutral_dynamics();
  s.eq = neutral_equaliser();
  return s;
}

static struct strip make_busy(const char* name, int channels) {
  struct strip s = make(name, channels);
  design_example(&s.dyn, kRate);
  set_peak(&s.eq, 0, 1000, 1, 6, kRate);
  set_peak(&s.eq, 1, 50, 4, -9, kRate);
  set_peak(&s.eq, 2, 5000, 0.7, 3, kRate);
  s.eq.endBand[0] = s.eq.firstBand[1] = 2;
  s.eq.endBand[1] = 3;
  return s;
}

static bool same_audio(int channels) {
  for (int c = 0; c < channels; ++c) {
    if (memcmp(out[c], other_out[c], sizeof input.samples[c]) != 0) return false;
  }
  return true;
}

// The gain in dB of the last sample at a constant level.
static double settled_gain(struct strip* s, float level, int seconds) {
  for (int c = 0; c < 9; ++c) fill(input.samples[c], level);
  for (int i = 0; i < 10 * seconds; ++i) process(s, in, out, LENGTH);
  return 20 * log10((double)out[0][LENGTH - 1] / (double)level);
}

static void test_neutral_strip_changes_no_bit(void) {
  expect(FORMATS == 11, "the document lists eleven formats");
  fill_with_noise();
  for (int f = 0; f < FORMATS; ++f) {
    const struct format* const format = &kFormats[f];
    int32_t greatest = 0;
    for (int bands = 0; bands <= CHANNELSTRIP_EQ_BANDS; bands += CHANNELSTRIP_EQ_BANDS) {
      struct strip s = make(format->entry_point, format->channels);
      s.eq.endBand[0] = bands;
      for (int c = 0; c < 8; ++c) {
        const int32_t group = format->pairs[c];
        if (c >= format->channels) expect(group == 0, "a group per channel");
        if (group > greatest) greatest = group;
        s.dyn.linkGroup[c] = group;
      }
      start(&s, 1);
      memset(&output, 0, sizeof output);
      process(&s, in, out, LENGTH);
      for (int c = 0; c < format->channels; ++c) {
        expect(memcmp(in[c], out[c], sizeof input.samples[c]) == 0, format->entry_point);
      }
    }
    expect(greatest == format->groups - 1, "linked pairs take all groups of the format");
  }
}

static double compressor(double level) {  // the example's: -20 dB, 4:1, knee 6 dB, range -30 dB
  const double slope = 1.0 / 4 - 1, over = level + 20;
  if (over <= -3) return 0;
  const double gain = over >= 3 ? slope * over : slope * (over + 3) * (over + 3) / 12;
  return fmax(gain, -30);
}

static double expander(double level) {  // -50 dB, 1:2, knee 6 dB, range -40 dB, gate at -60 dB
  const double under = -50 - level;
  if (level < -66) return -40;
  if (under <= -3) return 0;
  return under >= 3 ? -under : -(under + 3) * (under + 3) / 12;
}

static void test_gain_settles_on_the_curve(void) {
  const double levels[] = {-80, -70, -63, -58, -54, -51, -50, -48,
                           -46, -30, -22, -20, -18, -10, 0,   30};
  for (size_t i = 0; i < sizeof levels / sizeof *levels; ++i) {
    struct strip s = make("AlgEntry_16_Stem_Mono", 1);
    design_example(&s.dyn, kRate);
    start(&s, 1);
    const double gain = settled_gain(&s, (float)pow(10, levels[i] / 20), 4) - 4.5;
    const double below = levels[i] + 20 * log10((double)s.dyn.peakDecay);
    const double terms[] = {compressor(levels[i]) + expander(levels[i]),
                            compressor(below) + expander(below)};
    const double slowest = fmin(s.dyn.compAttack, s.dyn.expRelease);
    const double bound = 0.001 + 0x1p-24 * 40 / slowest;
    expect(gain >= fmin(terms[0], terms[1]) - bound && gain <= fmax(terms[0], terms[1]) + bound,
           "a constant level settles at the gain of the curve");
    if (failures > 0) {
      fprintf(stderr, "%g dB: %g dB, not %g to %g\n", levels[i], gain, terms[0], terms[1]);
      return;
    }
  }
}

static void test_limiter_ends_at_its_range(void) {
  struct strip s = make("AlgEntry_16_Stem_Mono", 1);
  set_compressor(&s.dyn, -20, INFINITY, 0);
  s.dyn.compRange = -6;
  start(&s, 1);
  expect_near(settled_gain(&s, 1, 1), -6, 0.001, "a limiter at full scale with a range of -6 dB");
}

static void test_times_and_glide(void) {
  struct strip s = make("AlgEntry_16_Stem_Mono", 1);
  start(&s, (float)weight(20, kRate, 4));
  expect(s.memory.dyn[0].curCompRange == -60 && s.memory.dyn[0].curExpRange == -40,
         "ranges start where they are");
  s.dyn.makeupGain = 2;
  process(&s, in, out, 960);  // 20 ms
  expect_near(s.memory.dyn[0].curMakeupGain, 2 - exp(-1), 1e-4, "63.2 % of a glide");
  expect_near(pow(decay(20, kRate), 960), exp(-1), 1e-9, "36.8 % after a decay");
}

static void test_peak_band_has_its_gain(void) {
  const double frequencies[] = {50, 1000, 8000};
  for (int i = 0; i < 3; ++i) {
    struct strip s = make("AlgEntry_16_Stem_Mono", 1);
    set_peak(&s.eq, 0, frequencies[i], 2, 6, kRate);
    s.eq.endBand[0] = 1;
    start(&s, 1);
    fill_with_sine(input.samples[0], frequencies[i], 0.1);
    // Whole periods, so that the sine goes on where it ended.
    for (int turn = 0; turn < 10; ++turn) process(&s, in, out, LENGTH);
    double sums[2] = {0};
    for (int k = 0; k < LENGTH; ++k) {
      sums[0] += (double)in[0][k] * (double)in[0][k];
      sums[1] += (double)out[0][k] * (double)out[0][k];
    }
    expect_near(10 * log10(sums[1] / sums[0]), 6, 0.05, "a peak's gain at its frequency, in dB");
  }
  EQ_SCoefs low;
  set_peak(&low, 0, 20, 1, 12, 4 * kRate);
  const float* const c = low.targetCoefs;
  expect_near((0.0 + c[0] + c[1] + c[2]) / (1.0 - c[3] - c[4]), 1, 1e-6,
              "the gain at 0 Hz of a peak at 20 Hz and 192 kHz");
}

static void test_key_may_be_channel_0(void) {
  struct strip s = make("AlgEntry_16_Stem_Stereo", 2);
  set_compressor(&s.dyn, -20, 4, 0);
  start(&s, 1);
  fill(input.samples[0], 0.01f);
  fill(input.samples[1], 1);
  process(&s, in, out, LENGTH);
  expect(out[1][LENGTH - 1] < 0.5f, "the loudest channel rules without a key");
  const float* keyed[9] = {in[0], in[1]};
  detect_from_channel_0(&s, keyed);
  for (int i = 0; i < 10; ++i) process(&s, keyed, out, LENGTH);
  expect_near(out[1][LENGTH - 1], 1, 1e-5, "with channel 0 as the key, channel 0 rules");
}

static void test_run_adds_no_latency(void) {
  for (int keyed = 0; keyed < 2; ++keyed) {
    fill_with_noise();
    struct strip whole = make_busy("AlgEntry_16_Stem_Stereo", 2);
    struct strip cut = make_busy("AlgEntry_16_Stem_Stereo", 2);
    whole.dyn.keyEnable = cut.dyn.keyEnable = keyed;
    start(&whole, 0.1f);
    start(&cut, 0.1f);
    whole.key_input = cut.key_input = 2 * keyed;
    // Glides run, too.
    set_peak(&whole.eq, 0, 500, 1, -6, kRate);
    cut.eq = whole.eq;
    memset(&output, 0, sizeof output);
    memset(&other_output, 0, sizeof other_output);
    process(&whole, in, out, LENGTH);
    struct unfinished u = {.count = 0};
    for (int done = 0, size = 1; done < LENGTH; done += size, size = size * 7 % 101) {
      if (size > LENGTH - done) size = LENGTH - done;
      const float* const from[] = {in[0] + done, in[1] + done, in[2] + done};
      float* const to[] = {other_out[0] + done, other_out[1] + done};
      run(&cut, &u, from, to, size);
    }
    expect(same_audio(2), "pieces of any size give the bits of one call");
    expect(memcmp(&whole.memory, &cut.memory, sizeof whole.memory) == 0,
           "pieces of any size leave the records and meters of one call");
  }
}

static void test_denormals_are_flushed(void) {
#ifdef __SSE__
  struct strip s = make("AlgEntry_16_Stem_Mono", 1);
  start(&s, 1);
  fill(input.samples[0], 0x1p-140f);
  const unsigned word = 0x1f80;  // as a program starts
  _mm_setcsr(word);
  process(&s, in, out, LENGTH);
  expect((_mm_getcsr() & ~0x3fu) == (word & ~0x3fu), "the control word is restored");
  expect(out[0][LENGTH - 1] == 0, "a denormal becomes 0");
#endif
}

static void test_in_place(void) {
  fill_with_noise();
  struct strip apart = make_busy("AlgEntry_16_Stem_Stereo", 2);
  start(&apart, 1);
  process(&apart, in, out, LENGTH);
  expect(apart.meters[0] != apart.meters[2], "input and output peaks differ");
  for (int bypass = 0; bypass < 2; ++bypass) {
    struct strip s = make_busy("AlgEntry_16_Stem_Stereo", 2);
    s.dyn.bypass = bypass;
    s.dyn.inputMeterGain = 0.5f;
    start(&s, 1);
    for (int c = 0; c < 2; ++c) memcpy(other_out[c], in[c], sizeof input.samples[c]);
    process(&s, (const float* const*)other_out, other_out, LENGTH);
    expect(same_audio(2), "audio in place is the audio of separate buffers, bypassed or not");
    expect(s.meters[0] == 0.5f * s.meters[2] && s.meters[1] == 0.5f * s.meters[3],
           "in place the input peak is the output's");
  }
}

static void test_invalid_samples(void) {
  float samples[] = {1, NAN, -0.5f, INFINITY, -INFINITY, 1e7f, 0};
  const float cleared[] = {1, 0, -0.5f, 0, 0, 0, 0};
  clear_invalid(samples, 7);
  expect(memcmp(samples, cleared, sizeof samples) == 0, "samples that aren't finite become 0");

  const float bad[] = {NAN, INFINITY, -INFINITY};
  for (int mode = 0; mode < 2; ++mode) {
    for (int i = 0; i < 3; ++i) {
      struct strip s = make("AlgEntry_16_Stem_Stereo", 2);
      set_peak(&s.eq, 0, 1000, 1, 6, kRate);
      s.eq.endBand[0] = 1;
      set_compressor(&s.dyn, -20, 4, 6);
      s.dyn.compRange = -24;
      s.dyn.detectorMode = mode;
      start(&s, 1);
      const double healthy = settled_gain(&s, 0.5f, 1);
      input.samples[0][0] = bad[i];
      process(&s, in, out, LENGTH);
      input.samples[0][0] = 0.5f;
      process(&s, in, out, LENGTH);
      expect(isnan(out[0][LENGTH - 1]), "bad samples stay in a band's memory");
      const double linked = 20 * log10((double)out[1][LENGTH - 1] / 0.5);
      if (i == 0) {
        expect_near(linked, healthy, 0.001, "a NaN leaves the linked channel alone");
      } else {
        expect_near(linked, mode == 0 ? -24 : 0, 0.001, "the linked channel after an infinity");
      }
      recover(&s);
      expect_near(settled_gain(&s, 0.5f, 1), healthy, 0.001, "the strip has recovered");
      for (int c = 0; c < 2; ++c) {
        expect(isfinite(s.memory.dyn[c].keyZ1) && isfinite(s.memory.dyn[c].keyZ2),
               "the key filter's memory is finite");
        for (int k = 0; k < LENGTH; ++k) expect(isfinite(out[c][k]), "recovered audio is finite");
      }
    }
  }
}

static void test_band_that_returns_is_clear(void) {
  fill_with_noise();
  struct strip fresh = make_busy("AlgEntry_16_Stem_Stereo", 2);
  fresh.dyn = neutral_dynamics();
  struct strip s = fresh;
  start(&fresh, 1);
  start(&s, 1);
  process(&s, in, out, LENGTH);
  const EQ_SState kept = s.memory.eq[1];
  clear_band(&s, 1);
  expect(s.memory.eq[1].z1[1] == 0 && s.memory.eq[1].z2[1] == 0, "a cleared band is clear");
  expect(
      kept.z1[0] != 0 && s.memory.eq[1].z1[0] == kept.z1[0] && s.memory.eq[1].z2[2] == kept.z2[2],
      "the other bands aren't");
  clear_band(&s, 0);
  clear_band(&s, 2);
  process(&s, in, out, LENGTH);
  process(&fresh, in, other_out, LENGTH);
  expect(same_audio(2), "bands that were cleared begin anew");
}

// Gives every leader of a group in `to` the record of the group in which it was.
static void change_links(struct strip* s, const int32_t to[8]) {
  for (int c = s->channels - 1; c >= 0; --c) {
    int leader = 0, new_leader = 0;
    while (s->dyn.linkGroup[leader] != s->dyn.linkGroup[c]) ++leader;
    while (to[new_leader] != to[c]) ++new_leader;
    if (new_leader == c) take_over(s, c, leader);
  }
  memcpy(s->dyn.linkGroup, to, sizeof s->dyn.linkGroup);
}

static void test_links_take_the_gain_along(void) {
  struct strip s = make("AlgEntry_16_Stem_Quad", 4);
  design_example(&s.dyn, kRate);
  const int32_t maps[][8] = {{0, 0, 1, 1}, {0, 1, 1, 0}, {0, 0, 0, 1}, {0, 1, 1, 1}};
  memcpy(s.dyn.linkGroup, maps[0], sizeof maps[0]);
  start(&s, (float)weight(20, kRate, 4));
  settled_gain(&s, 0.5f, 2);
  const float before = out[1][LENGTH - 1];
  expect(before < 0.4f, "the compressor works");
  for (int i = 1; i < 4; ++i) {
    change_links(&s, maps[i]);
    process(&s, in, out, 16);
    for (int c = 0; c < 4; ++c) expect_near(out[c][0], before, 1e-4, "a gain after new links");
  }
  expect(s.memory.dyn[0].dezipRate > 0 && s.memory.dyn[1].dezipRate == 0,
         "the rate stays record 0's");
}

static void test_meters_are_taken(void) {
  struct strip s = make_busy("AlgEntry_16_Stem_Stereo", 2);
  start(&s, 1);
  fill_with_noise();
  process(&s, in, out, LENGTH);
  float peak = 0, copy[10];
  for (int i = 0; i < LENGTH; ++i) peak = fmaxf(peak, fabsf(out[1][i]));
  take_meters(&s, copy);
  expect(copy[3] == peak && copy[9] > 0, "the copy holds peaks and gains");
  for (int i = 0; i < 10; ++i) expect(s.meters[i] == 0, "meters are reset");
}

static void test_one_call_for_several_strips(void) {
  fill_with_noise();
  struct strip strips[3], alone;
  const SChannelStrip_Alg_Context* contexts[3];
  for (int i = 0; i < 3; ++i) {
    strips[i] = make_busy("AlgEntry_16_Stem_Mono", 1);
    start(&strips[i], 1);
    strips[i].context.inputs = in + i;
    strips[i].context.outputs = out + i;
    strips[i].samples = LENGTH;
    contexts[i] = &strips[i].context;
  }
  call(strips[0].entry_point, contexts, 3);
  for (int i = 0; i < 3; ++i) {
    alone = make_busy("AlgEntry_16_Stem_Mono", 1);
    start(&alone, 1);
    process(&alone, in + i, other_out + i, LENGTH);
  }
  expect(same_audio(3), "strips of one call give what each gives alone");
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  point_to_buffers();
  test_neutral_strip_changes_no_bit();
  test_gain_settles_on_the_curve();
  test_limiter_ends_at_its_range();
  test_times_and_glide();
  test_peak_band_has_its_gain();
  test_key_may_be_channel_0();
  test_run_adds_no_latency();
  test_denormals_are_flushed();
  test_in_place();
  test_invalid_samples();
  test_band_that_returns_is_clear();
  test_links_take_the_gain_along();
  test_meters_are_taken();
  test_one_call_for_several_strips();
  dlclose(library);
  if (failures > 0) return 1;
  printf("%d formats, every property holds\n", FORMATS);
}
