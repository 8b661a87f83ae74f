#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Every operation of a user on every board, with every fault of the device in it: in the real program and its window.

faults.py --build build/release [--board B] [--operation O] [--fault F] [--later] [--sample N] [--out FOLDER]
Boards can be played side by side, a process and a folder for each, as the default folders are:
    faults.py --board zep1 & faults.py --board zep2 & wait
A cell is one operation with one fault. It passes when the outcome is the one that is named in operations.py, the
program lives, the next operation works, the session log holds each line of the wire once and in order (where the log
still stands: a disconnection clears it), and the program is idle again. Prints each cell, those that do not apply with
the reason, and the sums; ends with 0 when none failed. On a busy computer device and program can themselves be late.
--later plays the cells whose fault strikes a later request of a chain; --sample a few of each board, for ctest.
"""

import argparse
import difflib
import itertools
import pathlib
import re
import signal
import sys
import time

from gi.repository import GLib

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tour"))
from operations import BOARDS, BULLETINS, FAULTS, LATER, LOST, OPERATIONS, TIMEOUT, WAKE_UP, left_out  # noqa: E402
from session import TITLE  # noqa: E402
from stage import ROOT, Stage, TourError, check, wait_until  # noqa: E402

SETTINGS = """[General]
firstVisit=false
mode=1
module={module}

[Payloads]
msg0=A1B2C3D4
msg1=01020304

