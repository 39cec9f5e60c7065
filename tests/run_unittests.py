#!/usr/bin/env python3
"""Runs the test_*.py of a folder and writes "passed failed skipped" into a file.

usage: run_unittests.py [--jobs N] FOLDER COUNTS-FILE [name-pattern ...]     with jobs, each class is a process of its own
"""
import argparse
import os
import subprocess
import sys
import unittest
from concurrent.futures import ThreadPoolExecutor


def discover(folder, patterns):
    loader = unittest.TestLoader()
    loader.testNamePatterns = ['*%s*' % pattern for pattern in patterns] or None
    sys.path.insert(0, os.path.abspath(folder))
    return loader.discover(folder, pattern='test_*.py')


def classes_of(suite):
    """The tests' classes, as the beginnings of their tests' names."""
    names = []
    for test in suite:
        found = classes_of(test) if isinstance(test, unittest.TestSuite) else [test.id().rsplit('.', 1)[0] + '.']
        names += [name for name in found if name not in names]
    return names


def run_here(suite):
    """(passed, failed, skipped) of the tests; a test of several rows counts once."""
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    failed = {str(getattr(test, 'test_case', test)) for test, _ in result.failures + result.errors}
    failed |= {str(test) for test in result.unexpectedSuccesses}
    skipped = len(result.skipped)
    return max(result.testsRun - len(failed) - skipped, 0), len(failed), skipped


def run_class(folder, counts_file, name):
    """The same of one class, run as a process of its own; one that dies has failed."""
    own_counts = counts_file + '.' + name
    run = subprocess.run([sys.executable, __file__, folder, own_counts, name], stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True)
    print(run.stdout, end='', flush=True)
    if not os.path.exists(own_counts):
        return 0, 1, 0
    with open(own_counts) as file:
        counts = tuple(map(int, file.read().split()))
    os.remove(own_counts)
    return counts


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--jobs', type=int, default=1)
    parser.add_argument('folder')
    parser.add_argument('counts')
    parser.add_argument('patterns', nargs='*')
    options = parser.parse_args()
    suite = discover(options.folder, options.patterns)
    if options.jobs > 1:
        with ThreadPoolExecutor(options.jobs) as pool:
            parts = list(pool.map(lambda name: run_class(options.folder, options.counts, name), classes_of(suite)))
        counts = tuple(map(sum, zip(*parts))) if parts else (0, 0, 0)
    else:
        counts = run_here(suite)
    if not any(counts):
        print('no tests of that name in ' + options.folder)
        counts = (0, 1, 0)
    with open(options.counts, 'w') as file:
        file.write('%d %d %d\n' % counts)
    return 1 if counts[1] else 0


if __name__ == '__main__':
    sys.exit(main())
