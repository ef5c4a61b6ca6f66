"""Music for script/preset-table: a synthesiser's bass and guitar, a recorded drum kit, a band."""
from sounds import add, at_peak, gain, played, read, silence

DRUMS = "/usr/share/hydrogen/data/drumkits/BJA_Pacific/"

ROOTS = [28, 33, 35, 31]  # E A B G, a bar each, the bass in its low register
CHORDS = [[40, 47, 52, 56, 59, 64], [45, 52, 57, 61, 64], [47, 54, 59, 63, 66],
          [43, 47, 50, 55, 59, 67]]
BARS = 8
LENGTH = 4 * BARS * 60 / 110  # seconds


def bass_notes():
    walk = [(0, 1, 0, 110), (1, 0.5, 0, 70), (1.5, 0.5, 12, 100), (2, 1, 7, 85), (3, 0.5, 5, 60),
            (3.5, 0.5, 7, 115)]
    return [(4 * bar + beat, 0.9 * length, ROOTS[bar % 4] + step, velocity)
            for bar in range(BARS) for beat, length, step, velocity in walk]


def strums():
    """Chords on a guitar, every string a little after the one before."""
    pattern = [(0, 112), (1, 75), (1.5, 60), (2.5, 100), (3, 70), (3.5, 90)]
    return [(4 * bar + beat + 0.015 * string, 0.6, key, velocity)
            for bar in range(BARS) for beat, velocity in pattern
            for string, key in enumerate(CHORDS[bar % 4])]


def bass():
    return at_peak(played([(33, 0, bass_notes())], LENGTH, 1), -6)


def acoustic_guitar():
    return at_peak(played([(25, 0, strums())], LENGTH, 1), -6)


def kit(bars=4, tempo=110.0):
    """A drum kit's tracks: kick drum, and everything else."""
    beat = 60 / tempo
    kick, rest = silence(4 * bars * beat + 1.5, 2), silence(4 * bars * beat + 1.5, 2)
    def hit(track, name, at, level):
        add(track, gain(level) * read(f"{DRUMS}{name}.aiff", 2), at * beat)
    for bar in range(bars):
        first = 4 * bar
        for at, name, level in [(0, "BD_08", 0), (1.75, "BD_05", -4), (2.5, "BD_07", -1)]:
            hit(kick, name, first + at, level)
        for at, name, level in [(1, "SN_08", -2), (3, "SN_07", -3), (2.25, "SN_02", -14)]:
            hit(rest, name, first + at, level)
        for half in range(8):
            hit(rest, f"HH_0{6 if half % 2 else 8}", first + half / 2, -10)
    for at, name in [(3, "TM_08"), (3.25, "TM_06"), (3.5, "TM2_08"), (3.75, "TM2_07")]:
        hit(rest, name, 4 * bars - 4 + at, -3)
    return kick, rest


def drums():
    kick, rest = kit()
    return at_peak(kick + rest, -3)


def kick_microphone():
    """The kick drum close by, the rest of the kit as spill, 20 dB below."""
    kick, rest = (track.mean(axis=1, keepdims=True) for track in kit())
    return at_peak(kick, -6) + at_peak(rest, -26)


def music():
    """A band: drums, bass, guitar, piano, strings."""
    piano = [(4 * bar + beat, 1.8, key + 12, 80) for bar in range(BARS) for beat in (0, 2)
             for key in CHORDS[bar % 4][1:4]]
    strings = [(4 * bar, 4, key + 12, 70) for bar in range(BARS) for key in CHORDS[bar % 4][-3:]]
    band = at_peak(played([(33, 0, bass_notes()), (25, 1, strums()), (0, 2, piano),
                           (48, 3, strings)], LENGTH), -6)
    for half in (0, LENGTH / 2):
        add(band, 0.8 * drums(), half)
    return at_peak(band, -1)
