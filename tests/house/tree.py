"""The project's own C++ files, as the checks of this folder see them."""
import os
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def cpp_files():
    """Paths from the root of every C++ file that is tracked or about to be."""
    listed = subprocess.run(['git', 'ls-files', '-co', '--exclude-standard', '*.cpp', '*.h'], cwd=ROOT,
                            capture_output=True, text=True, check=True).stdout.split('\n')
    return sorted(path for path in listed if path and os.path.exists(os.path.join(ROOT, path)))


def read(path):
    with open(os.path.join(ROOT, path), encoding='utf-8') as file:
        return file.read()
