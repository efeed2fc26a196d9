"""The package over a virtual supply: values, errors, blocks, sequences."""

import array
import copy
import ctypes
import decimal
import fractions
import gc
import importlib
import importlib.util
import math
import os
import pickle
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import warnings
from typing import Any, Dict, List, Tuple

import tarnex
from tarnex import _library, _values
from virtual import OverSupply, header

NUMPY = importlib.util.find_spec("numpy") is not None


class Open(OverSupply):
    def setUp(self) -> None:
        super().setUp()
        self.supply = tarnex.Supply(self.resource)
        self.addCleanup(self.supply.close)
        self.channel = self.supply[1]


class Session(OverSupply):
    def test_identity_has_four_named_fields(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            self.assertEqual(supply.identity, ("Keltor Technology", "TX4410", "SN00000001", "1.00"))
            self.assertEqual(supply.identity.serial_number, "SN00000001")

    def test_repr_shows_name_model_and_serial_number(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            self.assertEqual(repr(supply), f"<tarnex.Supply {self.resource!r} TX4410 SN00000001>")
            self.assertEqual(repr(supply[2]), f"<tarnex.Channel 'OutputChannel2' of {self.resource!r}>")
        self.assertEqual(repr(supply), f"<tarnex.Supply {self.resource!r} closed>")

    def test_version_is_that_of_the_driver(self) -> None:
        from tarnex import ivi

        with ivi.Supply(self.resource) as supply:
            self.assertEqual(supply.driver_revision, tarnex.__version__)

    def test_close_is_idempotent_and_a_closed_supply_says_so(self) -> None:
        supply = tarnex.Supply(self.resource)
        channel = supply[1]
        supply.close()
        supply.close()
        self.assertTrue(supply.closed)
        for use in (lambda: channel.voltage, supply.errors, lambda: supply["OutputChannel1"], channel.on().__enter__):
            with self.assertRaises(tarnex.TarnexError) as caught:
                use()
            self.assertEqual(str(caught.exception), "0xBFFA1190: the supply is closed")

    def test_an_exception_in_the_block_closes_the_supply(self) -> None:
        with self.assertRaises(ZeroDivisionError):
            with tarnex.Supply(self.resource) as supply:
                raise ZeroDivisionError
        self.assertTrue(supply.closed)

    def test_a_supply_that_nobody_closed_is_closed_with_a_warning(self) -> None:
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")
            tarnex.Supply(self.resource)
            gc.collect()
        self.assertEqual([warning.category for warning in caught], [ResourceWarning])

    def test_the_time_out_is_in_seconds(self) -> None:
        with tarnex.Supply(self.resource, timeout=1.5) as supply:
            self.assertEqual(supply.timeout, 1.5)
            supply.timeout = 0.25
            self.assertEqual(supply.timeout, 0.25)
            for wrong in (0, -1, math.nan, math.inf, 1e9):
                with self.assertRaises(ValueError):
                    supply.timeout = wrong
            self.assertEqual(supply.timeout, 0.25)

    def test_a_time_out_raises_tarnex_timeout_with_the_command(self) -> None:
        with tarnex.Supply(self.resource, timeout=0.1) as supply:
            with self.assertRaises(tarnex.TarnexTimeout) as caught:
                supply.query("*CLS")
            self.assertEqual(caught.exception.status, 0xBFFA4215)
            self.assertEqual(caught.exception.command, "*CLS")
            self.assertIn("0xBFFA4215", str(caught.exception))
            self.assertEqual(supply[1].voltage, 0.0)

    def test_an_unreachable_supply_raises(self) -> None:
        with self.assertRaises(tarnex.TarnexError) as caught:
            tarnex.Supply("TCPIP0::127.0.0.1::1::SOCKET")
        self.assertEqual(caught.exception.status, 0xBFFA4214)

    def test_each_failed_open_has_its_own_description(self) -> None:
        with self.assertRaises(tarnex.TarnexError):
            tarnex.Supply("TCPIP0::127.0.0.1::1::SOCKET")
        with self.assertRaises(tarnex.TarnexError) as caught:
            tarnex.Supply(self.resource, "Nonsense=1")
        self.assertEqual(caught.exception.description, "The 'nonsense' name in the option string is unknown.")

    def test_simulation_needs_no_instrument(self) -> None:
        with tarnex.Supply("", "Simulate=1") as supply:
            self.assertEqual(supply.identity.model, "TX6300")
            supply[2].voltage = 3.3
            self.assertEqual(supply.errors(), [])

    def test_a_supply_cannot_be_copied_or_pickled(self) -> None:
        with tarnex.Supply(self.resource) as supply:
            with self.assertRaises(TypeError):
                copy.copy(supply)
            with self.assertRaises(TypeError):
                pickle.dumps(supply)

    def test_arguments_of_a_wrong_type_are_refused(self) -> None:
        make: Any = tarnex.Supply
        for arguments in ((1,), (self.resource, None), (self.resource, "", "2"), (self.resource, "", True)):
            with self.assertRaises(TypeError):
                make(*arguments)
        with self.assertRaises(ValueError):
            make(self.resource + "\0")
        seen: List[Any] = []
        hook, sys.unraisablehook = sys.unraisablehook, seen.append
        try:
            with self.assertRaises(TypeError):
                make(self.resource, id_query=False)
            gc.collect()
        finally:
            sys.unraisablehook = hook
        self.assertEqual(seen, [])


class Channels(Open):
    def test_channels_have_numbers_and_names(self) -> None:
        self.assertEqual(self.supply[1], self.supply["OutputChannel1"])
        self.assertEqual({self.supply[1], self.supply["OutputChannel1"]}, {self.supply[1]})
        self.assertNotEqual(self.supply[1], self.supply[2])
        self.assertEqual([channel.number for channel in self.supply], [1, 2])
        self.assertEqual([channel.name for channel in self.supply], ["OutputChannel1", "OutputChannel2"])
        self.assertEqual(len(self.supply), 2)

    def test_membership(self) -> None:
        for item in (1, 2, "OutputChannel2", self.channel):
            self.assertIn(item, self.supply)
        others: List[object] = [0, 3, "OutputChannel3", "", True, None, 1.0]
        for other in others:
            self.assertNotIn(other, self.supply)

    def test_unknown_channels_raise_key_errors_that_are_tarnex_errors(self) -> None:
        keys: List[Any] = [0, 3, -1, "OutputChannel3"]
        for key in keys:
            with self.assertRaises(KeyError) as caught:
                self.supply[key]
            assert isinstance(caught.exception, tarnex.TarnexError)
            self.assertEqual(caught.exception.status, 0xBFFA0067)
            self.assertTrue(str(caught.exception).startswith("0xBFFA0067: "))
        wrong: List[Any] = [True, 1.0, None]
        for key in wrong:
            with self.assertRaises(TypeError):
                self.supply[key]
        with self.assertRaises(ValueError):
            self.supply["OutputChannel1,OutputChannel2"]

    def test_every_setting_is_read_back_and_reaches_the_instrument(self) -> None:
        settings: Dict[str, Tuple[Any, str]] = {
            "voltage": (3.3, ":SOUR1:VOLT?"),
            "current_limit": (1.5, ":SOUR1:CURR?"),
            "output_enabled": (True, ":OUTP:STAT? CH1"),
            "ovp_level": (5.5, ":OUTP:OVP:VAL? CH1"),
            "ovp_enabled": (True, ":OUTP:OVP:STAT? CH1"),
            "ocp_level": (2.5, ":OUTP:OCP:VAL? CH1"),
            "ocp_enabled": (True, ":OUTP:OCP:STAT? CH1"),
            "ocp_delay": (0.5, ":OUTP:OCP:DEL? CH1"),
            "ocp_delay_mode": (tarnex.ProtectionDelay.SETTING_CHANGE, ":OUTP:OCP:DEL:MODE? CH1"),
            "remote_sense": (True, ":OUTP:SENS:STAT? CH1"),
            "power_on_state": (tarnex.PowerOnState.LAST_OFF, ":OUTP:PONS:STAT? CH1"),
            "pairing": (tarnex.PairMode.SERIES, ":OUTP:PAIR? CH1"),
            "tracking": (True, ":OUTP:TRAC:STAT? CH1"),
            "off_mode": (tarnex.OffMode.BLEEDER_OFF, ":OUTP:OFFM? CH1"),
            "current_range": (tarnex.CurrentRange.HIGH, ":MEAS:CURR:RANG? CH1"),
            "current_rate": (tarnex.CurrentRate.RATE_8000, ":MEAS:CURR:RATE? CH1"),
        }
        for name, (value, query) in settings.items():
            with self.subTest(name):
                before = self.virtual.ask(query)
                setattr(self.channel, name, value)
                self.assertEqual(getattr(self.channel, name), value)
                self.assertIs(type(getattr(self.channel, name)), type(value))
                self.assertNotEqual(self.virtual.ask(query), before)
                self.assertTrue(getattr(tarnex.Channel, name).__doc__.endswith("."))

    def test_bleeder_and_trigger_inputs(self) -> None:
        self.supply.bleeder = True
        self.assertIs(self.supply.bleeder, True)
        for trigger_input in tarnex.TriggerInput:
            self.supply.set_trigger_input_enabled(trigger_input, True)
            self.assertIs(self.supply.trigger_input_enabled(trigger_input), True)
            self.supply.set_trigger_input_enabled(trigger_input, False)
            self.assertIs(self.supply.trigger_input_enabled(trigger_input), False)

    def test_measurements(self) -> None:
        before = time.time()
        self.channel.voltage = 5.0
        self.channel.current_limit = 0.25
        with self.channel.on():
            reading = self.channel.measure()
            self.assertEqual((reading.volts, reading.amperes, reading.watts), (2.5, 0.25, 0.625))
            self.assertEqual(self.channel.voltage_measured, 2.5)
            self.assertEqual(self.channel.current_measured, 0.25)
            self.assertEqual(self.channel.power_measured, 0.625)
            self.assertIs(self.channel.regulation, tarnex.Regulation.CONSTANT_CURRENT)
            self.assertEqual(self.supply.states()[0][1:6], (True, tarnex.Regulation.CONSTANT_CURRENT, 2.5, 0.25, 0.625))
        self.assertTrue(before <= reading.timestamp <= time.time())
        with self.assertRaises(AttributeError):
            setattr(reading, "volts", 1.0)

    def test_limits(self) -> None:
        self.assertEqual([channel.limits for channel in self.supply], [(0, 22, 0, 5.5), (0, 5.5, 0, 16.8)])
        for level in (0, 22):
            self.channel.voltage = level
            self.assertEqual(self.channel.voltage, level)
        for name, value, text in (
            ("voltage", 22.1, "voltage of OutputChannel1 must be from 0 to 22 V, not 22.1 V"),
            ("voltage", -0.1, "voltage of OutputChannel1 must be from 0 to 22 V, not -0.1 V"),
            ("current_limit", 6, "current_limit of OutputChannel1 must be from 0 to 5.5 A, not 6 A"),
        ):
            with self.assertRaises(ValueError) as caught:
                setattr(self.channel, name, value)
            self.assertEqual(str(caught.exception), text)

    def test_numbers_are_numbers(self) -> None:
        for number in (1, 2.0, fractions.Fraction(1, 2)):
            self.channel.voltage = number  # type: ignore[assignment]
            self.assertEqual(self.channel.voltage, number)
        for wrong in ("1", None, True, False, b"1", [1], decimal.Decimal(1), 1j):
            with self.assertRaises(TypeError):
                self.channel.voltage = wrong  # type: ignore[assignment]
        not_finite: List[float] = [math.nan, math.inf, -math.inf, 10**400]
        for value in not_finite:
            with self.assertRaises(ValueError):
                self.channel.voltage = value
        self.assertEqual(self.channel.voltage, 0.5)

    def test_switches_are_bools(self) -> None:
        for wrong in ("off", "on", 1, 0, None, 1.0):
            with self.assertRaises(TypeError):
                self.channel.output_enabled = wrong  # type: ignore[assignment]
        self.expect_off()

    def test_choices_are_members_of_their_enumeration(self) -> None:
        for wrong in (0, 1, "SERIES", tarnex.PowerOnState.LAST):
            with self.assertRaises(TypeError):
                self.channel.pairing = wrong  # type: ignore[assignment]
        self.assertIs(self.channel.pairing, tarnex.PairMode.OFF)

    def test_unknown_and_read_only_attributes_cannot_be_set(self) -> None:
        for target, name in (
            (self.channel, "voltge"),
            (self.channel, "limits"),
            (self.channel, "regulation"),
            (self.channel, "voltage_measured"),
            (self.supply, "time_out"),
            (self.supply, "identity"),
            (self.supply, "closed"),
        ):
            with self.assertRaises(AttributeError):
                setattr(target, name, 1.0)


class RawText(Open):
    def test_query_and_write(self) -> None:
        self.supply.write(":SOUR1:VOLT 4")
        self.assertEqual(float(self.supply.query(":SOUR1:VOLT?")), 4.0)

    def test_a_text_is_one_command(self) -> None:
        for wrong in ("*CLS\n*RST", "*CLS\r", "", " ", "a\0b"):
            with self.assertRaises(ValueError):
                self.supply.write(wrong)
        with self.assertRaises(TypeError):
            self.supply.write(b"*CLS")  # type: ignore[arg-type]

    def test_errors_empties_the_queue(self) -> None:
        self.assertEqual(self.supply.errors(), [])
        self.supply.write("nonsense")
        self.supply.write(":SOUR1:VOLT 99")
        self.assertEqual(self.supply.errors(), [(-113, "Undefined header"), (-222, "Data out of range")])
        self.assertEqual(self.supply.errors(), [])

    def test_an_error_of_the_instrument_raises_with_status_queries(self) -> None:
        with tarnex.Supply(self.resource, "QueryInstrStatus=1") as supply:
            with self.assertRaises(tarnex.TarnexError) as caught:
                supply.write("nonsense")
            self.assertEqual(caught.exception.status, 0xBFFA0001)

    def test_the_trace_reports_commands_and_replies(self) -> None:
        lines: List[tarnex.TraceLine] = []
        self.supply.trace(lines.append)
        gc.collect()
        self.channel.voltage = 1
        self.supply.query("*ESR?")
        self.supply.trace(None)
        self.channel.voltage = 2
        self.assertEqual(
            [(line.sent, line.data) for line in lines],
            [(True, b":SOUR1:VOLT 1.000000\n"), (True, b"*ESR?\n"), (False, b"0\n")],
        )
        self.assertEqual(sorted(line.seconds for line in lines), [line.seconds for line in lines])

    def test_the_callback_of_the_trace_cannot_use_the_supply(self) -> None:
        refused: List[Exception] = []

        def use(_line: tarnex.TraceLine) -> None:
            for call in (self.supply.errors, self.supply.close):
                try:
                    call()
                except RuntimeError as error:
                    refused.append(error)

        self.supply.trace(use)
        self.channel.voltage = 1
        self.supply.trace(None)
        self.assertEqual(len(refused), 2)
        self.assertEqual(self.channel.voltage, 1)

    def test_an_exception_of_the_callback_does_not_fail_the_call(self) -> None:
        seen: List[Any] = []
        hook, sys.unraisablehook = sys.unraisablehook, seen.append
        try:
            self.supply.trace(lambda line: 1 / 0)  # type: ignore[arg-type]
            self.channel.voltage = 1
            self.supply.trace(None)
        finally:
            sys.unraisablehook = hook
        self.assertEqual(self.channel.voltage, 1)
        self.assertEqual([entry.exc_type for entry in seen], [ZeroDivisionError])

    def test_an_interrupt_in_the_callback_leaves_the_call(self) -> None:
        def interrupt(_line: tarnex.TraceLine) -> None:
            raise KeyboardInterrupt

        self.supply.trace(interrupt)
        with self.assertRaises(KeyboardInterrupt):
            self.channel.voltage = 1
        self.supply.trace(None)
        self.assertEqual(self.channel.voltage, 1)


class StatusQueries(OverSupply):
    """With the option QueryInstrStatus every call asks the instrument for errors."""

    def test_blocks_and_sequences(self) -> None:
        with tarnex.Supply(self.resource, "QueryInstrStatus=1") as supply:
            supply.upload_list([1, 2], [1, 1], [0.02, 0.02])
            with supply.run_list() as run:
                run.wait(timeout=5)
            self.assertEqual([reading.volts for reading in supply[1].sweep(0, 2, 1, settle=0)], [0, 1, 2])
            with self.assertRaises(tarnex.TarnexError) as caught:
                with supply[1].on():
                    supply.write("nonsense")
            self.assertEqual(caught.exception.status, 0xBFFA0001)
            self.expect_off()


class Blocks(Open):
    def test_the_output_is_on_within_the_block_only(self) -> None:
        with self.channel.on() as channel:
            self.assertEqual(channel, self.channel)
            self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])
        self.expect_off()

    def test_an_exception_switches_off(self) -> None:
        with self.assertRaises(ZeroDivisionError):
            with self.supply[1].on(), self.supply[2].on():
                self.assertEqual(self.virtual.outputs(), ["ON", "ON"])
                raise ZeroDivisionError
        self.expect_off()

    def test_closing_the_supply_within_the_block_switches_off(self) -> None:
        with self.channel.on():
            self.supply.close()
            self.expect_off()
        self.expect_off()

    def test_closing_leaves_an_output_on_that_no_block_switched_on(self) -> None:
        self.channel.output_enabled = True
        self.supply.close()
        self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])

    def test_all_off(self) -> None:
        for channel in self.supply:
            channel.output_enabled = True
        self.supply.all_off()
        self.expect_off()

    def test_reset(self) -> None:
        self.channel.voltage = 7
        self.channel.output_enabled = True
        self.supply.reset()
        self.assertEqual(self.channel.voltage, 0)
        self.expect_off()


