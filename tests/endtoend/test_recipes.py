"""Installers made by the tools that makers use, as docs/recipes.md shows them, installed, held against a rehearsal and
uninstalled again."""
import json
import os
import re
import shutil
import socket
import subprocess
import time
import unittest

import rehearsal
import support
from differences import hold_together
from machine import INSTALLATION
from run_log import outcomes
from sample_machine import UNINSTALL
from story import STATES, real_story, rehearsed_story, trace, traced_commands
from support import LOG_ROOT, OUT, PRODUCTS, PROGRAM, TRACE, WineTest, tool

RECIPES = os.path.join(support.HERE, '..', '..', 'samples', 'recipes')
PAGE = os.path.join(support.HERE, '..', '..', 'docs', 'recipes.md')
MEDIA = os.path.join(OUT, 'recipes', '%s', 'disc')
PRODUCT = 'Harbour Recipes'
COMPONENTS = ['Ropes', 'Lamps', 'ChartsFolder', 'Charts', 'Desk', 'Meter', 'Settings', 'Colours', 'Sonar']
SETTINGS = 'Software\\Harbour Works'
LOG = LOG_ROOT + '\\' + PRODUCT + '\\QX Installation Assistant%s.html'
PROFILE = 'C:\\users\\' + os.environ.get('USER', 'root')
THIS_MACHINE = '\n[machine]\ncomputer=%s\n[environment]\nUserProfile=%s\n[folder %s\\Start Menu\\Programs\\Startup]\n' % (
    socket.gethostname().upper()[:15], PROFILE, PROFILE)
NO_SCHEDULER = '\n[program AT ]\nmatch=prefix\ncannot start=2\n'


class RecipesTest(WineTest):
    """A machine with the recipes' disc in drive D."""

    @classmethod
    def prepare(cls):
        cls.disc = os.path.join(OUT, 'endtoend', 'recipes', cls.__qualname__)
        shutil.rmtree(cls.disc, ignore_errors=True)
        shutil.copytree(MEDIA % 'x64', cls.disc)
        shutil.copy(support.EXECUTABLE, os.path.join(cls.disc, PROGRAM))
        cls.machine.insert_disc('d', cls.disc, 'RECIPES')

    def run_traced(self, name, *command):
        """Runs the program to its end: its exit code, and the commands that it started."""
        with trace(name) as output:
            code = self.machine.run(*command, timeout=120, output=output, debug=TRACE)
        return code, traced_commands(name)

    def rehearsed(self, declared, again=False):
        file = os.path.join(STATES, 'recipes.txt')
        with open(os.path.join(RECIPES, declared)) as source, open(file, 'w') as text:
            text.write(source.read() + (NO_SCHEDULER if again else THIS_MACHINE))
        result, state = rehearsal.rehearse('recipes', [self.disc], '--machine', file, '--label', 'RECIPES', again=again)
        return rehearsed_story(result, state, PRODUCT, again)

    def real(self, code, commands, uninstalled=False):
        log = self.machine.host(LOG % (' Uninstall' if uninstalled else ''))
        return real_story(log, [self.machine.exported(INSTALLATION, UNINSTALL + '\\' + PRODUCT)], PRODUCT, code, commands, uninstalled)

    def files(self, folder):
        """What lies in a folder; None where that is not there."""
        place = self.machine.host(folder)
        return sorted(os.listdir(place)) if os.path.isdir(place) else None

    def values(self, key):
        return self.machine.exported(key).values(key)

    def edit(self, file, pattern, text):
        path = os.path.join(self.disc, 'Packages', file)
        with open(path, newline='') as source:
            before = source.read()
        after = re.sub(pattern, text, before)
        self.assertNotEqual(after, before)
        with open(path, 'w', newline='') as target:
            target.write(after)

    @staticmethod
    def programs():
        """What a rehearsal is told of the sample's installers."""
        with open(os.path.join(RECIPES, 'machine.txt')) as source:
            return re.sub(r'(?s)^.*?(?=\[program )', '', source.read())

    def from_disc(self, arguments, declared=''):
        return self.comparison(arguments, declared, program='', media=[self.disc], at='', options=['--label', 'RECIPES'],
                               product=PRODUCT)

    def run_compared(self, declared, code):
        """Runs the program from the disc to its end, and holds that against its rehearsal."""
        compared = self.from_disc('/s', declared)
        with compared.trace() as output:
            self.assertEqual(self.machine.run('D:\\' + PROGRAM, '/s', timeout=120, output=output, debug=TRACE), code)
        compared.hold(code)

    def uninstall(self, name):
        return self.run_traced(name, '%s\\%s' % (LOG_ROOT, PROGRAM), '/s', '/x', 'Harbour', 'Recipes', '/yes')


