# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Steps of the device that is configured rather than driven."""

from stage import check, wait_until

FILE = "ranger.conf"


def read_configuration(tour):
    tour.window.wait_for("Configuration: Get parameter(s) from module")  # no spinner stands in its place
    wait_until(lambda: tour.window.content("Acquisition period") == "3600", "the acquisition period is read")
    check(tour.window.content("Light threshold") == "400,3000", "the thresholds of the light sensor are read")
    tour.shot("sensors")


def edit_sensors(tour):
    tour.window.click("Humidity enable", "check box")
    tour.window.click("Light alert", "check box")
    tour.window.click("Accelerometer alert", "check box")
    wait_until(lambda: tour.window.is_checked("Accelerometer alert", "check box"), "an alert is switched on")
    tour.window.click("Accelerometer enable", "check box")
    check(not tour.window.is_enabled(tour.window.wait_for("Accelerometer alert", "check box")), "its alert is enabled")
    check(not tour.window.is_checked("Accelerometer alert", "check box"), "a sensor that is off raises an alert")
    # Last, for the tooltip of a field lies over the row above for a moment and takes the clicks.
    tour.window.enter("Light threshold", "500,2500")
    tour.window.enter("Acquisition period", "600")
    tour.window.key("Return")
    tour.shot("sensors-edited")


def guard_the_position(tour):
    tour.window.click("GNSS enable", "check box")
    tour.window.click("Pre-pass", "radio button")
    wait_until(lambda: tour.window.is_checked("GNSS enable", "check box"), "a prediction switches the GNSS sensor on")
    tour.window.click("GNSS enable", "check box")
    tour.window.wait_text("WARNING! GNSS sensor is mandatory in Pre-pass mode")
    tour.shot("gnss-mandatory")
    tour.window.click("OK")
    wait_until(lambda: tour.window.is_checked("GNSS enable", "check box"), "the GNSS sensor is on again")


def edit_lora(tour):
    tour.window.click("LoRa connectivity", "page tab")
    tour.shot("lora-dialog")
    tour.window.click("LoRa connectivity", "check box")
    tour.window.click("ACK", "check box")
    tour.window.wait_for("Redundancy", "text")
    tour.window.enter("Redundancy", "7")
    tour.window.hover("Sensors config")
    tour.shot("lora")


def upload(tour):
    tour.window.click("Upload config")
    # Without the flag of the push button, which has a command of its own.
    tour.wait_wire("AT+ALRT_LIGHT=1,500,2500", "AT+PACQ_SENS=1,1,0,1,1,0,1", "AT+PACQ=600", "AT+PREPASS_EN=1",
                   "AT+PREPASS_CFG=", "AT+LORA_EN=1", "AT+LORA_ACK=0", "AT+LORA_REDUN=7", "AT+RST=", "+OK")
    tour.window.wait_text("Configuration uploaded!")
    check(any("PARAMETERS RESTORED" in line for line in tour.wire()), "the upload is done before the device restarts")
    tour.shot("uploaded")


def export_configuration(tour):
    target = tour.stage.documents / FILE
    tour.window.click("Export configuration")
    tour.window.wait_text("Export config to file...")
    tour.save_file_as(FILE)
    tour.window.wait_text("Configuration exported!")
    tour.shot("configuration-exported")
    lines = target.read_text().splitlines()
    check(all(line.startswith("AT+") for line in lines), "the file holds something else than commands")
    check(lines[-1] == "AT+RST=" and "AT+PACQ=600" in lines, f"the file is not the configuration: {lines}")
    check(target.stat().st_mode & 0o077 == 0, "the application key can be read by others")


def import_configuration(tour):
    file = tour.stage.documents / FILE
    file.write_text(file.read_text().replace("AT+PACQ=600", "AT+PACQ=900")
                    .replace("AT+ALRT_LIGHT=1,500,2500", "AT+ALRT_LIGHT=0,450,2000"))
    tour.window.click("Import configuration file")
    tour.window.wait_text("Please choose your configuration file")
    tour.open_file(FILE)
    tour.window.wait_text("Configuration imported!")
    check(tour.window.content("Acquisition period") == "900", "the view does not follow the file")
    check(tour.window.content("Light threshold") == "450,2000", "the thresholds do not follow the file")
    check(not tour.window.is_checked("Light alert", "check box"), "the alert does not follow the file")
    tour.shot("configuration-imported")


def ask_the_device(tour):
    tour.free_command("AT+PACQ=?", "+PACQ=600")  # an import stays in the program until it is uploaded
    tour.window.click("Return")


STEPS = [read_configuration, edit_sensors, guard_the_position, edit_lora, upload, export_configuration,
         import_configuration, ask_the_device]
