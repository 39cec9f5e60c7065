"""Measures the real program under Wine: its own time per component, its start-up and its memory.

usage: bench.py KEEPER EMPTY-PROGRAM ...   (a program that never ends; programs that do nothing, to compare with: the
first of them is built as the program is)
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
from sample_machine import LOG_FOLDER, PRODUCT, sample_machine

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


def medians(machine, commands):
    """Of each command (name -> words): median (seconds, kilobytes). They take turns: what else the computer does
    meets all of them alike."""
    found = {name: [] for name in commands}
    for turn in range(REPEATS + 1):
        for name, words in commands.items():
            figures = start(machine, *words)
            if turn:  # the first start of anything is a slow one
                found[name].append(figures)
    return {name: [statistics.median(column) for column in zip(*rows)] for name, rows in found.items()}


def print_start_up(keeper, *empty):
    with Machine(os.path.join(OUT, 'bench', 'machine')) as machine:
        shutil.copy(os.path.join(OUT, 'win64', PROGRAM), machine.host('C:\\' + PROGRAM))
        for file in empty:
            shutil.copy(file, machine.host('C:\\' + os.path.basename(file)))
        machine.keep_awake(keeper)
        commands = {os.path.basename(file): ['C:\\' + os.path.basename(file)] for file in empty}
        program = ['C:\\' + PROGRAM, '/s', '/is=C:\\nowhere.ini']
        figures = medians(machine, commands | {'the program, without an ini': program})
        if not os.path.exists(machine.host('C:\\QX Installation Assistant.html')):
            raise RuntimeError('the program wrote no log')
        start_first_copy(machine)
        second = medians(machine, commands | {'the program, a second copy': program})
        figures['the program, a second copy'] = second['the program, a second copy']
    print('\nStart to end, and peak memory (medians of %d; in times of the first, at most 1.5 without an ini)' % REPEATS)
    base_seconds, base_kilobytes = next(iter(figures.values()))
    for name, (seconds, kilobytes) in figures.items():
        print('  %-28s %6.0f ms (%.2f)   %6.1f MB (%.2f)' % (
            name, seconds * 1000, seconds / base_seconds, kilobytes / 1024, kilobytes / base_kilobytes))


def main():
    with Screen():
        ensure_prototype()
        print_components()
        print_start_up(*sys.argv[1:])


if __name__ == '__main__':
    main()
