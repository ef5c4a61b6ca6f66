"""Audio of the kinds that the shipped presets are for, for script/preset-table.

Recordings and instruments come from Debian packages: speech from alsa-utils and espeak-ng, drums
from hydrogen-drumkits, instruments from fluid-soundfont-gm. The audio is the same at every run.
"""
import numpy

from preset_music import acoustic_guitar, bass, drums, kick_microphone, music
from sounds import RATE, add, at_level, at_peak, decay, gain, noise, read, room, silence, spoken

SPEECH = "/usr/share/sounds/alsa/"

SENTENCES = [
    "Good evening. This is the last train of the day, and it is late again.",
    "Nobody on the platform seems to mind.",
    "A boy asks his father whether trains ever sleep.",
    "Of course they do, says the father, but only standing up.",
    "Then the doors close, and for a while there is nothing to hear but rain."]


def takes(parts, levels, pause=0.8):
    """Takes in a row, each peaking at its level in dBFS, with pauses in between, in a room's noise."""
    pieces = [silence(pause)]
    for part, level in zip(parts, levels):
        pieces += [at_peak(part, level), silence(pause)]
    row = numpy.concatenate(pieces)
    return row + room(len(row))


def recorded_words():
    names = ["Front_Center", "Rear_Left", "Side_Right", "Front_Right", "Rear_Center", "Side_Left",
             "Front_Left", "Rear_Right"]
    return [read(f"{SPEECH}{name}.wav") for name in names]


def speech():
    """A woman's voice, recorded, as uneven as an untrained speaker's."""
    return takes(recorded_words(), [-6, -12, -9, -16, -7, -14, -10, -6])


def narration():
    voices = ["en-us", "en-gb+f3"]
    parts = [spoken(s, voices[n % 2]) for n, s in enumerate(SENTENCES)]
    return takes(parts, [-6, -10, -14, -8, -12])


def whisper_and_shout():
    """One voice, 24 dB apart."""
    words = recorded_words()
    return takes([words[0], words[1], words[0], words[1]], [-30, -6, -30, -6])


def explosion(low, high, slope, seed):
    """Three seconds of noise that rises within 10 ms and falls, peaking at full scale."""
    sound = noise(3, low, high, slope, seed)
    rise = numpy.minimum(numpy.arange(len(sound)) / (0.01 * RATE), 1)[:, None]
    return at_peak(sound * rise * decay(len(sound), 2.5), 0)


def scene(width):
    """A film's mix in 5.1 or 7.1, in the order of WAV's channel mask: speech in the centre, music
    in front and around, three explosions."""
    words = numpy.concatenate([speech(), narration()])
    mix = numpy.zeros((len(words), width))
    mix += numpy.concatenate([room(len(words), -66, 20 + c) for c in range(width)], axis=1)
    mix[:, 2:3] += gain(-4) * words
    band = gain(-17) * music()
    for at in (0, 17):
        add(mix[:, 0:2], band, at)
        add(mix[:, 4:6], 0.5 * band[:, ::-1], at + 0.012)
    for at, seed in [(8, 3), (20, 4), (30, 5)]:
        for channel in [c for c in range(width) if c not in (2, 3)]:
            sound = explosion(30, 6000, 4, seed + channel)
            add(mix[:, channel : channel + 1], gain(-3) * sound, at)
        add(mix[:, 3:4], gain(-3) * explosion(25, 90, 0, seed), at)
    return at_peak(mix, -1)


def bed_and_burst():
    """A bed at -42 dBFS, then a burst at full scale, without any fade."""
    mix = at_level(noise(8, 100, 8000, 3), -42)
    burst = at_peak(noise(1.5, 30, 12000, 1, 9), 0)
    first = 4 * RATE
    mix[first : first + len(burst)] = at_peak(burst * decay(len(burst), 4), 0)
    return mix


def stem():
    """A dialogue stem in 5.1: a voice in the centre, another on the right, the room behind them."""
    centre, right = whisper_and_shout(), narration()
    mix = silence((len(centre) + len(right)) / RATE, 6)
    add(mix[:, 2:3], centre, 0)
    add(mix[:, 1:2], right, len(centre) / RATE)
    for channel in (4, 5):
        add(mix[:, channel : channel + 1], gain(-20) * mix[:, 1:3].sum(axis=1, keepdims=True), 0.03)
    return mix


def ambience():
    """Wind in trees in four channels, now and then a bird close by on the left and a dog's bark."""
    seconds = 24
    time = numpy.arange(seconds * RATE)[:, None] / RATE
    swell = gain(3 * numpy.sin(time / 2) + 2 * numpy.sin(time * 1.7))
    wind = [at_level(noise(seconds, 50, 12000, 3.5, 30 + c) * swell, -34) for c in range(4)]
    mix = numpy.concatenate(wind, axis=1)
    song = time[: RATE // 2]
    pitch = 2600 + 700 * numpy.sin(40 * song)
    phase = 2 * numpy.pi * numpy.cumsum(pitch)[:, None] / RATE
    bird = numpy.sin(phase) * numpy.sin(2 * numpy.pi * song)
    for at in (4, 11, 12, 18.5):
        add(mix[:, 0:1], gain(-9) * bird, at)
        add(mix[:, 1:2], gain(-17) * bird, at)
    bark = noise(0.3, 400, 1500, 6, 45) * decay(round(0.3 * RATE), 0.4)
    for at in (7.5, 8.1, 16):
        add(mix[:, 2:4], gain(-6) * at_peak(bark, 0), at)
    return mix


def location():
    """Speech outside: traffic and wind below 60 Hz, as strong as the voice, and steps."""
    mix = speech()
    seconds = len(mix) / RATE
    mix += at_level(noise(seconds, 12, 45, 0, 40)[: len(mix)], -24)
    step = at_peak(noise(0.2, 25, 45, 0, 41), -10)
    for at in numpy.arange(0.5, seconds, 0.6):
        add(mix, step * decay(len(step), 0.4), at)
    return mix


def hot_music():
    """Music driven 6 dB beyond full scale."""
    return at_peak(music(), 6)


# Preset, the name of its material in the table, the audio, and that of the key.
MATERIAL = [
    ("acoustic_guitar", "strummed guitar", acoustic_guitar, None),
    ("bass", "bass line", bass, None),
    ("de_rumble", "speech, traffic, steps", location, None),
    ("dialogue_5.1", "speech", speech, None),
    ("dialogue_5.1", "narration, whisper, shout in 5.1", stem, None),
    ("drum_bus", "drum kit", drums, None),
    ("film_7.1", "film mix in 7.1", lambda: scene(8), None),
    ("game_ambience", "wind, a bird, a dog, in quad", ambience, None),
    ("kick_gate", "kick drum with spill", kick_microphone, None),
    ("limiter_safe", "music 6 dB too hot", hot_music, None),
    ("master_gentle", "music", music, None),
    ("neutral", "music", music, None),
    ("night_mode", "film mix in 5.1", lambda: scene(6), None),
    ("night_mode", "bed at -42 dBFS, burst at 0 dBFS", bed_and_burst, None),
    ("podcast_voice", "speech", speech, None),
    ("podcast_voice", "narration", narration, None),
    ("telephone", "speech", speech, None),
    ("vocal_sidechain_duck", "music, speech as key", music, speech),
    ("voice", "speech", speech, None),
    ("voice", "narration", narration, None),
]
