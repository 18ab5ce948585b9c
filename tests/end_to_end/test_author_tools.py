"""recalculate, diff, journal and undo on whole models, against an independent reading of the files."""

import json
import subprocess
import unittest

import harness
from harness import (COMMAND, DEMO, MODELS, OPERATIONS, CommandTestCase, planning_models,
                     run_command, run_to_end)
from workbook import Workbook, column_letters, read_parts

MADE_BY_EXCEL = sorted((MODELS / 'made-by-excel').glob('*.xls[xm]'))


def changed_places(old, new):
    """The places of the cells whose formula or value differs, if only by a number's last digit.

    An empty text and no value are the same.
    """
    def content(sheet, place):
        cell = sheet.cells.get(place)
        return (cell.formula, None if cell.value == '' else cell.value) if cell else (None, None)

    return {(name, f'{column_letters(column)}{row}')
            for name, sheet in old.sheets.items()
            for row, column in sheet.cells.keys() | new.sheets[name].cells.keys()
            if content(sheet, (row, column)) != content(new.sheets[name], (row, column))}


class AuthorTools(CommandTestCase):
    def diff(self, old, new):
        return json.loads(run_to_end('diff', '--json', str(old), str(new)))

    def check_journal(self, model, operation):
        """A year end told by diff and taken back by undo; returns the result and its journal."""
        result, journal = (self.folder / f'{operation}{end}' for end in ('.xlsm', '.journal'))
        run_command(model, f'clsYearEnd.{operation}', *OPERATIONS[operation], '--journal',
                    str(journal), output=result)
        told = {(cell['sheet'], cell['cell']) for cell in self.diff(model, result)['cells']}
        expected = changed_places(Workbook(model), Workbook(result))
        self.assertTrue(expected)
        self.assert_none(sorted(told ^ expected), 'cells told though alike, or the reverse')
        back = self.folder / f'{operation}-back.xlsm'
        run_to_end('undo', str(result), '--journal', str(journal), '--output', str(back))
        before, after = read_parts(model), read_parts(back)
        self.assert_none([name for name in before.keys() | after.keys()
                          if before.get(name) != after.get(name)], 'parts that are not as before')
        return result, journal

    def check_model(self, model):
        for operation in OPERATIONS:
            with self.subTest(model=model.name, operation=operation):
                result, journal = self.check_journal(model, operation)
        edited, back = self.folder / 'edited.xlsm', self.folder / 'never.xlsm'
        run_command(result, 'clsGlobals.Version', '--set', 'Ratios!Z60=changed since', output=edited)
        refused = subprocess.run([COMMAND, 'undo', str(edited), '--journal', str(journal),
                                  '--output', str(back)], capture_output=True, text=True,
                                 timeout=300, check=False)
        self.assertEqual(refused.returncode, 1, refused.stdout + refused.stderr)
        self.assertIn('is not as the run left it', refused.stderr)
        self.assertFalse(back.exists())

    def test_demonstration_model(self):
        self.check_model(DEMO)

    @unittest.skipUnless(planning_models(), 'there are no models beside the checkout')
    def test_large_models(self):
        for model in planning_models():
            self.check_model(model)

    def recalculated(self, model):
        return json.loads(run_to_end('recalculate', '--compare', '--json', str(model)))

    def test_values_stored_by_the_models_are_confirmed(self):
        for model in [DEMO, *planning_models()]:
            with self.subTest(model=model.name):
                outcome = self.recalculated(model)
                formulas = sum(cell.formula is not None for sheet in Workbook(model).sheets.values()
                               for cell in sheet.cells.values())
                self.assertEqual(outcome['formulas'], formulas)
                self.assertEqual(outcome['differences'], [])
                self.assertEqual(outcome['uncalculated'], [])

    @unittest.skipUnless(MADE_BY_EXCEL, 'there are no workbooks by Excel beside the checkout')
    def test_values_stored_by_excel_are_confirmed(self):
        for path in MADE_BY_EXCEL:
            with self.subTest(workbook=path.name):
                self.assert_none(self.recalculated(path)['differences'],
                                 'stored values that differ')


if __name__ == '__main__':
    harness.main()
