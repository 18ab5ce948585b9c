"""Writes the demonstration model as a workbook package, the same bytes on every run."""

import zipfile
from xml.sax.saxutils import escape as escape_text

from demo_model.chart import chart_part
from demo_model.formulas import CellError, Range, column_letters, column_number, split_address

MAIN = 'http://schemas.openxmlformats.org/spreadsheetml/2006/main'
RELATIONS = 'http://schemas.openxmlformats.org/officeDocument/2006/relationships'
PACKAGE_RELATIONS = 'http://schemas.openxmlformats.org/package/2006/relationships'
DRAWING = 'http://schemas.openxmlformats.org/drawingml/2006/main'
SHEET_DRAWING = 'http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing'
CHART = 'http://schemas.openxmlformats.org/drawingml/2006/chart'
COMPATIBILITY = 'http://schemas.openxmlformats.org/markup-compatibility/2006'
EXCEL_2009 = 'http://schemas.microsoft.com/office/spreadsheetml/2009/9/main'
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
TIMESTAMP = (2026, 1, 5, 9, 0, 0)
ISO_TIME = '2026-01-05T09:00:00Z'
POINTS_PER_ROW = 15
PIXELS_PER_CHARACTER = 7


def escape(text):
    return escape_text(str(text), {'"': '&quot;'})


def number_text(number):
    number = float(number)
    return str(int(number)) if number == int(number) and abs(number) < 1e15 else repr(number)


def quoted(sheet_name):
    """A sheet's name as formulas write it."""
    if sheet_name.isidentifier():
        return sheet_name
    return "'" + sheet_name.replace("'", "''") + "'"


class Package:
    """Collects parts with their content types and relations."""

    def __init__(self):
        self.parts = {}
        self.overrides = []
        self.relations = {}

    def add(self, path, text, content_type=None):
        self.parts[path] = text
        if content_type:
            self.overrides.append((path, content_type))

    def relate(self, source, kind, target, external=False):
        """Adds a relation of `source` ('' for the package) and returns its identifier."""
        rows = self.relations.setdefault(source, [])
        if not kind.startswith('http'):
            kind = f'{RELATIONS}/{kind}'
        rows.append((f'rId{len(rows) + 1}', kind, target, external))
        return rows[-1][0]

    def save(self, path):
        for source, rows in self.relations.items():
            folder, _, name = source.rpartition('/')
            place = f'{folder}/_rels/{name}.rels' if folder else f'_rels/{name}.rels'
            self.parts[place] = HEAD + f'<Relationships xmlns="{PACKAGE_RELATIONS}">' + ''.join(
                f'<Relationship Id="{key}" Type="{kind}" Target="{escape(target)}"' +
                (' TargetMode="External"/>' if external else '/>')
                for key, kind, target, external in rows) + '</Relationships>'
        types = HEAD + (
            '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
            '<Default Extension="rels" ContentType='
            '"application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/>'
            '<Default Extension="vml" ContentType='
            '"application/vnd.openxmlformats-officedocument.vmlDrawing"/>')
        types += ''.join(f'<Override PartName="/{part}" ContentType="{kind}"/>'
                         for part, kind in self.overrides) + '</Types>'
        with zipfile.ZipFile(path, 'w') as archive:
            first = ['[Content_Types].xml', '_rels/.rels', 'xl/workbook.xml']
            self.parts['[Content_Types].xml'] = types
            for part in first + sorted(set(self.parts) - set(first)):
                entry = zipfile.ZipInfo(part, TIMESTAMP)
                entry.compress_type = zipfile.ZIP_DEFLATED
                entry.create_system = 0
                archive.writestr(entry, self.parts[part].encode('utf-8'), compresslevel=9)


