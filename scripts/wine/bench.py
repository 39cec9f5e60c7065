"""Measures the real program under Wine: its own time per component, its start-up and its memory.

usage: bench.py KEEPER EMPTY-PROGRAM ...   (a program that never ends; programs that do nothing, to compare with: the
first of them is built as the program is)
"""
import functools
import os
import re
import shutil
import statistics
import sys
import time
from datetime import datetime

from kind import OUT, PROGRAM
from machine import Machine, Screen, ensure_prototype
from run_log import read_log
from sample_machine import LOG_FOLDER, PRODUCT, sample_machine

PAUSE = 0.5  # seconds that the program waits after each child, as it must
REPEATS = 15
SETTLE = 0.3  # seconds in which what a program has begun in the system comes to its end


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


BUSY = {  # a product whose one component never ends
    'app.ini': '[Product]\nName=Busy\nVersion=1\nPackageRoot=C:\\Busy\nProductIni=PATH(product.ini)\n',
    'product.ini': '[Product]\nName=Busy\n[General]\nVersion=1\n[Actions]\nOne=one.ini\n',
    'one.ini': '[One]\nInstall=C:\\keeper.exe\nCommandLine=N/A\nMachineType=all machines\n',
}


def start_first_copy(machine):
    """A copy of the program that runs on: every further one finds it and ends at once."""
    os.mkdir(machine.host('C:\\Busy'))
    for name, text in BUSY.items():
        with open(machine.host('C:\\Busy\\' + name), 'w', newline='\r\n') as file:
            file.write(text)
    machine.start('C:\\' + PROGRAM, '/s', '/is=C:\\Busy\\app.ini')
    deadline = time.time() + 60
    while not os.path.exists(machine.host(LOG_FOLDER.replace(PRODUCT, 'Busy'))):
        if time.time() > deadline:
            raise TimeoutError('the first copy does not run')
        time.sleep(0.1)


def medians(measures):
    """Of each measure (name -> function): the median of each figure that it gives. They take turns: what else the
    computer does meets all of them alike."""
    found = {name: [] for name in measures}
    for turn in range(REPEATS + 1):
        for name, measure in measures.items():
            time.sleep(SETTLE)
            figures = measure()
            if turn:  # the first start of anything is a slow one
                found[name].append(figures)
    return {name: [statistics.median(column) for column in zip(*rows)] for name, rows in found.items()}


def start_without_ini(machine):
    """(seconds to the first entry in the log, seconds to the end, peak kilobytes) of a run that finds no ini file."""
    log = machine.host('C:\\QX Installation Assistant.html')
    if os.path.exists(log):
        os.remove(log)
    began = time.time()
    seconds, kilobytes = start(machine, 'C:\\' + PROGRAM, '/s', '/is=C:\\nowhere.ini')
    return _seconds(read_log(log)[0]) - began, seconds, kilobytes


def print_start_up(keeper, *empty):
    names = {os.path.splitext(os.path.basename(file))[0]: os.path.basename(file) for file in empty}
    with Machine(os.path.join(OUT, 'bench', 'machine')) as machine:
        shutil.copy(os.path.join(OUT, 'win64', PROGRAM), machine.host('C:\\' + PROGRAM))
        for file in empty:
            shutil.copy(file, machine.host('C:\\' + os.path.basename(file)))
        machine.keep_awake(keeper)
        measures = {name: functools.partial(start, machine, 'C:\\' + file) for name, file in names.items()}
        figures = medians(measures | {PROGRAM: functools.partial(start_without_ini, machine)})
        ready, ended, kilobytes = figures.pop(PROGRAM)
        figures['the program, to its first entry'] = ready, kilobytes
        figures['the same, to its end'] = ended, kilobytes
        start_first_copy(machine)
        second = functools.partial(start, machine, 'C:\\' + PROGRAM, '/s', '/is=C:\\nowhere.ini')
        figures |= medians({'a second copy, to its end': second})
    print('\nStart-up and peak memory (medians of %d; the first entry at most 1.5 times the first program)' % REPEATS)
    base_seconds, base_kilobytes = next(iter(figures.values()))
    for name, (seconds, kilobytes) in figures.items():
        print('  %-32s %6.0f ms (%.2f)   %6.1f MB (%.2f)' % (
            name, seconds * 1000, seconds / base_seconds, kilobytes / 1024, kilobytes / base_kilobytes))


def main():
    with Screen():
        ensure_prototype()
        print_components()
        print_start_up(*sys.argv[1:])


if __name__ == '__main__':
    main()
