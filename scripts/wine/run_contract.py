"""Runs the contract tests against the real adapter on a fresh machine under Wine, and prints what they print."""
import os
import shutil
import sys

from machine import OUT, Machine, Screen, ensure_prototype


def main():
    program, arguments = sys.argv[1], sys.argv[2:]
    with Screen():
        ensure_prototype()
        with Machine(os.path.join(OUT, 'contract', 'machine')) as machine:
            shutil.copy(program, machine.host('C:\\contract_tests.exe'))
            log = os.path.join(OUT, 'contract', 'output.txt')
            with open(log, 'w') as output:
                code = machine.run('C:\\contract_tests.exe', *arguments, timeout=240, output=output)
    with open(log, encoding='latin-1', newline='') as output:
        print(output.read().replace('\r\n', '\n'), end='')
    return code


if __name__ == '__main__':
    sys.exit(main())
