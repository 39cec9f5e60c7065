"""Measures what each child costs above its own start when the program, a batch file or a makensis installer starts it.

usage: overhead.py LOOP CHILD KEEPER    (programs: one that starts another so many times; one that does nothing; one that
never ends)
All start the same child, turn and turn about: what else the computer does meets all of them alike. What is there once for
all children (start-up, the end) is taken away by running each with few children and with many.
"""
import os
import shutil
import statistics
import subprocess
import sys
import time

from kind import OUT, PROGRAM, WINE64
from machine import Machine, Screen, ensure_prototype

FEW, MANY = 1, 21
ROUNDS = 7
PAUSE = 0.5  # seconds that the program waits after each child, as it must
CHILD = 'C:\\child.exe'
NOISY = 0.10  # of the middle half of the bare loop's figures, above which they say little

APPLICATION = ('[Product]\nName=%(name)s\nVersion=1\nPackageRoot=C:\\Media\nProductIni=PATH(%(name)s.txt)\nAbortOnFail=false\n'
               'ForceUninstallReboot=False\nCopyOpRoot=N/A\nCopyOpHold=N/A\n'
               '[Config]\nVerbose=false\nSilent=false\nRequestLogonDetails=false\n')
COMPONENT = '[%s]\nInstall=%s\nCommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n'


def _write(machine, path, text):
    file = machine.host(path)
    os.makedirs(os.path.dirname(file), exist_ok=True)
    with open(file, 'w', newline='\r\n') as target:
        target.write(text)


def put_product(machine, children):
    name, parts = 'Many%d' % children, ['Part%02d' % number for number in range(1, children + 1)]
    _write(machine, 'C:\\Media\\%s.ini' % name, APPLICATION % {'name': name})
    _write(machine, 'C:\\Media\\%s.txt' % name, '[Product]\nName=%s\n[General]\nVersion=1\n[Actions]\n%s' % (
        name, ''.join('%s=parts.ini\n' % part for part in parts)))
    _write(machine, 'C:\\Media\\parts.ini', ''.join(COMPONENT % ('Part%02d' % number, CHILD) for number in range(1, MANY + 1)))
    return ['C:\\' + PROGRAM, '/s', '/is=C:\\Media\\%s.ini' % name]


def put_batch(machine, children):
    path = 'C:\\chain%d.bat' % children
    _write(machine, path, '@echo off\n' + (CHILD + '\n') * children)
    return ['cmd', '/c', path]


def put_installer(machine, children):
    path = 'C:\\chain%d.exe' % children
    script = os.path.join(OUT, 'bench', 'chain.nsi')
    with open(script, 'w') as text:
        text.write('Target amd64-unicode\nName chain\nOutFile "%s"\nSilentInstall silent\nSection\n%sSectionEnd\n' % (
            machine.host(path), "ExecWait '%s'\n" % CHILD * children))
    subprocess.run(['makensis', '-V1', script], check=True)
    return [path, '/S']


def put_loop(_, children):
    return ['C:\\loop.exe', CHILD, str(children)]


SIDES = {'a bare loop of CreateProcess': put_loop, 'a batch file': put_batch, 'a makensis installer': put_installer,
         'the program': put_product}


def seconds(machine, command):
    began = time.perf_counter()
    code = machine.run(*command, timeout=300)
    if code:
        raise RuntimeError('%s ended with %d' % (' '.join(command), code))
    return time.perf_counter() - began


def per_child(machine, commands):
    """Seconds that one more child costs."""
    few, many = (seconds(machine, command) for command in commands)
    return (many - few) / (MANY - FEW)


def measured(machine):
    """Side -> its figures, one a round."""
    commands = {side: [put(machine, children) for children in (FEW, MANY)] for side, put in SIDES.items()}
    figures = {side: [] for side in SIDES}
    for number in range(ROUNDS + 1):
        for side in SIDES:
            figure = per_child(machine, commands[side]) - (PAUSE if side == 'the program' else 0)
            if number:  # the first start of anything is a slow one
                figures[side].append(figure)
    return figures


def say_noise(bare):
    low, _, high = statistics.quantiles(bare, n=4)
    spread, load = (high - low) / statistics.median(bare), os.getloadavg()[0]
    if spread > NOISY:
        print('  NOISY: the middle half of the bare figures spreads over %.0f of 100, load %.1f; measure again on a quiet '
              'computer' % (spread * 100, load))


def main(loop, child, keeper):
    with Screen():
        ensure_prototype()
        with Machine(os.path.join(OUT, 'bench', 'overhead')) as machine:
            for source, target in ((loop, 'loop.exe'), (child, 'child.exe'), (WINE64.program, PROGRAM)):
                shutil.copy(source, machine.host('C:\\' + target))
            machine.keep_awake(keeper)
            figures = measured(machine)
    bare = figures['a bare loop of CreateProcess']
    print('\nA child that does nothing, started by (medians of %d, pauses that must be aside; above the bare loop in pairs)' % ROUNDS)
    for side, own in figures.items():
        above = statistics.median(mine - base for mine, base in zip(own, bare))
        print('  %-30s %6.1f ms   %+6.1f ms' % (side, statistics.median(own) * 1000, above * 1000))
    say_noise(bare)


if __name__ == '__main__':
    main(*sys.argv[1:])
