# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The tables of the fault run: the boards, the operations of a user, the faults of a device, and what must come of it."""

import dataclasses
import types
import typing

from tour import Tour

TIMEOUT = "AT command request timeout!"
LOST = "The evaluation kit is not reachable, it may have been unplugged"
WAKE_UP = "Please press wake up button"
GET, SET = "Get parameter(s) from module", "Set parameter(s) in module"
BULLETINS = "Download AOP data from HelioWeb"
# The last request of a connection, and one that only a reading of the identity makes.
BOARDS = {"zep1": types.SimpleNamespace(module=1, last_read="AT+PWR=?", identity="AT+SN=?", options=()),
          "zep2": types.SimpleNamespace(module=2, last_read="AT+UDATE=", identity="AT+ADDR=?", options=()),
          "tbx": types.SimpleNamespace(module=3, last_read="AT+UDATE=", identity="AT+ADDR=?", options=()),
          "ranger": types.SimpleNamespace(module=4, last_read="AT+PREPASS_CFG=?", identity="AT+FW=?",
                                          options=("--awake-for", "86400"))}


@dataclasses.dataclass
class Fault:
    name: str
    before: str = ""  # a console line before the operation
    during: tuple = ()  # and those while its first request waits
    fails: bool = True  # the request is not answered, as far as the program can tell
    said: tuple = ()  # what the log tells of it
    loses_line: bool = False

    def strike(self, session):
        for line in self.during:
            session.console(line)
        return self.loses_line

    def words(self, operation):
        words = [*(self.said if operation.first or self.during else ()), *operation.told]
        if operation.first:
            words += operation.failure if self.fails else ()
            words += [operation.answer] if self.name in ("late", "split", "garbage") else []
        return words


MUTE = "mute 1"
FAULTS = [Fault("no answer", MUTE, said=(TIMEOUT,)),
          Fault("error", "error 44", said=("+ERROR=44", "Transceiver error (reset)")),
          Fault("late", "late {late}", said=(TIMEOUT,)),
          Fault("split", "split", fails=False),
          Fault("garbage", "late 300", ("garbage 24",), fails=False),
          Fault("unsolicited", MUTE, ("say +RX=48656C6C6F",), fails=False, said=("+RX=48656C6C6F",)),
          Fault("assert", MUTE, ("assert watchdog",), fails=False,
                said=("+ASSERT=watchdog", "ZEP ASSERT!",
                      "A reset was triggered on device, stopping sequence and restoring UTC time...")),
          Fault("sleep", MUTE, ("sleep",), said=("RANGER -- SLEEP",)),
          Fault("unplug", MUTE, ("unplug",), loses_line=True),
          Fault("re-plug", MUTE, ("unplug", "plug"), loses_line=True)]


def nothing(_session):
    pass


@dataclasses.dataclass
class Operation:
    name: str
    boards: tuple
    first: str  # its first request, or nothing if it sends none
    act: typing.Callable  # the second argument plays the fault where there is no request to wait for
    failure: tuple = ()  # what the log tells when its first request fails
    answer: str = "+OK"
    timeout: int = 1  # of the first request, in seconds
    late: int = 600  # ms behind the time-out
    predicts: bool = False  # needs the profile of a module that predicts
    on_settings: bool = False
    restarts: bool = False  # the device, in the end
    told: tuple = ()  # what the log tells of it with every fault
    laps: int = 0  # how often the request that tells of the probe is its own
    prepare: typing.Callable = nothing
    finish: typing.Callable = nothing  # in a session that goes on
    restore: typing.Callable = nothing  # in whatever session there is

    def on(self, board):
        failure = tuple(word.format(name=board.upper()) for word in self.failure)
        return dataclasses.replace(self, **{"failure": failure} | VARIANTS.get((self.name, board), {}))


def press(name, role=None):
    return lambda session, *_: session.press(name, role)


def read(name, boards, command, failure=(), button="", **options):
    return Operation(name, boards, f"AT+{command}=?", press(button + GET), (failure,) if failure else (),
                     **{"answer": f"+{command}="} | options)


def choose_power(session):
    session.press("Tx power", "combo box")
    session.press("500", "menu item")


