"""Programs that a test starts. Tests wait for lines of their output, and each program is killed at the end."""

import ctypes
import os
import signal
import subprocess
import threading

from harness.waiting import PATIENCE, until

PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None, use_errno=True)


def _die_with_the_test():
    _libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


class Program:
    """A running program in its own process group. Its output and error output are collected."""

    def __init__(self, command, environment, folder, pass_fds=()):
        self.name = os.path.basename(command[0])
        self.lines = []
        self._read = 0  # lines that expect() has gone past
        self.process = subprocess.Popen(
            command,
            env=environment,
            cwd=folder,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            start_new_session=True,
            pass_fds=pass_fds,
            preexec_fn=_die_with_the_test,
        )
        self._reader = threading.Thread(target=self._collect, daemon=True)
        self._reader.start()

    def _collect(self):
        for line in self.process.stdout:
            self.lines.append(line.decode(errors="replace").rstrip("\n"))

    @property
    def pid(self):
        return self.process.pid

    def is_running(self):
        return self.process.poll() is None

    def send(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def expect(self, text, patience=PATIENCE):
        """Waits for a line that begins with the text, after those that were waited for before. Returns it."""

        def find():
            for index in range(self._read, len(self.lines)):
                if self.lines[index].startswith(text):
                    self._read = index + 1
                    return self.lines[index]
            return None

        try:
            return until(find, f"{text!r} from {self.name}", patience)
        except AssertionError as error:
            raise AssertionError(f"{error}; its output:\n" + "\n".join(self.lines)) from None

    def wait(self, patience=PATIENCE):
        """Waits for its end and returns the exit status."""
        until(lambda: not self.is_running(), f"the end of {self.name}", patience)
        self._reader.join(PATIENCE)
        return self.process.returncode

    def terminate(self, patience=PATIENCE):
        """Asks it to end, like a session, and returns the exit status."""
        self.process.terminate()
        return self.wait(patience)

    def kill(self):
        """Kills it and its process group, in any state."""
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait(PATIENCE)

    def close(self):
        """Closes its output, once no process writes to it."""
        self._reader.join(PATIENCE)
        self.process.stdout.close()
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass


def kill_marked(name, value):
    """Kills the processes with that environment variable, and those that they start meanwhile."""

    def none_left():
        left = processes_marked(name, value)
        for pid in left:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        return not left

    until(none_left, f"the end of the processes with {name}={value}")


def processes_marked(name, value):
    """The ids of running processes that have an environment variable with that value, other than this one."""
    wanted = f"{name}={value}".encode()
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit() or int(entry) == os.getpid():
            continue
        try:
            with open(f"/proc/{entry}/environ", "rb") as file:
                if wanted in file.read().split(b"\0"):
                    found.append(int(entry))
        except OSError:
            continue  # it has ended, or belongs to another user
    return found