[Tx]
Periodic\\redundancy={redundancy}
Periodic\\delay={delay}
Prepass\\predictionDuration=7
"""


class Session:
    """One program and one device, and what the cells do with them."""

    def __init__(self, stage):
        self.stage, self.name, self.board = stage, stage.board, BOARDS[stage.board]
        self.console = stage.console
        self.quick = False
        stage.start_simulator("--airtime", "600", "--seed", "7", *self.board.options)
        self.start_program()

    def start_program(self):
        from window import Window
        self.stage.start_program(SETTINGS.format(module=self.board.module, redundancy=2 if self.quick else 1,
                                                 delay=6 if self.quick else 60),
                                 journal=False)  # its dialog would open at each start after a program that was ended
        self.window = Window(self.stage.program.pid)
        self.press = self.window.click
        self.window.wait_for("Connect")
        self.window.focus(TITLE)
        self.connect()
        self.page(settings=True)
        self.window.enter("Custom AT command", "AT+ID=?")
        self.page(settings=False)
        if self.name != "zep1":
            self.console("say +PREPASS_EN=1")
            self.press("Satellite infos")
            self.press(BULLETINS)
            self.window.wait_text("Last update:")  # lasts; the messages are gone soon
            self.press("Data view")
            wait_until(lambda: "Check satellite pane" not in self.window.text(), "the messages go")

    def be_quick(self, quick):
        """The window takes no delay so short as the store does: a program begins with it."""
        if quick != self.quick:
            self.quick = quick
            self.window.close(TITLE)
            self.stage.program.wait(30)
            self.start_program()

    # The wire

    def trace(self):
        """What crossed the wire: (< or >, line), requests and answers in the log's spelling."""
        whole = (self.stage.work / "trace").read_text().rpartition("\n")[0]  # the last may just be written
        lines = [line.split(" ", 2) for line in whole.splitlines()]
        return [(way, spelled(text)) for _, way, text in lines if way in "<>"]

    def wire(self):
        """The lines of this cell."""
        return self.trace()[self.cell_begins:]

    def wait_request(self, count, text, seconds=20):
        """So many requests that begin with the text are on the wire."""
        wait_until(lambda: sum(way == "<" and line.startswith(text) for way, line in self.wire()) >= count,
                   f"request {count} of '{text}' on the wire", seconds)

    def wait_answered(self, count, text, seconds):
        """As wait_request, and nothing on the wire is left without an answer behind it."""
        self.wait_request(count, text, seconds)
        wait_until(lambda: self.wire()[-1][0] == ">", f"an answer to '{text}'", seconds)

    def wait_out(self, operation):
        """The request that was struck runs into its time-out."""
        time.sleep(max(0, self.struck + operation.timeout + 0.5 - time.monotonic()))

    # The window

    def on_settings(self):
        return self.window.find("Return", "push button") is not None

    def page(self, settings):
        if settings != self.on_settings():
            self.press("Settings" if settings else "Return", "push button")
            self.window.wait_for("Return" if settings else "Settings", "push button")
            self.pane()

    def pane(self):
        return self.window.wait_for("Expert log lines" if self.on_settings() else "Log lines", "list")

    def accept(self, seconds=30.0):
        """Ok, of the dialog before all others. One that is on its way out still takes the clicks."""
        self.window.wait_for("OK", "push button")
        self.window.click_node(list(self.window.find_all("OK", "push button"))[-1])
        self.window.wait_gone("OK", seconds)

    def choose_port(self, not_before=0.0):
        """Up to the first request."""
        self.press("COM port", "combo box")
        self.press(str(self.stage.port), "menu item")
        if self.name == "ranger":
            self.press("Connect")
            if not self.stage.port.exists():
                return
            self.window.wait_text(WAKE_UP)
        time.sleep(max(0.0, not_before - time.monotonic()))
        if self.name == "ranger":
            self.console("wake")
        else:
            self.press("Connect")

    def begin_session(self):
        self.session_begins = len(self.trace())
        self.session_stamp = time.strftime("[%H:%M:%S", time.gmtime())

    def connect(self, not_before=0.0):
        self.begin_session()
        self.cell_begins = self.session_begins
        self.choose_port(not_before)
        self.wait_answered(1, self.board.last_read, 60)
        self.window.wait_for("Disconnect")

    def probe(self):
        """The next operation. It waits its turn behind what is under way."""
        if self.on_settings():
            self.press("Custom AT command", "text")
            self.window.key("Return")
        else:
            self.press("Request ZEP info")

    # The log

    def log(self):
        """All lines of the log, as they are copied out of the window."""
        self.window.click_node(self.pane())
        self.window.key("ctrl+a", "ctrl+c")
        return clipboard().splitlines()

    def shown_log(self):
        """The end of the log, as it stands in the window, whatever dialog is before it."""
        def rows():
            pane = self.pane()
            children = filter(None, map(pane.get_child_at_index, range(pane.get_child_count())))
            shown = sorted((row.get_extents(0).y, row.get_name()) for row in children
                           if row.get_name().startswith("[") and self.window._shows(row))
            # At first rows of the session before, which the list keeps for its next lines, are still told of.
            fresh = self.operation.name == "connect"
            return [name for _, name in shown if not fresh or name >= self.session_stamp]

        def rests():  # no row came or went between two looks
            try:
                before = rows()
                return before if before == rows() else None
            except GLib.Error:
                return None

        return wait_until(rests, "the log comes to rest")

    def news(self, log):
        """What this cell has logged: all that stands behind the lines that the wire had before."""
        before = self.cell_begins - self.session_begins
        return log[[i for i, line in enumerate(log) if wire_line(line) is not None][before - 1] + 1:] if before else log

    def check_log(self, log, whole):
        """Each line of the wire once and in order. Behind a lost line there are requests that never got there.

        What the device says may cross the next request on its way, but no answer stands before its request.
        """
        wire = self.trace()[self.session_begins:]
        logged = [("<" if line.startswith("AT+") else ">", spelled(line)) for line in map(wire_line, log) if line is not None]
        asked, sent, told, said = ([line for line in part if line[0] == way] for way in "<>" for part in (logged, wire))
        if whole:
            before = [[sum(line[0] == ">" for line in part[:i]) for i, line in enumerate(part) if line[0] == "<"]
                      for part in (logged, wire)]  # how many answers stand before each request
            held = (asked, told) == (sent, said) and all(mine <= its for mine, its in zip(*before))
        else:
            follows = any(asked[:n] == sent[-n:] for n in range(len(asked), 0, -1))
            never_sent = not any(request in self.wire() for request in asked)  # a long chain has pushed the others out
            held = told == said[len(said) - len(told):] and (follows or never_sent)
        check(held, "logged:\n" + "\n".join(
            difflib.unified_diff(*([" ".join(line) for line in part] for part in (wire, logged)), "wire", "log", "", "", 3, "")))

    def settled_log(self):
        """All lines of the log, checked. The last that crossed the wire may still be on its way into it."""
        for pause in (3, 0):
            log = self.log()
            try:
                self.check_log(log, whole=True)
                return log
            except TourError:
                if not pause:
                    raise
                time.sleep(pause)

    def check_idle(self, looks=0):
        """Under 1 % over a second that begins within two. By the clock of the process: /proc counts in steps of 1 %."""
        clock, used = (~self.stage.program.pid << 3) | 2, []
        while len(used) < (looks or self.stage.idle_looks):
            before = time.clock_gettime(clock)
            time.sleep(1)
            used.append(time.clock_gettime(clock) - before)
            if used[-1] < 0.01:
                return
        raise TourError("not idle: " + ", ".join(f"{part:.1%}" for part in used))


def spelled(line):
    """One spelling for what the trace and the log tell each in its own."""
    return re.sub("(\\\\x[0-9a-f]{2}|\ufffd)+", "?", line.strip())


def wire_line(line):
    """The line of the wire that a line of the log tells of, or None."""
    source, text = re.fullmatch(r"\[[\d:]+\] \[(\w+)\] ?(.*)", line).groups()
    return text if source != "APP" or text.startswith("AT+") else None