def set_utc(session, _strike):
    session.press("Choose a custom UTC date and time")
    session.window.wait_text("Set custom UTC time")
    session.press("OK")


def start_on_module(session):
    session.press("Start")
    session.wait_answered(1, "AT+TXDATA=", 20)
    session.window.wait_text("Next satellite pass in")


def start_periodic(session):
    session.press("Start")
    session.window.wait_text("Next transmission in")


def started(session):
    if session.fault.name == "assert":  # has stopped the sequence
        stopped(session)
    elif session.fault.name == "unsolicited" and session.name == "zep1":  # the Tx itself was lost, and is awaited
        session.window.wait_text("Waiting for ACK...")
        session.press("Stop")
        session.window.wait_text("Stopping...")
    else:
        session.window.wait_text("Next transmission in", 20)
        session.press("Stop")
        stopped(session)


def stopped(session):
    session.window.wait_for("Start", seconds=20)


def not_stopping(session):
    """A Tx that nobody answers is awaited until the session ends."""
    if session.window.find("Stopping..."):
        leave(session)
        session.connect()


def stop(session, strike):
    session.press("Stop")
    strike()


def connect(session, _strike):
    session.session_begins = len(session.trace())
    session.choose_port()


def leave(session):
    session.press("Disconnect")
    session.accept()
    session.window.wait_for("Connect")


def disconnect(session, strike):
    session.press("Disconnect")
    if not strike():
        session.press("OK")


def save(session, strike):
    for file in session.stage.work.glob("*device.conf"):
        file.unlink()
    session.press("Export configuration")
    session.window.wait_text("Export config to file...")
    if not strike():
        Tour.save_file_as(session, "device.conf")  # behind the name of the export before


def saved(session):
    text, = (file.read_text() for file in session.stage.work.glob("*device.conf"))
    if not text.endswith("AT+RST=\n"):
        raise AssertionError(f"the file is not whole: {text}")


def load(session, strike):
    (session.stage.work / "device.conf").write_text("AT+PACQ=900\r\n")
    session.press("Import configuration file")
    session.window.wait_text("Please choose your configuration file")
    if not strike():
        Tour.open_file(session, "device.conf")


def download(session, strike):
    fault = session.fault
    session.console("bulletins " + {"error": "500", "garbage": "broken"}.get(fault.name, "silent"))
    session.press(BULLETINS)
    if not strike():
        session.window.wait_text("Unable to parse" if fault.name == "garbage" else "Unable to fetch last")


def show_data(session):
    if session.name != "zep1":
        session.console("say +PREPASS_EN=1")
    session.press("Data view")


