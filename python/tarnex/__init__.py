"""Power supplies of the TARNEX family from Python, with the standard library and the two libraries of the driver.

    import tarnex

    with tarnex.Supply("TCPIP0::192.168.1.20::5025::SOCKET") as supply:
        channel = supply[1]
        channel.voltage = 3.3
        channel.current_limit = 1.5
        with channel.on():
            print(channel.measure())

Errors are raised as TarnexError. No reply of an instrument ends the process. The IVI functions of the driver are in
tarnex.ivi, whose documentation says what ends a process there.

The libraries are libTARNEX.so and libTARNEX_supply.so on Linux, TARNEX_64.dll and TARNEX_supply_64.dll on Windows. The
first use loads them from the first of: the environment variable TARNEX_LIBRARY (a folder, or the driver's file), this
package, the installation that this package is part of, the system.

Ctrl-C during a call arrives when the call returns, at the latest after its time-out; blocks switch their outputs off.
"""

from tarnex._channel import Channel, OutputOn
from tarnex._errors import ChannelError, OutputError, ProtectionError, TarnexError, TarnexTimeout
from tarnex._sequence import DelayRun, ListRun
from tarnex._supply import Supply
from tarnex._values import (
    ChannelState,
    Columns,
    CurrentRange,
    CurrentRate,
    DelayEnd,
    Identity,
    Limits,
    ListEnd,
    OffMode,
    PairMode,
    PowerOnState,
    Progress,
    ProtectionDelay,
    Reading,
    Regulation,
    TraceLine,
    TriggerInput,
    columns,
)

__version__ = "1.0.0.0"

__all__ = [
    "Channel",
    "ChannelError",
    "ChannelState",
    "Columns",
    "CurrentRange",
    "CurrentRate",
    "DelayEnd",
    "DelayRun",
    "Identity",
    "Limits",
    "ListEnd",
    "ListRun",
    "OffMode",
    "OutputError",
    "OutputOn",
    "PairMode",
    "PowerOnState",
    "Progress",
    "ProtectionDelay",
    "ProtectionError",
    "Reading",
    "Regulation",
    "Supply",
    "TarnexError",
    "TarnexTimeout",
    "TraceLine",
    "TriggerInput",
    "columns",
]
