"""tarnex.ivi over the driver, the built-in platform runtime and a virtual supply.

Environment: TARNEX_LIBRARY, VIRTUAL_SUPPLY and EXAMPLE_STORE are the paths of the driver, the virtual supply and a
configuration store.
"""

import os
import pathlib
import pickle
import re
import signal
import subprocess
import sys
import tempfile
import threading
import unittest
from typing import Any

from tarnex import ivi


def start_supply(test: unittest.TestCase, *options: str) -> str:
    """Starts a virtual supply that runs until the end of the test; returns its resource."""
    supply = subprocess.Popen(
        [os.environ["VIRTUAL_SUPPLY"], "--exit-with-parent", "--for", "60", *options],
        stdout=subprocess.PIPE,
        text=True,
    )

    def stop() -> None:
        supply.terminate()
        supply.communicate()

    test.addCleanup(stop)
    assert supply.stdout is not None
    return supply.stdout.readline().split()[-1]


class OverSupply(unittest.TestCase):
    def setUp(self) -> None:
        os.environ["IVI_CONFIG_STORE"] = "/nonexistent/store.xml"
        self.resource = start_supply(self, "--load", "1=10")

    def open(self, **options: Any) -> ivi.Supply:
        supply = ivi.Supply(self.resource, **options)
        self.addCleanup(supply.close)
        return supply


class Settings(OverSupply):
    def test_identity(self) -> None:
        supply = self.open()
        self.assertEqual(supply.manufacturer, "Keltor Technology")
        self.assertEqual(supply.model, "TX4410")
        self.assertEqual(supply.firmware_revision, "1.00")
        self.assertEqual(supply.driver_revision, "1.0.0.0")
        self.assertEqual(supply.resource, self.resource)
        self.assertEqual(supply.logical_name, "")

    def test_every_setting_is_read_back(self) -> None:
        channel = self.open()["OutputChannel1"]
        for name, value in (
            ("voltage_level", 3.3),
            ("current_limit", 1.5),
            ("current_limit_behavior", ivi.CurrentLimitBehavior.TRIP),
            ("ovp_enabled", True),
            ("ovp_limit", 5.5),
            ("output_enabled", True),
        ):
            with self.subTest(name):
                setattr(channel, name, value)
                self.assertEqual(getattr(channel, name), value)
                self.assertIs(type(getattr(channel, name)), type(value))

    def test_channels_are_separate(self) -> None:
        supply = self.open()
        supply["OutputChannel1"].voltage_level = 12.0
        supply["OutputChannel2"].voltage_level = 5.0
        self.assertEqual([channel.voltage_level for channel in supply], [12.0, 5.0])
        self.assertEqual([channel.name for channel in supply], ["OutputChannel1", "OutputChannel2"])
        self.assertEqual(len(supply), 2)

    def test_one_selector_sets_several_channels(self) -> None:
        supply = self.open()
        supply["OutputChannel1-OutputChannel2"].current_limit = 0.25
        self.assertEqual([channel.current_limit for channel in supply], [0.25, 0.25])

    def test_limits_of_the_channels(self) -> None:
        supply = self.open()
        self.assertEqual([(c.max_voltage_level, c.max_current_limit) for c in supply], [(22.0, 5.5), (5.5, 16.8)])

    def test_regulation_follows_the_load(self) -> None:
        channel = self.open()["OutputChannel1"]
        channel.voltage_level = 5.0
        channel.current_limit = 1.0
        channel.output_enabled = True
        self.assertEqual((channel.constant_voltage, channel.constant_current), (True, False))
        channel.current_limit = 0.25
        self.assertEqual((channel.constant_voltage, channel.constant_current), (False, True))

    def test_only_bools_switch_and_unknown_names_are_refused(self) -> None:
        supply = self.open()
        channel = supply["OutputChannel1"]
        for value in ("off", 1, 0, None):
            with self.assertRaises(TypeError):
                channel.output_enabled = value  # type: ignore[assignment]
        self.assertFalse(channel.output_enabled)
        with self.assertRaises(AttributeError):
            channel.volts = 5  # type: ignore[attr-defined]
        with self.assertRaises(AttributeError):
            supply.volts = 5  # type: ignore[attr-defined]

    def test_disable_switches_all_outputs_off(self) -> None:
        supply = self.open()
        supply["OutputChannel1,OutputChannel2"].output_enabled = True
        supply.disable()
        self.assertEqual([channel.output_enabled for channel in supply], [False, False])

    def test_reset_and_opening_with_reset_restore_the_defaults(self) -> None:
        supply = self.open()
        supply["OutputChannel1"].voltage_level = 7.0
        supply.reset()
        self.assertEqual(supply["OutputChannel1"].voltage_level, 0.0)
        supply["OutputChannel1"].voltage_level = 7.0
        self.assertEqual(self.open()["OutputChannel1"].voltage_level, 7.0)
        self.assertEqual(self.open(reset=True)["OutputChannel1"].voltage_level, 0.0)

    def test_doc_strings_contain_units(self) -> None:
        self.assertEqual(ivi.Channel.voltage_level.__doc__, "Programmed voltage in V.")
        self.assertIn(" in A", ivi.Channel.current_limit.__doc__ or "")
        self.assertIn(" in V", ivi.Channel.ovp_limit.__doc__ or "")


