"""The product whose components ask for restarts, through real restarts and logons of the machine."""
import os
import re

import restarts
from person import COMPONENT, CONTINUE, MESSAGE, PROGRESS, STATUS, Person
from restarts import COMPONENTS, PRODUCT, RESTARTS_AFTER
from story import UNINSTALL
from support import OUT, PROGRAM, TRACE, WineTest, tool

PROFILE = 'C:\\users\\' + os.environ.get('USER', 'root')
STARTUP = PROFILE + '\\Start Menu\\Programs\\Startup'
SCRIPT = STARTUP + '\\Start QX Installation Assistant.vbs'
WINLOGON = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
LEAVE_NOTES = ('Charter', 'Driver', 'Tools', 'Fonts', 'Manuals')


class RestartTest(WineTest):
    logon = 'false'

    @classmethod
    def prepare(cls):
        cls.disc = restarts.make_disc(os.path.join(OUT, 'endtoend', 'restart', cls.__name__))
        ini = os.path.join(cls.disc, 'QX Installation Assistant.ini')
        with open(ini, newline='') as text:
            asked = text.read().replace('RequestLogonDetails=false', 'RequestLogonDetails=' + cls.logon)
        with open(ini, 'w', newline='') as text:
            text.write(asked)
        cls.machine.insert_disc('d', cls.disc, restarts.LABEL)
        cls.person = Person(cls.machine)

    def setUp(self):
        super().setUp()
        self.machine.record_restarts(tool('wineboot'))

    def start_from_disc(self, arguments, declared):
        """A run of which every part is traced, to be compared at its end. `declared`: what the person does in a rehearsal."""
        with open(os.path.join(restarts.SAMPLE, 'machine.txt')) as text:
            programs = re.sub(r'(?s)^.*?(?=\[program )', '', text.read())
        self.compared = self.comparison(arguments, programs + declared, program='', media=[self.disc], at='',
                                        options=['--label', restarts.LABEL], product=PRODUCT)
        with self.compared.trace() as output:
            return self.machine.start('D:\\' + PROGRAM, *arguments.split(), output=output, debug=TRACE)

    def reached(self):
        """The components whose turn has come, each time that it came."""
        found = (re.match(r'Next component is (\w+) v\.', row.text) for row in self.log(PRODUCT))
        return [match.group(1) for match in found if match]

    def restart_asked_after(self, name, process=None):
        """The program ends and asks for a restart; then the machine is off."""
        self.wait_for(restarts.NOTED, 60, '--kill')
        if process:
            self.assertEqual(process.wait(60), 0)
        self.assertTrue(restarts.stop_at_restart(self.machine))
        self.assertEqual(self.reached(), list(COMPONENTS[:COMPONENTS.index(name) + 1]))

    def log_on(self):
        with self.compared.trace() as output:
            logon = self.machine.log_on(output=output, debug=TRACE)
        self.addCleanup(logon.wait, 60)

    def assertWholeRun(self):
        self.assertEqual(self.reached(), list(COMPONENTS))
        self.assertEqual(tuple(self.read('C:\\Harbour Restart.txt').split()), LEAVE_NOTES)
        self.assertFalse(self.exists(SCRIPT))
        rows = self.log(PRODUCT)
        self.assertEqual([row.text for row in rows if row.type == 'ERROR'], [])
        for text, count in (('Re-booting now', 4), ('System has been re-booted by the application.', 4),
                            ('QX Installer Run complete', 1)):
            self.assertEqual(len([row for row in rows if row.text == text]), count, text)
        self.assertEqual(self.record(PRODUCT)['Succeeded'], 0xffffffff)
        run_values = self.record('')
        self.assertEqual((run_values['Rebooted'], run_values['Product']), ('', ''))
        listed = self.machine.exported(UNINSTALL)
        names = {listed.get(UNINSTALL + '\\' + key, 'DisplayName') for key in listed.children(UNINSTALL)}
        self.assertEqual(names & {'Harbour Service', 'Harbour Beacon'}, {'Harbour Service', 'Harbour Beacon'})
        self.compared.hold(0)


class Silent(RestartTest):
    logon = 'true'

    def winlogon(self):
        """Stops the machine: while one is starting, no other program must be started on it."""
        registry = self.machine.registry()
        return [registry.get(WINLOGON, name) for name in ('AutoAdminLogon', 'DefaultPassword')]

    def test_it_goes_on_by_itself_and_installs_each_component_once(self):
        process = self.start_from_disc('/s', '[logon]\npassword=secret\nagain=secret\n')
        self.person.dialog('account to enable autologon after reboots')
        self.person.type('secret')
        self.person.press('Tab')
        self.person.type('secret')
        self.person.press('Return')
        self.restart_asked_after('Driver', process)
        self.assertEqual(self.read(SCRIPT),
                         'Option Explicit\r\n\r\nDim oShell\r\n\r\n'
                         'Set oShell = CreateObject("Wscript.Shell")\r\n\r\n'
                         'oShell.Run """D:\\QX Installation Assistant.exe"" /s"\r\n')
        for name in RESTARTS_AFTER[1:]:
            self.assertEqual(self.winlogon(), ['1', 'secret'])
            self.log_on()
            self.restart_asked_after(name)
        self.log_on()
        self.wait_for(self.log_file(PRODUCT), 60, 'QX Installer Run complete')
        self.assertWholeRun()
        self.assertEqual(self.winlogon(), ['0', ''])


class Interactive(RestartTest):
    def test_its_window_comes_back_goes_on_and_waits_at_the_end(self):
        process = self.start_from_disc('', '[person]\npress=continue\npress=continue\n')
        self.person.ready()
        self.person.press('Return')
        self.restart_asked_after('Driver', process)
        for name in RESTARTS_AFTER[1:]:
            self.log_on()
            self.restart_asked_after(name)
        self.log_on()
        window = self.person.finished()
        self.person.picture('window-after-restarts')
        self.assertEqual((window.text(MESSAGE), window.text(PROGRESS), window.focus),
                         ('Harbour Restart is ready to use.', '100%', CONTINUE))
        self.assertEqual(window.text(COMPONENT), '')
        self.assertIn('Finish', window.text(STATUS))
        self.person.press('Return')
        self.wait_for(self.log_file(PRODUCT), 60, 'QX Installer Run complete')
        self.assertWholeRun()
