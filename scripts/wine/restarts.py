"""The product whose components ask for restarts: its disc, and an installation through every restart and logon."""
import os
import shutil
import subprocess
import time

from kind import OUT, PROGRAM, WINE64
from machine import Machine

SAMPLE = os.path.join(OUT, 'samples', 'harbour_restart')  # for 32-bit systems: what is checked and rehearsed
PRODUCT = 'Harbour Restart'
LABEL = 'RESTART'
LOG = 'C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\%s\\QX Installation Assistant.html' % PRODUCT
NOTED = 'C:\\restart.txt'
COMPONENTS = ('Charter', 'Driver', 'Tools', 'Service', 'Beacon', 'Fonts', 'Manuals')
RESTARTS_AFTER = ('Driver', 'Service', 'Beacon', 'Manuals')  # the one that Fonts asks for comes behind the last component


def make_disc(folder, wine=WINE64):
    """The disc with the program on it, as a host folder, and beside it what stands in for msiexec."""
    shutil.rmtree(folder, ignore_errors=True)
    sample = os.path.join(wine.samples, 'harbour_restart')
    shutil.copytree(os.path.join(sample, 'disc'), folder)
    shutil.copy(wine.program, os.path.join(folder, PROGRAM))
    shutil.copy(os.path.join(sample, 'msiexec.exe'), folder)
    return folder


def text_of(machine, path):
    file = machine.host(path)
    if not os.path.exists(file):
        return ''
    with open(file, encoding='latin-1', newline='') as text:
        return text.read()


def stop_at_restart(machine):
    """Whether a program has asked for a restart; then the machine is off."""
    if '--kill' not in text_of(machine, NOTED):
        return False
    machine.stop()
    os.remove(machine.host(NOTED))
    return True


class RealMachine:
    """The real program under Wine. `recorder` takes the place of what would restart the machine."""

    def __init__(self, folder, recorder, windows='win2003', wine=WINE64):
        disc = make_disc(os.path.join(folder, 'restart disc'), wine)
        self.machine = Machine(os.path.join(folder, 'restart'), windows, wine)
        self.machine.insert_disc('d', disc, LABEL)
        self.machine.record_restarts(recorder)
        self.host = self.machine.host
        self.registry = self.machine.registry
        self.stop = self.machine.stop

    def install(self, traces=lambda: subprocess.DEVNULL, **how):
        """Runs to the end of the last run. Gives how often the machine restarted; each run's output goes to one of `traces`."""
        restarts = 0
        process = self.machine.start('D:\\' + PROGRAM, '/s', output=traces(), **how)
        while self._restarts():
            process.wait(60 * self.machine.wine.patience)
            process = self.machine.log_on(output=traces(), **how)
            restarts += 1
        process.wait(60 * self.machine.wine.patience)
        return restarts

    def _restarts(self):
        """Awaits the end of a run: whether the machine restarts behind it."""
        deadline = time.time() + 120 * self.machine.wine.patience
        while not stop_at_restart(self.machine):
            if 'QX Installer Run complete' in text_of(self.machine, LOG):
                return False
            if time.time() > deadline:
                raise TimeoutError('the installation neither ended nor restarted the machine')
            time.sleep(0.2)
        return True
