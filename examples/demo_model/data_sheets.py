"""The four data sheets of the demonstration model.

Columns: B label, C unit, D department, E start month, F target, G yearly growth or rate, H reviewed
by, I row name, J to N history, O current year, P to Y planning, AB base flags, and from AD on
the saved years. Blue figures without a fill are entered by hand; every formula has a fill.
"""

from demo_model.sheet import Sheet, Spinner

HISTORY_WAVE = (0.0, 0.012, -0.018, 0.021, -0.009, 0.004, 0.016, -0.013)
PRODUCTS = (  # name, units and price five years ago, their yearly growth, share of guarantee costs
    ('City bikes', 1450, 620, 0.025, 0.02, 0.018),
    ('Touring bikes', 820, 1180, 0.02, 0.022, 0.022),
    ('Cargo bikes', 260, 2950, 0.06, 0.02, 0.03),
    ("Children's bikes", 1900, 240, 0.01, 0.015, 0.012),
)


def history(first, growth, digits, phase=0):
    """Six yearly figures, oldest first, around a steady growth."""
    return [round(first * (1 + growth) ** year *
                  (1 + HISTORY_WAVE[(year + phase) % len(HISTORY_WAVE)]), digits or None)
            for year in range(6)]


def stem(name):
    return name.replace("'", '').replace(' ', '_')


class DataSheet(Sheet):
    """A sheet of the yearly layout, with one method for each kind of row."""

    def __init__(self, name, flags, title, marker):
        super().__init__(name, flags)
        self.base_rows = []  # (row, style, digits), filled once everything is calculated
        self.department = ''
        if marker:
            self.put(f'{marker}1', 'k', 'flag')
        self.put('B2', title, 'title')
        self.merged.append('B2:H2')
        self.row(3, 'A', [None, 'Row', 'Unit', 'Department', 'Starts', 'Target', 'Growth',
                          'Reviewed', 'Row name'], 'heading')
        self.style('A4:I4', 'heading')
        if name == 'Sales':
            self.fill(3, 'J', 'Y', '"FY "&J4', 'heading')
            self.fill(4, 'J', 'N', 'K4-1', 'heading')
            self.put('O4', 2026, 'heading')
            self.fill(4, 'P', 'Y', 'O4+1', 'heading')
        else:
            self.fill(3, 'J', 'Y', 'Sales!J3', 'heading')
            self.fill(4, 'J', 'Y', 'Sales!J4', 'heading')
        self.put('AB3', 'Frozen', 'heading')
        self.widths = [('A', 'A', 4), ('B', 'B', 34), ('C', 'C', 8), ('D', 'D', 12), ('E', 'H', 10),
                       ('I', 'I', 28), ('J', 'Y', 11), ('AB', 'AC', 6)]
        self.freeze, self.top_left = 'C5', 'J5'
        self.print_titles = '$B:$B,{0}!$3:$4'.format("'" + name.replace("'", "''") + "'"
                                                     if ' ' in name else name)

    def section(self, row, title, department):
        self.style(f'A{row}:AB{row}', 'section')
        self.put(f'B{row}', title, 'section')
        self.department = department

    def label(self, row, label, unit, key, total=False):
        self.put(f'B{row}', label, 'label_total' if total else 'label')
        self.put(f'C{row}', unit, 'body')
        self.put(f'D{row}', self.department, 'body')
        if key:
            self.put(f'I{row}', key, 'name')
        self.levels[row] = 1

    def entered(self, row, label, unit, key, values, planning, style, growth=None, target=None):
        """History and current year entered by hand, the planning years calculated."""
        self.label(row, label, unit, key)
        self.put(f'E{row}', 'January', 'choice')
        self.put(f'F{row}', target, style)
        self.put(f'G{row}', growth, 'share')
        self.put(f'H{row}', None, 'choice')
        self.row(row, 'J', values, style)
        self.fill(row, 'P', 'Y', planning, f'{style}_formula')

    def calculated(self, row, label, unit, key, formula, style='count_formula', growth=None):
        """One formula for all sixteen years."""
        self.label(row, label, unit, key, total=style == 'count_total')
        if growth is not None:
            self.put(f'G{row}', growth, 'share')
        self.fill(row, 'J', 'Y', formula, style)

    def growth(self, row, label, source, key=None):
        """The change since the year before; the oldest year has none."""
        self.label(row, label, '%', key)
        self.style(f'J{row}:J{row}', 'share_ratio')
        self.fill(row, 'K', 'Y', f'IF(J{source}=0,0,K{source}/J{source}-1)', 'share_ratio')

    def base(self, row, label, flag='B', style='count_base', digits=0):
        """The base case of the row above."""
        self.label(row, label, self.cells[row - 1, 3].value, None)
        self.style(f'F{row}:Y{row}', style)
        self.put(f'AB{row}', flag, 'flag')
        self.base_rows.append((row, style, digits))
        self.levels[row] = 2

    def finish(self, validations=()):
        """Conditional formats, validations and the print area that all data sheets have."""
        self.conditional += [
            ('J5:Y60', '<cfRule type="cellIs" dxfId="0" priority="2" operator="lessThan">'
             '<formula>0</formula></cfRule>'),
            ('G5:G60', '<cfRule type="dataBar" priority="3"><dataBar><cfvo type="min"/>'
             '<cfvo type="max"/><color theme="6"/></dataBar></cfRule>'),
            ('P5:P60', '<cfRule type="expression" dxfId="1" priority="4">'
             '<formula>AND(ISNUMBER($F5),$F5&gt;0,P5&gt;$F5)</formula></cfRule>')]
        self.validations += [
            '<dataValidation type="list" allowBlank="1" showErrorMessage="1" sqref="E5:E60">'
            '<formula1>Reference!$AB$14:$AB$25</formula1></dataValidation>',
            '<dataValidation type="decimal" allowBlank="1" showErrorMessage="1" '
            'errorTitle="Current year" error="Enter a number." sqref="O5:O60">'
            '<formula1>-1000000000</formula1><formula2>1000000000</formula2></dataValidation>',
            *validations]
        self.print_area = self.print_area or '$A$1:$Y$60'
        return self


