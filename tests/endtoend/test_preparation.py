"""What a medium asks for before and beside its components, with the real system; stand-ins for net record its calls."""
import os
import re
import subprocess
import tempfile
import unittest

import support
from person import Person
from support import INI, PRODUCTS, WineTest, tool

PAGE = os.path.join(support.HERE, '..', '..', 'docs', 'preparing.md')
LOCATIONS = 'Software\\Tarvel\\Installation\\Locations'


def documented_files():
    """The files of the documentation's worked example: (path, text)."""
    with open(PAGE) as page:
        example = page.read().split('## A worked example')[1].split('\n## ')[0]
    return re.findall(r'^`([^`\n]+)`\n\n```\w*\n(.*?)^```', example, re.M | re.S)


class Preparation(WineTest):
    def setUp(self):
        super().setUp()
        self.put('C:\\QX\\net.exe', tool('recorder'))
        self.machine.run('reg', 'delete', 'HKLM\\System\\CurrentControlSet\\Services\\lanmanserver\\Shares', '/f')

    def example(self):
        for path, text in documented_files():
            self.write('C:\\Media\\' + path, text)
        self.preset('Software\\Tarvel\\Installation', 'Server Type', 'dcunit')

    def recorded(self):
        return self.read('C:\\recorded.txt').splitlines() if self.exists('C:\\recorded.txt') else []

    def test_documented_example_does_what_its_page_says(self):
        self.example()
        for version in ('v1.1.0.3', 'V1.0.0.1'):
            self.write('C:\\QX\\Root\\Tools\\%s\\old.txt' % version, 'old')
            os.chmod(self.machine.host('C:\\QX\\Root\\Tools\\%s\\old.txt' % version), 0o444)
        self.write('C:\\QX\\Root\\Tools\\other\\kept.txt', 'kept')
        self.assertEqual(self.run_program(), 0)
        self.assertEqual(self.recorded(), [
            'net use K: \\\\10.1.2.3\\packages /user:QX\\Installer secret /persistent:no',
            'net share "Office Data"="C:\\QX\\Data" /grant:everyone,full',
            'net use K: /d'])
        self.assertEqual(self.machine.exported(LOCATIONS).values(LOCATIONS), {'Office Data': 'C:\\QX\\Data'})
        for folder in ('C:\\QX\\Spool', 'C:\\QX\\Data\\Templates'):
            self.assertTrue(os.path.isdir(self.machine.host(folder)), folder)
        self.assertFalse(self.exists('C:\\QX\\Replica'))
        self.assertEqual(sorted(os.listdir(self.machine.host('C:\\QX\\Root\\Tools'))), ['other', 'v1.2.0.15'])
        copied = self.machine.host('C:\\QX\\Root\\Tools\\v1.2.0.15')
        self.assertEqual(sorted(os.listdir(copied)), ['more', 'tools.ini', 'tools.txt'])
        self.assertEqual(os.listdir(os.path.join(copied, 'more')), ['spare.txt'])
        self.assertEqual(self.read('C:\\manual.txt').split(), ['C:\\QX\\Data\\Manual', '/language', '44'])
        self.assertLogged(self.log('Office Suite'), 'Cost check - share=Office Data cost=2000')

    def test_documented_check_refuses_the_product(self):
        self.example()
        os.environ['QX_NO_PRINTER'] = '1'
        self.addCleanup(os.environ.pop, 'QX_NO_PRINTER')
        key = 'HKLM\\%s\\Office Suite' % PRODUCTS
        self.assertEqual(self.run_program(declared=(
            '[program wscript.exe "C:\\Media\\Checks\\server.vbs" /role print]\n'
            'set=%s\\Abort Reason=This machine is no print server.\nset=%s\\Succeeded=dword:00000000\n' % (key, key))), 1)
        self.assertEqual(self.record('Office Suite')['Abort Reason'],
                         'This machine is no print server.\r\nPre-install checks failed')
        self.assertEqual(self.recorded(), [])
        self.assertFalse(self.exists('C:\\manual.txt'))

    def test_check_that_only_fails_is_told_and_holds_nothing_back(self):
        self.example()
        self.write('C:\\Media\\Checks\\server.vbs', 'WScript.Quit 9\n')
        self.assertEqual(self.run_program(), 0)
        self.assertLogged(self.log('Office Suite'), 'server.vbs" /role print returned error 9', 'ERROR')
        self.assertTrue(self.exists('C:\\manual.txt'))

    def test_check_that_aborts_refuses_the_product(self):
        self.example()
        self.write('C:\\Media\\Checks\\server.vbs', 'CreateObject("WScript.Shell").RegWrite '
                   '"HKLM\\%s\\Process Return", "Abort"\n' % PRODUCTS)
        self.assertEqual(self.run_program(), 1)
        self.assertEqual(self.record('Office Suite')['Abort Reason'], 'Pre-install checks failed')
        self.assertFalse(self.exists('C:\\manual.txt'))

    def test_drive_that_is_too_small_fails_the_component_alone(self):
        self.example()
        free = os.statvfs(self.machine.host('C:'))
        self.write('C:\\Media\\Packages\\Tools\\v1.2.0.15\\tools.ini', dict(documented_files())[
            'Packages\\Tools\\v1.2.0.15\\tools.ini'].replace('2000', str(free.f_blocks * free.f_frsize)))
        self.assertEqual(self.run_program(), 1)
        self.assertLogged(self.log('Office Suite'), 'Not enough disk space on C: to complete installation', 'ERROR')
        self.assertFalse(self.exists('C:\\QX\\Root'))
        self.assertTrue(self.exists('C:\\manual.txt'))


class SmallDrive(WineTest):
    """A drive that fills up while a component is copied to it."""

    @classmethod
    def prepare(cls):
        cls.drive = tempfile.mkdtemp()  # outside of the machine, which could not be made anew while it is mounted
        if subprocess.run(['mount', '-t', 'tmpfs', '-o', 'size=128k', 'tmpfs', cls.drive],
                          stderr=subprocess.DEVNULL).returncode:
            raise unittest.SkipTest('this machine mounts no small file system')
        cls.addClassCleanup(subprocess.run, ['umount', '-l', cls.drive], check=True)
        os.symlink(cls.drive, os.path.join(cls.machine.folder, 'dosdevices', 'e:'))

    def test_copy_to_it_fails_and_is_marked_as_not_finished(self):
        self.product('Small', {'Big': ('z.txt', 'z' * 200000, '')},
                     support.APPLICATION.replace('CopyOpRoot=N/A', 'CopyOpRoot=E:\\Root') % 'Small')
        self.write('C:\\Media\\Big\\c.ini', support.COMPONENT.replace('CopyOp=N/A', 'CopyOp=1') % ('Big', 'z.txt'))
        process = self.start_program('/s /is=' + INI, '[drive e]\nfree=131072\n[answer]\ntext=Disk full\nanswer=ok\n'
                                     '[answer]\ntext=Failed to copy component\nanswer=ok\n')
        person = Person(self.machine)
        for text in ('Disk full', 'Failed to copy component to E:\\Root\\Big'):
            person.dialog(text)
            person.press('Return')
        self.assertEqual(process.wait(30), 1)
        self.assertIn('QX copy not finished.txt', os.listdir(os.path.join(self.drive, 'Root', 'Big')))
        self.assertEqual(self.record('Small')['Abort Reason'], 'Copying to E:\\Root\\Big failed\r\n'
                         'Installation of Big failed a copying operation.')
