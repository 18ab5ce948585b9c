#!/usr/bin/env python3
"""Writes the demonstration model: the ten-year plan of a small bicycle maker.

    make_demo_model.py [FILE]      (default: demo-model.xlsm beside this script)

All figures are invented. The file is the same byte for byte on every run. It carries no macros: a
model author adds those in the spreadsheet program; the buttons and menu entries name them.
"""

import sys
from pathlib import Path

from demo_model.chart import Chart
from demo_model.data_sheets import accounts_sheet, costs_sheet, people_sheet, sales_sheet
from demo_model.formulas import Calculator, column_letters
from demo_model.package import WorkbookWriter, quoted
from demo_model.sheet import Sheet, Spinner
from demo_model.styles import Styles

DASHBOARD_WIDTH = 45  # characters; the charts are as wide as a column
CHART_POINTS = 234


def title_sheet():
    sheet = Sheet('Title', 'T P')
    sheet.put('E1', 'L12', 'flag')
    sheet.put('AN1', 'Sales', 'flag')
    sheet.put('B4', 'Larkfield Cycles', 'title')
    sheet.put('B5', 'Ten-year plan, amounts in euro', 'body')
    places = ('Dashboard', 'A2', 'The charts'), ('Sales', 'C5', 'What is sold'), \
        ('Production Costs', 'C5', 'What it costs to build'), \
        ('People & Premises', 'C5', 'Who builds it, and where'), \
        ("Owner's Accounts", 'C5', 'Profit, loss and balance sheet'), \
        ('Planning', 'C8', 'Projects that the spin buttons move'), \
        ('Project List', 'C5', 'Projects as approved'), ('Ratios', 'B5', 'Comparison')
    for row, (name, cell, tip) in enumerate(places, 7):
        sheet.put(f'B{row}', name, 'link')
        sheet.hyperlinks.append((f'B{row}', f'{quoted(name)}!{cell}', None, tip))
    sheet.put('B16', 'Suppliers and dealers', 'link')
    sheet.hyperlinks.append(('B16', None, 'https://larkfield.example/dealers',
                             'Opens the web site'))
    sheet.widths = [('B', 'B', 32)]
    sheet.protected = True
    return sheet


def dashboard_sheet():
    sheet = Sheet('Dashboard', 'D P M1 I17 C1 R1')
    sheet.row(1, 'B', ['Sales H(2)', 'H(3)', 'Result'], 'flag')
    sheet.row(2, 'B', ['Sales', 'Costs', 'Result'], 'heading')
    sheet.widths = [('A', 'D', DASHBOARD_WIDTH)]
    years = 'Sales!$J$3:$Y$3'
    costs, owner = "'Production Costs'", "'Owner''s Accounts'"
    products = [(f'Sales!$B${row}', f'Sales!$J${row + 4}:$Y${row + 4}') for row in (5, 15, 25, 35)]

    def lines(place, *rows):
        return [(f'{place}!$B${row}', f'{place}!$J${row}:$Y${row}') for row in rows]

    for column, row, title, kind, series in (
            (2, 4, 'Revenue by product', 'bar', products),
            (2, 18, 'Revenue against the base case', 'line', lines('Sales', 47, 48)),
            (3, 4, 'Cost of sales', 'bar', lines(costs, 46, 47, 48)),
            (3, 18, 'Gross margin', 'line', lines(costs, 52)),
            (4, 4, 'Profit', 'line', lines(owner, 19, 20)),
            (4, 18, 'Cash and loans', 'line', lines(owner, 32, 30))):
        sheet.charts.append(Chart(title, kind, column, row, 13, CHART_POINTS, years, series))
    sheet.charts.append(Chart('Saved net revenue', 'bar', 2, 32, 13, CHART_POINTS,
                              'Sales!$AC$3:$AD$3', [('Sales!$B$51', 'Sales!$AC$51:$AD$51')]))
    for row, (label, formula, style) in enumerate((
            ('Revenue, current year', 'INDEX(Revenue_total,1,15)', 'count_total'),
            ('Revenue, last year', 'INDEX(Revenue_total,1,14)', 'count_total'),
            ('Profit, current year', 'INDEX(Profit,1,15)', 'count_total'),
            ('Share of city bikes', 'Sales!O52', 'share_ratio'),
            ('Lowest cash of the plan', f'MIN({owner}!P32:Y32)', 'count_total')), 33):
        sheet.put(f'C{row}', label, 'label')
        sheet.formula(f'D{row}', formula, style)
    sheet.protected = True
    return sheet


