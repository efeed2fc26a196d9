"""Every fault of the virtual supply: the interpreter survives, and outputs end off or an error says that they
may still be on."""

import os
import subprocess
import sys
import time
import unittest
from typing import Callable, Dict, List, Tuple

import tarnex
from virtual import Virtual

FAULTS = ["drop", "delay=300", "silent", "garbage", "cut", "long=900", "long=5000", "long=1000000", "crlf"]


def use_block(supply: tarnex.Supply) -> None:
    with supply[1].on():
        supply[1].measure()


def use_sweep(supply: tarnex.Supply) -> None:
    for _ in supply[1].sweep(0, 1, 1, settle=0):
        pass


def use_ramp(supply: tarnex.Supply) -> None:
    for _ in supply[1].ramp(0.1, 10, interval=0.01):
        pass


def use_list(supply: tarnex.Supply) -> None:
    supply.upload_list([1, 2], [1, 1], [0.02, 0.02])
    with supply.run_list() as run:
        run.wait(timeout=2)


def use_delay(supply: tarnex.Supply) -> None:
    supply.upload_delay([True, False], [0.02, 0.02])
    with supply.run_delay() as run:
        run.wait(timeout=2)


def use_all_off(supply: tarnex.Supply) -> None:
    supply[2].output_enabled = True
    supply.all_off()


# With the number of commands that each sends, the identity query of opening included.
USES: List[Tuple[Callable[[tarnex.Supply], None], int]] = [
    (use_block, 5),
    (use_sweep, 11),
    (use_ramp, 12),
    (use_list, 27),
    (use_delay, 23),
    (use_all_off, 10),
]


class Uses(unittest.TestCase):
    def test_number_of_commands(self) -> None:
        for use, commands in USES:
            virtual = Virtual(self, "--load", "1=10", "--verbose", log=True)
            with tarnex.Supply(virtual.resource) as supply:
                use(supply)
            # A sequence is asked for its progress until it has ended, so its number varies.
            self.assertAlmostEqual(sum(" < " in line for line in virtual.log("closed")), commands, delta=2, msg=str(use))


class PassingFaults(unittest.TestCase):
    """A fault that hits a few commands, at every place of a use: recovery follows, and the outputs end off."""

    def run_uses(self, fault: str) -> None:
        outcomes: Dict[str, int] = {}
        for use, commands in USES:
            for first in range(2, commands + 1):
                with self.subTest(use=use.__name__, first=first):
                    virtual = Virtual(self, "--load", "1=10", "--fault", f"{fault}@{first}+2")
                    supply = tarnex.Supply(virtual.resource, timeout=0.05)
                    outcome = "done"
                    try:
                        use(supply)
                    except tarnex.OutputError:
                        raise
                    except tarnex.TarnexError as error:
                        outcome = type(error).__name__
                        # use_all_off switches channel 2 on without a block.
                        supply.all_off()
                    finally:
                        supply.close()
                    outcomes[outcome] = outcomes.get(outcome, 0) + 1
                    self.assertEqual(virtual.outputs(), ["OFF", "OFF"])
                    virtual.stop()
        self.assertGreater(sum(outcomes.values()), 0)
        if fault not in ("crlf",):
            self.assertGreater(sum(count for name, count in outcomes.items() if name != "done"), 0)

    def test_drop(self) -> None:
        self.run_uses("drop")

    def test_delay(self) -> None:
        self.run_uses("delay=80")

    def test_silent(self) -> None:
        self.run_uses("silent")

    def test_garbage(self) -> None:
        self.run_uses("garbage")

    def test_cut(self) -> None:
        self.run_uses("cut")

    def test_long(self) -> None:
        self.run_uses("long=900")

    def test_longer_than_a_reply(self) -> None:
        self.run_uses("long=5000")

    def test_crlf(self) -> None:
        self.run_uses("crlf")


