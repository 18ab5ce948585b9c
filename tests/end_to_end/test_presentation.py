"""Development mode, windows and the dashboard's configurations on the demonstration model."""

import fcntl
import os
import pty
import select
import struct
import subprocess
import termios

import harness
import office
from harness import COMMAND, DEMO, CommandTestCase, run_command
from test_package import PackageChecks, strays
from workbook import MAIN, Workbook

MAINTAIN = 'Dashboard > Dashboard Configuration > Maintain configurations'


class State:
    """What a workbook's file says of what its user sees."""

    def __init__(self, workbook):
        self.workbook = workbook
        self.hidden_rows = {name: [row.get('r') for row in sheet.root.iter(MAIN + 'row')
                                   if _is_on(row.get('hidden'))]
                            for name, sheet in workbook.sheets.items()}
        self.hidden_columns = {name: [column for run in sheet.root.iter(MAIN + 'col')
                                      if _is_on(run.get('hidden'))
                                      for column in range(int(run.get('min')),
                                                          int(run.get('max')) + 1)]
                               for name, sheet in workbook.sheets.items()}
        self.protected = [name for name, sheet in workbook.sheets.items()
                          for protection in sheet.root.iter(MAIN + 'sheetProtection')
                          if _is_on(protection.get('sheet'))]

    def panes(self):
        """By sheet, for each window: the frozen columns and rows, and the first cell behind."""
        return {name: [tuple(pane.get(key) for key in ('xSplit', 'ySplit', 'topLeftCell', 'state'))
                       for pane in sheet.root.iter(MAIN + 'pane')]
                for name, sheet in self.workbook.sheets.items()}

    def seen(self):
        """What every spreadsheet program keeps."""
        return self.hidden_rows, self.hidden_columns, self.protected


