"""The library's calls with their answers checked, and its records as plain values."""

import ctypes
import dataclasses
import re
from typing import Any, TypeVar

from ._library import Library
from ._records import Record
from .errors import Error, ErrorCode, name_of

_Value = TypeVar("_Value")


def _plain_name(field: str) -> str:
    """uNetworkError is network_error, szESN esn, dwFieldSize8 field_size8."""
    name = re.sub(r"^[a-z]+", "", field)
    return re.sub(r"(?<=[a-z])(?=[A-Z])", "_", name).lower()


class Api:
    """What the parts of a Handset call."""

    def __init__(self, library: Library) -> None:
        self.call = library.call
        self.decode = library.win32.decode
        self.encode = library.win32.encode

    def check(self, code: int, function: str) -> None:
        """Raises Error for any code but success."""
        if code != ErrorCode.PHN_ERROR_NONE:
            name = name_of(code) or re.split("[,\t]", self.network_error_text(code))[0]
            raise Error(code, name, function)

    def do(self, function: str, *arguments: Any) -> None:
        self.check(self.call(function, *arguments), function)

    def read(self, kind: type[_Value], function: str, record: Record, *selector: int) -> _Value:
        """Fills the record with a call and returns it as a dataclass of that kind."""
        self.do(function, *selector, ctypes.byref(record))
        return self.plain(kind, record)

    def plain(self, kind: type[_Value], record: Record) -> _Value:
        """A dataclass of the record's fields that it names."""
        found = {_plain_name(name): getattr(record, name) for name, _ in record._fields_}
        values = {field.name: found[field.name] for field in dataclasses.fields(kind)}
        return kind(**{name: self.decode(value) if isinstance(value, bytes) else value for name, value in values.items()})

    def network_error_text(self, code: int) -> str:
        """The library's name and text of a network error, "" when it has none."""
        buffer = ctypes.create_string_buffer(256)
        failed = self.call("PHN_GetNetworkErrorString", code, buffer, len(buffer))
        return "" if failed else self.decode(buffer.value)
