#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy over the sources of a build folder and remembers what it said.

A source is looked at again only when it, a header of the tree that it reads, a form, the configuration or the compiler's
options have changed. Exit code 0: no finding; 1: findings, printed; 2: the check itself could not be made."""

import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import time
from pathlib import Path

INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)
FINDING = re.compile(r"^\S.*: (warning|error): ")


class Tree:
    """The files that a source reads from the tree. The libraries' headers are known by the tool's version alone."""

    def __init__(self, root):
        self.root = root
        self.texts = {}
        self.hashes = {}
        self.forms = {path.stem: path for folder in ("src", "sim") for path in (root / folder).rglob("*.ui")}

    def text(self, path):
        if path not in self.texts:
            self.texts[path] = path.read_bytes()
            self.hashes[path] = hashlib.sha256(self.texts[path]).digest()
        return self.texts[path]

    def resolve(self, name, includer):
        if name.startswith("ui_"):
            return self.forms.get(name[3:-2])
        for folder in (includer.parent, self.root / "src", self.root, self.root / "tests"):
            if (folder / name).is_file():
                return (folder / name).resolve()
        return None

    def closure(self, source):
        """The source and every file of the tree that it reads, in a fixed order."""
        found, waiting = {source}, [source]
        while waiting:
            path = waiting.pop()
            for name in INCLUDE.findall(self.text(path)):
                other = self.resolve(name.decode(), path)
                if other is not None and other not in found:
                    found.add(other)
                    waiting.append(other)
        return sorted(found)

    def key(self, source, options):
        digest = hashlib.sha256(options.encode())
        for path in self.closure(source):
            self.text(path)
            digest.update(str(path.relative_to(self.root)).encode() + b"\0" + self.hashes[path])
        return digest.hexdigest()


def sources(build, root, folders):
    """Each source below one of the folders with the command that compiles it."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = Path(entry["file"]).resolve()
        if any(path.is_relative_to(root / folder) for folder in folders):
            found[path] = entry["command"]
    return dict(sorted(found.items()))


def look_at(tool, build, source):
    run = subprocess.run([*tool, "-p", str(build), "--quiet", "--warnings-as-errors=*", str(source)],
                         capture_output=True, text=True, errors="replace")
    findings = FINDING.search(run.stdout) or re.search(FINDING.pattern, run.stdout + run.stderr, re.MULTILINE)
    if run.returncode != 0 and not findings:
        raise RuntimeError(f"{' '.join(tool)} ended with {run.returncode}: {run.stderr.strip()}")
    return run.stdout if findings else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parents[2], help="the source tree")
    parser.add_argument("--build", type=Path, required=True, help="build folder with compile_commands.json")
    parser.add_argument("--tool", default="clang-tidy-14", help="the program and its first arguments")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--times", action="store_true", help="tells how long each source took")
    parser.add_argument("folders", nargs="*", default=["src", "sim"], help="folders to look at (src sim)")
    options = parser.parse_args()
    root, build, tool = options.root.resolve(), options.build.resolve(), shlex.split(options.tool)

    try:
        version = subprocess.run([*tool, "--version"], capture_output=True, text=True, check=True).stdout
        configuration = (root / ".clang-tidy").read_text()
        commands = sources(build, root, options.folders)
    except (OSError, subprocess.CalledProcessError, ValueError) as problem:
        print(f"tidy: {problem}", file=sys.stderr)
        return 2
    if not commands:
        print(f"tidy: {build} compiles no source of {' '.join(options.folders)}", file=sys.stderr)
        return 2

    tree, cache = Tree(root), build / "tidy-cache"
    cache.mkdir(exist_ok=True)
    verdicts, waiting = {}, {}
    for source, command in commands.items():
        known = cache / tree.key(source, version + configuration + command)
        if known.is_file():
            known.touch()
            verdicts[source] = known.read_text()
        else:
            waiting[source] = known

    def examine(source):
        began = time.monotonic()
        verdict = look_at(tool, build, source)
        # Whole or not at all: an interrupted run leaves no verdict.
        partial = waiting[source].with_suffix(".partial")
        partial.write_text(verdict)
        partial.replace(waiting[source])
        if options.times:
            print(f"{time.monotonic() - began:6.1f} s {source.relative_to(root)}", flush=True)
        return verdict

    began = time.monotonic()
    # Large sources first, so that no core is left alone with one at the end.
    order = sorted(waiting, key=lambda source: -source.stat().st_size)
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        try:
            verdicts.update(zip(order, pool.map(examine, order)))
        except (RuntimeError, OSError) as problem:
            pool.shutdown(cancel_futures=True)
            print(f"tidy: {problem}", file=sys.stderr)
            return 2
    month = 30 * 86400
    for old in cache.iterdir():
        if old.stat().st_mtime < time.time() - month:
            old.unlink()

    # A header's finding is told by every source that reads it; once is enough.
    told, lines, fresh = set(), [], False
    for source in sorted(verdicts):
        for line in verdicts[source].splitlines():
            if FINDING.match(line):
                fresh = line not in told
                told.add(line)
            elif line and not line[0].isspace() and ": note: " not in line:
                fresh = False
            if fresh:
                lines.append(line)
    print("\n".join(lines), end="\n" if lines else "")
    print(f"clang-tidy: {len(commands)} sources, {len(waiting)} of them looked at in {time.monotonic() - began:.0f} s, "
          f"{len(told)} findings")
    return 1 if told else 0


if __name__ == "__main__":
    sys.exit(main())
