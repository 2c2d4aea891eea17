"""The handset of this process."""

import atexit
import ctypes
import os
import threading
import time
from types import TracebackType

from . import _records
from ._api import Api
from ._library import Library
from .calls import Calls
from .changes import Change, Changes, Handler
from .contacts import Contacts
from .errors import ErrorCode
from .events import Events
from .identity import Identity
from .messages import Messages
from .parameters import Parameters
from .status import Battery, Connection, Network, Status

_PAUSE_AFTER_SILENCE = 0.5  # seconds


class _Search(threading.Thread):
    """Asks for a handset until one answers or is refused for good. One PHN_Startup waits some 15 s, which a serial
    handset may not be found in.
    """

    def __init__(self, library: Library) -> None:
        super().__init__(name="phnnrv search", daemon=True)
        self.answer: int = ErrorCode.PHN_ERROR_NO_DEVICE
        self.over = threading.Event()
        self._library = library

    def run(self) -> None:
        while not self.over.is_set():
            self.answer = self._library.call("PHN_Startup")
            if self.answer == ErrorCode.PHN_ERROR_COMMUNICATION:
                self.over.wait(_PAUSE_AFTER_SILENCE)
            elif self.answer != ErrorCode.PHN_ERROR_NO_DEVICE:
                return


class Handset:
    """A handset that was found and greeted. Every method may be called from any thread, handlers included; one that is
    refused raises Error. A process has one at a time.

    `contacts`, `events`, `messages` and `calls` are what the handset stores.
    """

    def __init__(
        self,
        timeout: float = 40.0,
        library: str | os.PathLike[str] | None = None,
        prompt_reads: bool | None = None,
    ) -> None:
        """Loads the library and waits up to `timeout` seconds for a handset: a USB one is found at once, serial ports
        are tried every 15 s.

        `library` is the library's file; without it PHNNRV_LIBRARY names it, or it is looked for in the usual places.
        `prompt_reads`, on Linux, has each read end with the reply's last byte, or 10 ms later (docs/hosting.md), whatever
        the user's environment and registry say; without it they decide. On Windows the registry alone does.

        Raises OSError when it cannot be loaded, RuntimeError when this process has another Handset, and Error:
        PHN_ERROR_NO_DEVICE when none came, PHN_ERROR_COMMUNICATION when it did not answer, PHN_ERROR_NOT_SUPPORTED when
        its model is not served.
        """
        deadline = time.monotonic() + timeout
        self._library = Library(library, timeout, prompt_reads)
        self._api = Api(self._library)
        try:
            self._greet(deadline - time.monotonic())
        except BaseException:
            self._library.end()
            raise
        self._changes = Changes(self._api)
        self._closed = threading.Lock()  # taken for good by the first close
        self.contacts = Contacts(self._api)
        self.events = Events(self._api)
        self.messages = Messages(self._api)
        self.calls = Calls(self._api)
        atexit.register(self._leave)

    def _greet(self, timeout: float) -> None:
        search = _Search(self._library)
        search.start()
        try:
            search.join(max(timeout, 0))
        finally:
            search.over.set()
        self._api.check(search.answer, "PHN_Startup")

    def __enter__(self) -> "Handset":
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, traceback: TracebackType | None
    ) -> None:
        self.close()

    def close(self) -> None:
        """Says goodbye to the handset and unloads the library, which takes about a second. Calls and handlers that are
        in progress are waited for; further ones end with PHN_ERROR_NO_SERVICE_OBJECT.
        """
        if not self._closed.acquire(blocking=False):
            return
        atexit.unregister(self._leave)
        self._library.end()
        self._library.join()
        self._changes.end()

    def _leave(self) -> None:
        """At the interpreter's exit. A call that a daemon thread is in does not hold it up for long."""
        if self._closed.acquire(blocking=False):
            self._library.end()
            self._library.join(timeout=3)

    def reconnect(self, timeout: float = 40.0) -> None:
        """After a loss: waits for a handset as the constructor does. Handlers stay. Raises Error, as there."""
        self._greet(timeout)
        self._changes.register_again()

    def on(self, change: Change, handler: Handler) -> None:
        """Has a function called with each such change, within some 2 s of it, on a thread of the package; one at a time.

        What a handler raises goes to threading.excepthook, and the next one is called.
        """
        self._changes.add(change, handler)

    def identity(self) -> Identity:
        return self._api.read(Identity, "PHN_GetDeviceInfo", _records.PHN_DEVICE_INFO())

    def status(self) -> Status:
        """Battery, network and connection, asked one after the other."""
        return Status(self.battery(), self.network(), self.connection())

    def battery(self) -> Battery:
        return self._api.read(Battery, "PHN_GetBatteryInfo", _records.PHN_BATTERY_INFO())

    def network(self) -> Network:
        return self._api.read(Network, "PHN_GetNetworkInfo", _records.PHN_NETWORK_INFO())

    def connection(self) -> Connection:
        return self._api.read(Connection, "PHN_GetConnectionInfo", _records.PHN_CONNECTION_INFO())

    def network_error_text(self, code: int) -> str:
        """Name and text of a network error, such as "PHN_NETWORK_ERROR_1X_FADE, Fade"; "" for a code without a text."""
        return self._api.network_error_text(code)

    def set_radio(self, on: bool) -> None:
        self._api.do("PHN_SetRadioPower", on)

    def set_lock(self, locked: bool, code: str) -> None:
        """Locks or unlocks the phone. Raises Error, PHN_ERROR_INVALID_LOCK_CODE unless it is the right 4 characters."""
        self._api.do("PHN_SetLock", locked, self._api.encode(code))

    def change_lock_code(self, old: str, new: str) -> None:
        """Both have 4 characters; otherwise as set_lock."""
        self._api.do("PHN_ChangeLockCode", self._api.encode(old), self._api.encode(new))

    def parameters(self) -> Parameters:
        return self._api.read(Parameters, "PHN_GetParameters", _records.PHN_PARAMETERS())

    def set_parameters(self, parameters: Parameters) -> None:
        """Raises OverflowError for a value beyond the ranges that Parameters gives."""
        one, two, three = parameters.parameter1, parameters.parameter2, parameters.parameter3
        if not (0 <= one <= 0xFF and 0 <= two <= 0xFF and 0 <= three <= 0xFFFF):
            raise OverflowError(f"{parameters} is out of range")
        record = _records.PHN_PARAMETERS(uParameter1=one, uParameter2=two, wParameter3=three)
        self._api.do("PHN_SetParameters", ctypes.byref(record))

    def activate(self) -> None:
        """Starts over-the-air provisioning; Change.ACTIVATION tells its progress."""
        record = _records.PHN_ACTIVATION_DATA(bAutomatic=1)
        code = self._api.call("PHN_Activate", ctypes.byref(record))
        if code != ErrorCode.PHN_ERROR_ACTIVATION_STARTED:
            self._api.check(code, "PHN_Activate")
