"""The errors that the package raises."""

from __future__ import annotations

import re
from typing import Tuple, Type

__all__ = ["ChannelError", "OutputError", "ProtectionError", "TarnexError", "TarnexTimeout"]

INSTRUMENT_STATUS = 0xBFFA0001
IO_ERROR = 0xBFFA4214
INVALID_SESSION = 0xBFFA1190
UNKNOWN_CHANNEL = 0xBFFA0067
IO_TIMEOUT = 0xBFFA4215

_COMMAND = re.compile(r"Command '(.*?)', (?:VISA status |reply ')", re.DOTALL)


class TarnexError(Exception):
    """A call failed. Positive statuses are success and raise nothing."""

    def __init__(self, status: int, description: str, command: str = "") -> None:
        self.status = status & 0xFFFFFFFF
        """The status as an unsigned number, as in TARNEX.h: 0xBFFA0067."""
        self.description = description
        """The reason, in English."""
        self.command = command
        """The command of the instrument that failed; empty when no command was sent."""
        super().__init__(f"0x{self.status:08X}: {description}")

    def __reduce__(self) -> Tuple[Type[TarnexError], Tuple[int, str, str]]:
        return type(self), (self.status, self.description, self.command)


class TarnexTimeout(TarnexError):
    """The instrument did not reply within the time-out."""


class ChannelError(TarnexError, KeyError):
    """The supply does not have the channel."""

    # KeyError would show the text in quotes.
    __str__ = Exception.__str__


class ProtectionError(TarnexError):
    """An output switched itself off: a protection tripped, or somebody switched it off."""


class OutputError(TarnexError):
    """Switching an output off could not be confirmed. "OUTPUT OutputChannel1 MAY STILL BE ON: " and the reason."""

    def __str__(self) -> str:
        return self.description


def error_of(status: int, description: str, command: str = "") -> TarnexError:
    """Returns the error of a negative status."""
    number = status & 0xFFFFFFFF
    if not command:
        found = _COMMAND.search(description)
        command = found[1] if found else ""
    timed_out = number == IO_TIMEOUT or "VISA status 0xBFFF0015" in description
    kind = TarnexTimeout if timed_out else TarnexError
    return kind(number, description, command)
