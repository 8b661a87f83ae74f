# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Steps of the boards that transmit what the program tells them to."""

import time

from stage import check, wait_until


def edit_payloads(tour):
    tour.window.click("Add")
    # A ZEP1 tells no modulation, so any length passes; the others want one of the allowed lengths.
    tour.window.enter("P0 message", "a1b2c3d4")
    tour.window.key("Tab")
    tour.window.wait_text("A1 B2 C3 D4")


def press_what_is_disabled(tour):
    """Start, which needs a payload; the mouse does the same as the action."""
    start = tour.window.wait_for("Start")
    check(not tour.window.is_enabled(start), "Start is reported as enabled without a payload")
    tour.window.press(start)
    time.sleep(0.5)
    check(tour.window.find("Stop") is None and not tour.wire(), "a disabled button does something")


def complete_a_sequence(tour):
    tour.window.click("Start")
    tour.window.wait_text("Next transmission in", 20)
    tour.window.wait_text("Transmission complete!", 30)
    tour.window.wait_text("successfully transmitted! (2/2)")
    tour.shot("complete")
    tour.window.click("Reset")
    tour.window.wait_for("Start")


def reset_against_a_slow_answer(tour):
    tour.window.enter("P0 message", "a1b2c3d4e5f6")  # two bytes go to the option
    tour.window.key("Tab")
    tour.window.click("P0 ACK")
    tour.window.click("Start")
    tour.window.wait_text("Transmission complete!", 40)
    tour.stage.console("late 800")  # the module empties its queue first
    mark = len(tour.wire())
    tour.window.click("Reset", times=3)
    time.sleep(2)  # a look at the window would wake it
    check(tour.wire()[mark:] == ["AT+TXFIFO=", "+OK"], "a click that was made during the wait starts a sequence")
    tour.window.click("P0 ACK")
    tour.window.enter("P0 message", "a1b2c3d4")
    tour.window.key("Tab")


def stop_a_sequence(tour):
    tour.window.click("Add")
    tour.window.enter("P1 message", "0102030405060708")
    tour.window.key("Tab")
    tour.window.wait_text("01 02 03 04 05 06 07 08")
    tour.window.click("Start")
    tour.window.wait_text("Next transmission in", 20)
    if tour.board == "zep2":
        tour.stage.console("rx 48656C6C6F")
        tour.window.wait_text("48656C6C6F")
    tour.shot("running")
    tour.stop_the_sequence()
    tour.window.wait_text("Tx SEQUENCE STOP/RESET")


def receive(tour):
    tour.stage.console("bc C0FFEE")
    wait_until(lambda: tour.window.text().count("C0FFEE") == 2, "both panes show the broadcast")
    check(tour.window.text().count("+BC=C0FFEE") == 1, "the receive pane strips the source and the word")


def radio(tour):
    tour.window.click("Settings")
    tour.window.click("Tx frequency: Get parameter(s) from module")
    tour.window.wait_text("401.65")
    tour.window.click("Tx power", "combo box")
    tour.window.click("500", "menu item")
    tour.window.click("Tx power: Set parameter(s) in module")
    tour.wait_wire("AT+PWR=500", "+OK")
    tour.window.click("Tx power: Get parameter(s) from module")
    tour.wait_wire("+PWR=500")
    tour.shot("radio")
    tour.window.click("Return")


SEND = [edit_payloads, complete_a_sequence, stop_a_sequence]
