"""Products whose components ask for restarts, through real restarts and logons of the machine."""
import os

import support
from person import COMPONENT, CONTINUE, MESSAGE, PROGRESS, STATUS, Person
from support import INI, WineTest, batch, tool

SCRIPT = 'C:\\users\\%s\\Start Menu\\Programs\\Startup\\Start QX Installation Assistant.vbs'
WINLOGON = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
COMPONENTS = ('Base', 'Driver', 'Tools', 'Service', 'Fonts', 'Manuals')
REQUESTS = {'Driver': 'immediate', 'Service': 'immediate', 'Fonts': 'deferred'}
RESTARTS_AFTER = ('Driver', 'Service', 'Manuals')  # the deferred one comes after the last component


def component(name):
    if name not in REQUESTS:
        return 'run.bat', batch(['echo %s>> C:\\ran.txt' % name]), ''
    return 'run.vbs', (
        'Set files = CreateObject("Scripting.FileSystemObject")\n'
        'files.OpenTextFile("C:\\ran.txt", 8, True).WriteLine "%s"\n'
        'CreateObject("WScript.Shell").RegWrite "HKLM\\Software\\Tarvel\\Installation\\Reboot", "%s"\n'
        % (name, REQUESTS[name])), ''


class RestartTest(WineTest):
    logon = 'false'

    @classmethod
    def prepare(cls):
        cls.person = Person(cls.machine)

    def setUp(self):
        super().setUp()
        application = support.APPLICATION.replace('LogonDetails=false', 'LogonDetails=' + self.logon)
        self.product('Six', {name: component(name) for name in COMPONENTS}, application % 'Six')
        self.machine.record_restarts(tool('wineboot'))

    def ran(self):
        return self.read('C:\\ran.txt').split()

    def script(self):
        return SCRIPT % os.environ.get('USER', 'root')

    def restart_asked_after(self, name):
        """The program ends and asks for a restart; then the machine is off."""
        self.wait_for('C:\\restart.txt', 60, '--kill')
        self.machine.stop()
        os.remove(self.machine.host('C:\\restart.txt'))
        self.assertEqual(self.ran(), list(COMPONENTS[:COMPONENTS.index(name) + 1]))

    def log_on(self):
        logon = self.machine.log_on()
        self.addCleanup(logon.wait, 60)

    def assertWholeRun(self):
        self.assertEqual(self.ran(), list(COMPONENTS))
        self.assertFalse(self.exists(self.script()))
        rows = self.log('Six')
        self.assertEqual([row.text for row in rows if row.type == 'ERROR'], [])
        for text, count in (('Re-booting now', 3), ('System has been re-booted by the application.', 3),
                            ('QX Installer Run complete', 1)):
            self.assertEqual(len([row for row in rows if row.text == text]), count, text)
        self.assertEqual(self.record('Six')['Succeeded'], 0xffffffff)
        run_values = self.record('')
        self.assertEqual((run_values['Rebooted'], run_values['Product']), ('', ''))


class Silent(RestartTest):
    logon = 'true'

    def winlogon(self):
        """Stops the machine: while one is starting, no other program must be started on it."""
        registry = self.machine.registry()
        return [registry.get(WINLOGON, name) for name in ('AutoAdminLogon', 'DefaultPassword')]

    def test_it_goes_on_by_itself_and_installs_each_component_once(self):
        process = self.start_program('/s /is=' + INI)
        self.person.dialog('account to enable autologon after reboots')
        self.person.type('secret')
        self.person.press('Tab')
        self.person.type('secret')
        self.person.press('Return')
        self.restart_asked_after('Driver')
        self.assertEqual(process.wait(20), 0)
        self.assertEqual(self.read(self.script()),
                         'Option Explicit\r\n\r\nDim oShell\r\n\r\n'
                         'Set oShell = CreateObject("Wscript.Shell")\r\n\r\n'
                         'oShell.Run """C:\\QX\\QX Installation Assistant.exe"" /s /is=C:\\Media\\app.ini"\r\n')
        for name in RESTARTS_AFTER[1:]:
            self.assertEqual(self.winlogon(), ['1', 'secret'])
            self.log_on()
            self.restart_asked_after(name)
        self.log_on()
        self.wait_for(self.log_file('Six'), 60, 'QX Installer Run complete')
        self.assertWholeRun()
        self.assertEqual(self.winlogon(), ['0', ''])


class Interactive(RestartTest):
    def test_its_window_comes_back_goes_on_and_waits_at_the_end(self):
        process = self.start_program('/is=' + INI)
        self.person.ready()
        self.person.press('Return')
        self.restart_asked_after('Driver')
        self.assertEqual(process.wait(20), 0)
        for name in RESTARTS_AFTER[1:]:
            self.log_on()
            self.restart_asked_after(name)
        self.log_on()
        window = self.person.finished()
        self.person.picture('window-after-restarts')
        self.assertEqual((window.text(MESSAGE), window.text(PROGRESS), window.focus),
                         ('All completed successfully', '100%', CONTINUE))
        self.assertEqual(window.text(COMPONENT), '')
        self.assertIn('Finish', window.text(STATUS))
        self.person.press('Return')
        self.wait_for(self.log_file('Six'), 60, 'QX Installer Run complete')
        self.assertWholeRun()