class Loops(Open):
    def test_a_sweep_includes_both_ends(self) -> None:
        for start, stop, step, expected in (
            (0, 0.3, 0.1, [0, 0.1, 0.2, 0.3]),
            (0, 1, 0.4, [0, 0.4, 0.8, 1]),
            (1, 0, 0.5, [1, 0.5, 0]),
            (2, 2, 0.5, [2]),
        ):
            readings = list(self.channel.sweep(start, stop, step, settle=0))
            self.assertEqual([reading.programmed for reading in readings], expected)
            self.assertEqual([reading.volts for reading in readings], expected)
            stamps = [reading.timestamp for reading in readings]
            self.assertEqual(stamps, sorted(stamps))
            self.expect_off()

    def test_arguments_are_checked_at_the_call(self) -> None:
        wrong: List[Any] = [(0, 23, 1), (-1, 1, 1), (0, 1, 0), (0, 1, -1), (0, 20, 1e-5)]
        for arguments in wrong:
            with self.assertRaises(ValueError):
                self.channel.sweep(*arguments)
        with self.assertRaises(ValueError):
            self.channel.ramp(23, 1)
        with self.assertRaises(ValueError):
            self.channel.ramp(1, 0)
        with self.assertRaises(ValueError):
            self.channel.watch(-1)
        self.expect_off()

    def test_leaving_a_loop_switches_off(self) -> None:
        for _ in self.channel.sweep(0, 5, 1, settle=0):
            self.assertEqual(self.virtual.outputs()[0], "ON")
            break
        self.expect_off()
        for _ in self.channel.ramp(5, 1, interval=0.01):
            self.assertEqual(self.virtual.outputs()[0], "ON")
            break
        self.expect_off()

    def test_closing_a_generator_switches_off(self) -> None:
        sweep = self.channel.sweep(0, 5, 1, settle=0)
        next(sweep)
        self.assertEqual(self.virtual.outputs()[0], "ON")
        sweep.close()
        self.expect_off()

    def test_closing_the_supply_switches_off_for_a_generator_that_is_still_there(self) -> None:
        sweep = self.channel.sweep(0, 5, 1, settle=0)
        next(sweep)
        self.supply.close()
        self.expect_off()
        with self.assertRaises(tarnex.TarnexError) as caught:
            next(sweep)
        self.assertEqual(caught.exception.description, "the supply is closed")

    def test_a_tripped_protection_ends_a_sweep(self) -> None:
        self.channel.ocp_level = 0.25
        self.channel.ocp_enabled = True
        seen: List[float] = []
        with self.assertRaises(tarnex.ProtectionError) as caught:
            for reading in self.channel.sweep(0, 5, 1, settle=0):
                seen.append(reading.volts)
        self.assertEqual(seen, [0, 1, 2])
        self.assertIn("OutputChannel1 is off at 3 V", str(caught.exception))
        self.expect_off()

    def test_a_ramp_starts_at_the_programmed_voltage_and_ends_at_the_other(self) -> None:
        self.channel.voltage = 2
        start = time.monotonic()
        levels = [reading.programmed for reading in self.channel.ramp(1, 5, interval=0.05)]
        self.assertEqual(levels, [2, 1.75, 1.5, 1.25, 1])
        self.assertGreaterEqual(time.monotonic() - start, 0.2)
        self.expect_off()

    def test_a_slow_caller_slows_the_ramp_down(self) -> None:
        levels: List[float] = []
        for reading in self.channel.ramp(1, 10, interval=0.02):
            time.sleep(0.06)
            levels.append(reading.volts)
        self.assertEqual(levels, [0, 0.2, 0.4, 0.6, 0.8, 1])

    def test_watch_measures_and_does_not_change_the_output(self) -> None:
        start = time.monotonic()
        watch = self.channel.watch(0.05)
        readings = [next(watch) for _ in range(4)]
        watch.close()
        self.assertGreaterEqual(time.monotonic() - start, 0.15)
        self.assertEqual([reading.volts for reading in readings], [0] * 4)
        self.channel.output_enabled = True
        next(self.channel.watch(1))
        self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])

    def test_columns(self) -> None:
        table = tarnex.columns(self.channel.sweep(0, 2, 1, settle=0))
        self.assertEqual(list(table.volts), [0, 1, 2])
        self.assertEqual(list(table.amperes), [0, 0.1, 0.2])
        self.assertEqual(type(table.volts).__name__, "ndarray" if NUMPY else "list")


