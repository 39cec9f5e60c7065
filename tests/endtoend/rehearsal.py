"""Rehearsals of media by the Linux command, held against what the real program did on the same media under Wine."""
import json
import os
import re
import shutil
import socket
import subprocess

from differences import hold_together
from kind import OUT, PROGRAM
from machine import INSTALLATION
from story import STATES, UNINSTALL, real_story, rehearsed_story, trace, traced_commands

QXIA = os.path.join(OUT, 'native', 'qxia')
WINLOGON = 'Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
ASSISTANT = 'C:\\QX\\' + PROGRAM
ANOTHER_COPY = 3  # the exit code of the only run that writes no log
SYSTEM_FOLDERS = 'windows', 'users', 'programdata'
COMPUTER = socket.gethostname().upper()[:15]
USER = os.environ.get('USER', 'root')
STARTUP = 'users', USER, 'Start Menu', 'Programs', 'Startup'
# What is the same for every machine under Wine: its name and user; who may write where; the folder of the logon.
FACTS = '''[machine]
system=%s
computer=%s
user=USER
domain=%s
[access C:\\]
Administrators=full
Users=read
[environment]
UserProfile=PROFILE
'''.replace('PROFILE', 'C:\\users\\USER').replace('USER', USER)


def rehearse(name, media, *options, again=False, finished=True, excused=()):
    """Rehearses media on a machine of that name, which is new unless it is gone on with: (the result, the machine's folder)."""
    state = os.path.join(STATES, name)
    if not again:
        shutil.rmtree(state, ignore_errors=True)
    os.makedirs(STATES, exist_ok=True)
    run = subprocess.run([QXIA, 'rehearse', *media, '--state', state, '--json', *options], capture_output=True, text=True)
    if not run.stdout:
        raise AssertionError('%s cannot be rehearsed: %s' % (name, run.stderr))
    result = json.loads(run.stdout)
    loose = [end for end in result['looseEnds'] if not end.startswith(excused)]
    if result['finished'] != finished or loose:
        raise AssertionError('%s is%s finished, or has loose ends: %s' % (name, '' if result['finished'] else ' not', loose))
    return result, state


