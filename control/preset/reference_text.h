// The text of docs/presets.md around the tables that reference.cpp prints.

#pragma once

#include <string_view>

namespace channelstrip::host {

inline constexpr std::string_view kIntroduction = R"(# Presets

A preset is a [TOML](https://toml.io) file with a strip's settings. A key that is left out has its
default; a preset without any keys leaves the audio as it is. Levels are decibels of amplitude, 0 dB
is full scale. An unknown key, a key that has no use where it stands or a value out of range is
refused with file, line, column and the reason.

    channelstrip render IN OUT --preset presets/voice.toml

The program `preset_reference` prints this page, all but the measurements at its end, from the same
table of keys with which presets are read; a test compares page and program.

## An example

```toml
name = "Narration, bright for the credits"

[[eq]]                   # eq.1: removes what lies below the voice
type = "high_pass"
frequency = 75
slope = 24               # Butterworth, two of the strip's eight sections

[[eq]]                   # eq.2: presence
type = "peak"
frequency = 3500
q = 0.9
gain = 2.5

[[eq]]                   # eq.3: air, after the dynamics; "matched" keeps its analog shape
type = "high_shelf"
frequency = 12000
shelf_slope = 0.8
gain = 2
design = "matched"
position = "post"

[compressor]             # the table switches it on; keys left out have their defaults
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
mode = "average"
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
sections: a low or high pass takes one for every 12 dB/oct or part of it, any other band takes one. A
band that is off takes none. A table `idle` inside a band, `idle = { gain = 6 }`, keeps values that
the band's type has no use for; the control library writes them, so that a type can change back.

)";

inline constexpr std::string_view kAboutKeyFilter = R"(
One band that filters the detection signal and never the audio. It is one section, so a low or high
pass has 6 or 12 dB/oct. Its keys are those of `[[eq]]` except `position`.
)";

inline constexpr std::string_view kAboutLinks = R"(
Linked channels share one gain, computed from the loudest of them. The styles:

| style | groups |
|---|---|
| "pairs" | left and right of each pair; every other channel alone |
| "film" | the front, the LFE, the surrounds |
| "music" | everything but the LFE together; the LFE alone |
| "all" | everything together |
| "none" | every channel alone |

A format's own map is a key with the format's name. Blanks separate channels, bars separate groups,
and every channel is in exactly one group.

    "5.1" = "L R C | LFE | Ls Rs"

The table says how many groups one strip of a format holds. A map with more groups is run by one
strip for each group, which costs some speed and changes nothing else. If the map changes in time,
channels that any of the maps links stay in one strip, and it has to hold their groups under every
map. Stereo, for example, can't be linked for a time and unlinked for another.

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

A change holds until another one sets the same key. The tables may be in any order; no two may have
the same time. `eq.2` is the second `[[eq]]` table of the file. The gains in and out, the mix, bands,
makeup and ranges glide to their new values with the time constant `glide`; everything else takes
effect at once. Changes lie on a grid of 64 samples.

A glide moves a band's coefficients along a straight line, but not its frequency. On the way the
response swells: over an octave by half a decibel at most, over three octaves by 2 dB for a high
pass. Divide a move over several octaves into changes of an octave each.

What would rearrange the filters instead of gliding their coefficients can't change in time: the
number of bands, whether there is a key filter, and a band's )";

inline constexpr std::string_view kAboutAssignments = R"(
## `--set`: settings from the command line

    channelstrip render IN OUT --preset voice.toml --set comp.threshold=-18 --set eq.2.gain=3

- A key is written as in an `[[at]]` table; `comp.` and `exp.` are short for `compressor.` and
  `expander.`.
- A value is written as in a preset; text needs no quotes:
  `--set 'link.5.1=L R C | LFE | Ls Rs'`.
- A table that the preset lacks is created: `--set comp.ratio=4` switches the compressor on.
- `eq.N`, with N one more than the number of bands, adds a band.
- `--gain-in DB`, `--gain-out DB` and `--mix PERCENT` are assignments, too, to `gain_in`, `gain_out`
  and `mix`, later than every `--set`.
- Later assignments override earlier ones. They hold through the preset's changes in time, unless a
  change sets the same key.
- If a new type or slope has no use for a key that the preset gives the band, the key is dropped.

## The presets that ship

| preset | what for |
|---|---|
)";

}  // namespace channelstrip::host
