"""The machine on which the sample product is installed, and what it holds before."""
import os
import shutil
import subprocess

from kind import OUT, PROGRAM, ROOT, WINE64
from machine import INSTALLATION, PRODUCTS, Machine

SAMPLE = os.path.join(OUT, 'samples', 'harbour_suite')  # for 32-bit systems: what is checked and rehearsed
SIMULATED_MACHINE = os.path.join(ROOT, 'samples', 'harbour_suite', 'machine.txt')
SIMULATED_UNINSTALL = os.path.join(ROOT, 'samples', 'harbour_suite', 'uninstall.txt')
PRODUCT = 'Harbour Suite'
UNINSTALL = 'Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall'
LOG_FOLDER = 'C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\' + PRODUCT


def sample_machine(folder, windows='win2003', wine=WINE64):
    """A machine with the product's disc in drive D, the program on it, and two packages installed earlier,
    one of which another product uses as well, and an older almanac."""
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    disc = os.path.join(folder, 'disc')
    sample = os.path.join(wine.samples, 'harbour_suite')
    subprocess.run(['cp', '-r', os.path.join(sample, 'disc'), disc], check=True)
    shutil.copy(wine.program, os.path.join(disc, PROGRAM))
    machine = Machine(os.path.join(folder, 'machine'), windows, wine)
    machine.insert_disc('d', disc, 'HARBOUR')
    machine.preset('system', INSTALLATION, {'Product': PRODUCT})
    machine.preset('system', PRODUCTS + '\\Harbour Office\\Fonts', {'SequenceNumber': 100, 'Install': 'fonts.msi'})
    earlier = shutil.copytree(os.path.join(sample, 'preinstalled'), machine.host('C:\\Earlier'))
    almanac = machine.host('C:\\Harbour\\Almanac\\v2.0.0.1')
    os.makedirs(almanac)
    with open(os.path.join(almanac, 'almanac.txt'), 'w') as file:
        file.write('The almanac of last year.\r\n')
    for package in sorted(os.listdir(earlier)):
        code = machine.run('msiexec', '/i', 'C:\\Earlier\\' + package, '/qn')
        if code:
            raise RuntimeError('%s could not be installed beforehand: %d' % (package, code))
    return machine
