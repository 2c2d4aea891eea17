"""A host in another language: starts a simulated handset, loads the library with ctypes, reads the identity, unloads.

Usage: python_host.py PHNSIM LIBPHNPLATFORM LIBPHNNRV
"""
import _ctypes
import ctypes
import os
import subprocess
import sys
import tempfile

DEVICE_INFO_SIZE = 548


class DeviceInfo(ctypes.Structure):
    _pack_ = 1
    _fields_ = [
        ("uSize", ctypes.c_uint32),
        ("szNumber", ctypes.c_char * 22),
        ("szESN", ctypes.c_char * 12),
        ("uInfo19", ctypes.c_uint32),
        ("szInfo20", ctypes.c_char * 64),
        ("szModel", ctypes.c_char * 64),
        ("rest", ctypes.c_char * 378),
    ]


def read_model(library):
    def call(name, *arguments):
        error = getattr(library, name)(*arguments)
        assert error == 0, f"{name}: {error}"

    assert ctypes.sizeof(DeviceInfo) == DEVICE_INFO_SIZE
    info = DeviceInfo(uSize=DEVICE_INFO_SIZE)
    call("PHN_Startup")
    call("PHN_GetDeviceInfo", ctypes.byref(info))
    call("PHN_Shutdown")
    return info.szModel.decode("cp1252")


def main(phnsim, platform, library_path):
    with tempfile.TemporaryDirectory() as devices:
        os.environ["PHNNRV_DEVICES"] = devices
        os.environ["PHNNRV_REGISTRY"] = os.path.join(devices, "none.reg")
        handset = subprocess.Popen([phnsim, "--devices", devices, "--usb", "0001"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        try:
            greeting = handset.stdout.readline()
            ctypes.CDLL(platform, mode=ctypes.RTLD_GLOBAL)
            library = ctypes.CDLL(library_path)
            model = read_model(library)
            assert f"serving {model} on " in greeting, (model, greeting)
            _ctypes.dlclose(library._handle)
            with open("/proc/self/maps") as maps:
                assert os.path.basename(library_path) not in maps.read(), "still mapped after unloading"
        finally:
            handset.terminate()
            handset.wait()


main(*sys.argv[1:])
