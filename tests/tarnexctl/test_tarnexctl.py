"""Runs tarnexctl from a shell: what it prints, its exit codes, and the outputs that it leaves."""

import json
import re
import signal
import socket
import subprocess
import threading
import time
import unittest
import xml.etree.ElementTree as ElementTree
from typing import Dict, Iterable, List, Sequence, Tuple

from tool import ENVIRONMENT, NO_SUPPLY, SOURCES, TOOL, OnTerminal, Ran, Tool, run


class DriverCommands(Tool):
    def test_identify(self) -> None:
        resource = self.supply("--model", "TX4520")
        self.assertEqual(
            run("identify", resource=resource),
            Ran(
                0,
                "Manufacturer: Keltor Technology\n"
                "Model:        TX4520\n"
                "Firmware:     1.00\n"
                "Driver:       1.0.0.0\n"
                f"Resource:     {resource}\n",
                "",
            ),
        )
        self.assertEqual(
            json.loads(run("identify", "--json", resource=resource).out),
            {
                "manufacturer": "Keltor Technology",
                "model": "TX4520",
                "firmware_revision": "1.00",
                "driver_revision": "1.0.0.0",
                "resource": resource,
            },
        )

    def test_get_shows_what_set_programs(self) -> None:
        resource = self.supply("--load", "1=10")
        settings = ["--voltage", "3.3", "--current", "1.5", "--at-limit", "trip", "--ovp", "4"]
        self.quietly(resource, "set", "1", *settings)
        self.quietly(resource, "set", "OutputChannel2", "--voltage", "5")
        self.quietly(resource, "on", "1")
        self.assertEqual(
            run("get", resource=resource),
            Ran(
                0,
                "Channel         Voltage/V  Limit/A  At limit  OVP   OVP/V  Output  Mode\n"
                "OutputChannel1     3.3000   1.5000  trip      on   4.0000  on      CV\n"
                "OutputChannel2     5.0000  16.8000  regulate  off  5.5000  off     -\n",
                "",
            ),
        )
        expected = {
            "channel": "OutputChannel1",
            "voltage_level": 3.3,
            "current_limit": 1.5,
            "current_limit_behavior": "trip",
            "ovp_enabled": True,
            "ovp_limit": 4,
            "output_enabled": True,
            "regulation": "CV",
        }
        self.assertEqual(json.loads(run("get", "1", "--json", resource=resource).out), [expected])

    def test_set_changes_only_the_given_settings(self) -> None:
        resource = self.supply()
        self.quietly(resource, "set", "1", "--voltage", "3", "--at-limit", "trip", "--ovp", "4")
        self.quietly(resource, "set", "1", "--current", "0.5", "--no-ovp")
        row = run("get", "1", resource=resource).out.splitlines()[1]
        self.assertEqual(row, "OutputChannel1     3.0000   0.5000  trip      off  4.0000  off     -")
        self.quietly(resource, "set", "1", "--at-limit", "regulate")
        row = run("get", "1", resource=resource).out.splitlines()[1]
        self.assertEqual(row, "OutputChannel1     3.0000   0.5000  regulate  off  4.0000  off     -")

    def test_mode_follows_the_load(self) -> None:
        resource = self.supply("--load", "1=10")
        self.quietly(resource, "set", "1", "--voltage", "5", "--current", "0.25")
        self.quietly(resource, "on", "1")
        self.assertEqual(json.loads(run("get", "1", "--json", resource=resource).out)[0]["regulation"], "CC")

    def test_on_and_off(self) -> None:
        resource = self.supply()

        def outputs() -> List[bool]:
            return [row["output_enabled"] for row in json.loads(run("get", "--json", resource=resource).out)]

        self.quietly(resource, "on", "1", "2")
        self.assertEqual(outputs(), [True, True])
        self.quietly(resource, "off", "2")
        self.assertEqual(outputs(), [True, False])
        self.quietly(resource, "on", "OutputChannel1,OutputChannel2")
        self.assertEqual(outputs(), [True, True])
        self.quietly(resource, "off")
        self.assertEqual(outputs(), [False, False])

    def test_reset(self) -> None:
        resource = self.supply()
        self.quietly(resource, "set", "1", "--voltage", "3")
        self.quietly(resource, "reset")
        self.assertEqual(json.loads(run("get", "1", "--json", resource=resource).out)[0]["voltage_level"], 0)

    def test_errors_are_shown_once(self) -> None:
        resource = self.supply("--load", "1=10")
        self.quietly(resource, "set", "1", "--voltage", "5", "--current", "0.2", "--at-limit", "trip")
        tripped = (
            "tarnexctl: the output of OutputChannel1 is off: a protection tripped, or the instrument did not execute the "
            "command\n"
        )
        self.assertEqual(run("on", "1", resource=resource), Ran(2, "", tripped))
        self.quietly(resource, "on", "1", "--no-confirm")
        table = (
            "Code  Message\n"
            "-300  Device-specific error;Over-current protection tripped on CH1\n"
            "-300  Device-specific error;Over-current protection tripped on CH1\n"
        )
        self.assertEqual(run("errors", resource=resource), Ran(0, table, ""))
        self.assertEqual(run("errors", resource=resource), Ran(0, "No errors.\n", ""))
        self.quietly(resource, "on", "1", "--no-confirm")
        self.assertEqual(
            json.loads(run("errors", "--json", resource=resource).out),
            [{"code": -300, "message": "Device-specific error;Over-current protection tripped on CH1"}],
        )
        self.assertEqual(run("errors", "--json", resource=resource), Ran(0, "[]\n", ""))


