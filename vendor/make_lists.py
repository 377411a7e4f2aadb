#!/usr/bin/env python3
"""Lists what the headers and tables of sdk/ declare, and whose it is.

    make_lists.py SDK_FOLDER OUTPUT_FOLDER

What carries the comment `// ours` in a header is an addition of this project; all else is taken to be the vendor's. The
mark stands on any line of the declaration and covers what is inside its braces; the line `// ours: this file` covers a
whole header. Written are

    interface.txt       one declaration a line: owner, file:line, kind, qualified name, the declaration in one line
    poisoned_names.h    the names that the module could reach but must not use, as #pragma GCC poison

Private members are in neither, nor are members of our own classes in the poison: the compiler keeps the first from the
module, and the second cannot be had without the name of their class.
"""
import pathlib
import re
import sys
from dataclasses import dataclass

TOKEN = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|[A-Za-z_]\w*|\d[\w.]*|\.\.\.|::|->|<<|[=!<>+*/|&^-]=|\S')
NAME = re.compile(r'[A-Za-z_]\w*$')
OURS = re.compile(r'//.*?\bours\b')
WHOLE_FILE = re.compile(r'^// ours: this file\b')
OPEN, CLOSE = '({[', ')}]'


@dataclass
class Declaration:
    ours: bool
    place: str
    kind: str
    scope: str
    name: str
    text: str
    reachable: bool  # by a name of its own: not inside something that is ours as a whole

    def line(self):
        owner = 'ours' if self.ours else 'vendor'
        return '\t'.join([owner, self.place, self.kind, self.scope + self.name, self.text])


class Header:
    """One file, read from its tokens; declarations are appended to found."""

    def __init__(self, path, shown, found):
        self.shown, self.found = shown, found
        lines = path.read_text(encoding='utf-8').split('\n')
        self.whole = any(WHOLE_FILE.match(line) for line in lines)
        self.marked = {n for n, line in enumerate(lines, 1) if OURS.search(line)}
        self.tokens, self.lines = [], []
        for number, line in self.code(lines):
            for token in TOKEN.findall(line):
                self.tokens.append(token)
                self.lines.append(number)
        self.at = 0

    def code(self, lines):
        """Lines without comments; preprocessor lines are taken out, macros among them are declarations."""
        text = '\n'.join(lines)
        text = re.sub(r'/\*.*?\*/', lambda m: '\n' * m.group().count('\n'), text, flags=re.S)
        number, rest = 0, iter(text.split('\n'))
        for line in rest:
            number += 1
            first, line = number, re.sub(r'//.*', '', line)
            if not line.lstrip().startswith('#'):
                yield number, line
                continue
            while line.endswith('\\'):
                line = line[:-1].rstrip() + ' ' + next(rest, '').strip()
                number += 1
            macro = re.match(r'\s*#\s*define\s+(\w+)', line)
            if macro:
                self.add('macro', '', macro.group(1), ' '.join(line.split()), first, number, True, self.whole)

    def add(self, kind, scope, name, text, first, last, reachable, ours):
        ours = ours or any(n in self.marked for n in range(first, last + 1))
        self.found.append(Declaration(ours, f'{self.shown}:{first}', kind, scope, name, text, reachable))
        return ours

    def skip(self):
        """Moves past the bracket that is opened at the current token and what it encloses."""
        depth = 0
        while self.at < len(self.tokens):
            token = self.tokens[self.at]
            depth += (token in OPEN) - (token in CLOSE)
            self.at += 1
            if depth == 0:
                return

    def read(self, scope='', access='public', ours=None, reachable=True):
        """Declarations up to the brace that closes the scope."""
        ours = self.whole if ours is None else ours
        owner = scope.split('::')[-2] if scope else ''
        while self.at < len(self.tokens) and self.tokens[self.at] != '}':
            token = self.tokens[self.at]
            if token in ('public', 'protected', 'private') and self.tokens[self.at + 1] == ':':
                access = token
                self.at += 2
            elif token == ';':
                self.at += 1
            else:
                self.declaration(scope, owner, access, ours, reachable)
        self.at += 1

    def declaration(self, scope, owner, access, ours, reachable):
        start, head, body = self.at, [], False
        while self.tokens[self.at] not in (';', '{'):
            token = self.tokens[self.at]
            if token == ':' and head and head[-1] == ')' and self.tokens[self.at + 1] != ':':
                while self.tokens[self.at] != '{':  # a constructor's initialisers
                    self.at += 1
                break
            if token in OPEN:
                opened = self.at
                self.skip()
                head += self.tokens[opened:self.at]
                if head[0].startswith('ENUM_END') or head[0] == 'C4D_ENTRY':
                    break
            else:
                head.append(token)
                self.at += 1
        first = self.lines[start]
        last = self.lines[min(self.at, len(self.tokens) - 1)]
        if head[0].startswith('ENUM_END') or head[0] in ('static_assert', 'INSTANCEOF'):
            return
        if head[0] == 'C4D_ENTRY':
            name = head[head.index(',') + 1]
            self.add('entry', pathlib.Path(self.shown).stem + '::', name, spaced(head), first, self.lines[self.at - 1],
                     False, True)
            return
        body = self.tokens[self.at] == '{'
        plain = without_template(head)
        shown = access != 'private'
        opener = next((word for word in ('namespace', 'enum', 'class', 'struct', 'union', 'extern') if word in plain[:1]), '')
        if opener and body and '(' not in plain:
            names = [t for t in plain[1:] if NAME.match(t)]
            name = names[0] if names else ''
            marked = ours
            if shown and name and opener != 'extern':
                marked = self.add(opener, scope, name, spaced(head), first, last, reachable, ours)
            elif not name:
                marked = ours or any(n in self.marked for n in range(first, last + 1))
            if not shown:
                self.skip()
            elif opener == 'enum':
                self.at += 1
                self.enumerators(scope, marked, reachable)
            else:
                self.at += 1
                inner = scope if opener == 'extern' else f'{scope}{name}::'
                self.read(inner, 'private' if opener == 'class' else 'public', marked, reachable and not marked)
            while opener not in ('namespace', 'extern') and self.tokens[self.at] != ';':
                self.at += 1
            return
        if body:
            self.skip()
            while self.at < len(self.tokens) and self.tokens[self.at] in (';', ','):
                self.at += 1
        else:
            self.at += 1
        if not shown or opener in ('class', 'struct', 'enum') and len(plain) == 2:
            return
        for name, kind in declared(plain, owner):
            self.add(kind, scope, name, spaced(head), first, last, reachable, ours)

    def enumerators(self, scope, ours, reachable):
        while self.tokens[self.at] != '}':
            name, line, text = self.tokens[self.at], self.lines[self.at], []
            while self.tokens[self.at] not in (',', '}'):
                text.append(self.tokens[self.at])
                if self.tokens[self.at] in OPEN:
                    self.skip()
                else:
                    self.at += 1
            last = self.lines[self.at]
            if self.tokens[self.at] == ',':
                self.at += 1
            else:
                last = line
            self.add('enumerator', scope, name, spaced(text), line, last, reachable, ours)
        self.at += 1