class RecipesInstalled(RecipesTest):
    INSTALLING = [
        'D:\\Packages\\Ropes\\ropes.exe /S /D=C:\\Harbour Ropes',
        'D:\\Packages\\Lamps\\lamps.exe /S /D=C:\\Harbour Lamps',
        'D:\\Packages\\Charts\\charts.exe /S /D=C:\\Harbour Charts',
        'msiexec /i  "D:\\Packages\\Desk\\desk.msi" REBOOT=ReallySuppress TRANSFORMS="D:\\Packages\\Desk\\bergen.mst"',
        'msiexec /i  "D:\\Packages\\Meter\\meter.msi" DEPTH=12 REBOOT=ReallySuppress',
        'wscript.exe D:\\Packages\\Settings\\settings.vbs',
        'wscript.exe "C:\\Harbour Colours\\colours.vbs"',
        'wscript.exe D:\\Packages\\Sonar\\sonar.vbs /S "/D=C:\\Harbour Sonar"',
        'C:\\windows\\system32\\wineboot.exe --kill',
    ]
    REMOVING = [
        'cmd.exe /c ""C:\\Harbour Sonar\\uninstall.exe" /S _?=C:\\Harbour Sonar&& rd /s /q "C:\\Harbour Sonar""',
        'wscript.exe "C:\\Harbour Colours\\remove.vbs"',
        'reg.exe delete "HKLM\\Software\\Harbour Works\\Settings" /f',
        'msiexec /x {5C1A2B0E-6E0A-4B0B-9C57-2D6A2D3F6D02}',
        'msiexec /x {5C1A2B0E-6E0A-4B0B-9C57-2D6A2D3F6D01}',
        '"C:\\Harbour Charts\\uninstall.exe" /S _?=C:\\Harbour Charts',
        '"C:\\Harbour Lamps\\uninstall.exe" /S _?=C:\\Harbour Lamps',
        'cmd.exe /c ""C:\\Harbour Ropes\\uninstall.exe" /S _?=C:\\Harbour Ropes&& rd /s /q "C:\\Harbour Ropes""',
    ]

    def install(self):
        """With the restart that the last component asks for."""
        self.machine.record_restarts(tool('wineboot'))
        code, commands = self.run_traced('recipes', 'D:\\' + PROGRAM, '/s')
        self.wait_for('C:\\restart.txt', 60, '--kill')
        self.assertNotIn('QX Installer Run complete', self.read(LOG % ''))
        self.machine.stop()
        with trace('recipes, logged on') as output:
            logon = self.machine.log_on(output=output, debug=TRACE)
            self.wait_for(LOG % '', 120, 'QX Installer Run complete')
            logon.wait(60)
        return self.real(code, commands + traced_commands('recipes, logged on', by_logon=True))

    def assertCommands(self, commands, beginnings):
        told = '\n'.join(commands)
        self.assertEqual(len(commands), len(beginnings), told)
        self.assertTrue(all(map(str.startswith, commands, beginnings)), told)

    def assertInstalled(self):
        for name in ('Ropes', 'Lamps', 'Sonar'):
            self.assertEqual(self.files('C:\\Harbour ' + name), ['harbour.txt', 'uninstall.exe'])
        self.assertEqual(self.files('C:\\Harbour Charts'), ['chartsfolder.ini', 'harbour.txt', 'uninstall.exe'])
        self.assertEqual(self.values(UNINSTALL + '\\Charts')['QuietUninstallString'],
                         '"C:\\Harbour Charts\\uninstall.exe" /S _?=C:\\Harbour Charts')
        self.assertEqual(self.values(SETTINGS + '\\Desk'), {'Port': 'Bergen'})  # the transform's, not the package's own
        self.assertEqual(self.read('C:\\Program Files\\Harbour Meter\\depth.txt'), '12')
        self.assertEqual(self.values(SETTINGS + '\\Settings'), {'Tide': 'high', 'Berths': 12})
        self.assertEqual(self.values(SETTINGS + '\\Colours'), {'Port': 'red', 'Starboard': 'green'})

    def test_each_is_installed_and_removed_as_its_page_says(self):
        installed = self.install()
        self.assertEqual(installed.outcomes, [(name, 'ok') for name in COMPONENTS])
        self.assertCommands(installed.commands, self.INSTALLING)
        self.assertInstalled()
        self.assertEqual(self.record(PRODUCT)['Succeeded'], 0xffffffff)
        self.assertEqual(self.record(PRODUCT, 'Lamps')['UninstallCommandLine'], '/S _?=C:\\Harbour Lamps')
        hold_together(support.short_name(self), installed, self.rehearsed('machine.txt'))
        removed = self.real(*self.uninstall('recipes, uninstalled'), uninstalled=True)
        self.assertEqual((removed.code, removed.outcomes), (0, [(name, 'removed') for name in reversed(COMPONENTS)]))
        self.assertCommands(removed.commands, self.REMOVING)
        left = [name for name in self.files('C:\\') if name.startswith('Harbour')]
        self.assertEqual((left, self.files('C:\\Harbour Lamps')), (['Harbour Lamps'], ['uninstall.exe']))
        self.assertEqual([name for name in self.files('C:\\Program Files') if name.startswith('Harbour')], [])
        self.assertEqual(self.values(SETTINGS), {})
        hold_together(support.short_name(self) + ', uninstalled', removed, self.rehearsed('uninstall.txt', again=True))


