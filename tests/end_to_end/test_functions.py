"""LibreOffice gives the same values for formulas over the worksheet functions as the command."""

import unittest
import zipfile
from xml.sax.saxutils import escape

import harness
import office
from function_formulas import DATA, EXCEL, FORMULAS, NEW
from harness import CommandTestCase
from workbook import CellError, Workbook, same_value

MAIN = 'http://schemas.openxmlformats.org/spreadsheetml/2006/main'
OFFICE = 'http://schemas.openxmlformats.org/officeDocument/2006/relationships'
PACKAGE = 'http://schemas.openxmlformats.org/package/2006'
TYPES = 'application/vnd.openxmlformats-officedocument.spreadsheetml'
FORMULA_COLUMN = 12


@unittest.skipUnless(office.program(), 'LibreOffice is not installed')
class Functions(CommandTestCase):
    def test_values(self):
        model = self.folder / 'functions.xlsx'
        write_workbook(model)
        output = self.folder / 'calculated.xlsx'
        harness.run_recalculate(model, output=output)
        again, = office.recalculated([model], self.folder / 'again')
        own, other = values_of(output), values_of(again)
        differences = [f'{formula}: {own[formula]!r}, LibreOffice: {other[formula]!r}'
                       for formula in FORMULAS
                       if not agree(formula, own[formula], other[formula])]
        self.assert_none(differences, 'formulas with another value')


def agree(formula, own, other):
    if own is None:
        return False
    if formula in EXCEL:
        return same_value(own, EXCEL[formula])
    if other == CellError('#NAME?') and any(name in formula for name in NEW):
        return True
    # It has one error for all arguments that are out of range; which one Excel gives is not seen.
    if other == CellError('#VALUE!'):
        return isinstance(own, CellError)
    return same_value(own, other)


def cell(row, column, value):
    place = f'{chr(64 + column)}{row}'
    if isinstance(value, bool):
        return f'<c r="{place}" t="b"><v>{int(value)}</v></c>'
    if isinstance(value, str):
        return f'<c r="{place}" t="inlineStr"><is><t>{escape(value)}</t></is></c>'
    return f'<c r="{place}"><v>{value}</v></c>'


def write_workbook(path):
    """The data at the top left, each formula in a row of its own beside it, without a value."""
    rows = []
    for row in range(1, len(FORMULAS) + 1):
        values = DATA[row - 1] if row <= len(DATA) else []
        cells = [cell(row, column, value)
                 for column, value in enumerate(values, 1) if value is not None]
        place = f'{chr(64 + FORMULA_COLUMN)}{row}'
        cells.append(f'<c r="{place}"><f>{escape(FORMULAS[row - 1])}</f></c>')
        rows.append(f'<row r="{row}">{"".join(cells)}</row>')
    parts = {
        '[Content_Types].xml':
            f'<Types xmlns="{PACKAGE}/content-types">'
            '<Default Extension="rels" '
            'ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            f'<Override PartName="/xl/workbook.xml" ContentType="{TYPES}.sheet.main+xml"/>'
            f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{TYPES}.worksheet+xml"/></Types>',
        '_rels/.rels':
            f'<Relationships xmlns="{PACKAGE}/relationships"><Relationship Id="rId1" '
            f'Type="{OFFICE}/officeDocument" Target="xl/workbook.xml"/></Relationships>',
        'xl/_rels/workbook.xml.rels':
            f'<Relationships xmlns="{PACKAGE}/relationships"><Relationship Id="rId1" '
            f'Type="{OFFICE}/worksheet" Target="worksheets/sheet1.xml"/></Relationships>',
        'xl/workbook.xml':
            f'<workbook xmlns="{MAIN}" xmlns:r="{OFFICE}"><sheets>'
            '<sheet name="Plan" sheetId="1" r:id="rId1"/></sheets></workbook>',
        'xl/worksheets/sheet1.xml':
            f'<worksheet xmlns="{MAIN}"><sheetData>{"".join(rows)}</sheetData></worksheet>',
    }
    with zipfile.ZipFile(path, 'w', zipfile.ZIP_DEFLATED) as package:
        for name, text in parts.items():
            package.writestr(name, '<?xml version="1.0" encoding="UTF-8"?>\n' + text)


def values_of(path):
    cells = Workbook(path).sheets['Plan'].cells
    values = {}
    for row, formula in enumerate(FORMULAS, 1):
        found = cells.get((row, FORMULA_COLUMN))
        values[formula] = found.value if found else None
    return values


if __name__ == '__main__':
    harness.main()
