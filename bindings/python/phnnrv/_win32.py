"""The few Win32 calls that a host needs. On Windows they are the system's; elsewhere libphnplatform.so, which the
library brings along, offers them.
"""

import ctypes
import sys
from ctypes import POINTER, byref, c_char_p, c_int, c_uint32, c_void_p
from ctypes.wintypes import MSG
from typing import Any

_INFINITE = 0xFFFFFFFF
_PM_REMOVE = 1
_QS_ALLINPUT = 0x04FF
_WAIT_OBJECT_0 = 0
_CP_ACP = 0

# A message is only handed on, so MSG matters here for its size alone, which is never below that of the stand-in's.
_PROTOTYPES: dict[str, tuple[Any, ...]] = {
    "CreateEventA": (c_void_p, c_void_p, c_int, c_int, c_char_p),
    "SetEvent": (c_int, c_void_p),
    "CloseHandle": (c_int, c_void_p),
    "MsgWaitForMultipleObjects": (c_uint32, c_uint32, POINTER(c_void_p), c_int, c_uint32, c_uint32),
    "PeekMessageA": (c_int, POINTER(MSG), c_void_p, c_uint32, c_uint32, c_uint32),
    "DispatchMessageA": (c_void_p, POINTER(MSG)),
    "MultiByteToWideChar": (c_int, c_uint32, c_uint32, c_char_p, c_int, c_void_p, c_int),
    "WideCharToMultiByte": (c_int, c_uint32, c_uint32, c_void_p, c_int, c_void_p, c_int, c_void_p, c_void_p),
}


def unload(library: ctypes.CDLL) -> None:
    """As a foreign call, so that other threads go on in Python meanwhile: the library waits for its own threads."""
    if sys.platform == "win32":
        free = ctypes.WinDLL("kernel32").FreeLibrary
    else:
        free = ctypes.CDLL(None).dlclose
    free.argtypes = (c_void_p,)
    free(library._handle)


def _find(library: ctypes.CDLL, name: str) -> Any:
    if sys.platform == "win32":
        for system in (ctypes.WinDLL("user32"), ctypes.WinDLL("kernel32")):
            if hasattr(system, name):
                return system[name]
    # A library's handle finds the names of what it depends on as well.
    return library[f"phn_{name}"]


class Win32:
    """The calls, bound for a loaded library."""

    def __init__(self, library: ctypes.CDLL) -> None:
        self._call: dict[str, Any] = {}
        for name, (result, *arguments) in _PROTOTYPES.items():
            self._call[name] = _find(library, name)
            self._call[name].restype = result
            self._call[name].argtypes = arguments

    def create_event(self) -> c_void_p:
        event = self._call["CreateEventA"](None, True, False, None)
        if not event:
            raise OSError("CreateEvent failed")
        return c_void_p(event)

    def set_event(self, event: c_void_p) -> None:
        self._call["SetEvent"](event)

    def close_handle(self, event: c_void_p) -> None:
        self._call["CloseHandle"](event)

    def dispatch_until(self, event: c_void_p) -> None:
        """Dispatches this thread's window messages until the event is set."""
        wait, peek, dispatch = (
            self._call[name] for name in ("MsgWaitForMultipleObjects", "PeekMessageA", "DispatchMessageA")
        )
        message = MSG()
        while (woken := wait(1, byref(event), False, _INFINITE, _QS_ALLINPUT)) != _WAIT_OBJECT_0:
            if woken != _WAIT_OBJECT_0 + 1:
                raise OSError("MsgWaitForMultipleObjects failed")
            while peek(byref(message), None, 0, 0, _PM_REMOVE):
                dispatch(byref(message))

    def decode(self, text: bytes) -> str:
        """From the ANSI code page, in which the library's texts are."""
        convert = self._call["MultiByteToWideChar"]
        size = convert(_CP_ACP, 0, text, len(text), None, 0)
        wide = ctypes.create_string_buffer(2 * size)
        convert(_CP_ACP, 0, text, len(text), wide, size)
        return wide.raw.decode("utf-16-le", "replace")

    def encode(self, text: str) -> bytes:
        """To the ANSI code page. Raises ValueError when a character has no place there."""
        wide = text.encode("utf-16-le")
        convert = self._call["WideCharToMultiByte"]
        size = convert(_CP_ACP, 0, wide, len(wide) // 2, None, 0, None, None)
        narrow = ctypes.create_string_buffer(size)
        convert(_CP_ACP, 0, wide, len(wide) // 2, narrow, size, None, None)
        if self.decode(narrow.raw) != text:
            raise ValueError("the text holds characters that have no place in the ANSI code page")
        return narrow.raw
