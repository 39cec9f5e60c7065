"""A Windows machine made of a Wine prefix: fresh ones are cheap clones of one prototype."""
import fcntl
import os
import shutil
import subprocess
import time

from kind import PROGRAM, WINE64
from registry_file import Registry

PRODUCTS = 'Software\\Tarvel\\Installation\\Products'
INSTALLATION = 'Software\\Tarvel\\Installation'
_FONTS = '/usr/share/wine/fonts'  # found there only through the drive that the machines lack
_LOGON = 'C:\\windows\\system32\\logon.exe'  # Wine's own program for it, under a name that no recorder takes
_USER_FOLDERS = ('Desktop', 'Documents', 'Downloads', 'Music', 'Pictures', 'Videos')


class Screen:
    """A virtual screen for the programs of one run; ends with the `with` block."""

    def __enter__(self):
        reading, writing = os.pipe()
        self._server = subprocess.Popen(
            ['Xvfb', '-displayfd', str(writing), '-screen', '0', '1024x768x24', '-nolisten', 'tcp'],
            pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError('Xvfb did not start')
        os.environ['DISPLAY'] = ':' + number
        return self

    def __exit__(self, *_):
        self._server.terminate()
        self._server.wait()

    @staticmethod
    def picture(file):
        """Keeps what the screen shows; without the tool for it there is no picture."""
        if shutil.which('import'):
            os.makedirs(os.path.dirname(file), exist_ok=True)
            subprocess.run(['import', '-window', 'root', file], check=True)


def ensure_prototype(wine=WINE64):
    """Makes the prototype once for each version of Wine. Needs a screen, unless that kind of Wine has none."""
    os.makedirs(os.path.dirname(wine.prototype), exist_ok=True)
    with open(wine.prototype + '.lock', 'w') as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        _make_prototype_when_stale(wine)


def _make_prototype_when_stale(wine):
    stamp = os.path.join(wine.prototype, 'made-by')
    made_by = wine.version() + ', with fonts and a Startup folder'
    if os.path.exists(stamp) and open(stamp).read() == made_by:
        return
    shutil.rmtree(wine.prototype, ignore_errors=True)
    wine.make_prefix()
    _keep_out_of_the_home_folder(wine.prototype)
    _make_the_older_start_menu(wine.prototype)
    if os.path.isdir(_FONTS):
        shutil.copytree(_FONTS, os.path.join(wine.prototype, 'drive_c', 'windows', 'Fonts'), dirs_exist_ok=True)
    with open(stamp, 'w') as file:
        file.write(made_by)


def _keep_out_of_the_home_folder(prefix):
    users = os.path.join(prefix, 'drive_c', 'users')
    for user in os.listdir(users):
        for name in _USER_FOLDERS:
            folder = os.path.join(users, user, name)
            if os.path.islink(folder):
                os.unlink(folder)
                os.mkdir(folder)
    rest_of_the_machine = os.path.join(prefix, 'dosdevices', 'z:')
    if os.path.islink(rest_of_the_machine):
        os.unlink(rest_of_the_machine)


def _make_the_older_start_menu(prefix):
    """Wine has the Start menu of newer systems; the older place leads there."""
    users = os.path.join(prefix, 'drive_c', 'users')
    for user in os.listdir(users):
        menu = os.path.join('AppData', 'Roaming', 'Microsoft', 'Windows', 'Start Menu')
        os.makedirs(os.path.join(users, user, menu, 'Programs', 'StartUp'), exist_ok=True)
        os.symlink(menu, os.path.join(users, user, 'Start Menu'))


def _quoted(text):
    return text.replace('\\', '\\\\').replace('"', '\\"')


class Machine:
    """A fresh machine in `folder` (made anew). Set it up, run programs, `stop` it, read what they left."""

    def __init__(self, folder, windows='win2003', wine=WINE64):
        self.folder = os.path.abspath(folder)
        self.wine = wine
        self._overrides = ''
        self._keeper = None
        shutil.rmtree(self.folder, ignore_errors=True)
        os.makedirs(os.path.dirname(self.folder), exist_ok=True)
        subprocess.run(['cp', '-al', wine.prototype, self.folder], check=True)
        for name in ('system.reg', 'user.reg', 'userdef.reg', '.update-timestamp'):  # Wine writes these in place
            subprocess.run(['cp', '--remove-destination', os.path.join(wine.prototype, name), self.folder], check=True)
        self.preset('user', 'Software\\Wine\\AppDefaults\\' + PROGRAM, {'Version': windows})
        if not wine.screen:
            self.preset('user', 'Software\\Wine\\Drivers', {'Graphics': 'null'})
        # A desktop of its own: with captions, a task bar and a place for the notification icon.
        self.preset('user', 'Software\\Wine\\Explorer', {'Desktop': 'Default'})
        self.preset('user', 'Software\\Wine\\Explorer\\Desktops', {'Default': '1024x768'})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def preset(self, hive, key, values):
        """Writes texts and numbers into the 'system' or 'user' hive of a machine that is not running."""
        with open(os.path.join(self.folder, hive + '.reg'), 'a') as file:
            file.write('\n[%s] 0\n' % _quoted(key))
            for name, data in values.items():
                text = 'dword:%08x' % data if isinstance(data, int) else '"%s"' % _quoted(data)
                file.write('"%s"=%s\n' % (_quoted(name), text))

    def insert_disc(self, letter, folder, label):
        """Puts a host folder into a CD-ROM drive of a machine that is not running."""
        with open(os.path.join(folder, '.windows-label'), 'w') as file:
            file.write(label + '\n')
        os.symlink(os.path.abspath(folder), os.path.join(self.folder, 'dosdevices', letter + ':'))
        self.preset('system', 'Software\\Wine\\Drives', {letter + ':': 'cdrom'})

    def record_restarts(self, recorder):
        """Starts the machine; from now on a restart that a program asks for only runs the recorder."""
        self._overrides = ''
        target = self.host('C:\\windows\\system32\\wineboot.exe')
        own = target.replace(self.folder, self.wine.prototype)
        for place in (target, self.host(_LOGON)):
            subprocess.run(['cp', '--remove-destination', own, place], check=True)
        self.run('wineboot')
        subprocess.run(['cp', '--remove-destination', recorder, target], check=True)
        self._overrides = ';wineboot.exe=n'

    def log_on(self, **how):
        """Starts a machine whose restarts are recorded and that was stopped: what the user's logon starts runs in it."""
        return self.start(_LOGON, **how)

    def host(self, path):
        """The host's path of a Windows path, its letter case resolved below the drive."""
        drive, rest = path[:2].lower(), path[2:].strip('\\')
        here = os.path.realpath(os.path.join(self.folder, 'dosdevices', drive))
        for part in filter(None, rest.split('\\')):
            names = os.listdir(here) if os.path.isdir(here) else []
            here = os.path.join(here, next((n for n in names if n.lower() == part.lower()), part))
        return here

    def start(self, *command, output=subprocess.DEVNULL, debug='-all'):
        """Starts a program by its Windows path and arguments, in the root of drive C. `debug` is what Wine tells of it."""
        return self.wine.start(self.folder, [self.wine.loader, *command], self._overrides, debug, stdout=output, stderr=output)

    def run(self, *command, timeout=60, output=subprocess.DEVNULL, debug='-all'):
        """Runs a program to its end. Not to end in time is an error."""
        process = self.start(*command, output=output, debug=debug)
        try:
            return process.wait(timeout * self.wine.patience)
        except subprocess.TimeoutExpired:
            self.stop()
            process.wait(10)
            raise TimeoutError('%s did not end within %d s' % (' '.join(command), timeout * self.wine.patience))

    def keep_awake(self, keeper):
        """Runs a program that never ends, so that others find the machine running and need not start it. What tests ask of the
        registry it answers more quickly than a program that is started for it."""
        if self._keeper and self._keeper.poll() is None:
            return
        shutil.copy(keeper, self.host('C:\\keeper.exe'))
        self._keeper = self.start('C:\\keeper.exe')

    def stop(self):
        """Ends whatever runs and has the registry written."""
        self.wine.serve(self.folder, '-k')
        self.wine.serve(self.folder, '-w')
        if self._keeper:
            self._keeper.wait(10)

    def registry(self, hive='system'):
        """What the registry holds now; stops the machine (the next program starts it again)."""
        self.stop()
        return Registry.of_hive(os.path.join(self.folder, hive + '.reg'))

    def exported(self, *keys):
        """What keys of HKEY_LOCAL_MACHINE hold, on a running machine."""
        if self._ask(*('export ' + key for key in keys)):
            return Registry.of_exports(self.host('C:\\answered.reg'))
        files = [self.host('C:\\exported%d.reg' % number) for number in range(len(keys))]
        for key, file in zip(keys, files):
            self.run('reg', 'export', 'HKLM\\' + key, 'C:\\' + os.path.basename(file), '/y')
        found = Registry.of_exports(*filter(os.path.exists, files))
        for file in filter(os.path.exists, files):
            os.remove(file)
        return found

    def forget(self, *keys):
        """Deletes keys of HKEY_LOCAL_MACHINE."""
        if not self._ask(*('delete ' + key for key in keys)):
            for key in keys:
                self.run('reg', 'delete', 'HKLM\\' + key, '/f')

    def _ask(self, *questions):
        """Has the program answer that keeps the machine awake; False where there is none."""
        if not self._keeper or self._keeper.poll() is not None:
            return False
        place = self.host('C:\\asked.txt')
        with open(place + '.new', 'w', encoding='latin-1') as file:
            file.write(''.join(question + '\n' for question in questions))
        os.rename(place + '.new', place)
        deadline = time.time() + 30
        while os.path.exists(place) and self._keeper.poll() is None:
            if time.time() > deadline:
                raise TimeoutError('nobody answers on %s' % self.folder)
            time.sleep(0.005)
        return not os.path.exists(place)
