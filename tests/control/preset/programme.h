// Audio of the kinds that the shipped presets are for, computed. All at 48 kHz, in mono unless a
// comment says otherwise, and peaking at 0 dBFS.

#pragma once

#include <cstddef>
#include <vector>

namespace channelstrip::test::programme {

constexpr double kRate = 48000;

using Samples = std::vector<float>;

std::size_t frames(double seconds);

// Noise falling by about 6 dB per octave above a frequency in Hz, and below another one.
Samples coloured_noise(double seconds, double low, double high);

Samples with_peak(Samples audio, double level);   // dBFS
Samples with_level(Samples audio, double level);  // RMS, dBFS
void add(Samples& mix, const Samples& sound, double seconds);
Samples in_every_channel(const Samples& mono, int channels);

// Three sentences of syllables, each with a consonant and a vowel; their levels lie
// 8 dB apart, and there are pauses with the noise of a room at -60 dBFS.
Samples speech();

// Two notes on a string, a second each: the second one is `difference` dB softer.
Samples plucks(double frequency, double difference);

// Chords of five strings, twice a second for 4 s, every second one 10 dB softer.
Samples strums();

// A kick drum in the time of two beats at 120 beats a minute, each of 0.5 s, with snare drum and
// cymbals 20 dB below in between.
Samples kick_and_spill();

// Kick and snare drum in turn, as loud as each other, for 4 s.
Samples drum_kit();

// Music: chords, bass and the drum kit, for 4 s. Its RMS level is about -18 dBFS.
Samples mix();

// Noise that rises within 10 ms and decays by 60 dB in 2 s; 2 s.
Samples explosion();

}  // namespace channelstrip::test::programme
