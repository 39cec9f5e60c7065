"""Products taken off again: by the system's list of programs and by hand, after a kill, and old packages by force."""
import os
import re

import support
from person import MESSAGE, Person
from story import UNINSTALL
from support import COMPONENT, INI, LOG_ROOT, PACKAGES, PROGRAM, TRACE, WineTest, batch, tool

CORE = '{31AAC605-C269-4189-B1F7-FE64CA95BFCE}'
CONFIRMED, REFUSED = ('[answer Confirm Uninstall]\ntext=This will uninstall Small\nanswer=%s\n' % answer
                      for answer in ('yes', 'no'))
UNKNOWN_PRODUCT = 1605 & 0xff  # what the host sees of it
COPY = 'C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\' + PROGRAM


class UninstallTest(WineTest):
    @classmethod
    def prepare(cls):
        cls.person = Person(cls.machine)

    def setUp(self):
        super().setUp()
        for name in ('Small', 'Other'):  # an entry that starts the local copy keeps it
            self.machine.forget('%s\\%s' % (UNINSTALL, name))
        for name in ('Runtime', 'Core'):
            self.put('C:\\Media\\%s\\%s.msi' % (name, name), os.path.join(PACKAGES, name, name.lower() + '.msi'))

    def install(self, name, components):
        """Installs a product that may be uninstalled. A component with further lines has them instead of others."""
        self.product(name, components)
        ini = self.read('C:\\Media\\product.ini').replace('\r\n', '\n')
        self.write('C:\\Media\\product.ini', ini.replace('[Product]\n', '[Product]\nCanUninstall=true\n'))
        for component, (install, _, extra) in components.items():
            keys = {line.partition('=')[0] for line in extra.splitlines()}
            lines = (COMPONENT % (component, install)).splitlines()
            self.write('C:\\Media\\%s\\c.ini' % component, '\n'.join(
                [line for line in lines if line.partition('=')[0] not in keys] + [extra]))
        self.assertEqual(self.run_program(), 0)

    def answer(self, product, *keys):
        """Answers the question before an uninstall; No is what Return alone would say."""
        self.person.dialog('This will uninstall %s and may stop your system working correctly.' % product)
        self.person.press(*keys)

    def uninstall_log(self, product):
        return support.read_log(self.machine.host('%s\\%s\\QX Installation Assistant Uninstall.html' % (LOG_ROOT, product)))

    def listed(self):
        """What the system's list of programs shows: keys and names."""
        file = self.machine.host('C:\\listed.txt')
        with open(file, 'wb') as output:
            self.machine.run('uninstaller', '--list', output=output)
        with open(file, encoding='latin-1') as lines:
            return dict(line.strip().split('|||') for line in lines)


# What an uninstall leaves, as the documents say, on a machine on which the program has installed before.
STAYS = (
    r'system\|Software\\Tarvel\\Installation\|(Current Product Version|Install Type)',
    r'/Program Files/Tarvel/Installation/QX Installation Assistant/Small/.*',
    r'/Copies/',  # the copied folder is deleted, not the ones above it
)
# What a machine under Wine changes by itself, and what the test puts there.
NOISE = (
    r'system\|System\\CurrentControlSet\\Control\\Class\\\{4D36E968-[^|]*\|DriverDateData',
    r'system\|System\\CurrentControlSet\\Enum\\DISPLAY\\Default_Monitor\\[^|]*\|',
    r'/(Media/.*|look\.exe|windows\.txt|listed\.txt|answered\.reg)',
)


