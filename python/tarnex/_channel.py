"""A channel: its settings, its measurements, and the loops that switch its output on and off again."""

from __future__ import annotations

import ctypes
import enum
import math
import time
from types import TracebackType
from typing import TYPE_CHECKING, Any, Callable, Generator, Generic, List, Optional, Type, TypeVar, overload

from tarnex import _errors, _values
from tarnex._errors import ProtectionError
from tarnex._values import (
    CurrentRange,
    CurrentRate,
    Limits,
    OffMode,
    PairMode,
    PowerOnState,
    ProtectionDelay,
    Reading,
    Regulation,
)

if TYPE_CHECKING:
    from tarnex._supply import Supply

__all__ = ["Channel"]

_T = TypeVar("_T")
_E = TypeVar("_E", bound=enum.Enum)

_MAX_POINTS = 100000
_MOST_MILLISECONDS = 2**31 - 1


class _Setting(Generic[_T]):
    """A setting of a channel as an attribute of Python. Each access is one exchange with the instrument."""

    def __init__(
        self,
        name: str,
        c_type: Any,
        to_python: Callable[[Any], _T],
        to_c: Callable[[Channel, Any, str], Any],
        doc: str,
    ) -> None:
        self._function = name
        self._c_type = c_type
        self._to_python = to_python
        self._to_c = to_c
        self._name = name
        self.__doc__ = doc

    def __set_name__(self, owner: Type[Channel], name: str) -> None:
        self._name = name

    @overload
    def __get__(self, channel: None, owner: Type[Channel]) -> _Setting[_T]: ...

    @overload
    def __get__(self, channel: Channel, owner: Type[Channel]) -> _T: ...

    def __get__(self, channel: Optional[Channel], owner: Type[Channel]) -> Any:
        if channel is None:
            return self
        return self._to_python(channel._read("Get" + self._function, self._c_type))

    def __set__(self, channel: Channel, value: _T) -> None:
        channel._call("Set" + self._function, self._to_c(channel, value, self._name))


def _volts(name: str, doc: str) -> _Setting[float]:
    return _Setting(name, ctypes.c_double, float, lambda channel, value, what: channel.check_volts(value, what), doc)


def _amperes(name: str, doc: str) -> _Setting[float]:
    return _Setting(name, ctypes.c_double, float, lambda channel, value, what: channel.check_amperes(value, what), doc)


def _seconds(name: str, doc: str) -> _Setting[float]:
    return _Setting(name, ctypes.c_double, float, lambda _channel, value, what: _values.not_negative(value, what), doc)


def _switch(name: str, doc: str) -> _Setting[bool]:
    return _Setting(name, ctypes.c_uint16, bool, lambda _channel, value, what: _values.switch(value, what), doc)


def _choice(name: str, kind: Type[_E], doc: str) -> _Setting[_E]:
    return _Setting(
        name, ctypes.c_int32, kind, lambda _channel, value, what: _values.member(value, kind, what).value, doc
    )


