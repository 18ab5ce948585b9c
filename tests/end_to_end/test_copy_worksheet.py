"""A copied worksheet holds the source's formulas and formats, and LibreOffice calculates its values."""

import shutil
import unittest

import harness
import office
from harness import DEMO, CommandTestCase, planning_models, run_command
from test_package import PackageChecks
from test_recalculation import differing_cells
from workbook import MAIN, Workbook, cell_name

METHOD = 'clsCopyWorksheet.CopyWorksheet'


class CopiedWorksheet(PackageChecks, CommandTestCase):
    def copy(self, model, sheet, target=None):
        """Copies a sheet of the model into itself, or into a workbook; returns the result's path."""
        output = self.folder / f'{model.stem}-copied.xlsm'
        if target is None:
            run_command(model, METHOD, '--sheet', sheet, '--answer', 'frmCopyWorksheet:butCopy',
                        output=output)
            return output
        other = self.folder / f'{target.stem}-target.xlsm'
        shutil.copyfile(target, other)
        result = self.folder / f'{target.stem}-result.xlsm'
        run_command(model, METHOD, '--sheet', sheet, '--with', str(other), '--answer',
                    f'frmCopyWorksheet:cboTargetWorkbook={other.name};chkCopyColors=yes;butCopy',
                    '--output-for', f'{other.name}={result}', output=output)
        return result

    def check(self, model, sheet, target=None):
        path = self.copy(model, sheet, target)
        source, result = Workbook(model), Workbook(path)
        with self.subTest(model=model.name, sheet=sheet, target=target and target.name):
            self.assertEqual(list(result.sheets)[-1], 'Copy of ' + sheet)
            self.assert_none(differences(source, sheet, result), 'cells that differ')
            self.check_xml(result)
            self.check_connections(result)
        return path

    def recalculate(self, paths):
        if not office.program():
            self.skipTest('LibreOffice is not installed')
        for path, again in zip(paths, office.recalculated(paths, self.folder / 'again')):
            with self.subTest(result=path.stem):
                self.assert_none(differing_cells(Workbook(path), Workbook(again)),
                                 'cells with another value')

    def test_demo_model(self):
        sheet = data_sheet(DEMO)
        self.recalculate([self.check(DEMO, sheet), self.check(DEMO, sheet, DEMO)])

    def test_planning_models(self):
        models = {model.stem: model for model in planning_models()}
        if not {'planning-3x200', 'planning-2x60'} <= models.keys():
            self.skipTest('there are no planning models beside the checkout')
        model, target = models['planning-3x200'], models['planning-2x60']
        self.recalculate([self.check(model, 'Data 01'), self.check(model, 'Data 01', target)])


def data_sheet(model):
    """The first sheet with comments and formulas that name no sheet in quotes."""
    for name, sheet in Workbook(model).sheets.items():
        formulas = [cell.formula for cell in sheet.cells.values() if cell.formula]
        if sheet.related('comments') and formulas and not any("'!" in text for text in formulas):
            return name
    raise AssertionError(f'{model} has no sheet to copy')


def differences(source, name, result):
    """What differs between a sheet and its copy, which begins in A1, in words."""
    sheet, copy = source.sheets[name], result.sheets['Copy of ' + name]
    top = min(row for row, _ in sheet.cells)
    left = min(column for _, column in sheet.cells)
    found = []
    for (row, column), cell in sorted(sheet.cells.items()):
        other = copy.cells.get((row - top + 1, column - left + 1))
        place = cell_name(name, row, column)
        if (cell.formula or None) != (other.formula if other else None):
            found.append(f'{place}: ={cell.formula} became ={other and other.formula}')
        if not cell.formula and (cell.value or None) != ((other and other.value) or None):
            found.append(f'{place}: {cell.value!r} became {other and other.value!r}')
        if source.format_of(cell) != result.format_of(other):
            found.append(f'{place}: {source.format_of(cell)} became {result.format_of(other)}')
    for kind in ('conditionalFormatting', 'dataValidation', 'mergeCell'):
        before, after = (len(list(one.root.iter(MAIN + kind))) for one in (sheet, copy))
        if before != after:
            found.append(f'{before} elements {kind} became {after}')
    comments = [sum(len(list(book.xml(path).iter(MAIN + 'comment')))
                    for path in one.related('comments'))
                for book, one in ((source, sheet), (result, copy))]
    if comments[0] != comments[1]:
        found.append(f'{comments[0]} comments became {comments[1]}')
    return found


if __name__ == '__main__':
    harness.main()
