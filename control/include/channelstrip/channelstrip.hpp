// The control side's library in C++20: objects that free themselves, spans and strings over the
// functions of channelstrip.h, which says what each of them does. Nothing here has a state of its
// own.
//
// Functions for the audio, the control and the meter thread are noexcept and return the status. The
// others throw channelstrip::Error. Threads are named as in channelstrip.h.

#ifndef CHANNELSTRIP_CHANNELSTRIP_HPP
#define CHANNELSTRIP_CHANNELSTRIP_HPP

#include <channelstrip/channelstrip.h>
#include <channelstrip/error.hpp>
#include <channelstrip/parameters.hpp>
#include <channelstrip/settings.hpp>
#include <channelstrip/strip.hpp>

#endif
