"""Runs the checks of the house, and shows of each that it finds a bad example."""
import os
import re
import subprocess
import sys
import tempfile
import unittest

import code_tables
import documents
import error_numbers
import formatting
import includes
import pages
import ratio
import tidy
import tree

HERE = os.path.dirname(os.path.abspath(__file__))
PROGRAM = os.path.join(tree.ROOT, 'out', 'win32', 'QX Installation Assistant.exe')
MOST_BYTES = 1_200_000  # of the shipped program, which travels on every disc and stays behind on every machine


class Checks(unittest.TestCase):
    """The project as it stands."""

    def check(self, script, *arguments):
        run = subprocess.run([sys.executable, os.path.join(HERE, script), *arguments], capture_output=True, text=True)
        print(run.stdout.strip(), flush=True)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        return run.stdout

    def test_includes(self):
        self.check('includes.py')

    def test_pages(self):
        self.check('pages.py')

    def test_documents(self):
        self.check('documents.py')

    def test_error_numbers(self):
        self.check('error_numbers.py')

    def test_imports(self):
        self.check('imports.py', PROGRAM)

    def test_size_of_the_program(self):
        self.assertLessEqual(os.path.getsize(PROGRAM), MOST_BYTES)

    def test_imports_finds_what_it_is_there_to_find(self):
        self.check('imports.py', '--self-test')

    def test_same_bytes(self):
        self.check('same_bytes.py')

    def test_same_bytes_finds_what_it_is_there_to_find(self):
        self.check('same_bytes.py', '--self-test')

    def test_formatting(self):
        self.check('formatting.py')

    def test_tidy(self):
        if 'no time left' in self.check('tidy.py'):
            self.skipTest('some files were not reached: the next run goes on from there')

    def test_every_value_of_a_record_is_in_its_table(self):
        named = re.findall(r'inline constexpr RecordValue (\w+)', tree.read('base/product_record.h'))
        listed = re.findall(r'&Value::(\w+),', tree.read('base/product_record.cpp'))
        self.assertTrue(named)
        self.assertEqual(sorted(named), sorted(listed), 'a value that is not listed is never read, kept or reset')

    def test_ratio(self):
        self.check('ratio.py')

    def test_playbook(self):
        """The sample's, by its own maintained checker; what that finds in a bad one is its own business."""
        folder = os.path.join(tree.ROOT, 'samples', 'rollout')
        run = subprocess.run(['ansible-lint', '--offline', '-q', '--nocolor', 'rollout.yml'], cwd=folder,
                             capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)


class Includes(unittest.TestCase):
    ROWS = (  # the file, its include, whether that is a problem
        ('base/ini.cpp', '#include <windows.h>', True),
        ('platform/win32/files.cpp', '#include <windows.h>', False),
        ('app/windows/main.cpp', '#include <windows.h>', False),
        ('platform/files.h', '# include <msi.h>', True),
        ('base/ini.cpp', '#include <cstdio>', False),
        ('base/ini.cpp', '#include <filesystem>', True),
        ('platform/win32/files.cpp', '#include <thread>', True),
        ('platform/simulated/files.cpp', '#include <filesystem>', False),
        ('core/main.cpp', '#include "exec/conditions.h"', False),
        ('exec/conditions.cpp', '#include "core/main.h"', True),
        ('base/ini.cpp', '#include "exec/conditions.h"', True),
        ('core/main.cpp', '#include "platform/win32/machine.h"', True),
        ('platform/win32/files.cpp', '#include "base/text.h"', True),
        ('platform/files.h', '#include "platform/win32/files.h"', True),
        ('platform/faults/platform.h', '#include "platform/simulated/machine.h"', True),
        ('platform/win32/files.cpp', '#include "platform/files.h"', False),
        ('exec/msi_run.cpp', '#include "env/install_type.h"', True),
        ('env/shares.cpp', '#include "exec/conditions.h"', False),
        ('base/ini.cpp', '#include "tests/behaviour/fixture.h"', True),
        ('base/ini.cpp', '#include "ini.h"', True),
        ('tests/behaviour/ini_test.cpp', '#include "platform/simulated/machine.h"', False),
    )

    def test_each_row(self):
        for path, line, bad in self.ROWS:
            with self.subTest(path=path, line=line):
                self.assertEqual(bool(includes.problems(path, '// x\n' + line + '\n')), bad)

    CIRCLES = (  # the files with what each includes, the topics of the circle that is to be found
        ({'base/a.h': 'base/b.h', 'base/b.h': 'base/a.h'}, 'base/a -> base/b -> base/a'),
        ({'base/a.cpp': 'base/b.h', 'base/b.cpp': 'base/a.h'}, 'base/a -> base/b -> base/a'),
        ({'base/a.h': 'exec/b.h', 'exec/b.cpp': 'core/c.h', 'core/c.h': 'base/a.h'},
         'base/a -> exec/b -> core/c -> base/a'),
        ({'env/start.h': 'env/a.h', 'env/a.h': 'platform/b.h', 'platform/b.h': 'env/a.h'},
         'env/a -> platform/b -> env/a'),
        ({'base/a.cpp': 'base/a.h', 'base/a.h': 'base/b.h', 'base/c.h': 'base/b.h', 'base/d.h': 'base/c.h'}, None),
    )

    def test_circles(self):
        for files, circle in self.CIRCLES:
            with self.subTest(files=files):
                found = includes.circles([(path, '#include "%s"\n' % files[path]) for path in files])
                self.assertEqual(len(found), 1 if circle else 0, found)
                self.assertIn(circle or '', ''.join(found))
                for problem in found:
                    self.assertRegex(problem, r'^[a-z]+/[a-z]+\.(h|cpp):1: ')


