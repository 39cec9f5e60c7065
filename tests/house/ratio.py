#!/usr/bin/env python3
"""Prints how large a part of all C++ lines the tests are. It informs and never fails."""
import tree


def counts(files):
    """(lines under tests/, all lines) of (path, text) pairs."""
    lines = [(path, text.count('\n')) for path, text in files]
    return sum(n for path, n in lines if path.startswith('tests/')), sum(n for _, n in lines)


def main():
    tests, everything = counts((path, tree.read(path)) for path in tree.cpp_files())
    print('ratio: %d of %d C++ lines are tests: %.2f (0.25 to 0.33 is meant)' % (
        tests, everything, tests / everything if everything else 0))


if __name__ == '__main__':
    main()