class Errors(OverSupply):
    def test_an_unknown_channel_raises_status_and_description(self) -> None:
        supply = self.open()
        with self.assertRaises(ivi.TarnexError) as caught:
            supply["OutputChannel3"].voltage_level = 1.0
        self.assertEqual(caught.exception.status, 0xBFFA0067)
        description = (
            "Unknown physical repeated capability selector.  The identifier 'OutputChannel3' is not defined for "
            "repeated capability 'OutputChannel'."
        )
        self.assertEqual(caught.exception.description, description)
        self.assertEqual(str(caught.exception), "0xBFFA0067: " + description)

    def test_each_error_has_its_own_description(self) -> None:
        supply = self.open()
        with self.assertRaises(ivi.TarnexError):
            supply["OutputChannel3"].voltage_level = 1.0
        with self.assertRaises(ivi.TarnexError) as caught:
            supply["OutputChannel2"].voltage_level = 6.0
        self.assertEqual(caught.exception.status, 0xBFFA4217)
        self.assertEqual(
            caught.exception.description,
            "Attribute or function parameter value is invalid (out of range or not supported).",
        )

    def test_errors_can_be_pickled(self) -> None:
        error = pickle.loads(pickle.dumps(ivi.TarnexError(0xBFFA0067 - (1 << 32), "text")))
        self.assertEqual((error.status, error.description), (0xBFFA0067, "text"))

    def test_an_unreachable_supply_raises_an_io_error(self) -> None:
        with self.assertRaises(ivi.TarnexError) as caught:
            ivi.Supply("TCPIP0::127.0.0.1::1::SOCKET")
        self.assertEqual(caught.exception.status, 0xBFFA4214)
        self.assertRegex(caught.exception.description, r"^I/O error\.  .")

    def test_each_failed_open_has_its_own_description(self) -> None:
        for resource, options, status in (
            ("TCPIP0::127.0.0.1::1::SOCKET", "", 0xBFFA4214),
            (self.resource, "Nonsense=1", 0xBFFA004B),
        ):
            with self.assertRaises(ivi.TarnexError) as caught:
                ivi.Supply(resource, options=options)
            self.assertEqual(caught.exception.status, status)
        self.assertEqual(caught.exception.description, "The 'nonsense' name in the option string is unknown.")

    def test_calls_on_a_closed_supply_raise(self) -> None:
        with ivi.Supply(self.resource) as supply:
            pass
        supply.close()
        with self.assertRaises(ivi.TarnexError) as caught:
            supply.reset()
        self.assertEqual(caught.exception.status, 0xBFFA1190)
        self.assertEqual(caught.exception.description, "Invalid session handle.")

    def test_the_supply_is_closed_when_the_block_raises(self) -> None:
        with self.assertRaises(ZeroDivisionError):
            with ivi.Supply(self.resource) as supply:
                raise ZeroDivisionError
        with self.assertRaises(ivi.TarnexError):
            supply.reset()

    def test_a_value_that_the_instrument_refuses_raises(self) -> None:
        supply = self.open(options="QueryInstrStatus=1")
        with self.assertRaises(ivi.TarnexError) as caught:
            supply["OutputChannel1"].voltage_level = float("nan")
        self.assertEqual(caught.exception.status, 0xBFFA0001)
        self.assertEqual(supply.error_query(), (-104, "Data type error"))
        self.assertEqual(supply.error_query(), (0, "No error"))

    def test_texts_with_a_nul_character_are_refused(self) -> None:
        with self.assertRaises(ValueError):
            ivi.Supply(self.resource + "\0")

    def test_values_of_another_type_are_refused(self) -> None:
        channel: Any = self.open()["OutputChannel1"]
        with self.assertRaises(ValueError):
            channel.voltage_level = "much"
        with self.assertRaises(ValueError):
            channel.current_limit_behavior = 2


