"""A workbook that is opened and saved without a change comes back the same, part by part."""

import harness
from harness import DEMO, MODELS, CommandTestCase, run_command
from workbook import read_parts


class RoundTrip(CommandTestCase):
    def check(self, workbook):
        with self.subTest(workbook=workbook.name):
            output = self.folder / workbook.name
            run_command(workbook, 'clsGlobals.Version', output=output)
            before, after = read_parts(workbook), read_parts(output)
            self.assertEqual(sorted(before), sorted(after), 'other parts')
            self.assert_none([name for name in before if before[name] != after[name]],
                             'parts that changed')

    def test_demo_model(self):
        self.check(DEMO)

    def test_models_beside_the_checkout(self):
        workbooks = sorted(MODELS.rglob('*.xls[xm]'))
        if not workbooks:
            self.skipTest('there are no models beside the checkout')
        for workbook in workbooks:
            self.check(workbook)


if __name__ == '__main__':
    harness.main()
