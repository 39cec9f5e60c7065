"""Installs the sample product and tells how it went.

usage: demo.py [--simulated]   with the real program on a fresh machine under Wine, or on the simulated workstation
"""
import os
import shutil
import subprocess
import sys
import time

from machine import OUT, PROGRAM, Screen, ensure_prototype
from registry_file import Registry
from run_log import outcomes, read_log
from sample_machine import LOG_FOLDER, PRODUCT, SAMPLE, SIMULATED_MACHINE, sample_machine

LOG = LOG_FOLDER + '\\QX Installation Assistant.html'


def print_table(rows):
    head = ('Component', 'Kind', 'Sequence', 'Verdict', 'Reason')
    lines = [head] + [(row.component, row.kind, str(row.sequence), row.verdict, row.reason) for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(4)]
    for number, line in enumerate(lines):
        print('  '.join(text.ljust(width) for text, width in zip(line, widths)) + '  ' + line[4])
        if number == 0:
            print('  '.join('-' * width for width in widths) + '  ' + '-' * 40)


def run_under_wine():
    """(exit code, seconds, registry, log) of the real program."""
    with Screen():
        ensure_prototype()
        with sample_machine(os.path.join(OUT, 'demo'), os.path.join(OUT, 'win64', PROGRAM)) as machine:
            started = time.time()
            code = machine.run('D:\\' + PROGRAM, '/s', timeout=300)
            return code, time.time() - started, machine.registry(), machine.host(LOG)


def run_simulated():
    """The same of the Linux command on the simulated workstation."""
    state = os.path.join(OUT, 'demo', 'workstation')
    shutil.rmtree(state, ignore_errors=True)
    os.makedirs(os.path.dirname(state), exist_ok=True)
    started = time.time()
    with open(state + '.txt', 'w') as story:
        code = subprocess.run([os.path.join(OUT, 'native', 'qxia'), 'run-demo', '--state', state,
                               '--media', os.path.join(SAMPLE, 'disc'), '--machine', SIMULATED_MACHINE],
                              stdout=story).returncode
    return (code, time.time() - started, Registry.of_export(os.path.join(state, 'registry.reg')),
            os.path.join(state, 'drive_c', *LOG.split('\\')[1:]))


def main():
    code, seconds, registry, log = run_simulated() if '--simulated' in sys.argv else run_under_wine()
    if not os.path.exists(log):
        sys.exit('The program ended with %d and left no log at %s' % (code, log))
    print_table(outcomes(registry, read_log(log), PRODUCT))
    print('\nHTML log:   %s' % log)
    print('Exit code:  %d (%s), after %.1f s' % (
        code, {0: 'the product succeeded', 1: 'the product failed, for the reasons above'}.get(code, '?'), seconds))


if __name__ == '__main__':
    main()
