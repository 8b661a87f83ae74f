#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A whole session in the real window against the simulated board, by accessible names, real mouse and keys.

tour.py --build build/dev [--board zep2] [--out FOLDER] [--readme]
Prints each step and the session's log; leaves the screenshots in FOLDER; ends with 0 when every step held.
--readme also copies the screenshots that the README shows to docs/screenshots.
"""

import argparse
import datetime
import sys
import time

from stage import ROOT, Stage, TourError, wait_until

TITLE = "ZepGUI"
RADIO_NAMES = {"zep1": "ZEP1", "zep2": "ZEP2", "tbx": "TBX (STM32WL)", "ranger": "Ranger"}
BOARD_NAMES = {"zep1": "ZEP1", "zep2": "ZEP2", "tbx": "TBX", "ranger": "RANGER"}
# What the README shows, and how much of the display it is.
README = {"running": "1350x850", "connect": "1350x850", "in-a-pass": "1350x850", "satellites": "1350x850",
          "settings-light": "1350x850", "large": "1800x1000", "unplugged": "1350x850"}
# Short delays, so that a tour lasts a minute: two seconds between the Tx of one payload.
SETTINGS = """[Tx]
Periodic\\delay=2
Periodic\\period=1
Periodic\\redundancy=2
"""


def check(condition, what):
    if not condition:
        raise TourError(what)


class Tour:
    def __init__(self, stage):
        self.stage = stage
        self.board = stage.board
        self.name = BOARD_NAMES[stage.board]
        self.transmits = stage.board != "ranger"
        self.receives = stage.board == "zep2"

    def play(self):
        from window import Window
        self.stage.start_simulator("--airtime", "900", "--seed", "7")
        self.stage.start_program(SETTINGS)
        self.window = Window(self.stage.program.pid)
        steps = [self.first_visit, self.expert_mode, self.connect]
        if self.transmits:
            steps += [self.edit_payloads, self.complete_a_sequence, self.stop_a_sequence]
        if self.receives:
            steps += [self.receive]
        if self.transmits:
            steps += [self.import_passes, self.transmit_in_a_pass, self.satellites]
        steps += [self.export, self.expand_the_log, self.settings_and_light_theme, self.large_window, self.unplug,
                  self.connect_again, self.disconnect, self.close]
        for step in steps:
            print(f"==> {step.__name__.replace('_', ' ')}", flush=True)
            step()

    def shot(self, name, own=True):
        """own: the page is ours, and every control on it must have a name."""
        self.stage.screenshot(name)
        check(not own or not self.window.nameless(), f"controls without a name: {self.window.nameless()}")

    # The steps, in the order of a user's day.

    def first_visit(self):
        self.window.focus(TITLE)
        self.window.wait_text("Hello there!")
        self.shot("welcome")
        self.window.key("Escape")
        wait_until(lambda: "Hello there!" not in self.window.text(), "the welcome dialog closes")

    def expert_mode(self):
        check(self.window.find("Baudrate", "combo box") is None, "the baud rate shows in basic mode")
        self.window.click("Expert", "radio button")
        self.window.wait_for("Baudrate", "combo box")
        self.window.click(RADIO_NAMES[self.board], "radio button")
        check(self.window.is_checked(RADIO_NAMES[self.board], "radio button"), "the board is not chosen")
        self.shot("connect")

    def connect(self):
        self.choose_port()
        self.window.click("Connect")
        if self.board == "ranger":
            self.window.wait_text("Please press wake up button")
            self.shot("wake-up")
            self.stage.console("wake")
        self.window.wait_text(f"{self.name} connected to {self.stage.port}")
        self.window.wait_text("Expert Mode")
        wait_until(lambda: "ID: NA" not in self.window.text() and "FW: NA" not in self.window.text(), "the identity is read")
        self.shot("dashboard")

    def choose_port(self):
        self.window.click("COM port", "combo box")
        self.window.click(str(self.stage.port), "menu item")

    def edit_payloads(self):
        self.window.click("Add")
        # A ZEP1 tells no modulation, so any length passes; the others want one of the allowed lengths.
        self.window.enter("P0 message", "a1b2c3d4")
        self.window.key("Tab")
        self.window.wait_text("A1 B2 C3 D4")

    def complete_a_sequence(self):
        self.window.click("Start")
        self.window.wait_text("Next transmission in", 20)
        check(self.window.is_enabled("Stop"), "a running sequence cannot be stopped")
        self.window.wait_text("Transmission complete!", 30)
        self.window.wait_text("successfully transmitted! (2/2)")
        self.shot("complete")
        self.window.click("Reset")
        self.window.wait_for("Start")

    def stop_a_sequence(self):
        self.window.click("Add")
        self.window.enter("P1 message", "0102030405060708")
        self.window.key("Tab")
        self.window.wait_text("01 02 03 04 05 06 07 08")
        self.window.click("Start")
        self.window.wait_text("Next transmission in", 20)
        if self.receives:
            self.stage.console("rx 48656C6C6F")
            self.window.wait_text("48656C6C6F")
        self.shot("running")
        self.window.click("Stop")
        self.window.wait_for("Start", seconds=20)
        self.window.wait_text("Tx SEQUENCE STOP/RESET")

    def receive(self):
        self.stage.console("bc C0FFEE")
        wait_until(lambda: self.window.text().count("C0FFEE") == 2, "both panes show the broadcast")
        check(self.window.text().count("+BC=C0FFEE") == 1, "the receive pane strips the source and the word")

    def import_passes(self):
        def row(name, minutes):
            start = datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(minutes=minutes)
            return f"{name},{start:%m-%d-%Y %H:%M:%S},,,00:12:00,42.5,0,90,180\n"

        (self.stage.work / "passes.csv").write_text(
            "Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,Start azimuth,"
            "Middle azimuth,End azimuth\n" + row("NEXT", 30) + row("HERE", -1) + row("GONE", -30))
        self.window.click("Import data")
        self.window.click_node(self.window.wait_for("passes.csv", "label"))
        self.window.click("Open")
        self.window.wait_text("1 satellite(s) available")
        check("GONE" not in self.window.text(), "a pass that is over is listed")
        self.shot("passes")

    def transmit_in_a_pass(self):
        self.window.click("Pre-pass", "radio button")
        self.window.click("Start")
        self.window.wait_text("successfully transmitted! (1/4)", 20)
        self.shot("in-a-pass")
        self.window.click("Stop")
        self.window.click("Periodic", "radio button")

    def satellites(self):
        self.window.click("Satellite infos")
        self.window.click("Download AOP data from HelioWeb")
        self.window.wait_text("Last update:")
        self.window.wait_text("UPLK: OFF")
        self.shot("satellites")
        self.window.click("Data view")

    def export(self):
        target = self.stage.work / "session.log"
        self.window.click("Export logs/AT commands")
        self.window.wait_text("Export logs to file...")
        self.shot("export", own=False)
        self.save_file_as(target)
        text = wait_until(lambda: target.exists() and target.read_text(), "the log is exported")
        check("[APP] AT+PING=?" in text, "the export does not begin with the first request")
        check(f"{self.name} connected on port {self.stage.port}" in text, "the export lacks the connection")
        self.session = text

    def save_file_as(self, target):
        # The dialog is the toolkit's own: its field has no name, but stands behind its label.
        nodes = list(self.window.walk())
        label = next(i for i, node in enumerate(nodes) if node.get_name() == "File name")
        field = next(node for node in nodes[label:] if node.get_role_name() == "text")
        self.window.click_node(field)
        self.window.type(target.name)  # the dialog starts in the working directory when there is no documents folder
        self.window.key("Tab")  # leaving the field is what names the file
        self.window.click("Save")

    def expand_the_log(self):
        self.window.click("Expand window")
        self.window.focus("Misc / Logs")
        time.sleep(0.5)
        self.shot("expanded")
        self.window.close("Misc / Logs")
        wait_until(lambda: not self.window.ids("Misc / Logs"), "the log's own window closes")
        self.window.wait_for("Log lines")
        self.window.focus(TITLE)

    def settings_and_light_theme(self):
        self.window.click("Settings")
        self.window.wait_text("UI settings")
        self.shot("settings")
        self.window.click("Light", "radio button")
        wait_until(lambda: self.stage.pixel(10, 700) == (0xF9, 0xF9, 0xF9), "the background turns light")
        self.shot("settings-light")
        self.window.click("Return")
        self.window.wait_text("connected to")
        self.shot("dashboard-light")
        self.window.click("Settings")
        self.window.click("Dark", "radio button")
        self.window.click("Return")
        self.window.wait_text("connected to")

    def large_window(self):
        self.window.resize(TITLE, 1800, 1000)
        wait_until(lambda: self.stage.pixel(1700, 950) != (0, 0, 0), "the window grows")
        time.sleep(0.5)
        self.shot("large")
        self.window.resize(TITLE, 1350, 850)

    def unplug(self):
        before = len(self.stage.process_log().splitlines())
        self.stage.console("unplug")
        self.window.wait_text("The evaluation kit is not reachable, it may have been unplugged", 1)
        self.shot("unplugged")
        start = self.stage.cpu_seconds()
        time.sleep(2)
        used = (self.stage.cpu_seconds() - start) / 2
        check(used < 0.1, f"the program uses {used:.0%} of a core after the hang-up")
        lines = len(self.stage.process_log().splitlines()) - before
        check(lines <= 10, f"{lines} lines on the process log for one hang-up")
        self.window.click("OK")
        self.window.wait_for("Connect")

    def connect_again(self):
        self.stage.console("plug")
        self.window.click("Refresh list")
        self.connect()

    def disconnect(self):
        self.window.click("Disconnect")
        self.window.wait_text(f"Disconnect {self.name}?")
        self.shot("disconnect")
        self.window.click("OK")
        self.window.wait_for("Connect")

    def close(self):
        self.window.close(TITLE)
        code = self.stage.program.wait(15)
        check(code == 0, f"the program ended with {code}")
        saved = (self.stage.work / "home/.config/Sarvane/ZepGUI.conf").read_text()
        if self.transmits:
            check("A1B2C3D4" in saved, "the payload was not saved")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=ROOT / "build/dev")
    parser.add_argument("--board", default="zep2", choices=BOARD_NAMES)
    parser.add_argument("--out", default=None)
    parser.add_argument("--readme", action="store_true")
    options = parser.parse_args()
    out = options.out or f"{options.build}/tour-{options.board}"

    with Stage(options.build, options.board, out) as stage:
        tour = Tour(stage)
        try:
            tour.play()
        except Exception as error:
            if hasattr(tour, "window"):
                stage.screenshot("failed")
                print("What the window says:", *tour.window.names(), sep="\n    ")
                print(f"process log:\n{stage.process_log()}")
            print(f"FAILED: {error}", file=sys.stderr)
            return 1
        print(f"\nThe session log, as exported:\n{tour.session}")
        print(f"Screenshots: {stage.out}")
    if options.readme:
        for name, size in README.items():
            stage.run("convert", f"{stage.out}/{name}.png", "-crop", f"{size}+0+0", "+repage", "-strip",
                      f"{ROOT}/docs/screenshots/{name}.png")
    return 0


if __name__ == "__main__":
    sys.exit(main())
