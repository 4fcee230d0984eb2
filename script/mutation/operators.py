# SPDX-License-Identifier: Apache-2.0
"""Finds the places of a C++ source where a small mistake could be made, and makes it.

Works on tokens alone, without a parser: what doesn't compile is found out by compiling it.
"""

import dataclasses
import hashlib
import re

TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<directive>^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
      | (?P<string>R"\((?:.*?)\)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+')
      | (?P<number>(?:0[xX][0-9A-Fa-f']+|(?:\d[\d']*\.?\d*|\.\d+)(?:[eE][+-]?\d+)?)[uUlLfFzZ]*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<sign><=>|<<=|>>=|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=
               |[-+*/%&|^~!=<>?:;,.(){}\[\]])""",
    re.VERBOSE | re.DOTALL | re.MULTILINE)

# Only where a space stands on both sides, as the project's format has it: elsewhere "<" opens the
# arguments of a template, and "&" or "*" belongs to a type.
SWAPS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
    "==": ("!=",), "!=": ("==",), "&&": ("||",), "||": ("&&",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "&": ("|",), "|": ("&",),
    "<<": (">>",), ">>": ("<<",), "+=": ("-=",), "-=": ("+=",), "*=": ("/=",),
}
RELATIONAL = ("<", "<=", ">", ">=", "==", "!=")
LOCKS = re.compile(r"\b(PrivateGuard|StylingLock|scoped_lock|lock_guard|unique_lock)\b"
                   r"|\.(un)?lock\(\);$")
DECLARATION = re.compile(
    r"^(const|static|constexpr|constinit|thread_local|auto|using|typename|struct|class|enum|extern"
    r"|template|friend|static_assert|public|private|protected|namespace|explicit|virtual|inline)\b"
    r"|^[\w:]+(<.*>)?(::\w+)*( [&*]+|[&*]+ ?| )\w+ ?(=|\(|\{|;|\[)")
CONTROL = ("if", "for", "while", "switch", "catch")


@dataclasses.dataclass
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclasses.dataclass
class Mutant:
    file: str
    text: str  # the whole source
    line: int
    operator: str
    begin: int  # what is replaced
    end: int
    replacement: str
    original: str = ""  # the lines around the place, their blanks made one
    mutated: str = ""
    place: int = 0  # among those of the same two texts, from 1
    identity: str = ""  # the same as long as these lines stand in the file


def tokens_of(text):
    tokens = []
    for match in TOKEN.finditer(text):
        if match.lastgroup not in ("comment", "directive"):
            tokens.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return tokens


class Source:
    """The tokens of a source, which of them are code that runs, and which belong together."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self.tokens = tokens_of(text)
        self.partner = self._partners()
        self.runs = self._running()

    def _partners(self):
        partner, stack = {}, []
        for i, token in enumerate(self.tokens):
            if token.text in "([{" and token.kind == "sign":
                stack.append(i)
            elif token.text in ")]}" and token.kind == "sign":
                opening = stack.pop()
                partner[opening], partner[i] = i, opening
        return partner

    def _head(self, brace):
        """The tokens between the end of what stands before and an opening brace."""
        begin = brace
        while begin > 0 and self.tokens[begin - 1].text not in (";", "{", "}"):
            begin = self.partner[begin - 1] if self.tokens[begin - 1].text == ")" else begin - 1
        return [token.text for token in self.tokens[begin:brace]]

    def _running(self):
        """For each token whether it stands in a function."""
        runs, scopes = [], [False]
        for i, token in enumerate(self.tokens):
            if token.text == "{" and token.kind == "sign":
                runs.append(scopes[-1])
                head = self._head(i)
                names = ("namespace", "class", "struct", "enum", "union", "extern")
                scopes.append(scopes[-1] or (bool(head) and not any(n in head for n in names)))
            else:
                if token.text == "}" and token.kind == "sign":
                    scopes.pop()
                runs.append(scopes[-1])
        return runs

    def is_spaced(self, i):
        token = self.tokens[i]
        return (self.text[token.begin - 1].isspace() and token.end < len(self.text)
                and self.text[token.end].isspace())

    def statement_at(self, i):
        """The token after a simple statement that begins at a token; nothing where none does."""
        before = self.tokens[i - 1].text if i else ";"
        begins = before in (";", "{", "}", "else", "do") or self._ends_label(i - 1)
        if not begins or not self.runs[i] or self.tokens[i].text in ("{", "}", ";"):
            return None
        at = i
        while self.tokens[at].text != ";":
            if self.tokens[at].text in (")", "]", "}"):
                return None
            at = self.partner.get(at, at) + 1
            if at >= len(self.tokens):
                return None
        return at

    def _ends_label(self, i):
        if self.tokens[i].text != ":":
            return False
        while i > 0 and self.tokens[i].text not in (";", "{", "}", "?", "case", "default"):
            i -= 1
        return self.tokens[i].text in ("case", "default")

    def is_one_comparison(self, begin, end):
        """Whether the tokens are a comparison or a negation alone, which other mutants negate."""
        signs = []
        while begin < end:
            signs.append(self.tokens[begin].text)
            begin = self.partner.get(begin, begin) + 1
        joined = any(sign in ("&&", "||", "?") for sign in signs)
        return not joined and (signs[0] == "!" or any(sign in RELATIONAL for sign in signs))

    def condition_before(self, question):
        """Where the condition of a conditional expression begins."""
        at = question
        while at > 0:
            before = self.tokens[at - 1].text
            if before in (")", "]", "}"):
                at = self.partner[at - 1]
                continue
            if before in ("(", "[", "{", ";", ",", "=", "return", "?", ":", "+=", "<<"):
                break
            at -= 1
        return at


