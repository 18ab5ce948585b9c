"""A worksheet of the demonstration model while it is being put together."""

from demo_model.formulas import column_letters, column_number, copied, split_address


class Cell:
    """One cell: a constant or a formula with its calculated value, and a style name."""

    def __init__(self, value=None, formula=None, style=None):
        self.value, self.formula, self.style = value, formula, style
        self.shared = None  # (number, area) on the first cell of a shared formula, (number, None)
        #                     on the others


class Spinner:
    """A spin button from the form controls, standing over one cell."""

    def __init__(self, name, row, column, linked_cell, maximum, macro):
        self.name, self.row, self.column = name, row, column
        self.linked_cell, self.maximum, self.macro = linked_cell, maximum, macro


class Sheet:
    """Cells and everything around them. Addresses are in A1 notation, columns may be letters."""

    def __init__(self, name, flags):
        self.name = name
        self.cells = {}
        self.widths = []  # (first column, last column, characters)
        self.levels = {}  # row -> outline level
        self.heights = {}
        self.merged = []
        self.conditional = []  # (area, XML of its rules)
        self.validations = []  # XML of each
        self.hyperlinks = []  # (cell, place in this workbook or None, address or None, tip)
        self.notes = {}  # cell -> text
        self.spinners = []
        self.charts = []
        self.freeze = None  # the cell at which panes are frozen
        self.top_left = None  # the scrolling pane's first cell
        self.selected = 'A1'
        self.protected = False
        self.print_area = None
        self.print_titles = None
        self.landscape = True
        self._shared = 0
        self.put('A1', flags, 'flag')

    def put(self, address, value, style=None):
        column, _, row, _ = split_address(address)
        self.cells[row, column] = Cell(value=value, style=style)

    def formula(self, address, formula, style):
        column, _, row, _ = split_address(address)
        self.cells[row, column] = Cell(formula=formula, style=style)

    def style(self, area, style):
        """Gives the cells of 'B2:H2' a style; cells that do not exist yet become blank ones."""
        first, last = area.split(':')
        left, _, top, _ = split_address(first)
        right, _, bottom, _ = split_address(last)
        for row in range(top, bottom + 1):
            for column in range(left, right + 1):
                self.cells.setdefault((row, column), Cell()).style = style

    def row(self, row, first, values, style):
        """Constants side by side from a column on; None leaves a blank cell with the style."""
        for offset, value in enumerate(values):
            self.cells[row, column_number(first) + offset] = Cell(value=value, style=style)

    def fill(self, row, first, last, formula, style):
        """A formula in the first column, filled to the right as one shared formula."""
        left, right = column_number(first), column_number(last)
        number = self._shared
        self._shared += 1
        for column in range(left, right + 1):
            cell = Cell(formula=copied(formula, 0, column - left), style=style)
            area = f'{first}{row}:{last}{row}' if column == left else None
            cell.shared = (number, area) if right > left else None
            self.cells[row, column] = cell

    def read(self, row, column):
        """For the calculator: ('formula', text) or ('value', value)."""
        cell = self.cells.get((row, column))
        if cell is None:
            return 'value', None
        if cell.formula is not None:
            return 'formula', cell.formula
        return 'value', float(cell.value) if type(cell.value) is int else cell.value

    def used_area(self):
        rows = [row for row, _ in self.cells]
        columns = [column for _, column in self.cells]
        return (f'{column_letters(min(columns))}{min(rows)}:'
                f'{column_letters(max(columns))}{max(rows)}')
