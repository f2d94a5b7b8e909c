"""The program's window as someone sees it who cannot see it: through the accessibility interface.

Controls are found by role and by the name that a screen reader speaks, never by position. What is
read is what is there now: nothing is cached but where to look first. Waiting is always for a
condition. Needs DISPLAY and DBUS_SESSION_BUS_ADDRESS of the program's desktop in os.environ before
it is first used.
"""
import contextlib
import os
import re
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# What each control is called in German: (role, name). Titles that change have more than one, or a
# pattern.
QUERY = ("text", "Stadt, Ort oder Adresse weltweit")
SEARCH = ("push button", "Suchen")
RESULTS = ("list", "Suchergebnisse · wähle einen Ort aus")
RADIUS = ("combo box", "Umkreis")
ENDPOINT = ("combo box", "Datendienst")
ENDPOINT_FIELD = ("text", "Datendienst")
DOWNLOAD = ("push button", "Ortsdaten laden")
DOWNLOADING = ("push button", "Lädt …")
CALCULATE = ("push button", "Route berechnen")
CALCULATING = ("push button", "Berechnet …")
CANCEL = ("push button", "Abbrechen")
FINDER = ("push button", "Ordner zeigen")
LANGUAGE = ("push button", "Sprache")
PLACE_MODE = ("radio button", "Ortskarte")
ROUTE_MODE = ("radio button", "Route")
STATIONS = ("list", re.compile(r"Stationen · \d+ / 32"))
ADD_STATION = ("push button", "Als Station hinzufügen")
REMOVE_STATION = ("push button", "Entfernen")
CAR = ("radio button", "Auto")
TRAIN = ("radio button", "Zug")
FLIGHT = ("radio button", "Flug")
STATION_UP = ("push button", "Hoch")
STATION_DOWN = ("push button", "Runter")
OK = ("push button", "OK")
ROUTING_FIELD = ("text", "Routingdienst · eigene HTTPS-Adresse optional")

# X key symbols
KEY_HOME, KEY_UP, KEY_DOWN, KEY_RETURN, KEY_ESCAPE = 0xFF50, 0xFF52, 0xFF54, 0xFF0D, 0xFF1B

# A pop-up's actions: after "ShowMenu" and "Press", "Increase" and "Decrease"
NEXT_ENTRY, PREVIOUS_ENTRY = 2, 3

SECONDS = float(os.environ.get("NORVAXEL_PATIENCE", "20"))
PAUSE = 0.02


class NotThere(AssertionError):
    """What was waited for did not come about; the text says what, and what was there instead."""


def until(condition, what, seconds=SECONDS, instead=lambda: ""):
    """Waits for condition to be true and returns its value."""
    deadline = time.monotonic() + seconds
    while True:
        try:
            value = condition()
        except GLib.Error:
            value = None  # the object has gone meanwhile
        if value:
            return value
        if time.monotonic() > deadline:
            raise NotThere(f"after {seconds:g} s still not: {what}\n{instead()}")
        time.sleep(PAUSE)


_hidden = []  # what programs have said to show no longer

# Each is called with the event of whatever comes to show or shows no longer. Who wants to hear of that is
# added here: a second listener to the same event, when it ends, ends the first one's hearing too.
told = []


def _note(event):
    if not event.detail1:
        _hidden.append(event.source)
    for each in told:
        each(event)


_listener = Atspi.EventListener.new(_note)


def hear():
    """Lets what the programs have said up to now reach who listens."""
    while GLib.MainContext.default().iteration(False):
        pass


def role_of(accessible):
    """The role's name as AT-SPI 2.46 has it (Debian 12); 2.56 (Debian 13) says "button"."""
    name = accessible.get_role_name()
    return "push button" if name == "button" else name


def _children(accessible):
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is not None:
            yield child


def _walk(accessible):
    yield accessible
    # The rows of a list are asked for one by one: a list may be long.
    if role_of(accessible) not in ("list", "table", "combo box"):
        for child in _children(accessible):
            yield from _walk(child)


def _has(accessible, state):
    return accessible.get_state_set().contains(state)


def is_enabled(accessible):
    return _has(accessible, Atspi.StateType.ENABLED)


def captions(accessible):
    """The names of the labels that the interface says belong to a control."""
    for relation in accessible.get_relation_set():
        if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
            for index in range(relation.get_n_targets()):
                yield relation.get_target(index).get_name()


