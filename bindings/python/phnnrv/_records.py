"""The records of phnnrv.h, under their names there; what their fields hold is told there as well.

.ci/python_header holds them against the header.
"""

import ctypes
from collections.abc import Sequence
from ctypes import POINTER, c_char, c_int32, c_uint8, c_uint16, c_uint32
from typing import Any, ClassVar


class Record(ctypes.Structure):
    """A byte-packed record; it begins with its own size, which every call needs."""

    _pack_ = 1
    _fields_: ClassVar[Sequence[tuple[str, Any]]] = [("uSize", c_uint32)]

    def __init__(self, **values: Any) -> None:
        super().__init__(uSize=ctypes.sizeof(self), **values)


def _each(kind: Any, *names: str) -> list[tuple[str, Any]]:
    return [(name, kind) for name in names]


class PHN_CONNECTION_INFO(Record):
    _fields_ = [
        *_each(
            c_uint32, "uConnection0", "uConnection4", "uConnection8", "uConnection12", "uConnection16",
            "uNetworkError", "uConnection18"
        ),
    ]


class PHN_NETWORK_INFO(Record):
    _fields_ = [
        *_each(c_uint32, "uNetwork0", "uNetwork4", "uNetwork5"),
        *_each(
            c_uint16, "wNetwork6", "wNetwork8", "wNetwork10", "wNetwork12", "wNetwork14", "wNetwork16",
            "wNetwork18"
        ),
        ("uNetwork20", c_uint32),
        ("nNetwork22", c_int32),
        ("szNetwork26", c_char * 34),
        ("nNetwork60", c_int32),
        ("uNetwork64", c_uint32),
    ]


class PHN_BATTERY_INFO(Record):
    _fields_ = [("uBattery1", c_uint32), ("uBattery2", c_uint32)]


class PHN_DEVICE_INFO(Record):
    _fields_ = [
        ("szNumber", c_char * 22),
        ("szESN", c_char * 12),
        ("uInfo19", c_uint32),
        *_each(c_char * 64, "szInfo20", "szModel", "szInfo148"),
        ("szInfo212", c_char * 192),
        ("szInfo216", c_char * 22),
        *_each(c_uint32, "uInfo238", "uInfo242", "uInfo246", "uInfo250", "uInfo251"),
        ("abyReserved468", c_uint8 * 64),
        ("szInfo253", c_char * 16),
    ]


class PHN_ACTIVATION_DATA(Record):
    _fields_ = [("bAutomatic", c_uint32), ("abyReserved8", c_uint8 * 112)]


class PHN_PARAMETERS(Record):
    _fields_ = [("uParameter1", c_uint32), ("uParameter2", c_uint32), ("wParameter3", c_uint16)]


class PHN_FIELD_SIZES(Record):
    _fields_ = [
        *_each(
            c_uint16, "wFieldSize1", "wFieldSize2", "wFieldSize3", "wFieldSize4", "wFieldSize5", "wFieldSize6",
            "wFieldSize7"
        ),
        *_each(c_uint32, "dwFieldSize8", "dwFieldSize9", "dwFieldSize10", "dwFieldSize11"),
    ]


class PHN_CONTACT_RECORD(Record):
    _fields_ = [("pContactData", POINTER(c_char)), ("uSizeofData", c_uint32)]


class PHN_PICTURE_ID(Record):
    _fields_ = [("dwID", c_uint32), ("szName", c_char * 64)]


PHN_RINGER_ID = PHN_PICTURE_ID
PHN_GROUP = PHN_PICTURE_ID


class PHN_EVENT_RECORD(Record):
    _fields_ = [("pCalendarData", POINTER(c_char)), ("uSizeofData", c_uint32)]


class PHN_SMS_MESSAGE(Record):
    _fields_ = [
        ("pIS637Data", POINTER(c_uint8)),
        ("uSizeofData", c_uint32),
        ("uIndexValid", c_uint32),
        ("wIndex", c_uint16),
    ]


class PHN_CALL_ENTRY(Record):
    _fields_ = [
        ("szEntryText", c_char * 22),
        ("uEntry8", c_uint32),
        ("abyReserved30", c_uint8 * 20),
        *_each(c_uint16, "wEntry18", "wEntry17", "wEntry16", "wEntry12", "wEntry13", "wEntry14"),
        ("abyReserved62", c_uint8 * 22),
    ]