class Measurements(Tool):
    TABLE = (
        "Channel         Voltage/V  Current/A    Power/W  Output  Mode\n"
        "OutputChannel1     3.3000     0.3300     1.0890  on      CV\n"
        "OutputChannel2     0.0000     0.0000     0.0000  off     -\n"
    )

    def setUp(self) -> None:
        self.resource = self.supply("--load", "1=10")
        self.quietly(self.resource, "set", "1", "--voltage", "3.3")
        self.quietly(self.resource, "on", "1")

    def test_measure(self) -> None:
        self.assertEqual(run("measure", resource=self.resource), Ran(0, self.TABLE, ""))
        self.assertEqual(
            run("measure", "1", "--json", resource=self.resource),
            Ran(
                0,
                '[\n  {"channel": "OutputChannel1", "voltage": 3.3, "current": 0.33, "power": 1.089, '
                '"output_enabled": true, "regulation": "CV"}\n]\n',
                "",
            ),
        )

    def test_watch_prints_lines_into_a_pipe(self) -> None:
        ran = run("watch", "--count", "3", "--interval", "0.01", resource=self.resource)
        lines = ran.out.splitlines()
        self.assertEqual((ran.code, ran.err, len(lines)), (0, "", 7))
        self.assertEqual(lines[0], "  Time/s  Channel         Voltage/V  Current/A    Power/W  Output  Mode")
        first = r"^ {5}\d\.\d  OutputChannel1     3\.3000     0\.3300     1\.0890  on      CV$"
        second = r"^ {5}\d\.\d  OutputChannel2     0\.0000     0\.0000     0\.0000  off     -$"
        for i in (1, 3, 5):
            self.assertRegex(lines[i], first)
            self.assertRegex(lines[i + 1], second)

    def test_watch_as_json_is_an_object_on_each_line(self) -> None:
        ran = run("watch", "1", "--json", "--count", "2", "--interval", "0.2", resource=self.resource)
        samples = [json.loads(line) for line in ran.out.splitlines()]
        self.assertEqual(len(samples), 2)
        times = [sample.pop("time") for sample in samples]
        self.assertGreaterEqual(times[1], 0.2)
        expected = {
            "channel": "OutputChannel1",
            "voltage": 3.3,
            "current": 0.33,
            "power": 1.089,
            "output_enabled": True,
            "regulation": "CV",
        }
        self.assertEqual(samples, [expected, expected])

    def test_watch_renews_its_table_in_place_on_a_terminal(self) -> None:
        terminal = OnTerminal(self.resource, "watch", "1", "--count", "3", "--interval", "0.01")
        self.assertEqual(terminal.finish(), 0)
        tables = terminal.text.split("\x1b[2A")  # moves the cursor up over the heading and one row
        self.assertEqual(len(tables), 3)
        for table in tables:
            lines = table.splitlines()
            self.assertEqual(lines[0], "  Time/s  Channel         Voltage/V  Current/A    Power/W  Output  Mode\x1b[K")
            self.assertRegex(lines[1], r"^ {5}\d\.\d  OutputChannel1     3\.3000 .* CV\x1b\[K$")

    def test_watch_ends_with_0_at_ctrl_c(self) -> None:
        watch = self.start(self.resource, "watch", "--interval", "1000")
        assert watch.stdout is not None
        self.assertTrue(watch.stdout.readline().startswith(b"  Time/s  "))
        self.assertIn(b"OutputChannel1", watch.stdout.readline())
        self.assertIn(b"OutputChannel2", watch.stdout.readline())
        watch.send_signal(signal.SIGINT)
        self.assertEqual(watch.communicate(timeout=30), (b"", b""))
        self.assertEqual(watch.returncode, 0)


