"""Interactive runs, used by mouse and keyboard as a person would."""
import time

import support
from person import ABOUT, ACTION, CANCEL, COMPONENT, CONTINUE, MAIN, MESSAGE, PROGRESS, STATUS, TITLE, Person
from support import INI, LOG_ROOT, WineTest, batch, tool

MARK = batch(['echo done> C:\\%s.txt'])
THROUGH = '[person]\npress=continue\npress=continue\n'  # the welcome and the end
LOGON = '[logon]\npassword=%s\nagain=%s\n'
BUTTONS = (ABOUT, CONTINUE, CANCEL)


class InteractiveTest(WineTest):
    """Each test begins with the window of a product whose first component waits for C:\\go.txt."""

    dpi = 96

    @classmethod
    def prepare(cls):
        cls.machine.preset('user', 'Control Panel\\Desktop', {'LogPixels': cls.dpi})
        cls.machine.preset('system', 'Software\\Fonts', {'LogPixels': cls.dpi})
        cls.person = Person(cls.machine)

    def small_product(self, last=('run.bat', MARK % 'last', ''), application=None):
        self.product('Small', {'Waiting': ('waiting.exe', None, ''), 'Last': last}, application)
        self.put('C:\\Media\\Waiting\\waiting.exe', tool('waiting'))

    def start(self, declared=THROUGH):
        process = self.start_program('/is=' + INI, declared)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        if process.poll() is None:
            self.machine.stop()
            process.wait(20)

    def go(self):
        self.write('C:\\go.txt', '')

    def begin_work(self):
        self.person.ready()
        self.person.press('Return')
        self.wait_for('C:\\waiting.txt')
        return self.person.main_window()


