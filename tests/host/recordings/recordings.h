// Real recordings for tests: speech from Debian's alsa-utils, drums from its hydrogen-drumkits.

#pragma once

#include <string>
#include <vector>

#include "../support/audio.h"

namespace channelstrip::test {

// Each peaks at -6 dBFS, the level that presets are made for.
TestAudio speech();           // a voice, mono, 48 kHz
TestAudio drums();            // four beats of kick, snare, hi-hat and ride, stereo, 44.1 kHz
TestAudio surround_speech();  // eight voices at once, 7.1, 48 kHz

// The same signal in each of `channels` channels.
TestAudio in_every_channel(const TestAudio& mono, int channels);

float peak(const std::vector<float>& samples);

// RMS level in dB.
double rms_level(const std::vector<float>& samples);

}  // namespace channelstrip::test
