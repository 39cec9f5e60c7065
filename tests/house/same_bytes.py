"""Holds the build of the 32-bit program against one in another folder and on another day: the bytes must be the same.

usage: same_bytes.py [--self-test]
A sample of the sources is compiled again, and the program linked again. `scripts/release --twice` makes the whole
release again.
"""
import filecmp
import os
import shutil
import subprocess
import sys
import tempfile

import tree

BUILD = os.path.join('out', 'build', 'win32')
PROGRAM = 'app/windows/QX Installation Assistant.exe'
RESOURCES = 'app/windows/CMakeFiles/program.dir/program.rc.res'
SAMPLE = 6  # sources that are compiled again, besides the resources
ANOTHER_DAY = ['faketime', '-f', '+400d']
TELLS_OF_ITS_BUILD = 'extern const char* const Built;\nconst char* const Built = __FILE__ " " __DATE__;\n'


def run(command, folder):
    subprocess.run(command, cwd=folder, env=dict(os.environ, CCACHE_DISABLE='1'), check=True, capture_output=True)


def ninja(*arguments):
    listed = subprocess.run(['ninja', '-C', os.path.join(tree.ROOT, BUILD), '-t', *arguments], capture_output=True,
                            text=True, check=True)
    return [line for line in listed.stdout.split('\n') if line and not line.startswith('ninja: ')]


def sampled_objects():
    objects = [line.split(':')[0] for line in ninja('targets', 'all') if '.cpp.obj: ' in line]
    return objects[::max(1, len(objects) // SAMPLE)] + [RESOURCES]


def copy_of_the_sources(folder):
    for path in tree.files():
        target = os.path.join(folder, path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copy(os.path.join(tree.ROOT, path), target)


def compiled_elsewhere(folder, objects):
    run(['cmake', '--preset', 'win32'], folder)
    run([*ANOTHER_DAY, 'ninja', '-C', BUILD, '-j', os.environ.get('JOBS', '2'), *objects], folder)


def linked_again(program):
    """Links what has been built, on another day."""
    command = ninja('commands', PROGRAM)[-1]
    assert '-o "%s"' % PROGRAM in command, command
    command = command.replace('-o "%s"' % PROGRAM, '-o "%s"' % program)
    run([*ANOTHER_DAY, 'bash', '-c', command], os.path.join(tree.ROOT, BUILD))


def differing(folder):
    """(how many parts were compared, those of them that another folder or day makes different)."""
    copy_of_the_sources(folder)
    objects = sampled_objects()
    compiled_elsewhere(folder, objects)
    again = {path: os.path.join(folder, BUILD, path) for path in objects}
    again[PROGRAM] = os.path.join(folder, 'linked.exe')
    linked_again(again[PROGRAM])
    here = os.path.join(tree.ROOT, BUILD)
    return len(again), [path for path, made in again.items()
                        if not filecmp.cmp(os.path.join(here, path), made, shallow=False)]


def self_test():
    """A source that tells of its own build is found."""
    made = []
    with tempfile.TemporaryDirectory() as folder:
        for place, day in (('one', []), ('two', ANOTHER_DAY)):
            os.mkdir(os.path.join(folder, place))
            source = os.path.join(folder, place, 'built.cpp')
            with open(source, 'w') as file:
                file.write(TELLS_OF_ITS_BUILD)
            made.append(source + '.obj')
            run([*day, 'i686-w64-mingw32-g++-win32', '-c', source, '-o', made[-1]], folder)
        same = filecmp.cmp(*made, shallow=False)
    print('same bytes: a source that tells of its build is %s' % ('NOT FOUND' if same else 'found'))
    return 1 if same else 0


def main(arguments):
    if arguments:
        return self_test()
    with tempfile.TemporaryDirectory(prefix='another-place-') as folder:
        compared, found = differing(folder)
    for path in found:
        print('%s: another folder or day gives other bytes; look for dates, file names and paths in it' % path)
    print('same bytes: %d of %d parts differ' % (len(found), compared) if found else
          'same bytes: %d parts, the program among them' % compared)
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