class Window(InteractiveTest):
    def test_a_run_from_the_welcome_to_the_end_and_its_log(self):
        for key, text in (('.html', 'log'), ('log\\shell\\open\\command', '"C:\\viewer.exe" "%1"')):
            self.machine.run('reg', 'add', 'HKLM\\Software\\Classes\\' + key, '/ve', '/d', text, '/f')
        self.put('C:\\viewer.exe', tool('viewer'))
        self.small_product()
        process = self.start('[person]\npress=about\npress=continue\npress=about\npress=continue\n'
                             '[answer]\ntext=The log of this run is\nanswer=ok\n')

        window = self.person.ready()
        self.person.picture('window-welcome')
        self.assertEqual(window.caption, TITLE)
        self.assertIn('Welcome to the QX Installation Assistant Installation Harness.', window.text(STATUS))
        self.assertIn("Click 'Continue' to proceed", window.text(MESSAGE))
        order = []
        for _ in range(4):
            order.append(self.person.main_window().focus)
            self.person.press('Tab')
        self.assertEqual(order, [CONTINUE, CANCEL, STATUS, ABOUT])
        self.person.press('alt+a')
        self.assertIn('/s  silent run', self.person.dialog('The log of this run is').texts)
        self.person.picture('about-box')
        self.person.press('Return')

        self.person.press('alt+n')
        self.wait_for('C:\\waiting.txt')
        window = self.person.main_window()
        self.assertEqual([window.control(button).enabled for button in BUTTONS], [0, 0, 0])
        self.assertEqual((window.text(MESSAGE), window.text(COMPONENT), window.text(PROGRESS)),
                         ('Installing Small', 'Waiting', '0%'))
        actions = {self.person.main_window().text(ACTION) for _ in range(8)}
        self.assertGreater(len(actions), 1, 'the status line stands still: %s' % actions)
        self.assertTrue(window.control(STATUS).scrolls)
        self.person.picture('window-at-work')
        before = window.frame
        self.person.drag(window, 60, 40)
        moved = self.person.main_window().frame
        # How far depends on where the busy display takes the drag to begin.
        self.assertTrue(moved.left > before.left and moved.top > before.top, 'the window does not move')

        self.go()
        window = self.person.finished()
        self.person.picture('window-at-the-end')
        self.assertEqual((window.text(MESSAGE), window.text(PROGRESS), window.focus),
                         ('All completed successfully', '100%', CONTINUE))
        self.assertTrue(window.text(STATUS).endswith('Finish'))
        self.person.click(window.control(ABOUT))
        self.wait_for('C:\\viewed.txt')
        log = '"%s\\Small\\QX Installation Assistant.html"' % LOG_ROOT
        self.assertEqual(self.read('C:\\viewed.txt').strip().lower(), log.lower())
        self.person.press('alt+f')
        self.assertEqual(process.wait(20), 0)
        self.assertTrue(self.exists('C:\\last.txt'))

    def test_heading_of_a_failed_run_tells_that_the_list_has_more(self):
        names = ['Gone %d' % number for number in range(1, 9)]
        self.product('Small', {name: ('gone.exe', None, '') for name in names})
        process = self.start()
        self.person.ready()
        self.person.press('Return')
        window = self.person.finished()
        self.person.picture('window-failed')
        reasons = ['Installation of %s failed (installation file could not be found)' % name for name in names]
        heading = window.text(MESSAGE).splitlines()
        self.assertEqual(heading[:3], ['One or more components failed to install successfully.', '', reasons[0]])
        self.assertEqual((heading[-1], heading[2:-1]), ('...', reasons[:len(heading) - 3]))
        self.assertTrue(window.text(STATUS).endswith('\n'.join(reasons)), window.text(STATUS))
        self.person.press('Return')
        self.assertEqual(process.wait(20), 1)

    def test_cancel_before_the_start_ends_with_2(self):
        self.small_product()
        for leave in ('the button', 'Escape', 'its caption'):
            with self.subTest(leave=leave):
                process = self.start('[person]\npress=%s\n' % ('close' if leave == 'its caption' else 'cancel'))
                window = self.person.ready()
                self.assertFalse(window.control(STATUS).scrolls)
                if leave == 'the button':
                    self.person.click(window.control(CANCEL))
                elif leave == 'Escape':
                    self.person.press('Escape')
                else:
                    self.person.close(window)
                self.assertEqual(process.wait(20), 2)
                self.assertFalse(self.exists('C:\\waiting.txt'))
                self.assertLogged(self.log('Small'), 'Run ended at user request', 'Warning')

    def test_closing_in_the_middle_asks_and_ends_after_the_component(self):
        self.small_product()
        process = self.start('[person]\npress=continue\npress=close while Installing Small\npress=close while Waiting\n'
                             '[answer]\ntext=still at work\nanswer=no\n[answer]\ntext=still at work\nanswer=yes\n')
        window = self.begin_work()
        self.person.close(window)
        self.person.dialog('still at work')
        self.person.picture('closing-question')
        self.person.press('Return')  # No is the button that Enter presses
        enabled = self.person.main_window(lambda window: window.frame.enabled)
        time.sleep(1)  # the box leaves the screen behind that, and would take the click
        self.person.close(enabled)
        self.person.dialog('still at work')
        self.person.press('y')
        self.person.main_window(lambda window: 'as soon as' in window.text(MESSAGE))
        self.assertIsNone(process.poll())
        self.go()
        self.assertEqual(process.wait(20), 2)
        self.assertFalse(self.exists('C:\\last.txt'))
        record = self.record('Small')
        self.assertEqual((record['Succeeded'], record['Abort Reason']), (0, 'User aborted run'))
        self.assertLogged(self.log('Small'), 'QX Installer Run complete')

    def test_a_failing_run_tells_its_reasons(self):
        self.small_product(('gone.exe', None, ''))
        process = self.start('[person]\npress=continue\npress=cancel\n')
        self.begin_work()
        self.go()
        window = self.person.finished()
        self.person.picture('window-failed')
        reason = 'Installation of Last failed (installation file could not be found)'
        self.assertEqual(window.text(MESSAGE),
                         'One or more components failed to install successfully.\n\n' + reason)
        self.assertTrue(window.text(STATUS).endswith(reason))
        self.person.press('Escape')
        self.assertEqual(process.wait(20), 1)

    def test_a_second_copy_brings_the_first_to_the_front(self):
        self.small_product()
        process = self.start('[person]\npress=cancel\n')
        self.person.ready()
        notepad = self.machine.start('notepad')
        self.addCleanup(notepad.wait, 20)
        self.person.wait_for('Notepad')
        self.assertIsNone(self.person.main_window().focus)
        self.assertEqual(self.run_program('/is=' + INI, declared='[machine]\nanother copy=yes\n'), 3)
        self.assertIsNotNone(self.person.main_window(lambda window: window.focus is not None))
        self.person.press('Escape')
        self.assertEqual(process.wait(20), 2)
        self.machine.stop()

    def test_an_ini_file_that_is_missing_is_told(self):
        process = self.start_program('/is=C:\\gone.ini', '[choose Select Application Ini File]\n[answer]\ntext=Failed to find application ini\nanswer=ok\n')
        self.addCleanup(self.end, process)
        self.person.dialog('File &name')
        self.person.press('Escape')
        self.person.dialog('Failed to find application ini file.')
        self.person.press('Return')
        self.assertEqual(process.wait(20), 1)


