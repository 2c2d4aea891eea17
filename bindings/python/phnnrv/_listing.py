"""Lists that are read from the first entry to the next: the shape that messages and calls share."""

import threading
from typing import ClassVar, Generic, TypeVar

from ._api import Api
from .errors import ErrorCode

_Entry = TypeVar("_Entry")


class Listing(Generic[_Entry]):
    _noun: ClassVar[str]  # as the exports are named: PHN_Get...Count, PHN_GetFirst..., PHN_GetNext...
    _end: ClassVar[ErrorCode]

    def __init__(self, api: Api) -> None:
        self._api = api
        # There is one cursor for the whole process, and nearly every other call ends the listing.
        self._turn = threading.RLock()

    def _step(self, which: int, function: str, *selector: int) -> _Entry | None:
        """The entry that one call reads; none at the end."""
        raise NotImplementedError

    def read(self, which: int) -> list[_Entry]:
        """All entries of a box or list, in the handset's order."""
        entries = []
        with self._turn:
            entry = self._step(which, f"PHN_GetFirst{self._noun}", which)
            while entry is not None:
                entries.append(entry)
                entry = self._step(which, f"PHN_GetNext{self._noun}")
        return entries

    def count(self, which: int) -> int:
        """How many entries a box or list holds."""
        with self._turn:
            function = f"PHN_Get{self._noun}Count"
            count = self._api.call(function, which)
            # A failure counts 0 as well; only the first entry tells.
            if count == 0 and self._step(which, f"PHN_GetFirst{self._noun}", which) is not None:
                self._api.check(ErrorCode.PHN_ERROR_FAILED, function)
            return count

    def _do(self, function: str, *arguments: object) -> None:
        with self._turn:
            self._api.do(function, *arguments)

    def _is_over(self, code: int, function: str) -> bool:
        if code == self._end:
            return True
        self._api.check(code, function)
        return False
