#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Settings and files are never lost: the real program is killed at many moments, and what it leaves is read and started
from. lasting.py BUILD [ROUNDS]; more rounds strike at more moments."""

import collections
import ctypes
import os
import pathlib
import re
import resource
import select
import signal
import struct
import subprocess
import sys
import tempfile
import time

FEW, SOME, MANY = 3, 9, 40  # payloads; each number names a whole state
CHANGE = """const tx = ZepManager.tx; const list = tx.payloadListModel; const n = {}; tx.periodicProfile.period = n;
    tx.prepassProfile.redundancy = n; tx.selectedProfile = n % 2; while (list.rowCount()) list.remove(0);
    for (let i = 0; i < n; ++i) tx.addPayloadItem(("" + n).repeat(20)); n"""
SHOWN = """const tx = ZepManager.tx; const list = tx.payloadListModel; const n = list.rowCount(); let whole =
    tx.periodicProfile.period === n && tx.prepassProfile.redundancy === n && tx.selectedProfile === n % 2;
    for (let i = 0; i < n; ++i) whole = whole && list.data(list.index(i, 0), 257) === ("" + n).repeat(20);
    whole ? n : "a mixture" """
LOG = 'objectName = "[10:00:00:000] [APP] AT+PING=?\\n".repeat(100000); "filled"'
SESSION = "ZepManager.connect(Module.RANGER, '{}', 'Default'); ZepManager.board.module"
EXPORTS = {"log": "ZepManager.logger.exportLogsToFile('{}', objectName, false); 'done'",
           "commands": "ZepManager.logger.exportLogsToFile('{}', objectName, true); 'done'",
           "configuration": "ZepManager.exportConfig('{}'); 'done'"}
REGULAR = 1 << 30  # an event that never comes

build, rounds = pathlib.Path(sys.argv[1]).resolve(), int((sys.argv + [1])[2])
place = tempfile.TemporaryDirectory()
folder = pathlib.Path(place.name)
store, target = folder / "Sarvane/ZepGUI.conf", folder / "exports/it"
libc = ctypes.CDLL(None)
kills = collections.Counter()
whole = {}  # what the store holds after a regular close, by state


def check(condition, complaint):
    if not condition:
        sys.exit(f"FAILED: {complaint}\n{dict(kills)}")


class Program:
    """One window on the store, with the hand inside; no file that it writes grows beyond a limit in bytes."""

    def __init__(self, limit=resource.RLIM_INFINITY):
        def limited():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)  # the write fails, as on a full disk
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
        environment = dict(os.environ, HOME=folder, XDG_CONFIG_HOME=folder, XDG_DATA_HOME=folder / "data",
                           XDG_RUNTIME_DIR=folder, LC_ALL="C.UTF-8", QT_PLUGIN_PATH=build / "plugins",
                           QT_QPA_GENERIC_PLUGINS="hand")
        if limit != resource.RLIM_INFINITY:  # nor may it tear what the build counts of the lines that ran
            environment["GCOV_PREFIX"] = folder / "counts"
        pipes = dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.PIPE)
        self.process = subprocess.Popen([build / "src/zepgui"], env=environment, cwd=folder, text=True,
                                        preexec_fn=limited, **pipes)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.communicate()

    def order(self, what):
        self.process.stdin.write(what.replace("\n", " ") + "\n")
        self.process.stdin.flush()

    def expect(self, what, answer):
        self.order(what)
        said = self.process.stdout.readline().strip()
        check(said == str(answer), f"'{said}' in place of '{answer}' to: {what}")

    def close(self):
        self.order("close()")
        check(self.process.wait(10) == 0, f"a close ended with {self.process.returncode}")

    def kill_at(self, watched, event, delay, cause):
        """Kills it some seconds after the event-th thing that happened in a folder because of cause, 0 being the cause
        itself. Returns how many things had happened, and the seconds from the cause to the last of them."""
        watch, life = libc.inotify_init1(os.O_NONBLOCK), os.pidfd_open(self.process.pid)
        libc.inotify_add_watch(watch, bytes(watched), 0xfff)  # IN_ALL_EVENTS
        start, seen, last = time.monotonic(), 0, 0.0
        cause()
        while seen < event and watch in select.select([watch, life], [], [], 0 if event == REGULAR else 5)[0]:
            events, last = os.read(watch, 4096), time.monotonic() - start
            while events:
                events, seen = events[16 + struct.unpack_from("iIII", events)[3]:], seen + 1
        time.sleep(delay)
        self.process.kill()
        self.process.wait()
        os.close(watch)
        os.close(life)
        return seen, last


def moments(kill, most):
    """Calls kill(event, delay) for a regular end first, then for as many of its events, each round for others, and for
    parts of its length."""
    events, length = kill(REGULAR, 0)
    print(f"    {events} events in {length * 1000:.1f} ms", flush=True)
    step, parts = events // most + 1, most // 2
    for turn in range(rounds):
        for event in range(1 + turn % step, events + 1, step):
            kill(event, turn // step * 0.0002)
        for part in range(parts):
            kill(0, length * (part + turn / rounds) / parts)


def stored():
    content = store.read_bytes()
    states = [state for state in whole if whole[state] == content]
    check(states, f"the store holds no whole state: {content.decode(errors='replace')}")
    return states[0]


def regular_closes():
    for state in (MANY, SOME, FEW):
        with Program() as program:
            program.expect(CHANGE.format(state), state)
            program.close()
        whole[state] = store.read_bytes()
        check(whole[state].count(b"\nmsg") == state and b"\nPeriodic\\period=%d\n" % state in whole[state], "not saved")


def starting():
    for event in range(5 * rounds):  # the first start of all, which writes the defaults
        store.unlink(missing_ok=True)
        with Program() as program:
            program.kill_at(store.parent, 1 + event % 8, event // 8 * 0.0003, lambda: None)
        check(not store.exists() or b"\nwindowWidth=1350\n" in store.read_bytes(), "half of the defaults")
    store.write_bytes(whole[FEW])
    for part in range(4 * rounds):
        with Program() as program:
            program.kill_at(store.parent, 0, 0.15 * part / rounds, lambda: None)
        check(stored() == FEW, "a start has changed the store")
    kills["start"] += 9 * rounds


def closing():
    def kill(event, delay):
        old = stored()
        new = FEW + MANY - old
        with Program() as program:
            program.expect(SHOWN, old)
            program.expect(CHANGE.format(new), new)
            seen = program.kill_at(store.parent, event, delay,
                                   lambda: program.close() if event == REGULAR else program.order("close()"))
        left = stored()
        check(left == new or left == old and event != REGULAR, f"{left} in place of {old} or {new}")
        kills["close, old state left" if left == old else "close, new state left"] += event != REGULAR
        return seen
    moments(kill, 8)
    check(kills["close, old state left"] and kills["close, new state left"], "the kills missed the saving")


def locks_without_a_name():
    """Left by a kill between the making of a lock and its naming. Qt honours such a lock for half a minute."""
    for suffix in (".lock", ".saving"):
        pathlib.Path(f"{store}{suffix}").touch()
    with Program() as program:
        program.expect(CHANGE.format(SOME), SOME)
        program.close()
    check(stored() == SOME, "not saved")


def two_windows():
    for how in ["in turn", "the other way round"] + ["at once", "one killed"] * 2 * rounds:
        store.write_bytes(whole[FEW])
        with Program() as longer, Program() as shorter:
            longer.expect(CHANGE.format(MANY), MANY)
            shorter.expect(CHANGE.format(SOME), SOME)
            first, second = (shorter, longer) if how == "the other way round" else (longer, shorter)
            if how == "one killed":
                first.kill_at(store.parent, 1 + kills["one of two windows"] * 7 % 24, 0,
                              lambda: (first.order("close()"), second.order("close()")))
                kills["one of two windows"] += 1
            elif how == "at once":
                first.order("close()")
            else:
                first.close()
            if how != "one killed":
                second.close()
            second.process.wait(10)
            how == "at once" and first.process.wait(10)
        left = stored()
        check(left in {"in turn": [SOME], "the other way round": [MANY]}.get(how, [SOME, MANY]), f"{how}: {left}")
        with Program() as program:
            program.expect(SHOWN, left)


def exports():
    for name, call in EXPORTS.items():
        def kill(event, delay):
            target.write_bytes(b"old" * 1000)
            with Program() as program:
                program.expect(*((SESSION.format(port), 4) if name == "configuration" else (LOG, "filled")))
                seen = program.kill_at(target.parent, event, delay, lambda: (
                    program.order(call.format(target)), event == REGULAR and program.process.stdout.readline()))
            content = re.sub(rb"AT\+UDATE=.*", b"", target.read_bytes())
            if event == REGULAR:
                whole[name] = content
                check(content.count(b"\n") > 10 and content[-10:] in (b"AT+PING=?\n", b"\nAT+RST=\r\n"), content[-50:])
            check(content in (b"old" * 1000, whole[name]), f"{name}: {len(content)} of {len(whole[name])} bytes")
            kills[f"{name}, {'old' if content != whole[name] else 'new'} file left"] += event != REGULAR
            return seen
        moments(kill, 3 if name == "configuration" else 8)  # a session takes its time to begin


def full_disk_at_a_close():
    with Program() as program:
        program.expect(CHANGE.format(MANY), MANY)
        program.close()
    full = store.read_bytes()
    line_end = full.index(b"\n", 200) + 1
    # The lock of the store has no room; the lock has, the store has not, and ends in a line or behind it; once more.
    for limit, torn in ((0, False), (line_end - 1, True), (line_end, True), (line_end - 1, True)):
        with Program(limit) as program:
            program.expect(SHOWN, MANY)
            program.expect(CHANGE.format(MANY), MANY)
            program.close()
        check(store.stat().st_size == (limit if torn else len(full)), "the disk was not full")
        if limit == line_end:  # looks whole to the next start
            check(pathlib.Path(f"{store}.kept").read_bytes() == full, "what is torn was kept")
            store.write_bytes(full)
    by_hand = full.rstrip()  # as some editors leave a last line
    store.write_bytes(by_hand)
    with Program() as program:
        program.expect(SHOWN, MANY)
        check(pathlib.Path(f"{store}.torn").read_bytes() == by_hand, "an edit was lost")
        program.close()


def full_disk_at_an_export():
    target.write_bytes(b"old")
    with Program(limit=200) as program:
        program.expect(SESSION.format(port), 4)
        program.expect(LOG, "filled")
        for call in EXPORTS.values():
            program.expect(call.format(target), "done")
            check(target.read_bytes() == b"old", "half a file on a full disk")
        program.process.kill()
        said = program.process.stderr.read()
    check(said.count(f"Unable to write {target}") == 3, said)


store.parent.mkdir()
target.parent.mkdir()
with subprocess.Popen([build / "sim/zepsim", "--board", "ranger", "--auto-wake", "0.05", "--bulletins", "0"],
                      stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True) as simulator:
    port, bulletins = simulator.stdout.readline().strip(), simulator.stdout.readline().split()[1]
    (folder / "config.ini").write_text(f'[Prepass]\naopWebRequestUrl="{bulletins}?login=a&password=b&application=c"\n'
                                       "[Journal]\nenabled=false\n")
    try:
        for step in (regular_closes, starting, closing, locks_without_a_name, two_windows, full_disk_at_a_close,
                     exports, full_disk_at_an_export):
            began = time.monotonic()
            step()
            print(f"{step.__name__}: {time.monotonic() - began:.1f} s", flush=True)
    finally:
        simulator.terminate()
print(f"{sum(kills.values())} kills: {dict(kills)}")
