"""Measures the real program under Wine: its own time per component, its start-up and its memory.

usage: bench.py EMPTY-PROGRAM   (built the same way, to compare with)
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


def print_start_up(empty):
    with Machine(os.path.join(OUT, 'bench', 'machine')) as machine:
        shutil.copy(os.path.join(OUT, 'win64', PROGRAM), machine.host('C:\\' + PROGRAM))
        shutil.copy(empty, machine.host('C:\\empty.exe'))
        commands = (('C:\\empty.exe',), ('C:\\' + PROGRAM, '/s', '/is=C:\\nowhere.ini'))
        for command in commands:  # the first start of anything starts the machine
            start(machine, *command)
        (empty_time, empty_memory), (time_, memory) = (
            [statistics.median(column) for column in zip(*(start(machine, *command) for _ in range(REPEATS)))]
            for command in commands)
    print('\nStart to end of a run without an ini, beside an empty program (medians of %d)' % REPEATS)
    print('  time     %6.0f ms   empty %6.0f ms   %.2f times (at most 1.5)' % (
        time_ * 1000, empty_time * 1000, time_ / empty_time))
    print('  memory   %6.1f MB   empty %6.1f MB   %.2f times (at most 1.5)' % (
        memory / 1024, empty_memory / 1024, memory / empty_memory))


def main():
    with Screen():
        ensure_prototype()
        print_components()
        print_start_up(sys.argv[1])


if __name__ == '__main__':
    main()
