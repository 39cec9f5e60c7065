"""The sample products, installed by the program under one kind of Wine that plays one system: what each run told.

The same for the product itself, 32-bit under an emulator, and for the 64-bit build: they are told apart by the kind of Wine.
"""
import os
import shutil
import subprocess

import restarts
import two_discs
from demo import LOG, UNINSTALL_LOG
from kind import OUT, PROGRAM
from sample_machine import PRODUCT, UNINSTALL, sample_machine
from story import real_story

TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'endtoend', 'tools')
COMPILERS = {'win32': 'i686-w64-mingw32-gcc', 'win64': 'x86_64-w64-mingw32-gcc'}


def recorder(wine):
    """What takes the place of the program that restarts a machine, built for that kind of Wine."""
    file = os.path.join(OUT, 'shipped', 'wineboot-%s.exe' % wine.architecture)
    os.makedirs(os.path.dirname(file), exist_ok=True)
    subprocess.run([COMPILERS[wine.architecture], '-O1', '-mwindows', '-o', file, os.path.join(TOOLS, 'wineboot.c')], check=True)
    return file


def folder_of(wine, windows, product):
    folder = os.path.join(OUT, 'shipped', '%s-%s-%s' % (windows, wine.architecture, product))
    shutil.rmtree(folder, ignore_errors=True)
    return folder


def _told(machine, log, product, code, uninstalled=False):
    return real_story(machine.host(log), [machine.registry()], product, code, [], uninstalled)


def suite(wine, windows):
    """The sample product, installed silently and taken off by its entry in the list of programs."""
    machine = sample_machine(folder_of(wine, windows, 'suite'), windows, wine)
    with machine:
        code = machine.run('D:\\' + PROGRAM, '/s', timeout=300)
        yield 'installed', _told(machine, LOG, PRODUCT, code)
        entry = machine.registry().get(UNINSTALL + '\\' + PRODUCT, 'UninstallString')
        program, _, arguments = entry.partition('.exe ')
        code = machine.run(program + '.exe', '/s', '/yes', *arguments.split(), timeout=300)
        yield 'uninstalled', _told(machine, UNINSTALL_LOG, PRODUCT, code, True)


def restart(wine, windows):
    """The product about restarts: by the Startup script, behind a script, packages with 3010 and 1641, and at the end."""
    real = restarts.RealMachine(folder_of(wine, windows, 'restart'), recorder(wine), windows, wine)
    with real.machine:
        yield 'restarts', _told(real.machine, restarts.LOG, restarts.PRODUCT, real.install())


def discs(wine, windows):
    real = two_discs.RealMachine(folder_of(wine, windows, 'discs'), windows, wine)
    with real.machine:
        yield 'two discs', _told(real.machine, two_discs.LOG, two_discs.PRODUCT, real.install())


# The titles of each tale's stories, and the number each ends with: an exit code, or how often the machine restarted.
ENDS = {suite: {'installed': 1, 'uninstalled': 0}, restart: {'restarts': len(restarts.RESTARTS_AFTER)}, discs: {'two discs': 0}}
TITLES = [title for titles in ENDS.values() for title in titles]
ALL_OK = ('restarts', 'two discs')  # what no condition holds back and nothing makes fail
