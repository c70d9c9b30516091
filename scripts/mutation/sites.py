"""Where a source can be changed, by clang's view of it.

A change is text to put before, after or in the place of the old. Its number chooses it at run time (switch.h)."""

import re
from dataclasses import dataclass, field
from pathlib import Path

from clang import cindex
from clang.cindex import CursorKind as K

COMPARISONS = {"<": "less", "<=": "lessOrEqual", ">": "more", ">=": "moreOrEqual"}
BOUNDS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
OPPOSITES = {"==": "!=", "!=": "==", "<": ">=", "<=": ">", ">": "<=", ">=": "<"}
ARITHMETIC = {"+": ("sum", "-"), "-": ("difference", "+"), "*": ("product", "/"), "/": ("quotient", "*"),
              "%": ("rest", "*"), "&": ("both", "|"), "|": ("either", "&"), "<<": ("shiftedUp", ">>"),
              ">>": ("shiftedDown", "<<")}
COMPOUND = {"+=": ("add", "-="), "-=": ("subtract", "+=")}
STRING = re.compile(rb'(?:u8|u|U|L)?(?:"(?:[^"\\\n]|\\.)*"|R"([^()\\\s]*)\((?:.|\n)*?\)\1")(?:\s*(?:u8|u|U|L)?"(?:[^"\\\n]|\\.)*")*')
FUNCTIONS = {K.FUNCTION_DECL, K.CXX_METHOD, K.CONSTRUCTOR, K.DESTRUCTOR, K.CONVERSION_FUNCTION, K.FUNCTION_TEMPLATE}
CONSTANT = {K.STATIC_ASSERT, K.ENUM_DECL, K.TEMPLATE_NON_TYPE_PARAMETER, K.ALIGNED_ATTR}
ARITHMETIC_TYPES = re.compile(r"^(const )?(bool|(un)?signed|char|short|int|long|float|double|std::|size_t|.*int\d+_t|"
                              r".*size_t|.*ptrdiff_t|.*difference_type|.*size_type)")


@dataclass
class Mutant:
    """One change. `file` is relative to the source tree; `text` is the line it is in, `change` what becomes of it."""
    file: str
    line: int
    text: str
    change: str
    number: int = 0

    @property
    def key(self):
        return (self.file, self.text, self.change)


@dataclass(eq=False)
class Edit:
    """Text around, or in the place of, a stretch of a source. It is kept or dropped as one, with its mutants."""
    start: int
    end: int
    before: str
    after: str
    mutants: list
    inner: list = field(default_factory=list)  # (start, end, text): the replacements within
    names: tuple = ()  # of a variable that is constant no more
    span: tuple = (0, 0)  # and all of its declaration
    order: int = 0


def short(text):
    text = " ".join(text.decode(errors="replace").split())
    return text if len(text) <= 70 else text[:67] + "..."


class Source:
    """The edits of one file."""

    def __init__(self, path, name):
        self.name = name
        self.bytes = path.read_bytes()
        self.edits = []
        self.seen = set()
        self.header = path.suffix == ".h"

    def mutant(self, offset, change):
        begin = self.bytes.rfind(b"\n", 0, offset) + 1
        end = self.bytes.find(b"\n", offset)
        text = " ".join(self.bytes[begin:end if end >= 0 else None].decode().split())
        return Mutant(self.name, self.bytes.count(b"\n", 0, offset) + 1, text, change)

    def edit(self, kind, start, end, before, after, changes, inner=(), at=None, names=()):
        """`changes` says what becomes of what; NUMBER in `before` stands for the first one's number."""
        if (kind, start, end) in self.seen:
            return
        self.seen.add((kind, start, end))
        made = [self.mutant(start if at is None else at, change) for change in changes]
        self.edits.append(Edit(start, end, before, after, made, list(inner), names, len(self.edits)))

    def rendered(self, kept, include):
        """The source with the edits that are kept, and where each of them lies in it."""
        opening, closing, replaced = {}, {}, {}
        for edit in kept:
            opening.setdefault(edit.start, []).append(edit)
            closing.setdefault(edit.end, []).append(edit)
            for start, end, text in edit.inner:
                replaced[start] = (end, text)
        first = f'#include "{include}"\n' if not self.header else f'#pragma GCC system_header\n#include "{include}"\n'
        out, begun, places = bytearray(first.encode()), {}, []
        at = 0
        for stop in sorted({*opening, *closing, *replaced, len(self.bytes)}):
            if stop > at:
                out += self.bytes[at:stop]
                at = stop
            for edit in sorted(closing.get(stop, ()), key=lambda e: (-e.start, -e.order)):
                out += edit.after.encode()
                places.append((begun[edit], len(out), edit))
            for edit in sorted(opening.get(stop, ()), key=lambda e: (-e.end, e.order)):
                begun[edit] = len(out)
                number = edit.mutants[0].number if edit.mutants else 0
                out += edit.before.replace("NUMBER", str(number)).replace("NEXT", str(number + 1)).encode()
            if stop in replaced:
                at, text = replaced[stop]
                out += text.encode()
        return bytes(out), places