def mutants_of(name, text):
    """Every mutant of a source, in order."""
    source = Source(name, text)
    found = []

    def add(operator, begin, end, replacement):
        found.append(Mutant(name, text, text.count("\n", 0, begin) + 1, operator, begin, end,
                            replacement))

    for i, token in enumerate(source.tokens):
        _mutate_sign(source, i, add)
        _mutate_word(source, i, add)
        _mutate_number(source, i, add)
        if token.text in ("if", "while"):
            _negate_condition(source, i, add)
        end = source.statement_at(i)
        if end is not None:
            _mutate_statement(source, i, end, add)
    _describe(source, found)
    return found


def _mutate_sign(source, i, add):
    token = source.tokens[i]
    if token.kind != "sign":
        return
    if token.text in SWAPS and source.is_spaced(i):
        operator = "relation" if token.text in RELATIONAL else "operator"
        for other in SWAPS[token.text]:
            add(operator, token.begin, token.end, other)
    elif token.text == "!" and source.runs[i]:
        add("negation", token.begin, token.end, "")
    elif token.text in ("++", "--") and source.runs[i]:
        add("operator", token.begin, token.end, "--" if token.text == "++" else "++")
    elif token.text == "?" and source.runs[i]:
        condition = source.condition_before(i)
        if source.is_one_comparison(condition, i):
            return
        first, last = source.tokens[condition].begin, source.tokens[i - 1].end
        add("condition", first, last, f"!({source.text[first:last]})")


def _mutate_word(source, i, add):
    token = source.tokens[i]
    if token.kind == "name" and token.text in ("true", "false"):
        add("literal", token.begin, token.end, "false" if token.text == "true" else "true")


def _mutate_number(source, i, add):
    token = source.tokens[i]
    if token.kind != "number" or source.tokens[i - 1].text == "[":
        return
    if re.search(r"[.eE]", token.text) and not token.text.lower().startswith("0x"):
        add("constant", token.begin, token.end, f"({token.text} + 0.01)")
        return
    add("constant", token.begin, token.end, f"({token.text} + 1)")
    if token.text.rstrip("uUlLzZ") != "0":
        add("constant", token.begin, token.end, f"({token.text} - 1)")


def _negate_condition(source, i, add):
    opening = i + 1
    if source.tokens[opening].text != "(":
        return
    closing = source.partner[opening]
    begin, end = source.tokens[opening].end, source.tokens[closing].begin
    inner = source.text[begin:end]
    declared = re.match(r"[^()]*?\b(\w+)(\])? = ", inner)
    if ";" in inner:
        semicolon = begin + inner.rindex(";") + 1
        add("condition", semicolon, end, f" !({source.text[semicolon:end].strip()})")
    elif declared:
        add("condition", end, end, f"; !{declared.group(1)}")
    elif not source.is_one_comparison(opening + 1, closing):
        add("condition", begin, end, f"!({inner})")


def _mutate_statement(source, i, end, add):
    begin, after = source.tokens[i].begin, source.tokens[end].end
    text = " ".join(source.text[begin:after].split())
    first = source.tokens[i].text
    if first == "return":
        value = text[len("return"):-1].strip()
        if value and value not in ("{}", "nullptr", "std::nullopt", "true", "false", "*this", "0"):
            add("return", begin, after, "return {};")
    elif first in ("break", "continue", "throw"):
        add("statement", begin, after, ";")
    elif LOCKS.search(text):
        add("lock", begin, after, ";")
    elif first not in CONTROL + ("else", "case", "default", "do", "try", "goto"):
        if not DECLARATION.match(text) and re.search(r"[(=]|\+\+|--", text):
            add("statement", begin, after, ";")


def _describe(source, found):
    seen = {}
    for mutant in found:
        begin = source.text.rfind("\n", 0, mutant.begin) + 1
        end = source.text.find("\n", mutant.end)
        replaced = (source.text[begin:mutant.begin] + mutant.replacement
                    + source.text[mutant.end:end])
        mutant.original = " ".join(source.text[begin:end].split())
        mutant.mutated = " ".join(replaced.split())
        key = f"{source.name}\n{mutant.original}\n{mutant.mutated}"
        seen[key] = seen.get(key, 0) + 1
        mutant.place = seen[key]
        mutant.identity = hashlib.sha256(f"{key}\n{seen[key]}".encode()).hexdigest()[:12]


def apply(mutant):
    return mutant.text[:mutant.begin] + mutant.replacement + mutant.text[mutant.end:]