class SilentRun(InteractiveTest):
    def test_a_failing_run_shows_its_icon_and_tip_until_its_end(self):
        self.small_product(('gone.exe', None, ''))
        process = self.start_program('/s /is=' + INI)
        self.addCleanup(self.end, process)
        self.wait_for('C:\\waiting.txt')
        self.assertEqual(self.person.tip(10), TITLE + ' is running')
        self.person.picture('tray-icon')
        self.assertNotIn(MAIN, [window.frame.kind for window in self.person.windows()])
        self.go()
        self.assertEqual(process.wait(20), 1)
        self.assertIsNone(self.person.tip())


class PasswordWindow(InteractiveTest):
    KEY = 'SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon'
    APPLICATION = support.APPLICATION.replace('RequestLogonDetails=false', 'RequestLogonDetails=true') % 'Small'

    def winlogon(self, name):
        return self.machine.exported(self.KEY).get(self.KEY, name)

    def test_mismatched_then_matching_switches_automatic_logon_on_until_the_end(self):
        self.small_product(application=self.APPLICATION)
        process = self.start(LOGON % ('secret', 'Secret') + LOGON % ('secret', 'secret')
                             + '[answer]\ntext=do not match\nanswer=ok\n' + THROUGH)
        window = self.person.dialog('account to enable autologon after reboots')
        self.person.picture('password-window')
        self.person.type('secret')
        self.person.press('Tab')
        self.person.type('Secret')
        self.person.press('Return')
        self.person.dialog('The two passwords do not match, please try again')
        self.person.picture('password-mismatch')
        self.assertNotEqual(self.winlogon('AutoAdminLogon'), '1')
        self.person.press('Return')
        self.person.wait_for(window.frame.kind, lambda seen: seen.frame.enabled and 'autologon' in seen.texts)
        self.person.type('secret')
        self.person.press('Tab', 'ctrl+a')
        self.person.type('secret ')
        self.person.press('Return')
        self.begin_work()
        self.assertEqual([self.winlogon(name) for name in ('AutoAdminLogon', 'DefaultPassword', 'AltDefaultPassword')],
                         ['1', 'secret', 'secret'])
        self.go()
        self.person.finished()
        self.person.press('Return')
        self.assertEqual(process.wait(20), 0)
        self.assertEqual([self.winlogon(name) for name in ('AutoAdminLogon', 'DefaultPassword')], ['0', ''])
        rows = self.log('Small')
        self.assertLogged(rows, 'Password captured for user')
        self.assertNotLogged(rows, 'secret')

    def test_cancelled_ends_the_run_and_writes_nothing(self):
        self.small_product(application=self.APPLICATION)
        for key in ('AutoAdminLogon', 'DefaultPassword'):
            self.preset(self.KEY, key, 'site')
        for arguments in ('/is=' + INI, '/s /is=' + INI):
            with self.subTest(arguments=arguments):
                process = self.start_program(arguments, '[logon]\ncancel=yes\n')
                self.addCleanup(self.end, process)
                self.person.dialog('account to enable autologon after reboots')
                self.person.press('Escape')
                self.assertEqual(process.wait(20), 2)
                self.assertEqual([self.winlogon(name) for name in ('AutoAdminLogon', 'DefaultPassword')],
                                 ['site', 'site'])


class LargeFonts(InteractiveTest):
    dpi = 144

    def test_every_control_has_its_place(self):
        self.small_product(('gone.exe', None, ''))
        process = self.start()
        self.begin_work()
        self.go()
        window = self.person.finished()
        self.person.picture('window-at-144-dpi')
        self.assertGreater(window.frame.right - window.frame.left, 640)  # half as large again
        texts = [window.control(number) for number in (MESSAGE, ACTION, COMPONENT, PROGRESS, STATUS, *BUTTONS)]
        for control in texts:
            self.assertGreater(control.left, window.frame.left)
            self.assertLess(control.right, window.frame.right)
            self.assertLess(control.bottom, window.frame.bottom)
        for upper, lower in zip(texts, texts[1:6]):
            self.assertLessEqual(upper.bottom, lower.top)
        self.person.press('Return')
        self.assertEqual(process.wait(20), 1)
