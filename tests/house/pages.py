#!/usr/bin/env python3
"""The tables that say where code lies are true: each folder's README names its files, and the guide of ARCHITECTURE.md
names what is there."""
import fnmatch
import os
import re
import sys

import tree

FOLDERS = ('base', 'exec', 'env', 'core', 'app', 'app/qxia', 'platform', 'platform/simulated', 'platform/win32',
           'platform/faults', 'tests/support', 'tests/fuzz', 'tests/shipped', 'scripts/wine')
GUIDE = 'ARCHITECTURE.md'
GUIDE_HEADING = 'Where does my code go?'

_SOURCE = ('.cpp', '.h', '.c', '.py')
_MARKED = re.compile(r'`([^`]+)`')
_PATH = re.compile(r'[\w.*-]+(/[\w.*-]*)+|[\w.*-]+\.(cpp|h|c|py|md|txt|tsv)')
_NAME = re.compile(r'[A-Za-z_]\w*(::\w+)*(\(\))?')


def tables(text):
    """The tables of a page: lists of (line number, cells), the head first."""
    found, before = [], -1
    for number, line in enumerate(text.split('\n'), 1):
        if line.startswith('|'):
            if number != before + 1:
                found.append([])
            before = number
            if not re.fullmatch(r'[|\s:-]+', line):
                found[-1].append((number, [cell.strip() for cell in re.split(r'(?<!\\)\|', line)[1:-1]]))
    return [table for table in found if table]


def _stands_for(name, path):
    """True when a name means a file: its path, the same without .h or .cpp, or a pattern."""
    return name in (path, re.sub(r'\.(h|cpp)$', '', path)) or '*' in name and fnmatch.fnmatchcase(path, name)


def _file_rows(text):
    """(line, the names in backticks) of each row of the tables of files: those with "file" in a column's head."""
    for head, *rows in tables(text):
        columns = [i for i, cell in enumerate(head[1]) if re.search(r'\bfiles?\b', cell)]
        for line, cells in rows if columns else ():
            yield line, [name for i in columns for name in _MARKED.findall(cells[i])]


def readme_problems(folder, text, files):
    """What is wrong with a folder's README, given its files' paths from there; one text each."""
    page, rows = folder + '/README.md', list(_file_rows(text))
    if not rows:
        return ['%s:1: no table of files: give it one with the heads "topic" and "files"' % page]
    found = ['%s:%d: `%s` is no file of this folder: correct the row' % (page, line, name)
             for line, names in rows for name in names if not any(_stands_for(name, file) for file in files)]
    named = {re.sub(r'\.(h|cpp)$', '', name) for _, names in rows for name in names}
    missing = {re.sub(r'\.(h|cpp)$', '', file) for file in files if file.endswith(_SOURCE)} - named
    return found + ['%s:%d: `%s` stands in no row: enter it where its topic is, or in a row of its own'
                    % (page, rows[-1][0], name) for name in sorted(missing)]


def _guide_rows(text):
    """(line, the last cell) of each row of the guide's table."""
    at = text.find(GUIDE_HEADING)
    start = text.count('\n', 0, max(at, 0)) + 1
    guide = next((table for table in tables(text) if at >= 0 and table[-1][0] > start), [])
    return [(line, cells[-1]) for line, cells in guide[1:]]


def _row_problems(cell, files, read):
    """What is wrong with one row of the guide."""
    named = []  # the files that the row's paths stand for
    folders = {os.path.dirname(file).split('/')[0] for file in files} - {''}
    marked = _MARKED.findall(cell)
    paths = [path for path in marked if _PATH.fullmatch(path) or path in folders]
    for path in paths:
        meant = [file for file in files if _stands_for(path, file) or file.startswith(path.rstrip('/') + '/')]
        named += meant
        if not meant:
            yield '`%s` is not there: name the place as it is called now' % path
    for name in (name for name in marked if name not in paths and _NAME.fullmatch(name)):
        words = [r'\b%s\b' % part for part in name.rstrip('()').split('::')]
        if not any(all(re.search(word, read(file)) for word in words) for file in named if file.endswith(_SOURCE)):
            yield '`%s` is in none of the files that its row names: correct the name or the file' % name


def guide_problems(text, files, read):
    """What is wrong with the guide, given the paths of all files and what reads one; one text each."""
    rows = _guide_rows(text)
    if not rows:
        return ['%s:1: no table under "%s"' % (GUIDE, GUIDE_HEADING)]
    return ['%s:%d: %s' % (GUIDE, line, problem) for line, cell in rows for problem in _row_problems(cell, files, read)]


def files_of(folder, files):
    """The files that a folder's README answers for, from there: those below it that no other README of FOLDERS does."""
    def owner(file):
        return max((name for name in FOLDERS if file.startswith(name + '/')), key=len, default=None)
    return [os.path.relpath(file, folder) for file in files if owner(file) == folder]


def main():
    files = tree.files()
    found = guide_problems(tree.read(GUIDE), files, tree.read)
    for folder in FOLDERS:
        page = folder + '/README.md'
        found += readme_problems(folder, tree.read(page) if page in files else '', files_of(folder, files))
    print('\n'.join(found) or 'pages: clean')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
