"""Runs tarnexctl from a shell: short names, explanations, terminals, lost connections, logs and raw commands."""

import json
import os
import pathlib
import re
import signal
import socket
import sqlite3
import subprocess
import time
import unittest
from typing import List

from tool import ENVIRONMENT, SOURCES, TOOL, OnTerminal, Ran, Tool, run

PORT = re.compile(r"::(\d+)::SOCKET")
UTC = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z"


def port_of(resource: str) -> str:
    found = PORT.search(resource)
    assert found is not None
    return found.group(1)


class Resources(Tool):
    def test_short_forms_name_the_same_supply(self) -> None:
        resource = self.supply()
        for given in (f"127.0.0.1:{port_of(resource)}", f"localhost:{port_of(resource)}"):
            with self.subTest(given):
                ran = run("identify", "--json", "-r", given)
                self.assertEqual((ran.code, ran.err), (0, ""))
                self.assertEqual(json.loads(ran.out)["model"], "TX4410")

    def test_an_ipv6_address_stands_in_brackets(self) -> None:
        resource = self.supply("--host", "::1")
        self.assertEqual(run("identify", "-r", f"[::1]:{port_of(resource)}").code, 0)

    def test_a_device_is_a_serial_line(self) -> None:
        resource = self.supply("--pty")
        device = resource[len("ASRL") : -len("::INSTR")]
        ran = run("identify", "--json", "-r", device)
        self.assertEqual((ran.code, json.loads(ran.out)["resource"]), (0, resource))

    def test_a_failure_to_open_says_what_this_computer_can_find_out(self) -> None:
        another = "the built-in VISA library serves TCPIP...::SOCKET and ASRL...; other kinds need another VISA library"
        neither = (
            "it is neither a resource nor a logical name of the configuration store; resources are for example "
            "TCPIP0::192.168.1.20::5025::SOCKET, 192.168.1.20, HOST:5025, ASRL/dev/ttyUSB0::INSTR and /dev/ttyUSB0"
        )
        for given, opened, why in (
            ("127.0.0.1:1", "TCPIP0::127.0.0.1::1::SOCKET", "127.0.0.1 refuses connections at port 1"),
            ("host.invalid:5025", "TCPIP0::host.invalid::5025::SOCKET", None),
            ("/dev/ttyNOWHERE", "ASRL/dev/ttyNOWHERE::INSTR", "no device /dev/ttyNOWHERE"),
            ("/dev/null", "ASRL/dev/null::INSTR", "/dev/null is not a serial line"),
            ("USB0::1::2::SN::INSTR", "USB0::1::2::SN::INSTR", another),
            ("TCPIP0::127.0.0.1::hislip0::INSTR", "TCPIP0::127.0.0.1::hislip0::INSTR", another),
            ("Supply_1", "Supply_1", neither),
            ("127.0.0.1:65536", "127.0.0.1:65536", neither),
            ("127.0.0.1:0", "127.0.0.1:0", neither),
            ("127.0.0.1:1:1", "127.0.0.1:1:1", neither),
            ("[::1", "[::1", neither),
        ):
            with self.subTest(given):
                ran = run("identify", "-r", given)
                self.assertEqual((ran.code, ran.out), (2, ""))
                self.assertTrue(ran.err.startswith(f"tarnexctl: opening {opened}: 0xBFFA4214: I/O error."), ran.err)
                if why is None:  # without a network the name server does not answer
                    self.assertRegex(
                        ran.err, r"\((unknown host|the name server does not answer for host) host\.invalid\)\n\Z"
                    )
                else:
                    self.assertTrue(ran.err.endswith(f" ({why})\n"), ran.err)

    def test_a_word_that_the_configuration_store_does_not_have_is_a_host(self) -> None:
        ran = run("identify", "-r", "no-such-supply")
        self.assertEqual((ran.code, ran.out), (2, ""))
        self.assertTrue(ran.err.startswith("tarnexctl: opening TCPIP0::no-such-supply::5025::SOCKET: 0xBFFA4214"), ran.err)
        self.assertRegex(
            ran.err, r"\((unknown host|the name server does not answer for host) no-such-supply\)\n\Z"
        )

    def test_a_failure_to_open_explains_what_the_configuration_store_names(self) -> None:
        store = self.folder() / "store.xml"
        text = (SOURCES.parent.parent / "examples" / "IviConfigurationStore.xml").read_text(encoding="utf-8")
        text, count = re.subn(
            r"<IOResourceDescriptor>[^<]*</", "<IOResourceDescriptor>TCPIP0::127.0.0.1::1::SOCKET</", text
        )
        self.assertGreater(count, 0)
        store.write_text(text, encoding="utf-8")
        resource = self.supply()  # answers, but the store names another one
        done = subprocess.run(
            [TOOL, "-r", resource, "identify"],
            env={**ENVIRONMENT, "IVI_CONFIG_STORE": str(store)},
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        start = f"tarnexctl: opening {resource} as TCPIP0::127.0.0.1::1::SOCKET: 0xBFFA4214: I/O error."
        self.assertTrue(done.stderr.startswith(start), done.stderr)
        self.assertTrue(done.stderr.endswith(" (127.0.0.1 refuses connections at port 1)\n"), done.stderr)

    def test_the_version_needs_no_supply(self) -> None:
        self.assertEqual(run("--version"), Ran(0, "tarnexctl 1.0.0.0\n", ""))


class Ramps(Tool):
    def setUp(self) -> None:
        self.resource = self.supply("--load", "1=10")

    def level(self) -> str:
        return run("query", ":SOUR1:VOLT?", resource=self.resource).out

    def test_moves_at_the_rate_and_leaves_the_output_as_it_is(self) -> None:
        before = time.monotonic()
        self.quietly(self.resource, "ramp", "1", "--to", "2", "--rate", "4", "--interval", "0.01")
        self.assertGreaterEqual(time.monotonic() - before, 0.5)
        self.assertEqual(self.level(), "2.000000\n")
        self.assertFalse(self.output_enabled(self.resource))
        self.quietly(self.resource, "ramp", "1", "--to", "1.5", "--rate", "10")
        self.assertEqual(self.level(), "1.500000\n")

    def test_the_voltages_lie_on_the_ramp(self) -> None:
        ran = run("ramp", "1", "--from", "1", "--to", "3", "--rate", "5", "--trace", resource=self.resource)
        levels = [float(level) for level in re.findall(r"> :SOUR1:VOLT (\S+)", ran.err)]
        self.assertEqual((ran.code, levels[0], levels[-1]), (0, 1.0, 3.0))
        self.assertEqual(levels, sorted(levels))
        self.assertGreater(len(levels), 3)

    def test_on_leaves_the_output_on_after_a_complete_ramp(self) -> None:
        self.quietly(self.resource, "ramp", "1", "--to", "1", "--rate", "10", "--on")
        self.assertTrue(self.output_enabled(self.resource))

    def test_ctrl_c_switches_off_what_the_ramp_switched_on(self) -> None:
        ramp = self.start(self.resource, "ramp", "1", "--to", "20", "--rate", "0.1", "--on")
        self.wait_until(lambda: self.output_enabled(self.resource))
        ramp.send_signal(signal.SIGINT)
        self.assertEqual(ramp.communicate(timeout=30), (b"", b""))
        self.assertEqual(ramp.returncode, 130)
        self.assertFalse(self.output_enabled(self.resource))

    def test_a_failure_switches_off_what_the_ramp_switched_on(self) -> None:
        resource = self.supply("--load", "1=10", "--fault", "drop@5+1")
        ran = run(
            "ramp", "1", "--from", "1", "--to", "2", "--rate", "2", "--on", "--timeout", "0.2", resource=resource
        )
        self.assertEqual(ran.code, 2)
        self.assertFalse(self.output_enabled(resource))


class RawCommands(Tool):
    def setUp(self) -> None:
        self.resource = self.supply()

    def test_query_prints_a_reply_and_sends_a_setting(self) -> None:
        identity = "Keltor Technology,TX4410,SN00000001,1.00"
        self.assertEqual(run("query", "*IDN?", resource=self.resource), Ran(0, identity + "\n", ""))
        self.quietly(self.resource, "query", ":SOUR1:VOLT 3")
        self.assertEqual(
            run("query", ":SOUR1:VOLT?", "--json", resource=self.resource), Ran(0, '{"reply": "3.000000"}\n', "")
        )

    def test_a_query_without_a_reply_fails_after_the_time_out(self) -> None:
        error = "tarnexctl: 'NO:SUCH?': 0xBFFA4215: I/O timeout error.  Command 'NO:SUCH?', VISA status 0xBFFF0015.\n"
        self.assertEqual(run("query", "NO:SUCH?", "-t", "0.2", resource=self.resource), Ran(2, "", error))

    def test_the_trace_shows_what_goes_over_the_wire(self) -> None:
        ran = run("get", "1", "--trace", resource=self.resource)
        lines = ran.err.splitlines()
        self.assertEqual(ran.code, 0)
        self.assertRegex(lines[0], rf"^ +0\.\d{{6}} opening {re.escape(self.resource)}$")
        self.assertRegex(lines[1], r"^ +0\.\d{6} > :OUTP:STAT\? CH1$")
        self.assertRegex(lines[2], r"^ +0\.\d{6} < OFF$")
        self.assertTrue(all(re.match(r"^ +\d\.\d{6} [<>] [ -~]+$", line) for line in lines[1:]), ran.err)
        failed = run("identify", "--trace", "-r", "127.0.0.1:1").err.splitlines()[0]
        self.assertRegex(failed, r"^ +0\.\d{6} opening TCPIP0::127\.0\.0\.1::1::SOCKET \[0xBFFA4214\]$")

    def test_console_reads_commands_from_a_pipe(self) -> None:
        done = subprocess.run(
            [TOOL, "-r", self.resource, "console"],
            input=b":SOUR1:VOLT 3\n\n:SOUR1:VOLT?\nquit\n:SOUR1:VOLT 4\n",
            env=ENVIRONMENT,
            capture_output=True,
            timeout=60,
            check=False,
        )
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"3.000000\n", b""))
        self.assertEqual(run("query", ":SOUR1:VOLT?", resource=self.resource).out, "3.000000\n")

    def test_console_goes_on_after_an_error_and_ends_with_the_last_exit_code(self) -> None:
        for lines, code in ((b"NO:SUCH?\n*IDN?\n", 0), (b"*IDN?\nNO:SUCH?\n", 2)):
            with self.subTest(lines):
                done = subprocess.run(
                    [TOOL, "-r", self.resource, "-t", "0.2", "console"],
                    input=lines,
                    env=ENVIRONMENT,
                    capture_output=True,
                    timeout=60,
                    check=False,
                )
                self.assertEqual(done.stdout, b"Keltor Technology,TX4410,SN00000001,1.00\n")
                self.assertTrue(done.stderr.startswith(b"tarnexctl: 'NO:SUCH?': 0xBFFA4215"), done.stderr)
                self.assertEqual(done.returncode, code)

    def test_console_keeps_its_history(self) -> None:
        state = self.folder()
        for typed, reply in (("*IDN?\n", "TX4410"), ("\x1b[A\n", "TX4410")):  # the cursor key brings the line back
            terminal = OnTerminal(self.resource, "console", state=state)
            terminal.read_until("> ")
            terminal.type(typed)
            terminal.read_until(",1.00")
            terminal.type("exit\n")
            self.assertEqual(terminal.finish(), 0)
            self.assertIn(reply, terminal.text)
        self.assertIn("*IDN?", (state / "tarnexctl" / "history").read_text(encoding="ascii"))

    def test_console_keeps_its_history_at_ctrl_c(self) -> None:
        state = self.folder()
        terminal = OnTerminal(self.resource, "console", state=state)
        terminal.read_until("> ")
        terminal.type("*IDN?\n")
        terminal.read_until(",1.00")
        terminal.process.send_signal(signal.SIGINT)
        self.assertEqual(terminal.finish(), -signal.SIGINT)
        self.assertIn("*IDN?", (state / "tarnexctl" / "history").read_text(encoding="ascii"))


