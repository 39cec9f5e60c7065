"""What both the real program and its rehearsal tell of a run: the story.

It is the exit code, each component's outcome, the commands that were started, the registry record and the rows of the log.
"""
import os
import re
from collections import namedtuple

from kind import OUT, PROGRAM
from machine import INSTALLATION
from registry_file import Registry
from run_log import outcomes, read_log, removals

TRACE = '-all,trace+process'  # what Wine is to tell of a run whose commands are compared
STATES = os.path.join(OUT, 'endtoend', 'rehearsals')
UNINSTALL = 'Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall'

Story = namedtuple('Story', 'code outcomes commands record rows')

# What a rehearsal calls what the reader of the log calls otherwise.
_OUTCOMES = {'installed': ('ok', 'ok, warning'), 'already installed': ('already there',), 'copied': ('ok',),
             'held back': ('held back',), 'failed': ('FAILED', 'ABORTED'), 'not reached': ('not reached',)}
_REMOVALS = {'removed': ('removed',), 'kept': ('kept', 'left out', 'no command'), 'already gone': ('not there',),
             'failed': ('FAILED',), 'not reached': ()}
_ITSELF = re.compile(r'"?[A-Z]:\\[^"]*%s"?(\s|$)' % re.escape(PROGRAM), re.I)
_STARTING = re.compile(r'(\w+):trace:process:CreateProcessInternalW app .*? cmdline L"(.*)"$')
_OF_WINE = re.compile(r'(\w+):trace:process:NtCreateUserProcess L".*?" (?:image L"C:\\\\windows\\\\system32\\\\(?!winemenubuilder)(\w+\.exe)"|pid )')
_STARTED = re.compile(r'(\w+):trace:process:CreateProcessInternalW started process pid \w+ tid (\w+)$')


def trace(name):
    """The file, open, that takes what Wine tells of the run of that name."""
    os.makedirs(STATES, exist_ok=True)
    return open(os.path.join(STATES, name + '.trace'), 'wb')


def refused_by_wine(names):
    """Wine's own programs that Wine began to start in these runs and did not, which happens when the machine is busy."""
    refused = []
    for name in names:
        with open(os.path.join(STATES, name + '.trace'), encoding='latin-1') as text:
            found = [match.groups() for match in map(_OF_WINE.match, text) if match]
        beginning = {}
        for thread, program in found:
            refused += [beginning.pop(thread)] if beginning.get(thread) and program else []
            beginning[thread] = program
        refused += filter(None, beginning.values())
    return refused


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
            own |= {match.group(2)} if _ITSELF.match(command) else set()
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
    rows = read_log(log) if log else []
    return Story(code, _fared(registries[0], rows, product, uninstalled), commands, _record(registries, product), rows)


def rehearsed_story(result, state, product, uninstalled=False):
    """The same of a rehearsal. What it says of each component must be what its log says."""
    registry = Registry.of_export(os.path.join(state, 'registry.reg'))
    rows = read_log(result['log']) if result['log'] else []
    fared = _fared(registry, rows, product, uninstalled)
    words = _REMOVALS if uninstalled else _OUTCOMES
    told = {component['name']: component['outcome'] for component in result['components']}
    for component, verdict in fared:
        if verdict not in words[told[component]]:
            raise AssertionError('%s is "%s" to the rehearsal, but "%s" by its log' % (component, told[component], verdict))
    return Story(result['exitCode'], fared, result['commands'], _record([registry], product), rows)
