"""What the end-to-end tests share: a screen, fresh machines, and small products made of inline ini text."""
import atexit
import glob
import os
import shutil
import subprocess
import sys
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, '..', '..', 'scripts', 'wine'))

from kind import OUT, PROGRAM, WINE64  # noqa: E402
from machine import INSTALLATION, PRODUCTS, Machine, Screen, ensure_prototype  # noqa: E402
from run_log import read_log  # noqa: E402

import rehearsal  # noqa: E402
from differences import check_all_held  # noqa: E402
from story import TRACE, refused_by_wine  # noqa: E402

EXECUTABLE = WINE64.program
PACKAGES = os.path.join(WINE64.samples, 'harbour_suite', 'disc', 'Packages')
SHOTS = os.path.join(OUT, 'shots')
INI = 'C:\\Media\\app.ini'
STARTUP = 'AppData/Roaming/Microsoft/Windows/Start Menu/Programs/StartUp'
LOG_ROOT = 'C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant'
APPLICATION = '''[Product]
Name=%s
Version=1.0
PackageRoot=C:\\Media
ProductIni=PATH(product.ini)
AbortOnFail=false
ForceUninstallReboot=False
CopyOpRoot=N/A
CopyOpHold=N/A
[Config]
Verbose=true
Silent=false
RequestLogonDetails=false
'''
COMPONENT = '[%s]\nInstall=%s\nCommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n'

_tools = {}


def screen():
    """The one screen of this test run, started when it is first wanted."""
    if 'screen' not in _tools:
        _tools['screen'] = Screen().__enter__()
        atexit.register(_tools['screen'].__exit__)
        ensure_prototype()
    return _tools['screen']


def tool(name):
    """The executable of a helper program of tools/, compiled once a run."""
    if name not in _tools:
        file = os.path.join(OUT, 'endtoend', 'tools', name + '.exe')
        os.makedirs(os.path.dirname(file), exist_ok=True)
        own = '%s.%d' % (file, os.getpid())  # other test processes compile and use it at the same time
        subprocess.run(['x86_64-w64-mingw32-gcc', '-O1', '-mwindows', '-o', own,
                        os.path.join(HERE, 'tools', name + '.c')], check=True)
        os.replace(own, file)
        _tools[name] = file
    return _tools[name]


def batch(lines):
    return '\r\n'.join(['@echo off', *lines, ''])


def short_name(test):
    """By which the comparisons know a test: its class, and its name without the word `test`."""
    return '.'.join(test.id().split('.')[-2:]).replace('.test_', '.')


