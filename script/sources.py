"""The project's C++ sources and how a configured build compiles them, for scripts."""
import json
import os
import pathlib
import re
import shlex
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent


def sources():
    """Every C++ source of the project."""
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.cpp"]
    listed = subprocess.run(command, cwd=ROOT, capture_output=True, text=True, check=True)
    return [ROOT / name for name in listed.stdout.splitlines() if (ROOT / name).exists()]


class Command:
    """What compiles one file, or in a unity build the sources that it includes."""

    def __init__(self, entry):
        self.directory = entry["directory"]
        file = pathlib.Path(entry["directory"], entry["file"])
        unity = file.parent.name == "Unity"
        included = re.findall(r'#include "(.+)"', file.read_text()) if unity else [file]
        self.sources = [pathlib.Path(name) for name in included]
        arguments = shlex.split(entry["command"])[1:]
        at = arguments.index("-o")
        del arguments[at : at + 2]
        self.flags = [a for a in arguments if a not in ("-c", entry["file"])]


def commands(build):
    return [Command(e) for e in json.loads((build / "compile_commands.json").read_text())]


def common_flags(commands):
    """One set of flags for all: every macro and include folder that one of them has."""
    macros, folders = {}, {}
    for flags in (command.flags for command in commands):
        for flag, following in zip(flags, flags[1:] + [""]):
            if flag.startswith("-DFMT_HEADER_ONLY"):
                continue  # the shared library's alone; all others would compile fmt, too
            if flag.startswith("-D"):
                macros.setdefault(flag.split("=")[0], flag)
            elif flag.startswith("-I"):
                folders[flag] = None
            elif flag == "-isystem":
                folders[f"-isystem{following}"] = None
    machine = ["-march=x86-64-v3"] if os.uname().machine == "x86_64" else []
    return ["-std=gnu++20", "-ffp-contract=off", "-Wno-psabi", *machine, *macros.values(), *folders]