class NarrowTerminals(Tool):
    def table(self, columns: int) -> List[str]:
        terminal = OnTerminal(self.resource, "watch", "1", "--count", "2", "--interval", "0.01", columns=columns)
        self.assertEqual(terminal.finish(), 0)
        last = terminal.text.split("\x1b[2A")[1].replace("\x1b[J", "")
        lines = last.replace("\x1b[K", "").splitlines()
        self.assertLess(max(map(len, lines)), columns)
        return lines

    def setUp(self) -> None:
        self.resource = self.supply("--load", "1=10")
        self.quietly(self.resource, "set", "1", "--voltage", "3.3")
        self.quietly(self.resource, "on", "1")

    def test_watch_leaves_out_columns_that_do_not_fit(self) -> None:
        self.assertEqual(
            self.table(64),
            [
                "Channel         Voltage/V  Current/A    Power/W  Output  Mode",
                "OutputChannel1     3.3000     0.3300     1.0890  on      CV",
            ],
        )
        self.assertEqual(
            self.table(40), ["Channel        Voltage/V Current/A Mode", "OutputChannel1    3.3000    0.3300 CV"]
        )

    def test_a_trace_is_not_overwritten_by_the_table(self) -> None:
        terminal = OnTerminal(self.resource, "watch", "1", "--trace", "--count", "2", "--interval", "0.01")
        self.assertEqual(terminal.finish(), 0)
        self.assertNotIn("\x1b", terminal.text)
        self.assertEqual(terminal.text.count("> :MEAS:ALL? CH1\n"), 2)

    def test_progress_is_renewed_in_place(self) -> None:
        csv = self.folder() / "sweep.csv"
        for columns in (40, 12):
            with self.subTest(columns):
                terminal = OnTerminal(
                    self.resource, "sweep", "1", "--to", "3", "--step", "1", "--csv", str(csv), columns=columns
                )
                self.assertEqual(terminal.finish(), 0)
                lines = [line.split("\x1b[K")[0] for line in terminal.text.split("\r") if line]
                self.assertIn("3/4  2.000 V"[: columns - 1], "".join(lines))
                self.assertLess(max(map(len, lines)), columns)


