"""The calls that the handset remembers."""

import ctypes
from dataclasses import dataclass
from datetime import datetime

from ._listing import Listing
from ._records import PHN_CALL_ENTRY
from .errors import ErrorCode

CALL_LISTS = range(3)  # what each holds is the handset's


@dataclass(frozen=True)
class Call:
    list: int
    entry_text: str
    time: datetime | None  # as the handset keeps it; nothing when that is no time
    entry8: int  # the handset's value times 1000


def _time_of(record: PHN_CALL_ENTRY) -> datetime | None:
    try:
        return datetime(
            record.wEntry18, record.wEntry17, record.wEntry16, record.wEntry12, record.wEntry13, record.wEntry14
        )
    except ValueError:
        return None


class Calls(Listing[Call]):
    """The call lists, CALL_LISTS."""

    _noun = "CallEntry"
    _end = ErrorCode.PHN_ERROR_NO_MORE_ENTRIES

    def _step(self, which: int, function: str, *selector: int) -> Call | None:
        record = PHN_CALL_ENTRY()
        if self._is_over(self._api.call(function, *selector, ctypes.byref(record)), function):
            return None
        return Call(which, self._api.decode(record.szEntryText), _time_of(record), record.uEntry8)

    def clear(self, list: int) -> None:
        self._do("PHN_ClearCallEntries", list)
