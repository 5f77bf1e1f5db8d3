"""Sources that hold many mutants at once, of which a program takes the one whose number it is given.

Compiling costs most: so each function is compiled once with all its mutants, as the cases of a switch, and so is the
initial value of each variable outside of functions.
"""

import re

DECLARATION = 'extern "C" int mutantNumber(int site);\n'
# Returns the number in the environment. With MUTANTS_REACHED in the environment it writes into that file which
# functions each test reaches, also in the processes that the test forks: the name of the test (a dash for what is
# reached before the first), milliseconds of processor time, and the number of the first mutant of each function.
DEFINITION = """#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int Sites = 1 << 16;

unsigned char* reached() {
    static unsigned char* const map = std::getenv("MUTANTS_REACHED") == nullptr
        ? nullptr
        : static_cast<unsigned char*>(
              mmap(nullptr, Sites, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    return map;
}

double milliseconds() {
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage used = {};
        getrusage(who, &used);
        sum += 1e3 * (used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
            1e-3 * (used.ru_utime.tv_usec + used.ru_stime.tv_usec);
    }
    return sum;
}

class Recorder : public testing::EmptyTestEventListener {
    std::FILE* out_ = std::fopen(std::getenv("MUTANTS_REACHED"), "w");
    double start_ = 0;

    void Write(const std::string& name) {
        std::fprintf(out_, "%s %d", name.c_str(), static_cast<int>(milliseconds() - start_));
        for (int site = 0; site < Sites; ++site) {
            if (reached()[site] != 0) {
                std::fprintf(out_, " %d", site);
                reached()[site] = 0;
            }
        }
        std::fprintf(out_, "\\n");
        std::fflush(out_);
        start_ = milliseconds();
    }

    void OnTestProgramStart(const testing::UnitTest&) override { Write("-"); }
    void OnTestEnd(const testing::TestInfo& test) override {
        Write(std::string(test.test_suite_name()) + "." + test.name());
    }
};

const bool isRecording = [] {
    if (reached() == nullptr) {
        return false;
    }
    testing::UnitTest::GetInstance()->listeners().Append(new Recorder);
    return true;
}();

} // namespace

extern "C" int mutantNumber(int site) {
    static const int number = [] {
        const char* const text = std::getenv("MUTANT");
        return text != nullptr ? std::atoi(text) : 0;
    }();
    if (unsigned char* const map = reached(); map != nullptr) {
        map[site] = 1;
    }
    return number;
}
"""
NOT_A_FUNCTION = re.compile(
    r"(?:typename|namespace|struct|class|enum|union|if|for|while|switch|do|else|try|using|extern|friend|case)\b"
)
ONE_LINE = re.compile(
    r"^(?P<head>(?: {4})? ?[A-Za-z~].*\)(?: const)?(?: noexcept)?(?: override)?) \{ (?P<body>[^{}]*;) \}$"
)


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

    def switched(self, path, lines, own):
        out = [ONE_LINE.match(lines[self.start])["head"] + " {"] if self.is_one_line else []
        site = own[0][0]
        out.append(f"switch (__builtin_is_constant_evaluated() ? 0 : ::mutantNumber({site})) {{")
        for number, mutant in own:
            out += [f"case {number}: {{", f'#line {self.start + 1} "mutant{number}/{path}"']
            out += [*self.body(mutant.applied(lines)), "} break;"]
        out += ["default: {", f'#line {self.start + 1} "{path}"', *self.body(lines), "} }"]
        if self.is_one_line:
            out.append("}")
        out.append(f'#line {self.end + 1} "{path}"')
        return out


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
        and not re.search(r"\bconsteval\b", head)
        and " = " not in head.split("(")[0]
        and not head.endswith("=")
    )


def ends_something(line):
    text = line.strip()
    return text == "" or text.startswith(("//", "#")) or text.endswith((";", "{", "}", ":", ">", "*/"))


VALUE = re.compile(
    r"^(?P<indent> {0,4})(?P<kind>(?:inline |static |constexpr |const )*)"
    r"(?P<type>(?!return|using|else|enum|template)[A-Za-z_][\w:<>, ]*?) (?P<name>\w+) = (?P<value>[^;]+);(?P<rest>.*)$"
)


class Value:
    """A variable outside all functions with an initial value, in a line of its own."""

    def __init__(self, number, line):
        self.start, self.end, self.parts = number, number + 1, VALUE.match(line)

    def holds(self, mutant, lines):
        """Whether the mutant changes nothing but the value."""
        if mutant.line - 1 != self.start or len(mutant.after) != 1:
            return False
        changed = VALUE.match(mutant.after[0])
        return changed is not None and all(
            changed[part] == self.parts[part] for part in ("kind", "type", "name", "rest")
        )

    def written(self, number, path, line):
        """The value that a line gives, as one of the type."""
        value = VALUE.match(line)["value"]
        kind = self.parts["type"]
        whole = f"{kind}{value}" if value.startswith("{") else f"static_cast<{kind}>({value})"
        return [f'#line {self.start + 1} "mutant{number}/{path}"', whole]

    def switched(self, path, lines, own):
        """A constant of the compiler becomes one that is set before main(), and can't be the size of an array then."""
        kind = self.parts["kind"].replace("constexpr ", "const ")
        if "static " in kind and "inline " not in kind and self.parts["indent"]:
            kind = "inline " + kind
        site = own[0][0]
        out = [f"{self.parts['indent']}{kind}{self.parts['type']} {self.parts['name']} ="]
        for number, mutant in own:
            out += [f"::mutantNumber({site}) == {number} ?", *self.written(number, path, mutant.after[0]), ":"]
        out += [*self.written(0, path, lines[self.start]), f"; {self.parts['rest']}", f'#line {self.end + 1} "{path}"']
        return out


def values(lines, inside, constants):
    """The values outside the functions, besides those that have to be constant when the source is compiled."""
    for number, line in enumerate(lines):
        match = VALUE.match(line)
        if match and number not in inside and match["name"] not in constants and line.count("{") == line.count("}"):
            yield Value(number, line)


def switched(path, lines, numbered, constants=()):
    """The source with these mutants, given as pairs of number and mutant, and where those that are in it
    are: their numbers, and with each the number by which its function reports that it is reached."""
    taken = {}
    out, line = [DECLARATION, f'#line 1 "{path}"'], 0
    places = list(functions(lines))
    inside = {number for function in places for number in range(function.start, function.end)}
    places += values(lines, inside, constants)
    for place in sorted(places, key=lambda place: place.start):
        own = [(number, mutant) for number, mutant in numbered if place.holds(mutant, lines)]
        if own:
            out += [*lines[line : place.start], *place.switched(path, lines, own)]
            taken |= {number: own[0][0] for number, _ in own}
            line = place.end
    return "\n".join(out + lines[line:]), taken
