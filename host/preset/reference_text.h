// What the reference of presets says besides its tables.

#pragma once

#include <string_view>

namespace channelstrip::host {

inline constexpr std::string_view kIntroduction = R"(# Presets

A preset is a [TOML](https://toml.io) file with a strip's settings. Every key may be left out and
then has its default; a preset without any leaves the audio as it is. Levels are decibels of
amplitude, 0 dB is full scale. What is unknown, out of range or means nothing where it stands is
refused with file, line, column and the reason.

    channelstrip render IN OUT --preset presets/voice.toml

This page is printed by the program `preset_reference` from the table of keys that the reader uses;
a test compares the two.

## An example

```toml
name = "Narration, bright for the credits"

[[eq]]                   # eq.1: what lies below the voice
type = "high_pass"
frequency = 75
slope = 24               # Butterworth, two of the strip's eight sections

[[eq]]                   # eq.2: presence
type = "peak"
frequency = 3500
q = 0.9
gain = 2.5

[[eq]]                   # eq.3: air, after the dynamics, true to its analog shape at 12 kHz
type = "high_shelf"
frequency = 12000
shelf_slope = 0.8
gain = 2
design = "matched"
position = "post"

[compressor]             # the table switches it on; what isn't given has its default
threshold = -24
ratio = 3
attack = 8
release = 150
auto_makeup = true

[expander]               # a hysteresis makes it a gate
threshold = -52
hysteresis = 4
range = -15

[detector]
mode = "rms"
time = 15

[key_filter]             # on the detection signal alone: plosives don't count
type = "high_pass"
frequency = 120

[link]
style = "film"           # where the format has no map of its own
"5.1" = "L R C | LFE | Ls Rs"

[[at]]                   # from 62.5 s on
time = 62.5
eq.2.gain = 4
compressor.threshold = -28
```

)";

inline constexpr std::string_view kAboutBands = R"(
Every `[[eq]]` table is a band. Bands run in the order of the file, those with the position "pre"
before the dynamics and those with "post" after them. Together they may take eight second-order
sections: a pass one for every 12 dB/oct begun, every other band one.

)";

inline constexpr std::string_view kAboutKeyFilter = R"(
One band on the detection signal, which the audio itself doesn't pass; a pass of 6 or 12 dB/oct. Its
keys are those of `[[eq]]` but for the position.
)";

inline constexpr std::string_view kAboutLinks = R"(
Linked channels share one gain, that of their loudest. The styles:

| style | groups |
|---|---|
| "pairs" | left and right of each pair; every other channel alone |
| "film" | the front, the LFE, the surrounds |
| "music" | everything but the LFE together; the LFE alone |
| "all" | everything together |
| "none" | every channel alone |

A format's own map stands under the format's name: blanks separate channels, bars groups, and every
channel stands in exactly one group.

    "5.1" = "L R C | LFE | Ls Rs"

A strip holds as many groups as the table says. A map of more groups takes a strip per group, which
costs some speed and changes nothing else. Where maps change in time, a strip has to hold what any of
them links: stereo can't be linked for a time and unlinked for another.

| format | channels | groups in one strip |
|---|---|---|
)";

inline constexpr std::string_view kAboutChanges = R"(
## `[[at]]`: changes in time

    [[at]]
    time = 62.5                  # s from the beginning; required, 0 or more
    compressor.threshold = -28   # keys with dots,

    [at.eq.2]                    # or a table of them
    gain = 4

A change holds until another one sets the same key. The tables may stand in any order; no two may
have the same time. `eq.2` is the second `[[eq]]` table of the file. Bands, makeup and ranges glide
to their new values with the time of `glide`; everything else takes effect at once. Changes lie on a
grid of 64 samples.

A band glides on a straight line between its coefficients, which isn't one between the frequencies:
over an octave the response on the way swells by half a decibel at most, over three a high pass swells
by 2 dB. Moves over several octaves are best made in several changes of an octave each.

What would move filters instead of gliding them can't change in time: the number of bands and
whether there is a key filter, and of a band )";

inline constexpr std::string_view kAboutAssignments = R"(
## `--set`: settings from the command line

    channelstrip render IN OUT --preset voice.toml --set comp.threshold=-18 --set eq.2.gain=3

- A key is written as in an `[[at]]` table; `comp.` and `exp.` are short for `compressor.` and
  `expander.`.
- A value is written as in a preset, text also without quotes:
  `--set 'link.5.1=L R C | LFE | Ls Rs'`.
- A table that the preset lacks is created: `--set comp.ratio=4` switches the compressor on.
- `eq.N` with the number after the last band's adds a band.
- Later assignments win. All hold through the preset's changes, unless a change sets the same key.
- A new type or slope drops what the preset gave the band and the new one doesn't know.

## The presets that ship

| preset | what for |
|---|---|
)";

}  // namespace channelstrip::host