class Sequences(Open):
    def test_a_list_runs_within_the_block(self) -> None:
        self.channel.voltage = 20
        self.supply.upload_list([1, 2], array.array("d", [0.5, 0.5]), (0.15, 0.15))
        with self.supply.run_list(cycles=2) as run:
            self.assertTrue(run.progress().running)
            self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])
            self.assertEqual(self.channel.voltage_measured, 1)
            progress = run.wait(timeout=10)
        self.assertEqual(progress, (False, 0.6, 1, 1))
        self.expect_off()
        self.assertEqual(self.virtual.ask(":LIST:STAT?"), "OFF")

    def test_leaving_the_block_stops_a_sequence(self) -> None:
        self.supply.upload_list([1], [1], [0.1])
        with self.supply.run_list(cycles=0, end=tarnex.ListEnd.LAST) as run:
            with self.assertRaises(tarnex.TarnexTimeout):
                run.wait(timeout=0.1)
        self.expect_off()
        self.assertFalse(self.supply.list_progress.running)

        self.supply.upload_delay([True], [0.1])
        with self.assertRaises(ZeroDivisionError):
            with self.supply.run_delay(cycles=0):
                self.assertEqual(self.virtual.outputs(), ["ON", "OFF"])
                raise ZeroDivisionError
        self.expect_off()
        self.assertFalse(self.supply.delay_progress.running)

    def test_all_off_stops_a_delay_sequence(self) -> None:
        self.supply.upload_delay([True, False], [0.02, 0.02])
        with self.supply.run_delay(cycles=0):
            self.supply.all_off()
            for _ in range(10):
                self.expect_off()
                time.sleep(0.01)

    def test_wrong_columns_are_refused(self) -> None:
        upload: Any = self.supply.upload_list
        for columns in (([], [], []), ([1], [1, 2], [1]), ([1], [1], [0]), ([23], [1], [1]), ([1], [math.nan], [1])):
            with self.assertRaises(ValueError):
                upload(*columns)
        for columns in (("1", [1], [1]), ([True], [1], [1]), (["1"], [1], [1]), (1, [1], [1])):
            with self.assertRaises(TypeError):
                upload(*columns)
        with self.assertRaises(TypeError):
            self.supply.upload_delay([1], [1])  # type: ignore[list-item]
        with self.assertRaises(ValueError):
            self.supply.run_list(cycles=-1)
        with self.assertRaises(TypeError):
            self.supply.run_list(end=tarnex.DelayEnd.OFF)  # type: ignore[arg-type]

    def test_a_list_that_the_instrument_refuses_raises(self) -> None:
        with self.assertRaises(tarnex.TarnexError) as caught:
            self.supply.upload_list([1] * 600, [1] * 600, [1] * 600)
        self.assertEqual(
            caught.exception.description, "the instrument has 512 groups instead of 600: -222, Data out of range"
        )
        with self.assertRaises(tarnex.TarnexError) as caught:
            self.supply.upload_list([1], [1], [1e6])
        self.assertEqual(caught.exception.description, "the instrument refuses the list: -222, Data out of range")

    def test_ensure_off_leaves_the_other_channel_on(self) -> None:
        for channel in self.supply:
            channel.output_enabled = True
        self.channel.ensure_off(give_up=1e12)
        self.assertEqual([channel.output_enabled for channel in self.supply], [False, True])
        self.supply[2].ensure_off(0)
        self.assertFalse(self.supply[2].output_enabled)
        with self.assertRaises(ValueError):
            self.channel.ensure_off(-1)

    @unittest.skipUnless(NUMPY or "TARNEX_EXPECT_NUMPY" in os.environ, "NumPy is not installed")
    def test_numpy_arrays(self) -> None:
        numpy: Any = importlib.import_module("numpy")
        self.supply.upload_list(numpy.array([1, 2]), numpy.full(2, 0.5, dtype="float32"), numpy.array([0.1, 0.1]))
        self.supply.upload_delay(numpy.array([True, False]), numpy.array([0.1, 0.1]))
        self.assertEqual(self.virtual.ask(":DELAY:GROUP:NUM?"), "2")
        self.channel.voltage = numpy.float32(2)
        self.assertEqual(self.channel.voltage, 2)
        with self.assertRaises(TypeError):
            self.channel.output_enabled = numpy.bool_(True)
        self.assertEqual(self.supply[numpy.int64(2)].name, "OutputChannel2")
        self.assertIn(numpy.int64(2), self.supply)
        self.assertNotIn(numpy.float64(2), self.supply)