class WorkbookWriter:
    """Turns sheets, names and styles into the parts of a package."""

    SPREADSHEET = 'application/vnd.openxmlformats-officedocument.spreadsheetml'

    def __init__(self, sheets, names, styles, calculator):
        self.sheets, self.names, self.styles = sheets, names, styles
        self.calculator = calculator
        self.package = Package()
        self.strings = {}
        self.string_uses = 0
        self.drawings = self.charts = self.controls = self.notes = 0

    def save(self, path):
        package = self.package
        package.relate('', 'officeDocument', 'xl/workbook.xml')
        package.relate('', 'http://schemas.openxmlformats.org/package/2006/relationships/metadata/'
                       'core-properties', 'docProps/core.xml')
        package.relate('', 'extended-properties', 'docProps/app.xml')
        self._workbook()
        for number, sheet in enumerate(self.sheets, 1):
            self._sheet(number, sheet)
        self._shared_strings()
        self._calculation_chain()
        package.add('xl/styles.xml', HEAD + self.styles.part(), self.SPREADSHEET + '.styles+xml')
        package.add('xl/theme/theme1.xml', HEAD + theme_part(),
                    'application/vnd.openxmlformats-officedocument.theme+xml')
        self._properties()
        package.save(path)

    def _workbook(self):
        self.package.overrides.append(
            ('xl/workbook.xml', 'application/vnd.ms-excel.sheet.macroEnabled.main+xml'))
        relate = self.package.relate
        rows = ''.join(
            f'<sheet name="{escape(sheet.name)}" sheetId="{number}" r:id="' +
            relate('xl/workbook.xml', 'worksheet', f'worksheets/sheet{number}.xml') + '"/>'
            for number, sheet in enumerate(self.sheets, 1))
        relate('xl/workbook.xml', 'theme', 'theme/theme1.xml')
        relate('xl/workbook.xml', 'styles', 'styles.xml')
        relate('xl/workbook.xml', 'sharedStrings', 'sharedStrings.xml')
        relate('xl/workbook.xml', 'calcChain', 'calcChain.xml')
        names = [(name, None, text) for name, text in self.names.items()]
        for index, sheet in enumerate(self.sheets):
            if sheet.print_area:
                names.append(('_xlnm.Print_Area', index,
                              f'{quoted(sheet.name)}!{sheet.print_area}'))
            if sheet.print_titles:
                names.append(('_xlnm.Print_Titles', index,
                              f'{quoted(sheet.name)}!{sheet.print_titles}'))
        names.sort(key=lambda row: (row[0].lower().replace('_xlnm.', ''), row[1] or 0))
        defined = ''.join(
            f'<definedName name="{name}"' +
            (f' localSheetId="{index}"' if index is not None else '') +
            f'>{escape_text(text)}</definedName>' for name, index, text in names)
        self.package.add('xl/workbook.xml', HEAD + (
            f'<workbook xmlns="{MAIN}" xmlns:r="{RELATIONS}">'
            '<fileVersion appName="xl" lastEdited="5" lowestEdited="5" rupBuild="9303"/>'
            '<workbookPr codeName="ThisWorkbook" defaultThemeVersion="124226"/>'
            '<bookViews><workbookView xWindow="240" yWindow="60" windowWidth="19095" '
            'windowHeight="9780" activeTab="0"/></bookViews>'
            f'<sheets>{rows}</sheets><definedNames>{defined}</definedNames>'
            '<calcPr calcId="145621"/></workbook>'))

    # Worksheets

    def _sheet(self, number, sheet):
        path = f'xl/worksheets/sheet{number}.xml'
        tail = self._links(path, sheet)
        drawing = legacy = controls = ''
        if sheet.charts or sheet.spinners:
            drawing = self._drawing(path, sheet)
        if sheet.notes or sheet.spinners:
            legacy, controls = self._legacy_drawing(number, path, sheet)
        view = self._view(number, sheet)
        levels = max(sheet.levels.values(), default=0)
        text = HEAD + (
            f'<worksheet xmlns="{MAIN}" xmlns:r="{RELATIONS}" xmlns:mc="{COMPATIBILITY}" '
            f'xmlns:x14="{EXCEL_2009}" xmlns:xdr="{SHEET_DRAWING}" mc:Ignorable="x14">'
            f'<sheetPr codeName="Sheet{number}"/><dimension ref="{sheet.used_area()}"/>{view}'
            f'<sheetFormatPr defaultRowHeight="15"' +
            (f' outlineLevelRow="{levels}"' if levels else '') + '/>')
        if sheet.widths:
            text += '<cols>' + ''.join(
                f'<col min="{column_number(first)}" max="{column_number(last)}" '
                f'width="{width + 0.7109375}" customWidth="1"/>'
                for first, last, width in sheet.widths) + '</cols>'
        text += f'<sheetData>{self._rows(sheet)}</sheetData>'
        if sheet.protected:
            text += '<sheetProtection sheet="1" objects="1" scenarios="1"/>'
        if sheet.merged:
            text += f'<mergeCells count="{len(sheet.merged)}">' + ''.join(
                f'<mergeCell ref="{area}"/>' for area in sheet.merged) + '</mergeCells>'
        text += ''.join(f'<conditionalFormatting sqref="{area}">{rules}</conditionalFormatting>'
                        for area, rules in sheet.conditional)
        if sheet.validations:
            text += (f'<dataValidations count="{len(sheet.validations)}">' +
                     ''.join(sheet.validations) + '</dataValidations>')
        text += tail + ('<pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" '
                        'header="0.3" footer="0.3"/>')
        if sheet.landscape:
            text += ('<pageSetup paperSize="9" orientation="landscape"/><headerFooter><oddFooter>'
                     '&amp;L&amp;A&amp;R&amp;P of &amp;N</oddFooter></headerFooter>')
        text += drawing + legacy + controls + '</worksheet>'
        self.package.add(path, text, self.SPREADSHEET + '.worksheet+xml')

    @staticmethod
    def _view(number, sheet):
        selected = ' tabSelected="1"' if number == 1 else ''
        if not sheet.freeze:
            return (f'<sheetViews><sheetView{selected} workbookViewId="0"><selection activeCell='
                    f'"{sheet.selected}" sqref="{sheet.selected}"/></sheetView></sheetViews>')
        column, _, row, _ = split_address(sheet.freeze)
        corner = sheet.top_left or sheet.freeze
        corner_column, _, corner_row, _ = split_address(corner)
        return (f'<sheetViews><sheetView{selected} workbookViewId="0"><pane xSplit="{column - 1}" '
                f'ySplit="{row - 1}" topLeftCell="{corner}" activePane="bottomRight" '
                'state="frozen"/>'
                f'<selection pane="topRight" activeCell="{column_letters(corner_column)}1" '
                f'sqref="{column_letters(corner_column)}1"/>'
                f'<selection pane="bottomLeft" activeCell="A{corner_row}" sqref="A{corner_row}"/>'
                f'<selection pane="bottomRight" activeCell="{corner}" sqref="{corner}"/>'
                '</sheetView></sheetViews>')

    def _rows(self, sheet):
        rows = {}
        for (row, column), cell in sheet.cells.items():
            rows.setdefault(row, {})[column] = cell
        pieces = []
        for row in sorted(rows):
            columns = sorted(rows[row])
            attributes = f'r="{row}" spans="{columns[0]}:{columns[-1]}"'
            if row in sheet.heights:
                attributes += f' ht="{sheet.heights[row]}" customHeight="1"'
            if row == 1:
                attributes += ' hidden="1"'
            if row in sheet.levels:
                attributes += f' outlineLevel="{sheet.levels[row]}"'
            cells = ''.join(self._cell(sheet, row, column, rows[row][column])
                            for column in columns)
            pieces.append(f'<row {attributes}>{cells}</row>')
        return ''.join(pieces)

    def _cell(self, sheet, row, column, cell):
        head = f'<c r="{column_letters(column)}{row}"'
        if cell.style:
            head += f' s="{self.styles.index(cell.style)}"'
        value, formula = cell.value, ''
        if cell.formula is not None:
            value = self.calculator.value(sheet.name, row, column)
            number, area = cell.shared or (None, None)
            if area:
                formula = (f'<f t="shared" ref="{area}" si="{number}">'
                           f'{escape_text(cell.formula)}</f>')
            elif number is not None:
                formula = f'<f t="shared" si="{number}"/>'
            else:
                formula = f'<f>{escape_text(cell.formula)}</f>'
        if value is None:
            return head + '/>'
        if isinstance(value, CellError):
            return f'{head} t="e">{formula}<v>{value.text}</v></c>'
        if isinstance(value, bool):
            return f'{head} t="b">{formula}<v>{int(value)}</v></c>'
        if isinstance(value, str):
            if formula:
                return f'{head} t="str">{formula}<v>{escape_text(value)}</v></c>'
            return f'{head} t="s"><v>{self._string(value)}</v></c>'
        return f'{head}>{formula}<v>{number_text(value)}</v></c>'

    def _string(self, text):
        self.string_uses += 1
        return self.strings.setdefault(text, len(self.strings))

    def _links(self, path, sheet):
        if not sheet.hyperlinks:
            return ''
        rows = []
        for cell, place, address, tip in sheet.hyperlinks:
            key = ''
            if address:
                key = f' r:id="{self.package.relate(path, "hyperlink", address, external=True)}"'
            if place:
                key += f' location="{escape(place)}"'
            rows.append(f'<hyperlink ref="{cell}"{key} tooltip="{escape(tip)}"/>')
        return f'<hyperlinks>{"".join(rows)}</hyperlinks>'

    # Drawings: charts, spin buttons and notes

    @staticmethod
    def _anchor_corner(column, column_offset, row, row_offset):
        return (f'<xdr:col>{column}</xdr:col><xdr:colOff>{column_offset}</xdr:colOff>'
                f'<xdr:row>{row}</xdr:row><xdr:rowOff>{row_offset}</xdr:rowOff>')

    def _spinner_corners(self, spinner):
        left, top = spinner.column - 1, spinner.row - 1
        return (self._anchor_corner(left, 95250, top, 0),
                self._anchor_corner(left, 342900, top + 1, 171450))

    def _drawing(self, path, sheet):
        self.drawings += 1
        part = f'xl/drawings/drawing{self.drawings}.xml'
        shapes = []
        for index, chart in enumerate(sheet.charts):
            self.charts += 1
            name = f'xl/charts/chart{self.charts}.xml'
            self.package.add(name, HEAD + chart_part(chart, self.charts, self._series_values),
                             'application/vnd.openxmlformats-officedocument.drawingml.chart+xml')
            key = self.package.relate(part, 'chart', f'../charts/chart{self.charts}.xml')
            corners = (self._anchor_corner(chart.column - 1, 0, chart.row - 1, 0),
                       self._anchor_corner(chart.column - 1, chart.width * 12700,
                                           chart.row - 1 + chart.rows, 0))
            shapes.append(
                f'<xdr:twoCellAnchor><xdr:from>{corners[0]}</xdr:from><xdr:to>{corners[1]}</xdr:to>'
                '<xdr:graphicFrame macro=""><xdr:nvGraphicFramePr>'
                f'<xdr:cNvPr id="{index + 2}" name="Chart {index + 1}"/><xdr:cNvGraphicFramePr/>'
                '</xdr:nvGraphicFramePr><xdr:xfrm><a:off x="0" y="0"/><a:ext cx="0" cy="0"/>'
                f'</xdr:xfrm><a:graphic><a:graphicData uri="{CHART}"><c:chart xmlns:c="{CHART}" '
                f'xmlns:r="{RELATIONS}" r:id="{key}"/></a:graphicData></a:graphic>'
                '</xdr:graphicFrame><xdr:clientData/></xdr:twoCellAnchor>')
        for index, spinner in enumerate(sheet.spinners):
            shape = self._spinner_shape(sheet, index)
            corners = self._spinner_corners(spinner)
            shapes.append(
                f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice xmlns:a14='
                '"http://schemas.microsoft.com/office/drawing/2010/main" Requires="a14">'
                f'<xdr:twoCellAnchor><xdr:from>{corners[0]}</xdr:from><xdr:to>{corners[1]}</xdr:to>'
                '<xdr:sp macro="" textlink=""><xdr:nvSpPr>'
                f'<xdr:cNvPr id="{shape}" name="{spinner.name}" hidden="1"><a:extLst>'
                '<a:ext uri="{63B3BB69-23CF-44E3-9099-C40C66FF867C}">'
                f'<a14:compatExt spid="_x0000_s{shape}"/></a:ext></a:extLst></xdr:cNvPr>'
                '<xdr:cNvSpPr/></xdr:nvSpPr><xdr:spPr><a:xfrm><a:off x="0" y="0"/>'
                '<a:ext cx="0" cy="0"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom>'
                '</xdr:spPr></xdr:sp><xdr:clientData fPrintsWithSheet="0"/></xdr:twoCellAnchor>'
                '</mc:Choice><mc:Fallback/></mc:AlternateContent>')
        text = (f'<xdr:wsDr xmlns:xdr="{SHEET_DRAWING}" xmlns:a="{DRAWING}">' +
                ''.join(shapes) + '</xdr:wsDr>')
        self.package.add(part, HEAD + text,
                         'application/vnd.openxmlformats-officedocument.drawing+xml')
        key = self.package.relate(path, 'drawing', f'../drawings/drawing{self.drawings}.xml')
        return f'<drawing r:id="{key}"/>'

    def _series_values(self, reference):
        """The values of a chart's reference, for its cache."""
        calculator = self.calculator
        sheet, _, area = reference.rpartition('!')
        sheet = sheet[1:-1].replace("''", "'") if sheet[0] == "'" else sheet
        first, _, last = area.partition(':')
        left, _, top, _ = split_address(first)
        right, _, bottom, _ = split_address(last or first)
        return calculator.items(Range(sheet, top, left, bottom, right))

    def _spinner_shape(self, sheet, index):
        return 1024 * (self.sheets.index(sheet) + 1) + 1 + len(sheet.notes) + index

    def _legacy_drawing(self, number, path, sheet):
        self.notes += 1
        part = f'xl/drawings/vmlDrawing{self.notes}.vml'
        shapes = []
        for index, address in enumerate(sheet.notes):
            shapes.append(note_shape(1024 * number + 1 + index, index + 1, address))
        for index, spinner in enumerate(sheet.spinners):
            shapes.append(spinner_shape(self._spinner_shape(sheet, index),
                                        len(sheet.notes) + index + 1, spinner))
        self.package.add(part, vml_part(number, sheet.notes, sheet.spinners, shapes))
        key = self.package.relate(path, 'vmlDrawing', f'../drawings/vmlDrawing{self.notes}.vml')
        if sheet.notes:
            comments = f'comments{self.notes}.xml'
            self.package.add(f'xl/{comments}', HEAD + comments_part(sheet.notes),
                             self.SPREADSHEET + '.comments+xml')
            self.package.relate(path, 'comments', f'../{comments}')
        return f'<legacyDrawing r:id="{key}"/>', self._control_elements(path, sheet)

    def _control_elements(self, path, sheet):
        if not sheet.spinners:
            return ''
        rows = []
        for index, spinner in enumerate(sheet.spinners):
            self.controls += 1
            part = f'ctrlProps/ctrlProp{self.controls}.xml'
            self.package.add(
                f'xl/{part}', HEAD + f'<formControlPr xmlns="{EXCEL_2009}" objectType="Spin" '
                f'dx="16" fmlaLink="{spinner.linked_cell}" max="{spinner.maximum}" page="10" '
                'val="0"/>', 'application/vnd.ms-excel.controlproperties+xml')
            key = self.package.relate(path, 'ctrlProp', f'../{part}')
            corners = self._spinner_corners(spinner)
            macro = f' macro="[0]!{spinner.macro}"' if spinner.macro else ''
            rows.append(
                f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="x14">'
                f'<control shapeId="{self._spinner_shape(sheet, index)}" r:id="{key}" '
                f'name="{spinner.name}"><controlPr defaultSize="0" print="0" autoPict="0"{macro}>'
                f'<anchor moveWithCells="1" sizeWithCells="1"><from>{corners[0]}</from>'
                f'<to>{corners[1]}</to></anchor></controlPr></control></mc:Choice>'
                '</mc:AlternateContent>')
        return (f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="x14">'
                f'<controls>{"".join(rows)}</controls></mc:Choice></mc:AlternateContent>')

    # Parts of the whole workbook

    def _shared_strings(self):
        rows = ''.join(
            '<si><t' + (' xml:space="preserve"' if text != text.strip() else '') +
            f'>{escape_text(text)}</t></si>' for text in self.strings)
        self.package.add('xl/sharedStrings.xml', HEAD + (
            f'<sst xmlns="{MAIN}" count="{self.string_uses}" uniqueCount="{len(self.strings)}">'
            f'{rows}</sst>'), self.SPREADSHEET + '.sharedStrings+xml')

    def _calculation_chain(self):
        rows = []
        for number, sheet in enumerate(self.sheets, 1):
            for row, column in sorted(key for key, cell in sheet.cells.items()
                                      if cell.formula is not None):
                rows.append(f'<c r="{column_letters(column)}{row}" i="{number}"/>')
        self.package.add('xl/calcChain.xml', HEAD + f'<calcChain xmlns="{MAIN}">' +
                         ''.join(rows) + '</calcChain>', self.SPREADSHEET + '.calcChain+xml')

    def _properties(self):
        self.package.add('docProps/core.xml', HEAD + (
            '<cp:coreProperties xmlns:cp="http://schemas.openxmlformats.org/package/2006/metadata/'
            'core-properties" xmlns:dc="http://purl.org/dc/elements/1.1/" '
            'xmlns:dcterms="http://purl.org/dc/terms/" '
            'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">'
            '<dc:title>Larkfield Cycles, ten-year plan</dc:title>'
            '<dc:creator>Larkfield Cycles</dc:creator>'
            f'<dcterms:created xsi:type="dcterms:W3CDTF">{ISO_TIME}</dcterms:created>'
            f'<dcterms:modified xsi:type="dcterms:W3CDTF">{ISO_TIME}</dcterms:modified>'
            '</cp:coreProperties>'), 'application/vnd.openxmlformats-package.core-properties+xml')
        self.package.add('docProps/app.xml', HEAD + (
            '<Properties xmlns="http://schemas.openxmlformats.org/officeDocument/2006/'
            'extended-properties"><Application>Microsoft Excel</Application>'
            '<AppVersion>14.0300</AppVersion></Properties>'),
            'application/vnd.openxmlformats-officedocument.extended-properties+xml')