KEY_HEADING = 'Planning key'
PROJECTS = (
    ('Marketing campaigns', 8, (
        ('Spring fair stand', 'i', {0: 4200, 1: 4200, 3: 4800, 5: 5200, 7: 5600}),
        ('City bike launch', 's', {1: 18000, 2: 6000}),
        ('Cargo bike test days', 'i2', {0: 2500, 1: 2500, 2: 2500}),
        ('Cycling club sponsorship', 'n', {year: 3000 for year in range(10)}),
        ('Anniversary year', 'f', {4: 25000}),
        ('Magazine advertisements', 'c i', {-1: 1800, 0: 1800, 2: 2400, 4: 2400}))),
    ('Workshop equipment', 18, (
        ('Wheel truing machine', 'i2', {0: 38000}),
        ('Paint booth', 's', {2: 64000, 3: 21000}),
        ('Frame jigs', 'ci2', {-1: 9000, 1: 12000, 4: 15000}),
        ('Delivery van, electric', 'i', {1: 41000, 7: 46000}),
        ('Compressed air line', 'n', {3: 17500}),
        ('Replacement tools', 'f', {year: 6000 for year in range(10)}))),
    ('Shop and systems', 28, (
        ('Web shop', 's', {0: 14000, 1: 6000, 6: 9000}),
        ('Stock system', 'i', {2: 11000}),
        ('Shop front', 'i2', {4: 32000}),
        ('Staff training', 'n', {year: 2200 for year in range(0, 10, 2)}),
        ('Security cameras', 'cn', {-1: 1500}),
        ('Accounting package', '', {0: 4800, 5: 5200}))),
)


# What the check of the planning keys finds: a key that the project list spells otherwise, and a
# project that it lists twice.
LISTED_OTHERWISE = {'Magazine_advertisements': 'Magazine_ads'}
LISTED_TWICE = 'Stock system'


def planning_key(label):
    return label.replace(',', '').replace(' ', '_')


def project_list_sheet():
    sheet = Sheet('Project List', 'L Z M2 I11 C14 R5 U5 V3')
    sheet.put('B2', 'Projects as approved, amounts in euro', 'title')
    sheet.row(3, 'B', ['Project', 'Block'], 'heading')
    sheet.put('I3', KEY_HEADING, 'heading')
    sheet.fill(3, 'J', 'Y', 'Sales!J3', 'heading')
    sheet.style('A4:I4', 'heading')
    sheet.fill(4, 'J', 'Y', 'Sales!J4', 'heading')
    projects = [(title, label, amounts) for title, _, block in PROJECTS
                for label, _, amounts in block]
    projects += [project for project in projects if project[1] == LISTED_TWICE]
    for row, (title, label, amounts) in enumerate(projects, 5):
        key = planning_key(label)
        sheet.put(f'B{row}', label, 'label')
        sheet.put(f'C{row}', title, 'body')
        sheet.put(f'I{row}', LISTED_OTHERWISE.get(key, key), 'name')
        sheet.row(row, 'O', [amounts.get(year) for year in range(-1, 10)], 'count')
    end = 5 + len(projects)
    sheet.put(f'B{end + 1}', 'All projects', 'label_total')
    sheet.fill(end + 1, 'O', 'Y', f'SUM(O5:O{end - 1})', 'count_total')
    sheet.freeze, sheet.top_left = 'C5', 'J5'
    sheet.widths = [('A', 'A', 4), ('B', 'B', 30), ('C', 'C', 22), ('I', 'I', 26), ('J', 'Y', 10)]
    return sheet


