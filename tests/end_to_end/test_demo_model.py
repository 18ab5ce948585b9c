"""The demonstration model: its script reproduces it, and its stored values are right."""

import unittest

import harness
import office
from harness import DEMO, CommandTestCase
from workbook import ROOT, Workbook, cell_name, same_value

import make_demo_model  # in examples/, which workbook.py put on the path


class DemoModel(CommandTestCase):
    def test_script_reproduces_it_byte_for_byte(self):
        written = self.folder / 'demo-model.xlsm'
        make_demo_model.build().save(written)
        self.assertEqual(written.read_bytes(), DEMO.read_bytes(),
                         f'run {ROOT / "examples/make_demo_model.py"} and keep its result')

    @unittest.skipUnless(office.program(), 'LibreOffice is not installed')
    def test_stored_values_stand_up_to_recalculation(self):
        original = Workbook(DEMO)
        again = Workbook(office.recalculated([DEMO], self.folder)[0])
        differences = []
        for name, sheet in original.sheets.items():
            for (row, column), cell in sheet.cells.items():
                other = again.sheets[name].cells.get((row, column))
                value = other.value if other else None
                if not same_value(cell.value, value):
                    differences.append(f'{cell_name(name, row, column)}: {cell.value!r} is stored, '
                                       f'{value!r} calculated')
        self.assert_none(differences, 'stored values that are wrong')


if __name__ == '__main__':
    harness.main()
