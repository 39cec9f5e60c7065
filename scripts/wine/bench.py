"""Measures the real program under Wine: its own time per component, its start-up and its memory.

usage: bench.py KEEPER EMPTY-PROGRAM ...   (a program that never ends; programs built the same way, to compare with)
"""
import os
import re
import shutil
import statistics
import sys
import time
from datetime import datetime

from machine import OUT, PROGRAM, Machine, Screen, ensure_prototype
from run_log import read_log
from sample_machine import LOG_FOLDER, sample_machine

PAUSE = 0.5  # seconds that the program waits after each child, as it must
REPEATS = 15


def _seconds(row):
    return datetime.strptime(row.time, '%d/%m/%y %H:%M:%S.%f').timestamp()


def own_times(rows):
    """(component, seconds) of the program's own work: a turn less its children and the pauses after them."""
    turns, name, began, children, child = [], None, 0.0, 0.0, None
    for row in rows:
        now = _seconds(row)
        if row.text.startswith('Last Sequence was'):
            if name:
                turns.append((name, now - began - children))
            name, began, children = None, now, 0.0
        elif match := re.match(r'Next component is (.+) v\.', row.text):
            name = match.group(1)
        elif row.text.startswith('Running '):
            child = now
        elif row.text.startswith('Component has finished') and child:
            children, child = children + now - child + PAUSE, None
    return turns


def start(machine, *command):
    """(seconds, peak kilobytes) of one program, started to its end."""
    began = time.time()
    process = machine.start(*command)
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return time.time() - began, usage.ru_maxrss


def print_components():
    with sample_machine(os.path.join(OUT, 'bench', 'sample'), os.path.join(OUT, 'win64', PROGRAM)) as machine:
        machine.run('D:\\' + PROGRAM, '/s', timeout=300)
        machine.stop()
        turns = own_times(read_log(machine.host(LOG_FOLDER + '\\QX Installation Assistant.html')))
    print('\nOwn time per component of the sample product (less children and required pauses)')
    for name, seconds in turns:
        print('  %-16s %7.0f ms' % (name, seconds * 1000))
    print('  %-16s %7.0f ms' % ('mean', statistics.mean(seconds for _, seconds in turns) * 1000))


def print_start_up(keeper, *empty):
    with Machine(os.path.join(OUT, 'bench', 'machine')) as machine:
        commands = {'the program, without an ini': ('C:\\' + PROGRAM, '/s', '/is=C:\\nowhere.ini')}
        shutil.copy(os.path.join(OUT, 'win64', PROGRAM), machine.host('C:\\' + PROGRAM))
        for file in empty:
            name = os.path.basename(file)
            shutil.copy(file, machine.host('C:\\' + name))
            commands[name] = ('C:\\' + name,)
        machine.keep_awake(keeper)
        figures = {}
        for name, command in commands.items():
            start(machine, *command)  # the first start of anything is a slow one
            figures[name] = [statistics.median(column) for column in zip(*(start(machine, *command)
                                                                           for _ in range(REPEATS)))]
    print('\nStart to end, and peak memory (medians of %d; the program: at most 1.5 times the empty one)' % REPEATS)
    seconds, kilobytes = next(iter(figures.values()))
    for name, (own_seconds, own_kilobytes) in figures.items():
        print('  %-28s %6.0f ms (%.2f)   %6.1f MB (%.2f)' % (
            name, own_seconds * 1000, seconds / own_seconds, own_kilobytes / 1024, kilobytes / own_kilobytes))


def main():
    with Screen():
        ensure_prototype()
        print_components()
        print_start_up(*sys.argv[1:])


if __name__ == '__main__':
    main()
