"""One-place mutations of a C++ source, found in its syntax tree.

mutations_of(source, arguments) gives them all in the order of the text; each holds its place in bytes. What would only
move words about (an include, a static assertion, a type) is none.
"""
import re
from dataclasses import dataclass

from clang import cindex

cindex.Config.set_library_file("libclang-14.so.1")
Kind = cindex.CursorKind

COMPARED = {b"<": (b"<=", b">="), b"<=": (b"<", b">"), b">": (b">=", b"<="), b">=": (b">", b"<"),
            b"==": (b"!=",), b"!=": (b"==",)}
EXCHANGED = {b"&&": (b"||",), b"||": (b"&&",), b"+": (b"-",), b"-": (b"+",), b"*": (b"/",), b"/": (b"*",), b"%": (b"/",),
             b"+=": (b"-=",), b"-=": (b"+=",), b"*=": (b"/=",), b"/=": (b"*=",), b"&": (b"|",), b"|": (b"&",),
             b"<<": (b">>",), b">>": (b"<<",)}
STEPS = {b"++": b"--", b"--": b"++"}
NUMBER = re.compile(rb"^(0[xX][0-9a-fA-F']+|[0-9][0-9']*)(\.[0-9]*)?([uUlLzZfF]*)$")

FUNCTIONS = (Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
             Kind.FUNCTION_TEMPLATE)
CLASSES = (Kind.CLASS_DECL, Kind.STRUCT_DECL, Kind.CLASS_TEMPLATE)
BINARY = (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR)
LITERALS = (Kind.STRING_LITERAL, Kind.CHARACTER_LITERAL, Kind.INTEGER_LITERAL, Kind.FLOATING_LITERAL)
DECLARED = (Kind.VAR_DECL, Kind.FIELD_DECL, Kind.PARM_DECL)
LEFT_OUT = (Kind.STATIC_ASSERT, Kind.ALIGNED_ATTR, Kind.ENUM_DECL, Kind.FRIEND_DECL, Kind.TYPE_ALIAS_DECL)
# Calls without which only time or the moved object differs.
NO_DIFFERENCE = ("move", "forward", "as_const")
ROOM_AHEAD = ("reserve", "shrink_to_fit")
# A parameter that is named so that the compiler does not miss its use.
NAMED_ONLY = re.compile(rb"^\(void\)\w+$")
# Statements that can go or change places: all but those that declare or branch.
STEP_KINDS = (Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.UNARY_OPERATOR,
              Kind.CXX_THROW_EXPR, Kind.UNEXPOSED_EXPR, Kind.CSTYLE_CAST_EXPR)
# A variable that is emptied, gets a value that stands by itself, a handler or a caption, and a form that goes, whose
# caller goes on when the handler has returned: two of them can change places if they do not name each other.
SETTING = re.compile(rb"^(?:([\w.]+(?:->\w+)?)(?:\.clear\(\)|\.SetCaption\(.*\)| [-+]?= "
                     rb"(?:[^()]*|std::move\(\w+\)|std::make_\w+<\w+>\(\)|(?:Bounded\()?\[this\] \{[^{}]*\}\)?))|SetCaption\(\".*\"\)|Hide\(\))$", re.S)
# Properties of one record are set in any order, if the one's value does not ask the record.
PROPERTY = re.compile(rb"^(\w+)->Set(\w+)\((.*)\)$", re.S)
JUMPS = (Kind.RETURN_STMT, Kind.BREAK_STMT, Kind.CONTINUE_STMT)


@dataclass(frozen=True)
class Mutation:
    """A place of one source, in bytes from 0, and what it becomes."""
    start: int
    end: int
    new: bytes
    kind: str
    function: str
    used: int | None  # where the inline function around it begins; None outside one

    def apply(self, source):
        return source[:self.start] + self.new + source[self.end:]

    def line(self, source):
        return source.count(b"\n", 0, self.start) + 1

    def texts(self, source):
        """The lines of the place before and after, in one line each, without the blanks around them."""
        begin = source.rfind(b"\n", 0, self.start) + 1
        end = source.find(b"\n", self.end)
        tail = source[self.end:end if end >= 0 else len(source)]
        return (squeezed(source[begin:self.end] + tail), squeezed(source[begin:self.start] + self.new + tail))


def squeezed(text):
    words = " ".join(text.decode("utf-8", "replace").split())
    return words or "(nothing)"


