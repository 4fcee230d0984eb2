# SPDX-License-Identifier: Apache-2.0
"""Runs test programs within limits, and says how a run ended."""

import json
import math
import os
import pathlib
import re
import resource
import signal
import subprocess
import tempfile
import time

MEMORY = 6 << 30  # bytes of addresses; threads' stacks count in full
FACTOR = 5        # times the plain run's processor time, before a run counts as endless
IDLE = 6.0        # seconds in which nothing of a run ran or wanted to, before it counts as stuck
TICK = os.sysconf("SC_CLK_TCK")


class Run:
    """How a run ended: `passed`, else `end` says how, "timeout" among it."""

    def __init__(self, passed, end, output):
        self.passed = passed
        self.end = end
        self.output = output

    def tests_that(self, end):
        """The tests that FAILED, or were SKIPPED."""
        return sorted(set(re.findall(rf"^\[ +{end} +\] ([\w/]+\.[\w/]+)", self.output, re.M)))


def run(words, library, seconds):
    """Runs a program against the library in a folder, for so many seconds of processor time."""
    with tempfile.TemporaryDirectory() as scratch:
        environment = dict(os.environ, LD_LIBRARY_PATH=str(library), HOME=scratch,
                           XDG_CONFIG_HOME=scratch, XDG_DATA_HOME=scratch)
        limits = ["prlimit", f"--as={MEMORY}", f"--cpu={math.ceil(seconds)}", "--core=0",
                  f"--fsize={100 << 20}"]
        with open(pathlib.Path(scratch) / "output", "w+", errors="replace") as output:
            process = subprocess.Popen([*limits, *words], cwd=scratch, env=environment,
                                       stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=subprocess.STDOUT, start_new_session=True)
            try:
                stuck = not _wait(process)
            finally:
                _end(process)
            output.seek(0)
            text = output.read(1 << 20)
    if stuck or process.returncode in (-signal.SIGXCPU, -signal.SIGKILL):
        return Run(False, "timeout", text)
    if process.returncode < 0:
        return Run(False, signal.Signals(-process.returncode).name, text)
    return Run(process.returncode == 0, f"status {process.returncode}", text)


def _wait(process):
    """Waits for the end; false where nothing of the process moves any more. Time in which this
    process didn't run itself, since somebody has stopped everything, doesn't count."""
    still, before, pause, last = 0.0, None, 0.01, time.monotonic()
    while True:
        try:
            process.wait(pause)
            return True
        except subprocess.TimeoutExpired:
            pause = min(0.25, pause * 2)
        now = time.monotonic()
        passed, last = min(now - last, 2 * pause), now
        spent, wants = _activity(process.pid)
        if wants or spent != before:
            still, before = 0.0, spent
        else:
            still += passed
            if still > IDLE:
                return False


def _activity(session):
    """The processor time of all threads of a session, and whether one runs, waits to, or is stopped
    by somebody."""
    spent, wants = 0, False
    for folder in pathlib.Path("/proc").iterdir():
        if not folder.name.isdigit():
            continue
        try:
            if os.getsid(int(folder.name)) != session:
                continue
            for thread in (folder / "task").iterdir():
                fields = (thread / "stat").read_text().rpartition(")")[2].split()
                wants = wants or fields[0] in "RDT"
                spent += int(fields[11]) + int(fields[12])
        except (OSError, ValueError):
            continue  # it has ended
    return spent, wants


def _end(process):
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


class Programs:
    """The test programs in one process each, and what has to be told of them once: how long they
    take, and which of their tests need a process of their own."""

    FLAGS = ["--gtest_brief=1", "--gtest_color=no", "--gtest_fail_fast"]
    NO_LIMIT = 600  # seconds

    def __init__(self, build, names, model, operations, seed):
        self._build = build
        self._model = model
        self._models = [["--seed", str(seed), "--operations", str(operations)],
                        ["--seed", str(seed), "--operations", str(operations // 10),
                         "--first-setup"]]
        paths = [build.program(name) for name in (*names, model)]
        paths.append(build.program(build.LIBRARY))
        state = [[path.stat().st_mtime_ns for path in paths], seed, operations]
        kept = build.folder / "plain.json"  # no need to measure twice
        plain = json.loads(kept.read_text()) if kept.exists() else {}
        if plain.get("state") != state:
            plain = {"state": state, "programs": {name: self._measure(name) for name in names},
                     "model": [self._timed([build.program(model), *each])[1]
                               for each in self._models]}
            kept.write_text(json.dumps(plain, indent=1) + "\n")
        self._programs = plain["programs"]
        self._model_seconds = plain["model"]

    def _timed(self, words):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        done = run(words, self._build.folder, self.NO_LIMIT)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return done, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime

    def _measure(self, name):
        program = self._build.program(name)
        apart = []
        while True:  # a test that fails may have had others fail, too
            done, seconds = self._timed([program, self._but(apart)])
            found = done.tests_that("FAILED") + done.tests_that("SKIPPED")
            if not done.passed and not found:
                raise RuntimeError(f"{program} ends with {done.end} as it is:\n{done.output}")
            apart += found
            if not found:
                break
        for test in apart:
            alone = self._timed([program, f"--gtest_filter={test}"])[0]
            if not alone.passed or alone.tests_that("SKIPPED"):
                raise RuntimeError(f"{test} doesn't pass as it is:\n{alone.output}")
        every = re.findall(r"^\[ +OK \] ([\w/]+\.[\w/]+)", done.output, re.M)
        slow = re.findall(r"^\[ +OK \] ([\w/]+\.[\w/]+).* \((\d{3,}) ms\)$", done.output, re.M)
        slow = [test for test, _ in slow]
        return {"seconds": seconds,
                "quick": [self._but(apart + slow)],
                "slow": [f"--gtest_filter={':'.join(slow)}"] if slow else [],
                "apart": [f"--gtest_filter={test}" for test in apart],
                "singly": [f"--gtest_filter={test}" for test in every]}

    @staticmethod
    def _but(tests):
        return f"--gtest_filter=-*DesktopTests.*:{':'.join(tests)}"

    def describe(self):
        lines = [f"{name}: {each['seconds']:.1f} s, {len(each['apart'])} tests apart"
                 for name, each in self._programs.items()]
        return lines + [f"{self._model}: {sum(self._model_seconds):.1f} s"]

    def judge(self, first, made, library):
        """Runs all programs against a mutant until one fails, the `first` one, then the fastest
        first. Answers with which end, and the test or the program; nothing where none does."""
        order = sorted(self._programs,
                       key=lambda name: (name != first, self._programs[name]["seconds"]))
        for which in ("quick", "slow", "apart"):
            for name in order:
                noticed = self._noticed(name, which, made, library)
                if noticed:
                    return noticed
        program = made.get(self._model, self._build.program(self._model))
        for words, seconds in zip(self._models, self._model_seconds):
            done = run([program, *words], library, 2 + FACTOR * seconds)
            if not done.passed:
                return done.end, self._model
        return self._noticed(first, "singly", made, library)

    def _noticed(self, name, which, made, library):
        program = made.get(name, self._build.program(name))
        seconds = 1 + FACTOR * self._programs[name]["seconds"]
        for tests in self._programs[name][which]:
            done = run([program, *self.FLAGS, tests], library, seconds)
            if not done.passed:
                return done.end, (done.tests_that("FAILED") or [name])[0]
        return None
