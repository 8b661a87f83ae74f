#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A whole session in the real window against the simulated board, by accessible names, real mouse and keys.

tour.py --build build/dev [--board zep2] [--out FOLDER] [--readme]
Prints each step and the session's log; leaves the screenshots in FOLDER; ends with 0 when every step held.
--readme also copies the screenshots that the README shows of this board to docs/screenshots.
"""

import argparse
import sys
import time

import passes
import payloads
import prediction
import ranger
import session
from stage import ROOT, Stage, check, wait_until

# What the README shows of a board, and how much of the display it is.
PAGE = "1350x850"
README = {"zep1": {},
          "zep2": {"running": PAGE, "connect": PAGE, "in-a-pass": PAGE, "satellites": PAGE, "in-its-pass": PAGE,
                   "settings-light": PAGE, "large": "1800x1000", "unplugged": PAGE},
          "tbx": {},
          "ranger": {"uploaded": PAGE}}
# Short delays, so that a tour lasts a minute: two seconds between the Tx of one payload.
SETTINGS = """[Tx]
Periodic\\delay=2
Periodic\\period=1
Periodic\\redundancy=2
"""
# The steps of each board, in the order of a user's day.
STEPS = {"zep1": [*payloads.SEND, payloads.radio, session.find_in_the_log, *passes.STEPS],
         "zep2": [*payloads.SEND[:2], payloads.reset_against_a_slow_answer, *payloads.SEND[2:], payloads.receive,
                  *passes.STEPS, *prediction.STEPS],
         "tbx": [payloads.press_what_is_disabled, *payloads.SEND, *passes.STEPS, *prediction.STEPS],
         "ranger": ranger.STEPS}


class Tour:
    """What a step works with: the stage, the window, and what several steps do."""

    def __init__(self, stage):
        self.stage = stage
        self.board = stage.board
        self.name = session.BOARD_NAMES[stage.board]
        self.session_log = ""
        self.expected = []

    def play(self):
        from window import Window
        self.stage.start_simulator("--airtime", "300", "--seed", "7")
        self.stage.start_program(SETTINGS)
        self.window = Window(self.stage.program.pid, by_action=self.board == "tbx")
        for step in [*session.BEGIN, *STEPS[self.board], *session.END]:
            self.wire_mark = len(self.stage.wire())
            start = time.monotonic()
            print(f"==> {step.__name__.replace('_', ' ')}", flush=True)
            step(self)
            print(f"    {time.monotonic() - start:.1f} s", flush=True)

    def shot(self, name, own=True):
        """own: the page is ours, and every control on it must have a name."""
        self.stage.screenshot(name)
        check(not own or not self.window.nameless(), f"controls without a name: {self.window.nameless()}")

    def wait_wire(self, *parts):
        """Each part is in a line that crossed the wire during this step, and behind the part before."""
        def in_order():
            lines = iter(self.wire())
            return all(any(part in line for line in lines) for part in parts)

        wait_until(in_order, f"{' ... '.join(parts)} on the wire")

    def wire(self):
        """The lines that crossed the wire during this step."""
        return self.stage.wire()[self.wire_mark:]

    def expect_log(self, *parts):
        """Each part must be in the session log when it is exported. What is read off its pane may have scrolled away."""
        self.expected += parts

    def free_command(self, command, answer):
        """Types a command on the settings page, and stays there."""
        if not self.window.find("Custom AT command", "text"):
            self.window.click("Settings")
        self.window.enter("Custom AT command", command)
        self.window.key("Return")
        self.wait_wire(command, answer)
        self.window.wait_for("Custom AT command: Set parameter(s) in module")

    def stop_the_sequence(self):
        """Clicks on Stop, and once more where a click meets a request, which ignores it."""
        def has_stopped():
            button = self.window.find("Stop", "push button")
            if button:
                self.window.click_node(button)
                time.sleep(1)
            return self.window.find("Start")

        wait_until(has_stopped, "the sequence stops", 20)

    # The file dialogs are the toolkit's own.

    def open_file(self, name):
        self.window.click_node(self.window.wait_for(name, "label"))
        self.window.click("Open")

    def save_file_as(self, name):
        # The field has no name, but stands behind its label.
        nodes = list(self.window.walk())
        label = next(i for i, node in enumerate(nodes) if node.get_name() == "File name")
        field = next(node for node in nodes[label:] if node.get_role_name() == "text")
        self.window.click_node(field)
        self.window.key("ctrl+a")  # the name of the time before
        self.window.type(name)
        self.window.key("Tab")  # leaving the field is what names the file
        self.window.click("Save")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=ROOT / "build/dev")
    parser.add_argument("--board", default="zep2", choices=session.BOARD_NAMES)
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
        print(f"\nThe session log, as exported:\n{tour.session_log}")
        print(f"Screenshots: {stage.out}")
    if options.readme:
        for name, size in README[options.board].items():
            stage.run("convert", f"{stage.out}/{name}.png", "-crop", f"{size}+0+0", "+repage", "-strip",
                      f"{ROOT}/docs/screenshots/{name}.png")
    return 0


if __name__ == "__main__":
    sys.exit(main())
