// ChannelStrip's control side: strips with parameters, for audio engines, plugins and bindings.
// C11 and C++17.
//
// A strip has an equaliser of eight bands, a compressor, an expander that can be a gate, a key
// (side-chain) input and meters, for one stream of 1 to 8 channels. It takes any number of samples
// at a time and adds no latency. The functions stand in the order of use: formats, parameters,
// settings, strips, meters, pictures.
//
// Threads. Every function says which thread may call it:
//   [any]      any thread, at any time; pure
//   [owner]    the thread that has the object for itself at that time
//   [audio]    one thread at a time, the one that processes the strip; never waits, allocates,
//              locks, throws or calls the system
//   [control]  one thread at a time, at any time beside [audio] and [meters]; never waits
//   [meters]   one thread at a time, at any time beside [audio] and [control]; never waits
//
// Errors. A function that can fail returns a channelstrip_status, CHANNELSTRIP_OK being 0. One that
// failed has changed nothing. A null pointer where an object is expected is an error, not a crash.
//
// Structures that the library fills have their size passed, sizeof of the structure, and may grow
// at their end in later versions. Fields that the library doesn't have yet become 0.

#ifndef CHANNELSTRIP_CHANNELSTRIP_H
#define CHANNELSTRIP_CHANNELSTRIP_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define CHANNELSTRIP_API __attribute__((visibility("default")))
#else
#define CHANNELSTRIP_API
#endif

typedef int32_t channelstrip_status;
enum {
  CHANNELSTRIP_OK = 0,
  CHANNELSTRIP_INVALID = 1,    // an argument that can't be used: null, not finite, out of range
  CHANNELSTRIP_UNKNOWN = 2,    // no parameter, format or word of that number or name
  CHANNELSTRIP_TOO_SMALL = 3,  // there is more to write than there is room
  CHANNELSTRIP_SYNTAX = 4,     // text that isn't TOML
  CHANNELSTRIP_NO_MEMORY = 5
};

// What a status means, in English. [any]
CHANNELSTRIP_API const char* channelstrip_status_text(channelstrip_status status);

// The version of this library, "0.1.0". [any]
CHANNELSTRIP_API const char* channelstrip_version(void);

// Text that is written by a function goes to `text`, `size` characters with the zero at its end.
// `length`, which may be null, becomes the length without the zero, also where the text doesn't
// fit; then the status is CHANNELSTRIP_TOO_SMALL and nothing is written.

// Formats
// ------------------------------------------------------------------------------------------

// The order of a stream's channels. A format's index, 0 to channelstrip_format_count() - 1, never
// changes.
typedef int32_t channelstrip_order;
enum {
  CHANNELSTRIP_ORDER_WAV = 0,  // of WAV's channel mask: L R C LFE ...
  CHANNELSTRIP_ORDER_FILM = 1  // the screen and the surrounds from left to right, the LFE last
};

typedef struct channelstrip_format {
  const char* name;   // "Mono", "5.1"
  uint32_t channels;  // 1 to 8
  uint32_t groups;    // link groups that one call of the processing library holds; more work, too
} channelstrip_format;

CHANNELSTRIP_API uint32_t channelstrip_format_count(void);  // [any]
CHANNELSTRIP_API channelstrip_status channelstrip_format_info(uint32_t format,
                                                              channelstrip_format* info,
                                                              size_t info_size);  // [any]
// By name, whatever its letters' case. [any]
CHANNELSTRIP_API channelstrip_status channelstrip_format_find(const char* name, uint32_t* format);
// "L", "R", "C", "LFE", "Ls", "Rs", "Lb", "Rb", "Cs", "S" or "M"; null for what there isn't. [any]
CHANNELSTRIP_API const char* channelstrip_format_role(uint32_t format, channelstrip_order order,
                                                      uint32_t channel);

// Parameters
// ---------------------------------------------------------------------------------------

// Everything that can be set but the link maps. A parameter's id and symbol never change and are
// never used again. All values are finite doubles: numbers in the parameter's unit, the index of a
// choice's word, or 0 and 1 of a switch.
//
// Some numbers stand for what isn't one: a ratio of 1000 is infinite, a shelf_slope of 0 leaves the
// slope to Q, a knee between 0 and 0.1 dB counts as 0.
enum { CHANNELSTRIP_NUMBER = 0, CHANNELSTRIP_CHOICE = 1, CHANNELSTRIP_SWITCH = 2 };
enum {
  CHANNELSTRIP_LINEAR = 0,
  CHANNELSTRIP_LOGARITHMIC = 1  // of frequencies, times, Q and ratio; see ..._position()
};

