"""Power supplies of the TARNEX family from Python, through the IVI-C driver and the standard library alone.

    import tarnex

    with tarnex.Supply("TCPIP0::192.168.1.20::5025::SOCKET") as supply:
        channel = supply["OutputChannel1"]
        channel.voltage_level = 3.3
        channel.current_limit = 1.5
        channel.output_enabled = True
        print(channel.constant_voltage)

The driver's library is the file that the environment variable TARNEX_LIBRARY names, else the one installed with this
module, else the system's: libTARNEX.so on Linux, TARNEX_64.dll on Windows (found by PATH).

Errors of the driver and the instrument are raised as TarnexError. One is not: when an instrument answers a query with
something that is no number or boolean, a C++ exception leaves the driver, which Python cannot catch: IT ENDS THE
PROCESS. A supply that works does not answer so; when it has to be survived, put the supply into a process of its own
(multiprocessing).

Calls release the interpreter's lock while they wait. Calls on one supply wait for each other, calls on several run in
parallel; only close() must not meet another call on the same supply.
"""

from __future__ import annotations

import contextlib
import ctypes
import ctypes.util
import enum
import functools
import os
import pathlib
import sys
from types import TracebackType
from typing import Any, Callable, Dict, Generic, Iterator, List, Optional, Tuple, Type, TypeVar, overload

__all__ = ["Channel", "CurrentLimitBehavior", "Supply", "TarnexError"]

_T = TypeVar("_T")

_TEXT_SIZE = 4096  # the longest text that the driver hands out, its end included


class TarnexError(Exception):
    """A call that ended with a negative status. Positive ones are successes with a remark, and raise nothing."""

    def __init__(self, status: int, description: str) -> None:
        self.status = status & 0xFFFFFFFF
        """The status as TARNEX.h writes it, for example 0xBFFA0067."""
        self.description = description
        super().__init__(f"0x{self.status:08X}: {description}")

    def __reduce__(self) -> Tuple[Type[TarnexError], Tuple[int, str]]:
        return TarnexError, (self.status, self.description)


class CurrentLimitBehavior(enum.IntEnum):
    """What happens when a load draws more than the current limit."""

    REGULATE = 0
    """The output goes into constant current."""
    TRIP = 1
    """The over-current protection switches the output off."""


def _open_library() -> ctypes.CDLL:
    name, stem = ("TARNEX_64.dll", "TARNEX_64") if sys.platform == "win32" else ("libTARNEX.so", "TARNEX")
    named = os.environ.get("TARNEX_LIBRARY")
    if named:
        return ctypes.CDLL(named)
    # Installed, this file is lib/python3/dist-packages/tarnex.py beside lib/libTARNEX.so.
    beside = pathlib.Path(__file__).resolve().parent.parent.parent / name
    try:
        return ctypes.CDLL(str(beside) if beside.is_file() else ctypes.util.find_library(stem) or name)
    except OSError as failure:
        raise OSError(f"{name} is not to be found: name it in TARNEX_LIBRARY ({failure})") from failure


@functools.lru_cache(maxsize=None)
def _library() -> ctypes.CDLL:
    """The driver, loaded when it is first needed."""
    library = _open_library()
    session, status = ctypes.c_uint32, ctypes.c_int32
    text, real, boolean = ctypes.c_char_p, ctypes.c_double, ctypes.c_uint16
    pointer = ctypes.POINTER
    signatures: List[Tuple[str, List[Any]]] = [
        ("InitWithOptions", [text, boolean, boolean, text, pointer(session)]),
        ("close", [session]),
        ("reset", [session]),
        ("Disable", [session]),
        ("error_query", [session, pointer(ctypes.c_int32), text]),
        ("error_message", [session, status, text]),
        ("revision_query", [session, text, text]),
        ("GetError", [session, pointer(status), ctypes.c_int32, text]),
        ("ClearError", [session]),
        ("LockSession", [session, pointer(boolean)]),
        ("UnlockSession", [session, pointer(boolean)]),
        ("GetChannelName", [session, ctypes.c_int32, ctypes.c_int32, text]),
        ("GetAttributeViInt32", [session, text, ctypes.c_uint32, pointer(ctypes.c_int32)]),
        ("GetAttributeViReal64", [session, text, ctypes.c_uint32, pointer(real)]),
        ("GetAttributeViBoolean", [session, text, ctypes.c_uint32, pointer(boolean)]),
        ("GetAttributeViString", [session, text, ctypes.c_uint32, ctypes.c_int32, text]),
        ("SetAttributeViInt32", [session, text, ctypes.c_uint32, ctypes.c_int32]),
        ("SetAttributeViReal64", [session, text, ctypes.c_uint32, real]),
        ("SetAttributeViBoolean", [session, text, ctypes.c_uint32, boolean]),
        ("QueryMaxCurrentLimit", [session, text, real, pointer(real)]),
        ("QueryMaxVoltageLevel", [session, text, real, pointer(real)]),
        ("QueryOutputState", [session, text, ctypes.c_int32, pointer(boolean)]),
    ]
    for name, arguments in signatures:
        function = getattr(library, "TARNEX_" + name)
        function.argtypes = arguments
        function.restype = status
    return library


