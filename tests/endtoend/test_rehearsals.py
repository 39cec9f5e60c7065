"""Small products, each rehearsed by the Linux command and then installed by the real program: both tell the same story."""
import os
import socket

import rehearsal
import support
from person import Person
from support import APPLICATION, INI, LOG_ROOT, PROGRAM, WineTest, batch, tool
from test_preparation import documented_files

FINE = 'run.bat', batch(['exit /b 0']), ''
RAN = '[program C:\\Media\\%s\\run.bat]\nexit=0\n'
OWN_KEY = 'Software\\Tarvel\\Installation'
ASSISTANT = 'C:\\QX\\' + PROGRAM
MACHINE = '''[machine]
system=Windows 2003
computer=%s
program=%s
[access C:\\]
Administrators=full
Users=read
[file %s]
line=The program, as far as a rehearsal needs its file.
''' % (socket.gethostname().upper()[:15], ASSISTANT, ASSISTANT)
CONFIRMED = '[answer Confirm Uninstall]\ntext=This will uninstall Small\nanswer=yes\n'


def reports(component, value):
    """A component whose script reports its result itself."""
    return 'run.vbs', ('CreateObject("WScript.Shell").RegWrite "HKLM\\%s\\Products\\Small\\%s\\Process Return", "%s"\n'
                       % (OWN_KEY, component, value)), ''


def reported(component, value):
    """What the script does, as a rehearsal is told."""
    return ('[program C:\\Media\\%s\\run.vbs]\nset=HKLM\\%s\\Products\\Small\\%s\\Process Return=%s\n'
            % (component, OWN_KEY, component, value))


class RehearsedTest(WineTest):
    """The product in C:\\Media is rehearsed as it lies there, and then installed."""

    def rehearse(self, name, declared, arguments, again=False):
        """`declared` tells what the product's programs do."""
        os.makedirs(rehearsal.STATES, exist_ok=True)
        file = os.path.join(rehearsal.STATES, name + '.txt')
        with open(file, 'w') as text:
            text.write(MACHINE + declared)
        return rehearsal.rehearse(name, [self.machine.host('C:\\Media')], '--machine', file, '--at', 'C:\\Media',
                                  '--ini', 'app.ini', '--args', arguments, again=again)

    def confirm(self):
        """Whoever is asked whether a product is to be uninstalled says yes."""

    def compare(self, declared='', arguments='/s /is=' + INI, product='Small', log=None, again=False):
        """Gives what the real program told."""
        name = self.id().rsplit('.test_', 1)[-1] + (again or '')
        uninstalls = ' /x ' in arguments
        result, state = self.rehearse(self.id().rsplit('.test_', 1)[-1], declared, arguments, again)
        with rehearsal.trace(name) as output:
            process = self.machine.start(ASSISTANT, *arguments.split(), output=output, debug=rehearsal.TRACE)
            if uninstalls:
                self.confirm()
            code = process.wait(120)
        log = log or '%s\\%s\\QX Installation Assistant%s.html' % (LOG_ROOT, product, ' Uninstall' if uninstalls else '')
        real = rehearsal.real_story(self.machine.host(log), rehearsal.exported(self.machine, product), product, code,
                                    rehearsal.traced_commands(name), uninstalls)
        rehearsal.hold_together(name, real, rehearsal.rehearsed_story(result, state, product, uninstalls))
        return real


class RehearsedOutcomes(RehearsedTest):
    def test_each_way_a_component_can_end(self):
        self.preset(OWN_KEY, 'Product', 'Small')
        self.product('Small', {
            'Fine': FINE, 'Odd': ('run.bat', batch(['exit /b 3']), ''), 'Gone': ('gone.exe', None, ''),
            'Broken': ('run.exe', 'no program\n', ''), 'Script': ('run.vbs', 'WScript.Quit 9\n', ''),
            'Passing': reports('Passing', 'Pass'), 'Failing': reports('Failing', 'Fail'),
            'Notes': ('notes.txt', 'notes', ''), 'Garbage': ('run.msi', 'no package\n', ''),
            'Old': FINE[:2] + ('Condition1=os=win95|win98\n',), 'Elsewhere': FINE[:2] + ('Condition1=productname=Other\n',),
            'Later': FINE[:2] + ('Condition1=Radar>=v3.0.0\n',), 'Last': FINE[:2] + ('Condition1=os=w2k3\n',)})
        real = self.compare('[registry HKLM\\%s]\nProduct=Small\n' % OWN_KEY + RAN % 'Fine'
                            + '[program C:\\Media\\Odd\\run.bat]\nexit=3\n'
                            '[program C:\\Media\\Broken\\run.exe]\ncannot start=193\n'
                            '[program C:\\Media\\Script\\run.vbs]\nexit=9\n'
                            '[program C:\\Media\\Garbage\\run.msi]\nexit=1627\n'
                            + reported('Passing', 'Pass') + reported('Failing', 'Fail') + RAN % 'Last')
        self.assertEqual(real.code, 1)

    def test_component_that_aborts_on_failure(self):
        self.product('Small', {'One': FINE, 'Two': ('gone.exe', None, 'AbortOnFail=True\n'), 'Three': FINE})
        self.assertEqual(self.compare(RAN % 'One').code, 1)

    def test_product_that_aborts_on_failure(self):
        self.product('Small', {'One': ('run.vbs', 'WScript.Quit 9\n', ''), 'Two': FINE},
                     APPLICATION.replace('AbortOnFail=false', 'AbortOnFail=true') % 'Small')
        self.assertEqual(self.compare('[program C:\\Media\\One\\run.vbs]\nexit=9\n').code, 1)

    def test_script_that_aborts(self):
        self.product('Small', {'One': reports('One', 'Abort'), 'Two': FINE})
        self.assertEqual(self.compare(reported('One', 'Abort')).code, 1)

    def test_no_actions(self):
        self.product('Small', {})
        self.assertEqual(self.compare().code, 0)

    def test_second_run(self):
        self.product('Small', {'One': FINE})
        self.assertEqual(self.compare(RAN % 'One').code, 0)
        self.write('C:\\Media\\One\\run.bat', batch(['exit /b 3']))
        self.assertEqual(self.compare('[program C:\\Media\\One\\run.bat]\nexit=3\n', again=', again').code, 0)