typedef struct channelstrip_parameter {
  uint32_t id;
  uint32_t kind;   // CHANNELSTRIP_NUMBER ...
  uint32_t scale;  // CHANNELSTRIP_LINEAR ...
  uint32_t
      in_automation;  // 1 if changes in time that a preset contains may set it; live all may be
  double minimum, maximum;
  double initial;
  double step;               // values are multiples of it; 0: any
  const char* symbol;        // "eq3_frequency", "compressor_threshold"; a C identifier
  const char* name;          // "EQ 3 frequency"
  const char* short_name;    // "3 Freq", at most 15 characters
  const char* group;         // "EQ 3"
  const char* unit;          // "Hz", "dB", "ms", "%", "dB/oct" or ""
  const char* meaning;       // one line
  uint32_t word_count;       // of a choice
  const char* const* words;  // `word_count` of them
} channelstrip_parameter;

CHANNELSTRIP_API uint32_t channelstrip_parameter_count(void);  // [any]
// By index, 0 to channelstrip_parameter_count() - 1. [any]
CHANNELSTRIP_API channelstrip_status channelstrip_parameter_info(uint32_t index,
                                                                 channelstrip_parameter* info,
                                                                 size_t info_size);
// The id of a symbol. [any]
CHANNELSTRIP_API channelstrip_status channelstrip_parameter_find(const char* symbol, uint32_t* id);

// "2.5 kHz", "4:1", "inf:1", "off", "-18 dB": up to four digits that count. [any]
CHANNELSTRIP_API channelstrip_status channelstrip_value_to_text(uint32_t id, double value,
                                                                char* text, size_t size,
                                                                size_t* length);
// The value nearest to such a text; the unit may be left out. CHANNELSTRIP_UNKNOWN for text that
// means nothing. [any]
CHANNELSTRIP_API channelstrip_status channelstrip_text_to_value(uint32_t id, const char* text,
                                                                double* value);
// A slider's position, 0 to 1, for a value, and back. A logarithmic scale that begins at 0 is
// nearly straight below 1. [any]
CHANNELSTRIP_API channelstrip_status channelstrip_value_to_position(uint32_t id, double value,
                                                                    double* position);
CHANNELSTRIP_API channelstrip_status channelstrip_position_to_value(uint32_t id, double position,
                                                                    double* value);

// Settings
// -----------------------------------------------------------------------------------------

// A value for every parameter, and link maps. Values outside the limits become the nearest inside.
typedef struct channelstrip_settings channelstrip_settings;

// The initial ones: the audio passes as it is, but for a gain within 0.00003 dB; bypassed, to the
// bit. Null without memory. [any]
CHANNELSTRIP_API channelstrip_settings* channelstrip_settings_new(void);
CHANNELSTRIP_API void channelstrip_settings_free(channelstrip_settings* settings);  // [owner]
// Makes `to` what `from` is. [owner of both]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_copy(channelstrip_settings* to,
                                                                const channelstrip_settings* from);

CHANNELSTRIP_API channelstrip_status channelstrip_settings_set(channelstrip_settings* settings,
                                                               uint32_t id,
                                                               double value);  // [owner]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_get(
    const channelstrip_settings* settings, uint32_t id, double* value);  // [owner]

// The channels that share one gain in a format: "L R C | LFE | Ls Rs", each channel once. Null or
// "" leaves it to the parameter link_style again. [owner]
CHANNELSTRIP_API channelstrip_status
channelstrip_settings_set_links(channelstrip_settings* settings, uint32_t format, const char* map);
// "" without a map. [owner]
CHANNELSTRIP_API channelstrip_status
channelstrip_settings_get_links(const channelstrip_settings* settings, uint32_t format, char* text,
                                size_t size, size_t* length);

// As TOML, the format of presets, which `channelstrip render --preset` takes: what isn't initial.
// Written, read and written again it is the same to the byte. [owner]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_write(
    const channelstrip_settings* settings, char* text, size_t size, size_t* length);

// Called once for what was read otherwise than it is written: a key that isn't known, a value out
// of its limits, changes in time. `what` is one line and valid during the call.
typedef void channelstrip_report(void* user, uint32_t line, uint32_t column, const char* what);
// Makes the settings those that `length` characters of TOML say, UTF-8; a preset, too. What can't
// be used is left out and told to `report`, which may be null. CHANNELSTRIP_SYNTAX changes nothing
// and tells `report` why. [owner]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_read(channelstrip_settings* settings,
                                                                const char* text, size_t length,
                                                                channelstrip_report* report,
                                                                void* user);

