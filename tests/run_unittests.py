#!/usr/bin/env python3
"""Runs the test_*.py of a folder and writes "passed failed skipped" into a file.

usage: run_unittests.py [--jobs N] [--again TEXT] [--seconds N] FOLDER COUNTS-FILE [name-pattern ...]
With jobs, each class is a process of its own; one that failed and printed the text is run once more, and that is told.
A test that has not ended after the seconds has failed.
"""
import argparse
import os
import signal
import subprocess
import sys
import unittest
from concurrent.futures import ThreadPoolExecutor

CLASS_FACTOR = 6  # a class may take that many times as long as a test


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


def limited(seconds):
    """A kind of result under which a test that hangs is broken off where it stands."""
    def end(*_):
        raise TimeoutError('the test has not ended after %d s' % seconds)

    class Limited(unittest.TextTestResult):
        def startTest(self, test):
            super().startTest(test)
            signal.alarm(seconds)

        def stopTest(self, test):
            signal.alarm(0)
            super().stopTest(test)

    signal.signal(signal.SIGALRM, end)
    return Limited


def run_here(suite, seconds):
    """(passed, failed, skipped) of the tests; a test of several rows counts once."""
    runner = unittest.TextTestRunner(stream=sys.stdout, verbosity=2, resultclass=limited(seconds))
    result = runner.run(suite)
    failed = {str(getattr(test, 'test_case', test)) for test, _ in result.failures + result.errors}
    failed |= {str(test) for test in result.unexpectedSuccesses}
    skipped = len(result.skipped)
    return max(result.testsRun - len(failed) - skipped, 0), len(failed), skipped


def run_class(options, name):
    """The same of one class, run as a process of its own."""
    output, counts = run_class_once(options, name)
    if options.again and counts[1] and options.again in output:
        print('%s\n== once more, for "%s": %s' % (output, options.again, name), flush=True)
        output, counts = run_class_once(options, name)
    print(output, end='', flush=True)
    return counts


def run_class_once(options, name):
    """What it printed and its counts; one that dies or hangs outside of its tests has failed."""
    own_counts = options.counts + '.' + name
    command = [sys.executable, __file__, '--seconds', str(options.seconds), options.folder, own_counts, name]
    try:
        output = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                timeout=CLASS_FACTOR * options.seconds).stdout
    except subprocess.TimeoutExpired as late:
        output = '%s\n%s has not ended after %d s\n' % (late.output, name, late.timeout)
    if not os.path.exists(own_counts):
        return output, (0, 1, 0)
    with open(own_counts) as file:
        counts = tuple(map(int, file.read().split()))
    os.remove(own_counts)
    return output, counts


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--jobs', type=int, default=1)
    parser.add_argument('--again')
    parser.add_argument('--seconds', type=int, default=600)
    parser.add_argument('folder')
    parser.add_argument('counts')
    parser.add_argument('patterns', nargs='*')
    options = parser.parse_args()
    suite = discover(options.folder, options.patterns)
    if options.jobs > 1:
        with ThreadPoolExecutor(options.jobs) as pool:
            parts = list(pool.map(lambda name: run_class(options, name), classes_of(suite)))
        counts = tuple(map(sum, zip(*parts))) if parts else (0, 0, 0)
    else:
        counts = run_here(suite, options.seconds)
    if not any(counts):
        print('no tests of that name in ' + options.folder)
        counts = (0, 1, 0)
    with open(options.counts, 'w') as file:
        file.write('%d %d %d\n' % counts)
    return 1 if counts[1] else 0


if __name__ == '__main__':
    sys.exit(main())
