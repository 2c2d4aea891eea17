"""The loaded library, and the thread that loads it, dispatches its window messages and unloads it."""

import os
import sys
import threading
from collections.abc import Iterator
from contextlib import contextmanager
from ctypes import CDLL, c_uint32
from pathlib import Path
from typing import Any

from . import _win32
from ._exports import PROTOTYPES
from .errors import ErrorCode

# The library serves one host in a process: the next one waits until it is unloaded.
_in_use = threading.Lock()


def candidates(path: str | os.PathLike[str] | None) -> list[str]:
    """Where the library is looked for: the path, else PHNNRV_LIBRARY, else the usual places."""
    named = path or os.environ.get("PHNNRV_LIBRARY")
    if named:
        return [os.fspath(named)]
    here = Path(__file__).resolve().parent
    if sys.platform == "win32":
        return [str(here / "PHNNRV.dll"), "PHNNRV.dll"]
    installed = here.parents[2]  # lib/python3/dist-packages/phnnrv
    names = ["libphnnrv.so.0", "libphnnrv.so"]
    return [str(installed / name) for name in names] + names


def _first_of(paths: list[str]) -> CDLL:
    reasons = []
    for path in paths:
        try:
            return CDLL(path)
        except OSError as error:
            reasons.append(f"{path}: {error}")
    raise OSError("the handset library was not loaded. " + "; ".join(reasons))


@contextmanager
def _reads(prompt: bool | None) -> Iterator[None]:
    """The library looks at the variable whenever it opens a port."""
    if prompt is None:
        yield
        return
    name = "PHNNRV_PROMPT_READS"
    before = os.environ.get(name)
    os.environ[name] = str(int(prompt))
    try:
        yield
    finally:
        if before is not None:
            os.environ[name] = before
        else:
            os.environ.pop(name, None)


class Library:
    """From load to unload. Every export may be called from any thread."""

    def __init__(self, path: str | os.PathLike[str] | None, timeout: float, prompt_reads: bool | None) -> None:
        """Loads the library. Raises OSError, or RuntimeError when this process still has it after `timeout` seconds."""
        if not _in_use.acquire(timeout=timeout):
            raise RuntimeError("another Handset of this process is open, or still ending")
        self._paths = candidates(path)
        self._lock = threading.Lock()
        self._calls = 0
        self._ending = self._loaded = False
        self._failure: Exception | None = None
        loaded = threading.Event()
        # A daemon, so that an exit of the interpreter need not wait for a call that does not return (Handset's _leave).
        self._thread = threading.Thread(target=self._run, args=(loaded, prompt_reads), name="phnnrv", daemon=True)
        self._thread.start()
        try:
            loaded.wait()
        except BaseException:  # Ctrl-C
            self.end()
            raise
        if self._failure:
            raise self._failure

    def _run(self, loaded: threading.Event, prompt_reads: bool | None) -> None:
        try:
            with _reads(prompt_reads):
                self._serve(loaded)
        finally:
            _in_use.release()

    def _serve(self, loaded: threading.Event) -> None:
        try:
            library = self._load()
        except Exception as error:
            self._failure = error
            return
        finally:
            loaded.set()
        with self._lock:
            self._loaded = True
            self._unload_if_idle()
        self.win32.dispatch_until(self._idle)
        self._functions["PHN_Shutdown"]()
        _win32.unload(library)
        self.win32.close_handle(self._idle)

    def _load(self) -> CDLL:
        library = _first_of(self._paths)
        try:
            self._bind(library)
        except AttributeError as error:
            _win32.unload(library)
            raise OSError(f"{error}: it is another library, or an older one") from None
        return library

    def _bind(self, library: CDLL) -> None:
        self._functions: dict[str, Any] = {}
        for name, arguments in PROTOTYPES.items():
            self._functions[name] = library[name]
            self._functions[name].argtypes = arguments
            self._functions[name].restype = c_uint32
        self.win32 = _win32.Win32(library)
        self._idle = self.win32.create_event()  # set once the end is wanted and no call is in progress

    def call(self, name: str, *arguments: Any) -> int:
        """Calls an export and returns what it returns; once the end is wanted, what it returns without service.

        Raises OverflowError for a number that the argument's type cannot hold.
        """
        for kind, value in zip(PROTOTYPES[name], arguments):
            if isinstance(value, int) and kind(value).value != value:
                raise OverflowError(f"{name}: {value} is out of range")
        with self._lock:
            if self._ending:
                return ErrorCode.PHN_ERROR_NO_SERVICE_OBJECT
            self._calls += 1
        try:
            return int(self._functions[name](*arguments))
        finally:
            with self._lock:
                self._calls -= 1
                self._unload_if_idle()

    def _unload_if_idle(self) -> None:
        if self._ending and self._loaded and self._calls == 0:
            self.win32.set_event(self._idle)

    def end(self) -> None:
        """Says goodbye to the handset and unloads, as soon as no call is in progress. Call it once."""
        with self._lock:
            self._ending = True
            self._unload_if_idle()

    def join(self, timeout: float | None = None) -> None:
        """Waits until the library is unloaded, or for so many seconds."""
        self._thread.join(timeout)
