"""Makes the logs of a fleet and measures how long `qxia fleet` takes to read them.

usage: fleet.py QXIA [FOLDER [MACHINES]]

Without FOLDER the logs are made in a temporary one and deleted afterwards.
"""
import pathlib
import random
import subprocess
import sys
import tempfile
import time

SIZE = 1_000_000
KINDS = {'Action': 'Action', 'Warning': '<FONT color=green><b>Warning</FONT>',
         'Error': '<FONT color=red><b>*** ERROR ***</FONT>'}
LOG = 'QX Installation Assistant.html'


class Log:
    """A log that grows row by row, a row every 40 ms."""

    def __init__(self, minutes):
        self.rows, self.size, self.time = [], 0, minutes * 60_000

    def row(self, text, kind='Action'):
        seconds, milliseconds = divmod(self.time, 1000)
        stamp = (f'{1 + seconds // 86400:02}/03/06 {seconds // 3600 % 24:02}:{seconds // 60 % 60:02}:'
                 f'{seconds % 60:02}.{milliseconds:03}')
        line = (f'<TABLE cellpadding="0" border="0"><TR valign="top"><TD width="150">{stamp}</TD><TD width="120">'
                f'{KINDS[kind]}</TD><TD width="550">{text}</TD></TR></TABLE>\r\n')
        self.rows.append(line)
        self.size += len(line)
        self.time += 40


def component(log, name, sequence, fails):
    command = f'D:\\Packages\\{name}\\setup.vbs /quiet'
    for text in (sequence, 'Last Sequence was 100', f'Next in sequence is {name}', f'Next component is {name} v.N/A',
                 "Retrieving Installed MSI's from PC", 'There are 12 installed products',
                 'Checking condition os = winxp|w2k3', 'OS check matched', 'All conditions met',
                 f'Install set to D:\\Packages\\{name}\\setup.vbs',
                 'Check for multiple MSIExec processes: Not Required!', 'Type of file is vbs',
                 f'Running wscript.exe {command}', 'Component has finished'):
        log.row(text)
    if fails:
        log.row(f'Executing wscript.exe {command} returned Error number 5', 'Error')
        log.row('Process return = Fail')
        log.row('*** Install Failed ***<BR>', 'Error')
    else:
        log.row(f'Executing wscript.exe {command} returned no errors (return code: 0)')
        log.row('Process return = ')
        log.row(' Install returned no errors')
    for text in ('Writing last sequence to register', 'Reboot status is ', 'No reboot required'):
        log.row(text)


def make_log(chance, minutes):
    names = [f'Component{number:03}' for number in range(1, 121)]
    sequence = 'Sequence is:' + ''.join(f'<br>{name} = {100 * i}' for i, name in enumerate(names, 1)) + '<br>'
    log = Log(minutes)
    log.row('Command line is /s /is=D:\\office.ini')
    log.row('Package Root path returned as CDROM(\\Packages)')
    log.row('Installing Office Suite Version 2.1.0')
    failing = {chance.choice(names[::20])} if chance.random() < 0.2 else set()
    for name in names:
        component(log, name, sequence, name in failing)
    while log.size < SIZE:
        log.row('OS Check - System OS = Windows 2003, Query OS = win2k')
    if chance.random() < 0.05:
        log.row('Re-booting now')
    elif chance.random() < 0.95:
        for text in ('Resetting system registry', '*' * 24, 'QX Installer Run complete', '*' * 9):
            log.row(text)
    return ''.join(log.rows)


def make_fleet(folder, machines):
    chance = random.Random(1)
    for number in range(1, machines + 1):
        place = folder / f'PC{number:03}'
        place.mkdir(parents=True)
        (place / LOG).write_bytes(make_log(chance, number).encode('ascii'))


def measure(qxia, folder):
    size = sum(path.stat().st_size for path in folder.rglob('*.html'))
    times = []
    for _ in range(3):
        start = time.monotonic()
        ended = subprocess.run([qxia, 'fleet', folder, '--format', 'json'], stdout=subprocess.DEVNULL, check=False)
        times.append(time.monotonic() - start)
        if ended.returncode != 0:
            sys.exit(f'qxia fleet ended with {ended.returncode}')
    count = len(list(folder.iterdir()))
    print(f'  qxia fleet        {count} logs, {size / 1e6:.0f} MB: {min(times):.2f} s (500 logs of 1 MB: at most 5)')


def main():
    qxia = sys.argv[1]
    machines = int(sys.argv[3]) if len(sys.argv) > 3 else 500
    if len(sys.argv) > 2:
        folder = pathlib.Path(sys.argv[2])
        make_fleet(folder, machines)
        measure(qxia, folder)
        return
    with tempfile.TemporaryDirectory(prefix='qxia-fleet-') as made:
        make_fleet(pathlib.Path(made), machines)
        measure(qxia, pathlib.Path(made))


main()
