# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Steps of the boards that compute their passes themselves."""

import re

from stage import check, wait_until

GET = "Get parameter(s) from module"
SET = "Set parameter(s) in module"


def enable_prediction(tour):
    check(tour.window.find("Get next pass") is None, "the next pass is offered before the module predicts any")
    tour.free_command("AT+PREPASS_EN=1", "+OK")
    tour.free_command("AT+PREPASS_EN=?", "+PREPASS_EN=1")
    tour.window.click("Return")
    tour.window.wait_for("Get next pass")
    check(tour.window.find("Import data") is None, "a table is offered where the module predicts")
    tour.shot("prediction")


def set_position_and_prediction(tour):
    if tour.board == "zep2":  # the others take the position that they have
        tour.window.enter("Latitude", "48.85")
        tour.window.enter("Longitude", "2.35")
        tour.window.click(f"GNSS position: {SET}")
        tour.wait_wire("AT+POS=48.85,2.35", "+OK")
    tour.window.click(f"GNSS position: {GET}")
    tour.wait_wire("AT+POS=?", "+POS=")
    tour.window.click(f"Pass prediction: {GET}")
    tour.wait_wire("AT+PREPASS_CFG=?", "+PREPASS_CFG=")
    tour.expect_log("Beacon longitude: ", "Prediction pass configuration (respective order):")
    tour.window.enter("Min. elevation", "10")
    tour.window.enter("Min. pass duration", "3")
    tour.window.click(f"Pass prediction: {SET}")
    tour.wait_wire(",10,90,3,1000,5,30", "+OK")
    # Latitude, longitude, first and last date, elevations, minutes.
    request = next(line for line in tour.wire() if line.endswith(",10,90,3,1000,5,30"))
    latitude, longitude, first, last = request.removeprefix("AT+PREPASS_CFG=").split(",")[:4]
    check(first < last, f"the prediction lasts from {first} to {last}")
    check(tour.board != "zep2" or (latitude, longitude) == ("48.85", "2.35"), f"it is made for {latitude}, {longitude}")
    tour.shot("prediction-set")


def upload_bulletins(tour):
    tour.window.click(f"AOP data: {GET}")  # a module takes the satellites that it has told of
    tour.wait_wire("AT+AOP=?", "+AOP=end")
    tour.window.click(f"AOP data: {SET}")
    tour.wait_wire("AT+AOP=E,", "+OK", "AT+SAT=E,", "+OK")
    tour.expect_log("AOP data have expired for this satellite, copying data from Aurora-3 (3)...",
                    "Satellite 'C' not supported, pass", "AOP parameters (respective order):")
    tour.window.click(f"AOP data: {GET}")
    tour.wait_wire("AT+SAT=E,", "AT+AOP=?", "+AOP=end")
    # Of the two listings the later one counts.
    held = dict(re.findall(r"\+AOP=(\w),(.*)", "\n".join(tour.wire())))
    check(held["e"] == held["3"], f"the satellite out of service has {held['e']}, its donor {held['3']}")
    check(held["4"] != held["3"], "a satellite in service has a bulletin that is not its own")
    tour.shot("bulletins")


def next_pass(tour):
    tour.window.click("Get next pass")
    tour.wait_wire("AT+NEXTPASS=?", "+NEXTPASS=")
    tour.expect_log("Next satellite pass: ")
    wait_until(lambda: re.search(r"^(Aurora|Boreas)-\w, ", tour.window.text(), re.MULTILINE), "the next pass is listed")
    tour.shot("next-pass")


def transmit_on_module(tour):
    tour.stage.console("pass 6 40")
    tour.window.click("Start")
    tour.wait_wire("AT+NEXTPASS=?", "+NEXTPASS=", "AT+TXDATA=A1B2C3D4", "+OK")
    tour.shot("before-its-pass")
    tour.window.wait_text("Remaining pass duration", 20)
    tour.shot("in-its-pass")
    tour.window.wait_text("successfully transmitted! (4/4)", 30)
    tour.shot("after-its-pass")
    tour.stop_the_sequence()
    tour.window.click("Periodic", "radio button")
    tour.window.wait_gone("Get next pass")


STEPS = [enable_prediction, set_position_and_prediction, upload_bulletins, next_pass, transmit_on_module]
