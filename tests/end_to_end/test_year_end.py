"""The outcome of each year-end operation on the demonstration model, cell by cell and beyond."""

import re

import harness
from cell_checks import CellTestCase, plain
from expected import CURRENT_YEAR, LAST_YEAR, ExpectedModel, moved_address, moved_area, \
    moved_formula
from harness import COMMENT, DEMO
from workbook import (CHART, MAIN, RELATION, Workbook, cell_name, column_letters, column_number,
                      plain_text, same_value)

from demo_model.formulas import tokens

SALES_MARKER = 30  # column AD


def notes(workbook, sheet):
    found = {}
    for part in workbook.sheets[sheet].related('comments'):
        for comment in workbook.xml(part).iter(MAIN + 'comment'):
            found[comment.get('ref')] = plain_text(comment.find(MAIN + 'text'))
    return found


def validations(workbook, sheet):
    """(area, type, formulas) of each validation of the sheet."""
    return sorted((item.get('sqref'), item.get('type'),
                   tuple(plain(item.findtext(MAIN + name)) for name in ('formula1', 'formula2')))
                  for item in workbook.sheets[sheet].root.iter(MAIN + 'dataValidation'))


def conditional_formats(workbook, sheet):
    """(type, priority, formula) of each rule of the sheet -> the cells that it covers."""
    return {(rule.get('type'), rule.get('priority'), plain(rule.findtext(MAIN + 'formula'))):
            area_cells(block.get('sqref'))
            for block in workbook.sheets[sheet].root.iter(MAIN + 'conditionalFormatting')
            for rule in block.iter(MAIN + 'cfRule')}


def area_cells(areas):
    """The cells (row, column) of areas set apart by blanks."""
    cells = set()
    for area in areas.split():
        first, _, last = area.partition(':')
        (left, top), (right, bottom) = (re.fullmatch(r'([A-Z]+)(\d+)', end).groups()
                                        for end in (first, last or first))
        cells |= {(row, column) for row in range(int(top), int(bottom) + 1)
                  for column in range(column_number(left), column_number(right) + 1)}
    return cells


def references(workbook, sheet, element, attribute='ref'):
    return [item.get(attribute) for item in workbook.sheets[sheet].root.iter(MAIN + element)]


def widths(workbook, sheet):
    found = {}
    for column in workbook.sheets[sheet].root.iter(MAIN + 'col'):
        for number in range(int(column.get('min')), int(column.get('max')) + 1):
            found[number] = float(column.get('width'))
    return found


def chart_formulas(workbook):
    """Chart title -> the formulas of its series in order."""
    found = {}
    for name in workbook.parts:
        if name.startswith('xl/charts/chart'):
            root = workbook.xml(name)
            title = ''.join(text.text for text in root.find(f'.//{CHART}title').iter()
                            if text.tag.endswith('}t'))
            found[title] = [plain(item.text) for item in root.iter(CHART + 'f')]
    return found


def stale_caches(workbook):
    """The points of the charts' caches that differ from the cells they stand for."""
    stale = []
    for name in sorted(workbook.parts):
        if not name.startswith('xl/charts/chart'):
            continue
        for reference in workbook.xml(name).iter():
            if reference.tag not in (CHART + 'numRef', CHART + 'strRef'):
                continue
            (_, match), = tokens(reference.findtext(CHART + 'f'))
            sheet = match.group('sheet').strip("'").replace("''", "'")
            area = f'{match.group("first")}:{match.group("last") or match.group("first")}'
            cells = sorted(area_cells(area.replace('$', '')))
            points = {int(point.get('idx')): point.findtext(CHART + 'v')
                      for point in reference.iter(CHART + 'pt')}
            for index, (row, column) in enumerate(cells):
                cell, point = workbook.sheets[sheet].cells.get((row, column)), points.get(index)
                value = cell.value if cell else None
                point = float(point) if isinstance(value, float) and point else point
                if not same_value(value, point):
                    stale.append(f'{name}: {point!r} for {cell_name(sheet, row, column)}, which '
                                 f'holds {value!r}')
    return stale