class LastingFaults(unittest.TestCase):
    """A fault that stays: switching off cannot be confirmed."""

    def expect_warning(self, fault: str) -> None:
        virtual = Virtual(self, "--load", "1=10", "--fault", f"{fault}@3")
        with tarnex.Supply(virtual.resource, timeout=0.1) as supply:
            start = time.monotonic()
            with self.assertRaises(tarnex.OutputError) as caught:
                with supply[1].on():
                    supply[1].measure()
            seconds = time.monotonic() - start
        self.assertRegex(str(caught.exception), r"^OUTPUT OutputChannel1 MAY STILL BE ON: 0xBFFA")
        self.assertGreaterEqual(seconds, 10)
        self.assertLess(seconds, 20)
        # The reason why the block ended is not lost.
        self.assertIsInstance(caught.exception.__context__, tarnex.TarnexError)

    def test_drop(self) -> None:
        self.expect_warning("drop")

    def test_silent(self) -> None:
        self.expect_warning("silent")

    def test_garbage(self) -> None:
        self.expect_warning("garbage")

    def test_a_supply_that_is_gone(self) -> None:
        virtual = Virtual(self)
        with tarnex.Supply(virtual.resource, timeout=30) as supply:
            start = time.monotonic()
            with self.assertRaises(tarnex.OutputError) as caught:
                with supply[1].on(), supply[2].on():
                    virtual.stop()
            self.assertLess(time.monotonic() - start, 30)
        self.assertRegex(str(caught.exception), r"^OUTPUT OutputChannel1 MAY STILL BE ON: ")
        self.assertRegex(str(caught.exception.__context__), r"^OUTPUT OutputChannel2 MAY STILL BE ON: ")

    def test_the_time_out_is_restored_after_retries(self) -> None:
        virtual = Virtual(self, "--fault", "drop@3+3")
        with tarnex.Supply(virtual.resource, timeout=5) as supply:
            with self.assertRaises(tarnex.TarnexError):
                with supply[1].on():
                    supply[1].measure()
            self.assertEqual(supply.timeout, 5)
            self.assertEqual(virtual.outputs(), ["OFF", "OFF"])


class EveryFault(unittest.TestCase):
    def test_the_interpreter_survives_every_fault_at_every_command(self) -> None:
        script = """
import sys, tarnex
errors = 0
try:
    with tarnex.Supply(sys.argv[1], sys.argv[2], timeout=0.05) as supply:
        uses = [lambda: supply.errors(), lambda: supply.states(), lambda: supply[1].measure(),
                lambda: supply[1].regulation, lambda: supply.list_progress,
                lambda: supply.delay_progress, lambda: supply.query("*IDN?"),
                lambda: supply[2].pairing, lambda: supply[2].output_enabled, lambda: supply[1].questionable_condition,
                lambda: supply.trigger_input_enabled(tarnex.TriggerInput.D4), lambda: supply.write("*CLS")]
        for use in uses:
            try:
                use()
            except tarnex.TarnexError:
                errors += 1
except tarnex.TarnexError:
    errors += 1
print("errors:", errors)
"""
        for fault in FAULTS:
            for first in (1, 2, 5):
                for options in ("", "QueryInstrStatus=1"):
                    with self.subTest(fault=fault, first=first, options=options):
                        virtual = Virtual(self, "--fault", f"{fault}@{first}+20")
                        done = subprocess.run(
                            [sys.executable, "-X", "faulthandler", "-c", script, virtual.resource, options],
                            capture_output=True,
                            text=True,
                            timeout=60,
                            check=False,
                            env=os.environ,
                        )
                        virtual.stop()
                        self.assertEqual((done.returncode, done.stderr), (0, ""))
                        self.assertRegex(done.stdout, r"^errors: \d+\n$")
                        if fault in ("drop", "silent", "garbage", "cut"):
                            self.assertNotEqual(done.stdout, "errors: 0\n")


if __name__ == "__main__":
    unittest.main()
