"""A product on two discs, with real packages on both, and the disc changed while the program waits for it."""
import os
import shutil
import subprocess
import time

import support
from person import Person
from support import LOG_ROOT, OUT, PROGRAM, WineTest, tool

PACKAGES = os.path.join(OUT, 'samples', 'harbour_suite', 'disc', 'Packages')
LOCAL = LOG_ROOT + '\\' + PROGRAM
UNINSTALL = 'Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall'


class TwoDiscs(WineTest):
    @classmethod
    def prepare(cls):
        folder = os.path.join(OUT, 'endtoend', 'discs')
        shutil.rmtree(folder, ignore_errors=True)
        cls.first = cls.disc(folder, 'OFFICE1', 'NextVolumeName=OFFICE2\n', 'Runtime')
        # A label that differs in letter case is the same.
        cls.second = cls.disc(folder, 'Office2', 'PreviousVolumeName=OFFICE1\n', 'Core')
        cls.machine.insert_disc('d', cls.first, 'OFFICE1')

    @staticmethod
    def disc(folder, label, lines, component):
        """A disc with the program, its ini files and one of the sample's packages."""
        disc = os.path.join(folder, label)
        package = component.lower() + '.msi'
        texts = {
            '.windows-label': label + '\n',
            PROGRAM.replace('.exe', '.ini'): support.APPLICATION.replace('C:\\Media', 'CDROM(\\Packages)') % 'Office',
            'product.ini': '[Product]\nName=Office\n%s[General]\nVersion=1.0\n[Actions]\n%s=%s\\c.ini\n' % (
                lines, component, component),
            os.path.join('Packages', component, 'c.ini'): support.COMPONENT % (component, package)}
        for path, text in texts.items():
            os.makedirs(os.path.dirname(os.path.join(disc, path)), exist_ok=True)
            with open(os.path.join(disc, path), 'w', newline='\r\n' if path.endswith('.ini') else '\n') as file:
                file.write(text)
        shutil.copy(os.path.join(PACKAGES, component, package), os.path.join(disc, 'Packages', component))
        shutil.copy(support.EXECUTABLE, os.path.join(disc, PROGRAM))
        return disc

    def setUp(self):
        super().setUp()
        self.put('C:\\disc.exe', tool('disc'))
        self.insert(self.first)
        self.put(LOG_ROOT + '\\at.exe', tool('recorder'))

    def insert(self, disc):
        """Changes the disc while the machine runs."""
        self.assertEqual(self.machine.run('C:\\disc.exe', disc), 0)

    def start_from_disc(self):
        """The program on the disc starts its local copy and ends, which frees the drive."""
        self.assertEqual(self.machine.run('D:\\' + PROGRAM, '/s'), 0)
        person = Person(self.machine)
        person.dialog('Insert the disk labelled OFFICE2 and click OK to continue')
        return person

    def wait_for_the_end(self):
        """The local copy is nobody's child any more: the log and then the process list tell."""
        self.wait_for(self.log_file('Office'), text='QX Installer Run complete')
        deadline = time.time() + 10
        while LOCAL in subprocess.run(['ps', '-eo', 'args'], capture_output=True, text=True).stdout:
            self.assertLess(time.time(), deadline, 'the local copy does not end')
            time.sleep(0.1)
        return self.log('Office')

    def installed(self):
        key = self.machine.exported(UNINSTALL)
        return {key.values(UNINSTALL + '\\' + child).get('DisplayName') for child in key.children(UNINSTALL)}

    def test_second_disc_put_in_while_the_prompt_waits(self):
        person = self.start_from_disc()
        self.assertIn('local launch successful', self.read(LOG_ROOT + '\\IAStartupLog.txt'))
        self.assertEqual(self.record('Office')['NextVolumeName'], 'OFFICE2')
        self.assertIn('Harbour Runtime', self.installed())
        self.assertNotIn('Harbour Core', self.installed())
        person.picture('disk-prompt')
        person.press('Return')
        person.dialog('Error - cannot find the disk named OFFICE2')
        person.picture('disk-window')
        self.insert(self.second)
        person.press('Return')
        person.dialog('Insert the disk labelled OFFICE2 and click OK to continue')
        person.press('Return')
        log = self.wait_for_the_end()
        self.assertIn('Harbour Core', self.installed())
        record = self.record('Office')
        self.assertEqual(record['Succeeded'], 0xffffffff)
        self.assertEqual(self.record('Office', 'Core')['SequenceNumber'], 200)
        self.assertLogged(log, 'Starting Local instance of QXIA')
        self.assertLogged(log, 'Disk found in drive D:')
        self.assertRegex(self.read('C:\\recorded.txt'),
                         r'^AT \d\d:\d\d C:\\windows\\System32\\cmd.exe /c del "%s"\s*$' % LOCAL.replace('\\', r'\\'))

    def test_cancelled_prompt_ends_the_run(self):
        person = self.start_from_disc()
        person.press('Return')
        person.dialog('Error - cannot find the disk named OFFICE2')
        person.press('Escape')
        self.wait_for_the_end()
        self.assertEqual(self.record('Office')['Abort Reason'], 'User cancelled disk change prompt')