class WholeProduct(UninstallTest):
    """Beside another product, which uses one of its packages."""

    maxDiff = None

    def snapshot(self):
        """Every value of the registry and every file; the machine stops for it."""
        found = {}
        for hive in ('system', 'user', 'userdef'):
            registry = self.machine.registry(hive)
            for key in registry.keys():
                found['%s|%s' % (hive, key)] = ''
                for name, data in registry.values(key).items():
                    found['%s|%s|%s' % (hive, key, name)] = data
        drive = self.machine.host('C:')
        for folder, folders, files in os.walk(drive):
            place = folder[len(drive):]
            found.update(('%s/%s/' % (place, name), '') for name in folders)
            for name in files:
                facts = os.lstat(os.path.join(folder, name))
                found['%s/%s' % (place, name)] = (facts.st_size, facts.st_mtime_ns)
        return found

    def assertOnlyDocumentedChanges(self, before):
        after = self.snapshot()
        changed = [name for name in sorted(before.keys() | after.keys()) if before.get(name) != after.get(name)]
        odd = [name for name in changed if not any(re.fullmatch(pattern, name) for pattern in STAYS + NOISE)]
        self.assertEqual('\n'.join(odd), '')
        for pattern in STAYS:
            self.assertTrue([name for name in changed if re.fullmatch(pattern, name)], pattern)

    def install_small(self):
        self.install('Small', {
            'Runtime': ('runtime.msi', None, ''), 'Core': ('core.msi', None, ''),
            'Service': ('run.vbs', 'CreateObject("WScript.Shell").RegWrite "HKLM\\Software\\Small\\Port", "7"\n',
                        'UninstallCommandLine=C:\\Media\\Service\\remove.bat\n'),
            'Manuals': ('one.txt', 'one', 'CopyOp=1\nCopyOpTarget=C:\\Copies\n')})
        self.assertEqual(self.read('C:\\Copies\\Manuals\\one.txt'), 'one')
        self.assertTrue(self.machine.exported('Software\\Small').get('Software\\Small', 'Port'))
        listed = self.listed()
        self.assertEqual((listed.get('Small'), listed.get(CORE)), ('Small', 'Harbour Core'))
        entry = self.machine.exported(UNINSTALL + '\\Small').values(UNINSTALL + '\\Small')
        self.assertEqual(entry['UninstallString'], COPY + ' /v /x Small')

    def start_uninstaller(self, declared):
        """The local copy, as the system's list of programs starts it."""
        comparison = self.comparison('/v /x Small', declared, program=COPY)
        with comparison.trace() as output:
            return comparison, self.machine.start('uninstaller', '--remove', 'Small', output=output, debug=TRACE)

    def by_the_systems_list(self):
        """Asked twice: the first answer is No."""
        before = self.record('Small')
        comparison, uninstaller = self.start_uninstaller(REFUSED)
        self.answer('Small', 'Return')
        uninstaller.wait(30)
        comparison.hold(2, by_logon=True)
        self.assertLogged(self.uninstall_log('Small'), 'Uninstall of product Small cancelled at user request')
        self.assertEqual(self.record('Small'), before)
        self.assertIn(CORE, self.listed())

        comparison, uninstaller = self.start_uninstaller(CONFIRMED + '[person]\npress=continue\npress=continue\n')
        self.answer('Small', 'Tab', 'Return')
        self.assertIn('Click Continue to proceed with uninstallation.', self.person.ready().text(MESSAGE))
        self.person.picture('uninstall')
        self.person.press('Return')
        self.assertEqual(self.person.finished().text(MESSAGE),
                         'QX Installation Assistant has successfully un-installed the product Small')
        self.person.press('Return')
        uninstaller.wait(30)
        comparison.hold(0, by_logon=True)

    def silently_by_hand(self):
        process = self.start_program('/s /x Small', CONFIRMED)
        self.answer('Small', 'Tab', 'Return')
        self.assertEqual(process.wait(30), 0)

    def test_it_goes_and_only_what_is_documented_stays(self):
        # The program has been on this machine before, and so have batch files, scripts and that package.
        self.write('C:\\Media\\Service\\remove.bat', batch(['reg delete HKLM\\Software\\Small /f']))
        self.put('C:\\windows\\system32\\at.exe', tool('recorder'))
        self.install('Other', {'Runtime': ('runtime.msi', None, ''), 'Script': ('run.vbs', '', ''),
                               'Batch': ('run.bat', batch(['ver']), '')})
        for switch in '/i', '/x':
            self.machine.run('msiexec', switch, 'C:\\Media\\Core\\Core.msi', '/qn')
        self.machine.stop()  # fonts of the host become the machine's at its second start
        self.listed()
        before = self.snapshot()
        for uninstall in self.by_the_systems_list, self.silently_by_hand:
            with self.subTest(way=uninstall.__name__):
                self.install_small()
                uninstall()
                listed = self.listed()
                self.assertEqual([name in listed for name in ('Small', CORE, 'Other')], [False, False, True])
                self.assertIn('Harbour Runtime', listed.values())
                self.assertEqual(self.machine.run('msiexec', '/x', CORE, '/qn'), UNKNOWN_PRODUCT)
                self.assertLogged(self.uninstall_log('Small'), 'Another product is using this component', 'Warning')
                self.assertFalse(self.exists('C:\\recorded.txt'), 'the other product still needs the local copy')
                self.assertOnlyDocumentedChanges(before)

    def test_the_last_products_local_copy_is_deleted_by_the_scheduler(self):
        self.put('C:\\windows\\system32\\at.exe', tool('recorder'))
        self.install('Small', {'Batch': ('run.bat', batch(['ver']), 'UninstallCommandLine=C:\\Media\\Batch\\run.bat\n')})
        self.silently_by_hand()
        command = re.fullmatch(r'AT \d\d:\d\d (C:\\windows\\System32\\cmd\.exe) (/c) (del) "(.*)"\s*',
                               self.read('C:\\recorded.txt'))
        self.assertEqual(command.group(4), COPY)
        self.assertTrue(self.exists(COPY))
        self.machine.run(*command.groups())  # as the scheduler does it two minutes later
        self.assertFalse(self.exists(COPY))