// What a strip does with values that it can't have at its sample rate, or not together. Nothing is
// refused while audio runs:
enum {
  // A band whose frequency isn't below 0.4998 of the sample rate is left out.
  CHANNELSTRIP_LEFT_OUT_ABOVE_RATE = 0,
  // Bands take the eight sections in order, a pass one for each 12 dB/oct. Without one left they
  // are left out;
  CHANNELSTRIP_LEFT_OUT_FOR_SECTIONS = 1,
  // a frequency below 3e-5 of the sample rate becomes that; a shelf's that raises the lows or
  // lowers the highs already below up to 9.5e-5, by its gain;
  CHANNELSTRIP_RAISED = 2,
  // a pass of which some sections are left, and a key filter above 12 dB/oct, is less steep.
  CHANNELSTRIP_SHALLOWER = 3
};
typedef struct channelstrip_adjustment {
  uint32_t id;          // of the parameter
  uint32_t adjustment;  // CHANNELSTRIP_LEFT_OUT_ABOVE_RATE ...
  double used;          // in place of its value; 0 for what is left out
} channelstrip_adjustment;
// Writes the first `count` of these and sets `total` to how many there are, 18 at most. [owner]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_adjustments(
    const channelstrip_settings* settings, double sample_rate, channelstrip_adjustment* adjustments,
    uint32_t count, uint32_t* total);

// Strips
// -------------------------------------------------------------------------------------------

typedef struct channelstrip_strip channelstrip_strip;

typedef struct channelstrip_strip_options {
  uint32_t format;                        // its index
  channelstrip_order order;               // of the channels
  double sample_rate;                     // Hz, 1000 to 1000000
  const channelstrip_settings* settings;  // copied; null: the initial ones
} channelstrip_strip_options;

// A strip in memory of its own. It starts on its settings, without a glide. [any]
CHANNELSTRIP_API channelstrip_status
channelstrip_strip_new(const channelstrip_strip_options* options, channelstrip_strip** strip);
// Null does nothing. [owner]
CHANNELSTRIP_API void channelstrip_strip_free(channelstrip_strip* strip);

// A strip in memory of the caller's: at least channelstrip_strip_size() bytes, aligned to 64. It
// holds nothing else; to end it, forget it. A strip can't be moved. A change of sample rate or
// format is a new strip: take the settings along with ..._get_settings(). [any], [owner]
CHANNELSTRIP_API size_t channelstrip_strip_size(void);
CHANNELSTRIP_API channelstrip_status
channelstrip_strip_init(void* memory, size_t size, const channelstrip_strip_options* options,
                        channelstrip_strip** strip);

// A parameter's change at a frame of a call. It takes effect where the strip's next block of 16
// frames begins, at this frame or after it.
typedef struct channelstrip_event {
  uint32_t frame;  // 0 to the call's frames
  uint32_t id;
  double value;  // becomes the nearest legal one
} channelstrip_event;

// One call: 32-bit floats, full scale 1.0, one buffer per channel.
typedef struct channelstrip_block {
  const float* const* inputs;  // one per channel of the format
  // Null without one. It is heard while the parameter key_enable is 1. A strip with a key should
  // get one in every call.
  const float* key;
  // One per channel. An output may be any of the inputs or the key. Buffers that overlap otherwise
  // are not allowed.
  float* const* outputs;
  uint32_t frames;                   // any number, differing from call to call
  uint32_t event_count;              // 1024 at most
  const channelstrip_event* events;  // in order of frames; null without any
} channelstrip_block;

// Processes `frames` frames without latency, and writes nothing beyond them. Output and meters
// don't depend on how a stream is cut into calls. Samples that aren't finite count as silence.
// Denormals are flushed meanwhile. Work: that of the whole blocks of 16 that the frames touch, and
// a microsecond or two for each block while bands below about 200 Hz have changed.
//
// Changes never click. Frequencies, gains, Q, makeup and ranges glide with the parameter glide;
// thresholds, ratios and times are smoothed by attack and release; what begins, ends, moves or
// changes its kind (a band's on, type, slope and position, compressor, expander, key_listen, links)
// is cross-faded over twice that time, in which the strip costs twice as much. Bypassed, the
// outputs are the inputs bit for bit once the glide is over. [audio]
CHANNELSTRIP_API channelstrip_status channelstrip_strip_process(channelstrip_strip* strip,
                                                                const channelstrip_block* block);