class RehearsedBadInput(RehearsedTest):
    def test_missing_application_ini(self):
        self.product('Small', {'One': FINE})
        self.assertEqual(self.compare('', '/s /is=C:\\nowhere.ini', log='C:\\QX\\QX Installation Assistant.html').code, 1)

    def test_missing_product_ini(self):
        self.product('Small', {'One': FINE}, APPLICATION.replace('(product.ini)', '(other.ini)') % 'Small')
        self.assertEqual(self.compare().code, 1)

    def test_missing_package_root(self):
        self.product('Small', {'One': FINE}, APPLICATION.replace('PackageRoot=C:\\Media\n', '') % 'Small')
        self.assertEqual(self.compare().code, 1)

    def test_missing_component_ini(self):
        self.product('Small', {'One': FINE, 'Two': FINE})
        os.remove(self.machine.host('C:\\Media\\Two\\c.ini'))
        self.assertEqual(self.compare().code, 1)

    def test_keys_without_values(self):
        self.product('Small', {'One': FINE[:2] + ('Note=%s\nTransform=\nCleanup=\nCondition1=\n=\n[\n' % ('x' * 100000),)})
        self.assertEqual(self.compare(RAN % 'One').code, 0)


class RehearsedPreparation(RehearsedTest):
    """The worked example of the documents."""

    def setUp(self):
        super().setUp()
        self.put('C:\\QX\\net.exe', tool('recorder'))
        for path, text in documented_files():
            self.write('C:\\Media\\' + path, text)
        self.preset(OWN_KEY, 'Server Type', 'dcunit')

    declared = '[registry HKLM\\%s]\nServer Type=dcunit\n' % OWN_KEY

    def test_documented_example(self):
        self.assertEqual(self.compare(
            self.declared + '[program C:\\Media\\Checks\\server.vbs]\nexit=0\n[program net use K:]\nexit=0\n'
            '[program C:\\QX\\Data\\Manual\\manual.bat]\nfile=C:\\manual.txt=done\n', product='Office Suite').code, 0)

    def test_check_that_refuses(self):
        os.environ['QX_NO_PRINTER'] = '1'
        self.addCleanup(os.environ.pop, 'QX_NO_PRINTER')
        key = 'HKLM\\%s\\Products\\Office Suite' % OWN_KEY
        self.assertEqual(self.compare(
            self.declared + '[program C:\\Media\\Checks\\server.vbs]\nset=%s\\Abort Reason=This machine is no print server.\n'
            'set=%s\\Succeeded=dword:00000000\n' % (key, key), product='Office Suite').code, 1)


class RehearsedUninstall(RehearsedTest):
    @classmethod
    def prepare(cls):
        cls.person = Person(cls.machine)

    def confirm(self):
        self.person.dialog('This will uninstall Small and may stop your system working correctly.')
        self.person.press('Tab', 'Return')

    def test_uninstall(self):
        self.put('C:\\QX\\at.exe', tool('recorder'))
        self.product('Small', {
            'Core': ('core.msi', None, ''), 'Batch': FINE[:2] + ('UninstallCommandLine=C:\\Media\\Batch\\run.bat\n',),
            'Kept': FINE, 'Manuals': ('one.txt', 'one', '')})
        self.put('C:\\Media\\Core\\core.msi', os.path.join(support.PACKAGES, 'Core', 'core.msi'))
        self.write('C:\\Media\\Manuals\\c.ini', '[Manuals]\nInstall=one.txt\nCommandLine=N/A\nUpgrade=False\nCopyOp=1\n'
                   'CopyOpTarget=C:\\Copies\nMachineType=all machines\nCost=N/A\n')
        ini = self.read('C:\\Media\\product.ini').replace('\r\n', '\n')
        self.write('C:\\Media\\product.ini', ini.replace('[Product]\n', '[Product]\nCanUninstall=true\n'))
        code = '{31AAC605-C269-4189-B1F7-FE64CA95BFCE}'
        self.assertEqual(self.compare('[package C:\\Media\\Core\\core.msi]\nname=Harbour Core\nversion=2.1.0\ncode=%s\n' % code
                                      + RAN % 'Batch' + RAN % 'Kept').code, 0)
        self.assertEqual(self.compare('[program msiexec /x %s]\nremove=%s\n' % (code, code) + RAN % 'Batch' + CONFIRMED,
                                      '/s /x Small', again=', again').code, 0)


del RehearsedTest  # which is no test itself