class LostConnections(Tool):
    def serve(self, port: str = "0") -> "subprocess.Popen[str]":
        supply = subprocess.Popen(
            [os.environ["VIRTUAL_SUPPLY"], "--exit-with-parent", "--for", "100", "--port", port],
            stdout=subprocess.PIPE,
            text=True,
        )
        assert supply.stdout is not None
        self.resource = supply.stdout.readline().split()[-1]
        return supply

    def test_watch_shows_the_gap_and_goes_on(self) -> None:
        supply = self.serve()
        self.addCleanup(supply.communicate)
        self.addCleanup(supply.terminate)
        watch = self.start(self.resource, "watch", "1", "--interval", "0.05", "--timeout", "0.3", "--json")
        assert watch.stdout is not None and watch.stderr is not None
        self.assertEqual(json.loads(watch.stdout.readline())["voltage"], 0)
        supply.terminate()
        supply.wait()
        sample = {"voltage": 0}
        while sample["voltage"] is not None:
            sample = json.loads(watch.stdout.readline())
        self.assertEqual(sample["channel"], "OutputChannel1")
        self.assertEqual([sample[key] for key in ("current", "power", "output_enabled", "regulation")], [None] * 4)
        again = self.serve(port_of(self.resource))
        self.addCleanup(again.communicate)
        self.addCleanup(again.terminate)
        while sample["voltage"] is None:
            sample = json.loads(watch.stdout.readline())
        self.assertEqual(sample["voltage"], 0)
        watch.send_signal(signal.SIGINT)
        errors = watch.communicate(timeout=30)[1].decode().splitlines()
        self.assertEqual(watch.returncode, 0)
        self.assertEqual(len(errors), 2, errors)
        self.assertRegex(errors[0], r"^tarnexctl: no readings since \d+\.\d s: measuring OutputChannel1: 0x")
        self.assertRegex(errors[1], r"^tarnexctl: readings again at \d+\.\d s$")

    def test_watch_on_a_terminal_says_it_below_the_table(self) -> None:
        resource = self.supply("--fault", "silent@3+1")
        terminal = OnTerminal(resource, "watch", "1", "--count", "3", "--interval", "0.01", "--timeout", "0.2")
        self.assertEqual(terminal.finish(), 0)
        self.assertRegex(terminal.text, r"\n *\d\.\d  OutputChannel1  -          -          -          -       -\x1b\[K\n")
        self.assertRegex(terminal.text, r"\nno readings since \d\.\d s: (measuring|reading) OutputChannel1: [^\n]*\x1b\[K\n")

    def test_watch_leaves_out_the_readings_that_a_gap_has_missed(self) -> None:
        resource = self.supply("--fault", "silent@5+1")
        ran = run(
            *("watch", "1", "--count", "6", "--interval", "0.05", "--timeout", "0.5", "--json"), resource=resource
        )
        times = [json.loads(line)["time"] for line in ran.out.splitlines()]
        self.assertEqual((ran.code, len(times)), (0, 6))
        self.assertTrue(all(later - time > 0.01 for time, later in zip(times, times[1:])), times)
        self.assertTrue(any(later - time > 0.45 for time, later in zip(times, times[1:])), times)

    def test_log_notes_the_gap(self) -> None:
        file = self.folder() / "log.csv"
        resource = self.supply("--fault", "silent@4+1")
        self.quietly(resource, "log", str(file), "1", "--count", "4", "--interval", "0.01", "--timeout", "0.2")
        events = [line.split(",")[8:10] for line in file.read_text(encoding="ascii").splitlines()[2:]]
        self.assertEqual([kind for kind, _ in events if kind], ["start", "gap", "back", "end"])
        self.assertRegex(dict(events)["gap"], r'^"(measuring|reading) OutputChannel1: 0xBFFA4215: I/O timeout error')