def _encode(text: str) -> bytes:
    if "\0" in text:
        raise ValueError("a NUL character ends a text for the driver")
    return text.encode("utf-8")


def _decode(buffer: ctypes.Array[ctypes.c_char]) -> str:
    return buffer.value.decode("utf-8", errors="replace")


_C_TYPES: Dict[str, Any] = {"Int32": ctypes.c_int32, "Real64": ctypes.c_double, "Boolean": ctypes.c_uint16}


class _Attribute(Generic[_T]):
    """An attribute of the driver as an attribute of Python: one exchange with the instrument each time."""

    def __init__(self, kind: str, identifier: int, convert: Callable[[Any], _T], doc: str) -> None:
        self._kind = kind
        self._identifier = identifier
        self._convert = convert
        self.__doc__ = doc

    @overload
    def __get__(self, channel: None, owner: Type[Channel]) -> _Attribute[_T]: ...

    @overload
    def __get__(self, channel: Channel, owner: Type[Channel]) -> _T: ...

    def __get__(self, channel: Optional[Channel], owner: Type[Channel]) -> Any:
        if channel is None:
            return self
        value = _C_TYPES[self._kind]()
        channel.supply._call("GetAttributeVi" + self._kind, channel._selector, self._identifier, ctypes.byref(value))
        return self._convert(value.value)

    def __set__(self, channel: Channel, value: _T) -> None:
        converted = self._convert(value)
        channel.supply._call("SetAttributeVi" + self._kind, channel._selector, self._identifier, converted)


def _real(identifier: int, doc: str) -> _Attribute[float]:
    return _Attribute("Real64", identifier, float, doc)


def _boolean(identifier: int, doc: str) -> _Attribute[bool]:
    return _Attribute("Boolean", identifier, bool, doc)


class Channel:
    """One output of a supply: supply["OutputChannel1"], or by a virtual name of the configuration store.

    A selector of several channels ("OutputChannel1,OutputChannel2") can be set, but not read. What the output really
    delivers cannot be read through the IVI functions: every value here is a programmed one.
    """

    def __init__(self, supply: Supply, name: str) -> None:
        self.supply = supply
        self.name = name
        self._selector = _encode(name)

    def __repr__(self) -> str:
        return f"<Channel {self.name!r}>"

    voltage_level = _real(1250001, "Programmed voltage in V.")
    current_limit = _real(1250005, "Current limit in A; setting it sets the over-current protection's level too.")
    current_limit_behavior = _Attribute(
        "Int32", 1250004, CurrentLimitBehavior, "What happens at the current limit: a CurrentLimitBehavior."
    )
    ovp_enabled = _boolean(1250002, "Whether the over-voltage protection is on.")
    ovp_limit = _real(1250003, "Level of the over-voltage protection in V.")
    output_enabled = _boolean(1250006, "Whether the output is on.")

    @property
    def constant_voltage(self) -> bool:
        """Whether the supply regulates the voltage, as it does while the load draws less than the limit."""
        return self._in_state(0)

    @property
    def constant_current(self) -> bool:
        """Whether the supply regulates the current: the load would draw more than the limit."""
        return self._in_state(1)

    @property
    def max_voltage_level(self) -> float:
        """The highest voltage in V that can be programmed."""
        value = ctypes.c_double()
        self.supply._call("QueryMaxVoltageLevel", self._selector, 0.0, ctypes.byref(value))
        return value.value

    @property
    def max_current_limit(self) -> float:
        """The highest current limit in A that can be programmed."""
        value = ctypes.c_double()
        self.supply._call("QueryMaxCurrentLimit", self._selector, 0.0, ctypes.byref(value))
        return value.value

    def _in_state(self, state: int) -> bool:
        value = ctypes.c_uint16()
        self.supply._call("QueryOutputState", self._selector, state, ctypes.byref(value))
        return bool(value.value)


