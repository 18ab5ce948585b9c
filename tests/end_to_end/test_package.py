"""Parts that an operation does not concern stay as they were; what it writes is in good order."""

import re
from xml.etree import ElementTree

import harness
from harness import DEMO, OPERATIONS, CommandTestCase, planning_models, run_command
from workbook import MAIN, Workbook

# The children of a worksheet in the order in which the file format wants them.
WORKSHEET_ORDER = (
    'sheetPr', 'dimension', 'sheetViews', 'sheetFormatPr', 'cols', 'sheetData', 'sheetCalcPr',
    'sheetProtection', 'protectedRanges', 'scenarios', 'autoFilter', 'sortState',
    'dataConsolidate', 'customSheetViews', 'mergeCells', 'phoneticPr', 'conditionalFormatting',
    'dataValidations', 'hyperlinks', 'printOptions', 'pageMargins', 'pageSetup', 'headerFooter',
    'rowBreaks', 'colBreaks', 'customProperties', 'cellWatches', 'ignoredErrors', 'smartTags',
    'drawing', 'legacyDrawing', 'legacyDrawingHF', 'drawingHF', 'picture', 'oleObjects', 'controls',
    'webPublishItems', 'tableParts', 'extLst')
# The children of other elements that operations write, likewise.
ORDERS = {
    'worksheet': WORKSHEET_ORDER,
    'sheetView': ('pane', 'selection', 'pivotSelection', 'extLst'),
    'workbook': (
        'fileVersion', 'fileSharing', 'workbookPr', 'workbookProtection', 'bookViews', 'sheets',
        'functionGroups', 'externalReferences', 'definedNames', 'calcPr', 'oleSize',
        'customWorkbookViews', 'pivotCaches', 'smartTagPr', 'smartTagTypes', 'webPublishing',
        'fileRecoveryPr', 'webPublishObjects', 'extLst'),
    'styleSheet': (
        'numFmts', 'fonts', 'fills', 'borders', 'cellStyleXfs', 'cellXfs', 'cellStyles', 'dxfs',
        'tableStyles', 'colors', 'extLst'),
}

# What may change in the demonstration model, as patterns of part names; all else must come back as
# it was. Sheets 3 to 6 are its data sheets, 2 the dashboard and 8 the ratios, which read them.
CALCULATED = r'worksheets/sheet[2-69]\.xml|charts/chart[1-6]\.xml'
CHAIN = r'calcChain\.xml|_rels/workbook\.xml\.rels'
CONCERNED = {
    'save': r'worksheets/sheet[3-6]\.xml|sharedStrings\.xml|workbook\.xml|charts/chart7\.xml|'
            r'comments[1-4]\.xml|drawings/vmlDrawing[1-4]\.vml|drawings/drawing2\.xml|'
            r'ctrlProps/ctrlProp1\.xml|' + CHAIN,
    'ShiftHistory': r'comments1\.xml|drawings/vmlDrawing1\.vml|' + CALCULATED + '|' + CHAIN,
    'CopyCurrentYear': CALCULATED,
}


