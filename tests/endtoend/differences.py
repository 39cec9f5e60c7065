"""Holds the stories of both sides together. Times, and what bears them, are left aside; every other difference is a row of
DIFFERENCES or a failure."""
import difflib
import fnmatch
import re
from collections import namedtuple

from story import Story

Difference = namedtuple('Difference', 'part pattern shown tests reason')

# Times, and the numbers and names that are made of them.
TIMES = (
    (r'\d\d[-/]([A-Z][a-z][a-z]|\d\d)[-/](\d{4}|\d\d)\b', 'DATE'),
    (r'\b\d\d?:\d\d(:\d\d)?(\.\d+)?\b', 'TIME'),
    (r'(?<=QX Installation Assistant)\d{10}(?=\.html)', 'STAMP'),
)

EVERY = '*'
TYPICAL = 'Outcomes.each_way_a_component_can_end'
_WINDOWS_FOLDER = 'Wine has the Windows folder of the newer systems, its name in lower case'
_DRIVES = 'each machine has its own drives'
_SAMPLE_MACHINE = 'SampleProduct.a_rehearsal_tells_the_same_story', 'SampleProduct.uninstalled_it_leaves_what_others_use'
_SCHEDULED = 'WholeProduct.the_last_*', 'Interrupted.*', 'TwoDiscs.*'  # cmd.exe, by its full path
_KILLED = 'the program is killed in the middle, which is no story that ends'
# Where the machines differ, not the program. `part` is the part of the story, `pattern` what is taken out of its lines (those
# of both sides), `shown` what stands for it, None for the whole line, and `tests` the names of tests, with * for any part of
# one: in each of them a row must explain something, but for EVERY test, where it need do so in the TYPICAL one. The part "run"
# tells why a test's run is held against no rehearsal.
DIFFERENCES = (
    Difference('rows', r'Drive C has [\d,]+ Mb free', 'Drive C has so much free', (EVERY,), _DRIVES),
    Difference('record', r'C:\\Win(dows|nt35|nt)\b', 'C:\\WINDOWS', (EVERY,), _WINDOWS_FOLDER),
    Difference('rows', r'C:\\windows', 'C:\\WINDOWS', (_SAMPLE_MACHINE[1], 'RecipesInstalled.*', *_SCHEDULED),
               _WINDOWS_FOLDER),
    Difference('commands', r'C:\\windows', 'C:\\WINDOWS', _SCHEDULED, _WINDOWS_FOLDER),
    Difference('record', r'(?<=C:\\WINDOWS)\\system(32)?$', '\\System', ('Systems.*',), _WINDOWS_FOLDER),
    Difference('rows', r'Available space=\d+', 'Available space',
               (_SAMPLE_MACHINE[0], 'Preparation.drive_that_is_too_small_fails_the_component_alone'), _DRIVES),
    Difference('rows', r'^Warning: Component Signals runs from .*, a folder that ordinary users can write to', None,
               _SAMPLE_MACHINE[:1], 'the drives of the sample machine are open to everybody, those of Wine to whoever runs it'),
    Difference('commands', r'wineboot\.exe --kill', None, ('Restarts.*', 'Silent.*', 'Interactive.*', 'Rollout.restart_*',
                                                       'Systems.each_system_goes_*', 'RecipesInstalled.*'),
               'Wine restarts the machine by a program of its own'),
    Difference('rows', r'^Warning: Error (2|1619) returned wilst running msiexec /x <ERROR>', 'Warning: Error', ('Forced.*',),
               'where a package cannot be opened, the Windows Installer ends with 1619, and that of Wine with 2'),
    Difference('commands', r'^"C:\\viewer\.exe" ', None, ('Window.a_run_from_the_welcome_to_the_end_and_its_log',),
               'the program that shows a log is the machine\'s, and a rehearsal needs none'),
    Difference('record', r'computer name = .*', 'computer name', _SAMPLE_MACHINE,
               'the sample machine has a name of its own'),
    Difference('run', None, None, ('Pace.log_is_complete_while_a_component_runs',
                                   'Interrupted.after_a_kill_the_next_uninstall_finishes'), _KILLED),
    Difference('run', None, None, ('RecipesUninstallers.*',),
               'what is removed goes on behind the run, as programs do that return at once; those of a rehearsal do not'),
)

_explained = set()  # (test, row)


def _rows(test, part, table=DIFFERENCES):
    """The rows that are about a part of a test's story."""
    return [row for row in table if row.part == part and any(fnmatch.fnmatchcase(test, name) for name in row.tests)]


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


def differences(name, one, other, table=DIFFERENCES, names=('real', 'rehearsed')):
    """What differs between two stories beyond what the table lists, as lines. The name is that of the test, and a number behind
    a comma."""
    test, told = name.partition(',')[0], []
    for part in Story._fields:
        sides = [[_without_times(line) for line in _lines(part, getattr(story, part))] for story in (one, other)]
        for row in _rows(test, part, table):
            (sides[0], ours), (sides[1], theirs) = (_explain(row, lines) for lines in sides)
            if ours != theirs:
                _explained.add((test, row))
        told += ['%s, %s: %s' % (name, part, line) for line in difflib.unified_diff(*sides, *names, '', '', 0, '')]
    return told


def hold_together(name, real, rehearsed):
    """Fails where something differs beyond what is listed."""
    if told := differences(name, real, rehearsed):
        raise AssertionError('\n'.join(told))


def check_all_held(test, comparisons):
    """Fails where a run of a test is held against no rehearsal and no row says why, or where a row explains nothing in it."""
    left = [comparison.name for comparison in comparisons if not comparison.held]
    _explained.update((test, row) for row in _rows(test, 'run') if left)
    if left and not _rows(test, 'run'):
        raise AssertionError('held against no rehearsal: %s' % ', '.join(left))
    for row in (row for part in (*Story._fields, 'run') for row in _rows(test, part)):
        if (test, row) not in _explained and (EVERY not in row.tests or test == TYPICAL):
            raise AssertionError('nothing differs any more by "%s" (%s)' % (row.pattern, row.reason))
