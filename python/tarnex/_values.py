"""The values of the package's functions: enumerations, results, and the checks of arguments."""

from __future__ import annotations

import dataclasses
import enum
import importlib
import math
import numbers
import operator
from typing import Any, Iterable, List, NamedTuple, Optional, Sequence, Type, TypeVar

__all__ = [
    "ChannelState",
    "Columns",
    "CurrentRange",
    "CurrentRate",
    "DelayEnd",
    "Identity",
    "Limits",
    "ListEnd",
    "OffMode",
    "PairMode",
    "PowerOnState",
    "Progress",
    "ProtectionDelay",
    "Reading",
    "Regulation",
    "TraceLine",
    "TriggerInput",
    "columns",
]

_E = TypeVar("_E", bound=enum.Enum)


class Regulation(enum.Enum):
    """What the output regulates. An output that is off reads as CONSTANT_VOLTAGE."""

    CONSTANT_VOLTAGE = 0
    CONSTANT_CURRENT = 1


class CurrentRange(enum.Enum):
    """The range of the current measurement."""

    AUTO = 0
    LOW = 1
    HIGH = 2


class CurrentRate(enum.Enum):
    """The rate of the current measurement."""

    RATE_62 = 0
    RATE_4000 = 1
    RATE_8000 = 2


class ProtectionDelay(enum.Enum):
    """When the delay of the over-current protection starts."""

    ANY = 0
    """With any over-current."""
    SETTING_CHANGE = 1
    """With a change of the settings."""


class PowerOnState(enum.Enum):
    """The state of the output after power-on."""

    RESET = 0
    LAST = 1
    LAST_OFF = 2


class PairMode(enum.Enum):
    """How the channels are combined."""

    OFF = 0
    SERIES = 1
    PARALLEL = 2


class OffMode(enum.Enum):
    """The bleeder while the output is off."""

    BLEEDER_ON = 0
    BLEEDER_OFF = 1


class ListEnd(enum.Enum):
    """The output after the last cycle of the list."""

    OFF = 0
    LAST = 1


class DelayEnd(enum.Enum):
    """The output after the last cycle of the delay sequence."""

    OFF = 0
    ON = 1
    LAST = 2


class TriggerInput(enum.Enum):
    """A trigger input."""

    D1 = 1
    D2 = 2
    D3 = 3
    D4 = 4


class Identity(NamedTuple):
    """The identity of the instrument, as it was read when the supply was opened."""

    manufacturer: str
    model: str
    serial_number: str
    firmware_revision: str


class Limits(NamedTuple):
    """The limits of a channel's settings in V and A, inclusive."""

    min_volts: float
    max_volts: float
    min_amperes: float
    max_amperes: float


@dataclasses.dataclass(frozen=True)
class Reading:
    """One measurement of a channel."""

    volts: float
    amperes: float
    watts: float
    timestamp: float
    """When the measurement was complete: seconds since 1970-01-01 UTC, as time.time()."""
    programmed: Optional[float] = None
    """The programmed voltage of a ramp or sweep in V; otherwise None."""


class Columns(NamedTuple):
    """Readings by column: NumPy arrays when NumPy is installed, otherwise lists."""

    timestamps: Sequence[float]
    volts: Sequence[float]
    amperes: Sequence[float]
    watts: Sequence[float]


class ChannelState(NamedTuple):
    """The state of a channel."""

    channel: int
    output_enabled: bool
    regulation: Regulation
    volts: float
    amperes: float
    watts: float
    voltage: float
    """Programmed voltage in V."""
    current_limit: float
    """Programmed current limit in A."""


class Progress(NamedTuple):
    """The position of a sequence. Group and cycle count from 0."""

    running: bool
    seconds: float
    group: int
    cycle: int


class TraceLine(NamedTuple):
    """A command or a reply on the wire."""

    seconds: float
    """Since the start of the trace."""
    sent: bool
    """True for a command, False for a reply."""
    status: int
    """VISA's status of the transfer."""
    data: bytes


def columns(readings: Iterable[Reading]) -> Columns:
    """Returns readings by column, as NumPy arrays when NumPy is installed and as lists otherwise."""
    rows = list(readings)
    lists = (
        [row.timestamp for row in rows],
        [row.volts for row in rows],
        [row.amperes for row in rows],
        [row.watts for row in rows],
    )
    try:
        numpy = importlib.import_module("numpy")
    except ImportError:
        return Columns(*lists)
    return Columns(*(numpy.array(column, dtype=float) for column in lists))


def real(value: Any, what: str) -> float:
    """Returns a finite number. Raises TypeError for what is not a number, bool included, and ValueError for NaN, an
    infinity and a number outside the range of a float."""
    if isinstance(value, bool) or not isinstance(value, numbers.Real):
        raise TypeError(f"{what} must be a number, not {type(value).__name__}")
    try:
        number = float(value)
    except OverflowError:
        number = math.inf
    if not math.isfinite(number):
        raise ValueError(f"{what} must be finite, not {number}")
    return number


def positive(value: Any, what: str) -> float:
    number = real(value, what)
    if number <= 0:
        raise ValueError(f"{what} must be above 0, not {number}")
    return number


def not_negative(value: Any, what: str) -> float:
    number = real(value, what)
    if number < 0:
        raise ValueError(f"{what} must not be negative, not {number}")
    return number


def switch(value: Any, what: str) -> bool:
    """Returns a bool. Raises TypeError for every other type: "off" and 1 are not switches."""
    if not isinstance(value, bool):
        raise TypeError(f"{what} must be True or False, not {value!r}")
    return value


def integer(value: Any, what: str, lowest: int, highest: int) -> int:
    if isinstance(value, bool):
        raise TypeError(f"{what} must be an integer, not bool")
    try:
        number = operator.index(value)
    except TypeError:
        raise TypeError(f"{what} must be an integer, not {type(value).__name__}") from None
    if not lowest <= number <= highest:
        raise ValueError(f"{what} must be from {lowest} to {highest}, not {number}")
    return number


def member(value: Any, kind: Type[_E], what: str) -> _E:
    """Returns a member of an enumeration. Raises TypeError for plain numbers and members of others."""
    if not isinstance(value, kind):
        raise TypeError(f"{what} must be a {kind.__name__}, not {value!r}")
    return value


def items(values: Any, what: str) -> List[Any]:
    """Returns the elements of a sequence or array with Python's own types."""
    if isinstance(values, (str, bytes)):
        raise TypeError(f"{what} must be a sequence of numbers, not {type(values).__name__}")
    # NumPy's own booleans are not bool; tolist() converts them.
    to_list = getattr(values, "tolist", None)
    return list(to_list() if callable(to_list) else values)


def text(value: Any, what: str) -> bytes:
    """Returns a text in UTF-8. Raises ValueError for a NUL, which would end it."""
    if not isinstance(value, str):
        raise TypeError(f"{what} must be a str, not {type(value).__name__}")
    if "\0" in value:
        raise ValueError(f"{what} must not contain a NUL character")
    return value.encode("utf-8")


def command(value: Any) -> bytes:
    """Returns a command. Raises ValueError for a line end, which would make two commands of it, and for none."""
    line = text(value, "a command")
    if b"\n" in line or b"\r" in line:
        raise ValueError("a command must not contain a line end")
    if not line.strip():
        raise ValueError("a command must not be empty")
    return line