def sales_sheet(months, remarks):
    sheet = DataSheet('Sales', 'S F Z M1 I23 C10 R5 U5 V3', 'Sales by product', 'AD')
    for number, (name, units, price, more, dearer, guarantee) in enumerate(PRODUCTS):
        top, key = 5 + 10 * number, stem(name)
        sheet.section(top, name, 'Sales')
        sheet.entered(top + 1, 'Units sold', 'bikes', f'{key}_units',
                      history(units, more, 0, number), f'ROUND(O{top + 1}*(1+$G{top + 1}),0)',
                      'count', more, round(units * 1.4, -1))
        sheet.put(f'E{top + 1}', months[number * 2], 'choice')
        sheet.entered(top + 2, 'Average price', 'EUR', f'{key}_price',
                      history(price, dearer, 2, number + 3),
                      f'ROUND(O{top + 2}*(1+$G{top + 2}),2)', 'price', dearer)
        sheet.base(top + 3, 'Average price, base case', 'BS', 'price_base', 2)
        sheet.calculated(top + 4, 'Revenue', 'EUR', f'{key}_revenue',
                         f'ROUND(J{top + 1}*J{top + 2},0)')
        sheet.base(top + 5, 'Revenue, base case')
        sheet.growth(top + 6, 'Growth', top + 4)
        rebates = [round(value, 0) for value in history(units * price * guarantee, more, 0, number)]
        sheet.entered(top + 7, 'Discounts and guarantee', 'EUR', f'{key}_discounts',
                      [int(value) for value in rebates], f'ROUND(P{top + 4}*$G{top + 7},0)',
                      'count', guarantee)
        sheet.calculated(top + 8, 'Net revenue', 'EUR', f'{key}_net_revenue',
                         f'J{top + 4}-J{top + 7}', 'count_total')

    def over_products(offset):
        return '+'.join(f'J{5 + 10 * number + offset}' for number in range(len(PRODUCTS)))

    sheet.section(45, 'All products', 'Sales')
    sheet.calculated(46, 'Units sold', 'bikes', 'Units_total', 'SUM(J6,J16,J26,J36)')
    sheet.calculated(47, 'Revenue', 'EUR', 'Revenue_total', over_products(4), 'count_total')
    sheet.base(48, 'Revenue, base case')
    sheet.growth(49, 'Growth', 47)
    sheet.calculated(50, 'Discounts and guarantee', 'EUR', 'Discounts_total', over_products(7))
    sheet.calculated(51, 'Net revenue', 'EUR', 'Net_revenue_total', 'J47-J50', 'count_total')
    for number, (name, *_) in enumerate(PRODUCTS):
        sheet.calculated(52 + number, f'Share of {name.lower()}', '%', None,
                         f'IF(J$47=0,0,J{9 + 10 * number}/J$47)', 'share_ratio')
    sheet.calculated(56, 'Average price of a bike', 'EUR', None, 'IF(J46=0,0,ROUND(J47/J46,2))',
                     'price_ratio')
    sheet.entered(57, 'Orders in hand at year end', 'bikes', 'Orders_in_hand',
                  history(310, 0.04, 0, 5), 'ROUND(AVERAGE(N57:O57)*(1+$G57),0)', 'count', 0.03)
    sheet.calculated(58, 'Months of work in hand', 'months', None,
                     'IF(J46=0,0,ROUND(J57/J46*12,1))', 'price_ratio')
    sheet.calculated(60, 'Shares add up', '', None,
                     'IF(ABS(SUM(J52:J55)-1)<0.0001,"yes","no")', 'text_formula')
    _right_of_marker(sheet, remarks)
    sheet.notes.update({
        'J6': 'History comes from the order books.',
        'B9': 'Units times average price.',
        'O17': 'The price list of March holds from here on.',
        'AF3': 'Anything the next reviewer should know.'})
    sheet.print_area = '$A$1:$AF$60'
    return sheet.finish([
        '<dataValidation type="list" allowBlank="1" showErrorMessage="1" sqref="AF6:AF58">'
        f'<formula1>Reference!$AC$14:$AC${13 + len(remarks)}</formula1></dataValidation>',
        '<dataValidation type="custom" allowBlank="1" showErrorMessage="1" sqref="AG6:AG58">'
        '<formula1>AND(ISNUMBER(AG6),AF6&lt;&gt;"")</formula1></dataValidation>'])


