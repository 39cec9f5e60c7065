"""Files and folders that whoever runs `qxia` may not read: a line that names them, and an exit code."""
import os
import shutil
import subprocess
import tempfile
import unittest

from test_rehearse import INIS, QXIA

NOBODY = 65534
CLOSED = 'cannot be read (Permission denied)'
FILES = dict({'disc/' + path: text for path, text in INIS.items()}, **{
    'disc/Packages/More/more.ini': '[More]\nInstall=more.bat\n', 'disc/Packages/More/more.bat': '@exit /b 0\n',
    'one.html': 'a log', 'machines/PC1/one.html': 'a log', 'machines/PC1/one.reg': 'REGEDIT4\n'})
FILES['disc/product.ini'] += 'More=More\\more.ini\n'

ROWS = (  # what is closed, the command line, its exit code, and what it prints
    ('disc', 'check disc', 64, 'disc ' + CLOSED),
    ('disc', 'rehearse disc', 64, 'disc ' + CLOSED),
    ('disc/Packages/More', 'check disc', 64, 'disc/Packages/More ' + CLOSED),
    ('disc/Packages/More', 'rehearse disc', 64, 'disc/Packages/More ' + CLOSED),
    ('disc/Packages/More', 'machine disc', 64, 'disc/Packages/More ' + CLOSED),
    ('disc/app.ini', 'check disc --ini app.ini', 64, 'app.ini: cannot be read: Permission denied'),
    ('disc/product.ini', 'check disc --ini app.ini', 1, 'product.ini:1: error QX118: The file cannot be read: Permission denied.'),
    ('disc/product.ini', 'rehearse disc --ini app.ini', 64, 'disc/product.ini ' + CLOSED),
    ('disc/product.ini', 'machine disc --ini app.ini', 64, 'disc/product.ini ' + CLOSED),
    ('disc/Packages/part.vbs', 'check disc', 1, "part.ini:2: error QX118: The component's file part.vbs cannot be read."),
    ('disc/Packages/part.vbs', 'rehearse disc', 64, 'disc/Packages/part.vbs ' + CLOSED),
    ('one.html', 'log one.html', 1, 'one.html ' + CLOSED),
    ('machines', 'fleet machines', 64, 'machines ' + CLOSED),
    ('machines/PC1', 'fleet machines', 1, 'machines/PC1 ' + CLOSED),
    ('machines/PC1/one.html', 'fleet machines', 1, 'machines/PC1/one.html ' + CLOSED),
    ('machines/PC1/one.reg', 'fleet machines', 1, 'machines/PC1/one.reg ' + CLOSED),
)


class Unreadable(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        os.chmod(self.folder, 0o755)
        self.command = shutil.copy(QXIA, self.folder)
        for path, text in FILES.items():
            file = os.path.join(self.folder, path)
            os.makedirs(os.path.dirname(file), exist_ok=True)
            with open(file, 'w', encoding='latin-1') as output:
                output.write(text)
        os.mkdir(os.path.join(self.folder, 'tmp'))
        os.chmod(os.path.join(self.folder, 'tmp'), 0o777)

    def run_as_nobody(self, words):
        """As an ordinary user, whom the rights of files bind."""
        someone = {'user': NOBODY, 'group': NOBODY, 'extra_groups': []} if os.geteuid() == 0 else {}
        run = subprocess.run([self.command, *words.split()], cwd=self.folder, capture_output=True, text=True,
                             env=dict(os.environ, TMPDIR=os.path.join(self.folder, 'tmp')), timeout=60, **someone)
        return run.returncode, run.stdout + run.stderr

    def test_what_cannot_be_read_is_named(self):
        for closed, words, code, text in ROWS:
            with self.subTest(closed=closed, command=words):
                path = os.path.join(self.folder, closed)
                rights = os.stat(path).st_mode
                os.chmod(path, 0)
                ended, printed = self.run_as_nobody(words)
                os.chmod(path, rights)
                self.assertIn(text, printed)
                self.assertEqual(ended, code)
