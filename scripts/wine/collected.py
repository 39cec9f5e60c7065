"""Makes what a roll-out of the sample product on forty machines would have collected, by rehearsals: most succeed, the
others fail in three ways, wait for a restart or were broken off, and one sent something else.

usage: collected.py QXIA SAMPLE FOLDER
"""
import os
import random
import re
import shutil
import subprocess
import sys

from machine import PRODUCTS
from registry_file import Registry

PRODUCT = PRODUCTS + '\\Harbour Suite'
KEY = 'HKLM\\Software\\Tarvel\\Installation\\'
OUTCOMES = ['succeeds'] * 26 + ['radar'] * 5 + ['printers'] * 3 + ['licence'] * 2 + ['waits'] * 2 + ['broken off']
LEFT_OUT = ('Manuals', 'Notes', 'Quays')  # which fail on every machine
LOG = 'Program Files/Tarvel/Installation/QX Installation Assistant/Harbour Suite/QX Installation Assistant.html'
PACKAGE_LOG = '''=== Verbose logging started
Action start 9:14:02: LaunchConditions.
No radar aerial is connected.
Action ended 9:14:08: LaunchConditions. Return value 3.
'''


def medium(sample, folder):
    """The sample's disc, without the components that cannot be installed."""
    disc = shutil.copytree(os.path.join(sample, 'disc'), os.path.join(folder, 'disc'))
    ini = os.path.join(disc, 'product.ini')
    with open(ini) as source:
        lines = [line for line in source if not line.startswith(tuple(name + '=' for name in LEFT_OUT))]
    with open(ini, 'w') as target:
        target.writelines(lines)
    return disc


def declared(sample, outcome, number):
    """The sample's machine file, with what is otherwise on this machine."""
    with open(os.path.join(sample, 'machine.txt')) as source:
        text = source.read()
    if outcome != 'radar':
        text = text.replace('exit=1603\n', '')
    if outcome != 'printers':
        text = text.replace('exit=5\n', 'exit=0\n')
    if outcome != 'licence':
        text = re.sub(r'(?m)^set=.*\\Licence\\.*\n', 'seconds=1\n', text, count=1)
        text = re.sub(r'(?m)^set=.*\\Licence\\Message.*\n', '', text)
    if outcome == 'waits':
        text = text.replace('version=2.1.0\n', 'version=2.1.0\nset=%sReboot=immediate\n' % KEY, 1)
    minutes = 8 * 60 + 7 * number
    return text + '\n[machine]\ncomputer=HARBOUR-%02d\ntime=2006-03-01 %02d:%02d:00.000\n' % (
        number, minutes // 60, minutes % 60)


def cut(log, outcome):
    """The log as it is while the machine waits for its user, or after the power failed."""
    last = {'waits': 'Re-booting now', 'broken off': 'Running msiexec /i  "D:\\Packages\\Radar'}.get(outcome)
    if last is None:
        return log
    lines = log.split('\r\n')
    return '\r\n'.join(lines[:1 + next(at for at, line in enumerate(lines) if last in line)]) + '\r\n'


def quoted(text):
    return '"%s"' % text.replace('\\', '\\\\').replace('"', '\\"').replace('\r\n', ' ')


def write_export(registry, file):
    """What `reg export` writes of the product's key."""
    lines = ['REGEDIT4', '']
    for key in registry.keys():
        if (key + '\\').lower().startswith(PRODUCT.lower() + '\\'):
            lines.append('[HKEY_LOCAL_MACHINE\\%s]' % key)
            lines += ['%s=%s' % (quoted(name), 'dword:%08x' % data if isinstance(data, int) else quoted(data))
                      for name, data in registry.values(key).items()]
            lines.append('')
    with open(file, 'w', newline='\r\n', encoding='latin-1') as export:
        export.write('\n'.join(lines))


def collect(qxia, disc, sample, folder, outcome, number):
    place = os.path.join(folder, 'HARBOUR-%02d' % number)
    state, file = os.path.join(folder, 'state'), os.path.join(folder, 'machine.txt')
    os.makedirs(place)
    shutil.rmtree(state, ignore_errors=True)
    with open(file, 'w') as text:
        text.write(declared(sample, outcome, number))
    subprocess.run([qxia, 'rehearse', disc, '--machine', file, '--label', 'HARBOUR', '--state', state],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    with open(os.path.join(state, 'drive_c', LOG), newline='', encoding='latin-1') as log:
        rows = cut(log.read(), outcome)
    with open(os.path.join(place, 'QX Installation Assistant.html'), 'w', newline='', encoding='latin-1') as log:
        log.write(rows)
    write_export(Registry.of_export(os.path.join(state, 'registry.reg')), os.path.join(place, 'Harbour Suite.reg'))
    if outcome == 'radar':
        os.makedirs(os.path.join(place, 'MSI Log Files'))
        with open(os.path.join(place, 'MSI Log Files', 'Radar.log'), 'w', newline='\r\n', encoding='utf-16') as log:
            log.write(PACKAGE_LOG)


def main(qxia, sample, folder):
    shutil.rmtree(folder, ignore_errors=True)
    work = folder + '.work'
    shutil.rmtree(work, ignore_errors=True)
    disc = medium(sample, work)
    order = random.Random(7)
    outcomes = OUTCOMES[:]
    order.shuffle(outcomes)
    for number, outcome in enumerate(outcomes, 1):
        collect(qxia, disc, sample, work, outcome, number)
    os.makedirs(os.path.join(work, 'HARBOUR-40'))
    with open(os.path.join(work, 'HARBOUR-40', 'report.html'), 'w') as page:
        page.write('<html>of another program</html>\n')
    os.makedirs(folder)
    for name in sorted(os.listdir(work)):
        if name.startswith('HARBOUR-'):
            os.rename(os.path.join(work, name), os.path.join(folder, name))
    shutil.rmtree(work)


main(*sys.argv[1:])