class Sweeps(Tool):
    HEAD = (
        r"# Keltor Technology TX4410 SN00000001, {}, OutputChannel1, \d{{4}}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{{3}}Z, "
        r"limit 0\.25 A, settle 0 s\n"
    )
    CSV = (
        "set_V,voltage_V,current_A,power_W,mode\n"
        "0.000,0.000000,0.000000,0.000000,CV\n"
        "1.000,1.000000,0.100000,0.100000,CV\n"
        "2.000,2.000000,0.200000,0.400000,CV\n"
        "3.000,2.500000,0.250000,0.625000,CC\n"
        "4.000,2.500000,0.250000,0.625000,CC\n"
    )
    RANGE = ["--to", "4", "--step", "1", "--limit", "0.25", "--settle", "0"]

    def setUp(self) -> None:
        self.resource = self.supply("--load", "1=10")

    def expect_csv(self, text: str) -> None:
        head, columns, points = text.partition("set_V")
        self.assertRegex(head, self.HEAD.format(re.escape(self.resource)) + r"\Z")
        self.assertEqual(columns + points, self.CSV)

    def test_points_go_to_standard_output(self) -> None:
        ran = run("sweep", "1", *self.RANGE, resource=self.resource)
        self.expect_csv(ran.out)
        self.assertEqual((ran.code, ran.err), (0, ""))

    def test_the_last_point_is_the_end_of_the_range(self) -> None:
        for arguments, expected in (
            (["--to", "1", "--step", "0.3"], ["0.000", "0.300", "0.600", "0.900", "1.000"]),
            (["--from", "1", "--to", "0.5", "--step", "0.4"], ["1.000", "0.600", "0.500"]),
            (["--from", "2", "--to", "2"], ["2.000"]),
            (["--to", "0.1", "--step", "5"], ["0.000", "0.100"]),
        ):
            with self.subTest(arguments):
                ran = run("sweep", "1", *arguments, "--settle", "0", resource=self.resource)
                self.assertEqual([line.split(",")[0] for line in ran.out.splitlines()[2:]], expected)

    def test_output_is_off_afterwards(self) -> None:
        self.quietly(self.resource, "on", "1")
        run("sweep", "1", *self.RANGE, resource=self.resource)
        row = run("get", "1", resource=self.resource).out.splitlines()[1]
        self.assertEqual(row, "OutputChannel1     4.0000   0.2500  regulate  off  22.0000  off     -")

    def test_points_go_to_a_file_and_curves_to_another(self) -> None:
        folder = self.folder()
        csv, svg = folder / "sweep.csv", folder / "sweep.svg"
        ran = run("sweep", "1", *self.RANGE, "--csv", str(csv), "--plot", str(svg), resource=self.resource)
        self.assertEqual(ran, Ran(0, "", ""))
        self.expect_csv(csv.read_text(encoding="ascii"))
        image = ElementTree.parse(svg).getroot()
        self.assertEqual(image.tag, "{http://www.w3.org/2000/svg}svg")
        texts = [text.text for text in image.iter("{http://www.w3.org/2000/svg}text")]
        for text in ("TX4410, OutputChannel1", "Voltage, V", "Current, A", "Power, W", "current limit 0.25 A"):
            self.assertEqual(texts.count(text), 1, text)
        curves = [line.attrib["points"].split() for line in image.iter("{http://www.w3.org/2000/svg}polyline")]
        self.assertEqual([len(points) for points in curves], [5, 5, 5])

    def test_json_is_an_object_for_each_point(self) -> None:
        ran = run("sweep", "1", *self.RANGE, "--json", resource=self.resource)
        points = [json.loads(line) for line in ran.out.splitlines()]
        self.assertEqual(len(points), 5)
        self.assertEqual(points[3], {"set": 3, "voltage": 2.5, "current": 0.25, "power": 0.625, "regulation": "CC"})

    def test_sweeps_downwards_with_steps_that_are_not_exact_in_binary(self) -> None:
        ran = run(
            "sweep", "1", "--from", "0.3", "--to", "0", "--step", "0.1", "--settle", "0", resource=self.resource
        )
        levels = [line.split(",")[0] for line in ran.out.splitlines()[2:]]
        self.assertEqual(levels, ["0.300", "0.200", "0.100", "0.000"])

    def test_progress_on_a_terminal_is_cleared_at_the_end(self) -> None:
        csv = self.folder() / "sweep.csv"
        terminal = OnTerminal(self.resource, "sweep", "1", *self.RANGE, "--csv", str(csv))
        self.assertEqual(terminal.finish(), 0)
        self.assertIn("\r[############..................] 2/5  1.000 V\x1b[K", terminal.text)
        self.assertIn("\r[##############################] 5/5  4.000 V\x1b[K", terminal.text)
        self.assertTrue(terminal.text.endswith("\r\x1b[K"), terminal.text)

    def test_points_on_a_terminal_do_not_run_into_the_progress(self) -> None:
        terminal = OnTerminal(self.resource, "sweep", "1", *self.RANGE)
        self.assertEqual(terminal.finish(), 0)
        self.assertIn("\r[############..................] 2/5  1.000 V\x1b[K\r\x1b[K2.000,", terminal.text)

    def test_ctrl_c_switches_off_and_keeps_the_points(self) -> None:
        folder = self.folder()
        csv, svg = folder / "sweep.csv", folder / "sweep.svg"
        sweep = self.start(
            self.resource, "sweep", "1", "--to", "20", "--step", "0.001", "--csv", str(csv), "--plot", str(svg)
        )
        self.wait_until(lambda: csv.exists() and csv.read_text(encoding="ascii").count("\n") >= 4)
        self.assertTrue(self.output_enabled(self.resource))
        sweep.send_signal(signal.SIGINT)
        self.assertEqual(sweep.communicate(timeout=30), (b"", b""))
        self.assertEqual(sweep.returncode, 130)
        self.assertFalse(self.output_enabled(self.resource))
        lines = csv.read_text(encoding="ascii").splitlines()
        self.assertEqual(lines[2], "0.000,0.000000,0.000000,0.000000,CV")
        curves = ElementTree.parse(svg).getroot().findall("{http://www.w3.org/2000/svg}polyline")
        self.assertEqual([len(curve.attrib["points"].split()) for curve in curves], [len(lines) - 2] * 3)

    def test_every_signal_that_ends_a_process_switches_off_first(self) -> None:
        for number in (
            *(signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGALRM, signal.SIGUSR1),
            *(signal.SIGUSR2, signal.SIGXCPU, signal.SIGXFSZ, signal.SIGPOLL, signal.SIGVTALRM, signal.SIGPROF),
        ):
            with self.subTest(number):
                sweep = self.start(self.resource, "sweep", "1", "--to", "20", "--step", "0.001", "--csv", "/dev/null")
                self.wait_until(lambda: self.output_enabled(self.resource))
                sweep.send_signal(number)
                self.assertEqual(sweep.communicate(timeout=30), (b"", b""))
                self.assertEqual(sweep.returncode, 130)
                self.assertFalse(self.output_enabled(self.resource))

    def test_an_ignored_signal_stays_ignored(self) -> None:
        script = 'trap "" HUP; exec "$0" "$@"'  # as nohup does
        sweep = subprocess.Popen(
            ["bash", "-c", script, TOOL, "-r", self.resource, "sweep", "1", "--to", "20", "--settle", "1"],
            env=ENVIRONMENT,
            stdout=subprocess.DEVNULL,
        )
        self.addCleanup(sweep.communicate)
        self.wait_until(lambda: self.output_enabled(self.resource))
        sweep.send_signal(signal.SIGHUP)
        time.sleep(0.3)
        self.assertTrue(self.output_enabled(self.resource))
        self.assertIsNone(sweep.poll())
        sweep.send_signal(signal.SIGTERM)
        self.assertEqual(sweep.wait(timeout=30), 130)
        self.assertFalse(self.output_enabled(self.resource))

    def test_a_closed_standard_output_ends_the_sweep_with_the_output_off(self) -> None:
        sweep = self.start(self.resource, "sweep", "1", "--to", "20", "--step", "0.001")
        assert sweep.stdout is not None and sweep.stderr is not None
        sweep.stdout.readline()
        sweep.stdout.close()
        self.assertEqual(sweep.stderr.read(), b"tarnexctl: standard output cannot be written\n")
        self.assertEqual(sweep.wait(timeout=30), 3)
        sweep.stdout = None
        self.assertFalse(self.output_enabled(self.resource))

    def test_a_protection_that_trips_ends_the_sweep(self) -> None:
        self.quietly(self.resource, "set", "1", "--ovp", "2.5")
        ran = run("sweep", "1", "--to", "4", "--step", "1", "--settle", "0", resource=self.resource)
        self.assertEqual(ran.code, 2)
        self.assertEqual(len(ran.out.splitlines()), 5)
        self.assertEqual(
            ran.err,
            "tarnexctl: the output went off at 3.000 V: a protection tripped (see tarnexctl errors)\n",
        )

    def test_a_failure_replaces_the_progress(self) -> None:
        self.quietly(self.resource, "set", "1", "--ovp", "2.5")
        csv = self.folder() / "sweep.csv"
        terminal = OnTerminal(self.resource, "sweep", "1", "--to", "4", "--step", "1", "--csv", str(csv))
        self.assertEqual(terminal.finish(), 2)
        self.assertIn("3/5  2.000 V\x1b[K\r\x1b[Ktarnexctl: the output went off at 3.000 V", terminal.text)

    def test_an_invalid_sweep_keeps_existing_files(self) -> None:
        csv, svg = self.file("mine\n"), self.file("mine\n")
        for arguments in (["--to", "30"], ["--to", "1", "-r", NO_SUPPLY], ["--to", "1", "--step", "0.000001"]):
            with self.subTest(arguments):
                ran = run("sweep", "1", *arguments, "--csv", csv, "--plot", svg, resource=self.resource)
                self.assertIn(ran.code, (1, 2))
                for path in (csv, svg):
                    with open(path, encoding="ascii") as file:
                        self.assertEqual(file.read(), "mine\n")

    def test_json_has_no_traces_of_binary_fractions(self) -> None:
        ran = run("sweep", "1", "--to", "0.3", "--step", "0.1", "--settle", "0", "--json", resource=self.resource)
        self.assertEqual([json.loads(line)["set"] for line in ran.out.splitlines()], [0, 0.1, 0.2, 0.3])

    def test_invalid_sweeps_fail_with_the_output_off(self) -> None:
        for arguments, code, error in (
            (["1", "--to", "30"], 1, "30 V is beyond the range of OutputChannel1, 0 V to 22 V"),
            (["2", "--to", "6"], 1, "6 V is beyond the range of OutputChannel2, 0 V to 5.5 V"),
            (["1", "--from", "-1", "--to", "6"], 1, "-1 V is beyond the range of OutputChannel1, 0 V to 22 V"),
            (["1", "--to", "4", "--limit", "6"], 1, "6 A is beyond the range of OutputChannel1, 0 A to 5.5 A"),
            (["1", "--to", "4", "--csv", "/nonexistent/x.csv"], 3, "/nonexistent/x.csv cannot be written"),
            (["1", "--to", "4", "--plot", "/nonexistent/x.svg"], 3, "/nonexistent/x.svg cannot be written"),
        ):
            with self.subTest(arguments):
                self.assertEqual(
                    run("sweep", *arguments, resource=self.resource), Ran(code, "", f"tarnexctl: {error}\n")
                )
        self.assertFalse(self.output_enabled(self.resource))


