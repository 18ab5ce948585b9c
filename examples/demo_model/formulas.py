"""Formulas of the demonstration model: reading, copying and calculating them.

Covers the small part of the formula language that the demonstration model uses, and refuses
everything else with an exception, so that a stored value is never a guess.
"""

import re
from decimal import ROUND_HALF_UP, Decimal

TOKEN = re.compile(
    r'''\s*(?:
      (?P<text>"(?:[^"]|"")*")
    | (?P<lost>\#REF!(?:\$?[A-Z]{1,3}\$?[0-9]+(?::\$?[A-Z]{1,3}\$?[0-9]+)?)?)
    | (?P<ref>(?:(?P<sheet>'(?:[^']|'')+'|[A-Za-z_][\w.]*)!)?
        (?P<first>\$?[A-Z]{1,3}\$?[0-9]+)(?::(?P<last>\$?[A-Z]{1,3}\$?[0-9]+))?(?![\w(.]))
    | (?P<number>[0-9]+(?:\.[0-9]+)?)
    | (?P<call>[A-Z][A-Z0-9.]*)\(
    | (?P<name>[A-Za-z_][\w.]*)
    | (?P<op><=|>=|<>|[-+*/^&=<>(),])
    )''', re.VERBOSE)


class CellError(Exception):
    """An error value such as #DIV/0!, which spreads through the formulas that read it."""

    def __init__(self, text):
        super().__init__(text)
        self.text = text

    def __eq__(self, other):
        return isinstance(other, CellError) and other.text == self.text

    def __hash__(self):
        return hash(self.text)


class Range:
    """A rectangle of cells; rows and columns count from 1."""

    def __init__(self, sheet, top, left, bottom, right):
        self.sheet, self.top, self.left, self.bottom, self.right = sheet, top, left, bottom, right

    def cells(self):
        for row in range(self.top, self.bottom + 1):
            for column in range(self.left, self.right + 1):
                yield self.sheet, row, column


def column_number(letters):
    number = 0
    for letter in letters:
        number = number * 26 + ord(letter) - 64
    return number


def column_letters(number):
    letters = ''
    while number:
        number, rest = divmod(number - 1, 26)
        letters = chr(65 + rest) + letters
    return letters


def split_address(address):
    """'$B7' -> (2, True, 7, False): column, column fixed, row, row fixed."""
    dollar, letters, row_dollar, row = re.fullmatch(
        r'(\$?)([A-Z]{1,3})(\$?)([0-9]+)', address).groups()
    return column_number(letters), bool(dollar), int(row), bool(row_dollar)


def join_address(column, column_fixed, row, row_fixed):
    return f'{"$" * column_fixed}{column_letters(column)}{"$" * row_fixed}{row}'


def tokens(formula):
    """Yields (kind, match) for each token; the text between matches is blank."""
    position = 0
    while position < len(formula.rstrip()):
        match = TOKEN.match(formula, position)
        if not match:
            raise ValueError(f'cannot read formula {formula!r} at {position}')
        yield match.lastgroup if match.lastgroup not in ('sheet', 'first', 'last') else 'ref', match
        position = match.end()


def map_references(formula, change):
    """The formula with each reference replaced by change(sheet name or None, first, last or None).

    `change` gets the sheet's plain name and returns the new text of the addresses; the sheet
    prefix stays as written.
    """
    pieces = []
    for _, match in tokens(formula):
        if match.group('ref') is None:
            pieces.append(match.group(0))
            continue
        prefix = match.group('sheet')
        sheet = prefix[1:-1].replace("''", "'") if prefix and prefix[0] == "'" else prefix
        addresses = change(sheet, match.group('first'), match.group('last'))
        lead = match.group(0)[:match.start('ref') - match.start(0)]
        pieces.append(lead + (prefix + '!' if prefix else '') + addresses)
    return ''.join(pieces)


def copied(formula, down, right):
    """The formula as it reads after a copy by so many rows and columns."""

    def move(address):
        column, column_fixed, row, row_fixed = split_address(address)
        return join_address(column if column_fixed else column + right, column_fixed,
                            row if row_fixed else row + down, row_fixed)

    return map_references(formula, lambda sheet, first, last: move(first) +
                          (':' + move(last) if last else ''))


