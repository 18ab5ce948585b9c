"""What a year end must do to a model, worked out here from the model's rules alone.

Works on the cells, formulas, names and areas that workbook.py read; shares no code with the program
under test.
"""

import re

from workbook import Cell, Workbook, column_number, copied, map_references, split_address

from demo_model.formulas import Calculator, CellError, join_address

FIRST_YEAR, LAST_YEAR, CURRENT_YEAR = 10, 14, 15


def moved_address(address, at):
    """An address after one column was inserted at column `at`."""
    column, column_fixed, row, row_fixed = split_address(address)
    return join_address(column + (column >= at), column_fixed, row, row_fixed)


def moved_area(area, at):
    """'AF6:AG58' after one column was inserted; also a list of areas set apart by blanks."""
    def move(match):
        return moved_address(match.group(), at)

    return re.sub(r'\$?[A-Z]{1,3}\$?[0-9]+', move, area)


def moved_formula(formula, home, sheet, at):
    """A formula of the sheet `home` (None for a name) after an insertion on `sheet`."""
    if formula is None:
        return None

    def change(prefix, first, last):
        if (prefix or home) == sheet:
            first, last = moved_address(first, at), last and moved_address(last, at)
        return first + (':' + last if last else '')

    return map_references(formula, change)


class ExpectedModel:
    """A model's cells and names, changed by the year-end operations."""

    def __init__(self, workbook: Workbook):
        self.workbook = workbook
        self.cells = {name: dict(sheet.cells) for name, sheet in workbook.sheets.items()}
        self.names = {key[0].lower(): text for key, text in workbook.names.items()
                      if key[1] is None and not key[0].startswith('_xlnm')}
        self.inserted = {}  # sheet -> the column of its snapshot

    def flagged(self, flag):
        return [name for name, cells in self.cells.items()
                if flag in str(cells.get((1, 1), Cell('', None, 0)).value or '').lower()]

    def calculator(self):
        def read(sheet, row, column):
            cell = self.cells[sheet].get((row, column))
            if cell is None:
                return 'value', None
            return ('formula', cell.formula) if cell.formula is not None else ('value', cell.value)

        return Calculator(read, self.names)

    def last_row(self, sheet):
        return max(row for row, _ in self.cells[sheet])

    # The operations

    def save_year(self, source):
        marker = re.search(r'!\$?([A-Z]+)', self.names['marker']).group(1)
        for sheet in self.flagged('s'):
            target = self._marked_column(sheet) or column_number(marker)
            calculator = self.calculator()
            saved = {row: Cell(calculator.value(sheet, row, source), None, cell.style)
                     for (row, column), cell in self.cells[sheet].items() if column == source}
            self._insert_column(sheet, target)
            for row, cell in saved.items():
                self.cells[sheet][row, target] = cell
            self.inserted[sheet] = target

    def shift_history(self):
        for sheet in self.flagged('s'):
            cells = self.cells[sheet]
            for target in range(FIRST_YEAR, LAST_YEAR):
                for row in range(1, self.last_row(sheet) + 1):
                    cells.pop((row, target), None)
                    cell = cells.get((row, target + 1))
                    if cell:
                        formula = cell.formula and copied(cell.formula, 0, -1)
                        cells[row, target] = Cell(cell.value, formula, cell.style)
            calculator = self.calculator()
            for row in range(1, self.last_row(sheet) + 1):
                if calculator.value(sheet, row, FIRST_YEAR) == CellError('#VALUE!'):
                    cells[row, FIRST_YEAR] = Cell('', None, cells[row, FIRST_YEAR].style)

    def copy_current_year(self):
        for sheet in self.flagged('s'):
            cells, calculator = self.cells[sheet], self.calculator()
            for row in range(2, self.last_row(sheet) + 1):
                old = cells.get((row, LAST_YEAR), Cell(None, None, 0))
                if not self.workbook.has_fill(old):
                    value = calculator.value(sheet, row, CURRENT_YEAR)
                    cells[row, LAST_YEAR] = Cell(value, None, old.style)
                    calculator = self.calculator()

    def _marked_column(self, sheet):
        marks = [column for (row, column), cell in self.cells[sheet].items()
                 if row == 1 and column > 1 and str(cell.value).lower() == 'k']
        return max(marks, default=None)

    def _insert_column(self, sheet, at):
        for name, cells in self.cells.items():
            self.cells[name] = {
                (row, column + (name == sheet and column >= at)):
                Cell(cell.value, moved_formula(cell.formula, name, sheet, at), cell.style)
                for (row, column), cell in cells.items()}
        self.names = {name: moved_formula(text, None, sheet, at)
                      for name, text in self.names.items()}
