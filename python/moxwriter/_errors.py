"""The failures that the package reports, all of them derived from `Error`.

Those of the writer are named as in C++ and have the same numbers as `code`. Each is also the built-in exception that
it is a case of, so that code which catches `KeyError` or `ValueError` meets it too.
"""

from __future__ import annotations

import builtins
from typing import NamedTuple


class Error(Exception):
    """What all failures of the package have in common.

    Attributes:
        code: The number of the class for failures of the writer (0 for those of its standard library), the name of
            the damage, such as "BadSignature", for those of the reader.
        text: What went wrong.
    """

    code: int | str = 0
    text: str = ""

    def __init__(self, text: str = "") -> None:
        super().__init__(text)
        self.text = text

    def __str__(self) -> str:
        return self.text


class WriterError(Error):
    """A failure of a call of `Model`.

    Attributes:
        file, line, function: Where in the library it came up; None where that is not known.
    """

    code: int = 0
    file: str | None = None
    line: int | None = None
    function: str | None = None


class MiscelleneousException(WriterError, OSError):
    """A failure that has no class of its own: a file that can't be opened, for example. Code 2."""

    code = 2


class InvalidArguments(WriterError, ValueError):
    """An argument that the call does not accept: a wrong type, length, path or property. Code 3."""

    code = 3


class FileOpenException(WriterError, FileExistsError):
    """The output file exists and must not be replaced. Code 5."""

    code = 5


class FileWriteException(WriterError, OSError):
    """The output file can't be positioned or is at its end. Code 7."""

    code = 7


class OutOfBounds(WriterError, IndexError):
    """A node id or a position beyond those that exist. Code 11."""

    code = 11


class OverflowError(WriterError, builtins.OverflowError):
    """A count above 2,147,483,647. Code 12."""

    code = 12


class UnderflowError(WriterError, ArithmeticError):
    """A negative count. Code 13."""

    code = 13


class KeyNotFound(WriterError, KeyError):
    """An id or a key that is not there. Code 14."""

    code = 14


class MemoryAllocationException(WriterError, MemoryError):
    """No memory for a block of the file. Code 16."""

    code = 16


class InvalidObjectState(WriterError, ValueError):
    """A call that the model's state does not allow. Code 17."""

    code = 17


class TemplateSpecializationNotDefined(WriterError, TypeError):
    """A property value of the wrong type. Code 19."""

    code = 19


class NotYetImplemented(WriterError, NotImplementedError):
    """A request that the library does not serve, such as a second root. Code 20."""

    code = 20


class PositionError(WriterError, IndexError):
    """What C++ knows as `std::out_of_range`: a path that names only the root. Code 0."""


class OutOfMemory(WriterError, MemoryError):
    """What C++ knows as `std::bad_alloc`. Code 0."""


class IncompleteFile(WriterError, OSError):
    """A file that is not whole although every call succeeded: the disk was full, for example. Code 0."""


class Place(NamedTuple):
    """Where a file is damaged, as far as that is known."""

    path: str | None
    file_offset: int | None  #: Bytes from the start of the file.
    block: int | None  #: Counted from 0 along the chain of index tables.
    stream: str | None  #: The name of the block or stream.
    stream_offset: int | None  #: Bytes into the decompressed stream.
    record: str | None  #: For the user, such as "dataset 3 of node 5".


class DamagedFile(Error, ValueError):
    """A file that can't be read, or a part of it.

    Attributes:
        code: The name of the damage, such as "BadSignature" (see docs/format/dump.md).
        rule: The number of the rule that it breaks, as `mox check` gives it (see docs/format/rules.md); None if it
            is no damage, such as a failure of the disk.
        place: Where it is.
    """

    code: str = ""
    rule: int | None = None
    place: Place = Place(None, None, None, None, None, None)

    def __str__(self) -> str:
        return f"{self.place.path}: {self.text}" if self.place.path else self.text


WRITER_ERRORS: dict[int, type[WriterError]] = {
    kind.code: kind
    for kind in (MiscelleneousException, InvalidArguments, FileOpenException, FileWriteException, OutOfBounds,
                 OverflowError, UnderflowError, KeyNotFound, MemoryAllocationException, InvalidObjectState,
                 TemplateSpecializationNotDefined, NotYetImplemented)
}

# The rules of docs/format/rules.md that the reader's findings break.
RULES: dict[str, int] = {
    "BadSignature": 101, "UnsupportedFileVersion": 102, "NotFinished": 103, "Truncated": 104, "BadIndexTable": 105,
    "BadIndexRecord": 108, "BlockBeyondFile": 201, "ContentLost": 202, "ContentLengthMissing": 203,
    "ContentLengthImplausible": 203, "ZlibDamaged": 204, "ZlibIncomplete": 204, "ContentTooShort": 205,
    "ContentTooLong": 205, "ChecksumMismatch": 206, "TrailingBytes": 207, "BlockOverwritten": 208,
    "MissingStream": 301, "EndOfStream": 302, "BadCount": 303, "TrailingStreamBytes": 304, "BadValue": 305,
    "BadRecordSize": 306, "BadNodeId": 401, "BadTreeLink": 402, "UnknownNodeType": 405,
    "UnsupportedRecordVersion": 406, "BadPosition": 407, "BadAttributes": 503, "BadNodeSets": 504,
    "WrongElementType": 602, "BadDatasetSize": 604, "BadLinkTarget": 609, "LinkCycle": 610,
}


def _decode(text: bytes) -> str:
    return text.decode("utf-8", "surrogateescape")


# The native modules call what follows.


def _writer_error(code: int, text: bytes, file: str | None, line: int | None, function: str | None) -> WriterError:
    error = WRITER_ERRORS.get(code, WriterError)(_decode(text))
    error.file, error.line, error.function = file, line, function
    return error


def _position_error(text: bytes) -> WriterError:
    return PositionError(_decode(text))


def _memory_error(text: bytes) -> WriterError:
    return OutOfMemory(_decode(text))


def _damage(code: str, text: bytes, path: bytes, file_offset: int | None, block: int | None, stream: bytes,
            stream_offset: int | None, record: str) -> DamagedFile:
    error = DamagedFile(_decode(text))
    error.code = code
    error.rule = RULES.get(code)
    error.place = Place(_decode(path) or None, file_offset, block, _decode(stream) or None, stream_offset,
                        record or None)
    return error
