#!/usr/bin/env python3
"""docs/error-numbers.md is what the tables of error texts say: every number with its text, cause and remedy.

usage: error_numbers.py [--write]     checks the page, or writes it
"""
import os
import re
import sys

import tree

PAGE = 'docs/error-numbers.md'
TEXTS = 'base/error_texts.cpp'
HELP = 'base/error_help.tsv'
CODE = ('base/*.cpp', 'base/*.h', 'exec/*.cpp', 'exec/*.h', 'env/*.cpp', 'env/*.h', 'core/*.cpp', 'core/*.h')
UNUSED = '-'

HEAD = """# Error numbers

Every number that stands in a row of the log behind `Error No =`, or in the tables of the program. How to read a log is told in the
[operator's guide](operators-guide.md#reading-the-log). Each `%` stands for what the row names: a file, a key, a component.
Misspellings are those of the log. Conditions that do not hold (7000 to 7006) are told by their texts alone, as warnings. Other numbers are the system's own (5: access denied, 32: file in use, 112: disk full), or exit codes.

This page is written by `scripts/error-numbers`.

| number | text | cause | remedy |
|---|---|---|---|
"""


def texts(source):
    """{number: text} of the table of error texts."""
    table = re.search(r'ErrorText ErrorTexts\[\] = \{(.*?)\n\};', source, re.S)
    rows = re.findall(r'\{(\d+),\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\}', table.group(1)) if table else []
    return {int(number): ''.join(re.findall(r'"((?:[^"\\]|\\.)*)"', text)) for number, text in rows}


def helps(source):
    """[(number, text, cause, remedy)] of the table beside it; a line that is none is an error."""
    rows = []
    for line in source.split('\n'):
        if not line or line.startswith('#'):
            continue
        fields = line.split('\t')
        if len(fields) != 4 or not fields[0].isdigit() or not fields[2] or not fields[3]:
            raise ValueError('%s: "%s" is no row: number, text, cause, remedy' % (HELP, line))
        rows.append((int(fields[0]), *fields[1:]))
    return rows


def used(sources):
    """The numbers that code logs or raises; `sources` are the texts of all files but the table."""
    code = re.sub(r'//[^\n]*', '', '\n'.join(sources))
    calls = re.findall(r'\b(?:failure|error|warn|MakeError|Error|GetErrorText)\((\d{4})\b', code)
    constants = re.findall(r'constexpr int \w+ = ((?:20|6\d|70|80)\d\d);', code)
    handed = re.findall(r', ([67]\d{3})\)', code)  # require(fine, 6140)
    return {int(number) for number in calls + constants + handed}


def table_problems(known, rows, numbers):
    """What is wrong with the tables, given the texts, the rows beside them and the numbers in use."""
    listed = [row[0] for row in rows]
    own = {row[0] for row in rows if row[1]}
    found = ['%s: no table of error texts was found' % TEXTS] if not known else []
    found += ['%s: %d stands twice' % (HELP, number) for number in sorted(set(listed)) if listed.count(number) > 1]
    found += ['%s: the rows are not in the order of their numbers' % HELP] if listed != sorted(listed) else []
    found += ['%s: no row for %d: say cause and remedy' % (HELP, n) for n in sorted((set(known) | numbers) - set(listed))]
    found += ['%s: %d has no text, here or in %s' % (HELP, n, TEXTS) for n in listed if n not in known and n not in own]
    found += ['%s: %d has its text in %s' % (HELP, n, TEXTS) for n in sorted(own & set(known))]
    for number, _, cause, _ in rows:
        if (cause == UNUSED) == (number in numbers):
            found.append('%s: %d is %s: correct its cause and remedy' % (
                HELP, number, 'logged by the program' if number in numbers else 'logged by nothing'))
    return found


def _row(number, text, cause, remedy):
    shown = '*%s*' % text if number == 2000 else '`%s`' % text
    if cause == UNUSED:
        cause, remedy = 'No procedure of this version logs it.', ''
    return '| %d | %s | %s | %s |' % (number, shown, cause, remedy)


def page(known, rows):
    return HEAD + '\n'.join(_row(n, known.get(n, text), cause, remedy) for n, text, cause, remedy in rows) + '\n'


def main():
    known, rows = texts(tree.read(TEXTS)), helps(tree.read(HELP))
    found = table_problems(known, rows, used([tree.read(path) for path in tree.files(*CODE) if path != TEXTS]))
    wanted = page(known, rows)
    path = os.path.join(tree.ROOT, PAGE)
    if sys.argv[1:] == ['--write'] and not found:
        with open(path, 'w', encoding='utf-8') as file:
            file.write(wanted)
    elif not os.path.exists(path) or tree.read(PAGE) != wanted:
        found.append('%s: not what the tables say: run scripts/error-numbers' % PAGE)
    print('\n'.join(found) or 'error numbers: clean')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
