#!/usr/bin/env python3
"""Runs the test_*.py of a folder and writes "passed failed skipped" into a file.

usage: run_unittests.py FOLDER COUNTS-FILE [name-pattern]
"""
import os
import sys
import unittest


def main():
    folder, counts_file = sys.argv[1:3]
    loader = unittest.TestLoader()
    loader.testNamePatterns = ['*%s*' % pattern for pattern in sys.argv[3:]] or None
    sys.path.insert(0, os.path.abspath(folder))
    suite = loader.discover(folder, pattern='test_*.py')
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    failed = {str(test.test_case if hasattr(test, 'test_case') else test)
              for test, _ in result.failures + result.errors}
    failed |= {str(test) for test in result.unexpectedSuccesses}
    skipped = len(result.skipped)
    passed = max(result.testsRun - len(failed) - skipped, 0)
    with open(counts_file, 'w') as file:
        file.write('%d %d %d\n' % (passed, len(failed), skipped))
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
