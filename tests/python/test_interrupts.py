"""Ctrl-C, forked processes, and the ends of processes: outputs end off."""

import os
import signal
import subprocess
import sys
import textwrap
import threading
import time
import unittest
from typing import Callable, List

import tarnex
from tarnex._interrupts import Deferred
from virtual import OverSupply, Virtual


def interrupt_after(seconds: float) -> threading.Timer:
    timer = threading.Timer(seconds, os.kill, (os.getpid(), signal.SIGINT))
    timer.start()
    return timer


class Interrupts(OverSupply):
    def test_an_interrupt_in_a_blocking_call_arrives_when_the_call_returns(self) -> None:
        with tarnex.Supply(self.resource, timeout=0.6) as supply:
            start = time.monotonic()
            with self.assertRaises(KeyboardInterrupt):
                with supply[1].on():
                    interrupt_after(0.1)
                    supply.query("*CLS")
            self.assertGreaterEqual(time.monotonic() - start, 0.5)
            self.assertLess(time.monotonic() - start, 5)
            self.expect_off()
            self.assertEqual(supply[1].voltage, 0)

    def test_an_interrupt_while_the_loop_waits_switches_off(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            with self.assertRaises(KeyboardInterrupt):
                interrupt_after(0.1)
                for _ in supply[1].sweep(0, 20, 1, settle=1):
                    pass
            self.expect_off()

    def test_interrupts_at_many_moments(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            interrupted = 0
            for attempt in range(60):
                try:
                    timer = interrupt_after(0.0002 * attempt)
                    try:
                        with supply[1].on(), supply[2].on():
                            supply[1].measure()
                            supply[2].measure()
                    finally:
                        timer.join()
                        time.sleep(0.001)
                except KeyboardInterrupt:
                    interrupted += 1
                self.expect_off()
            self.assertGreater(interrupted, 30)

    def test_more_interrupts_while_switching_off_wait_until_it_is_done(self) -> None:
        virtual = Virtual(self, "--fault", "silent@3+9")
        with tarnex.Supply(virtual.resource, timeout=0.3) as supply:
            start = time.monotonic()
            with self.assertRaises(KeyboardInterrupt):
                with supply[1].on():
                    for seconds in (0.1, 0.2, 0.4):
                        interrupt_after(seconds)
            self.assertGreater(time.monotonic() - start, 0.5)
            self.assertEqual(virtual.outputs(), ["OFF", "OFF"])

    def test_deferred_interrupts_restore_the_handler(self) -> None:
        handler = signal.getsignal(signal.SIGINT)
        with self.assertRaises(KeyboardInterrupt):
            with Deferred():
                signal.raise_signal(signal.SIGINT)
                reached = True
        self.assertTrue(reached)
        self.assertIs(signal.getsignal(signal.SIGINT), handler)
        with self.assertRaises(ZeroDivisionError):
            with Deferred():
                signal.raise_signal(signal.SIGINT)
                raise ZeroDivisionError
        self.assertIs(signal.getsignal(signal.SIGINT), handler)

    def test_an_interrupt_while_opening_closes_the_connection(self) -> None:
        virtual = Virtual(self, "--verbose", "--fault", "delay=400@1+1", log=True)
        interrupt_after(0.1)
        try:
            tarnex.Supply(virtual.resource)
            self.fail("no interrupt")
        except KeyboardInterrupt as interrupt:
            # The exception keeps the object alive, so that not its end has closed the connection.
            self.assertIsNotNone(interrupt.__traceback__)
            self.assertEqual([line.split()[1] for line in virtual.log("closed")], ["connected", "<", ">", "closed"])


class Forks(OverSupply):
    def run_child(self, supply: tarnex.Supply) -> List[str]:
        """Forks within a block; returns what the child reports."""
        reader, writer = os.pipe()
        child = os.fork()
        if child == 0:
            report = []
            uses: List[Callable[[], object]] = [
                lambda: supply[1].voltage,
                supply.errors,
                supply.all_off,
                supply[1].on().__enter__,
            ]
            for use in uses:
                try:
                    use()
                    report.append("no error")
                except tarnex.TarnexError as error:
                    report.append(error.description)
            supply.close()
            report.append(str(supply.closed))
            os.write(writer, "\n".join(report).encode())
            os._exit(0)
        os.close(writer)
        with os.fdopen(reader, encoding="utf-8") as pipe:
            said = pipe.read().split("\n")
        os.waitpid(child, 0)
        return said

    def test_a_forked_process_cannot_use_the_supply_and_does_not_disturb_it(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            with supply[1].on():
                said = self.run_child(supply)
                refusal = (
                    f"process {os.getpid()} opened this supply; a forked process must open a supply of its own"
                )
                self.assertEqual(said, [refusal] * 4 + ["True"])
                self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])
                self.assertEqual(supply[1].voltage, 0)
            self.expect_off()

    def test_a_fork_while_another_thread_holds_the_lock(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            held, done = threading.Event(), threading.Event()

            def hold() -> None:
                with supply.locked():
                    held.set()
                    done.wait(20)

            thread = threading.Thread(target=hold)
            thread.start()
            held.wait()
            said = self.run_child(supply)
            done.set()
            thread.join()
            self.assertEqual(said[-1], "True")
            self.assertEqual(supply[1].voltage, 0)

    def test_a_forked_process_that_leaves_the_block_does_not_switch_off(self) -> None:
        script = """
            import os, sys, tarnex
            with tarnex.Supply(sys.argv[1]) as supply:
                with supply[1].on():
                    child = os.fork()
                    if child == 0:
                        sys.exit(0)
                    _, status = os.waitpid(child, 0)
                    print(status, supply[1].output_enabled)
        """
        done = run(script, self.resource)
        self.assertEqual((done.stdout, done.stderr), ("0 True\n", ""))
        self.expect_off()


def run(script: str, *arguments: str) -> "subprocess.CompletedProcess[str]":
    return subprocess.run(
        [sys.executable, "-c", textwrap.dedent(script), *arguments],
        capture_output=True,
        text=True,
        timeout=60,
        check=False,
    )


class Ends(OverSupply):
    def test_an_iterator_that_nobody_closed_is_switched_off_at_exit(self) -> None:
        done = run(
            """
            import sys, tarnex
            supply = tarnex.Supply(sys.argv[1])
            sweep = supply[1].sweep(0, 5, 1, settle=0)
            next(sweep)
            print(supply[1].output_enabled)
            """,
            self.resource,
        )
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "True\n", ""))
        self.expect_off()

    def test_an_output_that_cannot_be_switched_off_at_exit_is_reported(self) -> None:
        virtual = Virtual(self, "--fault", "drop@7")
        done = run(
            """
            import sys, tarnex
            supply = tarnex.Supply(sys.argv[1])
            sweep = supply[1].sweep(0, 5, 1, settle=0)
            next(sweep)
            """,
            virtual.resource,
        )
        self.assertIn("OUTPUT OutputChannel1 MAY STILL BE ON: 0xBFFA", done.stderr)

    def test_a_handler_that_exits_while_the_output_is_switched_off(self) -> None:
        virtual = Virtual(self, "--fault", "silent@3+6")
        done = run(
            """
            import os, signal, sys, threading, tarnex
            signal.signal(signal.SIGTERM, lambda *_: sys.exit(7))
            with tarnex.Supply(sys.argv[1], timeout=0.3) as supply, supply[1].on():
                threading.Timer(0.4, os.kill, (os.getpid(), signal.SIGTERM)).start()
            """,
            virtual.resource,
        )
        self.assertEqual((done.returncode, done.stderr), (7, ""))
        self.assertEqual(virtual.outputs(), ["OFF", "OFF"])

    def test_sys_exit_and_a_failure_in_a_block(self) -> None:
        for end, code in (("sys.exit(3)", 3), ("1 / 0", 1)):
            done = run(
                f"""
                import sys, tarnex
                with tarnex.Supply(sys.argv[1]) as supply, supply[1].on():
                    {end}
                """,
                self.resource,
            )
            self.assertEqual(done.returncode, code)
            self.expect_off()

    def test_ctrl_c_ends_a_script_with_the_output_off(self) -> None:
        script = """
            import sys, tarnex
            with tarnex.Supply(sys.argv[1]) as supply, supply[1].on():
                for reading in supply[1].watch(0.01):
                    print(reading.volts, flush=True)
        """
        with subprocess.Popen(
            [sys.executable, "-c", textwrap.dedent(script), self.resource],
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        ) as process:
            assert process.stdout is not None and process.stderr is not None
            process.stdout.readline()
            self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])
            process.send_signal(signal.SIGINT)
            _, errors = process.communicate(timeout=30)
        self.assertEqual(errors.splitlines()[-1], "KeyboardInterrupt")
        self.expect_off()


if __name__ == "__main__":
    unittest.main()
