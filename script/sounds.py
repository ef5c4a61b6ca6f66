"""Where script/preset-table gets its sounds from: audio files, noise, speech and music synthesis.

An array of samples has a row per frame and a column per channel. Noise depends on its seed alone.
"""
import pathlib
import struct
import subprocess
import tempfile

import numpy

RATE = 48000
LAYOUTS = {1: "mono", 2: "stereo", 4: "quad", 6: "5.1", 8: "7.1"}  # by channels
SOUND_FONT = "/usr/share/sounds/sf2/FluidR3_GM.sf2"


def gain(db):
    return 10 ** (db / 20)


def at_peak(audio, db):
    return audio * (gain(db) / numpy.abs(audio).max())


def at_level(audio, db):
    """With an RMS level of `db` dBFS."""
    return audio * (gain(db) / numpy.sqrt(numpy.mean(audio**2)))


def ffmpeg(*arguments, data=None):
    command = ["ffmpeg", "-nostdin", "-hide_banner", "-nostats", "-y", *map(str, arguments)]
    return subprocess.run(command, input=data, capture_output=True, check=True)


def read(path, channels=1):
    """Mixed to as many channels and resampled where the file has others."""
    wanted = ["-ar", RATE, "-channel_layout", LAYOUTS[channels]]
    data = ffmpeg("-i", path, "-f", "f32le", *wanted, "-").stdout
    return numpy.frombuffer(data, "<f4").reshape(-1, channels).astype(float)


def write(path, audio):
    """A WAV file of 32-bit floats."""
    channels = audio.shape[1]
    raw = ["-f", "f32le", "-ar", RATE, "-ac", channels, "-channel_layout", LAYOUTS[channels]]
    ffmpeg(*raw, "-i", "-", "-c:a", "pcm_f32le", path, data=audio.astype("<f4").tobytes())


def silence(seconds, channels=1):
    return numpy.zeros((round(seconds * RATE), channels))


def add(mix, sound, seconds):
    """Adds a sound to a mix from a time on; what reaches beyond its end is cut."""
    first = round(seconds * RATE)
    count = max(0, min(len(sound), len(mix) - first))
    mix[first : first + count] += sound[:count]


def noise(seconds, low, high, slope=0.0, seed=1):
    """Gaussian noise between two frequencies in Hz, falling by `slope` dB per octave."""
    frames = round(seconds * RATE)
    longer = 2 ** (frames - 1).bit_length()  # other lengths may be slow
    spectrum = numpy.fft.rfft(numpy.random.default_rng(seed).standard_normal(longer))
    f = numpy.maximum(numpy.fft.rfftfreq(longer, 1 / RATE), 1)
    weight = 1 / numpy.sqrt((1 + (low / f) ** 8) * (1 + (f / high) ** 8))
    return numpy.fft.irfft(spectrum * weight * f ** (-slope / 6.02))[:frames, None]


def room(frames, level=-60.0, seed=5):
    """The noise of a room, in dBFS."""
    return at_level(noise(frames / RATE, 40, 9000, 4.5, seed)[:frames], level)


def decay(frames, seconds):
    """A factor that falls by 60 dB in a time."""
    return gain(-60 * numpy.arange(frames) / (seconds * RATE))[:, None]


def spoken(text, voice):
    with tempfile.NamedTemporaryFile(suffix=".wav") as file:
        subprocess.run(["espeak-ng", "-v", voice, "-s", "155", "-w", file.name, text], check=True)
        return read(file.name)


def midi(tracks, tempo=110):
    """A MIDI file. A track is a program, a channel and notes: beat, beats, key, velocity."""
    def number(value):
        text = [value & 127]
        while value := value >> 7:
            text.insert(0, (value & 127) | 128)
        return bytes(text)

    chunks = [struct.pack(">IHHH", 6, 1, len(tracks), 480)]
    for index, (program, channel, notes) in enumerate(tracks):
        events = []
        for beat, beats, key, velocity in notes:
            events.append((round(beat * 480), bytes([0x90 | channel, key, velocity])))
            events.append((round((beat + beats) * 480), bytes([0x80 | channel, key, 0])))
        data, now = b"", 0
        if index == 0:
            data += b"\0\xff\x51\x03" + struct.pack(">I", 60000000 // tempo)[1:]
        data += b"\0" + bytes([0xC0 | channel, program])
        for tick, event in sorted(events):
            data += number(tick - now) + event
            now = tick
        data += b"\0\xff\x2f\0"
        chunks.append(struct.pack(">I", len(data)) + data)
    return b"MThd" + chunks[0] + b"".join(b"MTrk" + chunk for chunk in chunks[1:])


def played(tracks, seconds, channels=2):
    """The first seconds of what a General MIDI synthesiser makes of tracks."""
    with tempfile.TemporaryDirectory() as folder:
        score, sound = pathlib.Path(folder, "score.mid"), pathlib.Path(folder, "sound.wav")
        score.write_bytes(midi(tracks))
        command = ["fluidsynth", "-ni", "-g", "0.4", "-r", str(RATE), "-O", "float", "-T", "wav"]
        subprocess.run(command + ["-F", sound, SOUND_FONT, score], capture_output=True, check=True)
        return read(sound, channels)[: round(seconds * RATE)]
