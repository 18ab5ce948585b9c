"""The cell styles of the demonstration model.

Cells without a fill are inputs; every other cell of the yearly columns has one. The fills come in
all three ways in which a file can name a colour: by value, by palette index and by theme colour.
"""

MAIN = 'http://schemas.openxmlformats.org/spreadsheetml/2006/main'

FONTS = {
    'body': '<sz val="10"/><color theme="1"/><name val="Calibri"/><family val="2"/>'
            '<scheme val="minor"/>',
    'flag': '<sz val="8"/><color rgb="FF808080"/><name val="Arial"/><family val="2"/>',
    'title': '<b/><sz val="16"/><color theme="3"/><name val="Calibri"/><family val="2"/>',
    'heading': '<b/><sz val="10"/><color rgb="FFFFFFFF"/><name val="Calibri"/><family val="2"/>',
    'bold': '<b/><sz val="10"/><color theme="1"/><name val="Calibri"/><family val="2"/>',
    'base': '<i/><sz val="10"/><color indexed="23"/><name val="Calibri"/><family val="2"/>',
    'name': '<i/><sz val="8"/><color theme="1"/><name val="Calibri"/><family val="2"/>',
    'input': '<sz val="10"/><color rgb="FF1B4F9C"/><name val="Calibri"/><family val="2"/>',
    'link': '<u/><sz val="11"/><color theme="10"/><name val="Calibri"/><family val="2"/>',
}

FILLS = {
    'none': '<patternFill patternType="none"/>',
    'gray125': '<patternFill patternType="gray125"/>',
    'heading': '<patternFill patternType="solid"><fgColor rgb="FF22384A"/>'
               '<bgColor indexed="64"/></patternFill>',
    'section': '<patternFill patternType="solid"><fgColor theme="4" tint="0.59999389629810485"/>'
               '<bgColor indexed="64"/></patternFill>',
    'formula': '<patternFill patternType="solid"><fgColor theme="4" tint="0.79998168889431442"/>'
               '<bgColor indexed="64"/></patternFill>',
    'total': '<patternFill patternType="solid"><fgColor rgb="FFFCE8D5"/>'
             '<bgColor indexed="64"/></patternFill>',
    'ratio': '<patternFill patternType="solid"><fgColor indexed="27"/>'
             '<bgColor indexed="64"/></patternFill>',
    'base': '<patternFill patternType="solid"><fgColor indexed="22"/>'
            '<bgColor indexed="64"/></patternFill>',
}

BORDERS = {
    'none': '<left/><right/><top/><bottom/><diagonal/>',
    'above': '<left/><right/><top style="thin"><color auto="1"/></top><bottom/><diagonal/>',
}

FORMATS = {'general': 0, 'count': 3, 'price': 4, 'share': 164, 'factor': 165}
CODES = {164: '0.0%', 165: '0.000'}

# style: font, fill, border, number format, alignment XML, unlocked
STYLES = {
    'body': ('body', 'none', 'none', 'general', '', False),
    'flag': ('flag', 'none', 'none', 'general', '', False),
    'title': ('title', 'none', 'none', 'general', '<alignment horizontal="left"/>', False),
    'heading': ('heading', 'heading', 'none', 'general', '<alignment horizontal="center"/>', False),
    'section': ('bold', 'section', 'none', 'general', '', False),
    'label': ('body', 'none', 'none', 'general', '<alignment horizontal="left" indent="1"/>',
              False),
    'label_total': ('bold', 'none', 'none', 'general', '', False),
    'name': ('name', 'none', 'none', 'general', '', False),
    'count': ('input', 'none', 'none', 'count', '', True),
    'price': ('input', 'none', 'none', 'price', '', True),
    'share': ('input', 'none', 'none', 'share', '', True),
    'factor': ('input', 'none', 'none', 'factor', '', True),
    'choice': ('input', 'none', 'none', 'general', '<alignment horizontal="center"/>', True),
    'remark': ('input', 'none', 'none', 'general', '<alignment wrapText="1"/>', True),
    'count_formula': ('body', 'formula', 'none', 'count', '', False),
    'price_formula': ('body', 'formula', 'none', 'price', '', False),
    'share_formula': ('body', 'formula', 'none', 'share', '', False),
    'text_formula': ('body', 'formula', 'none', 'general', '<alignment horizontal="center"/>',
                     False),
    'count_total': ('bold', 'total', 'above', 'count', '', False),
    'share_ratio': ('body', 'ratio', 'none', 'share', '', False),
    'price_ratio': ('body', 'ratio', 'none', 'price', '', False),
    'count_base': ('base', 'base', 'none', 'count', '', False),
    'price_base': ('base', 'base', 'none', 'price', '', False),
    'left': ('body', 'none', 'none', 'general', '<alignment horizontal="left"/>', False),
    'link': ('link', 'none', 'none', 'general', '', False),
}


class Styles:
    """Writes the styles part and knows each style's number in it."""

    def __init__(self):
        self._order = {name: number for number, name in enumerate(STYLES)}

    def index(self, name):
        return self._order[name]

    def part(self):
        fonts = ''.join(f'<font>{xml}</font>' for xml in FONTS.values())
        fills = ''.join(f'<fill>{xml}</fill>' for xml in FILLS.values())
        borders = ''.join(f'<border>{xml}</border>' for xml in BORDERS.values())
        codes = ''.join(f'<numFmt numFmtId="{key}" formatCode="{code}"/>'
                        for key, code in CODES.items())
        formats = ''.join(self._format(*style) for style in STYLES.values())
        return (
            f'<styleSheet xmlns="{MAIN}"><numFmts count="{len(CODES)}">{codes}</numFmts>'
            f'<fonts count="{len(FONTS)}">{fonts}</fonts>'
            f'<fills count="{len(FILLS)}">{fills}</fills>'
            f'<borders count="{len(BORDERS)}">{borders}</borders>'
            '<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/>'
            f'</cellStyleXfs><cellXfs count="{len(STYLES)}">{formats}</cellXfs>'
            '<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles>'
            '<dxfs count="3"><dxf><font><color rgb="FF9C0006"/></font></dxf>'
            '<dxf><fill><patternFill><bgColor rgb="FFFFEB9C"/></patternFill></fill></dxf>'
            '<dxf><font><b/><color theme="5"/></font></dxf></dxfs>'
            '<tableStyles count="0" defaultTableStyle="TableStyleMedium9" '
            'defaultPivotStyle="PivotStyleLight16"/></styleSheet>')

    @staticmethod
    def _format(font, fill, border, number, alignment, unlocked):
        ids = (FORMATS[number], list(FONTS).index(font), list(FILLS).index(fill),
               list(BORDERS).index(border))
        text = ('<xf numFmtId="{}" fontId="{}" fillId="{}" borderId="{}" xfId="0"'.format(*ids))
        for attribute, used in zip(('NumberFormat', 'Font', 'Fill', 'Border'), ids):
            text += f' apply{attribute}="1"' if used else ''
        text += ' applyAlignment="1"' if alignment else ''
        text += ' applyProtection="1"' if unlocked else ''
        inner = alignment + ('<protection locked="0"/>' if unlocked else '')
        return f'{text}>{inner}</xf>' if inner else text + '/>'