def desktop():
    """All programs on the desktop. Called before the first program starts, it also sees to it that
    the accessibility bus is there when that program looks for it, and that it hears who listens."""
    is_first = Atspi.init() == 0
    found = Atspi.get_desktop(0)
    found.set_cache_mask(Atspi.Cache.NONE)
    found.get_child_count()
    if is_first:
        _listener.register("object:state-changed:showing")
    return found


class Window:
    """The one window of the process pid, once it is on the accessibility bus."""

    def __init__(self, pid, seconds=SECONDS):
        self.pid = pid
        self._desktop = desktop()
        self._seen = {}  # by role: where controls that were looked for have been found
        self._application = until(self._find, f"process {pid} shows a window", seconds)
        # One that was heard before it was found remembers what it said: not so.
        self._application.set_cache_mask(Atspi.Cache.NONE)

    def _find(self):
        for application in _children(self._desktop):
            try:
                if application.get_process_id() == self.pid and application.get_child_count() > 0:
                    return application
            except GLib.Error:
                pass  # another program that is just ending
        return None

    # --- finding ---

    def all(self, role=None):
        """All controls that show, in the order of the tree."""
        return [each for each in self.everything()
                if (role is None or role_of(each) == role)
                and _has(each, Atspi.StateType.SHOWING)]

    def everything(self):
        """All controls, also those that do not show, such as the items of a menu that is closed."""
        return _walk(self._application)

    def find(self, control):
        """The control if it shows, else nothing."""
        role, name = control
        seen = self._seen.setdefault(role, [])
        for each in list(seen):
            try:
                if self._is_called(each, name) and _has(each, Atspi.StateType.SHOWING):
                    return each
            except GLib.Error:
                seen.remove(each)  # it has gone
        for each in self.all(role):
            if self._is_called(each, name):
                if each not in seen:
                    seen.append(each)
                return each
        return None

    def _is_called(self, accessible, name):
        spoken = accessible.get_name()
        if isinstance(name, re.Pattern):
            return name.fullmatch(spoken)
        return spoken == name or (role_of(accessible) != "label" and name in captions(accessible))

    def control(self, control, seconds=SECONDS):
        return until(lambda: self.find(control), f"{control[0]} “{control[1]}” shows", seconds, self.describe)

    def labels(self):
        return [each.get_name() for each in self.all("label")]

    def says(self, text, seconds=SECONDS):
        """Waits for a label that shows exactly text, and returns it."""
        return until(lambda: self.find(("label", text)), f"the window says “{text}”", seconds, self.describe)

    def dialog(self, seconds=SECONDS):
        """Waits for an alert and returns its texts."""
        def find():
            for each in self.all():
                if role_of(each) in ("dialog", "alert"):
                    return [part.get_name() for part in _walk(each)
                            if role_of(part) == "label" and part.get_name()]
            return None
        return until(find, "an alert shows", seconds, self.describe)

    def describe(self):
        """The whole window as text, for a failure's message."""
        lines = []
        try:
            for each in self.all():
                off = "" if _has(each, Atspi.StateType.ENABLED) else " (disabled)"
                lines.append(f"  {role_of(each)}: {each.get_name()!r}{off}")
                if role_of(each) == "list":
                    lines.extend(f"    {row!r}" for row in self.rows(each))
        except GLib.Error as error:
            lines.append(f"  (the window has gone: {error.message})")
        return "\n".join(lines)

    # --- reading ---

    def enabled(self, control):
        return is_enabled(self.control(control))

    def editable(self, control):
        return not _has(self.control(control), Atspi.StateType.READ_ONLY)

    def checked(self, control):
        return _has(self.control(control), Atspi.StateType.CHECKED)

    def focused(self, control):
        return _has(self.control(control), Atspi.StateType.FOCUSED)

    def text(self, control):
        return Atspi.Text.get_text(self.control(control), 0, -1)

    def value(self, combo):
        """The item that a pop-up shows: before the toolkit's version 6.8 only its description says it."""
        entries = {row.get_name(): row for row in self._entries(combo)}
        description = self.control(combo).get_description()
        selected = (name for name, row in entries.items() if _has(row, Atspi.StateType.SELECTED))
        return description if description in entries else next(selected, "")

    def selected_row(self, control):
        """The selected row's number, -1 for none."""
        rows = list(_children(self.control(control)))
        return next((number for number, row in enumerate(rows) if _has(row, Atspi.StateType.SELECTED)), -1)

    def items(self, combo):
        """The titles that a pop-up offers."""
        return [row.get_name() for row in self._entries(combo)]

    def rows(self, list_or_control):
        found = self.control(list_or_control) if isinstance(list_or_control, tuple) else list_or_control
        return [row.get_name() for row in _children(found)]

    def area(self, accessible):
        """Where it is on the screen: (x, y, width, height)."""
        box = Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    def frame(self):
        return self.area(self._application.get_child_at_index(0))

    # --- doing ---

    def type(self, control, text):
        """Puts text into a field, in place of what is there."""
        found = self.control(control)
        if not Atspi.EditableText.set_text_contents(found, text):
            raise NotThere(f"“{control[1]}” takes no text")

    def press(self, control, seconds=SECONDS):
        """Presses a control as soon as it can be pressed."""
        def pressable():
            found = self.find(control)
            return found if found is not None and _has(found, Atspi.StateType.ENABLED) else None
        found = until(pressable, f"{control[0]} “{control[1]}” can be pressed", seconds, self.describe)
        closes = role_of(found) == "push button" and self._is_in_panel(found)
        with self.leaving(control) if closes else contextlib.nullcontext():
            Atspi.Action.do_action(found, 0)

    def _is_in_panel(self, accessible):
        while accessible is not None and role_of(accessible) not in ("dialog", "alert"):
            accessible = accessible.get_parent()
        return accessible is not None

    @contextlib.contextmanager
    def leaving(self, control):
        """What is done inside closes the panel that the control lies in; afterwards it has gone.
        Meanwhile nothing is asked, only heard: of who asks after what is no more the toolkit complains."""
        found = self.control(control)
        hear()
        _hidden.clear()
        yield
        until(lambda: hear() or found in _hidden, f"{control[0]} “{control[1]}” goes")
        self._seen.clear()
        self._application.get_child_count()  # in this turn the program removes what it has hidden

    def click(self, control, row, how="b1c"):
        """Clicks a row of a list; "b1d" clicks twice."""
        def visible():
            if self.control(control).get_child_count() <= row:
                return None
            return self.control(control).get_child_at_index(row)
        found = until(visible, f"“{control[1]}” has row {row}", SECONDS, self.describe)
        x, y, width, height = self.area(found)
        Atspi.generate_mouse_event(x + width // 2, y + height // 2, how)

    def select(self, control, row):
        """Clicks a row of a list and waits until it is selected."""
        self.click(control, row)
        until(lambda: _has(self.control(control).get_child_at_index(row), Atspi.StateType.SELECTED),
              f"row {row} is selected", SECONDS, self.describe)

    def choose(self, control, item):
        """Opens a pop-up and picks the item of that title with the keyboard."""
        titles = self.items(control)
        if item not in titles:
            raise NotThere(f"“{control[1]}” has no item “{item}”, it has {titles}")
        self.press(control)
        until(lambda: any(_has(each, Atspi.StateType.FOCUSED) for each in self._entries(control)),
              f"“{control[1]}” is open", SECONDS, self.describe)
        # Each key shows its effect before the next one: for who listens the toolkit sends keys round by the
        # bus, and of several at once it loses some.
        entries, here, there = self._entries(control), titles.index(self.value(control)), titles.index(item)
        step, key = (1, KEY_DOWN) if there > here else (-1, KEY_UP)
        for number in range(here + step, there + step, step):
            self.key(key)
            until(lambda: _has(entries[number], Atspi.StateType.FOCUSED), f"“{titles[number]}” has the focus",
                  SECONDS, self.describe)
        self.key(KEY_RETURN)
        until(lambda: self.value(control) == item, f"“{control[1]}” shows “{item}”", SECONDS, self.describe)

    def step_to(self, control, item):
        """Steps through a pop-up's entries by its actions until it shows the one of that title."""
        titles = self.items(control)
        steps = titles.index(item) - titles.index(self.value(control))
        found = self.control(control)
        for _ in range(abs(steps)):
            Atspi.Action.do_action(found, NEXT_ENTRY if steps > 0 else PREVIOUS_ENTRY)
        until(lambda: self.value(control) == item, f"“{control[1]}” shows “{item}”", SECONDS, self.describe)

    def _entries(self, control):
        return [row for child in _children(self.control(control)) for row in _children(child)]

    def key(self, symbol):
        """Presses and releases the key with this X key symbol, wherever the focus is."""
        Atspi.generate_keyboard_event(symbol, None, Atspi.KeySynthType.SYM)
