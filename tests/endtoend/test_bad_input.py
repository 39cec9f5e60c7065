"""Ini files and registry values that are missing, broken or too long: the run ends by itself, with whole log."""
import os

import support
from support import INI, WineTest, batch

ONE = {'One': ('run.bat', batch(['echo done> C:\\one.txt']), '')}


class BadInput(WineTest):
    def test_missing_application_ini_ends_a_silent_run(self):
        self.assertEqual(self.run_program('/s /is=C:\\nowhere.ini', timeout=30), 1)
        self.assertLogged(self.default_log(), 'Could not find ini file : C:\\nowhere.ini')

    def test_missing_ini_without_any_switch_but_silence(self):
        self.assertEqual(self.run_program('/s', timeout=30), 1)
        self.assertLogged(self.default_log(), 'Could not find ini file : C:\\QX\\QX Installation Assistant.ini')

    def test_application_ini_without_a_name(self):
        self.product('Small', ONE, support.APPLICATION.replace('Name=%s\n', ''))
        self.assertEqual(self.run_program(timeout=30), 1)
        self.assertFalse(self.exists('C:\\one.txt'))
        self.assertLogged(self.default_log(), INI)

    def test_missing_product_ini(self):
        self.product('Small', ONE, support.APPLICATION.replace('(product.ini)', '(other.ini)') % 'Small')
        self.assertEqual(self.run_program(timeout=30), 1)
        self.assertLogged(self.log('Small'), 'Product ini file C:\\Media\\other.ini could not be found')
        self.assertEqual(self.record('Small')['Succeeded'], 0)

    def test_missing_package_root_key(self):
        self.product('Small', ONE, support.APPLICATION.replace('PackageRoot=C:\\Media\n', '') % 'Small')
        self.assertEqual(self.run_program(timeout=30), 1)
        self.assertLogged(self.log('Small'), 'Package Root path returned as <ERROR>')
        self.assertFalse(self.exists('C:\\one.txt'))

    def test_component_without_its_ini_ends_the_run_before_anything_runs(self):
        self.product('Small', {**ONE, 'Two': ('run.bat', batch(['echo done> C:\\two.txt']), '')})
        os.remove(self.machine.host('C:\\Media\\Two\\c.ini'))
        self.assertEqual(self.run_program(timeout=30), 1)
        self.assertLogged(self.log('Small'), 'Initilisation of Two failed as the product ini file could not be found')
        self.assertFalse(self.exists('C:\\one.txt'))

    def test_missing_file_fails_its_component_and_the_run_goes_on(self):
        self.product('Small', {'Zero': ('gone.exe', None, ''), **ONE})
        self.assertEqual(self.run_program(), 1)
        self.assertTrue(self.exists('C:\\one.txt'))
        self.assertLogged(self.log('Small'), 'File C:\\Media\\Zero\\gone.exe could not be found', 'ERROR')
        self.assertEqual(self.record('Small', 'Zero')['Message'], 'File not found : C:\\Media\\Zero\\gone.exe')

    def test_component_ini_with_a_line_of_a_megabyte_and_keys_without_values(self):
        extra = 'Note=%s\nTransform=\nCleanup=\nCondition1=\n=\n[\n' % ('x' * 1000000)
        self.product('Small', {'One': ONE['One'][:2] + (extra,)})
        self.assertEqual(self.run_program(), 0)
        self.assertTrue(self.exists('C:\\one.txt'))
        self.log('Small')

    def test_registry_values_longer_than_a_buffer(self):
        self.preset('Software\\Tarvel\\Installation', 'Server Type', 'y' * 5000)
        self.preset('Software\\Tarvel\\Installation', 'Product', 'z' * 1024)
        self.product('Small', {'One': ONE['One'][:2] + ('Condition1=productname=Other\n',)})
        self.assertEqual(self.run_program(), 0)
        self.assertTrue(self.exists('C:\\one.txt'), 'a value that cannot be read counts as empty: the condition holds')

    def test_file_that_is_no_program_fails(self):
        self.product('Small', {'Zero': ('run.exe', 'no program\n', ''), **ONE})
        self.assertEqual(self.run_program(declared='[program C:\\Media\\Zero\\run.exe]\ncannot start=193\n'), 1)
        self.assertTrue(self.exists('C:\\one.txt'))
        self.assertEqual(self.record('Small', 'Zero')['Message'], 'Installation failed returning error -1')

    def test_package_that_is_garbage_fails(self):
        self.product('Small', {'Zero': ('run.msi', 'no package\n', ''), **ONE})
        self.assertEqual(self.run_program(declared='[program C:\\Media\\Zero\\run.msi]\nexit=1627\n'), 1)
        self.assertTrue(self.exists('C:\\one.txt'))
        self.assertEqual(self.record('Small', 'Zero')['Process Return'], 'Fail')