class RecipesThatFail(RecipesTest):
    """What their exit codes make of the verdict."""

    VERDICTS = {'Ropes': ('ok, warning', 'return number 2'), 'Lamps': ('ok', ''),
                'ChartsFolder': ('ok', 'copied to C:\\Harbour Charts'), 'Charts': ('ok', ''), 'Desk': ('ok', ''),
                'Meter': ('FAILED', 'Installation failed returning error 1627'),  # Windows tells it by 1603
                'Settings': ('FAILED', 'Installation failed returning error 1'),
                'Colours': ('FAILED', 'Installation failed returning error 1'),
                'Sonar': ('FAILED', 'Installation failed returning error 2')}

    CODES = {'D:\\Packages\\Ropes\\ropes.exe': 2, 'D:\\Packages\\Lamps\\lamps.exe': 3010, 'D:\\Packages\\Meter\\meter.msi': 1627,
             'D:\\Packages\\Settings\\settings.vbs': 1, '\\colours.vbs': 1, 'D:\\Packages\\Sonar\\sonar.vbs': 2}

    def declared(self):
        """What a rehearsal is told of the sample's installers, with the exit codes that they have here."""
        text = self.programs().replace('set=HKLM\\Software\\Tarvel\\Installation\\Reboot=immediate\n', '')
        text = text.replace('[program C:\\Harbour Colours\\', '[program \\')  # as `qxia machine` names it
        text = re.sub(r'file=C:\\Harbour (Ropes|Sonar)\\.*\n', '', text)  # these come to nothing
        for name, code in self.CODES.items():
            header = re.search(r'\[(program|package) %s\]\n' % re.escape(name), text).group()
            text = text.replace(header, '%sexit=%d\n' % (header, code))
        return text

    def test_exit_codes_count_as_the_page_says(self):
        for name in ('Settings/settings.reg', 'Colours/colours.reg'):
            os.remove(os.path.join(self.disc, 'Packages', name))
        self.edit('Meter/meter.ini', 'DEPTH=12 ', '')
        packages = os.path.join(self.disc, 'Packages')
        shutil.copy(os.path.join(packages, 'Sonar', 'sonar.exe'), os.path.join(packages, 'Lamps', 'lamps.exe'))
        for name in ('Ropes', 'Sonar'):
            os.makedirs(self.machine.host('C:\\Harbour %s\\harbour.txt' % name))  # a folder in the place of the file
        self.run_compared(self.declared(), 1)
        found = outcomes(self.machine.exported(PRODUCTS), self.log(PRODUCT), PRODUCT)
        self.assertEqual({row.component: (row.verdict, row.reason) for row in found}, self.VERDICTS)
        self.assertLogged(self.log(PRODUCT), 'lamps.exe /S /D=C:\\Harbour Lamps returned no errors (return code: 3010)', 'Action')