def rounded(number, digits):
    """Rounds half away from zero, as a spreadsheet does."""
    step = Decimal(1).scaleb(-int(digits))
    return float(Decimal(repr(float(number))).quantize(step, rounding=ROUND_HALF_UP))


class Calculator:
    """Calculates cells of a workbook.

    `read(sheet, row, column)` gives ('formula', text) or ('value', value) where an empty cell's
    value is None; `names` maps a defined name to the text it refers to.
    """

    def __init__(self, read, names):
        self._read, self._names, self._known, self._busy = read, names, {}, set()

    def value(self, sheet, row, column):
        """The cell's value; an error value comes back as a CellError object."""
        key = (sheet, row, column)
        if key not in self._known:
            if key in self._busy:
                raise ValueError(f'circular reference at {key}')
            self._busy.add(key)
            kind, content = self._read(sheet, row, column)
            if kind == 'formula':
                try:
                    content = self._scalar(Parser(self, content, sheet).formula(), row, column)
                except CellError as error:
                    content = error
                content = 0.0 if content is None else content
            self._known[key] = float(content) if type(content) is int else content
            self._busy.discard(key)
        return self._known[key]

    def named(self, name):
        return Parser(self, self._names[name.lower()], None).formula()

    def items(self, argument):
        """The values of an argument: all cells of a range, or the value itself."""
        if not isinstance(argument, Range):
            return [argument]
        return [self.value(*cell) for cell in argument.cells()]

    def scalar(self, value):
        return self._scalar(value, None, None)

    def _scalar(self, value, row, column):
        if isinstance(value, Range):
            if (value.top, value.left) != (value.bottom, value.right):
                raise ValueError(f'a range where one value is needed, at {row}, {column}')
            value = self.value(value.sheet, value.top, value.left)
        if isinstance(value, CellError):
            raise value
        return value

    def number(self, value):
        value = self.scalar(value)
        if value is None:
            return 0.0
        if isinstance(value, (bool, float, int)):
            return float(value)
        try:
            return float(value)
        except ValueError:
            raise CellError('#VALUE!') from None

    def text(self, value):
        value = self.scalar(value)
        if value is None:
            return ''
        if isinstance(value, bool):
            return 'TRUE' if value else 'FALSE'
        if isinstance(value, (int, float)):
            return str(int(value)) if value == int(value) else repr(value)
        return value

    def numbers(self, arguments):
        found = []
        for argument in arguments:
            for item in self.items(argument):
                if isinstance(item, CellError):
                    raise item
                if isinstance(item, float) or (isinstance(item, (int, bool)) and
                                               not isinstance(argument, Range)):
                    found.append(float(item))
        return found

    def call(self, name, arguments):
        if name == 'SUM':
            return float(sum(self.numbers(arguments)))
        if name in ('MIN', 'MAX'):
            numbers = self.numbers(arguments)
            return (min if name == 'MIN' else max)(numbers) if numbers else 0.0
        if name == 'AVERAGE':
            numbers = self.numbers(arguments)
            if not numbers:
                raise CellError('#DIV/0!')
            return sum(numbers) / len(numbers)
        if name == 'COUNT':
            return float(sum(isinstance(item, float) for argument in arguments
                             for item in self.items(argument)))
        if name == 'ABS':
            return abs(self.number(arguments[0]))
        if name == 'ROUND':
            return rounded(self.number(arguments[0]), self.number(arguments[1]))
        if name in ('AND', 'OR'):
            flags = [bool(self.number(argument)) for argument in arguments]
            return all(flags) if name == 'AND' else any(flags)
        if name == 'INDEX':
            row, column = (int(self.number(argument)) for argument in arguments[1:])
            area = arguments[0]
            return self.value(area.sheet, area.top + row - 1, area.left + column - 1)
        if name == 'MATCH':
            wanted = self.scalar(arguments[0])
            for position, item in enumerate(self.items(arguments[1]), 1):
                if item == wanted:
                    return float(position)
            raise CellError('#N/A')
        raise ValueError(f'function {name} is not known here')