class Pages(unittest.TestCase):
    README = '# base\n\n| topic | files |\n|---|---|\n| text | `text`, `%s` |\n'
    READMES = (  # a name in the table, the files of the folder, what is to be found
        ('run.h', ('text.cpp', 'text.h', 'run.h'), None),
        ('run', ('text.cpp', 'text.h', 'run.h', 'README.md', 'CMakeLists.txt'), None),
        ('run', ('text.cpp', 'text.h'), 'base/README.md:5: `run` is no file'),
        ('run.cpp', ('text.cpp', 'run.h'), 'base/README.md:5: `run.cpp` is no file'),
        ('run', ('text.cpp', 'run.h', 'ini.cpp', 'ini.h'), 'base/README.md:5: `ini` stands in no row'),
        ('run', ('text.cpp', 'run.h', 'tool.py'), 'base/README.md:5: `tool.py` stands in no row'),
    )

    def expect(self, expected, found):
        self.assertEqual(len(found), 1 if expected else 0, found)
        self.assertIn(expected or '', ''.join(found))

    def test_readmes(self):
        for name, files, expected in self.READMES:
            with self.subTest(name=name, files=files):
                self.expect(expected, pages.readme_problems('base', self.README % name, files))

    def test_a_readme_without_a_table_of_files(self):
        for text in ('', '# base\n', '| folder | what |\n|---|---|\n| `text` | text |\n'):
            with self.subTest(text=text):
                self.expect('base/README.md:1: no table of files', pages.readme_problems('base', text, ('text.h',)))

    def test_files_belong_to_the_nearest_folder(self):
        files = ['platform/files.h', 'platform/win32/files.cpp', 'app/windows/main.cpp', 'docs/guide.md']
        self.assertEqual(pages.files_of('platform', files), ['files.h'])
        self.assertEqual(pages.files_of('platform/win32', files), ['files.cpp'])
        self.assertEqual(pages.files_of('app', files), ['windows/main.cpp'])

    TREE = {'base/run.h': 'struct Run {};', 'base/run.cpp': 'int Made;', 'exec/rules.cpp': 'namespace Rules { int Row; }',
            'docs/guide.md': 'Guide'}
    GUIDE = ('| step | where |\n|---|---|\n| a | `gone/early.cpp` |\n\n## Where does my code go?\n\n'
             '| I want to add | it goes to |\n|---|---|\n| `Left` | %s |\n')
    CELLS = (  # the right cell of the guide's row, what is to be found
        ('`Run` in `base/run.h`, `Made` in `base/run`', None),
        ('`exec/`, `exec`, `base/*.h` and `docs/guide.md`', None),
        ('`Rules::Row` in `exec/rules.cpp`', None),
        ('a rule in words', None),
        ('`base/gone.cpp`', ':9: `base/gone.cpp` is not there'),
        ('`gone/`', ':9: `gone/` is not there'),
        ('`docs/gone.md`', ':9: `docs/gone.md` is not there'),
        ('`exec/*.h`', ':9: `exec/*.h` is not there'),
        ('`Row` in `base/run`', ':9: `Row` is in none of the files'),
        ('`Rules::Column` in `exec/rules.cpp`', ':9: `Rules::Column` is in none of the files'),
        ('`Ru` in `base/run.h`', ':9: `Ru` is in none of the files'),
        ('`Run`', ':9: `Run` is in none of the files'),
    )

    def test_the_guide(self):
        for cell, expected in self.CELLS:
            with self.subTest(cell=cell):
                self.expect(expected, pages.guide_problems(self.GUIDE % cell, list(self.TREE), self.TREE.get))

    def test_a_guide_that_is_not_there(self):
        for text in ('', '| step | where |\n|---|---|\n| a | `exec/` |\n', '## Where does my code go?\n\nSomewhere.\n'):
            with self.subTest(text=text):
                self.expect('no table under', pages.guide_problems(text, list(self.TREE), self.TREE.get))


