"""What scripts share that play the LV2 bundle in hosts: its formats, ports and presets, and WAV files."""
import os
import random
import re
import struct
import subprocess
import sys

FORMATS = {"mono": 1, "stereo": 2, "lcr": 3, "quad": 4, "lcrs": 4, "5.0": 5, "5.1": 6, "6.0": 6, "6.1": 7, "7.0": 7, "7.1": 8}
RATE = 48000


def run(*command, seconds=120, **options):
    """A command that has to succeed within a time."""
    limited = ("timeout", "-s", "KILL", *map(str, (seconds, *command)))
    done = subprocess.run(limited, capture_output=True, text=True, **options)
    if done.returncode:
        sys.exit(f"{' '.join(map(str, command))}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done


def environment(bundle):
    folders = dict.fromkeys((str(bundle.parent), "/usr/lib/lv2"))  # lilv warns of a folder that is named twice
    return os.environ | {"LV2_PATH": ":".join(folders)}


def noise(channels, seed, frames):
    drawn = random.Random(seed)
    return [[drawn.uniform(-0.5, 0.5) for _ in range(frames)] for _ in range(channels)]


def write_wav(path, channels):
    """Samples of 32-bit float, a list for each channel."""
    samples = [x for frame in zip(*channels) for x in frame]
    data, size = struct.pack(f"<{len(samples)}f", *samples), 4 * len(channels)
    head = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(data), b"WAVE", b"fmt ", 16, 3, len(channels), RATE,
                       size * RATE, size, 32, b"data", len(data))
    path.write_bytes(head + data)


def samples_of(path):
    """The data chunk's bytes."""
    content = path.read_bytes()
    at = 12
    while at < len(content):
        name, size = struct.unpack_from("<4sI", content, at)
        if name == b"data":
            return content[at + 8 : at + 8 + size]
        at += 8 + size + size % 2
    sys.exit(f"{path} has no samples")


def presets_of(bundle):
    """The values of each preset's ports by symbol, as the Turtle has them."""
    presets = {}
    for text in (bundle / "presets.ttl").read_text().split("<urn:channelstrip:lv2:preset:")[1:]:
        presets[text.split(">")[0]] = dict(re.findall(r'lv2:symbol "(\w+)" ; pset:value (\S+)', text))
    return presets


def controls_of(bundle, name):
    """The symbols of a format's control ports in the order of their indices, outputs as well."""
    return re.findall(r'lv2:ControlPort ;\s+lv2:index \d+ ;\s+lv2:symbol "(\w+)"', (bundle / f"{name}.ttl").read_text())
