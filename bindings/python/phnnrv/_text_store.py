"""Texts that the handset keeps under indexes: the shape that contacts and events share."""

import ctypes
import re
from collections.abc import Iterator
from typing import ClassVar, Generic, TypeVar

from ._api import Api
from ._records import Record
from .errors import Error, ErrorCode

_Entry = TypeVar("_Entry")

_TEXT_SIZE = 4096  # bytes; holds any text that the library writes
_MOST_INDEXES = 1000


class TextStore(Generic[_Entry]):
    _noun: ClassVar[str]  # as the exports are named: PHN_Get..., PHN_Set..., PHN_Delete..., PHN_DeleteAll...s
    _record: ClassVar[type[Record]]
    _text_field: ClassVar[str]

    def __init__(self, api: Api) -> None:
        self._api = api

    def _entry(self, index: int, text: str) -> _Entry:
        raise NotImplementedError

    def _record_of(self, buffer: ctypes.Array[ctypes.c_char], size: int) -> Record:
        pointer = ctypes.cast(buffer, ctypes.POINTER(ctypes.c_char))
        return self._record(**{self._text_field: pointer, "uSizeofData": size})

    def get(self, index: int) -> _Entry:
        """Raises Error, PHN_ERROR_NOT_FOUND where nothing is stored."""
        buffer = ctypes.create_string_buffer(_TEXT_SIZE)
        record = self._record_of(buffer, len(buffer))
        self._api.do(f"PHN_Get{self._noun}", index, ctypes.byref(record))
        return self._entry(index, self._api.decode(buffer.value))

    def put(self, index: int, text: str) -> None:
        """Stores a text under an index, replacing what is there. Its lines may end with LF or CR LF.

        Raises Error, PHN_ERROR_INVALID_PARAMETER for a text that is rejected, and ValueError when a character has no
        place in the ANSI code page.
        """
        data = self._api.encode(re.sub("\r?\n", "\r\n", text))
        record = self._record_of(ctypes.create_string_buffer(data), len(data))
        self._api.do(f"PHN_Set{self._noun}", index, ctypes.byref(record))

    def delete(self, index: int) -> None:
        self._api.do(f"PHN_Delete{self._noun}", index)

    def clear(self) -> None:
        """Deletes all; may take minutes."""
        self._api.do(f"PHN_DeleteAll{self._noun}s")

    def __iter__(self) -> Iterator[_Entry]:
        """All entries, by index. The library lists nothing: the indexes are asked one after the other, each when it is
        its turn, until the handset says that there is no such index or 1000 were asked.
        """
        for index in range(_MOST_INDEXES):
            try:
                yield self.get(index)
            except Error as error:
                if error.code == ErrorCode.PHN_ERROR_INVALID_PARAMETER:
                    return
                if error.code != ErrorCode.PHN_ERROR_NOT_FOUND:
                    raise
