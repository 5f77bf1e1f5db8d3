"""An Exodus II file with large results, made of a formula that its reader can check.

One block of single nodes as elements has six stresses at each step. The file is written by its bytes, in netCDF's
classic format with 64-bit offsets, so that it needs no library but NumPy and no memory to speak of.
"""

import numpy

COMPONENTS = ["xx", "yy", "zz", "xy", "yz", "zx"]
NODES = 1000
CHUNK = 1 << 20  # elements

CHAR, INT, FLOAT, DOUBLE = 2, 4, 5, 6
SIZES = {CHAR: 1, INT: 4, FLOAT: 4, DOUBLE: 8}


def stresses(step, component, first, count):
    """Those of some elements at a step, counted from 0: whole numbers and quarters, which float holds exactly."""
    numbers = numpy.arange(first, first + count, dtype=numpy.int64)
    return ((numbers * 7 + component * 1013 + step * 4099) % 65521 / 4 + step).astype(numpy.float32)


def integer(value):
    return value.to_bytes(4, "big")


def padded(data):
    return data + b"\0" * (-len(data) % 4)


def name(text):
    return integer(len(text)) + padded(text.encode())


def items(tag, encoded):
    return integer(tag if encoded else 0) + integer(len(encoded)) + b"".join(encoded)


def attribute(key, kind, data):
    return name(key) + integer(kind) + integer(len(data) // SIZES[kind]) + padded(data)


def texts(lines, length):
    return b"".join(line.encode().ljust(length, b"\0") for line in lines)


class Variable:
    def __init__(self, key, kind, dimensions, data=b"", attributes=()):
        self.key, self.kind, self.dimensions, self.data, self.attributes = key, kind, dimensions, data, attributes
        self.begin = 0


def write_exodus(path, elements, steps):
    sizes = {"time_step": 0, "len_name": 33, "num_dim": 3, "num_nodes": NODES, "num_elem": elements, "num_el_blk": 1,
             "num_el_in_blk1": elements, "num_nod_per_el1": 1, "num_elem_var": len(COMPONENTS)}
    places = {key: place for place, key in enumerate(sizes)}
    nodes = numpy.arange(NODES)
    fixed = [
        Variable("eb_status", INT, ["num_el_blk"], integer(1)),
        Variable("eb_prop1", INT, ["num_el_blk"], integer(1), [attribute("name", CHAR, b"ID")]),
        *(Variable(key, DOUBLE, ["num_nodes"], values.astype(">f8").tobytes())
          for key, values in (("coordx", nodes % 10), ("coordy", nodes // 10 % 10), ("coordz", nodes // 100))),
        Variable("coor_names", CHAR, ["num_dim", "len_name"], texts("xyz", 33)),
        Variable("name_elem_var", CHAR, ["num_elem_var", "len_name"],
                 texts(["stress_" + component for component in COMPONENTS], 33)),
        Variable("connect1", INT, ["num_el_in_blk1", "num_nod_per_el1"],
                 (numpy.arange(elements) % NODES + 1).astype(">i4").tobytes(),
                 [attribute("elem_type", CHAR, b"SPHERE")]),
    ]
    of_step = [Variable("time_whole", DOUBLE, ["time_step"])]
    of_step += [Variable(f"vals_elem_var{i + 1}eb1", FLOAT, ["time_step", "num_el_in_blk1"])
                for i in range(len(COMPONENTS))]

    def size(variable):
        count = SIZES[variable.kind]
        for key in variable.dimensions:
            count *= sizes[key] or 1
        return count + -count % 4

    def header():
        version = numpy.array([8.03], ">f4").tobytes()
        return b"CDF\x02" + integer(steps) + items(
            10, [name(key) + integer(length) for key, length in sizes.items()]) + items(
            12, [attribute("api_version", FLOAT, version), attribute("version", FLOAT, version),
                 attribute("floating_point_word_size", INT, integer(4)), attribute("file_size", INT, integer(1)),
                 attribute("title", CHAR, b"large")]) + items(
            11, [name(each.key) + integer(len(each.dimensions))
                 + b"".join(integer(places[key]) for key in each.dimensions) + items(12, list(each.attributes))
                 + integer(each.kind) + integer(size(each)) + each.begin.to_bytes(8, "big")
                 for each in fixed + of_step])

    begin = len(header())
    for variable in fixed + of_step:
        variable.begin = begin
        begin += size(variable)
    with open(path, "wb") as file:
        file.write(header())
        for variable in fixed:
            file.write(padded(variable.data))
        for step in range(steps):
            file.write(numpy.array([step / 8], ">f8").tobytes())
            for component in range(len(COMPONENTS)):
                for first in range(0, elements, CHUNK):
                    values = stresses(step, component, first, min(CHUNK, elements - first))
                    file.write(values.astype(">f4").tobytes())
