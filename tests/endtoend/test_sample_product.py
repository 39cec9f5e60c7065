"""The whole sample product, from its disc, installed silently."""
import os
import re
import unittest

import support
from demo import LOG, UNINSTALL_LOG, RealMachine
import rehearsal
from differences import check_all_held, hold_together
from run_log import outcomes, read_log, removals
from sample_machine import LOG_FOLDER, PRODUCT, SAMPLE, SIMULATED_MACHINE, SIMULATED_UNINSTALL, UNINSTALL
from story import TRACE, real_story, rehearsed_story, trace, traced_commands
from support import OUT, PRODUCTS

# Component, kind, sequence, verdict, and what its reason says.
EXPECTED = (
    ('Runtime', 'msi', 100, 'ok', ''),
    ('Core', 'msi', 200, 'ok', ''),
    ('Chart', 'exe', 300, 'ok', ''),
    ('Tides', 'exe', 400, 'ok, warning', 'return number 7'),
    ('Moorings', 'bat', 500, 'ok', ''),
    ('Dock', 'vbs', 600, 'ok', 'reported "Pass"'),
    ('Licence', 'vbs', 700, 'FAILED', 'The licence has run out.'),
    ('Printers', 'vbs', 800, 'FAILED', 'Installation failed returning error 5'),
    ('Manuals', 'exe', 900, 'FAILED', 'File not found : D:\\Packages\\Manuals\\manuals.exe'),
    ('Fonts', 'msi', 1000, 'already there', 'its version is the same or higher'),
    ('Weather', 'msi', 1100, 'ok', 'previous version (1.0.0) will be uninstalled first'),
    ('Legacy', 'bat', 1200, 'held back', 'OS not supported'),
    ('Lighthouse', 'bat', 1300, 'held back', 'Product Name does not match'),
    ('Pilot', 'bat', 1400, 'held back', 'Condition v0.0.0.0 >= v3.0.0'),
    ('Berths', 'bat', 1500, 'held back', ''),
    ('Radar', 'msi', 1600, 'FAILED', 'Installation failed returning error 1603'),
    ('Notes', 'txt', 1700, 'FAILED', 'Unrecognised file type D:\\Packages\\Notes\\notes.txt'),
    ('Harbourmaster', 'bat', 1800, 'ok', ''),
    ('Almanac', 'txt', 1900, 'ok', 'copied to C:\\Harbour'),
    ('Signals', 'bat', 2000, 'ok', ''),
    ('Quays', 'bat', 2100, 'FAILED', 'failed disk space check'),
)
# What an uninstall does with them, the last first.
REMOVED = {'Almanac': 'removed', 'Harbourmaster': 'removed', 'Radar': 'not there', 'Weather': 'removed', 'Fonts': 'kept', 'Dock': 'removed',
           'Moorings': 'left out', 'Chart': 'removed', 'Core': 'removed', 'Runtime': 'removed'}