def _right_of_marker(sheet, remarks):
    """What stands right of the saved years and moves on with every save."""
    sheet.row(3, 'AF', ['Remarks', 'Remark no.'], 'heading')
    sheet.put('AF2', 'For the reviewers', 'title')
    sheet.merged.append('AF2:AG2')
    for number, row in enumerate((6, 17, 26, 57)):
        sheet.put(f'AF{row}', remarks[number % len(remarks)], 'remark')
        sheet.put(f'AG{row}', number + 1, 'count')
    sheet.formula('AG59', 'COUNT(AG6:AG58)', 'count_formula')
    sheet.put('AF59', 'Number of remarks', 'label')
    sheet.put('AF60', 'How we review', 'link')
    sheet.hyperlinks.append(('AF60', "'Owner''s Accounts'!B50", None, 'Assumptions'))
    sheet.put('AG4', 0, 'choice')
    sheet.spinners.append(Spinner('Reviews', 3, 34, '$AG$4', 4, None))
    sheet.conditional.append(
        ('AC6:AD58', '<cfRule type="expression" dxfId="2" priority="1"><formula>'
         'AND(ISNUMBER(AC6),AC6&lt;$O6)</formula></cfRule>'))
    sheet.widths += [('AD', 'AD', 11), ('AF', 'AF', 30), ('AG', 'AG', 10)]