class PackageChecks:
    """What holds for every package that is written, for test cases."""

    def check_xml(self, workbook):
        """Every XML part is well formed, and worksheets keep the order of the file format."""
        for name, content in workbook.parts.items():
            if not name.endswith(('.xml', '.rels', '.vml')):
                continue
            root = ElementTree.fromstring(content)
            for element in root.iter():
                if (wanted := ORDERS.get(element.tag.replace(MAIN, ''))):
                    order = [wanted.index(tag) for tag in map(_child_name, element) if tag]
                    self.assertEqual(order, sorted(order), f'{name}: elements in another order')
            if root.tag == MAIN + 'worksheet':
                self._check_columns(name, root)
                self._check_views(name, root)
                self._check_cells(name, root)

    def _check_columns(self, name, root):
        """Runs of columns come in ascending order and do not overlap."""
        last = 0
        for run in root.iter(MAIN + 'col'):
            self.assertGreater(int(run.get('min')), last, f'{name}: columns in another order')
            self.assertGreaterEqual(int(run.get('max')), int(run.get('min')), name)
            last = int(run.get('max'))

    def _check_views(self, name, root):
        """Each window is described once; a pane that is selected in or active is there."""
        views = list(root.iter(MAIN + 'sheetView'))
        numbers = [view.get('workbookViewId') for view in views]
        self.assertEqual(len(numbers), len(set(numbers)), f'{name}: a window stands there twice')
        for view in views:
            pane = view.find(MAIN + 'pane')
            split = [pane is not None and float(pane.get(key, 0)) > 0
                     for key in ('xSplit', 'ySplit')]
            panes = {'topLeft'} | {pane_name for pane_name, needed in (
                ('topRight', split[0]), ('bottomLeft', split[1]), ('bottomRight', all(split)))
                if needed}
            used = [item.get('pane', 'topLeft') for item in view.findall(MAIN + 'selection')]
            self.assertEqual(len(used), len(set(used)), f'{name}: a pane has two selections')
            active = {pane.get('activePane', 'topLeft')} if pane is not None else set()
            self.assertLessEqual(set(used) | active, panes, f'{name}: a pane that is not there')

    def _check_cells(self, name, root):
        """Rows and cells come in ascending order, none twice."""
        last_row = 0
        for row in root.find(MAIN + 'sheetData'):
            number = int(row.get('r'))
            self.assertGreater(number, last_row, f'{name}: rows in another order')
            last_row, last_column = number, ''
            for cell in row:
                column, cell_row = re.fullmatch(r'([A-Z]+)(\d+)', cell.get('r')).groups()
                self.assertEqual(int(cell_row), number, f'{name}: {cell.get("r")} in row {number}')
                self.assertGreater((len(column), column), (len(last_column), last_column),
                                   f'{name}: cells of row {number} in another order')
                last_column = column

    def check_connections(self, workbook):
        """Every relation leads to a part, and every part has a content type."""
        types = ElementTree.fromstring(workbook.parts['[Content_Types].xml'])
        overrides = {item.get('PartName')[1:] for item in types if item.tag.endswith('Override')}
        defaults = {item.get('Extension').lower() for item in types
                    if item.tag.endswith('Default')}
        self.assert_none([name for name in overrides if name not in workbook.parts],
                         'content types of parts that are not there')
        for name in workbook.parts:
            if name == '[Content_Types].xml':
                continue
            self.assertTrue(name in overrides or name.rsplit('.', 1)[-1].lower() in defaults,
                            f'{name} has no content type')
            for kind, target in workbook.relations(name).values():
                self.assertTrue(kind == 'hyperlink' or target in workbook.parts,
                                f'{name} is related to {target}, which is not there')
        windows = {str(number) for number, _ in enumerate(workbook.root.iter(MAIN + 'workbookView'))}
        for name, sheet in workbook.sheets.items():
            views = {view.get('workbookViewId') for view in sheet.root.iter(MAIN + 'sheetView')}
            self.assertLessEqual(views, windows, f'{name}: a view of a window that is not there')
        self._check_chain(workbook)

    def _check_chain(self, workbook):
        """The calculation chain, where there is one, lists cells that hold formulas."""
        if 'xl/calcChain.xml' not in workbook.parts:
            return
        by_id = {item.get('sheetId'): item.get('name')
                 for item in workbook.root.iter(MAIN + 'sheet')}
        sheet, strays = None, []
        for entry in workbook.xml('xl/calcChain.xml'):
            sheet = by_id[entry.get('i')] if entry.get('i') else sheet
            if workbook.sheets[sheet].formula(entry.get('r')) is None:
                strays.append(f'{sheet}!{entry.get("r")}')
        self.assert_none(strays, 'cells of the calculation chain without a formula')


class PackageOrder(PackageChecks, CommandTestCase):
    def check(self, model, concerned=None):
        before = Workbook(model)
        for operation in OPERATIONS:
            with self.subTest(model=model.name, operation=operation):
                after = self.year_end(model, operation)
                if concerned:
                    self.assert_none(strays(before, after, concerned(operation)),
                                     'parts that changed without need')
                self.assert_none([name for name in before.parts if name not in after.parts
                                  and name != 'xl/calcChain.xml'], 'parts that are gone')
                self.check_xml(after)
                self.check_connections(after)

    def test_demo_model(self):
        self.check(DEMO, lambda operation: CONCERNED['save' if operation.startswith('Save')
                                                     else operation])

    def test_one_cell_written(self):
        output = self.folder / 'written.xlsm'
        run_command(DEMO, 'clsRefSheet.PutDLLVersion', 'version 9', output=output)
        after = Workbook(output)
        self.assertEqual(after.sheets['Reference'].value('C6'), 'version 9')
        self.assert_none(strays(Workbook(DEMO), after,
                                r'worksheets/sheet10\.xml|sharedStrings\.xml'),
                         'parts that changed without need')

    def test_planning_models(self):
        if not planning_models():
            self.skipTest('there are no planning models beside the checkout')
        for model in planning_models():
            self.check(model)


def strays(before, after, concerned):
    """The parts that differ although no pattern names them."""
    pattern = re.compile(rf'xl/(?:{concerned})|\[Content_Types\]\.xml')
    return [name for name in before.parts.keys() | after.parts.keys()
            if before.parts.get(name) != after.parts.get(name) and not pattern.fullmatch(name)]


def _child_name(element):
    """The name of a child; alternative content counts as what it holds, foreign elements as none."""
    if element.tag.endswith('}AlternateContent'):
        element = next((item for choice in element for item in choice), element)
    return element.tag.replace(MAIN, '') if element.tag.startswith(MAIN) else None


if __name__ == '__main__':
    harness.main()