def planning_sheet():
    sheet = Sheet('Planning', 'Y Z M2 I9 C14 R8 U5 V3')
    sheet.put('AA1', 'f', 'flag')
    sheet.put('AC1', 's', 'flag')
    sheet.put('B2', 'Projects: click a spin button to move its block by a year', 'title')
    sheet.merged.append('B2:H2')
    sheet.row(3, 'B', ['Project', 'Unit', 'Moved', 'Spin'], 'heading')
    sheet.row(3, 'Z', [KEY_HEADING, 'Flags', None, 'Kept for the way back'], 'heading')
    sheet.fill(3, 'J', 'Y', 'Sales!J3', 'heading')
    sheet.fill(4, 'J', 'Y', 'Sales!J4', 'heading')
    for row, label, factor, flag in ((5, 'Inflation, general', 1.02, 'x'),
                                     (6, 'Inflation, machinery', 1.035, None)):
        sheet.put(f'B{row}', label, 'label')
        sheet.put(f'C{row}', 'factor', 'body')
        sheet.row(row, 'J', [factor] * 16, 'factor')
        sheet.put(f'AA{row}', flag, 'flag')
    totals = []
    for number, (title, top, projects) in enumerate(PROJECTS, 1):
        end = top + len(projects) + 1
        sheet.style(f'B{top}:Y{top}', 'section')
        sheet.put(f'B{top}', title, 'section')
        sheet.put(f'D{top}', 0, 'choice')
        sheet.spinners.append(Spinner(f'Spinner {number}', top, 5, f'$D${top}', 10, 'VA_Spinner'))
        for row, (label, flags, amounts) in enumerate(projects, top + 1):
            sheet.put(f'B{row}', label, 'label')
            sheet.put(f'C{row}', 'EUR', 'body')
            sheet.row(row, 'O', [amounts.get(year) for year in range(-1, 10)], 'count')
            sheet.put(f'Z{row}', planning_key(label), 'name')
            sheet.put(f'AA{row}', flags or None, 'flag')
            sheet.row(row, 'AC', [None] * 10, 'count')
            sheet.levels[row] = 1
        sheet.put(f'D{end}', 0, 'flag')
        sheet.put(f'AA{end}', 'end', 'flag')
        sheet.put(f'B{end + 1}', f'{title}, total', 'label_total')
        sheet.fill(end + 1, 'O', 'Y', f'SUM(O{top + 1}:O{end - 1})', 'count_total')
        totals.append(f'O{end + 1}')
    sheet.put('B38', 'All projects', 'label_total')
    sheet.fill(38, 'O', 'Y', '+'.join(totals), 'count_total')
    sheet.put('B40', 'Project money still to spend', 'label_total')
    sheet.formula('P40', 'SUM(P38:Y38)', 'count_total')
    sheet.validations.append(
        '<dataValidation type="decimal" operator="greaterThanOrEqual" allowBlank="1" '
        'showErrorMessage="1" errorTitle="Project amounts" error="Enter an amount of 0 or more." '
        'sqref="O9:Y14 O19:Y24 O29:Y34"><formula1>0</formula1></dataValidation>')
    sheet.notes['D8'] = 'Counts the years by which the block has been moved.'
    sheet.freeze, sheet.top_left = 'C5', 'J8'
    sheet.widths = [('A', 'A', 4), ('B', 'B', 30), ('J', 'Y', 10), ('Z', 'Z', 26)]
    return sheet


RATIOS = (
    ('Gross margin', "IF(Sales!J51=0,0,'Production Costs'!J51/Sales!J51)", 'share_ratio',
     (0.31, 0.36)),
    ('Profit margin', "'Owner''s Accounts'!J21", 'share_ratio', (0.042, 0.061)),
    ('Equity ratio', "'Owner''s Accounts'!J35", 'share_ratio', (0.44, 0.52)),
    ('Revenue per head', "IF('People & Premises'!J53=0,0,"
     "ROUND(Sales!J51/'People & Premises'!J53,0))",
     'price_ratio', (148000, 171000)),
    ('Bikes per workshop head', "IF('People & Premises'!J6=0,0,Sales!J46/'People & Premises'!J6)",
     'price_ratio', (205, 240)),
    ('Rent in revenue', "IF(Sales!J51=0,0,('People & Premises'!J32+'People & Premises'!J33)"
     '/Sales!J51)', 'share_ratio', (0.031, 0.024)),
)
PEERS = 'Median of the trade', 'Dealers nearby'


