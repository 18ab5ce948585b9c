"""The year-round operations on whole models: freezing, spin buttons, clearing, comparison data."""

import harness
import office
from cell_checks import CellTestCase, plain
from expected_upkeep import UpkeepModel, spinners
from harness import DEMO, planning_models, run_command
from test_recalculation import differing_cells
from workbook import Workbook, cell_name, same_value

# Each operation with its answers, and what it must do.
OPERATIONS = {
    'clsFreeze.FreezeCurrentResults': (('--answer', 'OK'), UpkeepModel.freeze),
    'clsFreeze.SetSpinnerstoBase': ((), UpkeepModel.set_to_base),
    'clsClearAllData.ClearAllData': (('--answer', 'OK', '--answer', 'OK'), UpkeepModel.clear),
    'clsRatiosCompDataSet.RatiosCompDataSet': ((), UpkeepModel.ratios),
}
CLICKS = (3, 1, 0, 2, 12)


class Upkeep(CellTestCase):
    def run_operation(self, model, method):
        output = self.folder / f'{model.stem}-{method.split(".")[1]}.xlsm'
        run_command(model, method, *OPERATIONS[method][0], output=output)
        return output

    def click(self, model, place, value):
        sheet, name, linked_cell = place
        output = self.folder / f'{model.stem}-{value}.xlsm'
        run_command(model, 'clsPlanningSpinners.SpinnerChange', '--sheet', sheet, '--caller', name,
                    '--set', f"'{sheet}'!{linked_cell.replace('$', '')}={value}", output=output)
        return output

    def assert_contents(self, expected, after):
        """Every cell has its formula, and every other cell its value."""
        differences = []
        for sheet, cells in expected.cells.items():
            found = after.sheets[sheet].cells
            for row, column in sorted(cells.keys() | found.keys()):
                wanted, cell = cells.get((row, column)), found.get((row, column))
                if plain(wanted and wanted.formula) != plain(cell and cell.formula) or not (
                        wanted and wanted.formula
                        or same_value(wanted and wanted.value, cell and cell.value)):
                    differences.append(f'{cell_name(sheet, row, column)}: '
                                       f'{cell and (cell.formula or cell.value)!r}, not '
                                       f'{wanted and (wanted.formula or wanted.value)!r}')
        self.assert_none(differences, 'cells that are wrong')

    def test_demo_model(self):
        self.before = Workbook(DEMO)
        for method, (_, change) in OPERATIONS.items():
            with self.subTest(method=method):
                expected = UpkeepModel(self.before)
                change(expected)
                self.assert_cells(expected, Workbook(self.run_operation(DEMO, method)))

    def test_clicks_in_the_demo_model(self):
        self.before = Workbook(DEMO)
        place = next(place for place in spinners(self.before) if place[0] == 'Planning')
        expected, result = UpkeepModel(self.before), DEMO
        for value in CLICKS:
            expected.click(place[0], place[2], value)
            result = self.click(result, place, value)
        self.assert_cells(expected, Workbook(result))

    def test_planning_models(self):
        """Every operation, and two clicks, on each planning model."""
        if not planning_models():
            self.skipTest('there are no planning models beside the checkout')
        results = []
        for model in planning_models():
            before = Workbook(model)
            for method, (_, change) in OPERATIONS.items():
                expected = UpkeepModel(before)
                change(expected)
                results.append(self.run_operation(model, method))
                with self.subTest(result=results[-1].stem):
                    self.assert_contents(expected, Workbook(results[-1]))
            expected, result = UpkeepModel(before), model
            for place, value in zip(spinners(before)[1:3], (4, 2)):
                expected.click(place[0], place[2], value)
                result = self.click(result, place, value)
            results.append(result)
            with self.subTest(result=result.stem):
                self.assert_contents(expected, Workbook(result))
        self.check_recalculated(results)

    def check_recalculated(self, results):
        """LibreOffice, where it is installed, calculates the values that are stored."""
        if not office.program():
            return
        for path, again in zip(results, office.recalculated(results, self.folder / 'again')):
            with self.subTest(recalculated=path.stem):
                self.assert_none(differing_cells(Workbook(path), Workbook(again)),
                                 'cells with another value')


if __name__ == '__main__':
    harness.main()
