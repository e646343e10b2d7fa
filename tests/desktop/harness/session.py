"""The base of all sessions: private folders, an environment of its own, a bus and programs."""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from harness.programs import Program, kill_marked
from harness.waiting import until

MARK = "AMBERQUILL_TEST_SESSION"
INHERITED = ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS")

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Session:
    """A session without a display. Derived classes add a display server in begin()."""

    def __init__(self, environment=None):
        self._programs = []
        self._extra = dict(environment or {})

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="amberquill-test-"))
        try:
            self._make_folders()
            self._start_bus()
            self.begin()
        except BaseException:
            self.end()
            raise
        return self

    def __exit__(self, *_):
        self.end()

    def begin(self):
        """Starts the session's servers."""

    def end(self):
        """Ends all programs, also those that left their parents, and removes the folders."""
        for program in reversed(self._programs):
            program.kill()
        kill_marked(MARK, str(self.folder))
        for program in self._programs:
            program.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, *command, environment=None, pass_fds=()):
        """Starts a program in the session."""
        command = [str(part) for part in command]
        program = Program(command, {**self.environment, **(environment or {})}, self.home, pass_fds)
        self._programs.append(program)
        return program

    def run(self, *command, patience=30, check=True):
        """Runs a short command in the session to its end and returns its output as text."""
        return self.run_raw(*command, patience=patience, check=check).decode(errors="replace")

    def run_raw(self, *command, patience=30, check=True):
        result = self.result_of(*command, patience=patience)
        if check and result.returncode != 0:
            text = result.stderr.decode(errors="replace")
            raise AssertionError(f"{' '.join(map(str, command))} ended with {result.returncode}: {text}")
        return result.stdout

    def result_of(self, *command, patience=30):
        return subprocess.run(
            [str(part) for part in command],
            env=self.environment,
            cwd=self.home,
            capture_output=True,
            timeout=patience,
            check=False,
        )

    def ask_bus(self, method, *arguments):
        """Calls a method of the session bus itself and returns the answer as text."""
        return self.run(
            *("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus"),
            *("--method", f"org.freedesktop.DBus.{method}", *arguments),
        )

    def report(self):
        """The output of the session's programs, for a failed test."""
        lines = []
        for program in self._programs:
            state = "running" if program.is_running() else f"ended with {program.process.returncode}"
            lines.append(f"--- {program.name} ({state})")
            lines.extend(program.lines[-40:])
        return "\n".join(lines)

    def screenshot(self):
        """The picture on the screen; None without a screen."""
        return None

    def _make_folders(self):
        def folder(name):
            path = self.folder / name
            path.mkdir(parents=True, mode=0o700)
            return path

        self.home = folder("home")
        self.runtime = folder("run")
        self.data = folder("home/.local/share")
        self.config = folder("home/.config")
        self.cache = folder("home/.cache")
        self.state = folder("home/.local/state")
        self.system_data = folder("share")
        self.environment = {name: os.environ[name] for name in INHERITED if name in os.environ}
        self.environment.update(
            {
                MARK: str(self.folder),
                "HOME": str(self.home),
                "LANG": "C.UTF-8",
                "TMPDIR": str(folder("tmp")),
                "XDG_RUNTIME_DIR": str(self.runtime),
                "XDG_DATA_HOME": str(self.data),
                "XDG_CONFIG_HOME": str(self.config),
                "XDG_CACHE_HOME": str(self.cache),
                "XDG_STATE_HOME": str(self.state),
                "XDG_DATA_DIRS": str(self.system_data),
            }
        )
        self.environment.update(self._extra)

    def _start_bus(self):
        services = self.data / "dbus-1" / "services"
        services.mkdir(parents=True)
        socket = self.runtime / "bus"
        configuration = self.folder / "bus.conf"
        configuration.write_text(BUS_CONFIGURATION.format(socket=socket, services=services), encoding="utf-8")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={socket}"
        self.restart_bus()

    def restart_bus(self):
        """Starts another bus at the same address once the first has ended."""
        socket = self.runtime / "bus"
        socket.unlink(missing_ok=True)
        self.bus = self.start("dbus-daemon", "--nofork", f"--config-file={self.folder / 'bus.conf'}")
        until(socket.exists, "the session bus")
