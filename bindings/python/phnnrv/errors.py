"""Failures of the library, with the names that phnnrv.h gives them."""

from enum import IntEnum


class ErrorCode(IntEnum):
    """The codes with a meaning of their own; include/phnnrv.h tells it."""

    PHN_ERROR_NONE = 0
    PHN_ERROR_INVALID_PARAMETER = 1
    PHN_ERROR_STATUS_12 = 2
    PHN_ERROR_NO_DEVICE = 100
    PHN_ERROR_COMMUNICATION = 101
    PHN_ERROR_STATUS_7 = 102
    PHN_ERROR_NOT_SUPPORTED = 103
    PHN_ERROR_FAILED = 104
    PHN_ERROR_NO_SERVICE_OBJECT = 107
    PHN_ERROR_NOT_AUTOMATIC = 200
    PHN_ERROR_STATUS_6 = 201
    PHN_ERROR_STATUS_8 = 202
    PHN_ERROR_INVALID_LOCK_CODE = 203
    PHN_ERROR_STATUS_11 = 204
    PHN_ERROR_ACTIVATION_STARTED = 205
    PHN_ERROR_BUFFER_TOO_SMALL = 300
    PHN_ERROR_NO_MORE_MESSAGES = 301
    PHN_ERROR_MESSAGE_NOT_FOUND = 302
    PHN_ERROR_NO_MORE_ENTRIES = 303
    PHN_ERROR_NOT_FOUND = 304
    PHN_ERROR_RESULT_2 = 305
    PHN_ERROR_RESULT_4 = 306
    PHN_ERROR_PDU_NO_DESTINATION = 1103
    PHN_ERROR_PDU_NOT_DECODABLE = 1105


# The others stand for results that only the handset understands: runs of first code, last code, first result.
_RESULT_RUNS = (
    (1032, 1040, 109),
    (1047, 1048, 118),
    (1063, 1067, 120),
    (1095, 1108, 125),
    (1255, 1255, 139),
    (1769, 1775, 140),
    (1777, 1778, 147),
)


def name_of(code: int) -> str:
    """The PHN_ERROR_... name of a code, "" for one without such a name: a network error, or none of the library's."""
    if code in ErrorCode._value2member_map_:
        return ErrorCode(code).name
    for first, last, result in _RESULT_RUNS:
        if first <= code <= last:
            return f"PHN_ERROR_RESULT_{result + code - first}"
    return ""


class Error(Exception):
    """A call that the library or the handset refused.

    `code` is the library's return value, to be compared with ErrorCode; `name` its name in phnnrv.h, PHN_ERROR_... or
    PHN_NETWORK_ERROR_... ("" for a value that has none); `function` the export that returned it.
    """

    def __init__(self, code: int, name: str, function: str) -> None:
        super().__init__(code, name, function)
        self.code = code
        self.name = name
        self.function = function

    def __str__(self) -> str:
        return f"{self.function}: {self.code} {self.name}".rstrip()
