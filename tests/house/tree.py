"""The project's own files, as the checks of this folder see them."""
import os
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def files(*patterns):
    """Paths from the root of every file (of these patterns) that is tracked or about to be."""
    listed = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard', *patterns], cwd=ROOT,
                            capture_output=True, text=True, check=True).stdout.split('\n')
    return sorted({path for path in listed if path and os.path.exists(os.path.join(ROOT, path))})


def cpp_files():
    return files('*.cpp', '*.h')


def read(path):
    with open(os.path.join(ROOT, path), encoding='utf-8') as file:
        return file.read()
