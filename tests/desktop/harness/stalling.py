"""Folders that stop answering, like folders on a network."""

import signal
import subprocess
from pathlib import Path

from harness.programs import processes_marked
from harness.session import MARK
from harness.waiting import until

PROGRAM = Path(__file__).parent / "stalling_mount.py"


def waits_for_a_mount(process):
    """Whether one of the process's threads waits for an answer of the mount's program."""
    try:
        tasks = [path.read_text(encoding="utf-8") for path in Path(f"/proc/{process}/task").glob("*/wchan")]
    except OSError:
        return True  # changing just now
    return "request_wait_answer" in tasks


class StallingFolder:
    """A folder of the session, with its content, on its own mount. It answers until `stall` is called."""

    def __init__(self, session, place):
        self._place = Path(place)
        self._mark = MARK, str(session.folder)
        self.behind = session.folder / f"behind-{self._place.name}"
        place.rename(self.behind)
        place.mkdir()
        self._program = session.start("/usr/bin/python3", "-B", PROGRAM, self.behind, place)
        self._program.expect("mounted")

    def stall(self):
        # Unlike on a network's mount, even a killed process waits for a request that the mount's program has taken.
        until(self._stops_between_requests, "a moment without a request")

    def _stops_between_requests(self):
        self._program.process.send_signal(signal.SIGSTOP)
        state = Path(f"/proc/{self._program.pid}/stat")
        until(lambda: state.read_text(encoding="utf-8").rpartition(")")[2].split()[0] == "T", "the stop")
        if any(waits_for_a_mount(process) for process in processes_marked(*self._mark)):
            self.answer()
            return False
        return True

    def answer(self):
        self._program.process.send_signal(signal.SIGCONT)

    def end(self):
        """Processes that wait for an answer get an error."""
        self._program.kill()
        subprocess.run(["umount", "--lazy", self._place], check=True)
