"""The kinds of Wine: how the programs of each are started, and what fits it."""
import os
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
OUT = os.path.join(ROOT, 'out')
PROGRAM = 'QX Installation Assistant.exe'


class Wine:
    """The 64-bit Wine of the system. It runs no 32-bit code: it takes the program and the media that are built for x64."""

    loader = '/usr/lib/wine/wine64'
    server = '/usr/lib/wine/wineserver'
    architecture = 'win64'
    program = os.path.join(OUT, 'win64', PROGRAM)
    samples = os.path.join(OUT, 'samples64')
    prototype = os.path.join(OUT, 'wine', 'prototype')
    patience = 1  # times as long as usual may everything take

    def __init__(self, screen=True):
        self.screen = screen  # where there is none, windows exist but are not shown

    def environment(self, prefix, overrides='', debug='-all'):
        return dict(os.environ, WINEPREFIX=prefix, WINEARCH=self.architecture, WINEDEBUG=debug,
                    WINEDLLOVERRIDES='winemenubuilder.exe=d;mscoree,mshtml=' + overrides)

    def place(self, folder):
        """What makes a started program find itself in a folder, as arguments of Popen."""
        return {'cwd': folder}

    def start(self, prefix, command, overrides='', debug='-all', **how):
        """Starts a command of the host in the root of the prefix's drive C."""
        return subprocess.Popen(command, env=self.environment(prefix, overrides, debug), stdin=subprocess.DEVNULL,
                                **self.place(os.path.join(prefix, 'drive_c')), **how)

    def serve(self, prefix, option, seconds=60):
        """Tells the prefix's server to end what runs (-k), or waits until it has ended (-w)."""
        self.start(prefix, [self.server, option], stderr=subprocess.DEVNULL).wait(seconds * self.patience)

    def version(self):
        return subprocess.run([self.loader, '--version'], capture_output=True, text=True, check=True).stdout.strip()

    def make_prefix(self):
        """Makes the prototype's prefix as Wine makes it."""
        os.makedirs(os.path.join(self.prototype, 'drive_c'), exist_ok=True)
        code = self.start(self.prototype, [self.loader, 'wineboot', '-i'], stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).wait(600)
        if code:
            raise RuntimeError('%s could not be made: %d' % (self.prototype, code))
        self.serve(self.prototype, '-w')


WINE64 = Wine()
