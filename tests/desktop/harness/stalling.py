"""Folders that stop answering, as a network's do."""

import signal
import subprocess
from pathlib import Path

PROGRAM = Path(__file__).parent / "stalling_mount.py"


class StallingFolder:
    """A folder of the session, with what is in it, on a mount of its own. It answers until it is told not to."""

    def __init__(self, session, place):
        self._place = Path(place)
        self.behind = session.folder / f"behind-{self._place.name}"
        place.rename(self.behind)
        place.mkdir()
        self._program = session.start("/usr/bin/python3", "-B", PROGRAM, self.behind, place)
        self._program.expect("mounted")

    def stall(self):
        # What the program has not taken yet is what a killed process need not wait for, as on a network's mount.
        self._program.process.send_signal(signal.SIGSTOP)

    def answer(self):
        self._program.process.send_signal(signal.SIGCONT)

    def end(self):
        """Whoever waits for an answer gets an error."""
        self._program.kill()
        subprocess.run(["umount", "--lazy", self._place], check=True)
