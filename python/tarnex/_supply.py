"""A supply: its connection, its channels and its sequences."""

from __future__ import annotations

import atexit
import contextlib
import ctypes
import os
import threading
import time
import warnings
import weakref
from types import TracebackType
from typing import Any, Callable, Iterator, List, Optional, Sequence, Tuple, Type, Union

from tarnex import _errors, _library, _values
from tarnex._channel import Channel
from tarnex._errors import ChannelError, OutputError, TarnexError
from tarnex._interrupts import Deferred
from tarnex._sequence import DelayRun, ListRun
from tarnex._values import ChannelState, DelayEnd, Identity, ListEnd, Progress, Regulation, TraceLine, TriggerInput

__all__ = ["Supply"]

_CHANNEL_COUNT = 2
_REPLY_SIZE = 1024  # a reply has at most 1023 bytes
_MAX_MILLISECONDS = 0x7FFFFFFF
_MAX_ERRORS = 1000  # more than an error queue holds
_GIVE_UP_SECONDS = 10.0  # for switching off

_open_supplies: "weakref.WeakSet[Supply]" = weakref.WeakSet()


class Supply:
    """A connection with a supply, and a context manager that closes it.

    name: VISA resource string, for example "TCPIP0::192.168.1.20::5025::SOCKET", or a logical name of the configuration
        store.
    options: IVI option string, for example "Simulate=1" or "QueryInstrStatus=1".
    timeout: I/O time-out in seconds.

    supply[1] and supply["OutputChannel1"] are channels; iteration yields all of them.

    Closing leaves the outputs as they are, except those that a block or iterator of this package switched on and has
    not switched off yet. Thread-safe: calls run one after another. A process forked from this one cannot use the
    supply, and closing it there does not affect this process.
    """

    __slots__ = (
        "__weakref__",
        "_callback",
        "_held",
        "_identity",
        "_in_callback",
        "_lock",
        "_name",
        "_pending",
        "_process",
        "_session",
    )

    def __init__(self, name: str, options: str = "", timeout: float = 2.0) -> None:
        self._session = ctypes.c_uint32(0)
        self._lock = threading.RLock()
        self._held: List[int] = []  # numbers of the channels that blocks and iterators have switched on
        self._callback: Any = None  # keeps the callback of the trace alive
        self._in_callback = False
        self._pending: Optional[BaseException] = None  # an interrupt that arrived within the callback
        self._name = name
        self._process = os.getpid()
        resource, option_text = _values.text(name, "the name"), _values.text(options, "the options")
        milliseconds = _milliseconds(timeout)
        library = _library.load()[1]
        try:
            status = library.TARNEXSupply_Open(resource, option_text, milliseconds, ctypes.byref(self._session))
            if status < 0:
                description = _library.description_of(ctypes.c_uint32(0), status)
                raise _errors.error_of(status, description)
            fields = [ctypes.create_string_buffer(256) for _ in range(4)]
            self._call("GetIdentity", *fields)
            self._identity = Identity(*(_library.decode(field.value) for field in fields))
        except BaseException:
            # An interrupt arrives when the connection is open already.
            with Deferred():
                self._dispose()
            raise
        _open_supplies.add(self)

    # --- The connection

    def __enter__(self) -> Supply:
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        value: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()

    def __del__(self) -> None:
        # Wrong arguments of the constructor leave an object without attributes.
        if hasattr(self, "_process") and not self.closed:
            warnings.warn(f"{self!r} was not closed", ResourceWarning, stacklevel=2, source=self)
            self.close()

    def __reduce__(self) -> Tuple[Any, ...]:
        raise TypeError("a supply cannot be copied or pickled")

    def __repr__(self) -> str:
        if self.closed:
            return f"<tarnex.Supply {self._name!r} closed>"
        return f"<tarnex.Supply {self._name!r} {self._identity.model} {self._identity.serial_number}>"

    def close(self) -> None:
        """Closes the connection. Idempotent. Waits for calls that other threads have under way.

        Switches off the outputs of blocks and iterators that are still active. When that cannot be confirmed, raises
        OutputError after closing.
        """
        if os.getpid() != self._process:
            self._session = ctypes.c_uint32(0)
            return
        with self._lock:
            if self._in_callback:
                raise RuntimeError("the callback of a trace must not close the supply")
            held = sorted(set(self._held))
            try:
                if held and self._session.value:
                    self._switch_off(held)
            finally:
                with Deferred():
                    self._held.clear()
                    self._dispose()

    @property
    def closed(self) -> bool:
        """Whether the supply is closed; True in a forked process."""
        return not self._session.value or os.getpid() != self._process

    @property
    def name(self) -> str:
        """The name that was opened."""
        return self._name

    @property
    def identity(self) -> Identity:
        """Manufacturer, model, serial number and firmware revision, as read when the supply was opened."""
        return self._identity

    @property
    def timeout(self) -> float:
        """I/O time-out in seconds."""
        value = ctypes.c_int32()
        self._call("GetTimeout", ctypes.byref(value))
        return value.value / 1000.0

    @timeout.setter
    def timeout(self, seconds: float) -> None:
        self._call("SetTimeout", _milliseconds(seconds))

    def query(self, text: str) -> str:
        """Sends a command and returns its reply without the line end."""
        line = _values.command(text)
        buffer = ctypes.create_string_buffer(_REPLY_SIZE)
        self._call("Query", line, _REPLY_SIZE, buffer, command=text)
        return _library.decode(buffer.value)

    def write(self, text: str) -> None:
        """Sends a command that has no reply."""
        self._call("Write", _values.command(text), command=text)

    def trace(self, callback: Optional[Callable[[TraceLine], None]]) -> None:
        """Reports every command and reply to callback(line); None ends the reports.

        The callback runs in the thread of the call and must not use the supply. Its exceptions go to
        sys.unraisablehook. A simulated supply has no traffic.
        """
        if callback is not None and not callable(callback):
            raise TypeError("the callback of a trace must be callable or None")
        function: Any = ctypes.cast(0, _library.TRACE_CALLBACK)
        if callback is not None:
            function = _library.TRACE_CALLBACK(self._reporter(callback))
        with self._lock:
            # Both, until it is certain which one the library calls: an interrupt may arrive after the call.
            self._callback = (self._callback, function)
            self._call("Trace", function, None)
            self._callback = function

    @contextlib.contextmanager
    def locked(self) -> Iterator[None]:
        """Makes other threads wait while several calls of this thread belong together. May be nested."""
        self._check_process()
        with self._lock:
            self._check_open()
            yield

    # --- The channels

    def __len__(self) -> int:
        return _CHANNEL_COUNT

    def __iter__(self) -> Iterator[Channel]:
        return iter([Channel(self, number) for number in range(1, _CHANNEL_COUNT + 1)])

    def __getitem__(self, key: Union[int, str]) -> Channel:
        """Returns the channel of a number from 1, or of a physical or virtual name. Raises ChannelError for others."""
        return Channel(self, self._number_of(key))

    def __contains__(self, item: object) -> bool:
        if isinstance(item, Channel):
            return item.supply is self
        try:
            self._number_of(item)  # type: ignore[arg-type]
        except (ChannelError, TypeError, ValueError):
            return False
        return True

    def _number_of(self, key: Union[int, str]) -> int:
        if isinstance(key, str):
            channels, count = (ctypes.c_int32 * _CHANNEL_COUNT)(), ctypes.c_int32()
            try:
                self._call("ResolveChannels", _values.text(key, "the name"), _CHANNEL_COUNT, channels, count)
            except TarnexError as error:
                if self.closed or error.status == _errors.INVALID_SESSION:
                    raise
                raise ChannelError(error.status, error.description) from None
            if count.value != 1:
                raise ValueError(f"{key!r} selects {count.value} channels; select one")
            return channels[0]
        if isinstance(key, bool) or not hasattr(key, "__index__"):
            raise TypeError(f"a channel is a number or a name, not {key!r}")
        number = key.__index__()
        if not 1 <= number <= _CHANNEL_COUNT:
            raise ChannelError(
                _errors.UNKNOWN_CHANNEL, f"the supply has the channels 1 to {_CHANNEL_COUNT}, not {number}"
            )
        return number

    def states(self) -> List[ChannelState]:
        """Reads output, regulation, measured and programmed values of all channels."""
        states, count = (_library.CChannelState * _CHANNEL_COUNT)(), ctypes.c_int32()
        self._call("ReadStates", _CHANNEL_COUNT, states, ctypes.byref(count))
        return [
            ChannelState(
                state.channel,
                bool(state.outputEnabled),
                Regulation(state.regulationMode),
                state.volts,
                state.amperes,
                state.watts,
                state.voltageLevel,
                state.currentLimit,
            )
            for state in states[: count.value]
        ]

    # --- The instrument as a whole

    def reset(self) -> None:
        """Resets the instrument: switches the outputs off and restores the power-on values."""
        self._call("Reset")

    def errors(self) -> List[Tuple[int, str]]:
        """Empties the error queue of the instrument and returns its entries, the oldest first."""
        found: List[Tuple[int, str]] = []
        while len(found) < _MAX_ERRORS:
            code, buffer = ctypes.c_int32(), ctypes.create_string_buffer(_REPLY_SIZE)
            self._call("QueryError", ctypes.byref(code), _REPLY_SIZE, buffer)
            if code.value == 0:
                break
            found.append((code.value, _library.decode(buffer.value)))
        return found

    def clear_status(self) -> None:
        """Clears the status registers and the error queue."""
        self._call("ClearStatus")

    def all_off(self) -> None:
        """Stops the list and delay sequences, switches all outputs off and reads them back.

        Raises OutputError when this cannot be confirmed within 10 seconds.
        """
        self._check_process()
        with self._lock:
            self._check_open()
        self._switch_off(list(range(1, _CHANNEL_COUNT + 1)))

    @property
    def bleeder(self) -> bool:
        """Whether the bleeder of the supply is on."""
        value = ctypes.c_uint16()
        self._call("GetBleeder", ctypes.byref(value))
        return bool(value.value)

    @bleeder.setter
    def bleeder(self, enabled: bool) -> None:
        self._call("SetBleeder", _values.switch(enabled, "bleeder"))

    def trigger_input_enabled(self, trigger_input: TriggerInput) -> bool:
        """Reads whether a trigger input is on."""
        value = ctypes.c_uint16()
        number = _values.member(trigger_input, TriggerInput, "the trigger input").value
        self._call("GetTriggerInputEnabled", number, ctypes.byref(value))
        return bool(value.value)

    def set_trigger_input_enabled(self, trigger_input: TriggerInput, enabled: bool) -> None:
        """Switches a trigger input on or off."""
        number = _values.member(trigger_input, TriggerInput, "the trigger input").value
        self._call("SetTriggerInputEnabled", number, _values.switch(enabled, "enabled"))

    # --- Sequences. Both control channel 1

    def upload_list(self, volts: Sequence[float], amperes: Sequence[float], seconds: Sequence[float]) -> None:
        """Stops list mode and replaces the list: group i has volts[i] and amperes[i] for seconds[i].

        Lists, tuples and NumPy arrays of one length. Empties the error queue of the instrument. Raises TarnexError
        when the instrument refuses a group.
        """
        columns = [
            _checked(volts, "volts", _values.real),
            _checked(amperes, "amperes", _values.real),
            _checked(seconds, "seconds", _values.positive),
        ]
        count = _common_length(columns)
        channel = Channel(self, 1)
        for value in columns[0]:
            channel.check_volts(value, "volts")
        for value in columns[1]:
            channel.check_amperes(value, "amperes")
        arrays = [(ctypes.c_double * count)(*column) for column in columns]
        with self._accepted("the list"):
            self._call("SetListEnabled", False)
            self._call("UploadList", count, *arrays)
            self._expect_groups("GetListGroupCount", count)

    def upload_delay(self, enabled: Sequence[bool], seconds: Sequence[float]) -> None:
        """Stops delay mode and replaces the delay sequence: group i has the output enabled[i] for seconds[i].

        Lists, tuples and NumPy arrays of one length. Empties the error queue of the instrument. Raises TarnexError
        when the instrument refuses a group.
        """
        switches = _checked(enabled, "enabled", _values.switch)
        times = _checked(seconds, "seconds", _values.positive)
        count = _common_length([switches, times])
        with self._accepted("the delay sequence"):
            self._call("SetDelayEnabled", False)
            self._call("UploadDelay", count, (ctypes.c_uint16 * count)(*switches), (ctypes.c_double * count)(*times))
            self._expect_groups("GetDelayGroupCount", count)

    def run_list(self, cycles: int = 1, end: ListEnd = ListEnd.OFF) -> ListRun:
        """Returns a context manager that runs the list: the output of channel 1 is on within the block.

        cycles: 1 to 99999; 0 repeats until the end of the block.
        end: the output after the last cycle, until the end of the block.
        """
        return ListRun(self, _cycles(cycles), _values.member(end, ListEnd, "end").value)

    def run_delay(self, cycles: int = 1, end: DelayEnd = DelayEnd.OFF) -> DelayRun:
        """Returns a context manager that runs the delay sequence, which switches the output of channel 1.

        cycles: 1 to 99999; 0 repeats until the end of the block.
        end: the output after the last cycle, until the end of the block.
        """
        return DelayRun(self, _cycles(cycles), _values.member(end, DelayEnd, "end").value)

    @property
    def list_progress(self) -> Progress:
        """The position of the list."""
        return self._progress("GetListStatus", (2, 3))

    @property
    def delay_progress(self) -> Progress:
        """The position of the delay sequence."""
        return self._progress("GetDelayStatus", (1,))

    def _progress(self, function: str, running: Tuple[int, ...]) -> Progress:
        state, group, cycle = ctypes.c_int32(), ctypes.c_int32(), ctypes.c_int32()
        seconds = ctypes.c_double()
        self._call(function, ctypes.byref(state), ctypes.byref(seconds), ctypes.byref(group), ctypes.byref(cycle))
        return Progress(state.value in running, seconds.value, group.value, cycle.value)

    @contextlib.contextmanager
    def _accepted(self, what: str) -> Iterator[None]:
        """Raises TarnexError when the instrument reports an error of the commands of the block. It refuses commands
        without a status."""
        with self.locked():
            self.clear_status()
            yield
            refused = self.errors()
        if refused:
            code, message = refused[0]
            raise TarnexError(_errors.INSTRUMENT_STATUS, f"the instrument refuses {what}: {code}, {message}")

    def _expect_groups(self, function: str, count: int) -> None:
        found = ctypes.c_int32()
        self._call(function, ctypes.byref(found))
        if found.value != count:
            refused = self.errors()
            why = f": {refused[0][0]}, {refused[0][1]}" if refused else ""
            raise TarnexError(
                _errors.INSTRUMENT_STATUS, f"the instrument has {found.value} groups instead of {count}{why}"
            )

    # --- Calls

    def _check_process(self) -> None:
        if os.getpid() != self._process:
            raise TarnexError(
                _errors.INVALID_SESSION,
                f"process {self._process} opened this supply; a forked process must open a supply of its own",
            )

    def _check_open(self) -> None:
        if not self._session.value:
            raise TarnexError(_errors.INVALID_SESSION, "the supply is closed")

    def _call(self, name: str, *arguments: Any, command: str = "") -> None:
        self._check_process()
        with self._lock:
            self._check_open()
            if self._in_callback:
                raise RuntimeError("the callback of a trace must not use the supply")
            status = getattr(_library.load()[1], "TARNEXSupply_" + name)(self._session, *arguments)
            pending, self._pending = self._pending, None
            if pending is not None:
                raise pending
            if status < 0:
                raise _errors.error_of(status, _library.description_of(self._session, status), command)

    def _reporter(self, callback: Callable[[TraceLine], None]) -> Callable[..., None]:
        supply = weakref.ref(self)  # the callback must not keep the supply alive

        def report(_context: Any, seconds: float, sent: int, status: int, text: Any, size: int) -> None:
            owner = supply()
            if owner is None:
                return
            owner._in_callback = True
            try:
                callback(TraceLine(seconds, bool(sent), status & 0xFFFFFFFF, ctypes.string_at(text, size)))
            except Exception:
                raise
            except BaseException as interrupt:
                # ctypes would swallow an interrupt.
                owner._pending = interrupt
            finally:
                owner._in_callback = False

        return report

    def _dispose(self) -> None:
        session, self._session = self._session, ctypes.c_uint32(0)
        if session.value:
            status = _library.load()[1].TARNEXSupply_Close(session)
            if status < 0:
                raise _errors.error_of(status, _library.description_of(session, status))

    # --- Switching off

    def _hold(self, number: int) -> None:
        self._check_process()
        with self._lock:
            self._check_open()
            self._held.append(number)

    def _release(self, number: int) -> None:
        """Switches off a channel that was held. Has no effect in a forked process and after close."""
        if os.getpid() != self._process:
            return

        def release() -> None:
            with self._lock:
                held = number in self._held
            if held:
                try:
                    self._try_to_switch_off([number])
                except TarnexError:
                    self._forget(number)
                    raise
                self._forget(number)

        _uninterrupted(release)

    def _forget(self, number: int) -> None:
        with self._lock:
            if number in self._held:
                self._held.remove(number)

    def _switch_off(self, numbers: Sequence[int]) -> None:
        _uninterrupted(lambda: self._try_to_switch_off(numbers))

    def _try_to_switch_off(self, numbers: Sequence[int]) -> None:
        """Stops the sequences of channels, switches the channels off and reads them back, for 10 s at most."""
        deadline = time.monotonic() + _GIVE_UP_SECONDS
        failed: List[Channel] = []
        for channel in [Channel(self, number) for number in numbers]:
            try:
                channel.ensure_off(max(deadline - time.monotonic(), 0.0))
            except TarnexError as error:
                failed.append(channel)
                cause = error
        if not failed:
            return
        if self.closed:
            with self._lock:
                if not any(channel.number in self._held for channel in failed):
                    return  # closed by another thread, which has switched the outputs off
        raise OutputError(cause.status, _warning(failed, str(cause))) from cause


