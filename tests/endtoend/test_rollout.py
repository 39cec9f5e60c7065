"""The roll-out script, as an engine calls it at every start of the machine."""
import os

from support import INI, LOG_ROOT, WineTest, batch, tool

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'samples', 'rollout', 'rollout.cmd')
ASKS = ('CreateObject("WScript.Shell").RegWrite "HKLM\\Software\\Tarvel\\Installation\\Reboot", "immediate"\n'
        'CreateObject("Scripting.FileSystemObject").OpenTextFile("C:\\ran.txt", 8, True).WriteLine "Driver"\n')
RESTARTS = 3010 % 256  # as the host shows it
COUNTS = batch(['echo Tools>> C:\\ran.txt'])


class Rollout(WineTest):
    def setUp(self):
        super().setUp()
        self.put('C:\\rollout.cmd', SCRIPT)
        results = self.machine.host('C:\\results')
        self.machine.run('cmd', '/c', 'rd', '/s', '/q', 'C:\\results')
        self.assertFalse(os.path.exists(results))

    def call(self, version='1.0'):
        return self.machine.run('cmd', '/c', 'C:\\rollout.cmd', 'C:\\QX\\QX Installation Assistant.exe', INI, 'Four',
                                version, 'C:\\results')

    def collected(self):
        place = self.machine.host('C:\\results')
        return sorted(name for _, _, names in os.walk(place) for name in names) if os.path.exists(place) else []

    def ran(self):
        return self.read('C:\\ran.txt').split() if self.exists('C:\\ran.txt') else []

    def test_installs_once_and_hands_in_the_results(self):
        self.product('Four', {'Tools': ('run.bat', COUNTS, '')})
        self.assertEqual(self.call(), 0)
        self.assertEqual((self.ran(), self.collected()), (['Tools'], ['Four.html', 'Four.reg']))
        self.assertEqual(self.call(), 0)
        self.assertEqual(self.ran(), ['Tools'])

    def test_older_reg_exe_tells_the_same(self):
        self.product('Four', {'Tools': ('run.bat', COUNTS, '')})
        self.put('C:\\reg.exe', tool('old_reg'))
        self.addCleanup(os.remove, self.machine.host('C:\\reg.exe'))
        for _ in range(2):
            self.assertEqual((self.call(), self.ran()), (0, ['Tools']))
        self.assertEqual(self.collected(), ['Four.html', 'Four.reg'])

    def test_version_that_only_begins_so_is_another(self):
        self.product('Four', {'Tools': ('run.bat', COUNTS, '')})
        self.assertEqual(self.call(), 0)
        self.assertEqual((self.call('1'), self.ran()), (1, ['Tools', 'Tools']))

    def test_failure_is_told_and_tried_again(self):
        self.product('Four', {'Tools': ('run.bat', None, '')})
        self.assertEqual(self.call(), 1)
        self.assertEqual(self.collected(), ['Four.html', 'Four.reg'])
        self.write('C:\\Media\\Tools\\run.bat', COUNTS)
        self.assertEqual(self.call(), 0)
        self.assertEqual(self.ran(), ['Tools'])

    def test_restart_is_gone_on_with_by_the_next_call(self):
        self.product('Four', {'Driver': ('run.vbs', ASKS, ''), 'Tools': ('run.bat', COUNTS, '')})
        self.machine.record_restarts(tool('wineboot'))
        self.assertEqual(self.call(), RESTARTS)
        self.assertEqual((self.ran(), self.collected()), (['Driver'], []))
        self.assertEqual(self.call(), 0)
        self.assertEqual((self.ran(), self.collected()), (['Driver', 'Tools'], ['Four.html', 'Four.reg']))
        self.assertIn('QX Installer Run complete', self.read(LOG_ROOT + '\\Four\\QX Installation Assistant.html'))