class Documents(unittest.TestCase):
    """Each row is a slip in a file of the project: what it replaces, and what is to be found."""
    GUIDE, INI, REGISTRY = documents.GUIDE, documents.INI, documents.REGISTRY
    SLIPS = (
        (GUIDE, '| `/isr` |', '| `/isx` |', 'switch `/isx` is not in the code'),
        (GUIDE, '| `/isr` |', '| `/isx` |', 'switch `/isr` is missing'),
        (GUIDE, '| switch | effect |', '| argument | effect |', 'no table "switch" under "Starting it"'),
        (GUIDE, '## Exit codes', '## Codes', 'no table "code" under "Exit codes"'),
        (GUIDE, '| 3 | Another', '| 4 | Another', 'exit code `3` is missing'),
        (GUIDE, '| 7000 to 7006 |', '| 7000 to 7001 |', 'no row of "Error numbers" holds 7006'),
        ('core/switches.h', '{"/v", ""', '{"/w", ""', 'switch `/w` is missing'),
        ('core/switches.h', '&Verbose, ', '', '"All" does not list every switch'),
        ('core/command_line.cpp', 'Switches::Verbose', '"/v"', '"/v" is spelt again'),
        ('core/exit_codes.h', 'Cancelled = 2', 'Cancelled = 5', 'exit code `5` is missing'),
        ('core/start.cpp', 'ExitCode::AnotherCopyRuns', '3', 'an exit code as a number'),
        (REGISTRY, '| `FUDone` |', '| `Forced` |', 'the value `FUDone` is missing'),
        (REGISTRY, '| `Cleanup`, ', '| `CleanUp`, ', "the component's value `CleanUp` is not in the code"),
        (REGISTRY, '| `ConditionList` |', '| `Conditions` |', "the component's sub-key `ConditionList` is missing"),
        (REGISTRY, '`HelpLink`', '`HelpLine`', 'elsewhere the value `HelpLink` is missing'),
        (REGISTRY, 'Message Cause', 'Message Reason', 'elsewhere the value `Message Reason` is not in the code'),
        ('base/product_record.h', '"LastSequence", {}, AtClosedown::Emptied', '"LastSequence"',
         '`LastSequence` is not emptied at closedown'),
        ('base/product_record.h', 'RecordValue FUDone{RecordKey', 'RecordValue FUDone = {RecordKey', 'not written like'),
        (INI, '| `Cleanup` |', '| `CleanUp` |', 'the key `[] Cleanup of the component ini` is missing'),
        (INI, '| `5` | Optional. |', '| `6` | Optional. |', '[Product] NumberOfLoops: its default is `5`, not `6`'),
        (INI, '| `Administrator` |', '| none |', '[Connection] Username: its default is `Administrator`'),
        (INI, '| any machine | Required: logged', '| any machine | Optional: logged', 'MachineType: the log tells'),
        (INI, '| unknown | Optional. |', '| unknown | Required. |', 'ServerType: the log does not tell'),
        (INI, 'error 6091', 'error 6097', 'no error has the number 6097'),
        (documents.KNOWN_KEYS, '"Transform"', '"Transforms"', 'the key `[] Transform of the component ini` is missing'),
        (documents.KNOWN_KEYS, '"CopyOpRoot", Logged', '"CopyOpRoot"', '[Product] CopyOpRoot: the log tells'),
        ('exec/machine_types.cpp', '"ServerType",', '"Server",', '[Product] Server of the product ini` is missing'),
        ('core/discovery.cpp', 'Value::ProductIni.name', 'someKey', 'which key GetIniString(ini, "Product", someKey)'),
        ('base/component.cpp', '"Cost", &Component::cost, Origin::Ini', '"Cost", &Component::cost, Origin::Computed',
         'the key `[] Cost of the component ini` is not in the code'),
    )

    def test_each_slip(self):
        for path, old, new, expected in self.SLIPS:
            with self.subTest(path=path, new=new):
                self.assertIn(old, tree.read(path))
                read = lambda file: tree.read(file).replace(old, new) if file == path else tree.read(file)
                try:
                    found = '\n'.join(documents.problems(read, tree.files))
                except code_tables.NotFound as missing:
                    found = str(missing)
                self.assertIn(expected, found)


