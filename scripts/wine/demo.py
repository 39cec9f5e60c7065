"""Installs the sample product, uninstalls it again, and tells how both went and what stays; then a product on two discs.

usage: demo.py [--simulated]   with the real program on a fresh machine under Wine, or rehearsed on simulated workstations
"""
import os
import shutil
import subprocess
import sys
import time

import two_discs
from kind import OUT, PROGRAM
from machine import Screen, ensure_prototype
from registry_file import Registry
from run_log import outcomes, read_log, removals
from sample_machine import (LOG_FOLDER, PRODUCT, SAMPLE, SIMULATED_MACHINE, SIMULATED_UNINSTALL, UNINSTALL,
                            sample_machine)

LOG = LOG_FOLDER + '\\QX Installation Assistant.html'
SYSTEMS_KEYS = tuple('software\\' + name for name in ('microsoft', 'wine', 'classes')) + ('hardware', 'system')
UNINSTALL_LOG = LOG_FOLDER + '\\QX Installation Assistant Uninstall.html'


class RealMachine:
    """The real program under Wine. Needs a screen."""

    def __init__(self, folder):
        self.machine = sample_machine(folder)
        self.host = self.machine.host
        self.registry = self.machine.registry
        self.stop = self.machine.stop

    def install(self, **how):
        return self.machine.run('D:\\' + PROGRAM, '/s', timeout=300, **how)

    def uninstall(self, **how):
        """What Add/Remove Programs starts, but silently; somebody answers its question with Yes."""
        key = UNINSTALL + '\\' + PRODUCT
        program, _, arguments = self.machine.exported(key).get(key, 'UninstallString').partition('.exe ')
        process = self.machine.start(program + '.exe', '/s', *arguments.split(), **how)
        deadline = time.time() + 300
        while process.poll() is None:
            if time.time() > deadline:
                process.kill()
                raise TimeoutError('the uninstall did not end')
            if not self._confirmed():
                subprocess.run(['xdotool', 'key', 'alt+y'], check=True)
            time.sleep(0.3)
        return process.returncode

    def _confirmed(self):
        log = self.host(UNINSTALL_LOG)
        return os.path.exists(log) and 'confirmed by user' in open(log, encoding='latin-1').read()


def rehearse(folder):
    """The same media on simulated workstations, by the Linux command."""
    qxia = os.path.join(OUT, 'native', 'qxia')
    state, disc = os.path.join(folder, 'workstation'), os.path.join(SAMPLE, 'disc')
    shutil.rmtree(folder, ignore_errors=True)

    def tell(media, *options):
        return subprocess.run([qxia, 'rehearse', *media, *options]).returncode

    codes = [tell([disc], '--state', state, '--machine', SIMULATED_MACHINE)]
    print('\n== uninstalling it', flush=True)
    codes.append(tell([disc], '--state', state, '--machine', SIMULATED_UNINSTALL))
    print('\n== installing a product from two discs', flush=True)
    codes.append(tell([os.path.join(OUT, 'samples', 'harbour_charts', disc) for disc in ('disc1', 'disc2')]))
    if codes != [1, 0, 0]:
        sys.exit('The rehearsals ended with %s; 1, 0 and 0 were expected' % codes)


def print_table(head, rows):
    lines = [head] + [[str(cell) for cell in row] for row in rows]
    last = len(head) - 1
    widths = [max(len(line[column]) for line in lines) for column in range(last)]
    for number, line in enumerate(lines):
        print('  '.join(text.ljust(width) for text, width in zip(line, widths)) + '  ' + line[last])
        if number == 0:
            print('  '.join('-' * width for width in widths) + '  ' + '-' * 40)


def log_rows(machine, log, code):
    file = machine.host(log)
    if not os.path.exists(file):
        sys.exit('The program ended with %d and left no log at %s' % (code, file))
    return read_log(file)


def what_there_is(machine):
    """Files of drive C and keys of HKEY_LOCAL_MACHINE with values, but for the system's own."""
    drive, found = machine.host('C:'), []
    for folder, folders, files in os.walk(drive):
        if folder == drive:
            folders[:] = [name for name in folders if name.lower() not in ('windows', 'users')]
        found += ['C:' + os.path.join(folder, name)[len(drive.rstrip('/')):].replace('/', '\\') for name in files]
    registry = machine.registry()
    return set(found + ['HKLM\\' + key for key in registry.keys() if registry.values(key)
                        and not key.lower().startswith(SYSTEMS_KEYS)])


def tell_install(machine, product=PRODUCT, log=LOG):
    started = time.time()
    code = machine.install()
    seconds = time.time() - started
    rows = outcomes(machine.registry(), log_rows(machine, log, code), product)
    print_table(('Component', 'Kind', 'Sequence', 'Verdict', 'Reason'),
                [(row.component, row.kind, row.sequence, row.verdict, short(row.reason)) for row in rows])
    print('\nHTML log:   %s' % machine.host(log))
    print('Exit code:  %d (%s), after %.1f s' % (
        code, {0: 'the product succeeded', 1: 'the product failed, for the reasons above'}.get(code, '?'), seconds))


def short(text):
    return text if len(text) <= 80 else text[:76] + ' ...'


def tell_what_stays(names):
    """One line for each but for the logs."""
    logs = [name for name in names if name.startswith(LOG_FOLDER + '\\')]
    print('\nWhat stays:')
    for name in sorted(names.difference(logs)):
        print('  ' + name)
    print('  %s\\... (logs: %d files)' % (LOG_FOLDER, len(logs)))


def tell_uninstall(machine, before):
    started = time.time()
    code = machine.uninstall()
    seconds = time.time() - started
    rows = removals(log_rows(machine, UNINSTALL_LOG, code))
    print_table(('Component', 'Uninstall', 'By what, or why not'),
                [(row.component, row.verdict, short(row.reason)) for row in rows])
    tell_what_stays(what_there_is(machine) - before)
    print('\nHTML log:   %s' % machine.host(UNINSTALL_LOG))
    print('Exit code:  %d (%s), after %.1f s' % (
        code, {0: 'the product is uninstalled', 1: 'the uninstall failed'}.get(code, '?'), seconds))


def tell(machine):
    before = what_there_is(machine)
    tell_install(machine)
    print('\n== uninstalling it')
    tell_uninstall(machine, before)
    machine.stop()


def tell_two_discs(machine):
    print('\n== installing a product from two discs')
    tell_install(machine, two_discs.PRODUCT, two_discs.LOG)
    machine.stop()


def main():
    folder = os.path.join(OUT, 'demo')
    if '--simulated' in sys.argv:
        return rehearse(folder)
    with Screen():
        ensure_prototype()
        tell(RealMachine(folder))
        tell_two_discs(two_discs.RealMachine(folder))


if __name__ == '__main__':
    main()
