"""Saves and reads finite-element models in .mox files, with NumPy arrays.

    import moxwriter

    with moxwriter.Model("beam.mox", overwrite=True) as model:
        model.add_group("Assembly")
        beam = model.add_shape("Beam")
        model.add_array(beam, "Coordinates", points)
        model.add_array(beam, "Displacement", u, step=moxwriter.Step("Load 1", time=0.1))

    with moxwriter.open("beam.mox") as file:
        u = file["Assembly/Beam"]["Displacement", "Load 1"].read()
"""

from ._errors import (DamagedFile, Error, FileOpenException, FileWriteException, IncompleteFile, InvalidArguments,
                      InvalidObjectState, KeyNotFound, MemoryAllocationException, MiscelleneousException,
                      NotYetImplemented, OutOfBounds, OutOfMemory, OverflowError, Place, PositionError,
                      TemplateSpecializationNotDefined, UnderflowError, WriterError)
from ._reading import Dataset, File, Node, open
from ._types import DatasetType, NodeType, PropertyType, Step
from ._version import __version__ as __version__
from ._writing import DEFAULT_PATH_SEPARATOR, INVALID_ID, Model, compressed_by_deflate, compressor

__all__ = [
    "compressed_by_deflate", "compressor", "DamagedFile", "Dataset", "DatasetType", "DEFAULT_PATH_SEPARATOR",
    "Error", "File", "FileOpenException", "FileWriteException", "IncompleteFile", "INVALID_ID",
    "InvalidArguments", "InvalidObjectState", "KeyNotFound", "MemoryAllocationException",
    "MiscelleneousException", "Model", "Node", "NodeType", "NotYetImplemented", "open", "OutOfBounds",
    "OutOfMemory", "Place", "PositionError", "PropertyType", "Step",
    "TemplateSpecializationNotDefined", "UnderflowError", "WriterError",
]