RADIO, ALL = ("zep2", "tbx"), tuple(BOARDS)
PREDICTING, TRANSMITTING = (*RADIO, "ranger"), ("zep1", *RADIO)
PROFILE = "Unable to get prediction pass 'enable' status"
ON_SETTINGS, PREDICTS = {"on_settings": True}, {"predicts": True}
FIRST_TAB = press("Sarvane profile", "page tab")
OPERATIONS = [
    Operation("connect", ALL, "AT+PING=?", connect, prepare=leave, late=5000),
    Operation("get identity", ALL, "AT+ID=?", press("Request ZEP info"), answer="+ID=", laps=1),
    read("get Tx frequency", ("zep1",), "ATXFRQ", button="Tx frequency: ", **ON_SETTINGS),
    read("get Tx power", ("zep1",), "PWR", button="Tx power: ", **ON_SETTINGS),
    Operation("set Tx power", ("zep1",), "AT+PWR=500", press(f"Tx power: {SET}"), prepare=choose_power, **ON_SETTINGS),
    Operation("set modulation", RADIO, "AT+RCONF=", press("Apply chosen modulation"), ("Cannot set radio configuration!",),
              prepare=press("Modulation", "page tab"), restore=FIRST_TAB),
    read("get UTC time", ("zep2", "ranger"), "UDATE", "Unable to get UTC date from {name}", "UTC time: ", timeout=5, **PREDICTS),
    Operation("set UTC time", ("zep2",), "AT+UDATE=", set_utc, ("Unable to set UTC date on {name}",), timeout=5, **PREDICTS),
    read("get profile", ("ranger",), "PREPASS_EN", PROFILE),
    Operation("set profile", ("zep2",), "AT+PREPASS_EN=0", press("Periodic", "radio button"), timeout=5, **PREDICTS),
    read("get redundancy", ("ranger",), "ZEP_REDUN", "Unable to get Tx redundancy", "Redundancy: ", **PREDICTS),
    read("get LoRa", ("ranger",), "LORA_EN", "Unable to get LoRa connectivity status", "LoRa: ",
         prepare=press("LoRa connectivity", "page tab"), restore=FIRST_TAB),
    Operation("get sensors", ("ranger",), "AT+ALRT_LIGHT=?", press("Get onboard configuration"),
              ("Unable to get sensor alert from {name}",), "+ALRT_LIGHT="),
    read("get position", PREDICTING, "POS", "Unable to get GNSS position", "GNSS position: ", **PREDICTS),
    Operation("set position", RADIO, "AT+POS=", press(f"GNSS position: {SET}"), **PREDICTS),
    read("get prediction", PREDICTING, "PREPASS_CFG", "Unable to get prediction pass config", "Pass prediction: ", timeout=15,
         **PREDICTS),
    Operation("set prediction", RADIO, "AT+PREPASS_CFG=", press(f"Pass prediction: {SET}"),
              ("Unable to set prediction pass config",), **PREDICTS),
    Operation("bulletin download", ALL, "", download, prepare=press("Satellite infos"), restore=show_data,
              finish=lambda session: session.console("bulletins ok")),
    read("get bulletins", PREDICTING, "AOP", "Unable to get AOP data", "AOP data: ", answer="+AOP=end", **PREDICTS),
    Operation("set bulletins", RADIO, "AT+AOP=", press(f"AOP data: {SET}"), ("Unable to set AOP data",), **PREDICTS),
    Operation("next pass", PREDICTING, "AT+NEXTPASS=?", press("Get next pass"), ("Unable to get satellite next pass",),
              "+NEXTPASS=", 15, **PREDICTS),
    read("get configuration", ("ranger",), "PREPASS_EN", PROFILE, "Configuration: "),
    Operation("upload", ("ranger",), "AT+ALRT_LIGHT=", press("Upload config"), ("Unable to set sensor alert on {name}",),
              restarts=True),
    Operation("export", ("ranger",), "", save, told=("Config exported successfully!",), finish=saved),
    Operation("import", ("ranger",), "", load, told=("Config imported successfully!",)),
    Operation("start", TRANSMITTING, "AT+ATXRP=0", press("Start"), ("Unable to write Tx command",), finish=started,
              restore=not_stopping),
    Operation("stop", TRANSMITTING, "AT+TXFIFO=", stop, ("Unable to flush Tx payloads list",), timeout=15,
              prepare=start_on_module, finish=stopped, **PREDICTS),
    Operation("custom command", ALL, "AT+ID=?", lambda session, _: session.probe(), (), "+ID=", 15, laps=1, **ON_SETTINGS),
    Operation("disconnect", ALL, "AT+TXFIFO=", disconnect, timeout=15, prepare=start_on_module, **PREDICTS),
    Operation("close", ALL, "AT+ID=?", press("Request ZEP info"))]
# What an operation is on one board only. A Ranger that does not predict has its view of the satellites out of use.
VARIANTS = {("start", "zep1"): {"first": "AT+TX="},
            ("stop", "zep1"): {"first": "", "prepare": start_periodic, "timeout": 0},
            ("disconnect", "zep1"): {"first": "", "prepare": nothing},
            ("disconnect", "ranger"): {"first": "", "prepare": nothing},
            ("bulletin download", "ranger"): PREDICTS}


def left_out(board, operation, fault):
    """Why a cell does not apply, or nothing."""
    if board not in operation.boards:
        return "no such control on this board"
    if fault.name == "sleep" and board != "ranger":
        return "this board never sleeps"
    if operation.name == "bulletin download" and fault.name in ("no answer", "error", "garbage"):
        return ""  # played by the web service
    if not operation.first and (not fault.during or fault.name in ("garbage", "unsolicited")):
        return "the operation sends no request to this board"
    if operation.name == "close" and fault.name in ("split", "error", "late"):
        return "the window is closed before such an answer could come"
    return ""
