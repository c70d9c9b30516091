"""Runs a room's tests over its mutants: which are caught, by which test, and which no test notices."""

import os
import re
import resource
import signal
import subprocess
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

from .tree import tests_in

JOBS = 2
MEMORY = 6 << 30
LARGEST_FILE = 16 << 30


@dataclass
class Test:
    """One test of a test program, what it takes unchanged, and the numbers of the mutants that come up in it."""
    program: str
    name: str
    folder: str
    environment: tuple
    command: tuple = ()  # of a script; its program is its name
    seconds: float = 0  # of the processor
    waited: float = 0  # in all, on a machine as busy as it was
    reached: set = field(default_factory=set)
    caught: int = 0


# A mutant may delete anything, or fill a disk. So tests can write only to places in memory of their own, which have a
# bound. They see the machine's other files as they are.
APART = """mount --make-rprivate / && mount -t tmpfs -o size=2g tmpfs /tmp && mount --bind "$1" "$1" &&
mount -t tmpfs -o size=1g tmpfs /dev/shm &&
mount -o remount,bind,ro / && mkdir -p /tmp/home && shift && exec "$@\""""


class Trial:
    def __init__(self, build, targets, rooms, count):
        self.build = build
        self.count = count
        self.apart = os.geteuid() == 0 and subprocess.run(["unshare", "-m", "true"], capture_output=True).returncode == 0
        if not self.apart:
            print("(as root, tests would be kept from writing anywhere but to a /tmp of their own)")
        self.scratch = build.parent / "scratch"
        self.scratch.mkdir(exist_ok=True)
        self.tests = self.listed(targets, rooms)

    def listed(self, targets, rooms):
        """The tests of the programs, and those scripts named after a room that run one of them."""
        programs = {str(self.build / "bin" / target) for target in targets}
        scripts = re.compile("(" + "|".join(rooms) + ")_")
        tests = []
        for test in tests_in(self.build):
            command = test.get("command", [])
            names = [word.split("=", 1)[1] for word in command if word.startswith("--gtest_filter=")]
            properties = {p["name"]: p["value"] for p in test["properties"]}
            around = (properties.get("WORKING_DIRECTORY", str(self.build)), tuple(properties.get("ENVIRONMENT", ())))
            if command and command[0] in programs and names:
                tests.append(Test(command[0], names[0], *around))
            elif scripts.match(test["name"]) and programs.intersection(command) and \
                    not any(word.endswith("_tests") for word in command):
                tests.append(Test(test["name"], test["name"], *around, tuple(command)))
        if not tests:
            raise SystemExit(f"mutants: no tests in {', '.join(targets)}")
        return tests

    def start(self, tests, mutant, seconds, waited, reached=None):
        """Whether all of the tests pass, and how many seconds of the processor they took. They may wait longer."""
        first = tests[0]
        environment = dict(os.environ, PLUVO_MUTANT=str(mutant), QT_QPA_PLATFORM="offscreen", HOME="/tmp/home")
        environment.update(pair.split("=", 1) for pair in first.environment)
        if not self.apart:
            environment.pop("HOME")
            environment["HOME"] = os.environ.get("HOME", "/")
        if reached:
            environment["PLUVO_MUTANT_REACHED"] = str(reached)
        command = list(first.command) or [first.program, "--gtest_filter=" + ":".join(t.name for t in tests), "--gtest_fail_fast", "--gtest_brief=1",
                   "--gtest_also_run_disabled_tests"]
        if self.apart:
            command = ["unshare", "-m", "sh", "-c", APART, "sh", str(self.scratch), *command]

        def limits():
            # Of the processor, which work of others does not use up.
            resource.setrlimit(resource.RLIMIT_CPU, (int(seconds) + 1, int(seconds) + 2))
            # Tests of what a crash leaves may set more again.
            resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            # Tests make large files of holes only.
            resource.setrlimit(resource.RLIMIT_FSIZE, (LARGEST_FILE, LARGEST_FILE))
            os.nice(5)

        process = subprocess.Popen(command, cwd=first.folder, env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True,
                                   preexec_fn=limits)

        def end():
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass

        # For one that waits for ever and uses no processor.
        patience = threading.Timer(30 + 8 * waited, end)
        patience.start()
        _, status, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        patience.cancel()
        end()
        return process.returncode == 0, used.ru_utime + used.ru_stime

    def begin(self):
        """Every test alone, unchanged: what it takes and what it reaches."""
        def one(pair):
            number, test = pair
            file = self.scratch / f"reached{number}"
            file.write_bytes(bytes(self.count + 1))
            begun = time.monotonic()
            passed, test.seconds = self.start([test], -1, 300, 300, file)
            test.waited = time.monotonic() - begun
            seen = file.read_bytes()
            test.reached = {i for i, byte in enumerate(seen) if byte}
            file.unlink()
            return passed
        with ThreadPoolExecutor(JOBS) as pool:
            passed = list(pool.map(one, enumerate(self.tests)))
        for test, good in zip(self.tests, passed):
            if not good:
                print(f"(left out, since it fails unchanged here: {test.name})")
        self.tests = [test for test, good in zip(self.tests, passed) if good]

    def caught(self, mutant):
        """The test, or the test program, that fails with the mutant; None if none does."""
        number = mutant.number
        tests = [test for test in self.tests if number in test.reached]
        if not tests:
            return None
        # First what caught most so far for its time, and what takes long only with all the others.
        tests.sort(key=lambda t: (-(t.caught + 1) / (t.seconds + 0.05)))
        first = tests[0]
        if not self.passes([first], number):
            first.caught += 1
            return first.name
        for program in sorted({(t.program, t.folder, t.environment) for t in tests[1:]}):
            some = [t for t in tests[1:] if (t.program, t.folder, t.environment) == program]
            if not self.passes(some, number):
                return Path(program[0]).name
        return None

    def passes(self, tests, number):
        return self.start(tests, number, 2 + 5 * sum(t.seconds for t in tests), sum(t.waited for t in tests))[0]

    def over(self, mutants, told):
        """(mutant, what caught it) for each, in their order."""
        begun = time.monotonic()
        done = 0

        def one(mutant):
            nonlocal done
            result = self.caught(mutant)
            done += 1
            if told and done % 50 == 0:
                print(f"  {done} of {len(mutants)}, {time.monotonic() - begun:.0f} s", flush=True)
            return mutant, result
        with ThreadPoolExecutor(JOBS) as pool:
            return list(pool.map(one, mutants))