class Parser:
    """Reads one formula and calculates it in the same pass."""

    LEVELS = (('=', '<>', '<', '>', '<=', '>='), ('&',), ('+', '-'), ('*', '/'), ('^',))

    def __init__(self, calculator, formula, sheet):
        self._calculator, self._sheet = calculator, sheet
        self._tokens = list(tokens(formula))
        self._next = 0

    def formula(self):
        value = self._binary(0)
        if self._next != len(self._tokens):
            raise ValueError('the formula goes on where it should end')
        return value

    def _peek(self):
        if self._next < len(self._tokens) and self._tokens[self._next][0] == 'op':
            return self._tokens[self._next][1].group('op')
        return None

    def _binary(self, level):
        if level == len(self.LEVELS):
            return self._unary()
        value = self._binary(level + 1)
        while self._peek() in self.LEVELS[level]:
            operator = self._peek()
            self._next += 1
            value = self._operate(operator, value, self._binary(level + 1))
        return value

    def _operate(self, operator, left, right):
        calculator = self._calculator
        if operator == '&':
            return calculator.text(left) + calculator.text(right)
        if operator in self.LEVELS[0]:
            return self._compare(operator, calculator.scalar(left), calculator.scalar(right))
        left, right = calculator.number(left), calculator.number(right)
        if operator == '/':
            if right == 0:
                raise CellError('#DIV/0!')
            return left / right
        return {'+': left + right, '-': left - right, '*': left * right}[operator] \
            if operator != '^' else left ** right

    @staticmethod
    def _compare(operator, left, right):
        def rank(value, other):
            if value is None:
                value = '' if isinstance(other, str) else 0.0
            if isinstance(value, bool):
                return 2, value
            return (1, value.lower()) if isinstance(value, str) else (0, float(value))

        a, b = rank(left, right), rank(right, left)
        return {'=': a == b, '<>': a != b, '<': a < b, '>': a > b, '<=': a <= b,
                '>=': a >= b}[operator]

    def _unary(self):
        if self._peek() in ('-', '+'):
            sign = -1.0 if self._peek() == '-' else 1.0
            self._next += 1
            return sign * self._calculator.number(self._unary())
        return self._primary()

    def _primary(self):
        kind, match = self._tokens[self._next]
        self._next += 1
        if kind == 'text':
            return match.group('text')[1:-1].replace('""', '"')
        if kind == 'number':
            return float(match.group('number'))
        if kind == 'ref':
            return self._range(match)
        if kind == 'name':
            word = match.group('name')
            if word.upper() in ('TRUE', 'FALSE'):
                return word.upper() == 'TRUE'
            return self._calculator.named(word)
        if kind == 'call':
            return self._call(match.group('call'))
        if match.group('op') != '(':
            raise ValueError(f'unexpected {match.group("op")!r}')
        value = self._binary(0)
        self._expect(')')
        return value

    def _range(self, match):
        prefix = match.group('sheet')
        sheet = self._sheet
        if prefix:
            sheet = prefix[1:-1].replace("''", "'") if prefix[0] == "'" else prefix
        left, _, top, _ = split_address(match.group('first'))
        right, _, bottom, _ = split_address(match.group('last') or match.group('first'))
        return Range(sheet, top, left, bottom, right)

    def _call(self, name):
        if name == 'IF':
            return self._if()
        arguments = []
        if self._peek() != ')':
            arguments.append(self._binary(0))
            while self._peek() == ',':
                self._next += 1
                arguments.append(self._binary(0))
        self._expect(')')
        return self._calculator.call(name, arguments)

    def _if(self):
        condition = self._calculator.number(self._binary(0))
        branches = []
        for taken in (condition != 0, condition == 0):
            self._expect(',')
            if taken:
                branches.append(self._calculator.scalar(self._binary(0)))
            else:
                self._skip_argument()
        self._expect(')')
        return branches[0]

    def _skip_argument(self):
        """A branch that is not taken is read but not calculated: it may divide by zero."""
        depth = 0
        while depth or self._peek() not in (',', ')'):
            kind, match = self._tokens[self._next]
            if kind == 'call' or match.group('op') == '(':
                depth += 1
            elif match.group('op') == ')':
                depth -= 1
            self._next += 1

    def _expect(self, operator):
        if self._peek() != operator:
            raise ValueError(f'{operator!r} is missing')
        self._next += 1
