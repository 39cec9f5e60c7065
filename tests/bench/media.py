"""Measures how long the Linux command takes to check and to rehearse media, and how much memory.

usage: media.py QXIA SAMPLE    SAMPLE: the folder of the sample product that samples/build makes
"""
import os
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

COMPONENTS = 500
ROUNDS = 5


def make_media(folder, package):
    """A medium of many components: each third a package, the others programs and scripts with conditions."""
    names = ['Component%03d' % number for number in range(1, COMPONENTS + 1)]
    write = lambda path, text: open(os.path.join(folder, path), 'w', newline='\r\n').write(text)  # noqa: E731
    os.makedirs(folder)
    write('QX Installation Assistant.ini',
          '[Product]\nName=Many\nVersion=1.0\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\n'
          'AbortOnFail=false\nForceUninstallReboot=False\nCopyOpRoot=N/A\nCopyOpHold=N/A\n'
          '[Config]\nVerbose=true\nSilent=false\nRequestLogonDetails=false\n')
    write('product.ini', '[Product]\nName=Many\n[General]\nVersion=1.0\n[Actions]\n'
          + ''.join('%s=%s\\c.ini\n' % (name, name) for name in names))
    for number, name in enumerate(names):
        os.makedirs(os.path.join(folder, 'Packages', name))
        install = ('run.msi', 'run.exe', 'run.vbs')[number % 3]
        write('Packages/%s/c.ini' % name,
              '[%s]\nInstall=%s\nCommandLine=N/A\nUpgrade=False\nCopyOp=N/A\nMachineType=all machines\nCost=N/A\n'
              'Condition1=os=win98|win2k|winxp|w2k3\n' % (name, install))
        target = os.path.join(folder, 'Packages', name, install)
        if install == 'run.msi':
            shutil.copy(package, target)
        else:
            write('Packages/%s/%s' % (name, install), "' a file\n")


def measure(title, most, command):
    seconds = []
    for _ in range(ROUNDS):
        started = time.perf_counter()
        subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        seconds.append(time.perf_counter() - started)
    print('  %-44s %6.2f s (at most %s s)' % (title, statistics.median(seconds), most))


def main(qxia, sample):
    disc = os.path.join(sample, 'disc')
    with tempfile.TemporaryDirectory() as scratch:
        media = os.path.join(scratch, 'media')
        make_media(media, os.path.join(disc, 'Packages', 'Core', 'core.msi'))
        measure('checking %d components' % COMPONENTS, '1', [qxia, 'check', media])
    rehearse = [qxia, 'rehearse', '--machine', os.path.join(sample, 'machine.txt'), disc]
    measure('rehearsing the sample on one system', '0.5', rehearse)
    measure('rehearsing the sample on all eight', '4', rehearse + ['--on', 'all'])
    memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss // 1024
    print('  %-44s %6d MB (at most 200 MB)' % ('most memory of these', memory))


if __name__ == '__main__':
    main(*sys.argv[1:])
