# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Steps of the passes that the PC follows: an imported table, the clock, the satellites of the bulletins."""

import datetime

from stage import TourError, check, wait_until

HEADER = ("Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,Start azimuth,"
          "Middle azimuth,End azimuth\n")


def now():
    return datetime.datetime.now(datetime.timezone.utc)


def next_year():
    """This minute, as the clock's dialog gives it when its year is turned by one."""
    date = now().replace(second=0)
    return date.replace(year=date.year + 1, day=28 if (date.month, date.day) == (2, 29) else date.day)


def import_passes(tour):
    def row(name, start):
        return f"{name},{start:%m-%d-%Y %H:%M:%S},,,00:12:00,42.5,0,90,180\n"

    minute = datetime.timedelta(minutes=1)
    (tour.stage.documents / "passes.csv").write_text(
        HEADER + row("LATER", next_year()) + row("SOON", now() + 30 * minute) + row("HERE", now() - minute) +
        row("GONE", now() - 30 * minute))
    tour.window.click("Import data")
    tour.open_file("passes.csv")
    tour.window.wait_text("1 satellite(s) available")
    check(listed(tour) == ["HERE", "SOON", "LATER"], f"a pass that is over is left out, not {listed(tour)}")
    tour.shot("passes")


def listed(tour):
    """The satellites of the table, row by row."""
    rows = [name.split(", ")[0] for role, name in tour.window.names() if role == "list item" and ", " in name]
    return rows[1:]  # below the heading


def transmit_in_a_pass(tour):
    tour.window.click("Pre-pass", "radio button")
    tour.window.click("Start")
    tour.window.wait_text("successfully transmitted! (1/4)", 20)
    tour.shot("in-a-pass")
    tour.stop_the_sequence()


def shift_the_clock(tour):
    before = tour.window.text().count("1 satellite(s) available")
    open_clock(tour)
    if tour.board != "tbx":  # its dialog has no pickers, and sets the clock back to the full minute
        turn_up(tour, "Year", str(now().year + 1))
    tour.shot("utc-dialog")
    tour.window.click("OK")
    tour.window.wait_text("UTC time updated (")
    if tour.board != "tbx":
        wait_until(lambda: listed(tour) == ["LATER"], "the passes of today are over")
    wait_until(lambda: tour.window.text().count("1 satellite(s) available") > before, "a pass is in progress by then")
    tour.window.wait_for("Choose a custom UTC date and time")
    tour.shot("utc-shifted")


def restore_the_clock(tour):
    open_clock(tour)
    tour.window.click("restore UTC time", "check box")
    tour.window.click("OK")
    tour.window.wait_for("Choose a custom UTC date and time")
    wait_until(lambda: listed(tour) == ["HERE", "SOON", "LATER"], "the passes of today are back")
    shown = datetime.datetime.strptime(f"{now().year} {tour.window.content('UTC time')}", "%Y %a %b %d, %H:%M:%S")
    check(abs((shown - now().replace(tzinfo=None)).total_seconds()) < 3, f"the clock shows {shown}")
    tour.window.click("Periodic", "radio button")


def open_clock(tour):
    tour.window.click("Choose a custom UTC date and time")
    tour.window.wait_text("Set custom UTC time")


def turn_up(tour, picker, entry):
    """Draws a picker with the mouse, one entry at a time, until the entry is in its middle."""
    for _ in range(5):
        node = tour.window.wait_for(picker)
        if node.get_description() == entry:
            return
        tour.window.drag(node, 0, -node.get_extents(1).height // 5)
    raise TourError(f"'{picker}' stands at {node.get_description()}, not at {entry}")


def satellites(tour):
    tour.window.click("Satellite infos")
    tour.window.click("Download AOP data from HelioWeb")
    tour.window.wait_text("Last update:")
    tour.window.wait_text("UPLK: OFF")
    tour.shot("satellites")
    tour.window.click("Data view")


STEPS = [import_passes, transmit_in_a_pass, shift_the_clock, restore_the_clock, satellites]
