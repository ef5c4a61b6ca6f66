"""Counts instructions under valgrind, which are the same in every run."""
import pathlib
import re
import subprocess
import tempfile


def count(driver, library):
    """What each counted_call of the program `driver LIBRARY` took: pairs of a line that the program
    printed, one for each call in order, and the number of instructions."""
    with tempfile.TemporaryDirectory() as directory:
        out = pathlib.Path(directory) / "out"
        command = ["valgrind", f"--log-file={out}.log", "--tool=callgrind",
                   f"--callgrind-out-file={out}", "--toggle-collect=counted_call",
                   "--dump-after=counted_call", driver, library]
        calls = subprocess.run(command, check=True, stdout=subprocess.PIPE,
                               text=True).stdout.splitlines()
        costs = []
        for number, call in enumerate(calls, start=1):  # one dump per call
            dump = pathlib.Path(f"{out}.{number}").read_text()
            costs.append((call, int(re.search(r"^summary: (\d+)", dump, re.M)[1])))
    if not costs or any(cost == 0 for _, cost in costs):
        raise RuntimeError("a call was not counted")
    return costs
