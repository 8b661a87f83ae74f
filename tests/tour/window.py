# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The program's window as a user or a screen reader meets it: controls found by name, used by mouse and keyboard."""

import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from stage import TourError, wait_until  # noqa: E402


class Window:
    def __init__(self, pid, by_action=False):
        """by_action: press what can be pressed as assistive technology does, and not by the mouse."""
        self.pid = pid
        self.by_action = by_action
        self.application = wait_until(self._find_application, "the program appeared on the accessibility bus", 60)

    def _find_application(self):
        try:
            desktop = Atspi.get_desktop(0)
            desktop.clear_cache()
            children = (desktop.get_child_at_index(index) for index in range(desktop.get_child_count()))
            return next((child for child in children if child is not None and child.get_process_id() == self.pid), None)
        except GLib.Error:
            return None  # another has left the bus meanwhile

    def walk(self):
        """Every accessible object that shows, parents first."""
        self.application.clear_cache()
        pending = [self.application]
        while pending:
            node = pending.pop()
            try:
                count = node.get_child_count()
                if node is not self.application and not self._shows(node):
                    continue
                yield node
                pending.extend(filter(None, (node.get_child_at_index(i) for i in reversed(range(count)))))
            except GLib.Error:
                continue  # gone between the question and the answer

    @staticmethod
    def _shows(node):
        return node.get_state_set().contains(Atspi.StateType.SHOWING)

    def find(self, name, role=None):
        return next(self.find_all(name, role), None)

    def find_all(self, name, role=None):
        for node in self.walk():
            try:
                if node.get_name() == name and (role is None or node.get_role_name() == role):
                    yield node
            except GLib.Error:
                continue

    def names(self):
        """(role, name) of what shows; a field is followed by what stands in it."""
        seen = []
        for node in self.walk():
            try:
                seen.append((node.get_role_name(), node.get_name()))
                if node.get_role() in (Atspi.Role.TEXT, Atspi.Role.ENTRY):
                    seen.append(("content", Atspi.Text.get_text(node, 0, -1)))
            except GLib.Error:
                continue
        return seen

    def nameless(self):
        """Roles of the controls that show and that a screen reader, or a test, could not tell apart."""
        controls = (Atspi.Role.PUSH_BUTTON, Atspi.Role.RADIO_BUTTON, Atspi.Role.CHECK_BOX, Atspi.Role.TOGGLE_BUTTON,
                    Atspi.Role.COMBO_BOX, Atspi.Role.SPIN_BUTTON, Atspi.Role.TEXT, Atspi.Role.ENTRY)
        inner = (Atspi.Role.COMBO_BOX, Atspi.Role.SPIN_BUTTON)  # their own text field is part of them
        return [node.get_role_name() for node in self.walk()
                if node.get_role() in controls and not node.get_name()
                and not (node.get_parent() and node.get_parent().get_role() in inner)]

    def content(self, name):
        """What stands in a field."""
        return Atspi.Text.get_text(self.wait_for(name, "text"), 0, -1)

    def text(self):
        return "\n".join(name for _, name in self.names())

    def wait_for(self, name, role=None, seconds=30.0):
        return wait_until(lambda: self.find(name, role), f"'{name}' shows", seconds)

    def wait_gone(self, name, seconds=30.0):
        wait_until(lambda: self.find(name) is None, f"'{name}' goes", seconds)

    def wait_text(self, part, seconds=30.0):
        wait_until(lambda: part in self.text(), f"'{part}' is read", seconds)

    def is_checked(self, name, role=None):
        return self.wait_for(name, role).get_state_set().contains(Atspi.StateType.CHECKED)

    def is_focused(self, name, role=None):
        return self.wait_for(name, role).get_state_set().contains(Atspi.StateType.FOCUSED)

    @staticmethod
    def center(node):
        extents = node.get_extents(Atspi.CoordType.SCREEN)
        if extents.width <= 0 or extents.height <= 0:
            raise TourError(f"'{node.get_name()}' has no size")
        return extents.x + extents.width // 2, extents.y + extents.height // 2

    def click(self, name, role=None, seconds=30.0, times=1):
        """A real press of the left button in the middle of the control, once it shows, is enabled and stays in its
        place, or several."""
        self.click_node(self.wait_for(name, role, seconds), times)

    @staticmethod
    def is_enabled(node):
        return node.get_state_set().contains(Atspi.StateType.ENABLED)

    @staticmethod
    def press(node):
        """Presses a control as assistive technology does; False where it has no such action."""
        for index in range(Atspi.Action.get_n_actions(node)):
            if Atspi.Action.get_action_name(node, index) == "Press":
                return Atspi.Action.do_action(node, index)
        return False

    def click_node(self, node, times=1):
        def rests():  # and has been laid out
            try:
                place = self.center(node)
                time.sleep(0.1)
                return place if place == self.center(node) else None
            except (TourError, GLib.Error):
                return None

        wait_until(lambda: self.is_enabled(node), "the control is enabled")
        if self.by_action and times == 1 and self.press(node):
            time.sleep(0.15)
            return
        x, y = wait_until(rests, "the control comes to rest")
        xdotool("mousemove", x, y, "sleep", "0.15", "click", "--repeat", times, "--delay", 120, 1, "sleep",
                "0.15")

    def hover(self, name, role=None):
        xdotool("mousemove", *self.center(self.wait_for(name, role)), "sleep", "0.3")

    def drag(self, node, dx, dy):
        """Draws the middle of a control with the left button, and holds still before letting go."""
        x, y = self.center(node)
        steps = 10
        moves = [["mousemove", x + dx * step // steps, y + dy * step // steps, "sleep", "0.02"]
                 for step in range(1, steps + 1)]
        xdotool("mousemove", x, y, "sleep", "0.1", "mousedown", 1, *sum(moves, []), "sleep", "0.3", "mouseup", 1,
                "sleep", "0.3")

    def enter(self, name, text):
        """Replaces what stands in a field, by the keyboard."""
        def focused():  # a page on its way in takes no click
            self.click(name, "text")
            return self.is_focused(name, "text")

        wait_until(focused, f"'{name}' takes the focus")
        self.key("ctrl+a")
        self.type(text)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", 20, text)

    @staticmethod
    def key(*keys):
        xdotool("key", "--delay", 60, *keys)

    def ids(self, title):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"], capture_output=True, text=True)
        return found.stdout.split()

    def focus(self, title):
        """There is no window manager on the virtual display: the keyboard goes where it is told."""
        identifier = wait_until(lambda: self.ids(title), f"a window '{title}'")[-1]
        xdotool("windowraise", identifier, "windowfocus", identifier)
        return int(identifier)

    def resize(self, title, width, height):
        xdotool("windowsize", self.focus(title), width, height, "sleep", "0.5")

    def close(self, title):
        """What the close button of a window manager sends."""
        from Xlib import display, protocol
        connection = display.Display()
        window = connection.create_resource_object("window", self.focus(title))
        window.send_event(protocol.event.ClientMessage(
            window=window, client_type=connection.intern_atom("WM_PROTOCOLS"),
            data=(32, [connection.intern_atom("WM_DELETE_WINDOW"), 0, 0, 0, 0])))
        connection.sync()


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)
