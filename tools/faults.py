"""Single faults that could stand in C++ text, found by its tokens: what tools/mutate plants."""
import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<space>\s+ | //[^\n]* | /\*.*?\*/ | \#(?:[^\n]*\\\n)*[^\n]*)
  | (?P<text>\w*R"\( .*? \)" | (?:u8|[uUL])?"(?:\\.|[^"\\])*" | (?:u8|[uUL])?'(?:\\.|[^'\\])+')
  | (?P<number>\.?\d(?:[eE][+-] | '(?=\w) | [\w.])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign><=> | ->\*? | <<= | >>= | \.\.\. | :: | && | \|\| | [-+*/%&|^<>=!]= | << | >> | \+\+ | -- | .)
""", re.VERBOSE | re.DOTALL)

# As clang-format writes them, these have a space on both sides where they are operators of two operands, and
# not where they are brackets, pointers or references.
BINARY = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "*=": "/=", "|=": "&=", "&=": "|=",
}
STEPS = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true"}
OPEN = {"(": ")", "[": "]", "{": "}"}
CLOSE = set(OPEN.values())
# What cannot be the name of a function that is called.
NO_CALLS = {"if", "for", "while", "switch", "return", "sizeof", "alignof", "decltype", "catch", "noexcept"}
# Both orders are the same.
SYMMETRIC = {"max", "min", "swap"}
# Where a block is not one of code.
DECLARATIONS = {"namespace", "class", "struct", "enum", "union"}
BRACKETED = {"if", "for", "while"}


@dataclass(frozen=True)
class Fault:
    file: str
    line: int
    column: int
    kind: str
    start: int
    end: int
    text: str  # what stands between start and end then

    @property
    def id(self):
        return f"{self.file}:{self.line}:{self.column}:{self.kind}"

    def plant(self, source):
        return source[:self.start] + self.text + source[self.end:]


@dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int
    match: int = -1  # of a bracket: where the other one is
    block: int = -1  # the bracket around it, none at the end of the file
    code: bool = False  # in the body of a function, or in a value of several members


def tokens_of(source):
    tokens = [Token(found.lastgroup, found.group(), found.start(), found.end())
              for found in TOKEN.finditer(source) if found.lastgroup != "space"]
    opened = []
    for index, token in enumerate(tokens):
        if token.text in CLOSE and opened:
            token.match = opened.pop()
            tokens[token.match].match = index
        token.block = opened[-1] if opened else -1
        token.code = any(tokens[block].code for block in opened[-1:])
        if token.text in OPEN:
            if token.text == "{" and not token.code:
                token.code = not declares(tokens, index)
            opened.append(index)
    return tokens


def declares(tokens, brace):
    """Whether a block is that of a class or of a namespace."""
    head = brace - 1
    while head >= 0 and tokens[head].text not in (";", "{", "}"):
        head -= 1
    texts = [token.text for token in tokens[head + 1:brace]]
    return bool(DECLARATIONS.intersection(texts)) and "(" not in texts


class Finder:
    """The faults of one file."""

    def __init__(self, file, source):
        self.file = file
        self.source = source
        self.tokens = tokens_of(source)

    def faults(self):
        ends = -1  # of a static_assert or the parameters of a template
        for index, token in enumerate(self.tokens):
            if token.text in ("static_assert", "template"):
                ends = self.end_of_compile_time(index)
            if index <= ends:
                continue
            yield from self.of_operator(index)
            yield from self.of_number(index)
            if token.code:
                yield from self.of_condition(index)
                yield from self.of_arguments(index)
                yield from self.of_result(index)
                yield from self.of_statement(index)

    def end_of_compile_time(self, index):
        if self.text(index) == "static_assert":
            return self.tokens[index + 1].match
        depth = 0
        while index + 1 < len(self.tokens):
            index += 1
            depth += {"<": 1, ">": -1, ">>": -2}.get(self.text(index), 0)
            if depth <= 0:
                break
        return index

    # --- What is replaced ---

    def of_operator(self, index):
        token = self.tokens[index]
        if self.text(index - 1) == "operator":
            return
        if token.text in BINARY and self.is_spaced(token):
            yield self.fault(token.text, token.start, token.end, BINARY[token.text])
        elif token.text in STEPS and token.code:
            yield self.fault(token.text, token.start, token.end, STEPS[token.text])
        elif token.text in WORDS:
            yield self.fault(token.text, token.start, token.end, WORDS[token.text])
        elif token.text == "!" and token.code:
            yield self.fault("not", token.start, token.end, "")

    def of_number(self, index):
        token = self.tokens[index]
        found = re.fullmatch(r"(0[xX][\da-fA-F']+|\d[\d']*(?P<fraction>\.\d*)?(?:[eE][+-]?\d+)?)(\w*)", token.text)
        if token.kind != "number" or not found or self.is_enumerator(index):
            return
        digits, suffix = found.group(1).replace("'", ""), found.group(3)
        value = float(digits) if re.search(r"^(?!0[xX]).*[.eE]", digits) else int(digits, 0)
        yield self.fault("+1", token.start, token.end, f"{value + 1}{suffix}")
        if value > 0:
            yield self.fault("-1", token.start, token.end, f"{value - 1}{suffix}")

    def of_condition(self, index):
        """if, while and for: the contrary."""
        if self.text(index) not in BRACKETED or self.text(index + 1) != "(":
            return
        bracket = index + 1
        parts = self.split(bracket, ";")
        if self.text(index) == "for" and len(parts) != 3:
            return
        first, last = parts[1] if self.text(index) == "for" else parts[-1]
        if first < last:
            start, end = self.tokens[first].start, self.tokens[last - 1].end
            yield self.fault("negated", start, end, f"!({self.source[start:end]})")

    def of_arguments(self, index):
        """The first two arguments of a call change places."""
        name = self.text(index)
        if self.tokens[index].kind != "name" or self.text(index + 1) != "(" or name in NO_CALLS | SYMMETRIC:
            return
        parts = self.split(index + 1, ",")
        if len(parts) < 2:
            return
        (start, middle), (second, end) = [
            (self.tokens[first].start, self.tokens[last - 1].end) for first, last in parts[:2]]
        one, other = self.source[start:middle], self.source[second:end]
        if one != other:
            yield self.fault("swapped", start, end, other + self.source[middle:second] + one)

    def of_result(self, index):
        """return gives an empty value."""
        if self.text(index) != "return":
            return
        end = self.end_of_statement(index)
        if end is None or self.text(index + 1) in (";", "{", "nullptr", "true", "false"):
            return
        yield self.fault("result", self.tokens[index + 1].start, self.tokens[end].start, "{}")

    def of_statement(self, index):
        """A statement that has an effect is not there."""
        if not self.starts_statement(index) or not self.has_effect(index):
            return
        end = self.end_of_statement(index)
        if end is not None:
            yield self.fault("dropped", self.tokens[index].start, self.tokens[end].start, "")

    # --- The text around ---

    def is_enumerator(self, index):
        """The names of an enumeration have the values that others gave them, or any."""
        brace = self.tokens[index].block
        head = brace - 1
        while head >= 0 and self.text(head) not in (";", "{", "}"):
            head -= 1
        return brace >= 0 and self.text(brace) == "{" and "enum" in (self.text(head + 1), self.text(head + 2))

    def fault(self, kind, start, end, text):
        line = self.source.count("\n", 0, start) + 1
        column = start - self.source.rfind("\n", 0, start)
        return Fault(self.file, line, column, kind, start, end, text)

    def text(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def is_spaced(self, token):
        return self.source[token.start - 1].isspace() and self.source[token.end].isspace()

    def split(self, bracket, separator):
        """The tokens between brackets as pairs of the first and the one behind the last."""
        end = self.tokens[bracket].match
        if end < 0 or end == bracket + 1:
            return []
        cuts = [index for index in range(bracket + 1, end)
                if self.text(index) == separator and self.tokens[index].block == bracket]
        return list(zip([bracket + 1] + [cut + 1 for cut in cuts], cuts + [end]))

    def starts_statement(self, index):
        block = self.tokens[index].block
        if block < 0 or self.text(block) != "{":
            return False
        before = self.text(index - 1)
        if before == ")":
            return self.text(self.tokens[index - 1].match - 1) in BRACKETED
        return before in (";", "{", "}", "else", "do", ":")

    def has_effect(self, index):
        """A call, an assignment, a step, or a jump; a declaration has one name more before these."""
        if self.text(index) in ("break", "continue", "delete", "throw", "++", "--", "*"):
            return True
        if self.text(index) == "return":
            return self.text(index + 1) == ";"
        if self.tokens[index].kind != "name" or self.text(index) in NO_CALLS:
            return False
        while True:
            index += 1
            if self.text(index) == "[":
                index = self.tokens[index].match
            elif self.text(index) in ("::", ".", "->"):
                index += 1
            else:
                return self.text(index) in ("(", "=", "++", "--") or (
                    self.text(index) in BINARY and self.text(index).endswith("=") and
                    self.text(index) not in ("==", "!=", "<=", ">="))

    def end_of_statement(self, index):
        block = self.tokens[index].block
        while index < len(self.tokens):
            if self.tokens[index].block == block and self.text(index) == ";":
                return index
            if index == self.tokens[block].match:
                return None
            index += 1
        return None


def faults_of(file, source):
    return list(Finder(file, source).faults())