class Sequences(Tool):
    def setUp(self) -> None:
        self.resource = self.supply("--load", "1=10")

    def test_list_runs_and_keeps_its_last_group(self) -> None:
        file = self.file("volts,amperes,seconds\n# up\n\n1, 0.5, 0.1\r\n2,0.5,0.1\n")
        self.assertEqual(
            run("list", file, "--cycles", "2", "--end", "last", "--on", resource=self.resource),
            Ran(0, "Groups  Cycles  Time/s\n     2       2   0.400\n", ""),
        )
        row = run("measure", "1", resource=self.resource).out.splitlines()[1]
        self.assertRegex(row, r"^OutputChannel1     [12]\.0000 .* on      CV$")

    def test_list_sets_the_first_levels_before_it_switches_on(self) -> None:
        self.quietly(self.resource, "set", "1", "--voltage", "20", "--current", "5")
        ran = run("list", self.file("1,0.5,0.01\n2,0.6,0.01\n"), "--on", "--trace", resource=self.resource)
        sent = re.findall(r"> (:SOUR1:\S+ \S+|:OUTP:STAT CH1,ON|:LIST:STAT ON)", ran.err)
        self.assertEqual(
            sent, [":SOUR1:VOLT 1.000000", ":SOUR1:CURR 0.500000", ":OUTP:STAT CH1,ON", ":LIST:STAT ON"]
        )

    def test_list_without_on_leaves_the_output_off(self) -> None:
        file = self.file("1,0.5,0.01\n")
        self.assertEqual(run("list", file, "--end", "last", resource=self.resource).code, 0)
        self.assertFalse(self.output_enabled(self.resource))

    def test_list_ends_with_the_output_off(self) -> None:
        file = self.file("1,0.5,0.01\n")
        self.assertEqual(run("list", file, "--on", resource=self.resource).code, 0)
        self.assertFalse(self.output_enabled(self.resource))

    def test_delay_runs(self) -> None:
        file = self.file("output,seconds\non,0.1\noff,0.1\n")
        self.assertEqual(
            run("delay", file, "--end", "on", "--json", resource=self.resource),
            Ran(0, '{"groups": 2, "cycles": 1, "seconds": 0.2}\n', ""),
        )
        self.assertTrue(self.output_enabled(self.resource))
        self.assertEqual(run("delay", file, resource=self.resource).code, 0)
        self.assertFalse(self.output_enabled(self.resource))

    def test_progress_on_a_terminal(self) -> None:
        file = self.file("1,0.5,0.2\n2,0.5,0.2\n")
        terminal = OnTerminal(self.resource, "list", file)
        self.assertEqual(terminal.finish(), 0)
        self.assertRegex(terminal.text, r"\r\[\.+\] 0\.0 s of 0\.4 s  group 1, cycle 1\x1b\[K")
        self.assertRegex(terminal.text, r"\r\[#+\.+\] 0\.[23] s of 0\.4 s  group 2, cycle 1\x1b\[K")
        self.assertTrue(terminal.text.endswith("\r\x1b[KGroups  Cycles  Time/s\n     2       1   0.400\n"))

    def test_ctrl_c_stops_the_sequence_and_switches_off(self) -> None:
        for command, content in (("list", "1,0.5,60\n2,0.5,60\n"), ("delay", "on,60\non,60\n")):
            with self.subTest(command):
                terminal = OnTerminal(self.resource, command, self.file(content), "--cycles", "0", "--on")
                terminal.read_until("group 1, cycle 1")
                self.assertTrue(self.output_enabled(self.resource))
                terminal.process.send_signal(signal.SIGINT)
                self.assertEqual(terminal.finish(), 130)
                self.assertFalse(self.output_enabled(self.resource))
                time.sleep(0.05)
                self.assertFalse(self.output_enabled(self.resource))

    def test_a_sequence_that_the_instrument_refuses_fails(self) -> None:
        error = 'tarnexctl: the instrument refuses the sequence: -222, Data out of range\n'
        for command, content in (("list", "1,0.5,4000\n"), ("delay", "on,4000\n")):
            with self.subTest(content):
                self.assertEqual(run(command, self.file(content), resource=self.resource), Ran(2, "", error))

    def test_a_list_beyond_the_range_of_its_channel_fails(self) -> None:
        for content, error in (("1,1,1\n23,0.5,1\n", "23 V is beyond the range of OutputChannel1, 0 V to 22 V"),
                               ("1,5.6,1\n", "5.6 A is beyond the range of OutputChannel1, 0 A to 5.5 A")):
            with self.subTest(content):
                ran = run("list", self.file(content), resource=self.resource)
                self.assertEqual(ran, Ran(1, "", f"tarnexctl: {error}\n"))

    def test_earlier_errors_in_the_queue_do_not_fail_a_sequence(self) -> None:
        run("list", self.file("1,0.5,4000\n1,0.5,4000\n"), resource=self.resource)
        self.assertEqual(run("list", self.file("1,0.5,0.01\n"), resource=self.resource).code, 0)

    def test_invalid_files_fail(self) -> None:
        for command, content, error in (
            ("list", "", "{} holds no sequence; give lines of volts,amperes,seconds"),
            ("list", "volts,amperes,seconds\n# nothing\n", "{} holds no sequence; give lines of volts,amperes,seconds"),
            ("list", "1,1,1\n1,1\n", "{}: line 2: give volts,amperes,seconds"),
            ("list", "1,1,1,\n", "{}: line 1: give volts,amperes,seconds"),
            ("list", "1,much,1\n", "{}: line 1: 'much' is not a number"),
            ("list", "1,1,nan\n", "{}: line 1: 'nan' is not a number"),
            ("list", "1,\x1b[2J,1\n", "{}: line 1: '?[2J' is not a number"),
            ("delay", "up,1\n", "{}: line 1: 'up' is neither on nor off"),
            ("delay", "# a\non,\n", "{}: line 2: '' is not a number"),
        ):
            with self.subTest(content):
                file = self.file(content)
                self.assertEqual(
                    run(command, file, resource=self.resource), Ran(3, "", f"tarnexctl: {error.format(file)}\n")
                )
        self.assertEqual(
            run("list", "/nonexistent/file", resource=self.resource),
            Ran(3, "", "tarnexctl: /nonexistent/file cannot be read\n"),
        )