def theme_part():
    """A theme with the demonstration company's colours."""
    colours = ('accent1', '2F6B8F'), ('accent2', 'C8553D'), ('accent3', '6A994E'), \
        ('accent4', '7B5E9A'), ('accent5', '3A9CA6'), ('accent6', 'E09F3E'), \
        ('hlink', '1B4F9C'), ('folHlink', '6B3FA0')
    scheme = ('<a:dk1><a:sysClr val="windowText" lastClr="000000"/></a:dk1>'
              '<a:lt1><a:sysClr val="window" lastClr="FFFFFF"/></a:lt1>'
              '<a:dk2><a:srgbClr val="22384A"/></a:dk2><a:lt2><a:srgbClr val="EDF1F4"/></a:lt2>')
    scheme += ''.join(f'<a:{name}><a:srgbClr val="{value}"/></a:{name}>' for name, value in colours)
    fill = '<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>'
    fonts = ''.join(f'<a:{kind}><a:latin typeface="Calibri"/><a:ea typeface=""/>'
                    f'<a:cs typeface=""/></a:{kind}>' for kind in ('majorFont', 'minorFont'))
    lines = ''.join(f'<a:ln w="{width}">{fill}</a:ln>' for width in (9525, 19050, 28575))
    return (f'<a:theme xmlns:a="{DRAWING}" name="Larkfield"><a:themeElements>'
            f'<a:clrScheme name="Larkfield">{scheme}</a:clrScheme>'
            f'<a:fontScheme name="Larkfield">{fonts}</a:fontScheme>'
            f'<a:fmtScheme name="Larkfield"><a:fillStyleLst>{fill * 3}</a:fillStyleLst>'
            f'<a:lnStyleLst>{lines}</a:lnStyleLst><a:effectStyleLst>' +
            '<a:effectStyle><a:effectLst/></a:effectStyle>' * 3 +
            f'</a:effectStyleLst><a:bgFillStyleLst>{fill * 3}</a:bgFillStyleLst></a:fmtScheme>'
            '</a:themeElements></a:theme>')


