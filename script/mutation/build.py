# SPDX-License-Identifier: Apache-2.0
"""The build that mutants are made from: its objects stay, and a mutant compiles what it touches."""

import json
import os
import pathlib
import re
import shlex
import subprocess

PRESET = "mutation"
LIBRARY = "ZelStyleKit"
PROGRAMS = {  # by the folder whose sources they test first of all
    "style": "style_tests", "palette": "palette_tests",
    "domain": "domain_tests", "styleable": "styleable_tests",
    "appearance": "appearance_tests",
}
OTHERS = ["figures_tests", "memory_tests"]
MODEL = "model_player"


class CannotBuild(Exception):
    pass


class Interrupted(Exception):
    pass


def _runs_well(words, folder):
    code = subprocess.run(words, cwd=folder, capture_output=True).returncode
    if code < 0:  # ended from outside, which says nothing of the mutant
        raise Interrupted
    return code == 0


class Build:
    """The preset's build. Any thread may use it once it was made."""

    LIBRARY = LIBRARY

    def __init__(self, root, jobs):
        self.root = root
        self.folder = root / "build" / PRESET
        targets = [*PROGRAMS.values(), *OTHERS, MODEL]
        self._say(["cmake", "--preset", PRESET])
        self._say(["cmake", "--build", "--preset", PRESET, "--parallel", str(jobs), "--target",
                   *targets])
        entries = json.loads((self.folder / "compile_commands.json").read_text())
        self._compiles = {self._object_of(each["command"]): each for each in entries}
        self._links = {LIBRARY: self._link_of(f"lib{LIBRARY}.so")}
        self._links.update({name: self._link_of(name) for name in targets})
        self._users = self._users_of_sources()
        self._header = self._precompile()

    def _say(self, command):
        done = subprocess.run(command, cwd=self.root, capture_output=True, text=True)
        if done.returncode:
            raise CannotBuild(f"{shlex.join(command)}\n{done.stdout[-4000:]}{done.stderr[-4000:]}")
        return done.stdout

    @staticmethod
    def _object_of(command):
        return re.search(r" -o (\S+)", command).group(1)

    def _ninja(self, *arguments):
        return self._say(["ninja", "-C", str(self.folder), *arguments])

    def _link_of(self, target):
        last = self._ninja("-t", "commands", target).strip().splitlines()[-1]
        steps = [step.strip() for step in last.split("&&")]
        if steps[0] == "cmake" or "cmake_symlink_library" in last:  # the link stands one before
            last = self._ninja("-t", "commands", target).strip().splitlines()[-2]
            steps = [step.strip() for step in last.split("&&")]
        return shlex.split(next(step for step in steps if " -o " in step))

    def _users_of_sources(self):
        """A source or header to the objects that are compiled from it."""
        users, current = {}, None
        for line in self._ninja("-t", "deps").splitlines():
            if line and not line.startswith((" ", "ninja:")):
                current = line.split(":")[0]
            elif line.startswith("    "):
                path = os.path.relpath(self.folder / line.strip(), self.root)
                users.setdefault(path, []).append(current)
        return users

    def _precompile(self):
        """What every source includes and no mutant touches, compiled once."""
        includes = set()
        for entry in self._compiles.values():
            if f"/{LIBRARY}.dir/" in entry["command"]:
                text = pathlib.Path(entry["file"]).read_text()
                includes.update(re.findall(r"^#include (<[\w./]+>)", text, re.MULTILINE))
                command = entry["command"]
        header = self.folder / "standard.h"
        header.write_text("".join(f"#include {each}\n" for each in sorted(includes)))
        words = self._without_source(command) + ["-x", "c++-header", str(header), "-o",
                                                 f"{header}.gch"]
        done = subprocess.run(words, cwd=self.folder, capture_output=True, text=True)
        if done.returncode:
            raise CannotBuild(done.stderr)
        return header

    @staticmethod
    def _without_source(command):
        words = shlex.split(command)
        output, source = words.index("-o"), words.index("-c")
        dropped = {output, output + 1, source, source + 1}
        # A mutant's warnings don't matter.
        return [word for i, word in enumerate(words)
                if i not in dropped and not word.startswith("-W")] + ["-w"]

    def touched_by(self, file):
        """The objects that a mutant of the file replaces, those of these programs alone."""
        wanted = [f"/{name}.dir/" for name in self._links]
        touched = [each for each in self._users.get(file, ())
                   if any(name in f"/{each}" for name in wanted)]
        if not touched:
            raise CannotBuild(f"nothing is compiled from {file}")
        return touched

    def _compile(self, name, place, file):
        entry = self._compiles[name]
        source = pathlib.Path(entry["file"])
        target = place / "objects" / name.replace("/", "+")
        words = self._without_source(entry["command"])
        overlay = place / "overlay"
        if source == self.root / file:
            source = overlay / file
        words[1:1] = [f"-I{overlay}"]
        if f"/{LIBRARY}.dir/" in f"/{name}":
            words += ["-include", str(self._header)]
        words += ["-o", str(target), "-c", str(source)]
        return str(target) if _runs_well(words, self.folder) else None

    def make(self, place, file, text):
        """Compiles and links a mutant into a worker's folder. Answers the programs' paths and the
        folder of the library; nothing where it doesn't compile."""
        for folder in ("overlay", "objects", "library", "programs"):
            (place / folder).mkdir(parents=True, exist_ok=True)
        written = place / "overlay" / file
        written.parent.mkdir(parents=True, exist_ok=True)
        written.write_text(text)
        try:
            replaced = {}
            for name in self.touched_by(file):
                replaced[name] = self._compile(name, place, file)
                if replaced[name] is None:
                    return None
            library = place / "library" / f"lib{LIBRARY}.so.1"
            if not self._link(LIBRARY, library, replaced):
                return None
            programs = {}
            for target in self._links:
                if target != LIBRARY and any(f"/{target}.dir/" in name for name in replaced):
                    programs[target] = place / "programs" / target
                    if not self._link(target, programs[target], replaced):
                        return None
            return programs, library.parent
        finally:
            written.unlink()

    def _link(self, target, output, replaced):
        words = [replaced.get(word, word) for word in self._links[target]]
        words[words.index("-o") + 1] = str(output)
        return _runs_well(words, self.folder)

    def program(self, target):
        """Where a program of the build itself stands."""
        words = self._links[target]
        return self.folder / words[words.index("-o") + 1]