def clipboard():
    from Xlib import X, display
    connection = display.Display()
    window = connection.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
    window.convert_selection(*map(connection.intern_atom, ("CLIPBOARD", "UTF8_STRING", "FAULTS")), X.CurrentTime)
    connection.flush()
    wait_until(lambda: connection.pending_events() and connection.next_event().type == X.SelectionNotify,
               "the program answers for the clipboard", 60)  # a copy waits its turn
    return window.get_full_property(connection.intern_atom("FAULTS"), X.AnyPropertyType).value.decode()


def play(session, operation, fault):
    """One cell."""
    session.be_quick(operation.quick)
    session.page(operation.on_settings)
    if session.name != "zep1":
        session.console(f"say +PREPASS_EN={int(operation.predicts)}")
    operation.prepare(session)
    session.cell_begins, session.operation, session.fault = len(session.trace()), operation, fault
    process_log = 0 if operation.name == "close" or fault.name in operation.dies else len(session.stage.process_log())
    if operation.request:
        fault.order(session, operation)
        operation.act(session, lambda: False)
        session.wait_request(1, operation.request, 60)
        session.struck = time.monotonic()
    else:
        operation.act(session, lambda: fault.strike(session))
    if fault.loses_line and operation.name != "close":
        lost(session, operation, fault)
    elif fault.name in operation.dies:
        ended(session, operation, fault)
    else:
        {"close": closed, "disconnect": disconnected, "connect": connected}.get(operation.title, in_session)(
            session, operation, fault)
    operation.restore(session)
    check(session.stage.program.poll() is None, "the program has ended")
    news = session.stage.process_log()[process_log:]
    check("qrc:" not in news, f"on the process log: {news}")
    session.check_idle()


def check_words(log, words, never=()):
    missing = [word for word in words if not any(word in line for line in log)]
    wrong = [word for word in never if any(word in line for line in log)]
    check(not missing and not wrong, f"not in the log: {missing}, but: {wrong}; it has {log}")


def in_session(session, operation, fault):
    """The session goes on: the next operation runs in it."""
    if operation.shown and fault.fails and fault.name != "sleep" and not operation.later:
        wait_until(lambda: operation.shown(session), "the window shows the failure", operation.timeout + 20)
    if fault.name == "sleep":
        if operation.later and operation.laps:  # the button moves once more
            session.wait_out(operation)
        session.probe()
        session.window.wait_text(WAKE_UP, operation.timeout + 20)
        if not operation.turning:
            session.check_idle()
        session.console("wake")
        session.window.wait_gone(WAKE_UP)
    if fault.name == "assert":
        time.sleep(0.6)  # the device restarts, and hears nothing
    if operation.restarted(fault):
        wait_until(lambda: any("RESTORED" in line for _, line in session.wire()), "the device restarts", 60)
    tells = "AT+ID=?" if operation.on_settings else session.board.identity
    if operation.name == "connect":
        session.wait_request(1, session.board.last_read, 60)
    if operation.laps and not operation.on_settings:  # what it reads moves the button
        session.wait_request(operation.laps, tells)
        if fault.fails and (operation.later or operation.request == tells):
            session.wait_out(operation)
        else:
            session.wait_answered(operation.laps, tells, 20)
    session.probe()
    session.wait_answered(operation.laps + 1, tells, operation.timeout + 20)
    operation.finish(session)
    log = session.settled_log()
    answered = not fault.fails and fault.name != "assert"  # which leaves the device deaf for a while
    if operation.then:
        asked = [line for way, line in session.wire() if way == "<"]
        behind = asked[[line.startswith(operation.request) for line in asked].index(True) + 1:]
        followed = any(line.startswith(operation.then) for line in behind)
        check(followed == operation.goes_on(fault), f"behind the fault: {behind}")
    news, words = session.news(log), fault.words(operation)
    check_words(news, words, (TIMEOUT, *operation.failure) if answered else ())
    once = operation.failure if fault.name == "late" else (TIMEOUT, *operation.failure)  # late for the next request, too
    told = [word for word in once if word in words and sum(word in line for line in news) > 1]
    check(not told, f"told more than once: {told} in {news}")


def lost(session, operation, fault):
    """The dialog, the page of connections; and a session over the next line."""
    session.window.wait_text(LOST)
    if operation.title not in ("connect", "disconnect"):  # there the log shows no longer
        if operation.request:
            session.window.wait_text(TIMEOUT)
        session.check_log(session.shown_log(), whole=False)
    if not operation.turning:
        session.check_idle()  # with the cable pulled and the dialog open
    session.accept()
    session.window.wait_for("Connect")
    if fault.name == "unplug":
        session.choose_port()
        session.window.wait_text(f"Unable to open port {session.stage.port}")
        session.accept()
        session.console("plug")
    session.connect()


