"""A product on two discs, with real packages on both, and the disc changed while the program waits for it."""
import os
import subprocess
import time

import support
import two_discs
from person import Person
from story import UNINSTALL
from support import LOG_ROOT, OUT, PROGRAM, TRACE, WineTest, tool

PRODUCT = two_discs.PRODUCT
LOCAL = LOG_ROOT + '\\' + PROGRAM
PACKAGES = {'{F6862E81-CA58-4100-A2A1-E0660B39DD45}', '{31AAC605-C269-4189-B1F7-FE64CA95BFCE}'}


class TwoDiscs(WineTest):
    @classmethod
    def prepare(cls):
        cls.discs = two_discs.make_discs(os.path.join(OUT, 'endtoend', 'discs'))
        cls.machine.insert_disc('d', cls.discs[0], two_discs.LABELS[0])

    def setUp(self):
        super().setUp()
        self.put('C:\\disc.exe', two_discs.of_samples(support.WINE64, 'disc.exe'))
        self.insert(self.discs[0])
        self.put(LOG_ROOT + '\\at.exe', tool('recorder'))
        for code in PACKAGES & set(self.installed()):  # of another test
            self.machine.run('msiexec', '/x', code, '/qn')

    def insert(self, disc):
        """Changes the disc while the machine runs."""
        self.assertEqual(self.machine.run('C:\\disc.exe', disc), 0)

    def start_from_disc(self, declared=''):
        """The program on the disc starts its local copy and ends, which frees the drive. `declared` is what a rehearsal must be
        told: without a word, it puts in the disc that it is asked for."""
        labels = [word for label in two_discs.LABELS for word in ('--label', label)]
        self.compared = self.comparison('/s', declared, program='', media=self.discs, at='', options=labels, product=PRODUCT)
        with self.compared.trace() as output:
            self.assertEqual(self.machine.run('D:\\' + PROGRAM, '/s', output=output, debug=TRACE), 0)
        person = Person(self.machine)
        person.dialog('Insert the disk labelled CHARTS2 and click OK to continue')
        return person

    def wait_for_the_end(self, code=0):
        """The local copy is nobody's child any more: the log and then the process list tell."""
        self.wait_for(self.log_file(PRODUCT), text='QX Installer Run complete')
        deadline = time.time() + 10
        while LOCAL in subprocess.run(['ps', '-eo', 'args'], capture_output=True, text=True).stdout:
            self.assertLess(time.time(), deadline, 'the local copy does not end')
            time.sleep(0.1)
        self.compared.hold(code)
        return self.log(PRODUCT)

    def installed(self):
        key = self.machine.exported(UNINSTALL)
        return {child: key.values(UNINSTALL + '\\' + child).get('DisplayName') for child in key.children(UNINSTALL)}

    def test_second_disc_put_in_while_the_prompt_waits(self):
        person = self.start_from_disc('[answer]\ntext=Insert the disk\nanswer=ok\n')
        self.assertIn('local launch successful', self.read(LOG_ROOT + '\\IAStartupLog.txt'))
        self.assertEqual(self.record(PRODUCT)['NextVolumeName'], 'CHARTS2')
        self.assertIn('Harbour Runtime', self.installed().values())
        self.assertNotIn('Harbour Core', self.installed().values())
        person.picture('disk-prompt')
        person.press('Return')
        person.dialog('Error - cannot find the disk named CHARTS2')
        person.picture('disk-window')
        self.insert(self.discs[1])
        person.press('Return')
        person.dialog('Insert the disk labelled CHARTS2 and click OK to continue')
        person.press('Return')
        log = self.wait_for_the_end()
        self.assertIn('Harbour Core', self.installed().values())
        record = self.record(PRODUCT)
        self.assertEqual(record['Succeeded'], 0xffffffff)
        self.assertEqual(self.record(PRODUCT, 'Core')['SequenceNumber'], 200)
        self.assertLogged(log, 'Starting Local instance of QXIA')
        self.assertLogged(log, 'Disk found in drive D:')
        self.assertRegex(self.read('C:\\recorded.txt'),
                         r'^AT \d\d:\d\d C:\\windows\\System32\\cmd.exe /c del "%s"\s*$' % LOCAL.replace('\\', r'\\'))

    def test_cancelled_prompt_ends_the_run(self):
        person = self.start_from_disc('[answer]\ntext=Insert the disk\nanswer=ok\n'
                                      '[answer]\ntext=Error - cannot find\nanswer=cancel\n')
        person.press('Return')
        person.dialog('Error - cannot find the disk named CHARTS2')
        person.press('Escape')
        self.wait_for_the_end(2)
        self.assertEqual(self.record(PRODUCT)['Abort Reason'], 'User cancelled disk change prompt')
