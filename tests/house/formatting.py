#!/usr/bin/env python3
"""Every C++ file stands as clang-format would print it."""
import subprocess
import sys

import tree


def unformatted(paths):
    """clang-format's complaints about the files, '' when there are none."""
    if not paths:
        return ''
    run = subprocess.run(['clang-format', '--dry-run', '-Werror', *paths], cwd=tree.ROOT, capture_output=True, text=True)
    return run.stderr if run.returncode else ''


def main():
    complaints = unformatted(tree.cpp_files())
    print(complaints or 'formatting: clean')
    return 1 if complaints else 0


if __name__ == '__main__':
    sys.exit(main())