class RecipesUninstallers(RecipesTest):
    """What becomes of an uninstaller that takes its time."""

    def test_it_is_waited_for_by_its_own_switch_alone(self):
        self.edit('../product.ini', r'(?s)\[Actions\].*', '[Actions]\r\nLamps=Lamps\\\\lamps.ini\r\nRopes=Ropes\\\\ropes.ini\r\n')
        self.edit('Ropes/ropes.ini', r'UninstallCommandLine=[^\r]*', 'UninstallCommandLine=/S')
        chosen = re.findall(r'(?s)\[program [^\n]*(?:ropes|lamps)\.exe\].*?(?=\n\[)', self.programs())
        self.run_compared('\n'.join(chosen) + '\n', 0)
        for name in ('Ropes', 'Lamps'):
            self.write('C:\\Harbour %s\\in-use.txt' % name, '')
        self.from_disc('/s /x Harbour Recipes /yes')  # held against no rehearsal: the table tells why
        process = self.machine.start('%s\\%s' % (LOG_ROOT, PROGRAM), '/s', '/x', 'Harbour', 'Recipes', '/yes')
        self.wait_for(LOG % ' Uninstall', 60, 'Lamps\\uninstall.exe" /S _?=')
        self.assertEqual(self.record(PRODUCT, 'Ropes')['Uninstalled'], 'True')
        self.assertEqual(self.files('C:\\Harbour Ropes'), ['harbour.txt', 'in-use.txt', 'uninstall.exe'])
        time.sleep(2)
        self.assertIsNone(process.poll())
        os.remove(self.machine.host('C:\\Harbour Lamps\\in-use.txt'))
        self.assertEqual(process.wait(60), 0)
        self.assertEqual(self.files('C:\\Harbour Lamps'), ['uninstall.exe'])
        self.assertTrue(self.exists('C:\\Harbour Ropes\\harbour.txt'))
        os.remove(self.machine.host('C:\\Harbour Ropes\\in-use.txt'))
        deadline = time.time() + 60
        while self.exists('C:\\Harbour Ropes') and time.time() < deadline:
            time.sleep(0.1)
        self.assertIsNone(self.files('C:\\Harbour Ropes'))


class NewMediaScripts(WineTest):
    def test_script_that_hands_a_restart_on_keeps_its_arguments_together(self):
        media = os.path.join(OUT, 'endtoend', 'recipes', 'new')
        shutil.rmtree(media, ignore_errors=True)
        subprocess.run([rehearsal.QXIA, 'new', media, '--product', 'Small', '--component', 'Driver:exe-restart'],
                       check=True, capture_output=True)
        self.put('C:\\Media\\driver.vbs', os.path.join(media, 'Packages', 'Driver', 'driver.vbs'))
        self.put('C:\\Media\\driver.exe', tool('recorder'))
        self.assertEqual(self.machine.run('wscript.exe', 'C:\\Media\\driver.vbs', '/quiet', '/to=C:\\Two Words'), 0)
        self.assertEqual(self.read('C:\\recorded.txt'), '"C:\\Media\\driver.exe" /quiet "/to=C:\\Two Words"\r\n')


class RecipesPage(unittest.TestCase):
    def test_page_shows_the_files_of_the_sample(self):
        with open(PAGE) as page:
            shown = dict(re.findall(r'^`([^`\n]+)`\n\n```\w*\n(.*?)^```', page.read(), re.M | re.S))
        packages = os.path.join(RECIPES, 'media', 'Packages')
        files = {name: open(os.path.join(folder, name)).read() for folder, _, names in os.walk(packages) for name in names}
        self.assertEqual(shown, files)

    def test_media_as_they_are_handed_out_are_clean(self):
        command = [rehearsal.QXIA, 'check', '--strict', '--format', 'json', MEDIA % 'x86']
        check = subprocess.run(command, capture_output=True, text=True)
        self.assertEqual(check.returncode, 0, check.stdout)
        self.assertEqual([found['rule'] for found in json.loads(check.stdout)['findings']], ['QX805'])


del RecipesTest  # which is no test itself
