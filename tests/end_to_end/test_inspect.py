"""What `vantora inspect` reports of whole models, against an independent reading of the files."""

import json
import re
import subprocess
import unittest

import harness
from harness import COMMAND, DEMO, CommandTestCase, planning_models
from workbook import Workbook, column_letters

LETTERS = 'XSFZLGYMIDTPCRUV'
# Of the Reference Sheet's lists: flag, and how far right of it the column stands that ends the list.
LISTS = {'n': 0, 'k': 0, 'c': 0, 's': 0, 'e': 0, 'g': 2, 'h': 1}


def text_at(sheet, row, column):
    cell = sheet.cells.get((row, column))
    if cell is None or cell.value is None:
        return ''
    value = cell.value
    return str(int(value)) if isinstance(value, float) and value.is_integer() else str(value)


def last_row(sheet):
    return max(row for row, _ in sheet.cells)


def base_rows(sheet):
    return [row for row in range(2, last_row(sheet) + 1) if 'b' in text_at(sheet, row, 28).lower()]


def calculated_flags(sheet):
    """Base flags with an S that a formula calculates."""
    return [f'AB{row}' for row in base_rows(sheet)
            if 's' in text_at(sheet, row, 28).lower() and sheet.cells[row, 28].formula]


def linked_cells(workbook, sheet):
    """The cells that the sheet's form controls are linked to."""
    links = []
    for part in sheet.related('ctrlProp'):
        links += re.findall(r'fmlaLink="([^"]*)"', workbook.parts[part].decode())
    return sorted(links)


def row_flags(sheet, text):
    columns = [column for row, column in sheet.cells
               if row == 1 and column > 1 and text_at(sheet, 1, column).lower() == text]
    return sorted(columns)


def list_entries(sheet, flag, first_row):
    column = row_flags(sheet, flag)[-1] + LISTS[flag]
    row = first_row
    while text_at(sheet, row, column).strip():
        row += 1
    return row - first_row


class Inspect(CommandTestCase):
    def inspect(self, model):
        finished = subprocess.run([COMMAND, 'inspect', str(model), '--json'], capture_output=True,
                                  text=True, timeout=300, check=True)
        return json.loads(finished.stdout)

    def check(self, model):
        found, workbook = self.inspect(model), Workbook(model)
        self.assertEqual([sheet['name'] for sheet in found['sheets']], list(workbook.sheets))
        problems = {(problem['sheet'], problem['cell']) for problem in found['problems']}
        for told in found['sheets']:
            sheet = workbook.sheets[told['name']]
            with self.subTest(model=model.name, sheet=told['name']):
                a1 = text_at(sheet, 1, 1).upper()
                self.assertEqual(sorted(flag['letter'] for flag in told['flags']),
                                 sorted(letter for letter in LETTERS if letter in a1))
                if 'F' in a1:
                    self.assertEqual(told['base_rows'], base_rows(sheet))
                    for cell in calculated_flags(sheet):
                        self.assertIn((told['name'], cell), problems)
                if 'S' in a1 and 'k' in {text_at(sheet, 1, c).lower() for c in range(2, 100)}:
                    marker = [flag['column'] for flag in told['row_1'] if flag['text'] == 'k']
                    self.assertEqual(marker, [column_letters(row_flags(sheet, 'k')[-1])])
                planning = row_flags(sheet, 'f') and row_flags(sheet, 's')
                self.assertEqual(sorted(block['linked_cell'] for block in told['spinner_blocks']),
                                 linked_cells(workbook, sheet) if planning else [])
                for block in told['spinner_blocks']:
                    flags = row_flags(sheet, 'f')[-1]
                    self.assertIn('end', text_at(sheet, block['end_row'], flags).lower())
                    spin_row = int(re.search(r'\d+$', block['linked_cell'])[0])
                    self.assertEqual(block['first_row'], spin_row + 1)
        self.check_lists(found, workbook, problems)

    def check_lists(self, found, workbook, problems):
        lists = found['reference_sheet']
        sheet = workbook.sheets[lists['sheet']]
        for told in lists['lists']:
            if told['flag'] not in LISTS:
                continue
            with self.subTest(list=told['name']):
                self.assertEqual(told['column'], column_letters(row_flags(sheet, told['flag'])[-1]))
                self.assertEqual(told['entries'],
                                 list_entries(sheet, told['flag'], lists['lists_row']))
        column = row_flags(sheet, 'h')[-1]
        end = lists['lists_row'] + list_entries(sheet, 'h', lists['lists_row'])
        place = (lists['sheet'], f'{column_letters(column)}{end}')
        self.assertEqual(place in problems, not text_at(sheet, end, column))

    def test_demonstration_model(self):
        self.check(DEMO)

    @unittest.skipUnless(planning_models(), 'there are no models beside the checkout')
    def test_large_models(self):
        for model in planning_models():
            self.check(model)


if __name__ == '__main__':
    harness.main()
