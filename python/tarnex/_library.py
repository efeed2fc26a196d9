"""Finds and loads the two libraries: the driver and the supply library.

The first of these places that has the driver is used:
1. the environment variable TARNEX_LIBRARY, a folder or the driver's file;
2. the folder _lib of this package, where a wheel has them;
3. the folders of libraries of the prefix in which this package is installed;
4. the system: ldconfig on Linux, PATH on Windows.
The supply library is taken from the same folder, or from the folder "supply" beside it, as in the build folder.
"""

from __future__ import annotations

import ctypes
import ctypes.util
import functools
import os
import pathlib
import sys
from typing import Any, Dict, Iterator, List, Optional, Tuple

ON_WINDOWS = sys.platform == "win32"
DRIVER = "TARNEX_64.dll" if ON_WINDOWS else "libTARNEX.so"
SUPPLY = "TARNEX_supply_64.dll" if ON_WINDOWS else "libTARNEX_supply.so"

TEXT_SIZE = 4096
"""Bytes of the longest text that the driver returns, including its NUL."""

_PACKAGE = pathlib.Path(__file__).resolve().parent
# Windows searches the folders as long as these objects exist.
_dll_directories: List[Any] = []


def _load(path: str) -> ctypes.CDLL:
    if sys.platform == "win32":
        # Python does not search PATH for the libraries that a library needs: the IVI Shared Components.
        folders = [os.path.join(os.environ[name], "Bin") for name in ("IVIROOTDIR64",) if name in os.environ]
        if os.path.isabs(path):
            folders.append(os.path.dirname(path))
        _dll_directories.extend(os.add_dll_directory(folder) for folder in folders if os.path.isdir(folder))
    return ctypes.CDLL(path)


def _installed_folders() -> Iterator[pathlib.Path]:
    yield _PACKAGE / "_lib"
    # Installed on Linux, this package is lib/python3/dist-packages/tarnex; on Windows Drivers/TARNEX/python/tarnex.
    up = _PACKAGE.parents
    if ON_WINDOWS:
        if len(up) > 3:
            yield up[3] / "Bin"
        return
    if len(up) > 2:
        yield up[2]
        yield up[2] / getattr(sys.implementation, "_multiarch", "")
        yield up[2].parent / "lib64"


def _driver_file() -> Optional[str]:
    """Returns the path of the driver; None when only the system can find it."""
    named = os.environ.get("TARNEX_LIBRARY")
    if named:
        path = os.path.abspath(named)
        return os.path.join(path, DRIVER) if os.path.isdir(path) else path
    for folder in _installed_folders():
        if (folder / DRIVER).is_file():
            return str(folder / DRIVER)
    return None


def _supply_file(driver: str) -> str:
    beside = pathlib.Path(driver).parent
    for folder in (beside, beside.parent / "supply"):
        if (folder / SUPPLY).is_file():
            return str(folder / SUPPLY)
    return str(beside / SUPPLY)


def _find(name: str) -> str:
    stem = name.split(".")[0]
    return ctypes.util.find_library(stem if ON_WINDOWS else stem[len("lib") :]) or name


def _open(path: Optional[str], name: str) -> ctypes.CDLL:
    try:
        return _load(path or _find(name))
    except OSError as failure:
        if path and os.environ.get("TARNEX_LIBRARY"):
            raise
        raise OSError(f"{name} not found; set TARNEX_LIBRARY to its folder ({failure})") from failure


@functools.lru_cache(maxsize=None)
def load_driver() -> ctypes.CDLL:
    """Returns the driver, which the first call loads. On failure raises OSError."""
    return _open(_driver_file(), DRIVER)


