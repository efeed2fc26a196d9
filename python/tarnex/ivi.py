"""The IVI functions of the driver from Python, for programs that need the IVI classes and the configuration store.

    from tarnex import ivi

    with ivi.Supply("TCPIP0::192.168.1.20::5025::SOCKET") as supply:
        channel = supply["OutputChannel1"]
        channel.voltage_level = 3.3
        channel.current_limit = 1.5
        channel.output_enabled = True
        print(channel.constant_voltage)

This module needs only the driver, not the supply library. tarnex.Supply measures, has the other commands of the supply,
and survives every reply.

Errors of the driver and the instrument are raised as TarnexError, with one exception: when an instrument answers a
query with something that is not a number or boolean, a C++ exception leaves the driver. Python cannot catch it: IT ENDS
THE PROCESS. A working supply does not send such a reply. A program that must survive it uses tarnex.Supply.

Thread-safe: calls release the interpreter's lock while they wait. Calls on the same supply run one after another, calls
on different supplies run in parallel. The caller must not call close() during another call on the same supply.
"""

from __future__ import annotations

import contextlib
import ctypes
import enum
import functools
from types import TracebackType
from typing import Any, Callable, Dict, Generic, Iterator, List, Optional, Tuple, Type, TypeVar, overload

from tarnex import _library as _library_files
from tarnex import _values
from tarnex._errors import TarnexError

__all__ = ["Channel", "CurrentLimitBehavior", "Supply", "TarnexError"]

_T = TypeVar("_T")

_TEXT_SIZE = 4096  # the longest text that the driver returns, including its NUL


class CurrentLimitBehavior(enum.IntEnum):
    """What happens when a load draws more than the current limit."""

    REGULATE = 0
    """The output goes into constant current."""
    TRIP = 1
    """The over-current protection switches the output off."""


@functools.lru_cache(maxsize=None)
def _library() -> ctypes.CDLL:
    """Returns the driver, which the first call loads."""
    library = _library_files.load_driver()
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
        raise ValueError("a text must not contain a NUL character")
    return text.encode("utf-8")


def _decode(buffer: ctypes.Array[ctypes.c_char]) -> str:
    return buffer.value.decode("utf-8", errors="replace")


_C_TYPES: Dict[str, Any] = {"Int32": ctypes.c_int32, "Real64": ctypes.c_double, "Boolean": ctypes.c_uint16}


class _Attribute(Generic[_T]):
    """An attribute of the driver as an attribute of Python. Each access is one exchange with the instrument."""

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
        converted = _values.switch(value, "a switch") if self._kind == "Boolean" else self._convert(value)
        channel.supply._call("SetAttributeVi" + self._kind, channel._selector, self._identifier, converted)


def _real(identifier: int, doc: str) -> _Attribute[float]:
    return _Attribute("Real64", identifier, float, doc)


def _boolean(identifier: int, doc: str) -> _Attribute[bool]:
    return _Attribute("Boolean", identifier, bool, doc)


class Channel:
    """One output of a supply: supply["OutputChannel1"], or a virtual name of the configuration store.

    The attributes of a selector of several channels ("OutputChannel1,OutputChannel2") can be set but not read. All
    values are programmed values: the IVI functions do not measure the output.
    """

    __slots__ = ("_selector", "name", "supply")

    def __init__(self, supply: Supply, name: str) -> None:
        self.supply = supply
        self.name = name
        self._selector = _encode(name)

    def __repr__(self) -> str:
        return f"<Channel {self.name!r}>"

    voltage_level = _real(1250001, "Programmed voltage in V.")
    current_limit = _real(1250005, "Current limit in A; setting it also sets the level of the over-current protection.")
    current_limit_behavior = _Attribute(
        "Int32", 1250004, CurrentLimitBehavior, "What happens at the current limit: a CurrentLimitBehavior."
    )
    ovp_enabled = _boolean(1250002, "Whether the over-voltage protection is on.")
    ovp_limit = _real(1250003, "Level of the over-voltage protection in V.")
    output_enabled = _boolean(1250006, "Whether the output is on.")

    @property
    def constant_voltage(self) -> bool:
        """Whether the supply regulates the voltage: the load draws less than the current limit."""
        return self._in_state(0)

    @property
    def constant_current(self) -> bool:
        """Whether the supply regulates the current: the load demands more than the current limit."""
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
    """A session with a supply, and a context manager that closes it. Closing does not change the outputs.

    resource: VISA resource string, for example "TCPIP0::192.168.1.20::5025::SOCKET". If a configuration store contains
        this driver, the store selects the resource.
    id_query: fail unless the instrument is a supply of this family. Must be False in simulation.
    reset: reset the instrument after opening.
    options: IVI option string, for example "Simulate=1" or "QueryInstrStatus=1".
    """

    __slots__ = ("_session",)

    def __init__(self, resource: str, *, id_query: bool = True, reset: bool = False, options: str = "") -> None:
        self._session = ctypes.c_uint32(0)
        session = ctypes.c_uint32(0)
        # An earlier error of this thread that was not read would hide the description of a failed open.
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
        """Closes the session. Idempotent. Afterwards every other call raises TarnexError 0xBFFA1190."""
        session, self._session = self._session, ctypes.c_uint32(0)
        if session.value:
            self._check(_library().TARNEX_close(session))

    def __getitem__(self, name: str) -> Channel:
        """Returns the channel of a physical or virtual name. The first use of an unknown name raises TarnexError."""
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
        """The manufacturer in the identity of the instrument."""
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
        """The name that was opened if the configuration store contains this driver; otherwise empty."""
        return self._text(1050305)

    def reset(self) -> None:
        """Resets the instrument: switches the outputs off and restores the power-on values."""
        self._call("reset")

    def disable(self) -> None:
        """Switches all outputs off."""
        self._call("Disable")

    def error_query(self) -> Tuple[int, str]:
        """Removes and returns the oldest entry of the instrument's error queue; code 0 when the queue is empty."""
        code = ctypes.c_int32()
        buffer = ctypes.create_string_buffer(_TEXT_SIZE)
        self._call("error_query", ctypes.byref(code), buffer)
        return code.value, _decode(buffer).strip('"')

    @contextlib.contextmanager
    def locked(self) -> Iterator[None]:
        """Locks the supply for several calls; other threads wait. May be nested."""
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
        # Only the message of the status is available when another thread has read the description or the session is
        # closed.
        if code.value != status:
            buffer.value = b""
            _library().TARNEX_error_message(0, status, buffer)
        raise TarnexError(status, _decode(buffer))
