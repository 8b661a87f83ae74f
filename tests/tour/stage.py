# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a tour needs around it: a virtual display, an accessibility bus, a simulated board, the program itself."""

import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]


class TourError(Exception):
    """A step of the tour did not show what it should have shown."""


def check(condition, what):
    if not condition:
        raise TourError(what)


def wait_until(condition, what, seconds=30.0):
    """Returns the first true result of condition(); TourError when none comes in time."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise TourError(f"{what}: did not happen within {seconds:g} s")
        time.sleep(0.05)


class Stage:
    """Owns every process that it starts, and ends those and no others."""

    def __init__(self, build, board, out):
        self.build = pathlib.Path(build).resolve()
        self.board = board
        self.out = pathlib.Path(out).resolve()
        self.work = self.out / "work"
        self.documents = self.work / "home/Documents"  # where the file dialogs start
        self.port = self.work / "port"
        self.console_path = self.work / "console"
        self.processes = []
        self.program = None
        self.environment = dict(os.environ)

    def __enter__(self):
        shutil.rmtree(self.work, ignore_errors=True)
        self.documents.mkdir(parents=True)
        self._start_display()
        self._start_accessibility()
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(10)
                except subprocess.TimeoutExpired:
                    process.kill()

    def _start(self, command, **options):
        process = subprocess.Popen(command, env=self.environment, cwd=self.work, **options)
        self.processes.append(process)
        return process

    def _start_display(self):
        wait_until(self._is_display_started, "Xvfb starts", 10)  # of two that start at once, one may find its number taken
        self.environment.pop("WAYLAND_DISPLAY", None)

    def _is_display_started(self):
        read_end, write_end = os.pipe()
        self._start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1920x1200x24", "-nolisten", "tcp", "-noreset"],
                    pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        self.environment["DISPLAY"] = os.environ["DISPLAY"] = f":{number}"
        return number

    def _start_accessibility(self):
        bus = self._start(["dbus-daemon", "--session", "--nofork", "--print-address"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        address = bus.stdout.readline().strip()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = os.environ["DBUS_SESSION_BUS_ADDRESS"] = address
        self._start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], stderr=subprocess.DEVNULL)
        # Who asks before the launcher has its name has another one started, and talks to a bus of its own.
        name = ["org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner", "string:org.a11y.Bus"]
        wait_until(lambda: "true" in self._ask_bus(*name), "the accessibility bus has its name")
        wait_until(lambda: "unix:" in self._ask_bus("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress"),
                   "the accessibility bus tells its address")

    def _ask_bus(self, owner, *message):
        return subprocess.run(["dbus-send", "--session", "--print-reply=literal", f"--dest={owner}", *message],
                              env=self.environment, capture_output=True, text=True).stdout

    def start_simulator(self, *options):
        simulator = self._start([self.build / "sim/zepsim", "--board", self.board, "--link", self.port, "--console",
                                 self.console_path, "--bulletins", "0", "--trace",
                                 self.work / "trace", *options],
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        simulator.stdout.readline()  # the port's own name
        self.bulletins = simulator.stdout.readline().removeprefix("bulletins: ").strip()
        check(self.bulletins and simulator.poll() is None, "the simulator ended at once")

    def wire(self):
        """What has crossed the wire, line by line; a request begins with AT, an answer with a plus sign."""
        lines = (self.work / "trace").read_text(errors="replace").splitlines()
        return [line.split(" ", 2)[2] for line in lines]

    def console(self, line):
        """Plays the world: one console line of the simulator, which must say ok."""
        with socket.socket(socket.AF_UNIX) as console:
            console.settimeout(30)
            console.connect(str(self.console_path))
            console.sendall(line.encode() + b"\n")
            answer = console.makefile().readline().strip()
        if not answer.startswith("ok"):
            raise TourError(f"the simulator refused '{line}': {answer}")

    def start_program(self, settings, journal=True):
        """settings: the text of the user's settings file that the program finds. journal: keep one of each session."""
        configuration = self.work / "home/.config/Sarvane"
        configuration.mkdir(parents=True, exist_ok=True)
        (configuration / "ZepGUI.conf").write_text(settings)
        shutil.copytree(ROOT / "sim/rconf", self.work / "rconf", dirs_exist_ok=True)
        service = f"{self.bulletins}?login=a&password=b&application=c"
        (self.work / "config.ini").write_text(f"[rconf]\ndir=rconf\n\n[Serial]\nextraPorts={self.port}\n\n"
                                              f'[Prepass]\naopWebRequestUrl="{service}"\n\n'
                                              f"[Journal]\nenabled={str(journal).lower()}\n")
        environment = dict(self.environment, HOME=str(self.work / "home"), XDG_CONFIG_HOME=str(configuration.parent),
                           XDG_DATA_HOME=str(self.work / "home/.local/share"),
                           QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QUICK_BACKEND="software", QT_QPA_PLATFORM="xcb",
                           ASAN_OPTIONS="detect_leaks=0", LC_ALL="C.UTF-8",
                           QT_LOGGING_RULES="default.warning=true")  # a fault of the QML is one
        self.log = open(self.out / "process.log", "w")
        self.program = subprocess.Popen([self.build / "src/zepgui"], env=environment, cwd=self.work,
                                        stdout=self.log, stderr=subprocess.STDOUT)
        self.processes.append(self.program)

    def process_log(self):
        return (self.out / "process.log").read_text(errors="replace")

    def cpu_seconds(self):
        fields = pathlib.Path(f"/proc/{self.program.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def run(self, *command):
        subprocess.run(command, env=self.environment, check=True)

    def pixel(self, x, y):
        """Red, green and blue of one pixel of the display."""
        raw = subprocess.run(["import", "-silent", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "rgb:-"],
                             env=self.environment, check=True, capture_output=True).stdout
        return tuple(raw[:3])

    def screenshot(self, name):
        path = self.out / f"{name}.png"
        subprocess.run(["import", "-silent", "-window", "root", path], env=self.environment, check=True)
        print(f"    screenshot {path}")
