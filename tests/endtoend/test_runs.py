"""Runs of small products: switches, failures that end a run, a second run, a second copy, package exit codes."""
import os
import time

import support
from support import INI, LOG_ROOT, SHOTS, WineTest, batch, tool

MARK = batch(['echo done> C:\\%s.txt', 'exit /b 0'])


def marking(name):
    return 'run.bat', MARK.replace('%s', name), ''


FINE = 'run.bat', batch(['exit /b 0']), ''


def reports(component, value):
    """A component whose script reports its result itself."""
    return 'run.vbs', ('CreateObject("WScript.Shell").RegWrite "HKLM\\%s\\Products\\Small\\%s\\Process Return", "%s"\n'
                       % (support.INSTALLATION, component, value)), ''


class Outcomes(WineTest):
    def test_each_way_a_component_can_end(self):
        self.preset(support.INSTALLATION, 'Product', 'Small')
        self.product('Small', {
            'Fine': FINE, 'Odd': ('run.bat', batch(['exit /b 3']), ''), 'Gone': ('gone.exe', None, ''),
            'Broken': ('run.exe', 'no program\n', ''), 'Script': ('run.vbs', 'WScript.Quit 9\n', ''),
            'Passing': reports('Passing', 'Pass'), 'Failing': reports('Failing', 'Fail'),
            'Notes': ('notes.txt', 'notes', ''), 'Garbage': ('run.msi', 'no package\n', ''),
            'Old': FINE[:2] + ('Condition1=os=win95|win98\n',), 'Elsewhere': FINE[:2] + ('Condition1=productname=Other\n',),
            'Later': FINE[:2] + ('Condition1=Radar>=v3.0.0\n',), 'Last': FINE[:2] + ('Condition1=os=w2k3\n',)})
        self.assertEqual(self.run_program(declared=(
            '[program C:\\Media\\Broken\\run.exe]\ncannot start=193\n'
            '[program C:\\Media\\Garbage\\run.msi]\nexit=1627\n')), 1)


class Runs(WineTest):
    def test_unknown_switch_is_ignored(self):
        self.product('Small', {'One': marking('one')})
        self.assertEqual(self.run_program('/q /s /is=' + INI), 0)
        self.assertTrue(self.exists('C:\\one.txt'))
        self.assertLogged(self.log('Small'), 'Command line is /q /s /is=' + INI)
        self.assertEqual(self.record('Small')['Succeeded'], 0xffffffff)

    def test_no_actions_warns_and_succeeds(self):
        self.product('Empty', {})
        self.assertEqual(self.run_program(), 0)
        self.assertLogged(self.log('Empty'), 'No installation actions found', 'Warning')

    def test_failing_component_with_abort_on_fail_ends_the_run(self):
        self.product('Small', {'One': marking('one'), 'Two': ('gone.exe', None, 'AbortOnFail=True\n'),
                               'Three': marking('three')})
        self.assertEqual(self.run_program(), 1)
        self.assertEqual([self.exists('C:\\%s.txt' % name) for name in ('one', 'three')], [True, False])
        self.assertLogged(self.log('Small'), 'Aborting Installation')
        self.assertEqual(self.record('Small')['Abort Reason'],
                         'Installation of Two failed (installation file could not be found)')

    def test_failing_component_of_a_product_with_abort_on_fail_ends_the_run(self):
        application = support.APPLICATION.replace('AbortOnFail=false', 'AbortOnFail=true') % 'Small'
        self.product('Small', {'One': ('run.vbs', 'WScript.Quit 9\n', ''), 'Two': marking('two')}, application)
        self.assertEqual(self.run_program(), 1)
        self.assertFalse(self.exists('C:\\two.txt'))

    def test_script_that_reports_abort_ends_the_run(self):
        script = ('CreateObject("WScript.Shell").RegWrite "HKLM\\Software\\Tarvel\\Installation\\Products\\Small\\One'
                  '\\Process Return", "Abort"\n')
        self.product('Small', {'One': ('run.vbs', script, ''), 'Two': marking('two')})
        self.assertEqual(self.run_program(), 1)
        self.assertFalse(self.exists('C:\\two.txt'))

    def test_second_run_archives_the_first_log_and_starts_a_new_one(self):
        self.product('Small', {'One': marking('one')})
        self.assertEqual(self.run_program(), 0)
        first = self.log('Small')
        self.write('C:\\Media\\One\\run.bat', batch(['exit /b 3']))
        self.assertEqual(self.run_program(), 0)
        second = self.log('Small')
        self.assertEqual(len([row for row in second if row.text == 'QX Installer Run complete']), 1)
        self.assertLogged(second, 'returned Error number 3', 'ERROR')
        archive = self.machine.host(LOG_ROOT + '\\Small\\QXIA Archive Logs')
        kept = [support.read_log(os.path.join(archive, name)) for name in os.listdir(archive)]
        self.assertIn(first, kept)
        self.assertIn(second, kept)

    def test_second_copy_ends_with_3_and_touches_nothing(self):
        self.product('Small', {'One': ('waiting.exe', None, '')})
        self.put('C:\\Media\\One\\waiting.exe', tool('waiting'))
        first = self.start_program('/s /is=' + INI)
        self.wait_for('C:\\waiting.txt')
        support.Screen.picture(os.path.join(SHOTS, 'silent-run.png'))  # the icon in the notification area
        before = self.log('Small')
        self.assertEqual(self.run_program(declared='[machine]\nanother copy=yes\n'), 3)
        self.assertEqual(self.log('Small'), before)
        self.write('C:\\go.txt', '')
        self.assertEqual(first.wait(30), 0)

    def test_ini_beside_the_program_is_found_and_folders_may_hold_blanks(self):
        self.product('Small', {'One part': marking('one')})
        self.put('C:\\QX\\QX Installation Assistant.ini', self.machine.host(INI))
        self.put('C:\\QX\\product.ini', self.machine.host('C:\\Media\\product.ini'))
        self.assertEqual(self.run_program('/s'), 0)
        self.assertTrue(self.exists('C:\\one.txt'))