def ratios_sheet():
    sheet = Sheet('Ratios', 'G M3 I5 C10 R5 U5 V3')
    sheet.put('B2', 'Ratios and comparison data', 'title')
    sheet.row(3, 'A', ['Key', 'Ratio', None, None, 'Code', None, None, None, 'Ratio key'],
              'heading')
    sheet.fill(3, 'J', 'Y', 'Sales!J3', 'heading')
    for key, (label, formula, style, _) in enumerate(RATIOS, 1):
        row = 2 + 3 * key
        sheet.put(f'A{row}', key, 'body')
        sheet.put(f'B{row}', label, 'label_total')
        sheet.fill(row, 'J', 'Y', formula, style)
        for step, peer in enumerate(PEERS, 1):
            sheet.put(f'B{row + step}', peer, 'label')
            sheet.levels[row + step] = 1
    sheet.put('E5', 1, 'flag')
    end = 2 + 3 * len(RATIOS) + 4
    sheet.put(f'E{end}', 99, 'flag')
    row = end + 2
    for block, peer in enumerate(PEERS, 1):
        sheet.put(f'B{row}', f'Comparison data: {peer}', 'section')
        sheet.put(f'E{row}', 100 * block, 'flag')
        for key, (label, _, _, levels) in enumerate(RATIOS, 1):
            row += 1
            sheet.put(f'B{row}', label, 'label')
            sheet.put(f'I{row}', key, 'body')
            level = levels[block - 1]
            # Comparison figures are published every other year; a gap repeats the year before.
            values = [None if year % 2 else round(level * (1 + 0.01 * year), 3)
                      for year in range(6)]
            sheet.row(row, 'J', values, 'factor')
        row += 1
        sheet.put(f'E{row}', 100 * block + 91, 'flag')
        row += 2
    sheet.freeze, sheet.top_left = 'C5', 'J5'
    sheet.widths = [('A', 'A', 5), ('B', 'B', 32), ('J', 'Y', 11)]
    return sheet


MENU = (  # item, sub-item, macro, button face
    ('Year end', None, None, None),
    (None, 'Save current year', 'VA_SaveCurrentYear', 3),
    (None, 'Save last year', 'VA_SaveLastYear', None),
    (None, 'Save a history year', 'VA_SaveHistoryYear', None),
    (None, 'Shift history', 'VA_ShiftHistory', 39),
    (None, 'Copy current year to last year', 'VA_CopyCurrentYear', 19),
    ('Base case', None, None, None),
    (None, 'Freeze current results', 'VA_FreezeCurrentResults', 548),
    (None, 'Set spinners to base', 'VA_SetSpinnersToBase', None),
    ('Load comparison data', None, 'VA_RatiosCompDataSet', 17),
    ('Tools', None, None, None),
    (None, 'Development mode', 'VA_DevelopmentMode', None),
    (None, 'Check planning keys', 'VA_CheckPlanningKeys', None),
    (None, 'Name the selected rows', 'VA_NameDefinition', None),
    (None, 'Delete names in error', 'VA_NameCleanup', 67),
    (None, 'Clear all data', 'VA_ClearAllData', 1786),
)
MONTHS = ('January', 'February', 'March', 'April', 'May', 'June', 'July', 'August', 'September',
          'October', 'November', 'December')
REMARKS = 'checked', 'estimate', 'ask the accountant', 'to be replaced'


