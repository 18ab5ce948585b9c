"""LibreOffice calculates the same values as the command stored, for every year-end operation."""

import unittest

import harness
import office
from harness import DEMO, OPERATIONS, CommandTestCase, planning_models
from workbook import Workbook, cell_name, same_value


@unittest.skipUnless(office.program(), 'LibreOffice is not installed')
class Recalculation(CommandTestCase):
    def check(self, models):
        results = [self.run_year_end(model, operation)
                   for model in models for operation in OPERATIONS]
        for path, again in zip(results, office.recalculated(results, self.folder / 'again')):
            with self.subTest(result=path.stem):
                self.assert_none(differing_cells(Workbook(path), Workbook(again)),
                                 'cells with another value')

    def test_demo_model(self):
        self.check([DEMO])

    def test_planning_models(self):
        if not planning_models():
            self.skipTest('there are no planning models beside the checkout')
        self.check(planning_models())


def differing_cells(stored, calculated):
    """The cells whose values differ, in words."""
    differences = []
    for name, sheet in stored.sheets.items():
        other = calculated.sheets[name]
        for row, column in sorted(sheet.cells.keys() | other.cells.keys()):
            cell, again = sheet.cells.get((row, column)), other.cells.get((row, column))
            left, right = cell.value if cell else None, again.value if again else None
            if not same_value(left, right):
                formula = f' by ={cell.formula}' if cell and cell.formula else ''
                differences.append(f'{cell_name(name, row, column)}: {left!r} is stored, {right!r} '
                                   f'calculated{formula}')
    return differences


if __name__ == '__main__':
    harness.main()
