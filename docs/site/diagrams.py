"""Mermaid's diagrams as Doxygen can show them: flow charts as graphs, sequences as lines of text.

Only what the pages use is understood; anything else is an error.
"""

import re

NODE = r'(\w+)(?:(\[\(|\[)"([^"]*)"\)?\])?'
ARROW = re.compile(NODE + r"\s*-->(?:\|([^|]*)\|)?\s*" + NODE)
MESSAGE = re.compile(r"(\w+)-?->>(\w+): (.*)")


def _named(shown, name, bracket, label):
    if label is not None:
        shown[name] = (label, "cylinder" if bracket == "[(" else "box")
    shown.setdefault(name, (name, "box"))


def _flowchart(lines):
    shown, arrows = {}, []
    for line in lines:
        found = ARROW.fullmatch(line.strip())
        if not found:
            raise ValueError(f"not understood: {line}")
        one, bracket, label, text, other, other_bracket, other_label = found.groups()
        _named(shown, one, bracket, label)
        _named(shown, other, other_bracket, other_label)
        arrows.append(f'{one} -> {other} [label=" {text or ""}"];')
    nodes = [f'{name} [label="{label}", shape={shape}];' for name, (label, shape) in shown.items()]
    font = '[fontname="Helvetica", fontsize=10];'
    return ["@dot", "digraph chart {", f"node {font}", f"edge {font}", *nodes, *arrows, "}", "@enddot"]


def _sequence(lines):
    names, steps = {}, []
    for line in lines:
        participant = re.fullmatch(r"\s*participant (\w+) as (.*)", line)
        note = re.fullmatch(r"\s*Note over \w+: (.*)", line)
        message = MESSAGE.fullmatch(line.strip())
        if participant:
            names[participant[1]] = participant[2]
        elif note:
            steps.append(("", f"({note[1].replace('<br>', ' ')})"))
        elif message:
            steps.append((f"{names[message[1]]} -> {names[message[2]]}", message[3]))
        else:
            raise ValueError(f"not understood: {line}")
    width = max(len(way) for way, _ in steps)
    return ["```", *(f"{way:<{width}}   {text}" for way, text in steps), "```"]


def shown(text):
    """The lines that stand in the page of the site instead of the diagram."""
    kind, *lines = text.splitlines()
    return {"flowchart TD": _flowchart, "sequenceDiagram": _sequence}[kind](lines)