def without_template(head):
    while head[:2] == ['template', '<']:
        depth, at = 0, 1
        while True:
            depth += (head[at] == '<') - (head[at] == '>')
            at += 1
            if depth == 0:
                break
        head = head[at:]
    return head


def declared(head, owner):
    """Names that a declaration without a scope of its own introduces, with their kind."""
    if 'operator' in head:
        at = head.index('operator') + 1
        yield 'operator ' + ''.join(head[at:head.index('(', at + 1)]), 'operator'
        return
    if head[0] == 'using':
        yield head[1], 'type'
        return
    if '(' in head and ('=' not in head or head.index('(') < head.index('=')):
        at = head.index('(')
        if head[at + 1] == '*':  # a pointer to a function
            yield head[at + 2], 'type' if head[0] == 'typedef' else 'variable'
        elif head[at - 1] == owner:
            yield ('~' if '~' in head[:at] else '') + owner, 'constructor'
        else:
            yield head[at - 1], 'type' if head[0] == 'typedef' else 'function'
        return
    part, depth = [], 0
    for token in head + [',']:
        depth += (token in '({[<') - (token in ')}]>')
        if token == ',' and depth == 0:
            names = [t for t in part[:part.index('=')] if '=' in part] if '=' in part else part
            names = [t for t in (names[:names.index('[')] if '[' in names else names) if NAME.match(t)]
            if names:
                yield names[-1], 'type' if head[0] == 'typedef' else 'variable'
            part = []
        else:
            part.append(token)


def spaced(tokens):
    text = ' '.join(tokens)
    text = re.sub(r' ?(::|[()\[\],;<>~!]) ?', r'\1', text).replace(',', ', ').replace('> ', '>')
    return re.sub(r'>(?=[A-Za-z_])', '> ', re.sub(r' ?([*&]+) ?', r'\1 ', text)).replace(' )', ')').strip()


def main():
    sdk, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    found = []
    for path in sorted(sdk.rglob('*.h')) + sorted(sdk.rglob('*.inc')):
        Header(path, path.relative_to(sdk).as_posix(), found).read()
    vendors = {d.name for d in found if not d.ours}
    poisoned = sorted({d.name for d in found if d.ours and d.reachable and NAME.fullmatch(d.name)} - vendors)
    if not poisoned or not vendors:
        sys.exit(f'make_lists: {sdk}: found {len(vendors)} names of the vendor\'s and {len(poisoned)} of ours')
    output.mkdir(parents=True, exist_ok=True)
    (output / 'interface.txt').write_text('\n'.join(d.line() for d in found) + '\n', encoding='utf-8')
    (output / 'poisoned_names.h').write_text(''.join(f'#pragma GCC poison {n}\n' for n in poisoned), encoding='utf-8')


if __name__ == '__main__':
    main()