class Interrupted(UninstallTest):
    def test_after_a_kill_the_next_uninstall_finishes(self):
        self.put('C:\\windows\\system32\\at.exe', tool('recorder'))
        note = batch(['echo %s>> C:\\removed.txt'])
        self.install('Small', {
            'Core': ('core.msi', None, ''),
            'Waiting': ('run.bat', batch(['ver']), 'UninstallCommandLine=C:\\QX\\waiting.exe\n'),
            'Last': ('run.bat', note % 'Last', 'UninstallCommandLine=C:\\Media\\Last\\run.bat\n')})
        os.remove(self.machine.host('C:\\removed.txt'))
        self.put('C:\\QX\\waiting.exe', tool('waiting'))
        process = self.start_program('/s /x Small', CONFIRMED)
        self.answer('Small', 'Tab', 'Return')
        self.wait_for('C:\\waiting.txt')
        process.kill()
        self.machine.stop()
        self.assertEqual(self.record('Small', 'Last')['Uninstalled'], 'True')
        self.assertIn(CORE, self.listed())

        self.write('C:\\go.txt', '')
        process = self.start_program('/s /x Small', CONFIRMED)
        self.answer('Small', 'Tab', 'Return')
        self.assertEqual(process.wait(30), 0)
        self.assertEqual(self.read('C:\\removed.txt').split(), ['Last'])
        self.assertLogged(self.uninstall_log('Small'), 'Component Last was removed by an earlier uninstall - skipping')
        listed = self.listed()
        self.assertEqual((CORE in listed, 'Small' in listed, self.record('Small')), (False, False, {}))


class Forced(UninstallTest):
    def test_a_package_installed_by_hand_and_old_files_go_before_the_first_component(self):
        self.assertEqual(self.machine.run('msiexec', '/i', 'C:\\Media\\Core\\Core.msi', '/qn'), 0)
        self.assertIn(CORE, self.listed())
        self.write('C:\\Old\\deep\\file.txt', 'old')
        self.write('C:\\old.txt', 'old')
        self.product('Small', {'Look': ('run.bat', batch(
            ['if exist "C:\\Program Files\\Harbour Suite\\core.txt" echo there> C:\\there.txt',
             'if exist C:\\Old echo there> C:\\there.txt']), '')},
            support.APPLICATION % 'Small' + '[ForceUninstall]\nCore=\nGone=\n[ForceDelete]\nC:\\Old\nC:\\old.txt\n')
        ini = self.read('C:\\Media\\product.ini').replace('\r\n', '\n')
        self.write('C:\\Media\\product.ini', ini + '[ForceUninstall]\nCore=%s\n' % CORE)
        self.assertEqual(self.run_program('/s /v /is=' + INI), 0)
        self.assertNotIn(CORE, self.listed())
        self.assertEqual([self.exists(path) for path in ('C:\\there.txt', 'C:\\Old', 'C:\\old.txt')], [False] * 3)
        self.assertEqual(self.record('Small')['FUDone'], 'True')
        self.assertLogged(self.log('Small'), 'returned wilst running msiexec /x <ERROR>', 'Warning')
        self.assertTrue(self.exists(LOG_ROOT + '\\Small\\MSI Log Files\\ForceUninstall_Core.log'))