class SampleProduct(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        support.screen()
        folder = os.path.join(OUT, 'endtoend', 'sample')
        cls.machine = RealMachine(folder)
        cls.addClassCleanup(cls.machine.stop)
        with trace('sample') as output:
            cls.exit_code = cls.machine.install(output=output, debug=TRACE)
        cls.registry = cls.machine.registry()
        cls.log = read_log(cls.machine.host(LOG))

    def product(self, value):
        return self.registry.get(PRODUCTS + '\\' + PRODUCT, value)

    def test_each_component_has_its_verdict(self):
        found = outcomes(self.registry, self.log, PRODUCT)
        self.assertEqual([row[:4] for row in found], [row[:4] for row in EXPECTED])
        for row, expected in zip(found, EXPECTED):
            with self.subTest(component=row.component):
                self.assertIn(expected[4], row.reason)

    def test_the_run_ends_with_1_and_keeps_the_reasons_in_order(self):
        self.assertEqual(self.exit_code, 1)
        self.assertEqual(self.product('Succeeded'), 0)
        failed = [row[0] for row in EXPECTED if row[3] == 'FAILED']
        reasons = self.product('Abort Reason').split('\r\n')
        self.assertEqual([re.match('Installation of (.*) failed', reason).group(1) for reason in reasons], failed)

    def test_packages_are_installed_as_the_verdicts_say(self):
        names = {values.get('DisplayName'): values.get('DisplayVersion') for values in (
            self.registry.values(UNINSTALL + '\\' + key) for key in self.registry.children(UNINSTALL))}
        wanted = {'Harbour Runtime': '1.2.0', 'Harbour Core': '2.1.0', 'Harbour Fonts': '1.0.0',
                  'Harbour Weather': '2.0.0', 'Harbour Radar': None}
        self.assertEqual({name: names.get(name) for name in wanted}, wanted)
        self.assertEqual(self.registry.get('Software\\Harbour Works\\Core', 'Port'), 'Bergen')

    def test_programs_and_scripts_left_what_they_should(self):
        self.assertEqual(self.registry.get('Software\\Harbour Works\\Dock', 'Berths'), '12')
        with open(self.machine.host('C:\\Harbour Charts.txt')) as file:
            self.assertEqual(file.read(), '/quiet scale=1:25000')
        files = {name for name in os.listdir(self.machine.host('C:')) if name.startswith('Harbour ')}
        self.assertEqual(files, {'Harbour Charts.txt', 'Harbour Moorings.txt', 'Harbour Master.txt',
                                 'Harbour Signals.txt'})

    def test_the_machine_is_prepared(self):
        self.assertIn('Executing wscript.exe "D:\\Checks\\harbour.vbs"', [row.text for row in self.log])
        self.assertTrue(os.path.isdir(self.machine.host('C:\\Harbour\\Berths')))
        self.assertEqual(os.listdir(self.machine.host('C:\\Harbour\\Almanac')), ['v2.1.0.0'])
        self.assertTrue(os.path.exists(self.machine.host('C:\\Harbour\\Almanac\\v2.1.0.0\\tables\\tides.txt')))
        with open(self.machine.host('C:\\Harbour Signals.txt')) as file:
            self.assertEqual(file.read().strip(), 'C:\\Harbour\\Signals')
        self.assertEqual(self.registry.get('Software\\Tarvel\\Installation\\Locations', 'Signals'),
                         'C:\\Harbour\\Signals')

    def test_package_logs_lie_beside_the_run_log(self):
        logs = os.listdir(self.machine.host(LOG_FOLDER + '\\MSI Log Files'))
        self.assertEqual({name for name in logs if name.endswith('.log')},
                         {'Runtime.log', 'Core.log', 'UninstallHarbour Weather.log', 'Weather.log', 'Radar.log'})

    def test_closedown_resets_the_run_and_keeps_the_record(self):
        installation = self.registry.values('Software\\Tarvel\\Installation')
        self.assertEqual(installation['Current Product Version'], '2.1.0')
        self.assertEqual(installation['CurrentComponentPath'], '')
        self.assertEqual(installation['Operating System'].lower(), 'windows 2003')
        self.assertEqual(installation['CD Drive'][:1].lower(), 'd')
        self.assertEqual(self.product('LastSequence'), '')
        self.assertRegex(self.product('Install Date'), r'^\d\d-[A-Z][a-z][a-z]-\d{4}$')
        self.assertEqual(self.registry.get(PRODUCTS, 'Product'), '')

    def test_the_log_ends_with_the_closing_rows_and_is_archived(self):
        self.assertEqual([row.text for row in self.log[-3:]],
                         ['************************', 'QX Installer Run complete', '*********'])
        archive = self.machine.host(LOG_FOLDER + '\\QXIA Archive Logs')
        name, = os.listdir(archive)
        self.assertRegex(name, r'^QX Installation Assistant\d{10}\.html$')
        self.assertEqual(read_log(os.path.join(archive, name)), self.log)

    @staticmethod
    def rehearsed(declared, again=''):
        result, state = rehearsal.rehearse('sample', [os.path.join(SAMPLE, 'disc')], '--machine', declared,
                                           '--label', 'HARBOUR', again=again)
        return rehearsed_story(result, state, PRODUCT, bool(again))

    def compare(self, traced, log, registry, code, declared, again=''):
        test = support.short_name(self)
        real = real_story(self.machine.host(log), [registry], PRODUCT, code, traced_commands(traced), bool(again))
        hold_together(test, real, self.rehearsed(declared, again))
        check_all_held(test, [])

    def test_a_rehearsal_tells_the_same_story(self):
        self.compare('sample', LOG, self.registry, self.exit_code, SIMULATED_MACHINE)

    @staticmethod
    def removed():
        return [(row[0], REMOVED.get(row[0], 'no command')) for row in reversed(EXPECTED)]

    def test_uninstalled_it_leaves_what_others_use(self):
        """Comes behind the other tests, whose machine it changes."""
        self.rehearsed(SIMULATED_MACHINE)
        with trace('sample, uninstalled') as output:
            self.assertEqual(self.machine.uninstall(output=output, debug=TRACE), 0)
        registry = self.machine.registry()
        self.compare('sample, uninstalled', UNINSTALL_LOG, registry, 0, SIMULATED_UNINSTALL, 'again')
        self.assertEqual([row[:2] for row in removals(read_log(self.machine.host(UNINSTALL_LOG)))], self.removed())
        names = [registry.get(UNINSTALL + '\\' + key, 'DisplayName') for key in registry.children(UNINSTALL)]
        self.assertEqual([name for name in names if name and name.startswith('Harbour')], ['Harbour Fonts'])
        self.assertEqual(registry.children(PRODUCTS), ['Harbour Office'])
        files = {name for name in os.listdir(self.machine.host('C:')) if name.startswith('Harbour ')}
        self.assertEqual(files, {'Harbour Moorings.txt', 'Harbour Signals.txt'})