class Threads(Open):
    def test_threads_share_a_supply(self) -> None:
        failures: List[BaseException] = []

        def work(channel: tarnex.Channel, volts: float) -> None:
            try:
                for _ in range(200):
                    channel.voltage = volts
                    self.assertEqual(channel.voltage, volts)
            except BaseException as failure:
                failures.append(failure)

        threads = [threading.Thread(target=work, args=(channel, channel.number)) for channel in self.supply]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])

    def test_other_threads_wait_for_the_lock(self) -> None:
        def change() -> None:
            self.channel.voltage = 9

        other = threading.Thread(target=change)
        with self.supply.locked():
            self.channel.voltage = 1
            other.start()
            seen = [self.channel.voltage for _ in range(50)]
        other.join()
        self.assertEqual(seen, [1] * 50)
        self.assertEqual(self.channel.voltage, 9)

    def test_close_waits_for_a_call_under_way(self) -> None:
        self.supply.timeout = 0.5
        ended: List[float] = []
        started = threading.Event()

        def wait() -> None:
            started.set()
            with self.assertRaises(tarnex.TarnexTimeout):
                self.supply.query("*CLS")
            ended.append(time.monotonic())

        thread = threading.Thread(target=wait)
        thread.start()
        started.wait()
        time.sleep(0.1)
        self.supply.close()
        closed = time.monotonic()
        thread.join()
        self.assertEqual(len(ended), 1)
        self.assertGreater(closed + 0.05, ended[0])

    def test_closing_ends_the_loop_of_another_thread_with_the_output_off(self) -> None:
        failures: List[BaseException] = []
        running = threading.Event()

        def sweep() -> None:
            try:
                for _ in self.channel.sweep(0, 20, 0.001, settle=0):
                    running.set()
            except BaseException as failure:
                failures.append(failure)

        thread = threading.Thread(target=sweep)
        thread.start()
        running.wait(10)
        self.supply.close()
        thread.join()
        self.expect_off()
        self.assertEqual([str(failure) for failure in failures], ["0xBFFA1190: the supply is closed"])


