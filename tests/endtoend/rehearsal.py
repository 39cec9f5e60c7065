"""Rehearsals of media by the Linux command, held against what the real program did on the same media under Wine.

A story is what both tell: exit code, each component's outcome, the commands that were started, the registry record and the
rows of the log. Times and what bears them are left aside; every other difference is a row of DIFFERENCES or a failure.
"""
import difflib
import json
import os
import re
import shutil
import subprocess
from collections import namedtuple

from support import OUT, PROGRAM, read_log

from machine import INSTALLATION
from registry_file import Registry
from run_log import outcomes, removals

TRACE = '-all,trace+process'  # what Wine is to tell of a run whose commands are compared
QXIA = os.path.join(OUT, 'native', 'qxia')
STATES = os.path.join(OUT, 'endtoend', 'rehearsals')
UNINSTALL = 'Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall'

Story = namedtuple('Story', 'code outcomes commands record rows')
Difference = namedtuple('Difference', 'part pattern shown products reason')

# Times, and the numbers and names that are made of them.
TIMES = (
    (r'\d\d[-/]([A-Z][a-z][a-z]|\d\d)[-/](\d{4}|\d\d)\b', 'DATE'),
    (r'\b\d\d?:\d\d(:\d\d)?(\.\d+)?\b', 'TIME'),
    (r'(?<=QX Installation Assistant)\d{10}(?=\.html)', 'STAMP'),
)

EVERY = '*'
TYPICAL = 'each_way_a_component_can_end'
# Where the machines differ, not the program. `part` is the part of the story, `pattern` what is taken out of its lines (those
# of both sides) and `shown` what stands for it, None for the whole line. A row must explain something in each product that it
# names, and one for every product in TYPICAL.
_LETTER_CASE = 'Wine writes the name of the Windows folder in its own letter case'
DIFFERENCES = (
    Difference('rows', r'Drive C has [\d,]+ Mb free', 'Drive C has so much free', (EVERY,), 'each machine has its own drives'),
    Difference('record', r'C:\\windows', 'C:\\WINDOWS', (EVERY,), _LETTER_CASE),
    Difference('rows', r'C:\\windows', 'C:\\WINDOWS', ('sample, uninstalled', 'recipes, uninstalled', 'uninstall, again', 'discs'),
               _LETTER_CASE),
    Difference('commands', r'C:\\windows', 'C:\\WINDOWS', ('uninstall, again', 'discs'), _LETTER_CASE),
    Difference('rows', r'Available space=\d+', 'Available space', ('sample',), 'each machine has its own drives'),
    Difference('rows', r'^Warning: Component Signals runs from .*, a folder that ordinary users can write to', None, ('sample',),
               'the drives of the sample machine are open to everybody, those of Wine to whoever runs it'),
    Difference('commands', r'wineboot\.exe --kill', None, ('restart', 'recipes'),
               'Wine restarts the machine by a program of its own'),
    Difference('record', r'computer name = .*', 'computer name', ('sample', 'sample, uninstalled', 'discs'),
               'the sample machine has a name of its own'),
)

# What a rehearsal calls what the reader of the log calls otherwise.
_OUTCOMES = {'installed': ('ok', 'ok, warning'), 'already installed': ('already there',), 'copied': ('ok',),
             'held back': ('held back',), 'failed': ('FAILED', 'ABORTED'), 'not reached': ('not reached',)}
_REMOVALS = {'removed': ('removed',), 'kept': ('kept', 'left out', 'no command'), 'already gone': ('not there',),
             'failed': ('FAILED',), 'not reached': ()}
_STARTING = re.compile(r'(\w+):trace:process:CreateProcessInternalW app .*? cmdline L"(.*)"$')
_STARTED = re.compile(r'(\w+):trace:process:CreateProcessInternalW started process pid \w+ tid (\w+)$')


def rehearse(name, media, *options, again=False):
    """Rehearses media on a machine of that name, which is new unless it is gone on with: (the result, the machine's folder)."""
    state = os.path.join(STATES, name)
    if not again:
        shutil.rmtree(state, ignore_errors=True)
    os.makedirs(STATES, exist_ok=True)
    run = subprocess.run([QXIA, 'rehearse', *media, '--state', state, '--json', *options], capture_output=True, text=True)
    if not run.stdout:
        raise AssertionError('%s cannot be rehearsed: %s' % (name, run.stderr))
    result = json.loads(run.stdout)
    if not result['finished'] or result['looseEnds']:
        raise AssertionError('%s is not finished, or has loose ends: %s' % (name, result['looseEnds']))
    return result, state


