"""A desktop without a display, and homes on it."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

from measuring.processes import Process, GENEROUS_LIMIT, end_on_signals

BUS_SETTINGS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

# What the user's own session has, and what is measured must not have.
FOREIGN = [
    "AT_SPI_BUS_ADDRESS", "DESKTOP_SESSION", "KDE_FULL_SESSION", "KDE_SESSION_VERSION", "LANGUAGE",
    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "SESSION_MANAGER",
    "WAYLAND_DISPLAY", "XAUTHORITY", "XDG_CURRENT_DESKTOP", "XDG_SESSION_DESKTOP", "XDG_SESSION_TYPE",
]


def await_true(condition, what):
    end = time.monotonic() + GENEROUS_LIMIT
    while not condition():
        if time.monotonic() > end:
            raise RuntimeError(f"{what} did not come")
        time.sleep(0.02)


class Desktop:
    """An X server and a session bus of their own, ended with the object; a tray and a window manager are
    started as they are needed."""

    def __init__(self, programs, screen="640x600x24"):
        end_on_signals()
        self.programs = pathlib.Path(programs)
        self.stack = contextlib.ExitStack()
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orlimo-bench-"))
        self.stack.callback(shutil.rmtree, self.folder, True)
        server = self.start(["Xvfb", "-displayfd", "1", "-noreset", "-screen", "0", screen, "-nolisten", "tcp"])
        line = server.read_line()
        if line is None:
            raise RuntimeError("there is no X server")
        self.display = ":" + line[0]
        self.bus = self.folder / "bus"
        settings = self.folder / "bus.conf"
        settings.write_text(BUS_SETTINGS.format(socket=self.bus))
        self.start(["dbus-daemon", f"--config-file={settings}", "--nofork", "--nopidfile"])
        await_true(self.bus.exists, "the session bus")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stack.close()

    def start(self, command, environment=None, **more):
        return self.stack.enter_context(Process(command, environment, errors=subprocess.DEVNULL, **more))

    def environment(self):
        """What puts a program on this desktop."""
        variables = {name: value for name, value in os.environ.items() if name not in FOREIGN}
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700, exist_ok=True)
        variables.update({
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.bus}",
            "DISPLAY": self.display,
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb",
            "XDG_RUNTIME_DIR": str(runtime),
        })
        return variables

    def start_window_manager(self):
        self.start(["openbox", "--sm-disable"], self.environment())
        await_true(lambda: "window id" in self.property_of_root("_NET_SUPPORTING_WM_CHECK"), "the window manager")

    def start_tray(self):
        self.start(
            ["trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel", "--width", "120",
             "--heighttype", "pixel", "--height", "24", "--SetDockType", "true"],
            self.environment())
        await_true(self.has_tray, "the tray")

    def has_tray(self):
        found = subprocess.run(
            ["xdotool", "search", "--class", "trayer"], env=self.environment(), capture_output=True, check=False)
        return bool(found.stdout.strip())

    def property_of_root(self, name):
        return subprocess.run(
            ["xprop", "-root", name], env=self.environment(), capture_output=True, text=True, check=False).stdout

    def start_clock(self, what, **more):
        """What tells when something can be seen on this desktop."""
        clock = self.start([str(self.programs / "orlimo-screen-clock"), what], self.environment(), **more)
        clock.await_line("ready")
        return clock

    def start_status_notifier_host(self):
        """A panel on the session bus, which tells when an icon has come."""
        clock = self.start([str(self.programs / "orlimo-panel-clock"), "clock"], self.environment())
        clock.await_line("ready")
        return clock

    def make_home(self, name):
        return Home(self, self.folder / name)


def await_icon(clock, process):
    """The moment at which the icon of `process` had its place, and what the place calls it."""
    while read := clock.read_line():
        timestamp, name, *owner = read[0].split()
        # A panel on the bus is notified of nothing but icons.
        if not owner or int(owner[0]) == process.pid:
            return int(timestamp), name
    raise RuntimeError(f"{process.command[0]} has no icon in the tray")


class Home:
    """A home with settings and a message store of its own."""

    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.folder = folder
        self.store = folder / "Library/Messages/chat.db"
        self.store.parent.mkdir(parents=True)
        # The folder whose listing stands for access to the disk.
        (folder / "Library/Containers/com.apple.stocks").mkdir(parents=True)
        (folder / ".config").mkdir()
        (folder / "passwd").write_text(f"user:x:{os.getuid()}:{os.getgid()}::{folder}:/bin/sh\n")
        (folder / "group").write_text(f"user:x:{os.getgid()}:\n")

    def make_store(self, messages=200):
        subprocess.run(
            [str(self.desktop.programs / "orlimo-sample-store"), "create", str(self.store), "--messages",
             str(messages)],
            check=True)

    def environment(self):
        """What makes this home a program's own, in the user database, too."""
        variables = self.desktop.environment()
        variables.update({
            "HOME": str(self.folder),
            "LD_PRELOAD": "libnss_wrapper.so",
            "NSS_WRAPPER_GROUP": str(self.folder / "group"),
            "NSS_WRAPPER_PASSWD": str(self.folder / "passwd"),
            "XDG_CACHE_HOME": str(self.folder / ".cache"),
            "XDG_CONFIG_HOME": str(self.folder / ".config"),
            "XDG_DATA_HOME": str(self.folder / ".local/share"),
            "XDG_STATE_HOME": str(self.folder / ".local/state"),
        })
        return variables
