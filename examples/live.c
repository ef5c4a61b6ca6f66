// A strip live: audio on one thread, sliders and meters on another. Lines on standard input set
// parameters while it plays, "compressor_threshold = -30 dB"; an empty line shows the meters.
//
//   live                     with JACK, if it was there when this was compiled: stereo
//   live IN OUT              without: a file, in real time
//
//   cc -std=c11 live.c $(pkg-config --cflags --libs channelstrip-control sndfile) -pthread
//   cc -std=c11 -DWITH_JACK live.c $(pkg-config --cflags --libs channelstrip-control jack)
#define _POSIX_C_SOURCE 200809L
#include <channelstrip/channelstrip.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static channelstrip_strip* make_strip(uint32_t channels, double sample_rate) {
  const channelstrip_strip_options options = {.format = channels - 1, .sample_rate = sample_rate};
  channelstrip_strip* strip = NULL;
  const channelstrip_status status = channelstrip_strip_new(&options, &strip);
  if (status != CHANNELSTRIP_OK) {
    fprintf(stderr, "live: %s\n", channelstrip_status_text(status));
    exit(1);
  }
  return strip;
}

static void take_line(channelstrip_strip* strip, char* line) {
  char* const equals = strchr(line, '=');
  if (!equals) {
    channelstrip_meters meters = {0};
    channelstrip_strip_read_meters(strip, &meters, sizeof meters, NULL);
    printf("in %.1f dB, out %.1f dB, gain %.1f dB\n", 20 * log10((double)meters.input_peak[0]),
           20 * log10((double)meters.output_peak[0]), (double)meters.compressor_gain[0]);
    return;
  }
  uint32_t id = 0;
  double value = 0;
  *equals = '\0';
  equals[1 + strcspn(equals + 1, "\n")] = '\0';
  line[strcspn(line, " ")] = '\0';
  if (channelstrip_parameter_find(line, &id) != CHANNELSTRIP_OK ||
      channelstrip_text_to_value(id, equals + 1, &value) != CHANNELSTRIP_OK) {
    fprintf(stderr, "live: %s =%s is no parameter and value\n", line, equals + 1);
    return;
  }
  channelstrip_strip_set(strip, id, value);
}

#ifdef WITH_JACK
#include <jack/jack.h>

static jack_port_t *ins[2], *outs[2];

static int process(jack_nframes_t frames, void* strip) {
  const float* const inputs[] = {jack_port_get_buffer(ins[0], frames),
                                 jack_port_get_buffer(ins[1], frames)};
  float* const outputs[] = {jack_port_get_buffer(outs[0], frames),
                            jack_port_get_buffer(outs[1], frames)};
  const channelstrip_block block = {.inputs = inputs, .outputs = outputs, .frames = frames};
  channelstrip_strip_process(strip, &block);
  return 0;
}

int main(void) {
  jack_client_t* const client = jack_client_open("channelstrip", JackNoStartServer, NULL);
  if (!client) return fprintf(stderr, "live: no JACK server runs\n"), 1;
  channelstrip_strip* const strip = make_strip(2, jack_get_sample_rate(client));
  const char* const names[] = {"in_L", "in_R", "out_L", "out_R"};
  for (int c = 0; c < 2; ++c) {
    ins[c] = jack_port_register(client, names[c], JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    outs[c] =
        jack_port_register(client, names[2 + c], JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
  }
  jack_set_process_callback(client, process, strip);
  jack_activate(client);
  for (char line[256]; fgets(line, sizeof line, stdin);) take_line(strip, line);
  jack_client_close(client);
  channelstrip_strip_free(strip);
}
#else
#include <pthread.h>
#include <sndfile.h>
#include <time.h>

struct player {
  SNDFILE *in, *out;
  SF_INFO info;
  channelstrip_strip* strip;
};

// What an audio interface would do: a block of 256 frames whenever its time has come.
static void* play(void* data) {
  struct player* const player = data;
  float frames[256 * 2], buffers[2][256];
  struct timespec next;
  clock_gettime(CLOCK_MONOTONIC, &next);
  for (sf_count_t count; (count = sf_readf_float(player->in, frames, 256)) > 0;) {
    const int channels = player->info.channels;
    for (int i = 0; i < count * channels; ++i) buffers[i % channels][i / channels] = frames[i];
    const float* const inputs[] = {buffers[0], buffers[1]};
    float* const outputs[] = {buffers[0], buffers[1]};
    const channelstrip_block block = {
        .inputs = inputs, .outputs = outputs, .frames = (uint32_t)count};
    channelstrip_strip_process(player->strip, &block);
    for (int i = 0; i < count * channels; ++i) frames[i] = buffers[i % channels][i / channels];
    sf_writef_float(player->out, frames, count);
    next.tv_nsec += (long)(1e9 * (double)count / player->info.samplerate);
    next.tv_sec += next.tv_nsec / 1000000000;
    next.tv_nsec %= 1000000000;
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, NULL);
  }
  return NULL;
}

int main(int argc, char** argv) {
  if (argc != 3 || strcmp(argv[1], argv[2]) == 0) {
    return fprintf(stderr, "usage: live IN OUT, two files\n"), 2;
  }
  struct player player = {.in = sf_open(argv[1], SFM_READ, &player.info)};
  if (!player.in || player.info.channels > 2) {
    return fprintf(stderr, "live: %s is no mono or stereo audio file\n", argv[1]), 1;
  }
  SF_INFO written = player.info;
  written.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  player.out = sf_open(argv[2], SFM_WRITE, &written);
  if (!player.out) return fprintf(stderr, "live: %s: %s\n", argv[2], sf_strerror(NULL)), 1;
  player.strip = make_strip((uint32_t)player.info.channels, player.info.samplerate);

  pthread_t audio;
  pthread_create(&audio, NULL, play, &player);
  for (char line[256]; fgets(line, sizeof line, stdin);) take_line(player.strip, line);
  pthread_join(audio, NULL);
  sf_close(player.in);
  sf_close(player.out);
  channelstrip_strip_free(player.strip);
}
#endif
