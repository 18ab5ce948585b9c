"""Reads workbook packages for the checks: parts, cells, formulas, names, comments and so on.

Written apart from the program under test and from the script that writes the demonstration model:
what the program writes is read here by other code.
"""

import posixpath
import re
import sys
import zipfile
from pathlib import Path
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / 'examples'))

from demo_model.formulas import (CellError, column_letters, column_number, copied,  # noqa: E402
                            map_references, split_address)

MAIN = '{http://schemas.openxmlformats.org/spreadsheetml/2006/main}'
RELATION = '{http://schemas.openxmlformats.org/officeDocument/2006/relationships}'
CHART = '{http://schemas.openxmlformats.org/drawingml/2006/chart}'


class Cell:
    """A cell's value (None, number, text, bool or CellError), formula text and style number."""

    def __init__(self, value, formula, style):
        self.value, self.formula, self.style = value, formula, style


class Sheet:
    """One worksheet: its part, and its cells by (row, column) counting from 1."""

    def __init__(self, name, path, root, relations):
        self.name, self.path, self.root, self.relations = name, path, root, relations
        self.cells = {}

    def value(self, address):
        column, _, row, _ = split_address(address)
        cell = self.cells.get((row, column))
        return cell.value if cell else None

    def formula(self, address):
        column, _, row, _ = split_address(address)
        cell = self.cells.get((row, column))
        return cell.formula if cell else None

    def related(self, kind):
        """The paths of the parts that the sheet is related to as `kind` ('comments')."""
        return [target for end, target in self.relations if end == kind]


class Workbook:
    """A workbook package read into memory."""

    def __init__(self, path):
        self.parts = read_parts(path)
        relations = self.relations('xl/workbook.xml')
        targets = {key: target for key, (_, target) in relations.items()}
        kinds = {kind: target for kind, target in relations.values()}
        self.root = ElementTree.fromstring(self.parts['xl/workbook.xml'])
        self._strings = self._shared_strings(kinds.get('sharedStrings'))
        self._formats = self._cell_formats(kinds.get('styles'))
        self.sheets = {}
        for element in self.root.iter(MAIN + 'sheet'):
            path = targets[element.get(RELATION + 'id')]
            if 'worksheets/' in path:
                self.sheets[element.get('name')] = self._sheet(element.get('name'), path)
        self.names = {(element.get('name'), element.get('localSheetId')): element.text
                      for element in self.root.iter(MAIN + 'definedName')}

    def xml(self, path):
        return ElementTree.fromstring(self.parts[path])

    def has_fill(self, cell):
        return 'patternType="solid"' in self._formats[cell.style][2]

    def format_of(self, cell):
        """The cell's number format, font, fill, border and alignment, each as text."""
        return self._formats[cell.style if cell else 0]

    def read(self, sheet, row, column):
        """For the calculator: ('formula', text) or ('value', value)."""
        cell = self.sheets[sheet].cells.get((row, column))
        if cell is None:
            return 'value', None
        if cell.formula is not None:
            return 'formula', cell.formula
        return 'value', cell.value

    def relations(self, part):
        """Relation identifier -> (kind, path of the part or outside address)."""
        folder, name = posixpath.split(part)
        place = posixpath.join(folder, '_rels', name + '.rels')
        found = {}
        if place in self.parts:
            for element in ElementTree.fromstring(self.parts[place]):
                target = element.get('Target')
                if element.get('TargetMode') != 'External':
                    target = posixpath.normpath(posixpath.join('/' + folder, target))[1:]
                found[element.get('Id')] = (element.get('Type').rsplit('/', 1)[1], target)
        return found

    def _shared_strings(self, path):
        if not path or path not in self.parts:
            return []
        return [plain_text(item) for item in self.xml(path).findall(MAIN + 'si')]

    def _cell_formats(self, path):
        """For each cell format: number format, font, fill, border and alignment, each as text."""
        if not path or path not in self.parts:
            return [('',) * 5]
        root = self.xml(path)
        tables = [[ElementTree.tostring(item, 'unicode') for item in root.find(MAIN + name)]
                  for name in ('fonts', 'fills', 'borders')]
        codes = {item.get('numFmtId'): item.get('formatCode')
                 for item in root.iter(MAIN + 'numFmt')}
        formats = []
        for xf in root.find(MAIN + 'cellXfs'):
            number = xf.get('numFmtId', '0')
            alignment = xf.find(MAIN + 'alignment')
            formats.append((codes.get(number, number),) + tuple(
                table[int(xf.get(key, 0))]
                for table, key in zip(tables, ('fontId', 'fillId', 'borderId'))) +
                (ElementTree.tostring(alignment, 'unicode') if alignment is not None else '',))
        return formats

    def _sheet(self, name, path):
        relations = list(self.relations(path).values())
        sheet = Sheet(name, path, self.xml(path), relations)
        shared = {}
        for row, column, element in _positions(sheet.root):
            formula = element.find(MAIN + 'f')
            text = None
            if formula is not None:
                text = self._formula(formula, row, column, shared)
            sheet.cells[row, column] = Cell(self._value(element), text, int(element.get('s', 0)))
        return sheet

    @staticmethod
    def _formula(element, row, column, shared):
        if element.get('t') != 'shared':
            return element.text
        key = element.get('si')
        if element.text:
            shared[key] = (element.text, row, column)
            return element.text
        text, top, left = shared[key]
        return copied(text, row - top, column - left)

    def _value(self, element):
        kind = element.get('t', 'n')
        if kind == 'inlineStr':
            return plain_text(element.find(MAIN + 'is'))
        value = element.find(MAIN + 'v')
        if value is None:
            return None
        text = value.text or ''
        if kind == 's':
            return self._strings[int(text)]
        if kind == 'str':
            return text
        if kind == 'b':
            return text == '1'
        return CellError(text) if kind == 'e' else float(text)


def read_parts(path):
    """The parts of a package, by name, as bytes."""
    with zipfile.ZipFile(path) as archive:
        return {name: archive.read(name) for name in archive.namelist()}


def _positions(root):
    row = 0
    for row_element in root.find(MAIN + 'sheetData'):
        row = int(row_element.get('r', row + 1))
        column = 0
        for element in row_element:
            address = element.get('r')
            column = column_number(re.match('[A-Z]+', address).group()) if address else column + 1
            yield row, column, element


def plain_text(element):
    """The text of a string item without the readings of phonetic guides."""
    pieces = [piece.text or '' for piece in element.findall(MAIN + 't')]
    for run in element.findall(MAIN + 'r'):
        pieces += [piece.text or '' for piece in run.findall(MAIN + 't')]
    return ''.join(pieces)


def same_value(left, right):
    """Equal up to the last digits of a number; an empty text and no value are the same."""
    if isinstance(left, float) and isinstance(right, float):
        return abs(left - right) <= 1e-9 * max(1.0, abs(left), abs(right))
    return (left if left is not None else '') == (right if right is not None else '')


def cell_name(sheet, row, column):
    return f'{sheet}!{column_letters(column)}{row}'
