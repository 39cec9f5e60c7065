"""What `qxia rehearse` prints: its JSON against its schema, its exit codes, and the sample products."""
import json
import os
import re
import resource
import shutil
import subprocess
import tempfile
import time
import unittest
import xml.etree.ElementTree

import jsonschema

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..')
QXIA = os.environ.get('QXIA', os.path.join(ROOT, 'out', 'native', 'qxia'))
SAMPLES = os.path.join(ROOT, 'out', 'samples')
SUITE = os.path.join(SAMPLES, 'harbour_suite', 'disc')
CHARTS = [os.path.join(SAMPLES, 'harbour_charts', 'disc%d' % number) for number in (1, 2)]
RESTART = os.path.join(SAMPLES, 'harbour_restart', 'disc')
MACHINE = os.path.join(ROOT, 'samples', 'harbour_suite', 'machine.txt')
RESTART_MACHINE = os.path.join(ROOT, 'samples', 'harbour_restart', 'machine.txt')
INIS = {
    'app.ini': '[Product]\nName=Small\nVersion=1.0\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\n',
    'product.ini': '[Product]\nName=Small\n[General]\nVersion=1.0\n[Actions]\nPart=part.ini\n',
    'Packages/part.ini': '[Part]\nInstall=part.vbs\nCondition1=os<>win95\n',
    'Packages/part.vbs': "' \u00fc\n",
}


def rehearse(*words, timeout=300):
    run = subprocess.run([QXIA, 'rehearse', *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=timeout)
    return run.returncode, run.stdout.decode(), run.stderr.decode()


def schema():
    with open(os.path.join(ROOT, 'docs', 'qxia-rehearse.schema.json')) as file:
        return json.load(file)


class SmallMedium(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.disc = os.path.join(self.folder, 'disc')
        os.makedirs(os.path.join(self.disc, 'Packages'))
        for path, text in INIS.items():
            with open(os.path.join(self.disc, path), 'w', encoding='latin-1') as file:
                file.write(text)

    def fits(self, *words, code=0):
        """The JSON that the command prints, which fits its schema."""
        jsonschema.Draft7Validator.check_schema(schema())
        ended, out, _ = rehearse(self.disc, '--json', *words)
        self.assertEqual(ended, code)
        form = json.loads(out)
        jsonschema.validate(form, schema())
        return form

    def test_json_of_one_run_several_and_a_sweep_fits_the_schema(self):
        one = self.fits()
        self.assertEqual(one['components'][0]['command'], 'wscript.exe D:\\Packages\\part.vbs')
        self.assertTrue(os.path.exists(one['log']))
        several = self.fits('--on', 'all')
        self.assertEqual([run['components'][0]['outcome'] for run in several['runs']],
                         ['held back'] + ['installed'] * 7)
        self.assertEqual(self.fits('--fail', 'processes.start'), {'format': 1, 'points': 1, 'failed': []})
        with self.assertRaises(jsonschema.ValidationError):
            jsonschema.validate({'format': 1, 'runs': []}, schema())

    def test_bad_input_is_one_line_and_64(self):
        empty = os.path.join(self.folder, 'empty')
        os.makedirs(empty)
        machine = os.path.join(self.folder, 'machine.txt')
        with open(machine, 'w') as file:
            file.write('[machine]\nsystem=Windows 7\n')
        for words in ([], [empty], [os.path.join(self.disc, 'app.ini')], [self.disc, '--on', 'windows 7'],
                      [self.disc, '--machine', machine], [self.disc, '--expect', machine, '--machine', machine],
                      [self.disc, '--cut-power', '0'], [self.disc, '--state', self.disc]):
            code, out, error = rehearse(*words)
            self.assertEqual((code, out, error.count('\n')), (64, '', 1), (words, error))
        self.assertIn(machine + ':2: ', rehearse(self.disc, '--machine', machine)[2])

    def test_page_is_whole_and_junit_is_xml(self):
        page, report = os.path.join(self.folder, 'page.html'), os.path.join(self.folder, 'report.xml')
        rehearse(self.disc, '--on', 'windows 95,windows xp', '--html', page, '--junit', report)
        with open(page, encoding='utf-8') as file:
            text = file.read()
        self.assertIn('os&lt;&gt;win95; the machine has windows 95', text)
        self.assertFalse(re.search(r'(?:src|href)="(?!#)', text))
        cases = xml.etree.ElementTree.parse(report).getroot().iter('testcase')
        self.assertEqual(len(list(cases)), 4)


class Samples(unittest.TestCase):
    def test_sample_products_end_as_their_pages_say_and_in_time(self):
        started = time.time()
        code, out, error = rehearse(SUITE, '--machine', MACHINE)
        seconds = time.time() - started
        self.assertEqual((code, error), (1, ''))
        for line in (r'600  Dock +vbs +installed +reported "Pass" itself',
                     r'1000  Fonts +msi +already installed +version 1\.0\.0 is there',
                     r'1500  Berths +bat +held back +MachineType=nth machine; the machine has dcunit',
                     r'1600  Radar +msi +failed +ended with 1603', r'1900  Almanac +copy +copied +to C:\\Harbour'):
            self.assertRegex(out, line)
        self.assertNotIn('Loose ends', out)
        code, out, _ = rehearse(*CHARTS)
        self.assertEqual(code, 0)
        self.assertIn('disc CHARTS2 inserted in D', out)
        code, out, _ = rehearse(RESTART, '--machine', RESTART_MACHINE)
        self.assertEqual((code, out.count(' which asks for a restart')), (0, 2))
        self.assertIn('4 restarts', out)
        machine = os.path.join(tempfile.mkdtemp(), 'machine.txt')
        self.addCleanup(shutil.rmtree, os.path.dirname(machine))
        with open(machine, 'wb') as file:  # somebody has only the first disc
            file.write(subprocess.run([QXIA, 'machine', *CHARTS], stdout=subprocess.PIPE, check=True).stdout)
            file.write(b'[answer]\ntext=Insert the disk\n[answer]\ntext=Error - cannot find\nanswer=cancel\n')
        code, out, _ = rehearse(*CHARTS, '--machine', machine)
        self.assertEqual((code, 'Loose ends' in out), (2, False), out)
        started = time.time()
        rehearse(SUITE, '--on', 'all')
        print('figure: rehearsing the sample product: %.2f s, on all systems %.2f s, %.0f MB at most' % (
            seconds, time.time() - started, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024))


if __name__ == '__main__':
    unittest.main()
