#!/usr/bin/env python3
"""Runs clang-tidy over the native build's files. A file that was clean is not checked again until it changes.

usage: tidy.py [seconds]   the time after which no further file is begun (300 by default)
"""
import hashlib
import json
import os
import re
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor

import tree

BUILD = os.path.join(tree.ROOT, 'out', 'build', 'native')
CLEAN = os.path.join(tree.ROOT, 'out', 'tidy')
_OWN_INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def _with_includes(path, seen):
    """Adds to `seen` a file and whatever it includes of the project."""
    if path in seen or not os.path.exists(os.path.join(tree.ROOT, path)):
        return
    seen[path] = tree.read(path)
    for included in _OWN_INCLUDE.findall(seen[path]):
        _with_includes(included, seen)


def fingerprint(path, command):
    """What the result of a check depends on, as one text."""
    rules = 'tests/.clang-tidy' if path.startswith('tests/') else '.clang-tidy'
    seen = {rules: tree.read(rules)}
    _with_includes(path, seen)
    parts = [command] + [part for entry in sorted(seen.items()) for part in entry]
    return hashlib.sha256('\0'.join(parts).encode()).hexdigest()


def complaints(path, build=BUILD):
    """clang-tidy's complaints about one file, '' when it is clean."""
    run = subprocess.run(['clang-tidy', '--quiet', '--extra-arg=-Wno-unknown-warning-option', '-p', build, path],
                         cwd=tree.ROOT, capture_output=True, text=True)  # some options are known to GCC only
    return run.stdout + run.stderr if run.returncode else ''


def _check(entry, deadline):
    """(path, complaints), with None for a file that there was no time for."""
    path = os.path.relpath(entry['file'], tree.ROOT)
    mark = os.path.join(CLEAN, fingerprint(path, entry['command']))
    if os.path.exists(mark):
        return path, ''
    if time.time() > deadline:
        return path, None
    found = complaints(path)
    if not found:
        open(mark, 'w').close()
    return path, found


def main():
    with open(os.path.join(BUILD, 'compile_commands.json')) as file:
        entries = json.load(file)
    entries = sorted({entry['file']: entry for entry in entries}.values(),
                     key=lambda entry: ('/tests/' in entry['file'], entry['file']))
    os.makedirs(CLEAN, exist_ok=True)
    deadline = time.time() + float(sys.argv[1] if len(sys.argv) > 1 else 300)
    with ThreadPoolExecutor(os.cpu_count() or 1) as pool:
        results = list(pool.map(lambda entry: _check(entry, deadline), entries))
    bad = [(path, found) for path, found in results if found]
    left = [path for path, found in results if found is None]
    for path, found in bad:
        print('%s\n%s' % (path, found))
    if left:
        print('tidy: no time left for %d of %d files (the next run goes on from here)' % (len(left), len(results)))
    print('tidy: %d files, %d with complaints' % (len(results) - len(left), len(bad)))
    return 1 if bad else 0


if __name__ == '__main__':
    sys.exit(main())
