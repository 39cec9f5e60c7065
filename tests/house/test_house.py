"""Runs the checks of the house, and shows of each that it finds a bad example."""
import os
import re
import subprocess
import sys
import tempfile
import unittest

import formatting
import includes
import pages
import ratio
import tidy
import tree

HERE = os.path.dirname(os.path.abspath(__file__))


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

    def test_imports(self):
        self.check('imports.py', os.path.join(tree.ROOT, 'out', 'win32', 'QX Installation Assistant.exe'))

    def test_imports_finds_what_it_is_there_to_find(self):
        self.check('imports.py', '--self-test')

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
        files = ['platform/files.h', 'platform/win32/files.cpp', 'app/qxia/main.cpp', 'docs/guide.md']
        self.assertEqual(pages.files_of('platform', files), ['files.h'])
        self.assertEqual(pages.files_of('platform/win32', files), ['files.cpp'])
        self.assertEqual(pages.files_of('app', files), ['qxia/main.cpp'])

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
        bad = self.write('bad.cpp', 'int* nothing() { return 0; }\n')
        self.write('compile_commands.json', '[]')
        found = tidy.complaints(bad, os.path.dirname(bad))
        self.assertIn('modernize-use-nullptr', found)

    def test_tidy_finds_names_that_are_written_otherwise(self):
        bad = ('namespace assistant { constexpr int badTable[] = {1}; enum class E { badWord }; class badType {}; '
               'void badProcedure(int BadParameter) { const int BadLocal = BadParameter; (void)BadLocal; } '
               'class C { public: void BadMethod(); private: int badMember; }; }')
        good = ('namespace assistant::modINI { constexpr int Table[] = {1}; enum class E { Word }; class clsLog {}; '
                'void Procedure(int parameter) { const int local = parameter; (void)local; } '
                'class C { public: void method(); private: int member_; }; }')
        found = tidy.complaints(self.write('bad.cpp', bad + '\n'), HERE)
        for name in set(re.findall(r'\b[bB]ad[A-Z]\w*', bad)):
            self.assertRegex(found, "invalid case style for .*'%s'" % name)
        self.assertNotIn('identifier-naming', tidy.complaints(self.write('good.cpp', good + '\n'), HERE))

    def test_tidy_checks_again_after_a_change_of_the_file_or_the_command(self):
        path = os.path.relpath(self.write('a.cpp', 'int a;\n'), tree.ROOT)
        first = tidy.fingerprint(path, 'g++')
        self.assertNotEqual(first, tidy.fingerprint(path, 'g++ -DX'))
        with open(os.path.join(tree.ROOT, path), 'a') as file:
            file.write('int b;\n')
        self.assertNotEqual(first, tidy.fingerprint(path, 'g++'))

    def test_ratio_counts_lines_under_tests(self):
        self.assertEqual(ratio.counts([('tests/a.cpp', '1\n'), ('base/a.cpp', '1\n2\n3\n')]), (1, 4))