class Names(OverSupply):
    def test_virtual_names_of_the_configuration_store(self) -> None:
        text = pathlib.Path(os.environ["EXAMPLE_STORE"]).read_text(encoding="utf-8")
        text = re.sub(r"(<IOResourceDescriptor>)[^<]*", lambda match: match[1] + self.resource, text)
        with tempfile.TemporaryDirectory() as folder:
            store = pathlib.Path(folder, "store.xml")
            store.write_text(text, encoding="utf-8")
            os.environ["IVI_CONFIG_STORE"] = str(store)
            supply = ivi.Supply("MySupply")
            self.addCleanup(supply.close)
        supply["Core"].voltage_level = 1.1
        supply["Rail11"].voltage_level = 3.3
        supply["Both"].current_limit = 0.5
        self.assertEqual([(c.voltage_level, c.current_limit) for c in supply], [(1.1, 0.5), (3.3, 0.5)])
        self.assertEqual((supply.logical_name, supply.resource), ("MySupply", self.resource))

    def test_simulation(self) -> None:
        with ivi.Supply("", id_query=False, options="Simulate=1") as supply:
            self.assertEqual(supply.model, "TX6300")
            supply["OutputChannel2"].voltage_level = 3.3
            self.assertIn(supply["OutputChannel2"].output_enabled, (False, True))


class Threads(OverSupply):
    def test_other_threads_wait_for_the_lock(self) -> None:
        supply = self.open()
        seen = []

        def set_voltage() -> None:
            supply["OutputChannel1"].voltage_level = 9.0

        with supply.locked():
            supply["OutputChannel1"].voltage_level = 1.0
            other = threading.Thread(target=set_voltage)
            other.start()
            for _ in range(20):
                seen.append(supply["OutputChannel1"].voltage_level)
        other.join(timeout=30)
        self.assertEqual(seen, [1.0] * 20)
        self.assertEqual(supply["OutputChannel1"].voltage_level, 9.0)


class Loading(unittest.TestCase):
    def run_python(self, code: str, **environment: str) -> "subprocess.CompletedProcess[str]":
        return subprocess.run(
            [sys.executable, "-B", "-c", code],
            env={**os.environ, **environment},
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )

    def test_a_missing_library_is_reported_in_one_line(self) -> None:
        run = self.run_python("from tarnex import ivi; ivi.Supply('')", TARNEX_LIBRARY="/nonexistent/libTARNEX.so")
        self.assertEqual(run.returncode, 1)
        self.assertIn("OSError: /nonexistent/libTARNEX.so", run.stderr.splitlines()[-1])

    # The documentation of the module describes this behaviour.
    def test_a_malformed_reply_ends_the_process(self) -> None:
        resource = start_supply(self, "--fault", "garbage@2")
        run = self.run_python(
            f"from tarnex import ivi; ivi.Supply({resource!r})['OutputChannel1'].voltage_level",
            IVI_CONFIG_STORE="/nonexistent/store.xml",
        )
        self.assertEqual(run.returncode, -signal.SIGABRT)


if __name__ == "__main__":
    unittest.main()