def costs_sheet():
    sheet = DataSheet('Production Costs', 'S F Z M1 C10 R5 U5 V3', 'What it costs to build', 'AD')
    materials, hours = (305, 590, 1500, 121), (5.5, 8.8, 19.0, 2.7)
    freights = (0.02, 0.02, 0.03, 0.02)
    for number, (name, *_) in enumerate(PRODUCTS):
        top, key = 5 + 10 * number, stem(name)
        sheet.section(top, name, 'Workshop')
        sheet.entered(top + 1, 'Material a bike', 'EUR', f'{key}_material',
                      history(materials[number], 0.03, 2, number + 1),
                      f'ROUND(O{top + 1}*(1+$G{top + 1}),2)', 'price', 0.022)
        sheet.base(top + 2, 'Material a bike, base case', 'BS', 'price_base', 2)
        sheet.entered(top + 3, 'Labour a bike', 'hours', f'{key}_hours',
                      history(hours[number], -0.01, 2, number + 2),
                      f'ROUND(O{top + 3}*(1+$G{top + 3}),2)', 'price', -0.008)
        sheet.calculated(top + 4, 'Material', 'EUR', None,
                         f'ROUND(Sales!J{top + 1}*J{top + 1},0)')
        sheet.calculated(top + 5, 'Labour', 'EUR', None,
                         f"ROUND(Sales!J{top + 1}*J{top + 3}*'People & Premises'!J$13,0)")
        sheet.entered(top + 6, 'Freight and packaging', 'EUR', f'{key}_freight',
                      history(11000 + 4000 * number, 0.03, 0, number),
                      f'ROUND(Sales!P{top + 4}*$G{top + 6},0)', 'count', freights[number])
        sheet.calculated(top + 7, 'Cost of sales', 'EUR', f'{key}_cost',
                         f'SUM(J{top + 4}:J{top + 6})', 'count_total')
        sheet.base(top + 8, 'Cost of sales, base case')
        sheet.calculated(top + 9, 'Gross margin', '%', None,
                         f'IF(Sales!J{top + 8}=0,0,(Sales!J{top + 8}-J{top + 7})/Sales!J{top + 8})',
                         'share_ratio')
    sheet.section(45, 'All products', 'Workshop')
    for row, label, offset in ((46, 'Material', 4), (47, 'Labour', 5), (48, 'Freight', 6)):
        sheet.calculated(row, label, 'EUR', f'{label}_total',
                         '+'.join(f'J{5 + 10 * number + offset}' for number in range(4)))
    sheet.calculated(49, 'Cost of sales', 'EUR', 'Cost_of_sales', 'SUM(J46:J48)', 'count_total')
    sheet.base(50, 'Cost of sales, base case')
    sheet.calculated(51, 'Gross profit', 'EUR', 'Gross_profit', 'Sales!J51-J49', 'count_total')
    sheet.calculated(52, 'Gross margin', '%', None, 'IF(Sales!J51=0,0,J51/Sales!J51)',
                     'share_ratio')
    sheet.growth(53, 'Growth of cost', 49)
    sheet.entered(54, 'Equipment bought', 'EUR', 'Equipment_bought', history(36000, 0.06, 0, 4),
                  'Planning!P26', 'count')
    sheet.entered(55, 'Depreciation', 'EUR', 'Depreciation', history(31000, 0.03, 0, 6),
                  'ROUND(SUM(L54:P54)/5,0)', 'count')
    sheet.entered(56, 'Bikes the workshop can build', 'bikes', 'Capacity',
                  history(5600, 0.02, 0, 7), 'ROUND(O56*(1+$G56),0)', 'count', 0.03)
    sheet.calculated(57, 'Use of the workshop', '%', None, 'IF(J56=0,0,Sales!J46/J56)',
                     'share_ratio')
    sheet.calculated(60, 'Workshop is large enough', '', None, 'IF(J57>1,"no","yes")',
                     'text_formula')
    sheet.notes.update({'P54': 'Comes from the Planning sheet.',
                        'B9': 'Units sold times material.'})
    return sheet.finish()


def _staff(sheet, top, title, key, heads, salary, phase):
    sheet.section(top, title, title.split()[0])
    sheet.entered(top + 1, 'Headcount', 'people', f'{key}_heads', history(heads, 0.02, 1, phase),
                  f'ROUND(O{top + 1}*(1+$G{top + 1}),1)', 'price', 0.015)


