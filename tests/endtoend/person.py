"""A person at a machine: sees its windows, types, clicks. Mouse and keyboard are those of the X display."""
import os
import re
import subprocess
import time
from collections import namedtuple

from support import SHOTS, Screen, tool

Control = namedtuple('Control', 'kind number enabled focus scrolls left top right bottom text')
TITLE = 'QX Installation Assistant'
MAIN = 'QXInstallationAssistantMain'
DIALOG = '#32770'

# Numbers of the main window's controls.
CONTINUE, CANCEL, ABOUT, MESSAGE, ACTION, COMPONENT, PROGRESS, STATUS = 1, 2, 100, 102, 104, 105, 106, 108


class Window:
    def __init__(self, frame):
        self.frame = frame
        self.controls = []

    @property
    def caption(self):
        return self.frame.text

    def control(self, number):
        return next(control for control in self.controls if control.number == number)

    def text(self, number):
        return self.control(number).text

    @property
    def focus(self):
        return next((control.number for control in self.controls if control.focus), None)

    @property
    def texts(self):
        return '\n'.join(control.text for control in self.controls)


class Person:
    def __init__(self, machine):
        self.machine = machine
        self._looking = None
        subprocess.run(['cp', '--remove-destination', tool('windows'), machine.host('C:\\look.exe')], check=True)

    def windows(self):
        """All that is open, the front one first."""
        found = []
        with open(self._snapshot(), newline='\n', encoding='latin-1') as lines:
            for line in lines:
                depth, kind, *numbers, text = line.rstrip('\n').split('|', 10)
                control = Control(kind, *map(int, numbers), text.replace('\\n', '\n'))
                if depth == '0':
                    found.append(Window(control))
                else:
                    found[-1].controls.append(control)
        return found

    def _snapshot(self):
        file = self.machine.host('C:\\windows.txt')
        if os.path.exists(file):
            os.remove(file)
        deadline = time.time() + 20
        while not os.path.exists(file):
            if self._looking is None or self._looking.poll() is not None:
                self._looking = self.machine.start('C:\\look.exe')
            if time.time() > deadline:
                raise TimeoutError('nobody tells what the windows show')
            time.sleep(0.02)
        return file

    def wait_for(self, kind, condition=lambda window: True, seconds=60):
        """The first window of that class for which the condition holds; a picture is kept where none comes.

        It must hold twice: a window can change while its controls are read.
        """
        deadline, held = time.time() + seconds, False
        while True:
            seen = self.windows()
            found = next((window for window in seen if window.frame.kind == kind and condition(window)), None)
            if found and held:
                return found
            held = found is not None
            if held:
                continue
            if time.time() > deadline:
                self.picture('missed')
                raise AssertionError('no such window; there are:\n' + '\n'.join(
                    '%s "%s":\n%s' % (window.frame.kind, window.caption, window.texts) for window in seen))
            time.sleep(0.05)

    def main_window(self, condition=lambda window: True):
        return self.wait_for(MAIN, condition)

    def ready(self):
        """The main window once its Continue button can be pressed, by the keyboard too."""
        return self.main_window(lambda window: window.control(CONTINUE).enabled and window.focus is not None)

    def finished(self):
        return self.main_window(lambda window: window.text(CONTINUE) == '&Finish' and window.control(CONTINUE).enabled)

    def dialog(self, text):
        """A dialog or message box that holds the text."""
        return self.wait_for(DIALOG, lambda window: text in window.texts)

    def tip(self, seconds=3):
        """What the task bar tells of the notification area's first icon; None where there is none."""
        _do('mousemove', 1, 1)
        _do('mousemove', 1012, 758)
        deadline = time.time() + seconds
        while time.time() < deadline:
            for window in self.windows():
                if window.frame.kind == 'tooltips_class32':
                    return window.caption
        return None

    def click(self, control):
        _do('mousemove', (control.left + control.right) // 2, (control.top + control.bottom) // 2, 'click', 1)

    def close(self, window):
        """By the button in its caption."""
        _do('mousemove', window.frame.right - 14, window.frame.top + 14, 'click', 1)

    def click_caption(self, window):
        """Which makes it the active window."""
        _do('mousemove', window.frame.left + 150, window.frame.top + 14, 'click', 1)

    def drag(self, window, right, down):
        """By its caption."""
        _do('mousemove', window.frame.left + 150, window.frame.top + 14, 'mousedown', 1)
        _do('mousemove_relative', right, down, 'mouseup', 1)

    def press(self, *keys):
        _do('key', '--delay', 60, *keys)

    def type(self, text):
        _do('type', '--delay', 30, text)

    def picture(self, name):
        Screen.picture(os.path.join(SHOTS, re.sub(r'\W+', '-', name) + '.png'))


def _do(*words):
    subprocess.run(['xdotool', *map(str, words)], check=True)
    time.sleep(0.1)