def connected(session, operation, fault):
    """A device that does not answer is not connected; whatever line comes first will do for an answer."""
    if fault.fails:
        session.window.wait_text(f"Unable to contact {session.name.upper()}")
        session.accept()
        # What is late meets the first request of the next session.
        session.connect(session.struck + operation.timeout + operation.late / 1000 - 0.6 if fault.name == "late" else 0)
    session.wait_answered(1, session.board.last_read, 60)
    session.probe()
    session.wait_answered(2, session.board.identity, 20)
    log = session.settled_log()
    check_words(log, () if fault.fails else fault.said)


def disconnected(session, operation, fault):
    """Whatever the device says to it, the session ends. What is late meets the first request of the next."""
    session.window.wait_for("Connect", seconds=operation.timeout + 20)
    session.check_idle()  # the page of connections, too
    session.connect(session.struck + operation.timeout + operation.late / 1000 - 0.6 if fault.name == "late" else 0)


def ended(session, _operation, _fault):
    """The assertion on the process log, and a session of a new program over the same line."""
    code = session.stage.program.wait(20)
    check(code == -signal.SIGABRT, f"the program ended with {code}")
    said = session.stage.process_log()
    check("m_ackPending updated with a redundant state" in said, f"on the process log: {said}")
    wait_until(lambda: session.trace()[-1][1].startswith("+TX="), "the device is done with its Tx")
    session.start_program()


def closed(session, _operation, _fault):
    """The program ends at once, in the middle of the request, and the settings are saved."""
    configuration = session.stage.work / "home/.config/Sarvane/ZepGUI.conf"
    configuration.unlink()
    session.window.close(TITLE)
    code = session.stage.program.wait(15)
    check(code == 0, f"the program ended with {code}")
    check("A1B2C3D4" in configuration.read_text(), "the settings are not saved")
    if not session.stage.port.exists():
        session.console("plug")
    session.start_program()


def chosen(options, board):
    """The cells to play. A sample has operations far apart, each with the next fault, and none that waits long."""
    rows = [operation.on(board) for operation in OPERATIONS + LATER]
    if not options.sample:
        return [(row, fault) for row, fault in itertools.product(rows, FAULTS) if options.operation in (None, row.name)
                and options.fault in (None, fault.name) and (row.later or not options.later)]
    rows, first = [row for row in rows if board in row.boards], list(BOARDS).index(board) * options.sample
    return [next((row, fault) for fault in (FAULTS * 2)[(first + i) % len(FAULTS):]
                 if not (left_out(board, row, fault) or fault.fails and row.request and row.timeout > 1))
            for i, row in enumerate(rows[len(rows) // options.sample // 2::len(rows) // options.sample][:options.sample])]


def run(options, stage, board):
    """Every cell of a board; how many failed."""
    stage.board, session = board, None
    cells, failed, others = 0, [], 0
    for operation, fault in chosen(options, board):
        title = f"{board:7}{operation.title:34}{fault.name:12}"
        if reason := left_out(board, operation, fault):
            print(f"{title}does not apply: {reason}")
            others += 1
            continue
        cells += 1
        start = time.monotonic()
        try:
            session = session or Session(stage)
            play(session, operation, fault)
            result = "passed"
        except Exception as error:
            result = f"FAILED: {type(error).__name__}: {error}"
            failed.append((operation.title, fault.name))
            stage.screenshot("-".join(f"failed {title}".split()))
            end(stage)
            session = None
        print(f"{title}{time.monotonic() - start:5.1f} s  {result}", flush=True)
    end(stage)
    print(f"{board}: {cells} cells run, {cells - len(failed)} passed, {len(failed)} failed {failed or ''}; "
          f"{others} do not apply", flush=True)
    return len(failed)


def end(stage):
    """Ends the program and the device, and leaves the display."""
    for process in stage.processes[stage.lasting:]:
        process.kill()
        process.wait()
    del stage.processes[stage.lasting:]
    stage.port.unlink(missing_ok=True)
    stage.console_path.unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=ROOT / "build/release")
    parser.add_argument("--board", choices=BOARDS)
    parser.add_argument("--operation", choices=[operation.name for operation in OPERATIONS])
    parser.add_argument("--fault", choices=[fault.name for fault in FAULTS])
    parser.add_argument("--later", action="store_true")
    parser.add_argument("--sample", type=int, default=0)
    parser.add_argument("--out")
    options = parser.parse_args()
    with Stage(options.build, "", options.out or f"/tmp/faults-{options.board or 'all'}") as stage:
        stage.lasting = len(stage.processes)
        stage.idle_looks = 10 if options.sample else 3  # a slow build on a busy computer takes longer to come to rest
        return min(1, sum(run(options, stage, board) for board in BOARDS if options.board in (None, board)))


if __name__ == "__main__":
    sys.exit(main())
