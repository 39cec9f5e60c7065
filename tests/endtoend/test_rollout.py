"""The roll-out script, as an engine calls it at every start of the machine."""
import json
import os
import subprocess
import sys
import tempfile
import unittest

from support import INI, LOG_ROOT, TRACE, WineTest, batch, tool

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'samples', 'rollout', 'rollout.cmd')
PLAYBOOK = SCRIPT.replace('.cmd', '.yml')
ASKS = ('CreateObject("WScript.Shell").RegWrite "HKLM\\Software\\Tarvel\\Installation\\Reboot", "immediate"\n'
        'CreateObject("Scripting.FileSystemObject").OpenTextFile("C:\\ran.txt", 8, True).WriteLine "Driver"\n')
RESTARTS = 3010 % 256  # as the host shows it
COUNTS = batch(['echo Tools>> C:\\ran.txt'])


class Rollout(WineTest):
    def setUp(self):
        super().setUp()
        self.put('C:\\rollout.cmd', SCRIPT)
        results = self.machine.host('C:\\results')
        self.machine.run('cmd', '/c', 'rd', '/s', '/q', 'C:\\results')
        self.assertFalse(os.path.exists(results))

    def call(self, code=0, finished=True, version='1.0'):
        """The script, which starts the program; that ends with the code, or by a restart."""
        compared = self.comparison('/s /is=' + INI)
        with compared.trace() as output:
            result = self.again(version, output=output, debug=TRACE)
        compared.hold(code, finished, by_logon=True)
        return result

    def again(self, version='1.0', **how):
        """The script where nothing is left to do."""
        return self.machine.run('cmd', '/c', 'C:\\rollout.cmd', 'C:\\QX\\QX Installation Assistant.exe', INI, 'Four',
                                version, 'C:\\results', **how)

    def collected(self):
        place = self.machine.host('C:\\results')
        return sorted(name for _, _, names in os.walk(place) for name in names) if os.path.exists(place) else []

    def ran(self):
        return self.read('C:\\ran.txt').split() if self.exists('C:\\ran.txt') else []

    def test_installs_once_and_hands_in_the_results(self):
        self.product('Four', {'Tools': ('run.bat', COUNTS, '')})
        self.assertEqual(self.call(), 0)
        self.assertEqual((self.ran(), self.collected()), (['Tools'], ['Four.html', 'Four.reg']))
        self.assertEqual(self.again(), 0)
        self.assertEqual(self.ran(), ['Tools'])

    def test_older_reg_exe_tells_the_same(self):
        self.product('Four', {'Tools': ('run.bat', COUNTS, '')})
        self.put('C:\\reg.exe', tool('old_reg'))
        self.addCleanup(os.remove, self.machine.host('C:\\reg.exe'))
        for called in (self.call, self.again):
            self.assertEqual((called(), self.ran()), (0, ['Tools']))
        self.assertEqual(self.collected(), ['Four.html', 'Four.reg'])

    def test_version_that_only_begins_so_is_another(self):
        self.product('Four', {'Tools': ('run.bat', COUNTS, '')})
        self.assertEqual(self.call(), 0)
        self.assertEqual((self.call(version='1'), self.ran()), (1, ['Tools', 'Tools']))

    def test_failure_is_told_and_tried_again(self):
        self.product('Four', {'Tools': ('run.bat', None, '')})
        self.assertEqual(self.call(1), 1)
        self.assertEqual(self.collected(), ['Four.html', 'Four.reg'])
        self.write('C:\\Media\\Tools\\run.bat', COUNTS)
        self.assertEqual(self.call(), 0)
        self.assertEqual(self.ran(), ['Tools'])

    def test_restart_is_gone_on_with_by_the_next_call(self):
        self.product('Four', {'Driver': ('run.vbs', ASKS, ''), 'Tools': ('run.bat', COUNTS, '')})
        self.machine.record_restarts(tool('wineboot'))
        self.assertEqual(self.call(0, finished=False), RESTARTS)
        self.assertEqual((self.ran(), self.collected()), (['Driver'], []))
        self.assertEqual(self.call(), 0)
        self.assertEqual((self.ran(), self.collected()), (['Driver', 'Tools'], ['Four.html', 'Four.reg']))
        self.assertIn('QX Installer Run complete', self.read(LOG_ROOT + '\\Four\\QX Installation Assistant.html'))


MODULE = '''#!/usr/bin/python
from ansible.module_utils.basic import AnsibleModule
module = AnsibleModule(argument_spec={'argv': {'type': 'list'}})
codes = open('%(codes)s').read().split()
with open('%(calls)s', 'a') as calls:
    calls.write(' | '.join(module.params['argv']) + '\\n')
open('%(codes)s', 'w').write(' '.join(codes[1:]))
module.exit_json(changed=True, rc=int(codes[0]))
'''


class Playbook(unittest.TestCase):
    """The sample's playbook, on this host in place of a Windows machine; a stand-in for its module gives the script's codes."""

    def play(self, codes):
        """The playbook's exit code, how often it called the script, and whether it fetched the log."""
        with tempfile.TemporaryDirectory() as folder:
            place = {name: os.path.join(folder, name) for name in ('codes', 'calls', 'hosts', 'fetched')}
            module = 'ansible_collections/ansible/windows/plugins/modules/win_command.py'
            os.makedirs(os.path.dirname(os.path.join(folder, module)))
            for name, text in (('codes', codes), ('calls', ''), (module, MODULE % place), ('R\\HARBOUR1\\Four.html', 'the log'),
                               ('hosts', '[workstations]\nharbour1 ansible_connection=local\n')):
                with open(os.path.join(folder, name), 'w') as file:
                    file.write(text)
            variables = {'rollout_product': 'Four', 'rollout_results': folder + '/R', 'rollout_collected': place['fetched'],
                         'rollout_restart_seconds': 0, 'rollout_most_restarts': 2, 'ansible_python_interpreter': sys.executable}
            play = subprocess.run(['ansible-playbook', '-i', place['hosts'], '-e', json.dumps(variables), PLAYBOOK],
                                  env=dict(os.environ, ANSIBLE_COLLECTIONS_PATH=folder), capture_output=True, text=True)
            with open(place['calls']) as calls:
                told = calls.read().splitlines()
            self.assertEqual({line.split(' | ', 5)[5] for line in told}, {'Four | 2.1.0 | %s/R' % folder}, play.stdout)
            return play.returncode, len(told), os.path.exists(place['fetched'] + '/HARBOUR1/Four.html')

    def test_it_calls_again_behind_each_restart_and_fetches_the_log(self):
        for codes, expected in (('3010 0', (0, 2, True)), ('3010 3010 3010 0', (2, 3, True))):
            with self.subTest(codes=codes):
                self.assertEqual(self.play(codes), expected)