class Finder:
    """Goes through what clang made of the room's sources."""

    def __init__(self, root, folder):
        self.root = root
        self.folder = folder
        self.sources = {}
        self.index = cindex.Index.create()

    def source(self, path):
        if path not in self.sources:
            self.sources[path] = Source(Path(path), str(Path(path).relative_to(self.root)))
        return self.sources[path]

    def ours(self, path):
        return path.startswith(str(self.folder) + "/") and not any(
            path.startswith(str(inner) + "/") for inner in self.others)

    def read(self, path, arguments, others):
        self.others = others
        unit = self.index.parse(str(path), args=arguments)
        wrong = [d for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
        if wrong:
            raise SystemExit(f"mutants: clang cannot read {path}: {wrong[0]}")
        for cursor in unit.cursor.get_children():
            file = cursor.location.file
            if file and self.ours(str(Path(file.name).resolve())):
                self.walk(cursor, None, self.source(str(Path(file.name).resolve())), "::mutants::now::")

    def walk(self, cursor, parent, source, space):
        kind = cursor.kind
        if kind in CONSTANT:
            return
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        children = list(cursor.get_children())
        if kind in FUNCTIONS:
            body = next((c.extent.start.offset for c in children if c.kind == K.COMPOUND_STMT), end)
            if re.search(rb"\bconst(expr|eval)\b", source.bytes[start:body]):
                space = "::mutants::"
        self.visit(cursor, parent, children, start, end, source, space)
        if kind == K.CASE_STMT:
            children = children[1:]
        for child in children:
            self.walk(child, cursor, source, space)

    def visit(self, cursor, parent, children, start, end, source, space):
        kind, data = cursor.kind, source.bytes
        text = data[start:end]

        def after(offset):
            found = re.compile(rb"\s*(.)", re.S).match(data, offset)
            return found[1] if found else b""

        def before(offset):
            return data[:offset].rstrip()[-1:]

        if kind == K.VAR_DECL:
            self.variable(cursor, parent, start, end, source)
        elif kind == K.INTEGER_LITERAL and re.fullmatch(rb"0[xX][0-9a-fA-F']+[uUlLzZ]*|0[bB][01']+|[0-9][0-9']*[uUlLzZ]*",
                                                        text) and not re.match(rb"\w", data[end:end + 1]):
            digits = re.sub(rb"[uUlLzZ']", b"", text)
            value = int(digits, 8 if re.fullmatch(rb"0[0-7]+", digits) else 0)
            shown = hex if text[1:2] in (b"x", b"X") else str
            changes = [f"{text.decode()} becomes {shown(other)}" for other in (value + 1, value - 1) if other >= 0]
            source.edit("number", start, end, f"{space}number(NUMBER, ", ")", changes)
        elif kind == K.CHARACTER_LITERAL and re.fullmatch(rb"(u8|u|U|L)?'([^'\\]|\\.+)'", text):
            source.edit("character", start, end, f"{space}character(NUMBER, ", ")", [f"{text.decode()} becomes the next"])
        elif kind == K.CXX_BOOL_LITERAL_EXPR and text in (b"true", b"false"):
            source.edit("truth", start, end, f"{space}truth(NUMBER, ", ")", [f"{text.decode()} becomes its opposite"])
        elif kind == K.STRING_LITERAL:
            self.string(start, end, source, space)
        elif kind == K.UNARY_OPERATOR and text.startswith(b"!"):
            source.edit("not", start, end, f"({space}on(NUMBER) != (", "))", [f"{short(text)} without the !"])
        elif kind in (K.BREAK_STMT, K.CONTINUE_STMT) and text in (b"break", b"continue") or (
                kind == K.RETURN_STMT and text == b"return"):
            stop = data.index(b";", end) + 1
            source.edit("leave", start, stop, f"{{ if (!{space}on(NUMBER)) ", " }", [f"{text.decode()} is dropped"])
        operator = self.operator(cursor, children, data)
        if operator:
            self.operation(cursor, children, operator, start, end, source, space)

        for condition in self.conditions(cursor, children, before, after):
            self.condition(condition, source, space)
        for statement in self.statements(cursor, children):
            first, last = statement.extent.start.offset, statement.extent.end.offset
            dropped = data[first:last]
            # What changes nothing but speed is left alone.
            if dropped and after(last) == b";" and not re.match(rb"assert\(|co_|[\w.]+\.(reserve|shrink_to_fit)\(", dropped):
                source.edit("drop", first, last, f"({space}on(NUMBER) ? (void)0 : (void)(", "))",
                            [f"{short(dropped)} is dropped"])

    def operator(self, cursor, children, data):
        """Between the operands of a binary operator: (text, start, end)."""
        if cursor.kind in (K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR) and len(children) == 2:
            left, right = children
        elif cursor.kind in (K.CALL_EXPR, K.UNEXPOSED_EXPR) and len(children) >= 2:
            left, right = children[0], children[-1]
            if cursor.kind == K.CALL_EXPR and not cursor.spelling.startswith("operator"):
                return None
        else:
            return None
        begin, end = left.extent.end.offset, right.extent.start.offset
        if cursor.extent.start.offset != left.extent.start.offset or cursor.extent.end.offset != right.extent.end.offset:
            return None
        found = re.fullmatch(rb"(\s*)(<=>|<<=|>>=|&&|\|\||==|!=|<=|>=|<<|>>|\+=|-=|[-+*/%&|<>])(\s*)", data[begin:end])
        return found and (found[2].decode(), begin + found.start(2), begin + found.end(2))

    def operation(self, cursor, children, operator, start, end, source, space):
        sign, first, last = operator
        data = source.bytes
        built_in = cursor.kind in (K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR)
        whole = short(data[start:end])
        if sign in OPPOSITES:
            source.edit("opposite", start, end, f"({space}on(NUMBER) != (", "))",
                        [f"{whole}: {sign} becomes {OPPOSITES[sign]}"], at=first)
        if sign in COMPARISONS:
            source.edit("bound", start, end, f"{space}{COMPARISONS[sign]}(NUMBER, (", "))",
                        [f"{whole}: {sign} becomes {BOUNDS[sign]}"], [(first, last, "), (")], at=first)
        elif sign in ("&&", "||") and built_in:
            neutral = f"({space}on(NUMBER) || (" if sign == "&&" else f"(!{space}on(NUMBER) && ("
            for child in children:
                a, b = child.extent.start.offset, child.extent.end.offset
                part = short(data[a:b])
                source.edit("operand", a, b, neutral, "))", [f"{part} is dropped from {sign}"])
        elif sign in ARITHMETIC and built_in:
            types = [c.type.get_canonical().kind for c in children]
            if cindex.TypeKind.POINTER in types and (sign != "+" or types[0] != cindex.TypeKind.POINTER):
                return
            name, other = ARITHMETIC[sign]
            source.edit("arithmetic", start, end, f"{space}{name}(NUMBER, (", "))", [f"{whole}: {sign} becomes {other}"],
                        [(first, last, "), (")], at=first)
        elif sign in COMPOUND and built_in:
            name, other = COMPOUND[sign]
            source.edit("arithmetic", start, end, f"{space}{name}(NUMBER, (", "))", [f"{whole}: {sign} becomes {other}"],
                        [(first, last, "), (")], at=first)

    def string(self, start, end, source, space):
        data = source.bytes
        found = STRING.match(data, start)
        if not found:
            return
        suffix = re.compile(rb"\w*").match(data, found.end())
        text = data[start:suffix.end()]
        # The first letter or digit that is no part of a prefix or an escape, or else the first sign.
        begin = text.index(b'"') + 1
        if found[1] is not None:
            begin = text.index(b"(") + 1
        pattern = rb"\\(?:x[0-9a-fA-F]+|u[0-9a-fA-F]{4}|U[0-9a-fA-F]{8}|[0-7]{1,3}|.)|"
        place = next((m for m in re.compile(pattern + rb"[A-Za-z0-9]").finditer(text, begin, found.end() - start - 1)
                      if len(m[0]) == 1), None)
        if not place:
            place = next((m for m in re.compile(pattern + rb"[ -~]").finditer(text, begin, found.end() - start - 1)
                          if len(m[0]) == 1), None)
        if not place:
            return
        other = b"Q" if place[0] != b"Q" else b"Z"
        changed = (text[:place.start()] + other + text[place.end():]).decode()
        source.edit("string", start, suffix.end(), f"({space}on(NUMBER) ? {changed} : ", ")",
                    [f"{short(text)} becomes {short(changed.encode())}"])

    def conditions(self, cursor, children, before, after):
        kind = cursor.kind
        if kind in (K.IF_STMT, K.WHILE_STMT, K.FOR_STMT):
            marks = {K.IF_STMT: (b"(;", b")"), K.WHILE_STMT: (b"(", b")"), K.FOR_STMT: (b";", b";")}[kind]
            for child in children:
                if child.kind.is_expression() and before(child.extent.start.offset) in marks[0] and \
                        after(child.extent.end.offset) in marks[1]:
                    yield child
                    return
        elif kind == K.DO_STMT and len(children) == 2:
            yield children[1]
        elif kind == K.CONDITIONAL_OPERATOR and len(children) == 3:
            yield children[0]
        elif kind == K.RETURN_STMT and children and children[0].type.get_canonical().spelling in ("bool", "const bool"):
            yield children[0]

    def condition(self, cursor, source, space):
        """Negated, unless it is a comparison, an and, an or, or a not: these have changes of their own."""
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        text = source.bytes[start:end]
        children = list(cursor.get_children())
        while cursor.kind in (K.UNEXPOSED_EXPR, K.PAREN_EXPR) and len(children) == 1:
            cursor = children[0]
            children = list(cursor.get_children())
        own = self.operator(cursor, children, source.bytes)
        if own and own[0] in (*OPPOSITES, "&&", "||") or text.startswith(b"!") or text in (b"true", b"false") or not text:
            return
        source.edit("condition", start, end, f"({space}on(NUMBER) != static_cast<bool>(", "))", [f"{short(text)} is negated"])

    def statements(self, cursor, children):
        kind = cursor.kind
        if kind == K.COMPOUND_STMT:
            yield from (c for c in children if c.kind.is_expression())
        elif kind in (K.IF_STMT, K.FOR_STMT, K.WHILE_STMT, K.CXX_FOR_RANGE_STMT, K.CASE_STMT, K.DEFAULT_STMT):
            bodies = children[1:] if kind == K.IF_STMT else children[-1:]
            yield from (c for c in bodies if c.kind.is_expression())

    def variable(self, cursor, parent, start, end, source):
        """A constant of the compiler's is made at run time instead, so that its parts can be changed."""
        head = source.bytes[start:cursor.location.offset]
        found = re.search(rb"\bconstexpr\b", head)
        if not found:
            return
        member = cursor.semantic_parent and cursor.semantic_parent.kind in (
            K.CLASS_DECL, K.STRUCT_DECL, K.CLASS_TEMPLATE, K.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION)
        pointer = cursor.type.get_canonical().kind == cindex.TypeKind.POINTER
        word = ("inline " if member else "") + ("" if pointer else "const")
        at = start + found.start()
        source.edit("constant", at, start + found.end(), "", "", [], [(at, start + found.end(), word)],
                    names=(cursor.spelling,))
        source.edits[-1].span = (start, end)
