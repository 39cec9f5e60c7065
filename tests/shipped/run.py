"""Holds what the program as it ships does, as 32-bit code, against its 64-bit build, on each system that Wine plays.

usage: run.py [--jobs N] [--short] SYSTEM ...    started by scripts/test32, in namespaces of its own
"""
import argparse
import os
import subprocess
import sys
import time
import traceback
from concurrent.futures import ThreadPoolExecutor

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[1:1] = [os.path.join(HERE, '..', 'endtoend'), os.path.join(HERE, '..', '..', 'scripts', 'wine')]

import emulated  # noqa: E402
import stories  # noqa: E402
from differences import differences  # noqa: E402
from kind import Wine  # noqa: E402
from machine import ensure_prototype  # noqa: E402
from plays import DIFFERENCES, FALSELY  # noqa: E402

CANNOT = 77
WINE32 = emulated.Emulated()
WINE64 = Wine(screen=False)
WINE64.patience = 4  # the emulated machine beside it keeps the computer busy


def tell(tale, wine, windows):
    """The stories of a tale by their titles; one that broke off has what broke it at its place."""
    told = {}
    try:
        for title, story in tale(wine, windows):
            told[title] = story
    except Exception:  # whatever it is, it is this run's result
        told[None] = traceback.format_exc()
    return told


def not_as_meant(title, end, story):
    """What is wrong with a story by itself: both kinds could go the same wrong way."""
    wrong = [] if story.code == end else ['it ended with %d, not with %d' % (story.code, end)]
    if title in stories.ALL_OK:
        wrong += ['%s: %s' % outcome for outcome in story.outcomes if outcome[1] != 'ok']
    return wrong + ([] if story.outcomes else ['no component had its turn'])


def tell_both(tale, windows):
    """(titles that were told, what is wrong with each), of a tale under both kinds of Wine; and the 32-bit stories."""
    started = time.time()
    ours, theirs = tell(tale, WINE32, windows), tell(tale, WINE64, windows)
    results = {}
    for title, end in stories.ENDS[tale].items():
        if title in ours and title in theirs:
            results[title] = (not_as_meant(title, end, ours[title])
                              + differences(title, ours[title], theirs[title], DIFFERENCES, ('32-bit', '64-bit')))
        else:
            results[title] = ['it did not come to its end:\n%s' % (ours.get(None) or theirs.get(None))]
    for title, wrong in results.items():
        print('%s %-6s %-12s' % ('ok    ' if not wrong else 'FAILED', windows, title), flush=True)
    print('       %-6s %s: %.0f s' % (windows, tale.__name__, time.time() - started), flush=True)
    return windows, results, ours


def print_table(systems, told):
    """What became of each component, by the 32-bit program."""
    rows = {}
    for windows, _, ours in told:
        for title in filter(None, ours):
            for component, verdict in ours[title].outcomes:
                rows.setdefault((title, component), {})[windows] = verdict
    order = sorted(rows, key=lambda row: stories.TITLES.index(row[0]))
    print('\n%-12s %-14s %s' % ('', '', ' '.join('%-13s' % windows for windows in systems)))
    for title, component in order:
        print('%-12s %-14s %s' % (title, component, ' '.join(
            '%-13s' % rows[title, component].get(windows, '-') for windows in systems)))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--jobs', type=int, default=2)
    parser.add_argument('--short', action='store_true', help='without the product on two discs')
    parser.add_argument('systems', nargs='+')
    options = parser.parse_args()
    try:
        emulated.enter()
    except (OSError, subprocess.CalledProcessError) as refused:
        print('test32: cannot run here: its namespaces do not let it mount: %s' % refused)
        return CANNOT
    ensure_prototype(WINE64)
    started = time.time()
    try:
        ensure_prototype(WINE32)
    except (RuntimeError, subprocess.TimeoutExpired) as failed:  # nothing of the program has run yet
        print('test32: cannot run here: no machine of the 32-bit Wine could be made: %s' % failed)
        return CANNOT
    print('       a machine of the 32-bit Wine: %.0f s' % (time.time() - started), flush=True)
    # Changing discs takes longest, and most patience of whoever does it: see README.md.
    told_of = [tale for tale in stories.ENDS if not (options.short and tale is stories.discs)]
    tales = [(tale, windows) for windows in options.systems for tale in told_of]
    with ThreadPoolExecutor(options.jobs) as pool:
        told = list(pool.map(lambda one: tell_both(*one), tales))
    print_table(options.systems, told)
    print('\nWhere Wine plays a system falsely, so that this shows nothing of it:')
    for systems, what in FALSELY:
        print('  %s: %s' % (systems, what))
    wrong = [(windows, title, lines) for windows, results, _ in told for title, lines in results.items() if lines]
    for windows, title, lines in wrong:
        print('\n%s, %s' % (windows, title))
        print('\n'.join('  ' + line for line in lines))
    passed = sum(len(results) for _, results, _ in told) - len(wrong)
    print('\n%d passed, %d failed' % (passed, len(wrong)))
    return 1 if wrong else 0


if __name__ == '__main__':
    sys.exit(main())
