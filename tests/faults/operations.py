# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The tables of the fault run: the boards, the operations of a user, the faults of a device, and what must come of it."""

import dataclasses
import datetime
import types
import typing

from passes import HEADER
from stage import ROOT, wait_until
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
    before: str = ""  # a console line when its request comes in
    during: tuple = ()  # and those that come instead of an answer, or before it
    fails: bool = True  # the request is not answered, as far as the program can tell
    said: tuple = ()  # what the log tells of it
    loses_line: bool = False

    def order(self, session, operation):
        """It strikes when the request comes in, however late the computer is."""
        for line in filter(None, (self.before, *self.during)):
            session.console(f"when {operation.request} " + line.format(late=operation.timeout * 1000 + operation.late))

    def strike(self, session):
        for line in self.during:
            session.console(line)
        return self.loses_line

    def words(self, operation):
        words = [*(self.said if operation.request or self.during else ()), *operation.told,
                 *operation.tells.get(self.name, ())]
        if operation.request:
            words += operation.failure if self.fails else ()
            words += [operation.answer] if self.name in ("late", "split", "garbage") else []
        return words


MUTE = "mute 1"
FAULTS = [Fault("no answer", MUTE, said=(TIMEOUT,)),
          Fault("error", "error 44", said=("+ERROR=44", "Transceiver error (reset)")),
          Fault("late", "late {late}", said=(TIMEOUT,)),
          Fault("split", "split", fails=False),
          Fault("garbage", "late 100", ("garbage 24",), fails=False),
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
    request: str  # the one that the fault strikes, its first; or nothing if it sends none
    act: typing.Callable  # the second argument plays the fault where there is no request to wait for
    failure: tuple = ()  # what the log tells when the request fails
    answer: str = "+OK"
    timeout: int = 1  # of the request, in seconds
    late: int = 600  # ms behind the time-out
    predicts: bool = False  # needs the profile of a module that predicts
    on_settings: bool = False
    restarts: bool = False  # the device, in the end
    told: tuple = ()  # what the log tells of it with every fault
    tells: dict = dataclasses.field(default_factory=dict)  # and with one of them
    plays: tuple = ()  # the faults that its act plays in its own way
    silent: tuple = ()  # boards whose control asks nothing of the device
    quick: bool = False  # the session is one of short delays and two Tx for each payload
    turning: bool = False  # something turns in the window for as long as a dialog stands before it
    shown: typing.Callable = None  # what the window shows once the request has failed
    dies: tuple = ()  # the faults that end the program by an assertion
    then: str = ""  # the request that follows in its chain
    ended_by: tuple = ()  # what ends the chain: a failure of the request, a reset of the device
    later: bool = False  # another row of the same name has the first request of the chain
    laps: int = 0  # how often the request that tells of the probe is its own
    prepare: typing.Callable = nothing
    finish: typing.Callable = nothing  # in a session that goes on
    restore: typing.Callable = nothing  # in whatever session there is

    @property
    def title(self):
        return f"{self.name} {self.request}" if self.later else self.name

    def on(self, board):
        failure = tuple(word.format(name=board.upper()) for word in self.failure)
        return dataclasses.replace(self, **{"failure": failure} | VARIANTS.get((self.title, board), {}))

    def goes_on(self, fault):
        """Whether the chain does."""
        return not ("failure" in self.ended_by and fault.fails or "reset" in self.ended_by and fault.name == "assert")

    def restarted(self, fault):
        """Whether the device does, in the end. What is late still happens."""
        if self.request == "AT+RST=":
            return fault.name in ("late", "split", "garbage", "assert")
        return self.restarts and self.goes_on(fault)


def press(name, role=None):
    return lambda session, *_: session.press(name, role)


def read(name, boards, command, failure=(), button="", **options):
    return Operation(name, boards, f"AT+{command}=?", press(button + GET), (failure,) if failure else (),
                     **{"answer": f"+{command}="} | options)


def later(name, request, failure="", then="", ended_by=(), **options):
    """A row of an operation of OPERATIONS in which the fault strikes a later request of the chain."""
    operation = next(operation for operation in OPERATIONS if operation.name == name)
    word = request.removeprefix("AT+").removesuffix("?")
    changes = {"failure": (failure,) if failure else (), "answer": "+" + word if request.endswith("?") else "+OK",
               "then": then, "ended_by": ended_by, "timeout": 1, "late": 600, "later": True}
    return dataclasses.replace(operation, request=request, **changes | options)


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
    elif session.fault.name == "unsolicited" and session.operation.request == "AT+TX=":  # was lost, and is awaited
        session.window.wait_text("Waiting for ACK...")
        session.press("Stop")
        session.window.wait_text("Stopping...")
    else:
        session.window.wait_text("Next transmission in", 20)
        session.press("Stop")
        stopped(session)


def started_on_module(session):
    if session.fault.name != "assert":
        session.window.wait_text("Next satellite pass in", 20)
        session.press("Stop")
    stopped(session)


def stopped(session):
    session.window.wait_for("Start", seconds=20)


def end_passes(session):
    not_ending(session)
    session.press("Periodic", "radio button")


def not_ending(session):
    """A Tx that nobody answers, and a restart that nobody reports, are awaited until the session ends."""
    if session.window.find("Stopping...") or (session.operation.request, session.fault.name) == ("AT+RST=", "unsolicited"):
        leave(session)
        session.connect()


def lose_a_result(session):
    """The next Tx is acknowledged, but the device does not know of it."""
    session.console("when AT+TX= mute 1")
    session.console("when AT+TX= say +OK")


def transmit(session, strike):
    """The fault strikes the result of the first Tx, behind its acknowledgement."""
    fault = session.fault.name
    if fault in ("no answer", "late", "unsolicited"):
        lose_a_result(session)
    elif fault == "error":
        session.console("tx-error 1")
    session.press("Start")
    session.wait_request(1, "AT+TX=")
    if fault == "late":
        session.console("when AT+TX= say +TX=0,A1B2C3D4")  # meets the next Tx
    strike()


def transmitted(session):
    if session.fault.name != "assert":  # has stopped the sequence
        wait_until(lambda: sum(line.startswith("+TX=") for _, line in session.wire()) == 2, "two results")
        session.press("Stop")
    stopped(session)


def owe_a_result(session):
    lose_a_result(session)
    session.press("Start")
    session.window.wait_text("Waiting for ACK...")


def write_passes(session):
    """One pass, which has begun."""
    begin = datetime.datetime.now(datetime.timezone.utc) - datetime.timedelta(minutes=1)
    (session.stage.documents / "passes.csv").write_text(f"{HEADER}HERE,{begin:%m-%d-%Y %H:%M:%S},,,00:30:00,42.5,0,90,180\n")


def import_passes(session, strike):
    write_passes(session)
    session.press("Import data")
    session.window.wait_text("Please choose your prepass csv file")
    if not strike():
        Tour.open_file(session, "passes.csv")
        session.window.wait_text("HERE, ")


def be_in_a_pass(session):
    import_passes(session, lambda: False)
    session.press("Pre-pass", "radio button")


def load_radio(session, _strike):
    session.press("Upload your radio configuration from binary file")
    session.window.wait_text("Please choose your radio configuration binary file")
    (session.stage.documents / "radio.bin").write_bytes(next((ROOT / "sim/rconf").glob("*_HRA2.bin")).read_bytes())
    Tour.open_file(session, "radio.bin")


def write_file(button, title, name):
    """By the button's dialog; the file may get another beginning than the name."""
    def act(session, strike):
        for file in session.stage.documents.glob("*" + name):
            file.unlink()
        session.press(button)
        session.window.wait_text(title)
        if not strike():
            Tour.save_file_as(session, name)

    return act


def written(session, name):
    text, = (file.read_text() for file in session.stage.documents.glob("*" + name))
    return text


def log_exported(session):
    """All that was logged when it was asked for, up to the request of the probe."""
    text = written(session, "session.log")
    exported, log = text.splitlines(), session.log()
    if exported != log[:len(exported)] or not log[len(exported)].endswith("[APP] AT+ID=?"):
        raise AssertionError(f"the file is not whole: {text}")


def stop(session, strike):
    session.press("Stop")
    strike()


def connect(session, _strike):
    session.begin_session()
    session.choose_port()


def leave(session):
    session.press("Disconnect")
    session.accept()
    session.window.wait_for("Connect")


def disconnect(session, strike):
    session.press("Disconnect")
    if not strike():
        session.press("OK")


def saved(session):
    text = written(session, "device.conf")
    if not text.endswith("AT+RST=\n"):
        raise AssertionError(f"the file is not whole: {text}")


def load(session, strike):
    (session.stage.documents / "device.conf").write_text("AT+PACQ=900\r\n")
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


def know_satellites(session):
    """Only those that the module has told of get a bulletin."""
    session.cell_begins = len(session.trace())
    session.press(f"AOP data: {GET}")
    wait_until(lambda: (">", "+AOP=end") in session.wire(), "the module tells its bulletins")


def show_data(session):
    session.console("bulletins ok")
    if session.name != "zep1":
        session.console("say +PREPASS_EN=1")
    session.press("Data view")


RADIO, ALL = ("zep2", "tbx"), tuple(BOARDS)
FAILURE, RESET, SEQUENCE = ("failure",), ("reset",), ("failure", "reset")
PREDICTING, TRANSMITTING = (*RADIO, "ranger"), ("zep1", *RADIO)
PROFILE = "Unable to get prediction pass 'enable' status"
ON_SETTINGS, PREDICTS = {"on_settings": True}, {"predicts": True}
FIRST_TAB = press("Sarvane profile", "page tab")
# A result that does not come is awaited still when the next Tx is due, which is asserted not to be.
RESULTS = {"no answer": (), "error": ("A Tx error occured (1)", "transmitted! (2/2)"), "late": ("transmitted! (2/2)",),
           "garbage": ("transmitted! (1/2)", "transmitted! (2/2)"), "unsolicited": ()}
NO_RESULT = ("no answer", "unsolicited")
OPERATIONS = [
    Operation("connect", ALL, "AT+PING=?", connect, prepare=leave, late=5000),
    Operation("get identity", ALL, "AT+ID=?", press("Request ZEP info"), answer="+ID=", laps=1, then="AT+FW=?",
              shown=lambda session: "ID: NA" in session.window.text()),
    read("get Tx frequency", ("zep1",), "ATXFRQ", button="Tx frequency: ", **ON_SETTINGS,
         shown=lambda session: session.window.content("Tx frequency") == "NA"),
    read("get Tx power", ("zep1",), "PWR", button="Tx power: ", **ON_SETTINGS),
    Operation("set Tx power", ("zep1",), "AT+PWR=500", press(f"Tx power: {SET}"), prepare=choose_power, **ON_SETTINGS),
    Operation("set modulation", RADIO, "AT+RCONF=", press("Apply chosen modulation"), ("Cannot set radio configuration!",),
              prepare=press("Modulation", "page tab"), restore=FIRST_TAB),
    Operation("load modulation", RADIO, "AT+RCONF=", load_radio, ("Cannot set radio configuration!",),
              prepare=press("Modulation", "page tab"), restore=FIRST_TAB),
    read("get UTC time", ("zep2", "ranger"), "UDATE", "Unable to get UTC date from {name}", "UTC time: ", timeout=5, **PREDICTS),
    Operation("set UTC time", ("zep2",), "AT+UDATE=", set_utc, ("Unable to set UTC date on {name}",), timeout=5,
              silent=("zep1", "tbx", "ranger"), **PREDICTS),
    read("get profile", ("ranger",), "PREPASS_EN", PROFILE),
    Operation("set profile", ("zep2",), "AT+PREPASS_EN=0", press("Periodic", "radio button"), timeout=5,
              silent=("zep1", "tbx", "ranger"), shown=lambda session: session.window.is_checked("Pre-pass", "radio button"),
              **PREDICTS),
    read("get redundancy", ("ranger",), "ZEP_REDUN", "Unable to get Tx redundancy", "Redundancy: ", **PREDICTS),
    read("get LoRa", ("ranger",), "LORA_EN", "Unable to get LoRa connectivity status", "LoRa: ",
         prepare=press("LoRa connectivity", "page tab"), restore=FIRST_TAB, then="AT+LORA_REDUN=?"),
    Operation("get sensors", ("ranger",), "AT+ALRT_LIGHT=?", press("Get onboard configuration"),
              ("Unable to get sensor alert from {name}",), "+ALRT_LIGHT=", then="AT+ALRT_ACC=?"),
    read("get position", PREDICTING, "POS", "Unable to get GNSS position", "GNSS position: ", **PREDICTS),
    Operation("set position", RADIO, "AT+POS=", press(f"GNSS position: {SET}"), **PREDICTS),
    read("get prediction", PREDICTING, "PREPASS_CFG", "Unable to get prediction pass config", "Pass prediction: ", timeout=15,
         **PREDICTS),
    Operation("set prediction", RADIO, "AT+PREPASS_CFG=", press(f"Pass prediction: {SET}"),
              ("Unable to set prediction pass config",), **PREDICTS),
    Operation("bulletin download", ALL, "", download, prepare=press("Satellite infos"), restore=show_data,
              plays=("no answer", "error", "garbage")),
    read("get bulletins", PREDICTING, "AOP", "Unable to get AOP data", "AOP data: ", answer="+AOP=end", **PREDICTS),
    Operation("set bulletins", RADIO, "AT+AOP=", press(f"AOP data: {SET}"), ("Unable to set AOP data",), then="AT+SAT=",
              prepare=know_satellites, **PREDICTS),
    Operation("next pass", PREDICTING, "AT+NEXTPASS=?", press("Get next pass"), ("Unable to get satellite next pass",),
              "+NEXTPASS=", 15, **PREDICTS),
    read("get configuration", ("ranger",), "PREPASS_EN", PROFILE, "Configuration: ", then="AT+UDATE=?",
         turning=True),
    Operation("upload", ("ranger",), "AT+ALRT_LIGHT=", press("Upload config"), ("Unable to set sensor alert on {name}",),
              restarts=True, turning=True, then="AT+ALRT_ACC=", ended_by=FAILURE, restore=not_ending),
    Operation("export", ("ranger",), "",
              write_file("Export configuration", "Export config to file...", "device.conf"), turning=True,
              told=("Config exported successfully!",), finish=saved),
    Operation("import", ("ranger",), "", load, turning=True, told=("Config imported successfully!",)),
    Operation("import passes", TRANSMITTING, "", import_passes, turning=True),
    Operation("export log", ALL, "", write_file("Export logs/AT commands", "Export logs to file...", "session.log"),
              finish=log_exported),
    Operation("start", TRANSMITTING, "AT+ATXRP=0", press("Start"), ("Unable to write Tx command",), finish=started,
              restore=not_ending, then="AT+TX=", ended_by=SEQUENCE),
    Operation("start in a pass", TRANSMITTING, "AT+ATXRP=0", press("Start"), ("Unable to write Tx command",),
              prepare=be_in_a_pass, finish=started, restore=end_passes, then="AT+TX=", ended_by=SEQUENCE),
    Operation("transmission", TRANSMITTING, "", transmit, finish=transmitted, plays=tuple(RESULTS), tells=RESULTS,
              quick=True,
              turning=True, dies=NO_RESULT),
    Operation("start on module", RADIO, "AT+TXFIFO=", press("Start"), ("Unable to flush Tx payloads list",), timeout=15,
              finish=started_on_module, then="AT+NEXTPASS=?", ended_by=RESET, **PREDICTS),
    Operation("stop", TRANSMITTING, "AT+TXFIFO=", stop, ("Unable to flush Tx payloads list",), timeout=15,
              prepare=start_on_module, finish=stopped, **PREDICTS),
    Operation("custom command", ALL, "AT+ID=?", lambda session, _: session.probe(), (), "+ID=", 15, laps=1, **ON_SETTINGS),
    Operation("disconnect", ALL, "AT+TXFIFO=", disconnect, timeout=15, late=5000, prepare=start_on_module, **PREDICTS),
    Operation("close", ALL, "AT+ID=?", press("Request ZEP info"))]
# A request in the middle of a chain, and its last; but the one behind AT+AOP=? has more lines than one for an answer.
LATER = [
    later("connect", "AT+ID=?", then="AT+FW=?", laps=1),
    later("connect", "AT+PWR=?", boards=("zep1",), laps=1),
    later("connect", "AT+UDATE=", "Unable to set UTC date on {name}", boards=RADIO, timeout=5, laps=1),
    later("connect", "AT+LORA_DEUI=?", "Unable to get LoRa device EUI", boards=("ranger",), then="AT+LORA_AEUI=?", laps=1,
          turning=True),
    later("connect", "AT+POS=?", "Unable to get GNSS position", boards=("ranger",), then="AT+AOP=?", laps=1, turning=True),
    later("get identity", "AT+SN=?", boards=("zep1",)),
    later("get identity", "AT+RCONF=?", "Unable to get radio configuration", boards=RADIO),
    later("get identity", "AT+FW=?", boards=("ranger",)),
    later("set modulation", "AT+RCONF=?"),
    later("get LoRa", "AT+LORA_ACK=?", "Unable to get LoRa ack status"),
    later("get sensors", "AT+PACQ=?", "Unable to get acquisition period"),
    later("get configuration", "AT+ALRT_SENS=?", "Unable to get sensor alerts status", then="AT+PACQ=?"),
    later("get configuration", "AT+POS=?", "Unable to get GNSS position", then="AT+AOP=?"),
    later("set bulletins", "AT+SAT=", "Unable to set constellation status", then="AT+AOP="),
    later("set bulletins", "AT+SAT=E", "Unable to set constellation status"),
    later("upload", "AT+UDATE=", "Unable to set UTC date on {name}", "AT+AOP=", FAILURE, timeout=5),
    later("upload", "AT+PREPASS_CFG=", "Unable to set prediction pass config", "AT+LORA_EN=", FAILURE, **PREDICTS),
    later("upload", "AT+LORA_EN=", then="AT+RST="),
    later("upload", "AT+RST=", "Unable to reset {name}"),
    later("start", "AT+TX=", "Unable to write Tx command", boards=RADIO, timeout=15),
    later("start on module", "AT+NEXTPASS=?", "Unable to get satellite next pass", "AT+ATXRP=4", RESET, timeout=15),
    later("start on module", "AT+ATXRP=4", "Unable to write Tx command", "AT+TXDATA=", SEQUENCE),
    later("start on module", "AT+TXDATA=", "Unable to write Tx command")]
# What an operation is on one board only. A Ranger that does not predict has its view of the satellites out of use.
VARIANTS = {("start", "zep1"): {"request": "AT+TX=", "then": ""},
            ("start in a pass", "zep1"): {"request": "AT+TX=", "then": ""},
            ("transmission", "zep1"): {"tells": RESULTS | {"error": ("Unable to parse TX data", "transmitted! (2/2)")}},
            ("stop", "zep1"): {"request": "", "prepare": start_periodic, "timeout": 0},
            ("disconnect", "zep1"): {"request": "", "prepare": owe_a_result, "turning": True},
            ("disconnect", "ranger"): {"request": "", "prepare": nothing},
            ("bulletin download", "ranger"): PREDICTS}


def left_out(board, operation, fault):
    """Why a cell does not apply, or nothing."""
    if board in operation.silent:
        return "the control asks nothing of this board"
    if board not in operation.boards:
        return "no such request on this board" if operation.later else "no such control on this board"
    if fault.name == "sleep" and board != "ranger":
        return "this board never sleeps"
    if not operation.request and not fault.during and fault.name not in operation.plays:
        return "the operation sends no request whose answer could fail"
    if operation.name == "close" and fault.name in ("split", "error"):
        return "the answer ends the request before the window could be closed"
    if operation.name == "close" and fault.name == "late":
        return "the program has ended when the answer comes"
    return ""