class Finder:
    def __init__(self, source, path):
        self.source = source
        self.path = path
        self.found = []
        self.names = []
        self.used = None
        self.in_template = 0

    def text(self, node):
        return self.source[node.extent.start.offset:node.extent.end.offset]

    def add(self, start, end, new, kind):
        if start < end and self.source[start:end] != new:
            self.found.append(Mutation(start, end, new, kind, "::".join(self.names) or "(file)", self.used))

    def walk(self, node):
        if node.kind in LEFT_OUT or (node.kind == Kind.VAR_DECL and not self.names and self.path.endswith(".h")):
            return  # a constant of a header is in whatever has included it
        if node.kind == Kind.PARM_DECL and self.path.endswith(".h"):
            return  # a value that is not given is in whatever has called
        if node.kind in FUNCTIONS and self.text(node).startswith(b"consteval "):
            return  # it runs in the compiler alone, whose word ends the build
        entered = self.enter(node)
        if node.kind == Kind.FIELD_DECL and self.used is None and not self.in_template:
            self.used = self.constructor_of(node.semantic_parent)
            self.visit_children(node)
            self.used = None
            return
        self.visit(node)
        self.visit_children(node)
        if entered:
            self.leave(node)

    @staticmethod
    def constructor_of(owner):
        """Where an inline constructor begins, which gives a member its first value; None without one."""
        for child in owner.get_children():
            if child.kind == Kind.CONSTRUCTOR and child.is_definition() and not child.is_default_method():
                return child.extent.start.offset
        return None

    def visit_children(self, node):
        for child in node.get_children():
            if node.kind in DECLARED and child.extent.start.offset <= node.location.offset:
                continue  # a part of the type
            if child.location.file is None or child.location.file.name == self.path:
                self.walk(child)

    def enter(self, node):
        is_function = node.kind in FUNCTIONS
        is_file_constant = node.kind == Kind.VAR_DECL and not self.names
        if not (is_function or is_file_constant or node.kind in CLASSES) or not node.spelling:
            return False
        name = node.spelling.split("<")[0] if node.kind == Kind.CONSTRUCTOR else node.spelling
        owner = node.semantic_parent
        if is_function and not self.names and owner is not None and owner.kind in CLASSES:
            name = owner.spelling + "::" + name
        self.names.append(name)
        if node.kind in (Kind.FUNCTION_TEMPLATE, Kind.CLASS_TEMPLATE):
            self.in_template += 1
        if is_function and self.used is None and not self.in_template:
            self.used = node.extent.start.offset
        return True

    def leave(self, node):
        self.names.pop()
        if node.kind in (Kind.FUNCTION_TEMPLATE, Kind.CLASS_TEMPLATE):
            self.in_template -= 1
        if node.kind in FUNCTIONS and self.used == node.extent.start.offset:
            self.used = None

    def visit(self, node):
        if node.kind in BINARY:
            self.operator(node, list(node.get_children()))
        elif node.kind == Kind.CALL_EXPR:
            self.call(node)
        elif node.kind in LITERALS:
            self.literal(node)
        elif node.kind == Kind.CXX_BOOL_LITERAL_EXPR:
            word = self.text(node)
            self.add(node.extent.start.offset, node.extent.end.offset, {b"true": b"false"}.get(word, b"true"), "truth")
        elif node.kind == Kind.UNARY_OPERATOR:
            self.unary(node)
        elif node.kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR, Kind.DO_STMT, Kind.FOR_STMT):
            self.condition(node)
        elif node.kind == Kind.COMPOUND_STMT:
            self.block(node)

    def operator(self, node, sides):
        """A binary operator between the two sides, also one of a class."""
        if len(sides) != 2:
            return
        left, right = sides
        between = self.source[left.extent.end.offset:right.extent.start.offset]
        word = between.strip()
        at = left.extent.end.offset + between.find(word)
        for new in COMPARED.get(word, ()):
            self.add(at, at + len(word), new, "comparison")
        for new in EXCHANGED.get(word, ()):
            self.add(at, at + len(word), new, "operator")
        if word in (b"&&", b"||") or (word == b"+" and node.kind == Kind.CALL_EXPR):
            self.add(left.extent.end.offset, right.extent.end.offset, b"", "right side dropped")
            self.add(left.extent.start.offset, right.extent.start.offset, b"", "left side dropped")

    def call(self, node):
        children = list(node.get_children())
        if node.spelling.startswith("operator") and len(children) == 3:
            self.operator(node, [children[0], children[2]])
        elif len(children) == 2 and node.spelling and self.text(node).endswith(b")"):
            # A function of one value that gives the same kind of value back: the value itself instead.
            callee, value = children
            is_free = callee.referenced is not None and callee.referenced.kind == Kind.FUNCTION_DECL
            if is_free and not node.spelling.startswith("operator") and node.spelling not in NO_DIFFERENCE:
                self.add(node.extent.start.offset, node.extent.end.offset, b"(" + self.text(value) + b")", "call dropped")

    def literal(self, node):
        text = self.text(node)
        start, end = node.extent.start.offset, node.extent.end.offset
        if node.kind == Kind.STRING_LITERAL:
            if text.startswith(b'"'):
                self.add(start, start + 1, b'"#', "text")
        elif node.kind == Kind.CHARACTER_LITERAL:
            self.add(start, end, b"'#'" if text != b"'#'" else b"'!'", "text")
        else:
            match = NUMBER.match(text)
            if match:
                for step in (1, -1):
                    whole = int(match.group(1).replace(b"'", b""), 0 if match.group(1)[:2].lower() == b"0x" else 10)
                    if whole + step >= 0:
                        digits = str(whole + step).encode()
                        self.add(start, end, digits + (match.group(2) or b"") + match.group(3), "number")

    def unary(self, node):
        text, start = self.text(node), node.extent.start.offset
        operand = next(iter(node.get_children()), None)
        if operand is None:
            return
        if text[:2] in STEPS:
            self.add(start, start + 2, STEPS[text[:2]], "step")
        elif text[-2:] in STEPS:
            self.add(node.extent.end.offset - 2, node.extent.end.offset, STEPS[text[-2:]], "step")
        elif text[:1] in (b"!", b"-"):
            self.add(start, operand.extent.start.offset, b"", "sign dropped")

    def condition(self, node):
        children = list(node.get_children())
        at = {Kind.FOR_STMT: 1, Kind.DO_STMT: 1}.get(node.kind, 0)
        if node.kind == Kind.IF_STMT:  # behind a declaration, if it has one
            at = next((i for i, child in enumerate(children) if child.kind.is_expression()), 0)
        if at >= len(children) or not children[at].kind.is_expression():
            return
        where = children[at]
        text = self.text(where)
        if where.kind == Kind.BINARY_OPERATOR and not re.search(rb"&&|\|\|", text) or text.startswith(b"!"):
            return  # the comparison is turned and the sign dropped as well
        if text and where.type.spelling == "bool" and b"\n" not in self.source[node.extent.start.offset:where.extent.start.offset]:
            self.add(where.extent.start.offset, where.extent.end.offset, b"!(" + text + b")", "condition negated")

    def block(self, node):
        children = list(node.get_children())
        for i, child in enumerate(children):
            end = self.statement_end(child)
            if end is None or child.spelling in ROOM_AHEAD or NAMED_ONLY.match(self.text(child)):
                continue
            is_last = i + 1 == len(children)
            goes_on_all_the_same = is_last and (child.kind == Kind.RETURN_STMT and self.is_body(node)
                                                or child.kind == Kind.BREAK_STMT and self.is_of_switch(node))
            if child.kind in STEP_KINDS or (child.kind in JUMPS and not goes_on_all_the_same):
                self.add(child.extent.start.offset, end, b"", "statement dropped")
            following = children[i + 1] if i + 1 < len(children) else None
            if child.kind in STEP_KINDS and following is not None and following.kind in STEP_KINDS:
                last = self.statement_end(following)
                if last is not None and not self.are_apart(child, following):
                    swapped = (self.source[following.extent.start.offset:last] + b" "
                               + self.source[child.extent.start.offset:end])
                    self.add(child.extent.start.offset, last, swapped, "statements exchanged")

    def are_apart(self, first, second):
        """Whether nothing can tell which of the two came first."""
        if self.text(first) == self.text(second):
            return True
        one, other = PROPERTY.match(self.text(first)), PROPERTY.match(self.text(second))
        if one is not None and other is not None and one.group(1) == other.group(1):
            return one.group(2) != other.group(2) and one.group(1) not in one.group(3) + other.group(3)
        one, other = SETTING.match(self.text(first)), SETTING.match(self.text(second))
        # A form's own caption has no name in front.
        return (one is not None and other is not None and (one.group(1) or b"Caption()") not in other.group(0)
                and (other.group(1) or b"Caption()") not in one.group(0))

    def is_of_switch(self, node):
        return re.search(rb"\bswitch \([^{}]*\) $", self.source[:node.extent.start.offset][-200:]) is not None

    def is_body(self, node):
        # Where the function's own block ends, a value must be given back.
        after = self.source[node.extent.end.offset:node.extent.end.offset + 1]
        before = self.source[:node.extent.start.offset].rstrip()
        return after in (b"", b"\n") and not re.search(rb"(else|\b(if|for|while|switch) \(.*\))$", before[-200:], re.S)

    def statement_end(self, node):
        """Behind the statement's semicolon; None when it has none."""
        end = node.extent.end.offset
        rest = self.source[end:end + 80]
        blanks = len(rest) - len(rest.lstrip())
        return end + blanks + 1 if rest[blanks:blanks + 1] == b";" else None


def mutations_of(path, arguments):
    """All mutations of the file; raises RuntimeError where it cannot be read as C++."""
    unit = cindex.Index.create().parse(str(path), arguments)
    bad = [str(each) for each in unit.diagnostics if each.severity >= cindex.Diagnostic.Error]
    if bad:
        raise RuntimeError(f"{path}: {bad[0]}")
    source = path.read_bytes()
    finder = Finder(source, str(path))
    for child in unit.cursor.get_children():
        if child.location.file is not None and child.location.file.name == str(path):
            finder.walk(child)
    return sorted(set(finder.found), key=lambda each: (each.start, each.end, each.new))