class Loading(unittest.TestCase):
    def run_python(self, library: str) -> Tuple[int, str]:
        done = subprocess.run(
            [sys.executable, "-c", "import tarnex; print(tarnex.Supply('', 'Simulate=1').identity.model)"],
            env={**os.environ, "TARNEX_LIBRARY": library},
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            timeout=60,
            check=False,
        )
        return done.returncode, done.stdout.splitlines()[-1]

    def test_tarnex_library_is_a_file_or_a_folder(self) -> None:
        driver = os.environ["TARNEX_LIBRARY"]
        self.assertEqual(self.run_python(driver), (0, "TX6300"))
        self.assertEqual(self.run_python(os.path.dirname(driver)), (0, "TX6300"))
        self.assertEqual(self.run_python(os.path.relpath(driver)), (0, "TX6300"))

    def test_a_missing_library_is_named(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            code, text = self.run_python(folder)
            self.assertEqual(code, 1)
            self.assertTrue(text.startswith(f"OSError: {folder}/libTARNEX.so: "), text)
            shutil.copy(os.environ["TARNEX_LIBRARY"], folder)
            code, text = self.run_python(folder)
            self.assertEqual(code, 1)
            self.assertTrue(text.startswith(f"OSError: {folder}/libTARNEX_supply.so: "), text)


class Errors(unittest.TestCase):
    def test_errors_can_be_pickled(self) -> None:
        for kind in (
            tarnex.TarnexError,
            tarnex.TarnexTimeout,
            tarnex.ChannelError,
            tarnex.OutputError,
            tarnex.ProtectionError,
        ):
            error = pickle.loads(pickle.dumps(kind(0xBFFA0067 - (1 << 32), "text", "*RST")))
            self.assertIs(type(error), kind)
            self.assertEqual((error.status, error.description, error.command), (0xBFFA0067, "text", "*RST"))
            self.assertIsInstance(error, tarnex.TarnexError)


class Header(unittest.TestCase):
    """The package and TARNEX_supply.h declare the same."""

    def test_signatures(self) -> None:
        letters = {
            "ViConstString": "t",
            "ViReal64": "r",
            "ViReal64*": "R",
            "ViInt32": "i",
            "ViInt32*": "I",
            "ViBoolean": "b",
            "ViBoolean*": "B",
            "ViChar*": "T",
        }
        declared: Dict[str, str] = {}
        for name, parameters in re.findall(r"^ViStatus _VI_FUNC TARNEXSupply_(\w+)\(([^)]*)\);", header(), re.M):
            signature = ""
            for parameter in parameters.split(",")[1:]:
                words = re.fullmatch(r"\s*(?:const )?(\w+\*?) (\w+)(\[\w*\])?", parameter)
                assert words, parameter
                kind = words[1] + ("*" if words[3] else "")
                signature += "c" if words[2] == "channelName" else letters.get(kind, "?")
            declared[name] = signature
        self.assertEqual({name: declared[name] for name in _library.SIGNATURES}, _library.SIGNATURES)

    def test_values(self) -> None:
        prefixes = {
            "REGULATION": tarnex.Regulation,
            "CURRENT_RANGE": tarnex.CurrentRange,
            "TRIGGER_INPUT": tarnex.TriggerInput,
            "PROTECTION_DELAY": tarnex.ProtectionDelay,
            "POWER_ON": tarnex.PowerOnState,
            "PAIR": tarnex.PairMode,
            "OFF_MODE": tarnex.OffMode,
            "LIST_END": tarnex.ListEnd,
            "DELAY_END": tarnex.DelayEnd,
        }
        for prefix, kind in prefixes.items():
            found = re.findall(rf"#define TARNEXSUPPLY_VAL_{prefix}_(\w+) +\((\d+)\)", header())
            self.assertEqual({name: int(value) for name, value in found}, {m.name: m.value for m in kind})
        rates = re.findall(r"#define TARNEXSUPPLY_VAL_CURRENT_RATE_(\w+) +\((\d+)\)", header())
        self.assertEqual({"RATE_" + n: int(v) for n, v in rates}, {m.name: m.value for m in tarnex.CurrentRate})

    def test_channel_state(self) -> None:
        found = re.search(r"typedef struct TARNEXSupply_ChannelState \{(.*?)\}", header(), re.S)
        assert found
        fields = re.findall(r"^\s*(Vi\w+) (\w+);", found[1], re.M)
        types = {"ViInt32": ctypes.c_int32, "ViBoolean": ctypes.c_uint16, "ViReal64": ctypes.c_double}
        self.assertEqual([(name, types[kind]) for kind, name in fields], _library.CChannelState._fields_)

    def test_everything_public_is_exported(self) -> None:
        for name in _values.__all__:
            self.assertIn(name, tarnex.__all__)
        for name in tarnex.__all__:
            self.assertTrue(getattr(tarnex, name).__doc__, name)


if __name__ == "__main__":
    unittest.main()
