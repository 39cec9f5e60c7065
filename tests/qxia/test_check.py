"""What `qxia check` prints: its forms against their schemas, its exit codes, and the sample products."""
import json
import os
import shutil
import subprocess
import tempfile
import unittest

import jsonschema

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, '..', '..')
QXIA = os.environ.get('QXIA', os.path.join(ROOT, 'out', 'native', 'qxia'))
SAMPLES = os.path.join(ROOT, 'out', 'samples')
SUITE = [os.path.join(SAMPLES, 'harbour_suite', 'disc')]
CHARTS = [os.path.join(SAMPLES, 'harbour_charts', 'disc1'), os.path.join(SAMPLES, 'harbour_charts', 'disc2')]
RESTART = [os.path.join(SAMPLES, 'harbour_restart', 'disc')]
INI = 'QX Installation Assistant.ini'


def check(*words):
    run = subprocess.run([QXIA, 'check', *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)
    return run.returncode, run.stdout.decode(), run.stderr.decode()


def schema(path):
    with open(path) as file:
        return json.load(file)


class Media(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def put(self, path, text):
        path = os.path.join(self.folder, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, 'wb') as file:
            file.write(text if isinstance(text, bytes) else text.encode())
        return path

    def faulty(self, name='Office \xd6l'):
        self.put(INI, ('[Product]\nName=%s\nVersion=1\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\n'
                       '[Config]\nVerbos=yes\n' % name).encode('cp1252'))
        self.put('product.ini', '[General]\nVersion=2\n[Actions]\nTools=Tools\\tools.ini\n')
        self.put('Packages/Tools/tools.ini', b'[Tools]\nInstall=\xe4\xff "x".cmd\n')
        return self.folder


class Forms(Media):
    def test_json_is_as_its_schema_says(self):
        form = schema(os.path.join(ROOT, 'docs', 'qxia-check.schema.json'))
        for discs in ([self.faulty()], SUITE, CHARTS):
            with self.subTest(discs=discs):
                _, out, _ = check('--format', 'json', *discs)
                told = json.loads(out)
                jsonschema.Draft7Validator(form).validate(told)
                severities = [finding['severity'] for finding in told['findings']]
                self.assertEqual(told['counts'], {name: severities.count(name) for name in ('error', 'warning', 'note')})
                self.assertEqual(severities, sorted(severities, key=['error', 'warning', 'note'].index))
        self.assertGreater(len(severities), 0)

    def test_the_schema_refuses_other_forms(self):
        form = schema(os.path.join(ROOT, 'docs', 'qxia-check.schema.json'))
        told = json.loads(check('--format', 'json', self.faulty())[1])
        for change in ({'format': 2}, {'findings': [{}]}, {'more': 1}):
            with self.subTest(change=change), self.assertRaises(jsonschema.ValidationError):
                jsonschema.Draft7Validator(form).validate({**told, **change})

    def test_sarif_is_sarif(self):
        form = schema(os.path.join(HERE, 'sarif-2.1.0.schema.json'))
        validator = jsonschema.Draft4Validator(form)
        for discs in ([self.faulty()], SUITE, CHARTS):
            with self.subTest(discs=discs):
                told = json.loads(check('--format', 'sarif', *discs)[1])
                validator.validate(told)
                run = told['runs'][0]
                rules = run['tool']['driver']['rules']
                for result in run['results']:
                    self.assertEqual(rules[result['ruleIndex']]['id'], result['ruleId'])
                    self.assertNotIn(' ', result['locations'][0]['physicalLocation']['artifactLocation']['uri'])
        with self.assertRaises(jsonschema.ValidationError):
            validator.validate({**told, 'version': '1.0.0'})

    def test_text_has_place_number_and_fix(self):
        code, out, _ = check(self.faulty())
        lines = out.splitlines()
        self.assertEqual(code, 1)
        self.assertRegex(lines[0], r'^Packages/Tools/tools\.ini:2: error QX201: The component\'s file ')
        self.assertRegex(lines[-1], r'^\d+ errors, \d+ warnings, \d+ notes?$')
        for place, fix in zip(lines[0:-1:2], lines[1:-1:2]):
            self.assertRegex(place, r'^[^:]+:\d+: (error|warning|note) QX\d{3}: \S')
            self.assertRegex(fix, r'^    fix: \S')


class Ends(Media):
    def test_exit_codes(self):
        self.assertEqual(check(self.faulty())[0], 1)
        self.assertEqual(check(*SUITE)[0], 0)
        warned = self.put('x/' + INI,
                          '[Product]\nName=A\nVersion=1\nPackageRoot=CDROM\nProductIni=PATH(p.ini)\nAbortOnFail=f\n'
                          'ForceUninstallReboot=False\nCopyOpRoot=N/A\nCopyOpHold=N/A\n'
                          '[Config]\nVerbose=true\nSilent=false\nRequestLogonDetails=false\n')
        self.put('x/p.ini', '[General]\nVersion=1\n[Actions]\n')
        self.assertEqual(check(os.path.dirname(warned))[0], 0)
        self.assertEqual(check('--strict', os.path.dirname(warned))[0], 1)

    def test_what_cannot_be_used_is_one_line_and_64(self):
        empty = os.path.join(self.folder, 'empty')
        os.makedirs(empty)
        for words, told in (((), 'no MEDIA'), ((empty,), 'has no application ini'), ((empty + '/none',), 'is no folder'),
                            ((self.put('file', ''),), 'is no folder'), (('--format', 'xml', *SUITE), 'text, json or sarif'),
                            (('--codepage', 'x', *SUITE), 'is not known here'), (('--explain', 'QX1'), 'there is no such rule'),
                            (('--what', *SUITE), 'is no option')):
            with self.subTest(words=words):
                code, out, err = check(*words)
                self.assertEqual((code, out, err.count('\n')), (64, '', 1))
                self.assertIn(told, err)

    def test_explain_tells_one_rule(self):
        code, out, _ = check('--explain', 'qx105')
        self.assertEqual(code, 0)
        self.assertTrue(out.startswith('QX105 (error): '))

    def test_media_are_not_changed_and_links_out_of_them_not_followed(self):
        folder = self.faulty()
        os.symlink('/etc', os.path.join(folder, 'Packages', 'Out'))
        self.put('product.ini', '[General]\nVersion=1\n[Actions]\nOut=Out\\passwd\n')
        before = sorted((path, os.stat(path).st_mtime_ns) for path in self.paths(folder))
        self.assertIn('QX205: The component ini Out\\passwd is a link that leads out of the media.', check(folder)[1])
        self.assertEqual(sorted((path, os.stat(path).st_mtime_ns) for path in self.paths(folder)), before)

    @staticmethod
    def paths(folder):
        return [os.path.join(place, name) for place, _, names in os.walk(folder) for name in names]


class Samples(unittest.TestCase):
    def test_they_are_clean(self):
        for discs in (SUITE, CHARTS, RESTART):
            code, out, _ = check('--strict', *discs)
            self.assertEqual(code, 0, out)
            self.assertIn('0 errors, 0 warnings', out)


if __name__ == '__main__':
    unittest.main()