class Comparison:
    """A run of the real program, to be held against a rehearsal of the same media on a machine that begins alike.

    It is made before the program starts. The machine of the rehearsal has the real one's files and records; its file is what
    `qxia machine` prints for the media, with what their scripts say they do, and with `declared` in the place of the
    declarations of the same names.
    """

    def __init__(self, machine, name, arguments, declared='', system='Windows 2003', program=ASSISTANT, media=None,
                 at='C:\\Media', options=(), product=None):
        self.machine, self.name, self.arguments, self.declared, self.held = machine, name, arguments, declared, False
        self._facts = FACTS % (system, COMPUTER, COMPUTER)
        if program:  # else the one on the disc
            self._facts += '[machine]\nprogram=%s\n' % program
        self._options = ['--args', arguments, *(['--at', at] if at else []), *options]
        self._state = os.path.join(STATES, name)
        self.traces = []  # the names of them
        self._media = media or [self._copied_media()]
        self._product = product or self._find_product()
        self._begin_alike()

    def _copied_media(self):
        """The medium as it is now; without one, the smallest that there is."""
        copy, medium = self._state + '.media', self.machine.host('C:\\Media')
        shutil.rmtree(copy, ignore_errors=True)
        if os.path.exists(os.path.join(medium, 'app.ini')):
            shutil.copytree(medium, copy)
            self._options += ['--ini', 'app.ini']
        else:
            os.makedirs(copy)
            with open(os.path.join(copy, 'app.ini'), 'w') as file:
                file.write('[Product]\nPackageRoot=C:\\Media\n')
        return copy

    def _find_product(self):
        removed = re.search(r' /x (.*?)( /|$)', self.arguments)
        if removed:
            return removed.group(1)
        with open(os.path.join(self._media[0], 'app.ini'), encoding='latin-1') as ini:
            name = re.search(r'^Name=(.*)', ini.read(), re.M)
        return name.group(1).strip() if name else ''

    def _begin_alike(self):
        shutil.rmtree(self._state, ignore_errors=True)
        self._copy_files(os.path.join(self._state, 'drive_c'))
        self._copy_records()
        with open(os.path.join(self._state, 'qxia-state'), 'w') as file:
            file.write('format 1\n')

    def _copy_files(self, drive):
        """All but the system's own, and what the logon starts."""
        real = self.machine.host('C:')
        for folder, folders, files in os.walk(real):
            place = os.path.join(drive, os.path.relpath(folder, real))
            if folder == real:
                folders[:] = [name for name in folders if name.lower() not in SYSTEM_FOLDERS]
            os.makedirs(place, exist_ok=True)
            for name in files:
                if not name.lower().endswith('.exe'):
                    shutil.copyfile(os.path.join(folder, name), os.path.join(place, name))
                else:  # a rehearsal needs no more of it than that it is there
                    with open(os.path.join(place, name), 'w') as file:
                        file.write('A program.\r\n')
        shutil.copytree(self.machine.host('C:\\' + '\\'.join(STARTUP)), os.path.join(drive, *STARTUP))

    def _copy_records(self):
        """The registry as far as the program reads it; packages are declared, which puts them into it."""
        registry = self.machine.exported(INSTALLATION, UNINSTALL, WINLOGON)
        codes = [key for key in registry.children(UNINSTALL) if key.startswith('{')]
        packages = [(UNINSTALL + '\\' + code).lower() for code in codes]
        with open(os.path.join(self._state, 'registry.reg'), 'w', encoding='latin-1', newline='\r\n') as file:
            file.write(registry.text(lambda key: key.lower() in packages))
        for code in codes:
            values = registry.values(UNINSTALL + '\\' + code)
            self._facts += '[product %s]\nname=%s\nversion=%s\n' % (
                code, values.get('DisplayName', ''), values.get('DisplayVersion', ''))

    def trace(self):
        """The file, open, that takes what Wine tells of the run, or of its part behind the next logon."""
        self.traces.append('%s.%d' % (self.name, len(self.traces) + 1))
        return trace(self.traces[-1])

    def _machine_file(self):
        printed = subprocess.run([QXIA, 'machine', *self._media, *self._options_of('--at', '--ini', '--label')],
                                 capture_output=True, text=True, encoding='latin-1')
        if printed.returncode:
            raise AssertionError('%s: no machine file: %s' % (self.name, printed.stderr))
        # A run that goes on behind another one has no use for all that is declared for its media.
        self._unused = tuple('declared and never used: ' + header.strip('[]') for header, _ in _sections(printed.stdout)
                             if header not in self.declared)
        wanted = {header.lower() for header, _ in _sections(self.declared)}
        text = ''.join(self._with_what_it_says(*section) for section in _sections(printed.stdout)
                       if section[0].lower() not in wanted and section[0] != '[machine]')
        file = self._state + '.txt'
        with open(file, 'w', encoding='latin-1') as output:
            output.write(self._facts + text + self.declared)
        return file

    def _options_of(self, *names):
        pairs = zip(self._options[::2], self._options[1::2])
        return [word for pair in pairs if pair[0] in names for word in pair]

    def _with_what_it_says(self, header, lines):
        """A declaration of a script on the media: its exit code and registry values, as its text has them. One with conditions
        is left as it is."""
        match = re.match(r'\[program .*?C:\\Media\\(.*?\.(?:bat|vbs))\b', header, re.I)
        file = match and os.path.join(self._media[0], *match.group(1).split('\\'))
        if not file or not os.path.exists(file):
            return header + '\n' + lines
        with open(file, encoding='latin-1') as script:
            text = script.read()
        if re.search(r'^\s*If\b', text, re.M | re.I):
            return header + '\n' + lines
        codes = re.findall(r'^(?:exit /b|WScript\.Quit) (-?\d+)', text, re.M | re.I)
        for key, data in re.findall(r'RegWrite "(HKLM\\[^"]*)", "([^"]*)"', text):
            lines += 'set=%s=%s\n' % (key, data)
        return header + '\n' + (lines.replace('exit=0', 'exit=' + codes[-1]) if codes else lines)

    def _commands(self, by_logon):
        return [command for number, name in enumerate(self.traces)
                for command in traced_commands(name, by_logon or number > 0)]

    def hold(self, code, finished=True, by_logon=False):
        """Fails where the run, which has ended with this code, and its rehearsal tell different stories. Not finished is a
        rehearsal that ends where the machine restarts. `by_logon`: the program was started by another one, which was traced."""
        self.held = True
        uninstalled = bool(re.search(r'(^| )/x ', self.arguments))
        limits = [] if finished else ['--limit-restarts', '0']
        machine_file = self._machine_file()
        result, state = rehearse(self.name, self._media, '--machine', machine_file, *self._options, *limits, again=True,
                                 finished=finished, excused=self._unused)
        if not result['log'] and code != ANOTHER_COPY:
            raise AssertionError('%s: the rehearsal has no log' % self.name)
        registry = self.machine.exported(INSTALLATION, UNINSTALL + '\\' + self._product)
        log = result['log'] and self.machine.host(
            'C:\\' + os.path.relpath(result['log'], os.path.join(state, 'drive_c')).replace('/', '\\'))
        real = real_story(log, [registry], self._product, code, self._commands(by_logon), uninstalled)
        hold_together(self.name, real, rehearsed_story(result, state, self._product, uninstalled))


class ComparedRun:
    """A program that was started; what it did is held against its rehearsal as soon as its end is seen."""

    def __init__(self, process, comparison, finished):
        self.process, self.comparison, self.kill, self._finished = process, comparison, process.kill, finished

    def wait(self, timeout):
        code = self.process.wait(timeout)
        if not self.comparison.held and self._finished is not None:
            self.comparison.hold(code, self._finished)
        return code

    def poll(self):
        return self.process.poll()


def _sections(text):
    """(header, lines) of the sections of a machine file; comments stay with the section above them."""
    return re.findall(r'^(\[[^\n]*\])\n(.*?)(?=^\[|\Z)', text, re.M | re.S)