def _uninterrupted(action: Callable[[], None]) -> None:
    """Runs an action; an interrupt is raised afterwards."""
    try:
        with Deferred():
            action()
    except TarnexError:
        raise
    except BaseException:
        # The interrupt may have arrived before it was deferred, or is another signal's.
        with Deferred():
            action()
        raise


def _warning(channels: Sequence[Channel], why: str) -> str:
    return f"OUTPUT {', '.join(channel.name for channel in channels)} MAY STILL BE ON: {why}"


def _milliseconds(timeout: float) -> int:
    milliseconds = round(_values.positive(timeout, "the time-out") * 1000)
    if milliseconds > _MAX_MILLISECONDS:
        raise ValueError(f"the time-out must be at most {_MAX_MILLISECONDS // 1000} s, not {timeout}")
    return max(milliseconds, 1)


def _cycles(cycles: int) -> int:
    return _values.integer(cycles, "cycles", 0, 99999)


def _checked(values: Any, what: str, check: Callable[[Any, str], Any]) -> List[Any]:
    return [check(value, what) for value in _values.items(values, what)]


def _common_length(columns: Sequence[Sequence[Any]]) -> int:
    lengths = [len(column) for column in columns]
    if len(set(lengths)) != 1 or lengths[0] == 0:
        raise ValueError(f"the columns must have one length above 0, not {', '.join(map(str, lengths))}")
    return lengths[0]


@atexit.register
def _close_all() -> None:
    """Switches off what generators that nobody closed have switched on."""
    failure: Optional[OutputError] = None
    for supply in list(_open_supplies):
        try:
            supply.close()
        except OutputError as error:
            failure = error
        except TarnexError:
            pass  # the process ends, and with it the connection
    if failure is not None:
        raise failure
