"""The blocks that run a list or a delay sequence."""

from __future__ import annotations

import ctypes
import time
from types import TracebackType
from typing import TYPE_CHECKING, Optional, Type, TypeVar

from tarnex import _errors
from tarnex._channel import Channel
from tarnex._errors import TarnexTimeout
from tarnex._values import Progress

if TYPE_CHECKING:
    from tarnex._supply import Supply

_POLL_INTERVAL = 0.05
_CHANNEL = 1  # list and delay mode control this channel only

_Self = TypeVar("_Self", bound="_Run")


class _Run:
    """A sequence that runs within a block. The end of the block stops it and switches the output off."""

    __slots__ = ("_cycles", "_end", "_supply")

    what = "the sequence"
    mode = ""

    def __init__(self, supply: Supply, cycles: int, end: int) -> None:
        self._supply = supply
        self._cycles = cycles
        self._end = end

    def __enter__(self: _Self) -> _Self:
        supply = self._supply
        with supply._accepted(self.what):
            supply._call(f"Set{self.mode}Cycles", self._cycles)
            supply._call(f"Set{self.mode}EndState", self._end)
        supply._hold(_CHANNEL)
        try:
            with supply._accepted(self.what):
                self._switch_on()
                supply._call(f"Set{self.mode}Enabled", True)
        except BaseException:
            self._stop()
            raise
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        value: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self._stop()

    def progress(self) -> Progress:
        """Reads the position of the sequence."""
        raise NotImplementedError

    def wait(self, timeout: Optional[float] = None) -> Progress:
        """Waits for the end of the last cycle and returns the last position.

        timeout: seconds; None waits as long as the sequence runs. Raises TarnexTimeout when the sequence still runs.
        """
        deadline = None if timeout is None else time.monotonic() + timeout
        while True:
            progress = self.progress()
            if not progress.running:
                return progress
            if deadline is not None and time.monotonic() >= deadline:
                raise TarnexTimeout(_errors.IO_TIMEOUT, f"{self.what} still runs after {timeout:g} s")
            time.sleep(_POLL_INTERVAL)

    def _switch_on(self) -> None:
        """Switches the output on, unless the sequence does that."""

    def _stop(self) -> None:
        self._supply._release(_CHANNEL)


class ListRun(_Run):
    """Supply.run_list()."""

    __slots__ = ()

    what = "the list"
    mode = "List"

    def progress(self) -> Progress:
        """Reads the position of the list."""
        return self._supply.list_progress

    def _switch_on(self) -> None:
        # The output starts with the first group's values, not with those of an earlier use.
        channel = Channel(self._supply, _CHANNEL)
        values = [ctypes.c_double() for _ in range(3)]
        self._supply._call("GetListGroup", 0, *map(ctypes.byref, values))
        channel.voltage = values[0].value
        channel.current_limit = values[1].value
        channel.output_enabled = True


class DelayRun(_Run):
    """Supply.run_delay()."""

    __slots__ = ()

    what = "the delay sequence"
    mode = "Delay"

    def progress(self) -> Progress:
        """Reads the position of the delay sequence."""
        return self._supply.delay_progress
