"""The mutants of a source: what one changed place of one line can be. Works on the text, so that a mutant may not compile."""
import re

# What clang-format sets between blanks is an operator of two operands, not part of a type.
SWAPPED = {
    '<': ('<=', '>='), '<=': ('<', '>'), '>': ('>=', '<='), '>=': ('>', '<'), '==': ('!=',), '!=': ('==',),
    '&&': ('||',), '||': ('&&',), '+': ('-',), '-': ('+',), '*': ('+',), '/': ('*',), '%': ('/',),
    '&': ('|',), '|': ('&',), '^': ('&',), '<<': ('>>',), '>>': ('<<',), '+=': ('-=',), '-=': ('+=',),
}
WORDS = {'true': 'false', 'false': 'true', 'min': 'max', 'max': 'min', 'break': 'continue', 'continue': 'break',
         'begin': 'end', 'rbegin': 'begin', 'find': 'rfind', 'rfind': 'find', 'front': 'back', 'back': 'front'}
TOKEN = re.compile(r'''
    (?P<comment>//.*)
  | (?P<text>(?:u8|u|U|L)?"(?:[^"\\]|\\.)*")
  | (?P<letter>(?:u8|u|U|L)?'(?:[^'\\]|\\.)+')
  | (?P<number>\b(?:0[xX][0-9a-fA-F']+|[0-9][0-9']*(?:\.[0-9]+)?(?:e[+-]?[0-9]+)?)[uUlLfF]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<binary>(?<=\ )(?:<=|>=|==|!=|&&|\|\||\+=|-=|<<|>>|[<>+\-*/%&|^])(?=\ |$))
  | (?P<step>\+\+|--)
  | (?P<choice>(?<=\ )\?(?=\ ))
  | (?P<negation>!(?=[\w(*]))
''', re.VERBOSE)
STATEMENT = re.compile(r'''
    ^\s*(?: return | break | continue
         | \w[\w.:>\-\[\]]*(?:\(.*\)|\s[+\-|&]?=\s.*)   # a call, an assignment
         | (?:\+\+|--)\w+ | \w+(?:\+\+|--) );$
    ''', re.VERBOSE)
DECLARATION = re.compile(r'^\s*(?:using|typedef|static_assert|case|default|template|friend|extern|namespace)\b')
RETURN = re.compile(r'^(\s*(?:if \(.*\) )?return )(.+);$')
CONDITION = re.compile(r'\b(if|while) \(')


def numbers(text):
    """A number one larger, and one smaller where that stays a number."""
    digits = re.match(r"(0[xX][0-9a-fA-F']+|[0-9.']+)(.*)", text)
    whole, rest = digits.group(1).replace("'", ''), digits.group(2)
    if '.' in whole or 'e' in rest:
        return [f'({text} + 1)', f'({text} / 2)']
    value = int(whole, 0) if not re.match(r'0[0-9]', whole) else int(whole, 8)
    written = '0x{:X}{}' if whole[:2] in ('0x', '0X') else '{}{}'
    return [written.format(near, rest) for near in (value + 1, value - 1) if near >= 0]


def replacements(kind, text):
    if kind == 'binary':
        return SWAPPED[text]
    if kind == 'word':
        return [WORDS[text]] if text in WORDS else []
    if kind == 'number':
        return numbers(text)
    if kind == 'text':
        opening = text.index('"') + 1
        return [text[:-1] + '~"'] + ([text[:opening] + '"'] if len(text) > opening + 1 else [])
    if kind == 'letter':
        return [f"static_cast<decltype({text})>({text} + 1)"]
    return {'step': ['--' if text == '++' else '++'], 'choice': ['|| true ?', '&& false ?'], 'negation': ['']}.get(kind, [])


def of_line(line):
    """Every mutant of one line of code, in the order of its places."""
    code = line.split('//')[0].rstrip()
    if not code.strip() or code.lstrip().startswith(('#', '*', '/*')) or DECLARATION.match(code):
        return []
    found = []
    for token in TOKEN.finditer(line):
        if token.lastgroup == 'comment':
            break
        found += [line[:token.start()] + new + line[token.end():] for new in replacements(token.lastgroup, token.group())]
    for condition in CONDITION.finditer(code):
        head, tail = line[:condition.end()], line[condition.end():]
        found.append(f'{head}false && {tail}')
        if condition.group(1) == 'if':
            found.append(f'{head}true || {tail}')
    answer = RETURN.match(code)
    if answer and answer.group(2) not in ('{}', 'true', 'false', '0', 'nullptr', 'std::nullopt'):
        found.append(f'{answer.group(1)}{{}};')
    if STATEMENT.match(code):
        found.append(re.match(r'\s*', line).group() + ';')
    return [mutant for mutant in dict.fromkeys(found) if mutant != line]


def of_file(path):
    """[(line number from 1, its mutants)] for the lines that have some; declarations of the preprocessor have none."""
    with open(path, encoding='utf-8') as source:
        return [(number, found) for number, line in enumerate(source.read().split('\n'), 1) if (found := of_line(line))]
