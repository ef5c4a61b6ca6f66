// The stem formats: DO(name, channels, link groups) for each. 6.0 is the same processor as 5.1.

#pragma once

#define CHANNELSTRIP_EACH_STEM(DO) \
  DO(Mono, 1, 1)                   \
  DO(Stereo, 2, 1)                 \
  DO(LCR, 3, 2)                    \
  DO(Quad, 4, 2)                   \
  DO(LCRS, 4, 3)                   \
  DO(5_0, 5, 3)                    \
  DO(5_1, 6, 4)                    \
  DO(6_0, 6, 4)                    \
  DO(6_1, 7, 5)                    \
  DO(7_0, 7, 4)                    \
  DO(7_1, 8, 5)
