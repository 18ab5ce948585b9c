"""Runs the command on copies of workbooks, and the test cases so that ctest understands them."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from workbook import ROOT, Workbook

COMMAND = os.environ.get('VANTORA', str(ROOT / 'build' / 'vantora'))
DEMO = ROOT / 'examples' / 'demo-model.xlsm'
MODELS = ROOT.parent / 'shared' / 'models'
COMMENT = 'Year end 2026'
SAVE_ANSWERS = ('--answer', 'OK', '--answer', f'frmSaveComments:txtComments={COMMENT};butText')

# Each year-end operation with the answers that carry it through.
OPERATIONS = {
    'SaveCurrentYear': SAVE_ANSWERS,
    'SaveLastYear': SAVE_ANSWERS,
    'SaveHistoryYear': ('--answer', 'frmSaveHistoryPrompt:cboYear=2;butGO', *SAVE_ANSWERS),
    'ShiftHistory': ('--answer', 'OK'),
    'CopyCurrentYear': ('--answer', 'OK'),
}
SKIPPED = 77  # the exit status that ctest takes for a skipped check


def planning_models():
    """Large models for the checks, where there are any beside the checkout."""
    return sorted(MODELS.glob('planning-*.xlsm'))


def run_command(model, method, *options, output):
    """Runs `vantora run` and returns what it printed; the result is the file `output`."""
    return run_to_end('run', str(model), method, *options, '--output', str(output))


def run_recalculate(model, *, output):
    """Runs `vantora recalculate` and returns what it printed; the result is the file `output`."""
    return run_to_end('recalculate', str(model), '--output', str(output))


def run_to_end(*arguments):
    command = [COMMAND, *arguments]
    finished = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=300, check=False)
    if finished.returncode != 0:
        raise AssertionError(f'{" ".join(command)}\nended with {finished.returncode}:\n'
                             f'{finished.stdout}{finished.stderr}')
    return finished.stdout


class CommandTestCase(unittest.TestCase):
    """A test with a folder for results; every difference is reported, not just the first."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix='vantora-test-')
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_year_end(self, model, operation):
        """Runs an operation on a workbook and returns the path of the result."""
        output = self.folder / f'{Path(model).stem}-{operation}.xlsm'
        run_command(model, f'clsYearEnd.{operation}', *OPERATIONS[operation], output=output)
        return output

    def year_end(self, model, operation):
        return Workbook(self.run_year_end(model, operation))

    def assert_none(self, differences, message):
        """Fails with the first differences when there are any."""
        shown = '\n  '.join(map(str, differences[:20]))
        if differences:
            self.fail(f'{message}: {len(differences)}\n  {shown}')


def main():
    """Runs the calling file's tests; exits with SKIPPED when every one of them was skipped."""
    program = unittest.main(module='__main__', exit=False, verbosity=1)
    result = program.result
    for _, reason in result.skipped:
        print(f'Skipped: {reason}')
    if result.wasSuccessful() and result.testsRun == len(result.skipped):
        sys.exit(SKIPPED)
    sys.exit(0 if result.wasSuccessful() else 1)