class Logs(Tool):
    START = r'{utc},\d+\.\d{{3}},,,,,,,{kind},"Keltor Technology TX4410 SN00000001, {resource}"'
    ROW = r"{utc},\d+\.\d{{3}},OutputChannel{channel},3\.300000,0\.330000,1\.089000,on,CV,,"

    def setUp(self) -> None:
        self.resource = self.supply("--load", "1=10", "--load", "2=10")
        self.quietly(self.resource, "set", "1,2", "--voltage", "3.3")
        self.quietly(self.resource, "on", "1,2")
        self.csv = self.folder() / "log.csv"

    def expect_line(self, line: str, pattern: str, **values: str) -> None:
        self.assertRegex(line, "^" + pattern.format(utc=UTC, resource=re.escape(self.resource), **values) + "$")

    def test_csv_has_a_head_and_a_row_for_each_channel(self) -> None:
        self.quietly(self.resource, "log", str(self.csv), "--count", "2", "--interval", "0.05")
        lines = self.csv.read_text(encoding="ascii").splitlines()
        self.assertEqual(len(lines), 8)
        self.expect_line(lines[7], r'{utc},\d+\.\d{{3}},,,,,,,end,""')
        self.expect_line(lines[0], r"# Keltor Technology TX4410 SN00000001, {resource}, {utc}, every 0\.05 s")
        self.assertEqual(lines[1], "time,monotonic_s,channel,voltage_V,current_A,power_W,output,mode,event,text")
        self.expect_line(lines[2], self.START, kind="start")
        for i, channel in enumerate("1212"):
            self.expect_line(lines[3 + i], self.ROW, channel=channel)
        self.assertGreaterEqual(float(lines[5].split(",")[1]), 0.05)

    def test_a_device_is_not_a_log(self) -> None:
        ran = run("log", "/dev/full", "--resume", "--count", "1", resource=self.resource)
        self.assertEqual(ran, Ran(3, "", "tarnexctl: /dev/full is not a file\n"))

    def test_an_existing_file_is_kept(self) -> None:
        self.csv.write_text("mine\n", encoding="ascii")
        for path in (self.csv, self.csv.rename(self.csv.with_suffix(".db"))):
            error = f"tarnexctl: {path} exists; --resume adds to it\n"
            if path.exists():
                self.assertEqual(run("log", str(path), "--count", "1", resource=self.resource), Ran(3, "", error))
                self.assertEqual(path.read_text(encoding="ascii"), "mine\n")

    def test_resume_removes_an_incomplete_line_and_adds(self) -> None:
        self.quietly(self.resource, "log", str(self.csv), "1", "--count", "1")
        whole = self.csv.read_text(encoding="ascii")
        self.csv.write_text(whole + "2026-11-21T00:0", encoding="ascii")
        self.quietly(self.resource, "log", str(self.csv), "1", "--count", "1", "--resume")
        text = self.csv.read_text(encoding="ascii")
        self.assertTrue(text.startswith(whole))
        added = text[len(whole) :].splitlines()
        self.assertEqual(len(added), 3)
        self.expect_line(added[0], self.START, kind="resume")
        self.expect_line(added[1], self.ROW, channel="1")

    def test_resume_refuses_other_files_and_keeps_them(self) -> None:
        for name, content in (("a.csv", b"binary"), ("b.csv", b"# mine\nx,y\n1,2"), ("c.csv", b"\0" * 100000 + b"\n")):
            with self.subTest(name):
                path = self.csv.with_name(name)
                path.write_bytes(content)
                ran = run("log", str(path), "--resume", "--count", "1", resource=self.resource)
                self.assertEqual(ran, Ran(3, "", f"tarnexctl: {path} is not a log of tarnexctl\n"))
                self.assertEqual(path.read_bytes(), content)

    def test_resume_refuses_another_database_and_keeps_it(self) -> None:
        path = self.csv.with_suffix(".db")
        database = sqlite3.connect(path)
        self.addCleanup(database.close)
        database.execute("CREATE TABLE run(mine)")
        database.commit()
        ran = run("log", str(path), "--resume", "--count", "1", resource=self.resource)
        self.assertEqual(ran, Ran(3, "", f"tarnexctl: {path} is not a log of tarnexctl\n"))
        self.assertEqual(database.execute("SELECT name FROM sqlite_schema").fetchall(), [("run",)])

    def test_two_logs_cannot_write_one_csv_file(self) -> None:
        first = self.start(self.resource, "log", str(self.csv), "1", "--interval", "1000")
        self.wait_until(lambda: self.csv.exists() and self.csv.read_text(encoding="ascii").count("\n") == 4)
        error = f"tarnexctl: {self.csv}: another program writes into this log\n"
        second = run("log", str(self.csv), "2", "--count", "1", "--resume", resource=self.resource)
        self.assertEqual(second, Ran(3, "", error))
        first.send_signal(signal.SIGINT)
        first.communicate(timeout=30)
        self.quietly(self.resource, "log", str(self.csv), "2", "--count", "1", "--resume")

    def test_a_short_lock_of_another_program_does_not_end_a_database(self) -> None:
        path = self.csv.with_suffix(".db")
        self.quietly(self.resource, "log", str(path), "1", "--count", "1")
        other = sqlite3.connect(path)
        self.addCleanup(other.close)
        other.execute("BEGIN IMMEDIATE")
        log = self.start(self.resource, "log", str(path), "1", "--count", "1", "--resume")
        time.sleep(0.3)
        self.assertIsNone(log.poll())
        other.rollback()
        self.assertEqual(log.communicate(timeout=30), (b"", b""))
        self.assertEqual((log.returncode, self.samples(path)), (0, 2))

    def test_a_channel_that_is_given_twice_is_measured_once(self) -> None:
        path = self.csv.with_suffix(".db")
        self.quietly(self.resource, "log", str(path), "1", "OutputChannel1", "1,2", "--count", "1")
        self.assertEqual(self.samples(path), 2)

    def test_a_killed_log_keeps_every_line(self) -> None:
        log = self.start(self.resource, "log", str(self.csv), "--interval", "0.001")
        self.wait_until(lambda: self.csv.exists() and self.csv.read_text(encoding="ascii").count("\n") > 20)
        log.kill()
        log.wait()
        lines = self.csv.read_text(encoding="ascii").splitlines()
        for i, line in enumerate(lines[3:-1]):
            self.expect_line(line, self.ROW, channel="12"[i % 2])

    def test_a_full_disk_ends_the_log_with_whole_lines(self) -> None:
        done = subprocess.run(
            ["bash", "-c", 'ulimit -f 1; trap "" XFSZ; exec "$@"', "bash", TOOL, "-r", self.resource, "log", str(self.csv)]
            + ["--interval", "0.001", "--count", "1000"],
            env=ENVIRONMENT,
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        self.assertEqual((done.returncode, done.stdout), (3, ""))
        self.assertEqual(done.stderr, f"tarnexctl: {self.csv} cannot be written: File too large\n")
        text = self.csv.read_text(encoding="ascii")
        self.assertTrue(text.endswith("\n"))
        self.assertGreater(len(text), 700)
        self.expect_line(text.splitlines()[-1], self.ROW, channel="2")

    def test_sqlite_has_runs_samples_and_events(self) -> None:
        path = self.csv.with_suffix(".db")
        self.quietly(self.resource, "log", str(path), "--count", "2", "--interval", "0.01")
        self.quietly(self.resource, "log", str(path), "1", "--count", "1", "--resume")
        database = sqlite3.connect(path)
        self.addCleanup(database.close)
        title = f"Keltor Technology TX4410 SN00000001, {self.resource}"
        self.assertEqual(
            database.execute("SELECT id, title, interval_s FROM run").fetchall(), [(1, title, 0.01), (2, title, 1.0)]
        )
        samples = database.execute("SELECT run, channel, voltage, current, power, output, mode FROM sample").fetchall()
        values = (3.3, 0.33, 1.089, 1, "CV")
        one, two = ("OutputChannel1", *values), ("OutputChannel2", *values)
        self.assertEqual(samples, [(1, *one), (1, *two), (1, *one), (1, *two), (2, *one)])
        self.assertEqual(
            database.execute("SELECT run, kind, text FROM event").fetchall(), [(1, "start", title), (2, "resume", title)]
        )
        for start, end in database.execute("SELECT start_us, end_us FROM run"):
            self.assertLess(abs(start / 1e6 - time.time()), 60)
            self.assertTrue(start <= end < start + 60e6, (start, end))
        origins = database.execute("SELECT DISTINCT host, version FROM run").fetchall()
        self.assertEqual(origins, [(socket.gethostname(), "1.0.0.0")])

    def test_a_killed_database_is_whole(self) -> None:
        path = self.csv.with_suffix(".db")
        log = self.start(self.resource, "log", str(path), "--interval", "0.001")
        self.wait_until(lambda: path.exists() and self.samples(path) > 4)
        log.kill()
        log.wait()
        before = self.samples(path)
        self.quietly(self.resource, "log", str(path), "1", "--count", "1", "--resume")
        self.assertEqual(self.samples(path), before + 1)
        database = sqlite3.connect(path)
        self.addCleanup(database.close)
        ended = [end is not None for (end,) in database.execute("SELECT end_us FROM run ORDER BY id")]
        self.assertEqual(ended, [False, True])
        self.assertEqual(database.execute("PRAGMA integrity_check").fetchall(), [("ok",)])

    def samples(self, path: pathlib.Path) -> int:
        database = sqlite3.connect(path)
        try:
            return int(database.execute("SELECT count(*) FROM sample").fetchone()[0])
        except sqlite3.OperationalError:  # not made yet
            return 0
        finally:
            database.close()

    def test_a_file_that_is_not_a_database_fails(self) -> None:
        path = self.csv.with_suffix(".db")
        path.write_text("volts\n" * 1000, encoding="ascii")
        ran = run("log", str(path), "--resume", resource=self.resource)
        self.assertEqual(ran, Ran(3, "", f"tarnexctl: {path} cannot be written: file is not a database\n"))

    def test_ctrl_c_ends_with_0(self) -> None:
        log = self.start(self.resource, "log", str(self.csv), "--interval", "1000")
        self.wait_until(lambda: self.csv.exists() and self.csv.read_text(encoding="ascii").count("\n") == 5)
        log.send_signal(signal.SIGINT)
        self.assertEqual(log.communicate(timeout=30), (b"", b""))
        self.assertEqual(log.returncode, 0)


class FoundDevices(Tool):
    def find(self, *options: str) -> Ran:
        done = subprocess.run(
            [TOOL, "find", *options],
            env={**ENVIRONMENT, "TARNEXCTL_SYSFS": str(self.system)},
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        return Ran(done.returncode, done.stdout, done.stderr)

    def setUp(self) -> None:
        self.system = self.folder()

    def write(self, path: str, **files: str) -> pathlib.Path:
        folder = self.system / path
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in files.items():
            (folder / name).write_text(content + "\n", encoding="ascii")
        return folder

    def test_serial_lines_and_usb_instruments(self) -> None:
        cable = self.write("devices/1-1", idVendor="0403", idProduct="6001", manufacturer="Maker", product="Cable", serial="A1")
        self.write("devices/1-1/1-1:1.0/ttyUSB0/driver")
        supply = self.write("devices/1-2", idVendor="1ab1", idProduct="0e11", product="Supply", serial="SN1")
        (self.write("class/tty/ttyUSB0") / "device").symlink_to(cable / "1-1:1.0" / "ttyUSB0")
        self.write("class/tty/ttyS0", type="4")
        self.write("class/tty/ttyS0/device/driver")
        self.write("class/tty/ttyS1", type="0")  # without hardware
        self.write("class/tty/ttyS1/device/driver")
        self.write("class/tty/tty1")
        self.write("devices/1-2/1-2:1.0", bInterfaceClass="fe", bInterfaceSubClass="03")
        self.write("devices/1-1/1-1:1.1", bInterfaceClass="ff", bInterfaceSubClass="03")
        bus = self.write("bus/usb/devices")
        (bus / "1-2:1.0").symlink_to(supply / "1-2:1.0")
        (bus / "1-1:1.1").symlink_to(cable / "1-1:1.1")
        self.assertEqual(
            self.find(),
            Ran(
                0,
                "Resource                          Description\n"
                "ASRL/dev/ttyS0::INSTR             serial line\n"
                "ASRL/dev/ttyUSB0::INSTR           serial line, Maker Cable A1\n"
                "USB0::0x1ab1::0x0e11::SN1::INSTR  Supply SN1\n",
                "",
            ),
        )
        self.assertEqual(
            json.loads(self.find("--json").out)[2],
            {"resource": "USB0::0x1ab1::0x0e11::SN1::INSTR", "description": "Supply SN1"},
        )

    def test_nothing_is_an_answer(self) -> None:
        self.assertEqual(self.find(), Ran(0, "No serial or USB devices.\n", ""))
        self.assertEqual(self.find("--json"), Ran(0, "[]\n", ""))


if __name__ == "__main__":
    unittest.main()