# The parameters of the functions, after the session: c channel name, t text, r ViReal64, i ViInt32, b ViBoolean, the
# capital letters are pointers to them, T a buffer for text, p an address.
SIGNATURES: Dict[str, str] = {
    "GetTimeout": "I",
    "SetTimeout": "i",
    "Write": "t",
    "Query": "tiT",
    "Reset": "",
    "ClearStatus": "",
    "QueryEventStatus": "I",
    "QueryError": "IiT",
    "QueryQuestionableCondition": "cI",
    "QueryQuestionableEvent": "cI",
    "GetLimits": "cRRRR",
    "GetIdentity": "TTTT",
    "ResolveChannels": "ciII",
    "UploadList": "iRRR",
    "UploadDelay": "iBR",
    "SelectChannel": "c",
    "GetSelectedChannel": "I",
    "SetBleeder": "b",
    "GetBleeder": "B",
    "MeasureAll": "cRRR",
    "MeasureVoltage": "cR",
    "MeasureCurrent": "cR",
    "MeasurePower": "cR",
    "GetRegulationMode": "cI",
    "GetListStatus": "IRII",
    "SetListEnabled": "b",
    "GetListEnabled": "B",
    "SetListCycles": "i",
    "SetListEndState": "i",
    "GetListGroupCount": "I",
    "GetListGroup": "iRRR",
    "GetDelayStatus": "IRII",
    "SetDelayEnabled": "b",
    "GetDelayEnabled": "B",
    "SetDelayCycles": "i",
    "SetDelayEndState": "i",
    "GetDelayGroupCount": "I",
    "GetDelayGroup": "iBR",
    "SetTriggerInputEnabled": "ib",
    "GetTriggerInputEnabled": "iB",
    "SetAllOutputsOff": "",
}
# Settings of a channel.
for _name, _type in {
    "Voltage": "r",
    "Current": "r",
    "OutputEnabled": "b",
    "OvpLevel": "r",
    "OvpEnabled": "b",
    "OcpLevel": "r",
    "OcpEnabled": "b",
    "OcpDelay": "r",
    "OcpDelayMode": "i",
    "PowerOnState": "i",
    "PairMode": "i",
    "OutputSense": "b",
    "Tracking": "b",
    "OffMode": "i",
    "CurrentRange": "i",
    "CurrentRate": "i",
}.items():
    SIGNATURES["Set" + _name] = "c" + _type
    SIGNATURES["Get" + _name] = "c" + _type.upper()

_TYPES: Dict[str, Any] = {
    "c": ctypes.c_char_p,
    "t": ctypes.c_char_p,
    "T": ctypes.c_char_p,
    "r": ctypes.c_double,
    "i": ctypes.c_int32,
    "b": ctypes.c_uint16,
    "R": ctypes.POINTER(ctypes.c_double),
    "I": ctypes.POINTER(ctypes.c_int32),
    "B": ctypes.POINTER(ctypes.c_uint16),
}

TRACE_CALLBACK = ctypes.CFUNCTYPE(
    None,
    ctypes.c_void_p,
    ctypes.c_double,
    ctypes.c_uint16,
    ctypes.c_int32,
    ctypes.POINTER(ctypes.c_char),
    ctypes.c_int32,
)


class CChannelState(ctypes.Structure):
    """TARNEXSupply_ChannelState."""

    _fields_ = [
        ("channel", ctypes.c_int32),
        ("outputEnabled", ctypes.c_uint16),
        ("regulationMode", ctypes.c_int32),
        ("volts", ctypes.c_double),
        ("amperes", ctypes.c_double),
        ("watts", ctypes.c_double),
        ("voltageLevel", ctypes.c_double),
        ("currentLimit", ctypes.c_double),
    ]


@functools.lru_cache(maxsize=None)
def load() -> Tuple[ctypes.CDLL, ctypes.CDLL]:
    """Returns the driver and the supply library, which the first call loads. On failure raises OSError."""
    # The driver first: the supply library then uses this one, whatever its own run path names.
    driver = load_driver()
    path = _driver_file()
    supply = _open(_supply_file(path) if path else None, SUPPLY)
    session, status, pointer = ctypes.c_uint32, ctypes.c_int32, ctypes.POINTER
    signatures: Dict[str, List[Any]] = {
        name: [session] + [_TYPES[letter] for letter in letters] for name, letters in SIGNATURES.items()
    }
    signatures["Open"] = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_int32, pointer(session)]
    signatures["Close"] = [session]
    signatures["Trace"] = [session, TRACE_CALLBACK, ctypes.c_void_p]
    signatures["ReadStates"] = [session, ctypes.c_int32, pointer(CChannelState), pointer(ctypes.c_int32)]
    signatures["ErrorMessage"] = [status, ctypes.c_char_p]
    for name, arguments in signatures.items():
        function = getattr(supply, "TARNEXSupply_" + name)
        function.argtypes = arguments
        function.restype = status
    return driver, supply


# A prototype of its own: tarnex.ivi declares the argument types of the driver's functions on the same library object.
_GET_ERROR = ctypes.CFUNCTYPE(
    ctypes.c_int32, ctypes.c_uint32, ctypes.POINTER(ctypes.c_int32), ctypes.c_int32, ctypes.c_char_p
)


def description_of(session: ctypes.c_uint32, status: int) -> str:
    """Returns the description of the latest error of a session, of the calling thread for session 0.

    Returns the message of the status when the record holds another error.
    """
    driver, supply = load()
    code = ctypes.c_int32()
    buffer = ctypes.create_string_buffer(TEXT_SIZE)
    _GET_ERROR(("TARNEX_GetError", driver))(session, ctypes.byref(code), TEXT_SIZE, buffer)
    if code.value != status:
        buffer.value = b""
        supply.TARNEXSupply_ErrorMessage(status, buffer)
    return decode(buffer.value)


def decode(data: bytes) -> str:
    return data.decode("utf-8", errors="replace")
