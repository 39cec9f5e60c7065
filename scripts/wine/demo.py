"""Installs the sample product with the real program on a fresh machine under Wine and tells how it went."""
import os
import sys
import time

from machine import OUT, PROGRAM, Screen, ensure_prototype
from run_log import outcomes, read_log
from sample_machine import LOG_FOLDER, PRODUCT, sample_machine


def print_table(rows):
    head = ('Component', 'Kind', 'Sequence', 'Verdict', 'Reason')
    lines = [head] + [(row.component, row.kind, str(row.sequence), row.verdict, row.reason) for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(4)]
    for number, line in enumerate(lines):
        print('  '.join(text.ljust(width) for text, width in zip(line, widths)) + '  ' + line[4])
        if number == 0:
            print('  '.join('-' * width for width in widths) + '  ' + '-' * 40)


def main():
    with Screen():
        ensure_prototype()
        with sample_machine(os.path.join(OUT, 'demo'), os.path.join(OUT, 'win64', PROGRAM)) as machine:
            started = time.time()
            code = machine.run('D:\\' + PROGRAM, '/s', timeout=300)
            seconds = time.time() - started
            registry = machine.registry()
            log = machine.host(LOG_FOLDER + '\\QX Installation Assistant.html')
    if not os.path.exists(log):
        sys.exit('The program ended with %d and left no log at %s' % (code, log))
    print_table(outcomes(registry, read_log(log), PRODUCT))
    print('\nHTML log:   %s' % log)
    print('Exit code:  %d (%s), after %.1f s' % (
        code, {0: 'the product succeeded', 1: 'the product failed, for the reasons above'}.get(code, '?'), seconds))


if __name__ == '__main__':
    main()