class WrongArguments(Tool):
    def test_each_error_is_one_line(self) -> None:
        resource = self.supply()
        wrong: List[Tuple[List[str], str]] = [
            ([], "no command given (see --help)"),
            (["nonsense"], "The following argument was not expected: nonsense (see --help)"),
            (["swep", "1"], "'swep' is not known, did you mean sweep? (see --help)"),
            (["of", "1"], "'of' is not known, did you mean off? (see --help)"),
            (["sweep", "1", "--too", "3"], "'--too' is not known, did you mean --to? (see --help)"),
            (["get", "--jsn"], "'--jsn' is not known, did you mean --json? (see --help)"),
            (["x" * 100000], "The following argument was not expected: xxxx"),
            (["get", "--nonsense"], "The following argument was not expected: --nonsense (see --help)"),
            (["on"], "CHANNEL is required (see --help)"),
            (["set", "1"], "set: give at least one of --voltage, --current, --at-limit, --ovp and --no-ovp"),
            (["set", "1", "--voltage", "nan"], "--voltage: 'nan' is not a number (see --help)"),
            (["set", "1", "--voltage", "3,3"], "--voltage: '3,3' is not a number (see --help)"),
            (["set", "1", "--at-limit", "explode"], "--at-limit: explode not in {regulate,trip}"),
            (["watch", "--interval", "0"], "--interval: '0' is not a number from 0.001 to 1000000"),
            (["sweep", "1"], "--to is required"),
            (["set", "1", "--voltage", "30"], "30 V is beyond the range of OutputChannel1, 0 V to 22 V"),
            (["set", "1,2", "--ovp", "6"], "6 V is beyond the range of OutputChannel2, 0 V to 5.5 V"),
            (["set", "2", "--current", "-1"], "-1 A is beyond the range of OutputChannel2, 0 A to 16.8 A"),
            (["ramp", "2", "--rate", "1", "--to", "6"], "6 V is beyond the range of OutputChannel2, 0 V to 5.5 V"),
            (["sweep", "1,2", "--to", "1"], "channel '1,2': this command takes exactly one channel"),
        ]
        for arguments, error in wrong:
            with self.subTest(arguments):
                ran = run(*arguments, resource=resource)
                self.assertEqual((ran.code, ran.out), (1, ""))
                self.assertRegex(ran.err, r"\Atarnexctl: [^\n]*\n\Z")
                self.assertIn(error, ran.err)

    def test_a_missing_resource_fails(self) -> None:
        error = (
            "tarnexctl: no supply given; use --resource or set TARNEX_RESOURCE, for example to "
            "TCPIP0::192.168.1.20::5025::SOCKET\n"
        )
        self.assertEqual(run("get"), Ran(1, "", error))

    def test_the_option_takes_precedence_over_the_environment(self) -> None:
        resource = self.supply()
        self.assertEqual(run("reset", "-r", resource, resource=NO_SUPPLY), Ran(0, "", ""))
        self.assertEqual(run("--resource", resource, "reset", resource=NO_SUPPLY), Ran(0, "", ""))