CORE = '''[package C:\\Media\\Core\\core.msi]
name=Harbour Core
version=2.1.0
code={31AAC605-C269-4189-B1F7-FE64CA95BFCE}
exit=%d
'''


class PackageExitCodes(WineTest):
    """A stand-in beside the program takes the place of msiexec, because Wine's cannot be made to end with these."""

    def setUp(self):
        super().setUp()
        self.put('C:\\QX\\msiexec.exe', tool('msiexec'))
        self.product('Small', {'Core': ('core.msi', None, 'Transform=dcunit=unit.mst,dcreplica=replica.mst\n')})
        self.put('C:\\Media\\Core\\core.msi', os.path.join(support.PACKAGES, 'Core', 'core.msi'))
        self.preset('Software\\Tarvel\\Installation', 'Server Type', 'dcreplica')

    def test_a_failure_is_told_and_recorded(self):
        for code in (1618, -1):
            with self.subTest(code=code):
                self.write('C:\\msiexec-code.txt', str(code))
                self.assertEqual(self.run_program(declared=CORE % code), 1)
                self.assertLogged(self.log('Small'), 'MSI installation of Harbour Core failed', 'ERROR')
                record = self.record('Small', 'Core')
                self.assertEqual((record['Process Return'], record['Message']),
                                 ('Fail', 'Installation failed returning error %d' % code))

    def test_the_command_line_is_the_documented_one(self):
        self.run_program(declared=CORE % 87)
        self.assertEqual(self.read('C:\\msiexec.txt'),
                         'msiexec /i  "C:\\Media\\Core\\core.msi" TRANSFORMS="C:\\Media\\Core\\replica.mst" /l*v '
                         '"c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Small\\MSI Log Files'
                         '\\Core.log" /qn\r\n')


