"""What the handset reports of itself, told to handlers."""

import sys
import threading
from collections.abc import Callable
from enum import IntEnum
from queue import SimpleQueue

from ._api import Api
from ._exports import CallbackFunction


class Change(IntEnum):
    """What has changed: PHN_CALLBACK_... of phnnrv.h."""

    CONNECTION_INFO = 1
    STATE_INFO = 2
    NETWORK_INFO = 3
    BATTERY_INFO = 4
    SMS = 5  # the number of messages may be another
    ACTIVATION = 9
    REMOVED = 10  # the handset is lost


Handler = Callable[[Change], object]


class Changes:
    """Calls handlers on a thread of its own. The library calls back under a lock; all that is done there is to put the
    change into a queue, so a handler may wait for whatever it likes.
    """

    def __init__(self, api: Api) -> None:
        self._api = api
        self._handlers: dict[Change, list[Handler]] = {}
        self._pending: SimpleQueue[int | None] = SimpleQueue()
        self._function = CallbackFunction(self._pending.put)  # the library holds it until it is unloaded
        self._thread = threading.Thread(target=self._serve, name="phnnrv handlers", daemon=True)
        self._thread.start()

    def add(self, change: Change, handler: Handler) -> None:
        self._register(change)
        self._handlers.setdefault(change, []).append(handler)

    def register_again(self) -> None:
        """After a loss, with which all registrations end."""
        for change in tuple(self._handlers):
            self._register(change)

    def _register(self, change: Change) -> None:
        self._api.do("PHN_SetCallback", change, self._function, False)

    def _serve(self) -> None:
        while (change := self._pending.get()) is not None:
            for handler in tuple(self._handlers.get(Change(change), ())):
                try:
                    handler(Change(change))
                except BaseException:  # sys.exit too: the thread serves the other handlers
                    threading.excepthook(threading.ExceptHookArgs((*sys.exc_info(), self._thread)))

    def end(self) -> None:
        """Returns when the last handler has, unless it is the caller."""
        self._pending.put(None)
        if threading.current_thread() is not self._thread:
            self._thread.join()