def people_sheet():
    sheet = DataSheet('People & Premises', 'S F Z M1 C10 R5 U5 V3', 'Who builds it, and where',
                      None)
    _staff(sheet, 5, 'Workshop', 'Workshop', 19.5, 31000, 0)
    sheet.entered(7, 'Hours a head', 'hours', 'Workshop_hours', history(1610, 0, 0, 1),
                  'ROUND(O7*(1+$G7),0)', 'count', 0.0)
    sheet.entered(8, 'Average salary', 'EUR', 'Workshop_salary', history(31000, 0.025, 0, 2),
                  'ROUND(O8*(1+$G8),0)', 'count', 0.025)
    sheet.base(9, 'Average salary, base case', 'BS')
    sheet.calculated(10, 'Salaries', 'EUR', 'Workshop_salaries', 'ROUND(J6*J8,0)')
    sheet.base(11, 'Salaries, base case')
    sheet.calculated(12, "Employer's contributions", 'EUR', None, 'ROUND(J10*$G12,0)', growth=0.21)
    sheet.calculated(13, 'Cost of an hour', 'EUR', None,
                     'IF(J6*J7=0,0,ROUND((J10+J12)/(J6*J7),2))', 'price_ratio')
    for top, title, key, heads, salary, phase in ((15, 'Shop and sales', 'Shop', 7, 28500, 3),
                                                  (23, 'Office', 'Office', 4.5, 34500, 5)):
        _staff(sheet, top, title, key, heads, salary, phase)
        sheet.entered(top + 2, 'Average salary', 'EUR', f'{key}_salary',
                      history(salary, 0.025, 0, phase + 1),
                      f'ROUND(O{top + 2}*(1+$G{top + 2}),0)', 'count', 0.025)
        sheet.calculated(top + 3, 'Salaries', 'EUR', f'{key}_salaries',
                         f'ROUND(J{top + 1}*J{top + 2},0)')
        sheet.calculated(top + 4, "Employer's contributions", 'EUR', None,
                         f'ROUND(J{top + 3}*$G{top + 4},0)', growth=0.21)
    sheet.entered(20, 'Commission', 'EUR', 'Commission', history(15500, 0.05, 0, 2),
                  'ROUND(Sales!P51*$G20,0)', 'count', 0.006)
    sheet.calculated(21, 'Shop and sales, total', 'EUR', 'Shop_total', 'SUM(J18:J20)',
                     'count_total')
    sheet.entered(28, 'Training and travel', 'EUR', 'Training', history(6200, 0.04, 0, 4),
                  'ROUND(O28*(1+$G28),0)', 'count', 0.02)
    sheet.calculated(29, 'Office, total', 'EUR', 'Office_total', 'SUM(J26:J28)', 'count_total')
    _costs(sheet, 31, 'Premises', (('Rent, workshop', 54000), ('Rent, shop', 38000),
                                   ('Energy', 21000), ('Insurance', 9800), ('Repairs', 7400),
                                   ('Cleaning', 6100), ('Rates', 8300)))
    _costs(sheet, 42, 'Office costs', (('Telephone and internet', 4300), ('Software', 8900),
                                       ('Accountant', 12400), ('Vehicles', 15800),
                                       ('Bank charges', 5200), ('Sundries', 3100)))
    sheet.section(52, 'All', 'Office')
    sheet.calculated(53, 'Headcount', 'people', 'Heads_total', 'J6+J16+J24', 'price_formula')
    sheet.calculated(54, 'Staff outside the workshop', 'EUR', 'Staff', 'J21+J29')
    sheet.calculated(55, 'Overheads', 'EUR', 'Overheads', 'J54+J39+J49', 'count_total')
    sheet.base(56, 'Overheads, base case')
    sheet.growth(57, 'Growth of overheads', 55)
    sheet.calculated(58, 'Overheads a head', 'EUR', None, 'IF(J53=0,0,ROUND(J55/J53,0))',
                     'price_ratio')
    sheet.calculated(60, 'Overheads rise faster than sales', '', None,
                     'IF(J4=$J4,"",IF(J57>Sales!J49,"yes","no"))', 'text_formula')
    sheet.notes['G12'] = 'Rate of the social insurances, all branches together.'
    return sheet.finish()