class Restarts(WineTest):
    """The stand-in for msiexec asks for a restart; a recorder takes the place of what would restart the machine."""

    def restarted_after(self, code):
        self.put('C:\\QX\\msiexec.exe', tool('msiexec'))
        self.product('Small', {'Core': ('core.msi', 'no package', '')})
        self.machine.record_restarts(tool('wineboot'))
        self.write('C:\\msiexec-code.txt', str(code))
        self.assertEqual(self.run_program(declared='[program msiexec /i]\nexit=%d\n' % code, finished=False), 0)
        rows = self.log('Small')
        self.assertLogged(rows, 'Rebooting to complete the installation', 'Action')
        self.assertLogged(rows, 'Reboot status is immediate')
        self.wait_for('C:\\restart.txt')
        deadline = time.time() + 20  # the machine is told to restart after the program has ended
        while '--kill' not in self.read('C:\\restart.txt') and time.time() < deadline:
            time.sleep(0.1)
        self.machine.stop()
        self.assertIn('--kill', self.read('C:\\restart.txt'))

    def test_a_wish_to_restart_is_granted_at_once(self):
        self.restarted_after(3010)

    def test_a_restart_that_msiexec_began_is_carried_out(self):
        self.restarted_after(1641)


class WithoutDisplay(WineTest):
    @classmethod
    def prepare(cls):
        cls.machine.preset('user', 'Software\\Wine\\Drivers', {'Graphics': 'null'})

    def test_without_a_display_the_run_is_the_same(self):
        self.product('Small', {'One': marking('one')})
        self.assertEqual(self.run_program(), 0)
        self.assertTrue(self.exists('C:\\one.txt'))


class Systems(WineTest):
    """The eight systems that the program knows, as the real version call tells them."""

    ROWS = (  # Wine's name of the version, the program's name, the keyword
        ('win95', 'windows 95', 'win95'), ('win98', 'windows 98', 'win98'), ('winme', 'windows me', 'winme'),
        ('nt351', 'windows nt 3.51', 'winnt3'), ('nt40', 'windows nt 4.0', 'winnt4'),
        ('win2k', 'windows 2000', 'win2k'), ('winxp', 'windows xp', 'winxp'), ('win2003', 'windows 2003', 'w2k3'))

    def become(self, version, name):
        self.machine.run('reg', 'add', 'HKCU\\Software\\Wine\\AppDefaults\\' + support.PROGRAM,
                         '/v', 'Version', '/d', version, '/f')
        self.system = name

    def test_each_system_installs_its_own_component(self):
        self.product('Small', {keyword: ('run.bat', batch(['echo %s> C:\\system.txt' % keyword]),
                                         'Condition1=os=%s\n' % keyword) for _, _, keyword in self.ROWS})
        for version, name, keyword in self.ROWS:
            with self.subTest(system=name):
                self.become(version, name)
                self.assertEqual(self.run_program(), 0)
                self.assertEqual(self.read('C:\\system.txt').strip(), keyword)
                key = support.INSTALLATION
                self.assertEqual(self.machine.exported(key).get(key, 'Operating System').lower(), name)

    def test_each_system_goes_on_behind_a_restart(self):
        self.machine.record_restarts(tool('wineboot'))
        self.machine.keep_awake(tool('keeper'))
        asks = 'CreateObject("WScript.Shell").RegWrite "HKLM\\%s\\Reboot", "immediate"\n' % support.INSTALLATION
        for version, name, _ in self.ROWS:
            with self.subTest(system=name):
                self.wipe()
                self.become(version, name)
                self.product('Small', {'One': ('run.vbs', asks, ''), 'Two': marking('two')})
                self.assertEqual(self.run_program(finished=False), 0)
                self.assertFalse(self.exists('C:\\two.txt'))
                self.assertEqual(self.run_program(), 0)
                self.assertTrue(self.exists('C:\\two.txt'))


class Pace(WineTest):
    def test_log_is_complete_while_a_component_runs(self):
        self.product('Small', {'One': ('waiting.exe', None, '')})
        self.put('C:\\Media\\One\\waiting.exe', tool('waiting'))
        process = self.start_program('/s /is=' + INI)
        self.wait_for('C:\\waiting.txt')
        time.sleep(0.3)
        self.assertIn('waiting.exe', self.log('Small')[-1].text)
        process.kill()  # the machine goes down in the middle of the component
        self.machine.stop()
        self.assertIn('waiting.exe', self.log('Small')[-1].text)
        self.assertEqual(int(self.record('Small')['LastSequence']), 0)