def reference_sheet(planning, names, dashboard):
    sheet = Sheet('Reference', 'X14')
    lists = {'B': ('n', 'Names'), 'E': ('k', 'Planning keys'), 'F': ('c', 'Column'),
             'G': ('s', 'Sheet'), 'I': ('e', 'Key discrepancies'), 'K': ('m', 'Menu'),
             'R': ('g', 'Charts'), 'Y': ('h', 'Configurations')}
    for column, (flag, heading) in lists.items():
        sheet.put(f'{column}1', flag, 'flag')
        sheet.put(f'{column}12', heading, 'heading')
    sheet.put('C6', 'Vantora DLL version being used: Not Available', 'body')
    for row, (name, reference) in enumerate(sorted(names.items(), key=lambda item: item[0].lower()),
                                            14):
        sheet.put(f'B{row}', name, 'body')
        sheet.put(f'C{row}', f'={reference}', 'body')
    # The keys as the last check found them; the project list was changed since.
    keys = sorted((cell.value for (_, column), cell in planning.cells.items()
                   if column == 26 and cell.value and cell.value != KEY_HEADING), key=str.lower)
    row = 14
    for key in keys:
        for place, column in (('Planning', 26), ('Project List', 9)):
            sheet.put(f'E{row}', key, 'body')
            sheet.put(f'F{row}', column, 'left')
            sheet.put(f'G{row}', place, 'body')
            row += 1
    sheet.put(f'A{row + 20}', 'End of the lists', 'flag')  # a list ends at an empty row in use
    for row, (item, sub_item, macro, face) in enumerate(MENU, 14):
        for column, value in zip('KLNP', (item, sub_item, macro, face)):
            if value is not None:
                sheet.put(f'{column}{row}', value, 'body')
    charts = sorted((chart.column, 15 * (chart.row - 2), chart.title)
                    for chart in dashboard.charts)  # row 1 is hidden, so row 2 stands at the top
    for row, entry in enumerate(charts, 14):
        sheet.row(row, 'R', entry, 'body')
    # The row that ends this list needs a number as well.
    configurations = (1, 'Board'), (2, 'Bank'), (3, 'Workshop'), (0, None)
    for row, (number, name) in enumerate(configurations, 14):
        sheet.row(row, 'Y', [number, name], 'body')
    sheet.put('AB12', 'Months', 'heading')
    sheet.put('AC12', 'Remarks', 'heading')
    for row, month in enumerate(MONTHS, 14):
        sheet.put(f'AB{row}', month, 'body')
    for row, remark in enumerate(REMARKS, 14):
        sheet.put(f'AC{row}', remark, 'body')
    sheet.widths = [('B', 'B', 24), ('C', 'C', 40), ('E', 'E', 28), ('G', 'G', 22), ('I', 'I', 34),
                    ('N', 'N', 24), ('T', 'T', 30), ('Z', 'Z', 18)]
    return sheet


def row_names(sheets):
    """Defined names for whole rows: those whose planning key is named here."""
    wanted = {'Revenue_total', 'Net_revenue_total', 'City_bikes_revenue', 'Cost_of_sales',
              'Gross_profit', 'Overheads', 'Profit', 'Cash'}
    names = {}
    for sheet in sheets:
        for (row, column), cell in sheet.cells.items():
            if column == 9 and cell.value in wanted:
                names[cell.value] = f'{quoted(sheet.name)}!$A${row}:$AB${row}'
    assert set(names) == wanted
    return names


def freeze_base_case(sheets, calculator):
    """Fills the base rows as an earlier freeze left them: somewhat below today's results."""
    for sheet in sheets:
        for row, style, digits in sheet.base_rows:
            for column in range(6, 26):
                live = calculator.value(sheet.name, row - 1, column)
                if column >= 10 and isinstance(live, float):
                    live = round(live * (0.96 + 0.005 * (column % 4)), digits)
                if isinstance(live, str) and live:  # the row's name is frozen with it
                    sheet.put(f'{column_letters(column)}{row}', live,
                              sheet.cells[row - 1, column].style)
                if isinstance(live, float):
                    sheet.put(f'{column_letters(column)}{row}', live,
                              style if column >= 10 else sheet.cells[row, column].style)


def build():
    data = [sales_sheet(MONTHS, REMARKS), costs_sheet(), people_sheet(), accounts_sheet()]
    dashboard = dashboard_sheet()
    names = {'marker': 'Sales!$AD$1', 'planning_fiscal_year': 'Sales!$J$3:$N$3',
             'tax_rate': "'Owner''s Accounts'!$F$51", 'sales_remarks': 'Sales!$AF$6:$AF$58'}
    names.update(row_names(data))
    # Left over from a sheet that was deleted; the names list shows it as an error.
    names['old_price_list'] = '#REF!$B$5:$C$40'
    planning = planning_sheet()
    reference = reference_sheet(planning, names, dashboard)
    sheets = [title_sheet(), dashboard, *data, planning, project_list_sheet(), ratios_sheet(),
              reference]
    by_name = {sheet.name: sheet for sheet in sheets}
    lower = {name.lower(): text for name, text in names.items()}

    def read(sheet, row, column):
        return by_name[sheet].read(row, column)

    freeze_base_case(data, Calculator(read, lower))
    return WorkbookWriter(sheets, names, Styles(), Calculator(read, lower))


def main():
    target = Path(sys.argv[1]) if len(sys.argv) > 1 else \
        Path(__file__).resolve().parent / 'demo-model.xlsm'
    build().save(target)
    print(f'wrote {target}')


if __name__ == '__main__':
    main()
