"""Takes the pictures of the program's windows, and an excerpt of its log as a page: one machine under Wine with the sample
product, each window in front of the others.

usage: shots.py IMAGES WORK   (the folder of the pictures; one for the page excerpt.html)
"""
import os
import re
import shutil
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'tests', 'endtoend'))

import support
from machine import OUT, PROGRAM
from person import DIALOG, Person
from run_log import read_log
from sample_machine import LOG_FOLDER, sample_machine

LOG = LOG_FOLDER + '\\QX Installation Assistant.html'
PAUSES_AT = 'Packages/Printers/printers.vbs'
# Rows of the excerpt: those of these components, less what only repeats itself.
SHOWN = ('Pilot', 'Radar')
LEFT_OUT = re.compile(r'^(Retrieving|There are|Condition is|Install set|Check for|MSIExec is|Install can|Component has|Writing last|'
                      r'Reboot status|No reboot|Sequence is|Last Sequence|Next in sequence)')


class Shots:
    def __init__(self, images, work):
        self.images, self.work = images, work
        self.machine = sample_machine(os.path.join(OUT, 'shots', 'sample'), support.EXECUTABLE)
        self.disc = os.path.join(OUT, 'shots', 'sample', 'disc')
        self.machine.keep_awake(support.tool('keeper'))
        self.person = Person(self.machine)
        shutil.copy(support.tool('waiting'), self.machine.host('C:\\waiting.exe'))
        self.edit(PAUSES_AT, '^', lambda _: 'CreateObject("WScript.Shell").Run "C:\\waiting.exe", 1, True\r\n')

    def edit(self, file, pattern, text):
        path = os.path.join(self.disc, file)
        with open(path, newline='') as source:
            before = source.read()
        with open(path, 'w', newline='') as target:
            target.write(re.sub(pattern, text, before, count=1))

    def start(self, *arguments):
        for name in ('waiting.txt', 'go.txt'):
            if os.path.exists(self.machine.host('C:\\' + name)):
                os.remove(self.machine.host('C:\\' + name))
        return self.machine.start('D:\\' + PROGRAM, *arguments)

    def await_pause(self):
        deadline = time.time() + 120
        while not os.path.exists(self.machine.host('C:\\waiting.txt')):
            if time.time() > deadline:
                raise TimeoutError('the run did not come to its pause')
            time.sleep(0.1)

    def go(self):
        open(self.machine.host('C:\\go.txt'), 'w').close()

    def keep(self, name, left, top, width, height, rest=0.5):
        """A piece of the screen, in true colour, when it has come to rest."""
        time.sleep(rest)
        file = os.path.join(self.images, name)
        subprocess.run(['import', '-window', 'root', '-crop', '%dx%d+%d+%d' % (width, height, left, top), '+repage', '-strip',
                        'PNG24:' + file], check=True)
        print(file)

    def keep_window(self, name, frame, rest=0.5):
        self.keep(name, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top, rest)

    def silent_run(self):
        """The icon while it works, and an excerpt of its log."""
        process = self.start('/s')
        self.await_pause()
        if not self.person.tip(20):
            raise RuntimeError('the icon has no tip')
        self.keep('tray-icon.png', 764, 698, 260, 70)
        self.go()
        process.wait(120)
        with open(self.machine.host(LOG), newline='', encoding='latin-1') as log:
            lines = [line for line in log.read().split('\r\n') if '<TABLE' in line]
        with open(os.path.join(self.work, 'excerpt.html'), 'w', encoding='latin-1') as page:
            page.write('\n'.join(line for line, row in zip(lines, read_log(self.machine.host(LOG))) if self.is_shown(row)))

    shown = False

    def is_shown(self, row):
        if match := re.match(r'Next component is (\w+) ', row.text):
            self.shown = match.group(1) in SHOWN
        return self.shown and not LEFT_OUT.match(row.text)

    def interactive_run(self):
        process = self.start()
        self.person.ready()
        self.person.press('Return')
        self.await_pause()
        window = self.person.main_window()
        self.person.click_caption(window)
        self.keep_window('window-at-work.png', window.frame)
        self.go()
        self.keep_window('window-failed.png', self.person.finished().frame)
        self.person.press('alt+f')
        process.wait(60)

    def password(self):
        self.edit('QX Installation Assistant.ini', 'RequestLogonDetails=false', 'RequestLogonDetails=true')
        process = self.start('/s')
        self.keep_window('password-window.png', self.person.dialog('Enter the password').frame)
        self.person.press('Escape')
        process.wait(60)
        self.edit('QX Installation Assistant.ini', 'RequestLogonDetails=true', 'RequestLogonDetails=false')

    def next_disc(self):
        """The same product, as the first of two discs."""
        self.edit('product.ini', r'\[Product\]\r\n', '[Product]\r\nNextVolumeName=HARBOUR2\r\n')
        self.edit('product.ini', r'(?s)(Core=[^\n]*\n).*', r'\1')
        self.start()
        self.person.ready()
        self.person.press('Return')
        self.person.dialog('Insert the disk labelled')
        window = self.person.wait_for(DIALOG, lambda window: 'Cancel' in window.texts)
        self.person.press('Return')  # the box in front of it; another comes after five looks for the disc
        self.keep_window('disk-window.png', window.frame, 0.2)


def main(images, work):
    support.screen()
    os.makedirs(work, exist_ok=True)
    shots = Shots(images, work)
    try:
        shots.silent_run()
        shots.interactive_run()
        shots.password()
        shots.next_disc()
    finally:
        shots.machine.stop()


main(*sys.argv[1:])