class Presentation(PackageChecks, CommandTestCase):
    def run_method(self, model, name, method, *options):
        path = self.folder / f'{name}.xlsm'
        run_command(model, method, *options, output=path)
        workbook = Workbook(path)
        self.check_xml(workbook)
        self.check_connections(workbook)
        return path, State(workbook)

    def toggle(self, model, name):
        return self.run_method(model, name, 'clsDevelopmentMode.DevelopmentMode')

    def assert_office_sees(self, states):
        """LibreOffice opens each file and finds hidden and protected what the file says.

        Panes and further windows are left out: it writes none when it converts without a window,
        be the workbook untouched or not.
        """
        if not office.program():
            return
        paths = list(states)
        for path, again in zip(paths, office.recalculated(paths, self.folder / 'office')):
            with self.subTest(file=path.name):
                self.assertEqual(State(Workbook(again)).seen(), states[path].seen())

    def test_development_mode_and_back(self):
        before = State(Workbook(DEMO))
        self.assertEqual(before.protected, ['Title', 'Dashboard'])
        development_path, development = self.toggle(DEMO, 'development')
        self.assertEqual(development.protected, [])
        self.assertEqual({tuple(rows) for rows in development.hidden_rows.values()}, {()})
        self.assertEqual(development.hidden_columns, before.hidden_columns)
        self.assertEqual(development.panes(), before.panes())

        normal_path, normal = self.toggle(development_path, 'normal')
        self.assertEqual(normal.seen(), before.seen())
        # Two sheets are scrolled to column 14 by their flags, and were not when the model was made.
        self.assertEqual(normal.panes(), before.panes() | {
            'Planning': [('2', '4', 'N8', 'frozen')],
            'Project List': [('2', '4', 'N5', 'frozen')]})
        self.assert_none(strays(before.workbook, normal.workbook,
                                r'worksheets/sheet([2-9]|10)\.xml|sharedStrings\.xml|styles\.xml'),
                         'parts that changed without need')
        reference = normal.workbook.sheets['Reference']
        for cell, value in {'R14': 2.0, 'S14': 30.0, 'T14': 'Revenue by product',
                            'E14': 'Accounting_package', 'I14': 'Planning Sheet Discrepancies: '}.items():
            self.assertEqual(reference.value(cell), value, cell)
        for name, sheet in before.workbook.sheets.items():
            if name != 'Reference':
                self.assertEqual({place: (cell.formula, cell.value)
                                  for place, cell in sheet.cells.items()},
                                 {place: (cell.formula, cell.value) for place, cell
                                  in normal.workbook.sheets[name].cells.items()}, name)
        self.assert_office_sees({development_path: development, normal_path: normal})

        # From a workbook that the rules have been over, there and back changes nothing at all.
        path, _ = self.toggle(normal_path, 'development-2')
        path, again = self.toggle(path, 'normal-2')
        self.assert_none(strays(normal.workbook, again.workbook, 'nothing'), 'parts that changed')

    def test_configurations_hide_columns(self):
        path, state = self.run_method(DEMO, 'bank', 'clsMenuManagement.SelectConfig', '2')
        self.assertEqual(state.hidden_columns['Dashboard'], [2])
        self.assertEqual(state.protected, ['Title', 'Dashboard'])
        self.assert_none(strays(Workbook(DEMO), state.workbook, r'worksheets/sheet2\.xml'),
                         'parts that changed without need')
        self.assert_office_sees({path: state})
        _, state = self.run_method(path, 'all', 'clsMenuManagement.SelectConfig', '0')
        self.assertEqual(state.hidden_columns['Dashboard'], [])

    def test_windows(self):
        path, two = self.run_method(DEMO, 'two', 'clsDisplayModes.MultiWindowLR', '--sheet',
                                    'Sales')
        windows = two.workbook.root.findall(f'.//{MAIN}workbookView')
        self.assertEqual([(view.get('xWindow'), view.get('windowWidth'), view.get('activeTab'))
                          for view in windows],
                         [('7860', '20700', '2'), ('0', '7860', '1')])
        # The new window has no frozen panes.
        self.assertEqual(two.panes(), State(Workbook(DEMO)).panes())
        self.assert_office_sees({path: two})
        _, one = self.run_method(path, 'one', 'clsDisplayModes.MultiWindowUD')
        windows = one.workbook.root.findall(f'.//{MAIN}workbookView')
        self.assertEqual([(view.get('xWindow'), view.get('windowWidth'), view.get('activeTab'))
                          for view in windows], [('0', '28560', '2')])
        self.assertEqual(one.panes(), two.panes())

    def assert_configured(self, path):
        workbook = Workbook(path)
        self.check_xml(workbook)
        self.assertEqual(workbook.sheets['Dashboard'].value('B1'), 'Sales H(1,2) ')
        self.assertEqual(workbook.sheets['Dashboard'].value('C1'),
                         Workbook(DEMO).sheets['Dashboard'].value('C1'))
        reference = workbook.sheets['Reference']
        self.assertEqual([(reference.value(f'Y{row}'), reference.value(f'Z{row}'))
                          for row in range(14, 18)],
                         [(1.0, 'Board'), (2.0, 'Bankers'), (3.0, 'Workshop'), (0.0, None)])
        self.assertEqual(State(workbook).protected, ['Title', 'Dashboard'])

    def maintain(self, output):
        return [COMMAND, 'menu', str(DEMO), '--dashboard', '--pick', MAINTAIN, '--output',
                str(output)]

    def test_configurations_are_maintained_by_answers(self):
        output = self.folder / 'answered.xlsm'
        answer = 'frmDashConfigure:txtName2=Bankers;chk2_1=no;butOK'
        finished = subprocess.run([*self.maintain(output), '--answer', answer],
                                          stdin=subprocess.DEVNULL, capture_output=True,
                                          text=True, timeout=300, check=False)
        self.assertEqual(finished.returncode, 0, finished.stderr)
        self.assert_configured(output)

    def test_configurations_are_maintained_on_a_terminal(self):
        output = self.folder / 'typed.xlsm'
        terminal = Terminal(self.maintain(output))
        shown = terminal.read_until('What to change, or button [OK]: ')
        self.assertIn('Name 2 [Bank]', shown)
        self.assertIn('Column 3: Cost of sales, Gross margin [1, 2, 4, 5, 6, 7, 8, 9]', shown)
        terminal.type('Name 2')
        terminal.read_until('empties it): ')
        terminal.type('Bankers')
        terminal.read_until('What to change, or button [OK]: ')
        terminal.type('Column 2')
        terminal.read_until('(or all, none): ')
        terminal.type('3,4,5,6,7,8,9')
        self.assertIn('[3, 4, 5, 6, 7, 8, 9]',
                      terminal.read_until('What to change, or button [OK]: '))
        terminal.type('')
        terminal.read_until(f'Written: {output}')
        self.assertEqual(terminal.wait(), 0)
        self.assert_configured(output)

    def test_leaving_the_dialog_writes_nothing(self):
        output = self.folder / 'left.xlsm'
        terminal = Terminal(self.maintain(output))
        terminal.read_until('What to change, or button [OK]: ')
        terminal.type('cancel')
        terminal.read_until('nothing was written')
        self.assertEqual(terminal.wait(), 3)
        self.assertFalse(output.exists())


class Terminal:
    """A command on a terminal, whose user reads and types."""

    def __init__(self, command):
        self._unseen = ''
        self._pid, self._terminal = pty.fork()
        if self._pid == 0:
            os.execv(command[0], command)
        fcntl.ioctl(self._terminal, termios.TIOCSWINSZ, struct.pack('HHHH', 50, 200, 0, 0))

    def read_until(self, text):
        while text not in self._unseen:
            ready, _, _ = select.select([self._terminal], [], [], 60)
            try:
                piece = os.read(self._terminal, 4096).decode() if ready else ''
            except OSError:  # the command has ended
                piece = ''
            if not piece:
                raise AssertionError(f'never shown: {text}\nshown instead: {self._unseen}')
            self._unseen += piece
        end = self._unseen.index(text) + len(text)
        seen, self._unseen = self._unseen[:end], self._unseen[end:]
        return seen

    def type(self, line):
        os.write(self._terminal, (line + '\n').encode())

    def wait(self):
        try:
            while os.read(self._terminal, 4096):
                pass
        except OSError:
            pass
        os.close(self._terminal)
        return os.waitstatus_to_exitcode(os.waitpid(self._pid, 0)[1])


def _is_on(text):
    return text in ('1', 'true')


if __name__ == '__main__':
    harness.main()
