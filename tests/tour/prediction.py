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
        tour.wait_log("AT+POS=48.85,2.35")
    tour.window.click(f"GNSS position: {GET}")
    tour.wait_log("Beacon longitude: ")
    tour.window.click(f"Pass prediction: {GET}")
    tour.wait_log("Prediction pass configuration (respective order):")
    tour.window.enter("Min. elevation", "10")
    tour.window.enter("Min. pass duration", "3")
    tour.window.click(f"Pass prediction: {SET}")
    # Latitude, longitude, first and last date, elevations, minutes.
    line = wait_until(lambda: re.search(r"AT\+PREPASS_CFG=(.*),10,90,3,1000,5,30", tour.window.text()),
                      "the prediction is configured")
    first, last = line[1].split(",")[2:]
    check(first < last, f"the prediction lasts from {first} to {last}")
    tour.shot("prediction-set")


def upload_bulletins(tour):
    tour.window.click(f"AOP data: {SET}")
    tour.wait_log("Satellite 'C' not supported, pass")
    tour.wait_log("AOP data have expired for this satellite, copying data from Aurora-3 (3)...")
    tour.window.click(f"AOP data: {GET}")
    tour.wait_log("AOP parameters (respective order):")
    listed = dict(re.findall(r"\+AOP=(\w),(.*)", tour.window.text()))
    check(listed["e"] == listed["3"], f"the satellite out of service has {listed['e']}, its donor {listed['3']}")
    check(listed["4"] != listed["3"], "a satellite in service has a bulletin that is not its own")
    tour.shot("bulletins")


def next_pass(tour):
    tour.window.click("Get next pass")
    tour.wait_log("Next satellite pass: ")
    check(re.search(r"^(Aurora|Boreas)-\w, ", tour.window.text(), re.MULTILINE), "the next pass is in the table")
    tour.shot("next-pass")


def transmit_on_module(tour):
    tour.stage.console("pass 6 40")
    tour.window.click("Start")
    tour.wait_log("+NEXTPASS=")
    tour.shot("before-its-pass")
    tour.window.wait_text("successfully transmitted! (4/4)", 30)
    tour.shot("on-module")
    tour.window.click("Stop")
    tour.window.wait_for("Start", seconds=20)
    tour.window.click("Periodic", "radio button")
    tour.window.wait_gone("Get next pass")


STEPS = [enable_prediction, set_position_and_prediction, upload_bulletins, next_pass, transmit_on_module]