def comments_part(notes):
    rows = ''.join(
        f'<comment ref="{address}" authorId="0"><text><r><rPr><sz val="9"/>'
        '<color indexed="81"/><rFont val="Tahoma"/><family val="2"/></rPr>'
        f'<t>{escape_text(text)}</t></r></text></comment>' for address, text in notes.items())
    return (f'<comments xmlns="{MAIN}"><authors><author>Larkfield Cycles</author></authors>'
            f'<commentList>{rows}</commentList></comments>')


def vml_part(number, notes, spinners, shapes):
    kinds = ''
    if notes:
        kinds += ('<v:shapetype id="_x0000_t202" coordsize="21600,21600" o:spt="202" '
                  'path="m,l,21600r21600,l21600,xe"><v:stroke joinstyle="miter"/>'
                  '<v:path gradientshapeok="t" o:connecttype="rect"/></v:shapetype>')
    if spinners:
        kinds += ('<v:shapetype id="_x0000_t201" coordsize="21600,21600" o:spt="201" '
                  'path="m,l,21600r21600,l21600,xe"><v:stroke joinstyle="miter"/>'
                  '<v:path shadowok="f" o:extrusionok="f" strokeok="f" fillok="f" '
                  'o:connecttype="rect"/><o:lock v:ext="edit" shapetype="t"/></v:shapetype>')
    return ('<xml xmlns:v="urn:schemas-microsoft-com:vml" '
            'xmlns:o="urn:schemas-microsoft-com:office:office" '
            'xmlns:x="urn:schemas-microsoft-com:office:excel"><o:shapelayout v:ext="edit">'
            f'<o:idmap v:ext="edit" data="{number}"/></o:shapelayout>{kinds}' +
            ''.join(shapes) + '</xml>')