class Channel:
    """One output of a supply: supply[1] or supply["OutputChannel1"].

    Numbers must be finite and, for volts and amperes, within the channel's limits: ValueError. A switch takes only
    True and False: TypeError.
    """

    __slots__ = ("_number", "_selector", "_supply")

    def __init__(self, supply: Supply, number: int) -> None:
        self._supply = supply
        self._number = number
        self._selector = f"OutputChannel{number}".encode("ascii")

    def __repr__(self) -> str:
        return f"<tarnex.Channel {self.name!r} of {self._supply.name!r}>"

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Channel):
            return NotImplemented
        return self._supply is other._supply and self._number == other._number

    def __hash__(self) -> int:
        return hash((id(self._supply), self._number))

    @property
    def supply(self) -> Supply:
        """The supply of the channel."""
        return self._supply

    @property
    def number(self) -> int:
        """The number of the channel, from 1."""
        return self._number

    @property
    def name(self) -> str:
        """The physical name: "OutputChannel1"."""
        return self._selector.decode("ascii")

    # --- Settings

    voltage = _volts("Voltage", "Programmed voltage in V.")
    current_limit = _amperes("Current", "Programmed current limit in A.")
    output_enabled = _switch("OutputEnabled", "Whether the output is on.")
    ovp_level = _volts("OvpLevel", "Level of the over-voltage protection in V.")
    ovp_enabled = _switch("OvpEnabled", "Whether the over-voltage protection is on.")
    ocp_level = _amperes("OcpLevel", "Level of the over-current protection in A.")
    ocp_enabled = _switch("OcpEnabled", "Whether the over-current protection is on.")
    ocp_delay = _seconds("OcpDelay", "Delay of the over-current protection in s.")
    ocp_delay_mode = _choice("OcpDelayMode", ProtectionDelay, "When the delay of the over-current protection starts.")
    remote_sense = _switch("OutputSense", "Whether remote sense is on.")
    power_on_state = _choice("PowerOnState", PowerOnState, "The state of the output after power-on.")
    pairing = _choice("PairMode", PairMode, "How the channels are combined.")
    tracking = _switch("Tracking", "Whether tracking is on.")
    off_mode = _choice("OffMode", OffMode, "The bleeder while the output is off.")
    current_range = _choice("CurrentRange", CurrentRange, "The range of the current measurement.")
    current_rate = _choice("CurrentRate", CurrentRate, "The rate of the current measurement.")

    @property
    def limits(self) -> Limits:
        """The limits of the settings. Sends nothing."""
        values = [ctypes.c_double() for _ in range(4)]
        self._call("GetLimits", *map(ctypes.byref, values))
        return Limits(*(value.value for value in values))

    def check_volts(self, value: Any, what: str = "the voltage") -> float:
        """Returns a voltage within the limits. Raises ValueError, with the limits, for others. Sends nothing."""
        limits = self.limits
        return self._check(value, what, "V", limits.min_volts, limits.max_volts)

    def check_amperes(self, value: Any, what: str = "the current") -> float:
        """Returns a current within the limits. Raises ValueError, with the limits, for others. Sends nothing."""
        limits = self.limits
        return self._check(value, what, "A", limits.min_amperes, limits.max_amperes)

    def _check(self, value: Any, what: str, unit: str, lowest: float, highest: float) -> float:
        number = _values.real(value, what)
        if not lowest <= number <= highest:
            allowed = f"from {lowest:g} to {highest:g} {unit}"
            raise ValueError(f"{what} of {self.name} must be {allowed}, not {number:g} {unit}")
        return number

    def select(self) -> None:
        """Selects the channel for operation at the front panel."""
        self._call("SelectChannel")

    # --- Measurement

    def measure(self) -> Reading:
        """Measures voltage, current and power with one query."""
        return self._measure(None)

    @property
    def voltage_measured(self) -> float:
        """The voltage at the output in V."""
        return float(self._read("MeasureVoltage", ctypes.c_double))

    @property
    def current_measured(self) -> float:
        """The current at the output in A."""
        return float(self._read("MeasureCurrent", ctypes.c_double))

    @property
    def power_measured(self) -> float:
        """The power at the output in W."""
        return float(self._read("MeasurePower", ctypes.c_double))

    @property
    def regulation(self) -> Regulation:
        """What the output regulates. An output that is off reads as CONSTANT_VOLTAGE."""
        return Regulation(self._read("GetRegulationMode", ctypes.c_int32))

    @property
    def questionable_condition(self) -> int:
        """The questionable condition register."""
        return int(self._read("QueryQuestionableCondition", ctypes.c_int32))

    def ensure_off(self, give_up: float = 10.0) -> None:
        """Stops the sequences that drive the channel, switches it off and reads it back.

        give_up: seconds for which this is repeated after a failure, over new connections when necessary; 0: one try.
        Raises TarnexError when the output may still be on.
        """
        milliseconds = round(_values.not_negative(give_up, "the time") * 1000)
        self._call("EnsureOff", min(milliseconds, _MOST_MILLISECONDS))

    # --- Blocks and loops

    def on(self) -> OutputOn:
        """Returns a context manager: the output is on within the block.

        The end of the block switches it off and reads it back, whatever happens in the block. When this cannot be
        confirmed within 10 seconds, it raises OutputError.
        """
        return OutputOn(self)

    def watch(self, interval: float) -> Generator[Reading, None, None]:
        """Yields a reading every interval seconds, without end. Does not change the output."""
        return self._watch(_values.not_negative(interval, "the interval"))

    def sweep(
        self, start: float, stop: float, step: float, *, settle: float = 0.05
    ) -> Generator[Reading, None, None]:
        """Switches the output on and yields a reading at every voltage from start to stop, both included.

        start, stop, step: in V; step is above 0, and the last step is shorter when the range is not a multiple of it.
        settle: seconds between setting a voltage and measuring.

        The end, an exception and closing the generator switch the output off and read it back, as with on(). An output
        that switches itself off raises ProtectionError.
        """
        first, last = self.check_volts(start, "start"), self.check_volts(stop, "stop")
        levels = _levels(first, last, _values.positive(step, "the step"))
        return self._step_through(levels, _values.not_negative(settle, "the settling time"), 0.0)

    def ramp(self, to: float, rate: float, *, interval: float = 0.1) -> Generator[Reading, None, None]:
        """Switches the output on, changes the voltage from the programmed one to another, and yields a reading at
        every step.

        to: in V. rate: in V/s; a slow caller makes the ramp slower, never faster. interval: seconds between steps.

        The end, an exception and closing the generator switch the output off and read it back, as with on(). An output
        that switches itself off raises ProtectionError.
        """
        last = self.check_volts(to, "to")
        pause = _values.positive(interval, "the interval")
        levels = _levels(self.voltage, last, _values.positive(rate, "the rate") * pause)
        return self._step_through(levels, 0.0, pause)

    def _watch(self, interval: float) -> Generator[Reading, None, None]:
        due = time.monotonic()
        while True:
            _sleep_until(due)
            yield self.measure()
            due = max(due + interval, time.monotonic())

    def _step_through(self, levels: List[float], settle: float, interval: float) -> Generator[Reading, None, None]:
        # Before the output is on, so that it does not start with another voltage.
        self.voltage = levels[0]
        with self.on():
            due = time.monotonic()
            for level in levels:
                _sleep_until(due)
                self.voltage = level
                due = time.monotonic() + interval
                time.sleep(settle)
                reading = self._measure(level)
                if not self.output_enabled:
                    raise ProtectionError(
                        _errors.INSTRUMENT_STATUS,
                        f"{self.name} is off at {level:g} V: a protection tripped, or somebody switched it off",
                    )
                yield reading

    # --- Calls

    def _measure(self, programmed: Optional[float]) -> Reading:
        values = [ctypes.c_double() for _ in range(3)]
        self._call("MeasureAll", *map(ctypes.byref, values))
        volts, amperes, watts = (value.value for value in values)
        return Reading(volts, amperes, watts, time.time(), programmed)

    def _call(self, name: str, *arguments: Any) -> None:
        self._supply._call(name, self._selector, *arguments)

    def _read(self, name: str, c_type: Any) -> Any:
        value = c_type()
        self._call(name, ctypes.byref(value))
        return value.value


class OutputOn:
    """Channel.on()."""

    __slots__ = ("_channel",)

    def __init__(self, channel: Channel) -> None:
        self._channel = channel

    def __enter__(self) -> Channel:
        channel = self._channel
        channel.supply._hold(channel.number)
        try:
            channel.output_enabled = True
        except BaseException:
            # The instrument may have executed the command before the call failed.
            channel.supply._release(channel.number)
            raise
        return channel

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        value: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self._channel.supply._release(self._channel.number)


def _levels(start: float, stop: float, step: float) -> List[float]:
    # The tolerance of a millionth of a step: in binary, 0.3 is not exactly three times 0.1.
    count = abs(stop - start) / step
    if count > _MAX_POINTS:
        raise ValueError(f"more than {_MAX_POINTS} points; use a larger step")
    steps = math.ceil(count - 1e-6)
    direction = math.copysign(step, stop - start)
    # Without the errors of addition, so that 0.1 V steps are sent and reported as such.
    return [round(start + i * direction, 9) for i in range(steps)] + [stop]


def _sleep_until(due: float) -> None:
    time.sleep(max(0.0, due - time.monotonic()))
