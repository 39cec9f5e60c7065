"""The sample product on two discs: its discs, and an installation with somebody who changes them when asked to."""
import os
import shutil
import time

from kind import PROGRAM, WINE64
from machine import PRODUCTS, Machine

PRODUCT = 'Harbour Charts'
LABELS = ('CHARTS1', 'Charts2')  # a label that differs in letter case is the same
LOCAL_FOLDER = 'C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant'
LOG = '%s\\%s\\QX Installation Assistant.html' % (LOCAL_FOLDER, PRODUCT)


def of_samples(wine, name):
    """A file or folder of the product for that kind of Wine, as `samples/build` made it."""
    return os.path.join(wine.samples, 'harbour_charts', name)


def make_discs(folder, wine=WINE64):
    """The two discs, with the program on them, as host folders."""
    shutil.rmtree(folder, ignore_errors=True)
    discs = []
    for number, label in enumerate(LABELS, 1):
        disc = shutil.copytree(of_samples(wine, 'disc%d' % number), os.path.join(folder, 'disc%d' % number))
        shutil.copy(wine.program, os.path.join(disc, PROGRAM))
        with open(os.path.join(disc, '.windows-label'), 'w') as file:
            file.write(label + '\n')
        discs.append(disc)
    return discs


class RealMachine:
    """The real program under Wine, with the first disc in drive D. Needs a screen."""

    def __init__(self, folder, windows='win2003', wine=WINE64):
        self.discs = make_discs(os.path.join(folder, 'discs'), wine)
        self.machine = Machine(os.path.join(folder, 'two discs'), windows, wine)
        self.machine.insert_disc('d', self.discs[0], LABELS[0])
        shutil.copy(of_samples(wine, 'disc.exe'), self.machine.host('C:\\disc.exe'))
        self.host = self.machine.host
        self.registry = self.machine.registry
        self.stop = self.machine.stop

    def _logged(self, text):
        log = self.host(LOG)
        return os.path.exists(log) and text in open(log, encoding='latin-1').read()

    def _wait_for(self, text):
        deadline = time.time() + 120 * self.machine.wine.patience
        while not self._logged(text):
            if time.time() > deadline:
                raise TimeoutError('the installation from two discs does not come to: ' + text)
            time.sleep(0.2)

    def _change_disc(self):
        """Puts the second disc in and agrees to what is asked, until the run is over: it asks again when it looked too early."""
        deadline = time.time() + 300 * self.machine.wine.patience
        while not self._logged('QX Installer Run complete'):
            self.machine.run('C:\\disc.exe', self.discs[1], 'ok')
            if time.time() > deadline:
                raise TimeoutError('the installation from two discs does not come to its end')

    def install(self):
        """The copy on the disc ends at once; the local one asks for the second disc, and its result is in the registry."""
        code = self.machine.run('D:\\' + PROGRAM, '/s')
        if code == 0:
            self._wait_for('Changing to the disk labelled')
            self._change_disc()
        key = PRODUCTS + '\\' + PRODUCT
        return code or int(self.machine.exported(key).get(key, 'Succeeded') != 0xffffffff)
