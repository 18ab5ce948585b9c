"""The charts of the demonstration model's dashboard."""

from xml.sax.saxutils import escape

CHART = 'http://schemas.openxmlformats.org/drawingml/2006/chart'
DRAWING = 'http://schemas.openxmlformats.org/drawingml/2006/main'


class Chart:
    """A chart that stands in one dashboard column: `kind` is 'line' or 'bar'.

    `series` holds (reference of the label, reference of the values); `width` is in points, `row`
    and `column` count from 1, `rows` is the height in rows.
    """

    def __init__(self, title, kind, column, row, rows, width, categories, series):
        self.title, self.kind, self.column, self.row = title, kind, column, row
        self.rows, self.width, self.categories, self.series = rows, width, categories, series


def _text_cache(values):
    points = ''.join(f'<c:pt idx="{index}"><c:v>{escape(str(value))}</c:v></c:pt>'
                     for index, value in enumerate(values) if value is not None)
    return f'<c:strCache><c:ptCount val="{len(values)}"/>{points}</c:strCache>'


def _number_cache(values):
    points = ''.join(f'<c:pt idx="{index}"><c:v>{value!r}</c:v></c:pt>'
                     for index, value in enumerate(values) if isinstance(value, float))
    return ('<c:numCache><c:formatCode>General</c:formatCode>'
            f'<c:ptCount val="{len(values)}"/>{points}</c:numCache>')


def chart_part(chart, number, values):
    """The chart part's XML; `values(reference)` reads the cells for the caches."""
    series = []
    for index, (label, data) in enumerate(chart.series):
        text = (f'<c:ser><c:idx val="{index}"/><c:order val="{index}"/><c:tx><c:strRef>'
                f'<c:f>{escape(label)}</c:f>{_text_cache(values(label))}</c:strRef></c:tx>')
        text += ('<c:marker><c:symbol val="none"/></c:marker>' if chart.kind == 'line'
                 else '<c:invertIfNegative val="0"/>')
        text += (f'<c:cat><c:strRef><c:f>{escape(chart.categories)}</c:f>'
                 f'{_text_cache(values(chart.categories))}</c:strRef></c:cat>'
                 f'<c:val><c:numRef><c:f>{escape(data)}</c:f>{_number_cache(values(data))}'
                 '</c:numRef></c:val>')
        series.append(text + ('<c:smooth val="0"/></c:ser>' if chart.kind == 'line'
                              else '</c:ser>'))
    axes = 50010000 + 10 * number + 1, 50010000 + 10 * number + 2
    ends = f'<c:axId val="{axes[0]}"/><c:axId val="{axes[1]}"/>'
    if chart.kind == 'line':
        plot = ('<c:lineChart><c:grouping val="standard"/><c:varyColors val="0"/>' +
                ''.join(series) + f'<c:marker val="1"/>{ends}</c:lineChart>')
    else:
        plot = ('<c:barChart><c:barDir val="col"/><c:grouping val="stacked"/>'
                '<c:varyColors val="0"/>' + ''.join(series) +
                f'<c:gapWidth val="60"/><c:overlap val="100"/>{ends}</c:barChart>')
    return (
        f'<c:chartSpace xmlns:c="{CHART}" xmlns:a="{DRAWING}"><c:chart><c:title><c:tx><c:rich>'
        '<a:bodyPr/><a:lstStyle/><a:p><a:pPr><a:defRPr sz="1200" b="1"/></a:pPr><a:r>'
        f'<a:rPr lang="en-GB" sz="1200" b="1"/><a:t>{escape(chart.title)}</a:t></a:r></a:p>'
        '</c:rich></c:tx><c:overlay val="0"/></c:title><c:autoTitleDeleted val="0"/>'
        f'<c:plotArea><c:layout/>{plot}<c:catAx><c:axId val="{axes[0]}"/><c:scaling>'
        '<c:orientation val="minMax"/></c:scaling><c:delete val="0"/><c:axPos val="b"/>'
        '<c:majorTickMark val="out"/><c:minorTickMark val="none"/><c:tickLblPos val="low"/>'
        f'<c:crossAx val="{axes[1]}"/><c:crosses val="autoZero"/><c:auto val="1"/>'
        '<c:lblAlgn val="ctr"/><c:lblOffset val="100"/><c:noMultiLvlLbl val="0"/></c:catAx>'
        f'<c:valAx><c:axId val="{axes[1]}"/><c:scaling><c:orientation val="minMax"/></c:scaling>'
        '<c:delete val="0"/><c:axPos val="l"/><c:majorGridlines/>'
        '<c:numFmt formatCode="#,##0" sourceLinked="0"/><c:majorTickMark val="out"/>'
        '<c:minorTickMark val="none"/><c:tickLblPos val="nextTo"/>'
        f'<c:crossAx val="{axes[0]}"/><c:crosses val="autoZero"/>'
        '<c:crossBetween val="between"/></c:valAx></c:plotArea><c:legend>'
        '<c:legendPos val="b"/><c:overlay val="0"/></c:legend><c:plotVisOnly val="1"/>'
        '<c:dispBlanksAs val="gap"/></c:chart></c:chartSpace>')