def _costs(sheet, top, title, rows):
    sheet.section(top, title, 'Office')
    for number, (label, amount) in enumerate(rows):
        row = top + 1 + number
        sheet.entered(row, label, 'EUR', label.replace(',', '').replace(' ', '_'),
                      history(amount, 0.022, 0, number), f'ROUND(O{row}*(1+$G{row}),0)', 'count',
                      0.02)
    last = top + len(rows)
    sheet.calculated(last + 1, f'{title}, total', 'EUR', f'{stem(title)}_total',
                     f'SUM(J{top + 1}:J{last})', 'count_total')
    sheet.base(last + 2, f'{title}, base case')


def accounts_sheet():
    sheet = DataSheet("Owner's Accounts", 'S F Z M1 C10 R5 U5 V3',
                      'Profit, loss and balance sheet', 'AE')
    sheet.put('AC1', 'k', 'flag')  # an older mark; the one further right counts
    sheet.put('AC3', 'Old saves', 'heading')
    sheet.section(5, 'Profit and loss', 'Office')
    people = "'People & Premises'!"
    sheet.calculated(6, 'Net revenue', 'EUR', None, 'Sales!J51')
    sheet.calculated(7, 'Cost of sales', 'EUR', None, "'Production Costs'!J49")
    sheet.calculated(8, 'Gross profit', 'EUR', None, 'J6-J7', 'count_total')
    sheet.base(9, 'Gross profit, base case')
    sheet.calculated(10, 'Staff', 'EUR', None, f'{people}J54')
    sheet.calculated(11, 'Premises and office', 'EUR', None, f'{people}J39+{people}J49')
    sheet.entered(12, 'Marketing and systems', 'EUR', 'Marketing', history(24000, 0.05, 0, 1),
                  'Planning!P16+Planning!P36', 'count')
    sheet.calculated(13, 'Depreciation', 'EUR', None, "'Production Costs'!J55")
    sheet.calculated(14, 'Operating profit', 'EUR', 'Operating_profit', 'J8-SUM(J10:J13)',
                     'count_total')
    sheet.base(15, 'Operating profit, base case')
    sheet.entered(16, 'Interest', 'EUR', 'Interest', history(21000, -0.04, 0, 3),
                  'ROUND(O30*$G16,0)', 'count', 0.045)
    sheet.calculated(17, 'Profit before tax', 'EUR', None, 'J14-J16')
    sheet.calculated(18, 'Tax', 'EUR', None, 'ROUND(MAX(J17,0)*tax_rate,0)')
    sheet.calculated(19, 'Profit', 'EUR', 'Profit', 'J17-J18', 'count_total')
    sheet.base(20, 'Profit, base case')
    sheet.calculated(21, 'Profit margin', '%', None, 'IF(J6=0,0,J19/J6)', 'share_ratio')
    sheet.growth(22, 'Growth of profit', 19)
    sheet.section(24, 'Balance sheet', 'Office')
    _balance_rows(sheet)
    sheet.section(38, 'Key figures', 'Office')
    sheet.calculated(39, 'Revenue a head', 'EUR', None,
                     f'IF({people}J53=0,0,ROUND(J6/{people}J53,0))', 'count_formula')
    sheet.calculated(40, 'Days of stock', 'days', None, 'IF(J7=0,0,ROUND(J26/J7*365,0))',
                     'price_ratio')
    sheet.calculated(41, 'Days until customers pay', 'days', None,
                     'IF(J6=0,0,ROUND(J27/J6*365,0))', 'price_ratio')
    sheet.calculated(42, 'Profit before interest by interest', 'times', None,
                     'IF(J16=0,0,ROUND(J14/J16,1))', 'price_ratio')
    sheet.calculated(43, 'Lowest cash so far', 'EUR', None, 'MIN($J32:J32)')
    sheet.label(44, 'Profit, average of three years', 'EUR', None)
    sheet.style('J44:K44', 'count_formula')
    sheet.fill(44, 'L', 'Y', 'ROUND(AVERAGE(J19:L19),0)', 'count_formula')
    _assumptions(sheet)
    sheet.notes.update({'B33': 'What the owner would keep after all debts.',
                        'F51': 'Flat rate agreed with the accountant.',
                        'AD6': 'From the audited statements.'})
    sheet.row(3, 'AD', ['Audited'], 'heading')
    for row, amount in ((6, 3684900), (19, 79500), (33, 836900)):
        sheet.put(f'AD{row}', amount, 'count')
    sheet.formula('AF6', 'AD6-O6', 'count_formula')
    return sheet.finish()


