"""32-bit Wine on a computer whose kernel runs no 32-bit code: an emulator stands in front of each of its programs.

`scripts/test32` unpacks the Wine into a root folder and starts Python in namespaces of its own, in which `enter` makes the
mounts: they end with the namespaces. What lies under out/ has the same path inside the root and outside.
"""
import os
import pwd
import shutil
import subprocess

from kind import OUT, PROGRAM, Wine

BASE = os.path.join(OUT, 'test32')
ROOT = os.path.join(BASE, 'root')
EMULATOR = os.path.join(ROOT, 'qemu-i386')
_ZLIB = os.path.join(ROOT, 'usr', 'i686-w64-mingw32', 'lib', 'zlib1.dll')
_BINFMT = '/proc/sys/fs/binfmt_misc'
# An ELF program for the Intel 386, and which bits of its head count. F: the emulator is opened now, outside of the root.
_REGISTRATION = (':i386:M::' r'\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x03\x00:'
                 r'\xff\xff\xff\xff\xff\xfe\xfe\xfc\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff:%s:F')


def _mount(*words):
    subprocess.run(['mount', *words], check=True)


def enter():
    """Makes the kernel run 32-bit programs by the emulator, and the root one that they can live in."""
    _mount('-t', 'binfmt_misc', 'none', _BINFMT)
    with open(_BINFMT + '/register', 'w') as file:
        file.write(_REGISTRATION % EMULATOR)
    for name in ('dev', 'proc', 'tmp'):
        os.makedirs(os.path.join(ROOT, name), exist_ok=True)
    _mount('--rbind', '/dev', ROOT + '/dev')
    _mount('-t', 'proc', 'proc', ROOT + '/proc')
    _mount('-t', 'tmpfs', 'none', ROOT + '/tmp')
    os.makedirs(ROOT + OUT, exist_ok=True)
    _mount('--bind', OUT, ROOT + OUT)


class Emulated(Wine):
    """The 32-bit Wine: it takes the product itself and the media for 32-bit systems."""

    loader = '/usr/lib/wine/wine'
    server = '/usr/lib/wine/wineserver32'
    architecture = 'win32'
    program = os.path.join(OUT, 'win32', PROGRAM)
    samples = os.path.join(OUT, 'samples')
    prototype = os.path.join(BASE, 'prototype')
    patience = 8

    def __init__(self):
        super().__init__(screen=False)

    def environment(self, prefix, overrides='', debug='-all'):
        own = super().environment(prefix, overrides, debug)
        kept = {name: text for name, text in own.items() if name.startswith('WINE')}
        # The root has no list of users: without the name the machine's user would be another one than under the other Wine.
        return dict(kept, USER=pwd.getpwuid(os.getuid()).pw_name, PATH='/usr/lib/wine', HOME=BASE, LC_ALL='C.UTF-8',
                    WINESERVER=self.server)

    def place(self, folder):
        def inside():
            os.chroot(ROOT)
            os.chdir(folder)
        return {'preexec_fn': inside}

    def version(self):
        with open(os.path.join(ROOT, 'complete')) as file:
            return file.read().strip()

    def make_prefix(self):
        system = os.path.join(self.prototype, 'drive_c', 'windows', 'system32')
        os.makedirs(system)
        shutil.copy(_ZLIB, system)  # the first start needs it already
        super().make_prefix()
