"""One command, measured as a whole process."""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field


@dataclass
class Job:
    """One command, run in a scratch copy of its input."""
    name: str
    command: list  # "{in}" and "{out}" stand for the paths
    once: bool = False  # too slow to be run as often as the others
    times: list = field(default_factory=list)
    memory: list = field(default_factory=list)

    over_result: bool = False  # runs over the bytes PLUVO wrote, not over those it read
    other: str = ""  # runs over this document instead of the case's
    statuses: tuple = (0, 1)  # with which it may end
    tells: bool = False  # prints blocks, seconds and seconds of the processor, without its start

    def run(self, source, scratch, keep_input, processor=False):
        """processor: the processor's time counts, which other programs do not lengthen."""
        if self.other:
            source = source.parent / self.other
        if self.over_result:
            source = scratch / "result" / source.name
        # A copy of a folder is used once and goes with the case. A disk without a journal of its own looks long for the
        # numbers of new files, where many files went a moment ago.
        copies = f"copy{len(list(scratch.iterdir()))}" if source.is_dir() and not keep_input else ""
        inside = scratch / copies / source.name
        if not (keep_input and inside.exists()):
            if inside.is_dir():
                shutil.rmtree(inside)
            shutil.copytree(source, inside) if source.is_dir() else shutil.copyfile(source, inside)
            os.sync()
        files = sorted(str(p) for p in inside.iterdir()) if source.is_dir() else [str(inside)]
        command = []
        for word in self.command:
            command += files if word == "{files}" else [word.replace("{in}", str(inside)).replace("{out}", str(scratch / "out"))]
        start = time.perf_counter()
        # What PLUVO keeps for its undo goes beside the data, not among the user's own.
        surroundings = {**os.environ, "XDG_STATE_HOME": str(scratch / "state")}
        with tempfile.TemporaryFile() as told:
            process = subprocess.Popen(command, stdout=told if self.tells else subprocess.DEVNULL, stderr=subprocess.PIPE,
                                       env=surroundings)
            errors = process.stderr.read()
            _, status, usage = os.wait4(process.pid, 0)
            seconds = [time.perf_counter() - start, usage.ru_utime + usage.ru_stime]
            told.seek(0)
            seconds = list(map(float, told.read().split()[1:3])) or seconds
        self.times.append(seconds[processor])
        self.memory.append(usage.ru_maxrss / 1024)
        if os.waitstatus_to_exitcode(status) not in self.statuses:
            sys.exit(f"{self.name} failed: {errors.decode(errors='replace')[-500:]}")
        return inside

    @property
    def median(self):
        return statistics.median(self.times)

    @property
    def spread(self):
        ordered = sorted(self.times)
        return (ordered[-1 - len(ordered) // 10] - ordered[len(ordered) // 10]) / self.median
