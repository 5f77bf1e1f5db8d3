"""Sources that hold many mutants at once, of which a program takes the one whose number it is given.

Compiling costs most: so each function is compiled once with all its mutants, as the cases of a switch.
"""

import re

DECLARATION = 'extern "C" int mutantNumber();\n'
# Returns the number in the environment.
DEFINITION = """#include <cstdlib>
extern "C" int mutantNumber() {
    static const int number = [] {
        const char* const text = std::getenv("MUTANT");
        return text != nullptr ? std::atoi(text) : 0;
    }();
    return number;
}
"""
NOT_A_FUNCTION = re.compile(
    r"(?:typename|namespace|struct|class|enum|union|if|for|while|switch|do|else|try|using|extern|friend|case)\b"
)
ONE_LINE = re.compile(r"^(?P<head>(?: {4})? ?[A-Za-z~].*\)(?: const)?(?: noexcept)?(?: override)?) \{ (?P<body>[^{}]*;) \}$")


class Function:
    """Where the body of a function is, in lines from 0; it ends before `end`."""

    def __init__(self, start, end, is_one_line=False):
        self.start, self.end, self.is_one_line = start, end, is_one_line

    def holds(self, mutant, lines):
        """Whether the mutant changes nothing but the body."""
        first, end = mutant.line - 1, mutant.line - 1 + len(mutant.after)
        if first < self.start or end > self.end:
            return False
        if not self.is_one_line:
            return True
        former, changed = ONE_LINE.match(lines[first]), ONE_LINE.match(mutant.after[0])
        return changed is not None and changed["head"] == former["head"]

    def body(self, lines):
        if self.is_one_line:
            return [ONE_LINE.match(lines[self.start])["body"]]
        return lines[self.start : self.end]


def functions(lines):
    number = 0
    while number < len(lines):
        line = lines[number]
        if (one := ONE_LINE.match(line)) and is_function(one["head"].strip()):
            yield Function(number, number + 1, is_one_line=True)
        elif line.endswith(" {") and (head := head_of(lines, number)) is not None:
            indent = re.match(" *", lines[head])[0]
            end = number + 1
            while lines[end] != indent + "}":
                end += 1
            yield Function(number + 1, end)
            number = end
        number += 1


def head_of(lines, number):
    """The first line of the function whose body begins after this line, or None if it is no function."""
    head = number
    while head > 0 and not ends_something(lines[head - 1]):
        head -= 1
    text = " ".join(line.strip() for line in lines[head : number + 1])[:-2]
    indent = len(lines[head]) - len(lines[head].lstrip())
    return head if indent <= 4 and is_function(text) else None


def is_function(head):
    return (
        "(" in head
        and head.count("(") == head.count(")")
        and not NOT_A_FUNCTION.match(head)
        and not re.search(r"\bconsteval\b|\bconstexpr\b", head)
        and " = " not in head.split("(")[0]
        and not head.endswith("=")
    )


def ends_something(line):
    text = line.strip()
    return text == "" or text.startswith(("//", "#")) or text.endswith((";", "{", "}", ":", ">", "*/"))


def switched(path, lines, numbered):
    """The source with these mutants, given as pairs of number and mutant, and the numbers of those that are in it."""
    taken = set()
    out, line = [DECLARATION, f'#line 1 "{path}"'], 0
    for function in functions(lines):
        own = [(number, mutant) for number, mutant in numbered if function.holds(mutant, lines)]
        if not own:
            continue
        out += lines[line : function.start]
        if function.is_one_line:
            out.append(ONE_LINE.match(lines[function.start])["head"] + " {")
        out.append("switch (::mutantNumber()) {")
        for number, mutant in own:
            out += [f"case {number}: {{", f'#line {function.start + 1} "mutant{number}/{path}"']
            out += [*function.body(mutant.applied(lines)), "} break;"]
        out += ["default: {", f'#line {function.start + 1} "{path}"', *function.body(lines), "} }"]
        if function.is_one_line:
            out.append("}")
        out.append(f'#line {function.end + 1} "{path}"')
        taken |= {number for number, _ in own}
        line = function.end
    return "\n".join(out + lines[line:]), taken