class ErrorNumbers(unittest.TestCase):
    ROWS = (  # the texts, the rows beside them, the numbers in use, what is to be found
        ({6000: 'A'}, [(6000, '', 'cause', 'remedy')], {6000}, None),
        ({6000: 'A'}, [(6000, '', '-', '-')], set(), None),
        ({}, [], set(), 'no table of error texts'),
        ({6000: 'A', 6001: 'B'}, [(6000, '', '-', '-')], set(), 'no row for 6001'),
        ({6000: 'A'}, [(6000, '', '-', '-')], {7000}, 'no row for 7000'),
        ({6000: 'A'}, [(6000, '', '-', '-'), (7000, '', 'cause', 'remedy')], {7000}, '7000 has no text'),
        ({6000: 'A'}, [(6000, 'B', '-', '-')], set(), '6000 has its text in'),
        ({6000: 'A'}, [(6000, '', '-', '-'), (6000, '', '-', '-')], set(), '6000 stands twice'),
        ({6000: 'A', 6001: 'B'}, [(6001, '', '-', '-'), (6000, '', '-', '-')], set(), 'not in the order'),
        ({6000: 'A'}, [(6000, '', 'cause', 'remedy')], set(), '6000 is logged by nothing'),
        ({6000: 'A'}, [(6000, '', '-', '-')], {6000}, '6000 is logged by the program'),
    )

    def test_each_row(self):
        for texts, rows, used, expected in self.ROWS:
            with self.subTest(expected=expected, rows=rows):
                found = error_numbers.table_problems(texts, rows, used)
                self.assertEqual(len(found), 1 if expected else 0, found)
                self.assertIn(expected or '', ''.join(found))

    def test_texts_are_read_from_the_code(self):
        source = 'constexpr ErrorText ErrorTexts[] = {\n    // log\n    {6000, "one "\n     "text"},\n    {6020, "%"},\n};\n'
        self.assertEqual(error_numbers.texts(source), {6000: 'one text', 6020: '%'})
        self.assertEqual(error_numbers.texts('constexpr Text Texts[] = {{6000, "one"}};'), {})

    def test_numbers_in_use_are_found_however_they_are_written(self):
        for line, number in (('throw here.failure(6081, {path});', 6081), ('here.error(6092, {name});', 6092),
                             ('throw Error(6162, "text", source);', 6162), ('constexpr int Missing = 6081;', 6081),
                             ('inline constexpr int Named = 7000;', 7000), ('require(a(b(c)) == d, 6141);', 6141),
                             ('// raises here.failure(6100, {})', None), ('sleep(60000);', None)):
            with self.subTest(line=line):
                self.assertEqual(error_numbers.used([line]), {number} - {None})

    def test_a_row_without_cause_or_remedy_is_refused(self):
        self.assertEqual(error_numbers.helps('# n\n6000\t\tcause\tremedy\n'), [(6000, '', 'cause', 'remedy')])
        for line in ('6000\tcause\tremedy', '6000\t\tcause\t', 'x\t\tcause\tremedy'):
            with self.subTest(line=line), self.assertRaises(ValueError):
                error_numbers.helps(line)

    def test_the_page_follows_its_tables(self):
        rows = [(6000, '', 'a cause', 'a remedy')]
        self.assertIn('| 6000 | `A %` | a cause | a remedy |', error_numbers.page({6000: 'A %'}, rows))
        self.assertNotEqual(error_numbers.page({6000: 'A %'}, rows), error_numbers.page({6000: 'B %'}, rows))