// The same for several strips: a block for each, all with as many frames and without events. No
// strip stands there twice, and no output is a buffer of another strip. Neighbours of one format
// that don't glide or fade are processed together, which takes far less time where they are mono.
// [audio]
CHANNELSTRIP_API channelstrip_status channelstrip_strip_process_many(
    channelstrip_strip* const* strips, const channelstrip_block* blocks, uint32_t count);

// Forgets the audio: filters, gains, glides and fades, but not the settings or meters. [audio]
CHANNELSTRIP_API channelstrip_status channelstrip_strip_reset(channelstrip_strip* strip);

// Sets a parameter, or all and the link maps, from the audio thread's next call on. What is set
// last holds; settings that are set together take effect together. [control]
CHANNELSTRIP_API channelstrip_status channelstrip_strip_set(channelstrip_strip* strip, uint32_t id,
                                                            double value);
CHANNELSTRIP_API channelstrip_status
channelstrip_strip_set_settings(channelstrip_strip* strip, const channelstrip_settings* settings);
// What was set, by this thread or by events of the audio thread. [control]
CHANNELSTRIP_API channelstrip_status
channelstrip_strip_get_settings(channelstrip_strip* strip, channelstrip_settings* settings);

// Meters
// -------------------------------------------------------------------------------------------

enum { CHANNELSTRIP_MOST_CHANNELS = 8 };

// What happened between two readings. Levels, peaks and gains are linear unless they are said to be
// in dB; a gain is 1 at 0 dB and has no makeup in it. Those of channels that the format lacks are
// of no meaning.
//
// Each call hands them over if the last ones have been read, and else when 1024 more frames of the
// stream are complete: a reading lacks up to 1024 frames, which the next has. Frames count once
// their block of 16 is whole. A reset hands over the rest.
typedef struct channelstrip_meters {
  uint64_t frames;
  uint64_t not_finite;                              // input samples that were taken as silence
  uint64_t overs[CHANNELSTRIP_MOST_CHANNELS];       // output samples beyond full scale
  float input_peak[CHANNELSTRIP_MOST_CHANNELS];     // behind gain_in, times meter_input_gain
  float output_peak[CHANNELSTRIP_MOST_CHANNELS];    // of what came out
  float greatest_gain[CHANNELSTRIP_MOST_CHANNELS];  // of the channel's link group
  // The gain stayed at or below this for 1024 frames; 1 if no such window has ended.
  float least_gain[CHANNELSTRIP_MOST_CHANNELS];
  float compressor_reduction;  // the greatest of any group, 1 - factor
  float expander_reduction;    // the same of the expander or gate
  // As the last block left them, of the channel's link group.
  float compressor_gain[CHANNELSTRIP_MOST_CHANNELS];  // dB, at most 0
  float expander_gain[CHANNELSTRIP_MOST_CHANNELS];    // dB, at most 0
  float detector_level[CHANNELSTRIP_MOST_CHANNELS];
} channelstrip_meters;

// What happened since the last reading; nothing is lost between two. `has_news`, which may be null,
// becomes 1, or 0 if nothing was processed since; `meters` is then unchanged. [meters]
CHANNELSTRIP_API channelstrip_status channelstrip_strip_read_meters(channelstrip_strip* strip,
                                                                    channelstrip_meters* meters,
                                                                    size_t meters_size,
                                                                    uint32_t* has_news);

// Pictures
// -----------------------------------------------------------------------------------------

enum {
  CHANNELSTRIP_EQ_ALL = 0,  // 1 to 8: that band, as if it were on
  CHANNELSTRIP_EQ_PRE = 9,  // all that stand before the dynamics
  CHANNELSTRIP_EQ_POST = 10,
  CHANNELSTRIP_EQ_KEY_FILTER = 11
};
// The magnitude in dB at each of `count` frequencies, 0 Hz to half the sample rate, as a strip has
// it once its coefficients have settled. [any; owner of settings]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_response(
    const channelstrip_settings* settings, double sample_rate, uint32_t part,
    const double* frequencies, double* decibels, uint32_t count);

// The gains in dB, without makeup, that compressor and expander settle at for constant levels in
// dB; of a gate while it is open (`gate_open` 1) or shut. Either output may be null. [any; owner of
// settings]
CHANNELSTRIP_API channelstrip_status channelstrip_settings_static_gains(
    const channelstrip_settings* settings, uint32_t gate_open, const double* levels,
    double* compressor, double* expander, uint32_t count);

#ifdef __cplusplus
}
#endif

#endif
