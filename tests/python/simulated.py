"""A simulated handset for tests: phnsim, whose path PHNSIM gives, in a device directory of its own."""

import os
import subprocess
import tempfile


class Simulated:
    def __init__(self) -> None:
        self._devices = tempfile.TemporaryDirectory()
        os.environ["PHNNRV_DEVICES"] = self._devices.name
        os.environ["PHNNRV_REGISTRY"] = os.path.join(self._devices.name, "none.reg")
        command = [os.environ["PHNSIM"], "--devices", self._devices.name, "--usb", "0001"]
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._process.stdout.readline()

    def control(self, line: str) -> str:
        self._process.stdin.write(line + "\n")
        self._process.stdin.flush()
        return self._process.stdout.readline().rstrip()

    def close(self) -> None:
        self._process.communicate("quit\n", timeout=30)
        self._devices.cleanup()
