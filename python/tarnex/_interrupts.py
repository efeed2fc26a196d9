"""Ctrl-C while an output is switched off."""

from __future__ import annotations

import signal
import threading
from types import FrameType, TracebackType
from typing import Any, Optional, Type


class Deferred:
    """Delivers SIGINT after the block instead of within it. Has no effect in other threads than the main one, which
    do not receive it.

    When the block raises, the exception is more important than the interrupt, which is dropped.
    """

    def __init__(self) -> None:
        self._previous: Any = None
        self._arrived = False

    def __enter__(self) -> Deferred:
        if threading.current_thread() is threading.main_thread() and callable(signal.getsignal(signal.SIGINT)):
            self._previous = signal.signal(signal.SIGINT, self._record)
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        value: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        if self._previous is not None:
            signal.signal(signal.SIGINT, self._previous)
            if self._arrived and value is None:
                signal.raise_signal(signal.SIGINT)

    def _record(self, _number: int, _frame: Optional[FrameType]) -> None:
        self._arrived = True