class Supply:
    """A session with a supply; a context manager that closes it. The outputs stay as they are when it is closed.

    resource: VISA resource string, for example "TCPIP0::192.168.1.20::5025::SOCKET". A configuration store that holds
        this driver decides instead.
    id_query: fail unless the instrument is a supply of this family. To be False in simulation.
    reset: reset the instrument after opening.
    options: IVI option string, for example "Simulate=1" or "QueryInstrStatus=1".
    """

    def __init__(self, resource: str, *, id_query: bool = True, reset: bool = False, options: str = "") -> None:
        self._session = ctypes.c_uint32(0)
        session = ctypes.c_uint32(0)
        # What an earlier failure left with this thread would hide the description of a failing open.
        _library().TARNEX_ClearError(0)
        status = _library().TARNEX_InitWithOptions(
            _encode(resource), id_query, reset, _encode(options), ctypes.byref(session)
        )
        self._check(status)
        self._session = session

    def __enter__(self) -> Supply:
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        value: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()

    def close(self) -> None:
        """Closes the session; once more does nothing. Afterwards every call raises TarnexError 0xBFFA1190."""
        session, self._session = self._session, ctypes.c_uint32(0)
        if session.value:
            self._check(_library().TARNEX_close(session))

    def __getitem__(self, name: str) -> Channel:
        """The channel of a physical or virtual name. A name that is none raises TarnexError when it is first used."""
        return Channel(self, name)

    def __iter__(self) -> Iterator[Channel]:
        return iter([self[name] for name in self.channel_names])

    def __len__(self) -> int:
        return len(self.channel_names)

    @property
    def channel_names(self) -> List[str]:
        """The physical names of the channels."""
        count = ctypes.c_int32()
        self._call("GetAttributeViInt32", b"", 1050203, ctypes.byref(count))
        names = []
        for index in range(1, count.value + 1):
            buffer = ctypes.create_string_buffer(_TEXT_SIZE)
            self._call("GetChannelName", index, _TEXT_SIZE, buffer)
            names.append(_decode(buffer))
        return names

    @property
    def manufacturer(self) -> str:
        """Who made the instrument, as it says itself."""
        return self._text(1050511)

    @property
    def model(self) -> str:
        """The instrument's model; "TX6300" in simulation."""
        return self._text(1050512)

    @property
    def firmware_revision(self) -> str:
        """The revision of the instrument's firmware."""
        return self._text(1050510)

    @property
    def driver_revision(self) -> str:
        """The revision of the driver."""
        return self._text(1050551)

    @property
    def resource(self) -> str:
        """The VISA resource string in use."""
        return self._text(1050304)

    @property
    def logical_name(self) -> str:
        """The name that was opened, when the configuration store holds this driver; else empty."""
        return self._text(1050305)

    def reset(self) -> None:
        """Resets the instrument: outputs off, everything at its power-on value."""
        self._call("reset")

    def disable(self) -> None:
        """Switches all outputs off."""
        self._call("Disable")

    def error_query(self) -> Tuple[int, str]:
        """Takes the oldest entry of the instrument's error queue; code 0 when it is empty."""
        code = ctypes.c_int32()
        buffer = ctypes.create_string_buffer(_TEXT_SIZE)
        self._call("error_query", ctypes.byref(code), buffer)
        return code.value, _decode(buffer).strip('"')

    @contextlib.contextmanager
    def locked(self) -> Iterator[None]:
        """Keeps other threads out for several calls in a row. Nests."""
        self._call("LockSession", None)
        try:
            yield
        finally:
            self._call("UnlockSession", None)

    def _text(self, identifier: int) -> str:
        buffer = ctypes.create_string_buffer(_TEXT_SIZE)
        self._call("GetAttributeViString", b"", identifier, _TEXT_SIZE, buffer)
        return _decode(buffer)

    def _call(self, name: str, *arguments: Any) -> None:
        self._check(getattr(_library(), "TARNEX_" + name)(self._session, *arguments))

    def _check(self, status: int) -> None:
        if status >= 0:
            return
        code = ctypes.c_int32()
        buffer = ctypes.create_string_buffer(_TEXT_SIZE)
        _library().TARNEX_GetError(self._session, ctypes.byref(code), _TEXT_SIZE, buffer)
        # Another thread may have taken the description, and a closed session has none: the status' message remains.
        if code.value != status:
            buffer.value = b""
            _library().TARNEX_error_message(0, status, buffer)
        raise TarnexError(status, _decode(buffer))
