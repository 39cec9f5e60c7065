"""docs/quick-start.md: its commands, run as they are printed in an empty folder, print what the page says."""
import os
import shutil
import subprocess
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, '..', '..')
QXIA = os.environ.get('QXIA', os.path.join(ROOT, 'out', 'native', 'qxia'))


def steps():
    """(command, what it prints) of each line behind a dollar sign."""
    found = []
    with open(os.path.join(ROOT, 'docs', 'quick-start.md')) as page:
        for line in page.read().splitlines():
            if line.startswith('    $ '):
                found.append((line[6:], []))
            elif line.startswith('    ') and found and found[-1][1] is not None:
                found[-1][1].append(line[4:])
            elif line and found:
                found.append((None, None))  # the end of a block
            elif found and found[-1][1]:
                found[-1][1].append('')
    return [(command, '\n'.join(lines).strip('\n')) for command, lines in found if command]


class QuickStart(unittest.TestCase):
    def test_commands_do_what_the_page_says(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        tools = os.path.join(folder, 'tools')
        os.makedirs(tools)
        os.symlink(os.path.abspath(QXIA), os.path.join(tools, 'qxia'))
        work = os.path.join(folder, 'work')
        os.makedirs(work)
        path = dict(os.environ, PATH=tools + ':' + os.environ['PATH'], LC_ALL='C')
        codes = []
        for command, printed in steps():
            run = subprocess.run(['sh', '-c', command], cwd=work, env=path, capture_output=True, text=True, timeout=60)
            self.assertEqual((run.stdout.strip('\n'), run.stderr), (printed, ''), command)
            codes.append(run.returncode)
        self.assertEqual(codes, [0, 0, 0, 0, 1, 0, 0, 0, 0, 0])
        with open(os.path.join(work, 'rehearsal.txt')) as told:
            self.assertIn('ended with 5', told.read())
        self.assertTrue(os.path.getsize(os.path.join(work, 'rehearsal.html')))


if __name__ == '__main__':
    unittest.main()