class SupplyErrors(Tool):
    def test_driver_errors_contain_status_and_description(self) -> None:
        resource = self.supply()
        for arguments, error in (
            (
                ["get", "Nope"],
                "channel 'Nope': 0xBFFA0067: Unknown physical repeated capability selector.  The identifier 'Nope' is "
                "not defined for repeated capability 'OutputChannel'.",
            ),
            (
                ["get", "-o", "Nonsense=1"],
                f"opening {resource}: 0xBFFA004B: The 'nonsense' name in the option string is unknown.",
            ),
        ):
            with self.subTest(arguments):
                self.assertEqual(run(*arguments, resource=resource), Ran(2, "", f"tarnexctl: {error}\n"))

    def test_unreachable_supplies_and_invalid_resources_fail(self) -> None:
        for resource in (NO_SUPPLY, "NOWHERE::INSTR"):
            for command in ("identify", "measure"):
                with self.subTest(resource=resource, command=command):
                    ran = run(command, resource=resource)
                    self.assertEqual((ran.code, ran.out), (2, ""))
                    start = re.escape(f"tarnexctl: opening {resource}: 0xBFFA4214: I/O error.")
                    self.assertRegex(ran.err, rf"\A{start}[^\n]*\n\Z")

    def test_malformed_replies_fail(self) -> None:
        for command in ("get", "measure"):
            with self.subTest(command):
                ran = run(command, resource=self.supply("--fault", "garbage@2"))
                self.assertEqual((ran.code, ran.out), (2, ""))
                self.assertRegex(ran.err, r"\Atarnexctl: (reading|measuring) OutputChannel1: 0xBFFA0059: Unexpected response from instrument\.  "
                    r"Command '[^']*', reply '[^\n]*\n\Z",
                )

    def test_a_silent_supply_fails_after_the_time_out(self) -> None:
        ran = run("measure", "1", resource=self.supply("--fault", "silent@2"))
        error = (
            "tarnexctl: measuring OutputChannel1: 0xBFFA4215: I/O timeout error.  Command ':MEAS:ALL? CH1', VISA status "
            "0xBFFF0015.\n"
        )
        self.assertEqual(ran, Ran(2, "", error))

    def test_a_full_disk_fails(self) -> None:
        with open("/dev/full", "wb") as full:
            done = subprocess.run(
                [TOOL, "identify", "-r", self.supply()],
                env=ENVIRONMENT,
                stdout=full,
                stderr=subprocess.PIPE,
                timeout=60,
                check=False,
            )
        self.assertEqual((done.returncode, done.stderr), (3, b"tarnexctl: standard output cannot be written\n"))

    def test_simulation_needs_no_supply(self) -> None:
        ran = run("identify", "--json", "-o", "Simulate=1")
        self.assertEqual((ran.code, json.loads(ran.out)["model"]), (0, "TX6300"))
        ran = run("measure", "2", "--json", "-o", "Simulate=1")
        self.assertEqual((ran.code, json.loads(ran.out)[0]["channel"]), (0, "OutputChannel2"))


