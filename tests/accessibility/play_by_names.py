#!/usr/bin/python3
"""Makes a customisation in the running program as a screen reader sees it: by names and roles alone.

    play_by_names.py INSTALLATION

Copies the installation to a scratch directory and plays it on a display, a session bus and an accessibility bus of its
own. The names are those of the installation's language file. Needs the system's Python, for its pyatspi.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree

TIME_LIMIT = 30  # seconds for each step
ANSWER_LIMIT = 1000  # milliseconds
REMARK = "Made by names alone"


def waited_for(what, look):
    """What `look` answers, once it is not None; a window may vanish while it is looked at."""
    end = time.monotonic() + TIME_LIMIT
    while time.monotonic() < end:
        try:
            found = look()
        except (LookupError, RuntimeError, NotImplementedError):
            found = None
        except Exception as error:  # GLib.Error: what was asked has gone
            if "atspi_error" not in str(error):
                raise
            found = None
        if found is not None:
            return found
        time.sleep(0.02)
    sys.exit(f"FAILED: no {what} within {TIME_LIMIT} s")


def all_below(accessible):
    yield accessible
    for index in range(accessible.childCount):
        child = accessible.getChildAtIndex(index)
        if child is not None:
            yield from all_below(child)


class Window:
    """A showing window of the program."""

    def __init__(self, program, title):
        self.accessible = waited_for(f'window "{title}"', lambda: self._window(program, title))

    @staticmethod
    def _window(program, title):
        import pyatspi

        for index in range(program.childCount):
            window = program.getChildAtIndex(index)
            if window.name == title and window.getState().contains(pyatspi.STATE_SHOWING):
                return window
        return None

    def find(self, role, name):
        def look():
            for accessible in all_below(self.accessible):
                if accessible.getRoleName() == role and accessible.name == name:
                    return accessible
            return None

        return waited_for(f'{role} "{name}" in "{self.accessible.name}"', look)

    def do(self, role, name, wanted):
        action = self.find(role, name).queryAction()
        offered = [action.getName(index) for index in range(action.nActions)]
        if wanted not in offered:
            sys.exit(f'FAILED: {role} "{name}" offers {offered}, not "{wanted}"')
        try:
            action.doAction(offered.index(wanted))
        except Exception as error:
            # The answer to a press that opens a dialog comes when that has been closed.
            if "Did not receive a reply" not in str(error):
                raise

    def has_gone(self):
        import pyatspi

        try:
            return True if not self.accessible.getState().contains(pyatspi.STATE_SHOWING) else None
        except Exception:  # the program has taken it from the bus
            return True


def texts_of(installation):
    root = xml.etree.ElementTree.parse(f"{installation}/Resources/Language_en.xml").getroot()
    return {control.get("key"): control.text for control in root.iter("control")}


def spoken(text):
    return text.replace("&", "")


def is_checked(accessible):
    import pyatspi

    return accessible.getState().contains(pyatspi.STATE_CHECKED)


def await_registration():
    """Waits until a program has registered. The library is asked only then: without a main loop it keeps the list of
    programs as it was when first asked for."""
    from gi.repository import Gio, GLib

    def answer(bus, service, path, interface, method):
        return bus.call_sync(service, path, interface, method, None, None, Gio.DBusCallFlags.NONE, -1, None).unpack()[0]

    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    address = answer(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
    client = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    bus = Gio.DBusConnection.new_for_address_sync(address, client, None, None)

    def programs():
        try:
            return answer(bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
                          "org.a11y.atspi.Accessible", "GetChildren") or None
        except GLib.Error:
            return None

    waited_for("program registered for accessibility", programs)


def play(installation):
    await_registration()
    import pyatspi

    pyatspi.Atspi.set_timeout(ANSWER_LIMIT, 0)
    text = texts_of(installation)
    desktop = pyatspi.Registry.getDesktop(0)
    program = waited_for(
        "program on the accessibility bus",
        lambda: next((one for one in desktop if one is not None and one.name == "OrvexManager"), None),
    )
    window = Window(program, text["manager_title"])

    component = window.find("check box", text["WlanComName"])
    ticked_before = is_checked(component)
    window.do("check box", text["WlanComName"], "Toggle")
    waited_for("changed tick", lambda: True if is_checked(component) != ticked_before else None)

    window.do("push button", text["FinishBtn"], "Press")
    finish = Window(program, text["finish_title"])
    finish.find("text", text["CusAboutInfoComBox"]).queryEditableText().setTextContents(REMARK)
    finish.do("push button", text["ok_button"], "Press")

    report = Window(program, text["complete_title"])
    report.find("label", text["CusCfgOnlySuccHint"])
    report.do("push button", text["exitBtnTitle"], "Press")
    waited_for("end of the report", report.has_gone)

    window.do("menu item", spoken(text["menu_cushistory"]), "Press")
    history = window.find("tree", text["AllCusComBox"])

    def entry():
        cells = [one.name for one in all_below(history)]
        return cells if REMARK in cells else None

    cells = waited_for("new entry in the history", entry)
    if any("WLAN" in cell for cell in cells) == ticked_before:
        sys.exit(f"FAILED: the entry does not tell the component: {cells}")

    window.do("menu item", spoken(text["menu_exit"]), "Press")


def inside_session(installation):
    program = subprocess.Popen([f"{installation}/OrvexManager"], cwd=installation)
    try:
        play(installation)
        program.wait(TIME_LIMIT)
    finally:
        if program.poll() is None:
            program.kill()
            program.wait()
    if program.returncode != 0:
        sys.exit(f"FAILED: the program ended with {program.returncode}")
    print("A customisation was made by names and roles alone.")


def outside_session(installation):
    display_read, display_write = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(display_write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
        pass_fds=[display_write],
        stderr=subprocess.DEVNULL,
    )
    os.close(display_write)
    try:
        with os.fdopen(display_read) as told, tempfile.TemporaryDirectory() as scratch:
            display = told.readline().strip()
            copy = f"{scratch}/OrvexManager"
            os.mkdir(copy)
            for name in ("OrvexManager", "Resources", "config.ini"):
                source = f"{installation}/{name}"
                (shutil.copytree if os.path.isdir(source) else shutil.copy2)(source, f"{copy}/{name}")
            runtime = f"{scratch}/runtime"
            os.mkdir(runtime, 0o700)
            environment = dict(
                os.environ,
                DISPLAY=f":{display}",
                HOME=scratch,
                LC_ALL="C.UTF-8",
                QT_ACCESSIBILITY="1",
                QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                QT_QPA_PLATFORM="xcb",
                XDG_RUNTIME_DIR=runtime,
            )
            environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
            session = ["dbus-run-session", "--", sys.executable, os.path.abspath(__file__), "--inside", copy]
            return subprocess.run(session, env=environment).returncode
    finally:
        server.terminate()
        server.wait()


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "--inside":
        inside_session(sys.argv[2])
    elif len(sys.argv) == 2:
        sys.exit(outside_session(sys.argv[1]))
    else:
        sys.exit(__doc__)