def trace(name):
    """The file, open, that takes what Wine tells of the run of that name."""
    os.makedirs(STATES, exist_ok=True)
    return open(os.path.join(STATES, name + '.trace'), 'wb')


def traced_commands(name, by_logon=False):
    """The commands that the program itself started, told by Wine's trace of processes: by the process that was traced, unless
    that is a logon, and by each copy of the program that was started on the way."""
    with open(os.path.join(STATES, name + '.trace'), encoding='latin-1') as text:
        lines = text.read().splitlines()
    own = set() if by_logon or not lines else {lines[0].partition(':')[0]}
    commands, starting = [], {}
    for line in lines:
        if match := _STARTING.match(line):
            starting[match.group(1)] = re.sub(r'\\(.)', r'\1', match.group(2))
        elif match := _STARTED.match(line):
            command = starting.pop(match.group(1), '')
            commands += [command] if match.group(1) in own else []
            own |= {match.group(2)} if PROGRAM in command else set()
    return commands


def _record(registries, product):
    """All values below the program's key, and those of the product in the list of programs, as lines."""
    lines = []
    for registry in registries:
        for key in INSTALLATION.lower() + '\\', (UNINSTALL + '\\' + product).lower() + '\\':
            below = [name for name in registry.keys() if (name.lower() + '\\').startswith(key)]
            lines += ['%s | %s = %s' % (name.lower(), value.lower(), data) for name in below
                      for value, data in registry.values(name).items()]
    return sorted(set(lines))


def _fared(registry, rows, product, uninstalled):
    if uninstalled:
        return [row[:2] for row in removals(rows)]
    return [(row.component, row.verdict) for row in outcomes(registry, rows, product)]


def real_story(log, registries, product, code, commands, uninstalled=False):
    """What the real program left: its log, and what the registry holds of it."""
    rows = read_log(log)
    return Story(code, _fared(registries[0], rows, product, uninstalled), commands, _record(registries, product), rows)


def exported(machine, product):
    """What the registry of a machine that runs holds of the program."""
    return [machine.exported(INSTALLATION), machine.exported(UNINSTALL + '\\' + product)]


def rehearsed_story(result, state, product, uninstalled=False):
    """The same of a rehearsal. What it says of each component must be what its log says."""
    registry = Registry.of_export(os.path.join(state, 'registry.reg'))
    rows = read_log(result['log'])
    fared = _fared(registry, rows, product, uninstalled)
    words = _REMOVALS if uninstalled else _OUTCOMES
    told = {component['name']: component['outcome'] for component in result['components']}
    for component, verdict in fared:
        if verdict not in words[told[component]]:
            raise AssertionError('%s is "%s" to the rehearsal, but "%s" by its log' % (component, told[component], verdict))
    return Story(result['exitCode'], fared, result['commands'], _record([registry], product), rows)


def _lines(part, value):
    if part == 'rows':
        return ['%s: %s' % (row.type, row.text) for row in value]
    return [value if isinstance(value, str) else str(value) for value in (value if isinstance(value, list) else [value])]


def _without_times(line):
    for pattern, shown in TIMES:
        line = re.sub(pattern, shown, line)
    return line


def _explain(difference, lines):
    """The lines without what the difference explains, and that itself."""
    found = [match.group() for line in lines for match in re.finditer(difference.pattern, line, re.I)]
    if difference.shown is None:
        return [line for line in lines if not re.search(difference.pattern, line, re.I)], found
    return [re.sub(difference.pattern, lambda _: difference.shown, line, flags=re.I) for line in lines], found


def hold_together(name, real, rehearsed):
    """Fails where something differs beyond what is listed, or a listed row explains nothing."""
    if told := differences(name, real, rehearsed):
        raise AssertionError('\n'.join(told))


def differences(name, one, other, table=DIFFERENCES, names=('real', 'rehearsed')):
    """What differs between two stories beyond what the table lists, and what it lists and does not differ; as lines."""
    told = []
    for part in Story._fields:
        sides = [[_without_times(line) for line in _lines(part, getattr(story, part))] for story in (one, other)]
        for difference in table:
            if difference.part != part or not {name, EVERY} & set(difference.products):
                continue
            (sides[0], ours), (sides[1], theirs) = (_explain(difference, lines) for lines in sides)
            if ours == theirs and (EVERY not in difference.products or name == TYPICAL):
                told.append('%s: nothing differs any more by "%s" (%s)' % (name, difference.pattern, difference.reason))
        told += ['%s, %s: %s' % (name, part, line) for line in difflib.unified_diff(*sides, *names, '', '', 0, '')]
    return told