class FakeInstrument:
    """Sends the given replies unchanged; ignores every other line."""

    def __init__(self, replies: Dict[bytes, bytes]) -> None:
        self._replies = replies
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.resource = f"TCPIP0::127.0.0.1::{self._listener.getsockname()[1]}::SOCKET"
        self._thread = threading.Thread(target=self._serve)
        self._thread.start()

    def _serve(self) -> None:
        connection, _ = self._listener.accept()
        with connection, connection.makefile("rwb") as lines:
            for line in lines:
                if line.strip() in self._replies:
                    lines.write(self._replies[line.strip()] + b"\n")
                    lines.flush()

    def close(self) -> None:
        self._thread.join(timeout=30)
        self._listener.close()


class OutputsEndOff(Tool):
    """Commands that switch an output on for their own run, on a supply that fails once, at every few commands."""

    FAULTS = ("drop", "delay=400", "silent", "garbage", "cut", "long=2000", "crlf")
    QUICK = ("--timeout", "0.1", "--give-up", "5")
    WARNING = r"(?m)^OUTPUT OutputChannel1 MAY STILL BE ON: .+\n\Z"

    def expect_off(self, resource: str, ran: Ran) -> None:
        """Asks the supply itself, over a connection of its own."""
        if ran.code == 4:
            self.assertRegex(ran.err, self.WARNING)
            return
        host, port = resource.split("::")[1:3]
        with socket.create_connection((host, int(port)), timeout=10) as connection:
            connection.sendall(b":OUTP:STAT? CH1\n")
            self.assertEqual(connection.makefile("rb").readline(), b"OFF\n")

    def each_fault(self, arguments: Sequence[str], positions: Iterable[int]) -> None:
        for position in positions:
            for fault in self.FAULTS:
                with self.subTest(arguments=arguments, fault=fault, position=position):
                    resource = self.supply("--load", "1=10", "--fault", f"{fault}@{position}+1")
                    ran = run(*arguments, *self.QUICK, resource=resource)
                    self.assertIn(ran.code, (0, 2, 4))
                    self.expect_off(resource, ran)

    def test_sweep(self) -> None:
        self.each_fault(("sweep", "1", "--to", "3", "--step", "1", "--settle", "0"), range(2, 25, 3))

    def test_list(self) -> None:
        self.each_fault(("list", self.file("5,1,0.01\n"), "--on"), range(2, 20, 5))

    def test_delay(self) -> None:
        self.each_fault(("delay", self.file("on,0.01\n"), "--on"), range(3, 20, 5))

    def test_a_supply_that_stays_silent_is_reported_as_possibly_on(self) -> None:
        resource = self.supply("--load", "1=10", "--fault", "silent@6")
        ran = run("sweep", "1", "--to", "3", "--timeout", "0.1", "--give-up", "0.5", resource=resource)
        self.assertEqual(ran.code, 4)
        self.assertRegex(ran.err, self.WARNING)

    def test_exit_code_0_of_on_off_set_and_reset_is_true(self) -> None:
        for arguments, query, expected in (
            (("on", "1"), b":OUTP:STAT? CH1\n", b"ON\n"),
            (("off", "1"), b":OUTP:STAT? CH1\n", b"OFF\n"),
            (("set", "1", "--voltage", "3"), b":SOUR1:VOLT?\n", b"3.000000\n"),
            (("reset",), b":SOUR1:VOLT?\n", b"0.000000\n"),
        ):
            for fault in self.FAULTS:
                for position in (2, 3):
                    with self.subTest(arguments=arguments, fault=fault, position=position):
                        resource = self.supply("--fault", f"{fault}@{position}+1")
                        ran = run(*arguments, "--timeout", "0.1", resource=resource)
                        self.assertIn(ran.code, (0, 2))
                        if ran.code == 0:
                            host, port = resource.split("::")[1:3]
                            with socket.create_connection((host, int(port)), timeout=10) as connection:
                                connection.sendall(query)
                                self.assertEqual(connection.makefile("rb").readline(), expected)

    def test_the_default_time_out_is_two_seconds(self) -> None:
        before = time.monotonic()
        self.assertEqual(run("measure", "1", resource=self.supply("--fault", "silent@2")).code, 2)
        self.assertGreaterEqual(time.monotonic() - before, 2.0)