class Tools(unittest.TestCase):
    def write(self, name, text):
        folder = tempfile.TemporaryDirectory(dir=os.path.join(HERE, '..', '..', 'out'))
        self.addCleanup(folder.cleanup)
        path = os.path.join(folder.name, name)
        with open(path, 'w') as file:
            file.write(text)
        return path

    def test_formatting_finds_a_badly_printed_file(self):
        self.assertIn('bad.cpp', formatting.unformatted([self.write('bad.cpp', 'int  a ;\n')]))
        self.assertEqual(formatting.unformatted([self.write('good.cpp', 'int a;\n')]), '')

    def test_tidy_finds_a_bad_habit(self):
        bad = self.write('bad.cpp', 'int* Nothing() { return 0; }\n')
        self.assertIn('modernize-use-nullptr', self.complaints(bad))

    def test_tidy_finds_it_also_among_other_files(self):
        good = 'namespace {\nconstexpr int Rows[] = {1};\nint Sum() {\n  return Rows[0];\n}\n}  // namespace\n'
        paths = [self.write('a.cpp', good), self.write('b.cpp', 'using std::swap;\nint* Nothing() { return 0; }\n')]
        found = tidy.complaints(paths, dict.fromkeys(paths, 'g++'))
        self.assertNotIn('Sum', found[paths[0]])
        self.assertRegex(found[paths[1]], r'(?s)nothing needs using std::swap;.*modernize-use-nullptr')
        self.assertEqual(tidy.groups([paths[0], paths[0]]), [[paths[0]], [paths[0]]])  # their names clash

    def complaints(self, path):
        return tidy.complaints([path], {path: 'g++'})[path]

    def test_tidy_finds_names_that_are_written_otherwise(self):
        bad = ('namespace assistant { constexpr int badTable[] = {1}; enum class E { badWord }; class badType {}; '
               'void badProcedure(int BadParameter) { const int BadLocal = BadParameter; (void)BadLocal; } '
               'class C { public: void BadMethod(); private: int badMember; }; }')
        good = ('namespace assistant::modINI { constexpr int Table[] = {1}; enum class E { Word }; class clsLog {}; '
                'void Procedure(int parameter) { const int local = parameter; (void)local; } '
                'class C { public: void method(); private: int member_; }; }')
        found = self.complaints(self.write('bad.cpp', bad + '\n'))
        for name in set(re.findall(r'\b[bB]ad[A-Z]\w*', bad)):
            self.assertRegex(found, "invalid case style for .*'%s'" % name)
        self.assertNotIn('identifier-naming', self.complaints(self.write('good.cpp', good + '\n')))

    def test_tidy_checks_again_after_a_change_of_the_file_or_the_command(self):
        path = os.path.relpath(self.write('a.cpp', 'int a;\n'), tree.ROOT)
        first = tidy.fingerprint(path, 'g++')
        self.assertNotEqual(first, tidy.fingerprint(path, 'g++ -DX'))
        with open(os.path.join(tree.ROOT, path), 'a') as file:
            file.write('int b;\n')
        self.assertNotEqual(first, tidy.fingerprint(path, 'g++'))

    def test_ratio_counts_lines_under_tests(self):
        self.assertEqual(ratio.counts([('tests/a.cpp', '1\n'), ('base/a.cpp', '1\n2\n3\n')]), (1, 4))

    def test_a_test_that_hangs_fails_and_the_others_go_on(self):
        folder = os.path.dirname(self.write('test_limits.py', 'import time\nimport unittest\nclass Limits(unittest.TestCase):\n'
                                            '    def test_hangs(self):\n        time.sleep(60)\n'
                                            '    def test_ends(self):\n        pass\n'))
        for jobs in ('1', '2'):
            counts = os.path.join(folder, 'counts')
            subprocess.run([sys.executable, os.path.join(HERE, '..', 'run_unittests.py'), '--jobs', jobs, '--seconds', '1',
                            folder, counts], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=30)
            with open(counts) as file:
                self.assertEqual(file.read(), '1 1 0\n')