class YearEnd(CellTestCase):
    @classmethod
    def setUpClass(cls):
        cls.before = Workbook(DEMO)

    def assert_charts(self, after):
        self.assert_none(stale_caches(after), "points of charts that are not the cells' values")

    def assert_names(self, expected, after):
        found = {name.lower(): plain(text) for (name, local), text in after.names.items()
                 if local is None}
        self.assertEqual(found, {name: plain(text) for name, text in expected.names.items()})

    def assert_conditional_formats(self, after, sheet, wanted):
        found = conditional_formats(after, sheet)
        self.assertEqual(set(found), set(wanted), f'rules of {sheet}')
        self.assert_none([f'{cell_name(sheet, *cell)}: {rule}'
                          for rule in wanted for cell in sorted(wanted[rule] ^ found[rule])],
                         'cells that a rule should cover and does not, or the reverse')

    # Saving a year

    def check_save(self, operation, source):
        expected = ExpectedModel(self.before)
        expected.save_year(source)
        after = self.year_end(DEMO, operation)
        self.assertEqual(expected.inserted, {'Sales': 30, 'Production Costs': 30,
                                             'People & Premises': 30, "Owner's Accounts": 31})
        self.assert_cells(expected, after)
        self.assert_names(expected, after)
        self.assert_charts(after)
        return after

    def test_save_last_year(self):
        self.check_save('SaveLastYear', LAST_YEAR)

    def test_save_history_year(self):
        self.check_save('SaveHistoryYear', 11)

    def test_save_current_year(self):
        after = self.check_save('SaveCurrentYear', CURRENT_YEAR)
        for sheet, at in (('Sales', 30), ('Production Costs', 30), ('People & Premises', 30),
                          ("Owner's Accounts", 31)):
            with self.subTest(sheet=sheet):
                self._check_notes(after, sheet, at)
                self._check_rules(after, sheet, at)
                self._check_geometry(after, sheet, at)
        self._check_sales(after)
        self._check_charts(after)

    def _check_notes(self, after, sheet, at):
        wanted = {moved_address(place, at): text
                  for place, text in notes(self.before, sheet).items()}
        wanted[f'{column_letters(at)}2'] = COMMENT
        self.assertEqual(notes(after, sheet), wanted)
        # The shapes of the notes stand for the same cells, and the new one is hidden.
        shapes = re.findall(rb'<v:shape\b.*?</v:shape>', b''.join(
            after.parts[part] for part in after.sheets[sheet].related('vmlDrawing')), re.DOTALL)
        places = {}
        for shape in shapes:
            if b'ObjectType="Note"' in shape:
                row, column = (int(re.search(rb'<x:%s>(\d+)</x:%s>' % (tag, tag), shape).group(1))
                               for tag in (b'Row', b'Column'))
                places[f'{column_letters(column + 1)}{row + 1}'] = shape
        self.assertEqual(set(places), set(wanted))
        new_shape = places[f'{column_letters(at)}2']
        self.assertRegex(new_shape, rb'visibility:\s*hidden')
        self.assertNotIn(b'<x:Visible', new_shape)

    def _check_rules(self, after, sheet, at):
        moved = sorted((moved_area(area, at), kind, tuple(
            formula and moved_formula(formula, sheet, sheet, at) for formula in formulas))
            for area, kind, formulas in validations(self.before, sheet))
        # The saved column takes over no validation: only values and formats are pasted.
        self.assertEqual(validations(after, sheet), moved)
        # With the formats of the saved year come the conditional formats of its column.
        wanted = {}
        for (kind, priority, formula), cells in conditional_formats(self.before, sheet).items():
            key = kind, priority, formula and moved_formula(formula, sheet, sheet, at)
            wanted[key] = {(row, column + (column >= at)) for row, column in cells}
            wanted[key] |= {(row, at) for row, column in cells if column == CURRENT_YEAR}
        self.assert_conditional_formats(after, sheet, wanted)

    def _check_geometry(self, after, sheet, at):
        moved = {column + (column >= at): width
                 for column, width in widths(self.before, sheet).items()}
        found = widths(after, sheet)
        self.assertEqual({column: found.get(column) for column in moved}, moved)
        self.assertEqual(sorted(references(after, sheet, 'mergeCell')),
                         sorted(moved_area(area, at)
                                for area in references(self.before, sheet, 'mergeCell')))
        self.assertEqual(references(after, sheet, 'hyperlink'),
                         [moved_area(area, at)
                          for area in references(self.before, sheet, 'hyperlink')])

    def _check_sales(self, after):
        """What only the Sales sheet has: a print area and a spin button right of the marker."""
        index = str(list(after.sheets).index('Sales'))
        self.assertEqual(after.names['_xlnm.Print_Area', index], 'Sales!$A$1:$AG$60')
        self.assertEqual(after.names['marker', None], 'Sales!$AE$1')
        control, = after.sheets['Sales'].root.iter(MAIN + 'control')
        corner = control.find(f'.//{MAIN}from')
        self.assertEqual(corner[0].text, str(SALES_MARKER + 4), 'the column under the spin button')
        properties = after.relations(after.sheets['Sales'].path)[
            control.get(RELATION + 'id')][1]
        self.assertEqual(after.xml(properties).get('fmlaLink'), '$AH$4')
        drawing, = after.sheets['Sales'].related('vmlDrawing')
        self.assertIn(b'<x:FmlaLink>$AH$4</x:FmlaLink>', after.parts[drawing])

    def _check_charts(self, after):
        wanted = {title: [plain(moved_formula(text, None, 'Sales', SALES_MARKER))
                          for text in formulas]
                  for title, formulas in chart_formulas(self.before).items()}
        self.assertEqual(wanted['Saved net revenue'][-1], 'Sales!$AC$51:$AE$51')
        self.assertEqual(chart_formulas(after), wanted)

    # Moving on by a year

    def test_shift_history(self):
        expected = ExpectedModel(self.before)
        expected.shift_history()
        emptied = [(sheet, row) for sheet, cells in expected.cells.items()
                   for (row, column), cell in cells.items() if column == 10 and cell.value == '']
        self.assertIn(('Sales', 11), emptied)  # growth has no year before the oldest
        after = self.year_end(DEMO, 'ShiftHistory')
        self.assert_cells(expected, after)
        self.assert_names(expected, after)
        self.assert_charts(after)
        self.assertEqual(chart_formulas(after), chart_formulas(self.before))
        # Notes come along with their cells; J6 gets what K6 had, which is nothing.
        self.assertNotIn('J6', notes(after, 'Sales'))
        self.assertEqual(notes(after, 'Sales')['O17'], notes(self.before, 'Sales')['O17'])
        for sheet in expected.flagged('s'):
            self.assert_conditional_formats(after, sheet,
                                            conditional_formats(self.before, sheet))
            self.assertEqual(validations(after, sheet), validations(self.before, sheet), sheet)

    def test_copy_current_year(self):
        expected = ExpectedModel(self.before)
        expected.copy_current_year()
        after = self.year_end(DEMO, 'CopyCurrentYear')
        self.assertEqual(after.sheets['Sales'].value('N6'), self.before.sheets['Sales'].value('O6'))
        self.assert_cells(expected, after)
        self.assert_names(expected, after)
        self.assert_charts(after)
        self.assertEqual(notes(after, 'Sales'), notes(self.before, 'Sales'))

    def test_whole_year_end_in_turn(self):
        expected = ExpectedModel(self.before)
        expected.save_year(CURRENT_YEAR)
        expected.shift_history()
        expected.copy_current_year()
        result = DEMO
        for operation in ('SaveCurrentYear', 'ShiftHistory', 'CopyCurrentYear'):
            result = self.run_year_end(result, operation)
        after = Workbook(result)
        self.assert_cells(expected, after)
        self.assert_names(expected, after)
        self.assert_charts(after)


if __name__ == '__main__':
    harness.main()