class HostileText(Tool):
    def identify(self, identity: bytes, *options: str) -> Ran:
        instrument = FakeInstrument({b"*IDN?": identity})
        self.addCleanup(instrument.close)
        return run("identify", *options, resource=instrument.resource)

    def test_control_characters_do_not_reach_the_terminal(self) -> None:
        ran = self.identify(b'Kel\x1b[2Jtor,TX"4410\\,SN\x07,\xc3\xa9%s%n\xff\xc2\x9b2J\r')
        lines = ran.out.splitlines()
        self.assertEqual((ran.code, ran.err), (0, ""))
        self.assertEqual(lines[:3], ["Manufacturer: Kel?[2Jtor", 'Model:        TX"4410\\', "Firmware:     \u00e9%s%n??2J?"])

    def test_characters_that_change_the_direction_of_writing_are_replaced(self) -> None:
        identity = "Kel\u202etor\u2066\u200f\u061c,TX4410\u202a\u2069,SN,\x7f\u2010"
        lines = self.identify(identity.encode()).out.splitlines()
        self.assertEqual(
            lines[:3], ["Manufacturer: Kel?tor???", "Model:        TX4410??", "Firmware:     ?\u2010"]
        )
        out = self.identify(identity.encode(), "--json").out
        self.assertIn('"Kel\\u202etor\\u2066\\u200f\\u061c"', out)
        self.assertIn('"\\u007f\u2010"', out)
        self.assertEqual(json.loads(out)["model"], "TX4410\u202a\u2069")

    def test_json_stays_valid(self) -> None:
        ran = self.identify(b'Kel\x1b\ttor,TX"4410\\,SN,\xff\xc3\xa9\xed\xa0\x80', "--json")
        identity = json.loads(ran.out)
        self.assertEqual(identity["manufacturer"], "Kel\x1b\ttor")
        self.assertEqual(identity["model"], 'TX"4410\\')
        self.assertEqual(identity["firmware_revision"], "\ufffd\u00e9\ufffd\ufffd\ufffd")


class ShellCompletion(unittest.TestCase):
    def complete(self, *words: str) -> List[str]:
        script = (
            'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _tarnexctl; printf "%s\\n" "${COMPREPLY[@]}"'
        )
        done = subprocess.run(
            ["bash", "-u", "-c", script, "bash", str(SOURCES / "tarnexctl.bash"), "tarnexctl", *words],
            capture_output=True,
            text=True,
            timeout=60,
            check=True,
        )
        self.assertEqual(done.stderr, "")
        return done.stdout.split()

    def test_commands_options_and_values(self) -> None:
        for words, expected in (
            (["se"], ["set"]),
            (["o"], ["on", "off"]),
            (["log", str(SOURCES / "tarnexctl.b")], [str(SOURCES / "tarnexctl.bash")]),
            (["ramp", "1", "--r"], ["--rate", "--resource"]),
            (["-r", "X", "sw"], ["sweep"]),
            (["--json", "id"], ["identify"]),
            (["get", ""], ["OutputChannel1", "OutputChannel2"]),
            (["get", "OutputChannel1", "OutputChannel2"], ["OutputChannel2"]),
            (["set", "1", "--o"], ["--ovp", "--options"]),
            (["set", "1", "--at-limit", ""], ["regulate", "trip"]),
            (["list", "x.csv", "--end", ""], ["off", "last"]),
            (["delay", "x.csv", "--end", "o"], ["off", "on"]),
            (["sweep", "1", "--to", ""], []),
            (["sweep", "1", "--s"], ["--step", "--settle"]),
            (["watch", "--c"], ["--count"]),
            (["list", str(SOURCES / "tarnexctl.b")], [str(SOURCES / "tarnexctl.bash")]),
            (["sweep", "1", "--plot", str(SOURCES / "tarnexctl.b")], [str(SOURCES / "tarnexctl.bash")]),
            (["reset", ""], []),
            (["reset", "--n"], ["--no-confirm"]),
        ):
            with self.subTest(words):
                self.assertEqual(self.complete(*words), expected)

    def test_every_command_and_option_is_in_completion_and_man_page(self) -> None:
        completion = (SOURCES / "tarnexctl.bash").read_text(encoding="ascii")
        manual = (SOURCES / "tarnexctl.1").read_text(encoding="ascii").replace("\\-", "-")
        commands = re.findall(r"^  ([a-z]+) {3,}", run("--help").out.split("Subcommands:")[1], re.MULTILINE)
        self.assertIn("sweep", commands)
        options = set(re.findall(r"--[a-z-]+", run("--help").out.split("Subcommands:")[0]))
        for command in commands:
            options.update(re.findall(r"^  .*?(--[a-z-]+)", run(command, "--help").out, re.MULTILINE))
            self.assertEqual(self.complete(command), [command])
            self.assertRegex(manual, rf"(?m)^(\.B {command}|\\fB{command}\\fR.*)$")
        self.assertTrue({"--json", "--ovp", "--give-up"} <= options, options)
        for option in options:
            self.assertRegex(completion, rf'[ "]{option}[ ")]')
            self.assertRegex(manual, rf"{option}\b")


if __name__ == "__main__":
    unittest.main()