def _balance_rows(sheet):
    costs = "'Production Costs'!"
    rows = (
        (25, 'Fixed assets', 'Fixed_assets', (410000, 0.01, 0), f'O25+{costs}P54-{costs}P55', None),
        (26, 'Stock', 'Stock', (520000, 0.02, 1), f'ROUND({costs}P49*$G26,0)', 0.25),
        (27, 'Customers', 'Customers', (298000, 0.03, 2), 'ROUND(P6*$G27,0)', 0.095),
        (28, 'Suppliers', 'Suppliers', (243000, 0.02, 3), 'ROUND(P7*$G28,0)', 0.11),
        (29, 'Loans repaid', 'Loans_repaid', (30000, 0, 4), 'MIN(O30,$F29)', None),
        (30, 'Bank loans', 'Bank_loans', (460000, -0.06, 5), 'O30-P29', None),
        (31, "Owner's drawings", 'Drawings', (72000, 0.03, 6), 'ROUND(MAX(P19,0)*$G31,0)', 0.45),
        (32, 'Cash', 'Cash', (95000, 0.08, 7), f'O32+P19+{costs}P55-{costs}P54-(P26-O26)-(P27-O27)'
         '+(P28-O28)-P29-P31', None))
    for row, label, key, (first, growth, phase), planning, rate in rows:
        sheet.entered(row, label, 'EUR', key, history(first, growth, 0, phase), planning, 'count',
                      rate)
    sheet.put('F29', 30000, 'count')
    sheet.calculated(33, "Owner's equity", 'EUR', 'Equity', 'J25+J26+J27+J32-J28-J30',
                     'count_total')
    sheet.base(34, "Owner's equity, base case")
    sheet.calculated(35, 'Equity ratio', '%', None, 'IF(J25+J26+J27+J32=0,0,J33/(J25+J26+J27+J32))',
                     'share_ratio')
    sheet.calculated(36, 'Account', '', None, 'IF(J32<0,"overdrawn","")', 'text_formula')


def _assumptions(sheet):
    sheet.section(46, 'Saved years', 'Office')
    for row, label, formula in ((47, 'Saves of net revenue', 'COUNT(Sales!AC51:AD51)'),
                                (48, 'Audited and saved profits', 'COUNT($AC19:$AE19)'),
                                (49, 'Largest audited or saved profit', 'MAX(AD19:AE19)')):
        sheet.put(f'B{row}', label, 'label')
        sheet.formula(f'F{row}', formula, 'count_formula')
    sheet.section(50, 'Assumptions', 'Office')
    sheet.put('B51', 'Tax rate', 'label')
    sheet.put('F51', 0.26, 'share')
    sheet.put('B52', 'Equity ratio agreed with the bank', 'label')
    sheet.put('F52', 0.35, 'share')
    sheet.calculated(53, 'Bank is content', '', None, 'IF(J35<$F$52,"no","yes")', 'text_formula')
    sheet.entered(55, 'Customers who paid late', '%', 'Late_payers',
                  [0.08, 0.07, 0.09, 0.06, 0.07, 0.06], 'ROUND(AVERAGE(M55:O55),3)', 'share')
    sheet.calculated(57, 'Assets', 'EUR', None, 'J25+J26+J27+J32', 'count_total')
    sheet.calculated(58, 'Debts and equity', 'EUR', None, 'J28+J30+J33', 'count_total')
    sheet.calculated(60, 'Balance sheet balances', '', None, 'IF(ABS(J57-J58)<0.5,"yes","no")',
                     'text_formula')
