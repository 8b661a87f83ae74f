# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Steps of every board: the connection page, the log, the settings, and the ends of a session."""

import time

from stage import check, wait_until

TITLE = "ZepGUI"
RADIO_NAMES = {"zep1": "ZEP1", "zep2": "ZEP2", "tbx": "TBX (STM32WL)", "ranger": "Ranger"}
BOARD_NAMES = {"zep1": "ZEP1", "zep2": "ZEP2", "tbx": "TBX", "ranger": "RANGER"}


def first_visit(tour):
    tour.window.focus(TITLE)
    tour.window.wait_text("Hello there!")
    tour.shot("welcome")
    tour.window.key("Escape")
    wait_until(lambda: "Hello there!" not in tour.window.text(), "the welcome dialog closes")


def expert_mode(tour):
    check(tour.window.find("Baudrate", "combo box") is None, "the baud rate shows in basic mode")
    tour.window.click("Expert", "radio button")
    tour.window.wait_for("Baudrate", "combo box")
    name = RADIO_NAMES[tour.board]
    tour.window.click(name, "radio button")
    check(tour.window.is_checked(name, "radio button"), "the board is not chosen")
    tour.shot("connect")


def connect(tour):
    tour.window.click("COM port", "combo box")
    tour.window.click(str(tour.stage.port), "menu item")
    tour.window.click("Connect")
    if tour.board == "ranger":
        tour.window.wait_text("Please press wake up button")
        tour.shot("wake-up")
        tour.stage.console("wake")
    tour.window.wait_text(f"{tour.name} connected to {tour.stage.port}")
    tour.window.wait_text("Expert Mode")
    wait_until(lambda: "ID: NA" not in tour.window.text() and "FW: NA" not in tour.window.text(),
               "the identity is read")
    tour.shot("dashboard")


def free_commands(tour):
    tour.free_command("AT+PING=?", "+OK")
    tour.shot("settings-expert")
    tour.window.click("Return")


def find_in_the_log(tour):
    """By keys alone. The power has been asked for at the connection, set, and asked for again."""
    tour.window.key("ctrl+f")
    tour.window.wait_for("Find in the log", "text")
    tour.window.type("at+pwr")
    tour.window.wait_text(" of 3")
    tour.shot("find")
    tour.window.wait_text("2 of 3")  # the first one that showed
    for key, number in (("F3", "3 of 3"), ("F3", "1 of 3"), ("shift+F3", "3 of 3"), ("F3", "1 of 3")):
        tour.window.key(key)
        tour.window.wait_text(number)
    tour.window.click("Match case")
    tour.window.wait_text("0 found")
    tour.window.click("Find in the log", "text")
    tour.window.key("Escape")
    tour.window.wait_gone("Find in the log")
    tour.window.click("Jump to latest")
    tour.window.wait_gone("Jump to latest")


def export(tour):
    target = tour.stage.documents / "session.log"
    tour.window.click("Export logs/AT commands")
    tour.window.wait_text("Export logs to file...")
    tour.shot("export", own=False)
    tour.save_file_as(target.name)
    text = wait_until(lambda: target.exists() and target.read_text(), "the log is exported")
    check("[APP] AT+PING=?" in text, "the export does not begin with the first request")
    check(f"{tour.name} connected on port {tour.stage.port}" in text, "the export lacks the connection")
    missing = [part for part in tour.expected if part not in text]
    check(not missing, f"the export lacks {missing}")
    tour.session_log = text


def expand_the_log(tour):
    tour.window.click("Expand window")
    tour.window.focus("Misc / Logs")
    time.sleep(0.5)
    tour.shot("expanded")
    tour.window.click("Export logs/AT commands")
    tour.window.wait_text("Export logs to file...")
    tour.shot("expanded-export", own=False)
    tour.window.close("Misc / Logs")
    wait_until(lambda: not tour.window.ids("Misc / Logs"), "the log's own window closes")
    tour.window.wait_for("Log lines")
    tour.window.focus(TITLE)
    tour.window.wait_gone("Export logs to file...")
    tour.window.click("Export logs/AT commands")  # the dialog opens in this window again
    tour.window.wait_text("Export logs to file...")
    tour.window.click("Cancel")
    tour.window.wait_gone("Export logs to file...")


def settings_and_light_theme(tour):
    tour.window.click("Settings")
    tour.window.wait_text("UI settings")
    tour.shot("settings")
    tour.window.click("Light", "radio button")
    wait_until(lambda: tour.stage.pixel(10, 700) == (0xF9, 0xF9, 0xF9), "the background turns light")
    tour.shot("settings-light")
    tour.window.click("Return")
    tour.window.wait_text("connected to")
    tour.shot("dashboard-light")
    tour.window.click("Settings")
    tour.window.click("Dark", "radio button")
    tour.window.click("Return")
    tour.window.wait_text("connected to")


def large_window(tour):
    tour.window.resize(TITLE, 1800, 1000)
    wait_until(lambda: tour.stage.pixel(1700, 950) != (0, 0, 0), "the window grows")
    time.sleep(0.5)
    tour.shot("large")
    tour.window.resize(TITLE, 1350, 850)


def unplug(tour):
    before = len(tour.stage.process_log().splitlines())
    tour.stage.console("unplug")
    tour.window.wait_text("The evaluation kit is not reachable, it may have been unplugged")
    tour.shot("unplugged")
    start = tour.stage.cpu_seconds()
    time.sleep(2)
    used = (tour.stage.cpu_seconds() - start) / 2
    check(used < 0.1, f"the program uses {used:.0%} of a core after the hang-up")
    lines = len(tour.stage.process_log().splitlines()) - before
    check(lines <= 10, f"{lines} lines on the process log for one hang-up")
    tour.window.click("OK")
    tour.window.wait_for("Connect")


def connect_again(tour):
    tour.stage.console("plug")
    if tour.board == "ranger":
        tour.window.click("Refresh list")
        connect(tour)
        return
    # The port of the last session is chosen.
    wait_until(lambda: tour.window.is_focused("Connect"), "Connect has the focus")
    tour.window.key("Return")
    tour.window.wait_text(f"{tour.name} connected to {tour.stage.port}")
    tour.window.wait_text("Expert Mode")


def disconnect(tour):
    tour.window.click("Disconnect")
    tour.window.wait_text(f"Disconnect {tour.name}?")
    tour.shot("disconnect")
    tour.window.click("OK")
    tour.window.wait_for("Connect")


def close(tour):
    tour.window.close(TITLE)
    code = tour.stage.program.wait(15)
    check(code == 0, f"the program ended with {code}")
    check("qrc:" not in tour.stage.process_log(), f"a fault of the QML: {tour.stage.process_log()}")
    saved = (tour.stage.work / "home/.config/Sarvane/ZepGUI.conf").read_text()
    check(tour.board == "ranger" or "A1B2C3D4" in saved, "the payload was not saved")
    journal = tour.stage.work / "home/.local/share/Sarvane/ZepGUI/journal"
    kept = set("".join(file.read_text() for file in journal.glob("*.log")).splitlines())
    lost = [line for line in tour.session_log.splitlines() if line not in kept]
    check(tour.session_log and not lost and not list(journal.glob("*.lock")), f"not in the journal: {lost}")


BEGIN = [first_visit, expert_mode, connect]
END = [free_commands, export, expand_the_log, settings_and_light_theme, large_window, unplug, connect_again, disconnect,
       close]
