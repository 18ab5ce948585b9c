"""Comparing the cells of a result with what an operation must have made of them."""

import re

from harness import CommandTestCase
from workbook import cell_name, same_value

from demo_model.formulas import tokens


def plain(formula):
    """A formula without blanks and needless quotes, so that only its meaning is compared."""
    if formula is None:
        return None
    pieces = [match.group(0).strip() for _, match in tokens(formula)]
    return ''.join(re.sub(r"^'([A-Za-z_]\w*)'!", r'\1!', piece) for piece in pieces)


class CellTestCase(CommandTestCase):
    """Tests whose `before` is the workbook that the operations were run on."""

    before = None

    def assert_cells(self, expected, after):
        """Every cell of every sheet has the formula, the value and the format it should have."""
        calculator, differences = expected.calculator(), []
        for sheet, cells in expected.cells.items():
            found = after.sheets[sheet].cells
            for row, column in sorted(cells.keys() | found.keys()):
                wanted, cell = cells.get((row, column)), found.get((row, column))
                place = cell_name(sheet, row, column)
                formula, value = cell and cell.formula, cell and cell.value
                if plain(formula) != plain(wanted and wanted.formula):
                    differences.append(f'{place}: formula {formula!r}, not '
                                       f'{wanted and wanted.formula!r}')
                if not same_value(calculator.value(sheet, row, column), value):
                    differences.append(f'{place}: value {value!r}, not '
                                       f'{calculator.value(sheet, row, column)!r}')
                if self.before.format_of(wanted) != after.format_of(cell):
                    differences.append(f'{place}: another format')
        self.assert_none(differences, 'cells that are wrong')
