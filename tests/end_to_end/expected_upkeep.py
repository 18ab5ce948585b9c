"""What the year-round operations must do to a model, worked out here from the model's rules alone.

While they work, formulas keep the values that they had before: the ones that the workbook stores.
Shares no code with the program under test.
"""

from expected import ExpectedModel
from workbook import Cell, copied, split_address

FIRST_LIVE, CURRENT, FIRST_PLAN, LAST_PLAN = 6, 15, 16, 25
BASE_FLAG, KEY, FIRST_HISTORY = 28, 9, 10
NOTHING = Cell(None, None, 0)


def text_of(value):
    return '' if value is None else str(value)


class UpkeepModel(ExpectedModel):
    def _cell(self, sheet, row, column):
        return self.cells[sheet].get((row, column), NOTHING)

    def _put(self, sheet, row, column, value, formula=None, style=None):
        old = self._cell(sheet, row, column)
        self.cells[sheet][row, column] = Cell(value, formula, old.style if style is None else style)

    def freeze(self):
        for sheet in self.flagged('f'):
            for row in range(2, self.last_row(sheet) + 1):
                if 'b' in text_of(self._cell(sheet, row, BASE_FLAG).value).lower():
                    for column in range(FIRST_LIVE, LAST_PLAN + 1):
                        self._put(sheet, row, column, self._cell(sheet, row - 1, column).value)

    def set_to_base(self):
        for sheet in self.flagged('f'):
            for row in range(2, self.last_row(sheet) + 1):
                cell = self._cell(sheet, row, BASE_FLAG)
                entered = text_of(cell.formula or cell.value).lower()
                for column in range(FIRST_LIVE, CURRENT + 1):
                    live = self._cell(sheet, row - 1, column)
                    if 'b' in entered and 's' in entered and live.formula is None:
                        self._put(sheet, row - 1, column, self._cell(sheet, row, column).value)

    def clear(self):
        for sheet in self.flagged('z'):
            first = 2
            if sheet in self.flagged('l'):
                keys = [row for row in range(2, self.last_row(sheet) + 1)
                        if text_of(self._cell(sheet, row, KEY).value).lower()
                        not in ('', 'planning key')]
                first = min(keys, default=self.last_row(sheet) + 1)
            for row, column in list(self.cells[sheet]):
                cell = self.cells[sheet][row, column]
                if (row >= first and FIRST_HISTORY <= column <= LAST_PLAN
                        and not self.workbook.has_fill(cell)):
                    self._put(sheet, row, column, None)

    def ratios(self):
        rows, starts, ends = {}, {}, {}
        for sheet in self.flagged('g'):
            mapping, blocks = False, 0
            for row in range(1, self.last_row(sheet) + 1):
                code = self._cell(sheet, row, 5).value
                code = int(code) if isinstance(code, float) else 0
                mapping = (mapping or code == 1) and code != 99
                if code > 99:
                    block, rest = divmod(code, 100)
                    blocks = max(blocks, block)
                    if rest <= 1:
                        starts[block] = row + 1
                    elif rest > 90:
                        ends[block] = row - 1
                key = self._cell(sheet, row, 1).value
                if mapping and isinstance(key, float):
                    rows[int(key)] = row
            for block in range(1, blocks + 1):
                for row in range(starts[block], ends[block] + 1):
                    key = self._cell(sheet, row, KEY).value
                    if isinstance(key, float) and key >= 1 and int(key) in rows:
                        self._copy_comparison(sheet, row, rows[int(key)] + block)

    def _copy_comparison(self, sheet, source, target):
        last = ''
        for column in range(FIRST_HISTORY, CURRENT + 1):
            value = self._cell(sheet, source, column).value
            last = last if text_of(value) == '' else value
            self._put(sheet, target, column, last)

    # Spin buttons

    def click(self, sheet, linked_cell, value):
        """Moves the projects under a spin button whose linked cell gets the value."""
        flags = {text_of(cell.value).lower(): column
                 for (row, column), cell in self.cells[sheet].items() if row == 1 and column > 1}
        spin, _, top, _ = split_address(linked_cell)
        letters = {row: text_of(self._cell(sheet, row, flags['f']).value)
                   for row in range(1, self.last_row(sheet) + 1)}
        end = min(row for row in letters if row > top and 'end' in letters[row].lower())
        before = self._cell(sheet, end, spin).value or 0
        self._put(sheet, top, spin, float(value))
        self._put(sheet, end, spin, float(value))
        steps = max(value, 1) - max(int(before), 1)
        inflation = min(row for row in letters if row > 1 and letters[row].lower() == 'x')
        for row in range(top + 1, end):
            for _ in range(abs(steps)):
                self._step(sheet, row, letters[row].strip().lower(), inflation, flags['s'],
                           steps > 0)

    def _step(self, sheet, row, letters, inflation, save, later):
        moves = inflates = False
        first = FIRST_PLAN
        for place, letter in enumerate(letters):
            if letter == 'c':
                first = CURRENT
            elif letter in 'sinf':
                moves = letter != 'f'
                inflates = letter == 'i' or (letter == 's' and inflates)
            elif letter.isdigit() and letters[place - 1] == 'i':
                inflation += int(letter) - 1
        if not moves:
            return
        cells = {column: self._cell(sheet, row, column) for column in range(first, save + 10)}

        def paste(source, target, formats):
            cell = cells[source]
            formula = cell.formula and copied(cell.formula, 0, target - source)
            self._put(sheet, row, target, cell.value, formula, cell.style if formats else None)

        if later:
            for column in range(save, save + 9):
                paste(column, column + 1, True)
            paste(LAST_PLAN, save, True)
            for column in range(first, LAST_PLAN):
                paste(column, column + 1, False)
            self._put(sheet, row, first, None)
            shifted = range(first + 1, LAST_PLAN + 1)
        else:
            for column in range(first + 1, LAST_PLAN + 1):
                paste(column, column - 1, False)
            paste(save, LAST_PLAN, True)
            for column in range(save + 1, save + 9):
                paste(column, column - 1, True)
            self._put(sheet, row, save + 9, None)
            shifted = range(first, LAST_PLAN)
        for column in shifted if inflates else ():
            amount = self._cell(sheet, row, column).value
            if isinstance(amount, float) and amount != 0:
                factor = self._cell(sheet, inflation, column + (not later)).value
                self._put(sheet, row, column, amount * factor if later else amount / factor)


def spinners(workbook):
    """(sheet, name of the spin button, linked cell) of a workbook, from the sheets' lists."""
    found = []
    for sheet in workbook.sheets.values():
        relations = workbook.relations(sheet.path)
        for control in sheet.root.iter():
            if not control.tag.endswith('}control'):
                continue
            identifier = next(value for key, value in control.items() if key.endswith('}id'))
            properties = workbook.xml(relations[identifier][1])
            if properties.get('objectType') == 'Spin':
                found.append((sheet.name, control.get('name'), properties.get('fmlaLink')))
    return found


