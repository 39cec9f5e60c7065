#!/usr/bin/env python3
"""Runs clang-tidy over the native build's files. A file that was clean is not checked again until it changes.

Most of the time goes into the headers of the system, which every check looks through. So files of one folder are checked
several at a time, as one text; where that finds anything, or their own names clash, each is checked alone, and what that
says counts.

usage: tidy.py [seconds]   the time after which no further file is begun (300 by default)
"""
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor

import tree

BUILD = os.path.join(tree.ROOT, 'out', 'build', 'native')
CLEAN = os.path.join(tree.ROOT, 'out', 'tidy')
GROUP = 8
_LOCALS = re.compile(r'^namespace \{\n(.*?)^\}  // namespace$', re.MULTILINE | re.DOTALL)
_NAME = re.compile(r'^(?!TEST|//|template|namespace)(?=\w)[^\n(={;]*?(\w+)(?= *(?:\(|=|\{|\[|;| : |$))', re.MULTILINE)
_BROUGHT = re.compile(r'^ *(?:using (?:\w+::)+(\w+);|namespace (\w+) = .*;)', re.MULTILINE)
_OWN_INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def _with_includes(path, seen):
    """Adds to `seen` a file and whatever it includes of the project."""
    if path in seen or not os.path.exists(os.path.join(tree.ROOT, path)):
        return
    seen[path] = tree.read(path)
    for included in _OWN_INCLUDE.findall(seen[path]):
        _with_includes(included, seen)


def _rules(path):
    return 'tests/.clang-tidy' if path.startswith('tests/') else '.clang-tidy'


def fingerprint(path, command):
    """What the result of a check depends on, as one text."""
    seen = {_rules(path): tree.read(_rules(path))}
    _with_includes(path, seen)
    parts = [command] + [part for entry in sorted(seen.items()) for part in entry]
    return hashlib.sha256('\0'.join(parts).encode()).hexdigest()


def _local_names(path):
    """The names that a file keeps to itself: those at the left edge of its namespaces without a name."""
    blocks = _LOCALS.findall(tree.read(path))
    return {name for block in blocks for name in _NAME.findall(block)}


def groups(paths):
    """Files that can be one text, at most GROUP of one folder together: no two of them have a local name in common, and
    what brings in all names of a namespace stands alone."""
    alone = [path for path in paths if 'using namespace' in tree.read(path)]
    made = [(None, [path], None) for path in alone]
    for path in paths:
        if path in alone:
            continue
        names = _local_names(path)
        for folder, files, taken in made:
            if folder == os.path.dirname(path) and len(files) < GROUP and not names & taken:
                files.append(path)
                taken |= names
                break
        else:
            made.append((os.path.dirname(path), [path], names))
    return [files for _, files, _ in made]


def _run(path, command, *options):
    """clang-tidy's complaints about one text; some options are known to GCC only."""
    arguments = [word for word in shlex.split(command)[1:] if not word.startswith(('-O', '-W'))]
    arguments = arguments[:arguments.index('-o')] if '-o' in arguments else arguments
    if '-include' in arguments:  # headers that the compiler has read before
        del arguments[arguments.index('-include'):arguments.index('-include') + 2]
    run = subprocess.run(['clang-tidy', '--quiet', *options, path, '--', *arguments], cwd=tree.ROOT,
                         capture_output=True, text=True)
    return run.stdout + run.stderr if run.returncode else ''


def _unneeded(path):
    """What clang-tidy sees only in a file that stands alone: names that are brought in and not needed."""
    text = tree.read(path)
    found = ''
    for brought in _BROUGHT.finditer(text):
        name = brought[1] or brought[2]
        if not re.search(r'(?<!::)\b%s\b' % name, text[:brought.start()] + text[brought.end():]):
            found += '%s: nothing needs %s\n' % (path, brought[0].strip())
    return found


def complaints(paths, commands):
    """What is wrong with each of the files, '' for a clean one."""
    found = _complaints_together(paths, commands)
    return {path: _unneeded(path) + found[path] for path in paths}


def _complaints_together(paths, commands):
    if len(paths) > 1:
        with tempfile.NamedTemporaryFile('w', suffix='.cpp') as text:
            text.writelines('#include "%s"\n' % path for path in paths)
            text.flush()
            together = _run(text.name, commands[paths[0]], '--config-file=' + _rules(paths[0]),
                            '--checks=-bugprone-suspicious-include', '--header-filter=' + re.escape(tree.ROOT))
        if not together:
            return {path: '' for path in paths}
    return {path: _run(path, commands[path]) for path in paths}


def _check(paths, commands, deadline):
    """Complaints by file, with None for those that there was no time for."""
    if time.time() > deadline:
        return {path: None for path in paths}
    found = complaints(paths, commands)
    for path in paths:
        if not found[path]:
            open(_mark(path, commands[path]), 'w').close()
    return found


def _mark(path, command):
    return os.path.join(CLEAN, fingerprint(path, command))


def main():
    with open(os.path.join(BUILD, 'compile_commands.json')) as file:
        commands = {os.path.relpath(entry['file'], tree.ROOT): entry['command'] for entry in json.load(file)
                    if entry['file'].endswith('.cpp')}
    os.makedirs(CLEAN, exist_ok=True)
    deadline = time.time() + float(sys.argv[1] if len(sys.argv) > 1 else 300)
    results = {path: '' for path in commands}
    left = [path for path in commands if not os.path.exists(_mark(path, commands[path]))]
    left.sort(key=lambda path: (path.startswith('tests/'), path))
    with ThreadPoolExecutor(os.cpu_count() or 1) as pool:
        for found in pool.map(lambda paths: _check(paths, commands, deadline), groups(left)):
            results.update(found)
    bad = [(path, found) for path, found in results.items() if found]
    left = [path for path, found in results.items() if found is None]
    for path, found in bad:
        print('%s\n%s' % (path, found))
    if left:
        print('tidy: no time left for %d of %d files (the next run goes on from here)' % (len(left), len(results)))
    print('tidy: %d files, %d with complaints' % (len(results) - len(left), len(bad)))
    return 1 if bad else 0


if __name__ == '__main__':
    sys.exit(main())