class WineTest(unittest.TestCase):
    """Tests that share one running machine, wiped before each of them, with the program in C:\\QX.

    Every run of the program is held against its rehearsal, see rehearsal.py.
    """

    system = 'Windows 2003'

    @classmethod
    def setUpClass(cls):
        screen()
        cls.machine = Machine(os.path.join(OUT, 'endtoend', 'machines', cls.__qualname__))
        cls.addClassCleanup(cls.machine.stop)
        cls.prepare()
        cls.machine.keep_awake(tool('keeper'))

    @classmethod
    def prepare(cls):
        """What a class does to its machine before that runs."""

    def setUp(self):
        self.comparisons = []
        self.wipe()

    def wipe(self):
        """Makes the machine one without the program's traces, with the program in its place."""
        drive = self.machine.host('C:')
        for name in os.listdir(drive):
            if name.endswith('.txt'):
                os.remove(os.path.join(drive, name))
        for script in glob.glob(os.path.join(drive, 'users', '*', STARTUP, '*.vbs')):  # of a run that asked for a restart
            os.remove(script)
        for folder in ('C:\\QX', 'C:\\Media', LOG_ROOT):
            shutil.rmtree(self.machine.host(folder), ignore_errors=True)
        self.machine.forget('Software\\Tarvel')
        self.put('C:\\QX\\' + PROGRAM, EXECUTABLE)

    def tearDown(self):
        for program in refused_by_wine(name for made in self.comparisons for name in made.traces):
            print('Wine did not start its own', program)  # for which a class that failed is run again
        check_all_held(short_name(self), self.comparisons)

    def put(self, path, source):
        """Copies a host file to a Windows path."""
        target = self.machine.host(path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copy(source, target)

    def write(self, path, text):
        target = self.machine.host(path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, 'w', newline='\r\n', encoding='latin-1') as file:
            file.write(text)

    def read(self, path):
        with open(self.machine.host(path), newline='', encoding='latin-1') as file:
            return file.read()

    def exists(self, path):
        return os.path.exists(self.machine.host(path))

    def product(self, name, components, application=None):
        """Makes a product below C:\\Media. Each component: name -> (file to run, its text or None, further ini lines).

        A text makes the file; with None it is left to the test. The batch file of most tests is `run.bat`.
        """
        self.write(INI, application or APPLICATION % name)
        self.write('C:\\Media\\product.ini', '[Product]\nName=%s\n[General]\nVersion=1.0\n[Actions]\n%s' % (
            name, ''.join('%s=%s\\c.ini\n' % (component, component) for component in components)))
        for component, (install, text, extra) in components.items():
            folder = 'C:\\Media\\%s\\' % component
            self.write(folder + 'c.ini', COMPONENT % (component, install) + extra)
            if text is not None:
                self.write(folder + install, text)

    def comparison(self, arguments, declared='', **how):
        """Of a run that is about to begin. `declared` is what a rehearsal must be told of it, in the form of a machine file."""
        name = ', '.join([short_name(self), *([str(len(self.comparisons) + 1)] if self.comparisons else [])])
        made = rehearsal.Comparison(self.machine, name, arguments, declared, **{'system': self.system, **how})
        self.comparisons.append(made)
        return made

    def start_program(self, arguments, declared='', finished=True):
        """Starts the program. When its end is seen, what it did must be what its rehearsal does, of which a restart is the end
        when it is not to finish; with None, the test itself holds the comparison."""
        made = self.comparison(arguments, declared)
        with made.trace() as output:
            process = self.machine.start(rehearsal.ASSISTANT, *arguments.split(), output=output, debug=TRACE)
        return rehearsal.ComparedRun(process, made, finished)

    def run_program(self, arguments='/s /is=' + INI, timeout=60, declared='', finished=True):
        """Runs the program to its end and gives its exit code."""
        run = self.start_program(arguments, declared, finished)
        try:
            return run.wait(timeout)
        except subprocess.TimeoutExpired:
            self.machine.stop()
            raise

    def wait_for(self, path, seconds=30, text=''):
        """Waits until the file is there and holds the text."""
        deadline = time.time() + seconds
        while not self.exists(path) or text not in self.read(path):
            if time.time() > deadline:
                self.fail('%s did not appear%s\n%s' % (path, text and ', or not with: ' + text, self.evidence()))
            time.sleep(0.05)

    def evidence(self):
        """What the machine shows of a run that did not come as far as it should: processes, ends of logs, a picture."""
        name = self.id().rsplit('.', 1)[-1]
        screen().picture(os.path.join(SHOTS, 'missed-%s.png' % name))
        processes = subprocess.run(['ps', '-eo', 'etimes,stat,args'], capture_output=True, text=True).stdout
        parts = [line for line in processes.splitlines() if '.exe' in line or '.vbs' in line]
        for folder, _, files in os.walk(self.machine.host(LOG_ROOT)):
            for file in files:
                if file.endswith('.html'):
                    parts += [file] + ['  ' + row.text for row in read_log(os.path.join(folder, file))[-8:]]
        return '\n'.join(parts)

    @staticmethod
    def log_file(product):
        return '%s\\%s\\QX Installation Assistant.html' % (LOG_ROOT, product)

    def log(self, product):
        """The rows of a product's log; reading them shows that every line of it is whole."""
        return read_log(self.machine.host(self.log_file(product)))

    def default_log(self):
        return read_log(self.machine.host('C:\\QX\\QX Installation Assistant.html'))

    def record(self, product, component=''):
        """The values of a product's key, or of a component's."""
        key = '\\'.join(filter(None, (PRODUCTS, product, component)))
        return self.machine.exported(key).values(key)

    def preset(self, key, name, text):
        """Writes a text below HKEY_LOCAL_MACHINE, as a site or an earlier program would have."""
        self.assertEqual(self.machine.run('reg', 'add', 'HKLM\\' + key, '/v', name, '/d', text, '/f'), 0)

    def assertLogged(self, rows, text, kind=None):
        found = [row for row in rows if text in row.text and kind in (None, row.type)]
        self.assertTrue(found, 'not in the log as %s: %s\n%s' % (kind or 'any type', text, '\n'.join(
            '%s: %s' % (row.type, row.text) for row in rows)))

    def assertNotLogged(self, rows, text):
        self.assertEqual([row.text for row in rows if text in row.text], [])
