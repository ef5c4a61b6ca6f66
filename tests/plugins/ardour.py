"""Projects of Ardour with the plugin on a track."""
import array
import itertools
import pathlib
import re
import signal
import subprocess
import sys

from lv2_bundle import RATE, controls_of, run, samples_of, write_wav

SCRIPT = pathlib.Path(__file__).parent / "ardour-project.lua"
AUTOMATED = "gain_out"


def check(take, frames):
    """A project that is made, saved, loaded again and exported. The strip has run on silence before
    the take comes, so the take begins with silence. Half of it later a gain is automated."""
    half = take.silence + frames // 2
    value, later = float(take.values[AUTOMATED]), float(take.values[AUTOMATED]) - 20
    folder = take.folder / f"ardour-{take.name}"
    project = folder / "project"
    folder.mkdir()
    symbols = controls_of(take.bundle, take.name)
    run("ardour7-new_session", "-s", RATE, "-m", take.channels, project, "project", env=take.env)
    run_lua(take, "make", project, take.uri, take.channels, label_of(take), symbols.index(AUTOMATED), value, later,
        half, *(["key"] if take.has_key else []))
    insert_recordings(project, {"take": take.audio, "key": take.key_audio}, take.silence + frames)
    told = run_lua(take, "tell", project)
    expected = {f"plugin {take.uri}", f"automated {symbols.index(AUTOMATED)} 2"}
    expected |= {f"{symbols.index(symbol)} {single(value):.9g}" for symbol, value in take.values.items()}
    kept = set(re.findall(r"^TOLD (.*)$", told, re.M))
    if kept != expected:
        sys.exit(f"{take.name}: a project that Ardour loads again holds {kept ^ expected}")
    crashes = export(take, project)
    exported = samples_of(take.played)
    take.compare(exported, "Ardour's export", end=half)
    heard = first_difference(take.split(exported, take.channels), take.rendered)
    if heard is None:
        sys.exit(f"{take.name}: Ardour's automation is not heard")
    # The change takes effect in the strip's next block of 16, and the first sample may still be the same.
    for effect in range(heard, heard - 3, -1):
        take.render_with_change(effect, AUTOMATED, later)
        if first_difference(take.split(exported, take.channels), take.rendered) is None:
            break
    else:
        sys.exit(f"{take.name}: Ardour's export DIFFERS behind the automated change, from frame {heard} on")
    return (f"{take.preset}, saved and loaded with {len(take.values)} values and an automated one, exported: "
            f"the same bits, which change {effect - half} frames behind the automation"
            f"{f' (crashes of Ardour: {crashes})' if crashes else ''}")


def first_difference(ours, theirs):
    """The first frame in which any channel differs."""
    frames = [next((at for at in range(len(b) // 4) if a[4 * at : 4 * at + 4] != b[4 * at : 4 * at + 4]), None)
              for a, b in zip(ours, theirs) if a[: len(b)] != b]
    return min((frame for frame in frames if frame is not None), default=None)


def export(take, project):
    """Ardour 7.3 crashes in half of its exports of more than two channels, without the plugin as well."""
    command = ("timeout", "-s", "KILL", "60", "ardour7-export", "-b", "float", "-o", take.played, project, "project")
    for crashes in range(12):
        done = subprocess.run(command, capture_output=True, text=True, env=take.env)
        if done.returncode == 0:
            return crashes
        if done.returncode not in (-signal.SIGABRT, -signal.SIGSEGV):
            break
    sys.exit(f"{take.name}: Ardour's export: status {done.returncode}\n{done.stdout}{done.stderr}")


def run_lua(take, *arguments):
    return run("ardour7-lua", "--", SCRIPT, *map(str, arguments), env=take.env).stdout


def single(value):
    return array.array("f", [float(value)])[0]


def label_of(take):
    text = (take.bundle / "presets.ttl").read_text()
    return re.search(rf'<urn:channelstrip:lv2:preset:{re.escape(take.preset)}>.*?rdfs:label "([^"]*)"', text, re.S)[1]


def insert_recordings(project, recordings, frames):
    """Lua has no import; this writes what one leaves in the project: a file for each channel and a region."""
    file = project / "project.ardour"
    text = file.read_text()
    end = f"a{frames * int(re.search(r'superclocks-per-second=.([0-9]+)', text)[1]) // RATE}"
    first = int(re.search(r'id-counter="(\d+)"', text)[1])
    ids = itertools.count(first)
    sources = ""
    for track, audio in recordings.items():
        channels = ""
        for channel, samples in enumerate(audio):
            name, id = f"{track}%{channel + 1}.wav", next(ids)
            write_wav(project / "interchange" / project.name / "audiofiles" / name, [samples])
            sources += f'<Source name="{name}" type="audio" flags="" id="{id}" channel="0" origin="{track}"/>'
            channels += f' source-{channel}="{id}" master-source-{channel}="{id}"'
        region = (f'<Region name="{track}" id="{next(ids)}" type="audio" opaque="1" external="1" start="a0" '
                  f'length="{end}@a0" fade-in-active="0" fade-out-active="0" scale-amplitude="1" '
                  f'channels="{len(audio)}"{channels}/>')
        text = re.sub(rf'(<Playlist [^>]*name="{track}"[^>]*)/>', lambda found: f"{found[1]}>{region}</Playlist>", text)
    bounds = f'<Location id="{next(ids)}" name="project" start="a0" end="{end}" flags="IsSessionRange"/>'
    text = text.replace("<Sources/>", f"<Sources>{sources}</Sources>")
    text = text.replace("<Locations/>", f"<Locations>{bounds}</Locations>")
    file.write_text(text.replace(f'id-counter="{first}"', f'id-counter="{next(ids)}"'))