def note_shape(shape, order, address):
    column, _, row, _ = split_address(address)
    top = max(row - 2, 0)
    return (f'<v:shape id="_x0000_s{shape}" type="#_x0000_t202" style="position:absolute;'
            f'margin-left:60pt;margin-top:{POINTS_PER_ROW * top}pt;width:108pt;height:60pt;'
            f'z-index:{order};visibility:hidden" fillcolor="#ffffe1" o:insetmode="auto">'
            '<v:fill color2="#ffffe1"/><v:shadow on="t" color="black" obscured="t"/>'
            '<v:path o:connecttype="none"/><v:textbox style="mso-direction-alt:auto">'
            '<div style="text-align:left"></div></v:textbox><x:ClientData ObjectType="Note">'
            '<x:MoveWithCells/><x:SizeWithCells/>'
            f'<x:Anchor>{column}, 15, {top}, 10, {column + 2}, 15, {top + 4}, 4</x:Anchor>'
            f'<x:AutoFill>False</x:AutoFill><x:Row>{row - 1}</x:Row><x:Column>{column - 1}'
            '</x:Column></x:ClientData></v:shape>')


def spinner_shape(shape, order, spinner):
    left, top = spinner.column - 1, spinner.row - 1
    macro = f'<x:FmlaMacro>[0]!{spinner.macro}</x:FmlaMacro>' if spinner.macro else ''
    return (f'<v:shape id="{spinner.name.replace(" ", "_x0020_")}" o:spid="_x0000_s{shape}" '
            f'type="#_x0000_t201" style="position:absolute;margin-left:240pt;'
            f'margin-top:{POINTS_PER_ROW * top}pt;width:20pt;height:28pt;z-index:{order}" '
            'stroked="f" strokecolor="windowText [64]" o:insetmode="auto">'
            '<o:lock v:ext="edit" rotation="t" text="t"/><x:ClientData ObjectType="Spin">'
            f'<x:SizeWithCells/><x:Anchor>{left}, 10, {top}, 0, {left}, 36, {top + 1}, 18'
            f'</x:Anchor><x:PrintObject>False</x:PrintObject>{macro}'
            f'<x:FmlaLink>{spinner.linked_cell}</x:FmlaLink><x:Val>0</x:Val><x:Min>0</x:Min>'
            f'<x:Max>{spinner.maximum}</x:Max><x:Inc>1</x:Inc><x:Page>10</x:Page><x:Dx>16</x:Dx>'
            '</x:ClientData></v:shape>')
