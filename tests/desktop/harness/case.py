"""The base of all desktop tests."""

import os
import re
import sys
import unittest
from pathlib import Path

# unittest shows a failure from the first frame on that is not its own, and this file stands between two of its own.
__unittest = True


class DesktopTestCase(unittest.TestCase):
    # Where the programs under test lie.
    build = Path(os.environ.get("AMBERQUILL_BUILD", "build/release")).resolve()

    def begin(self, session):
        """Starts a session that ends with the test."""
        self._sessions = [*getattr(self, "_sessions", []), session]
        return self.enterContext(session)

    def _callTestMethod(self, method):
        # While the sessions still run: once a test has failed and ended, there is nothing left to look at.
        try:
            super()._callTestMethod(method)
        except Exception:
            for session in getattr(self, "_sessions", []):
                print(session.report(), file=sys.stderr)
                self._keep_screenshot(session)
            raise

    def _keep_screenshot(self, session):
        picture = session.screenshot()
        if picture is None:
            return
        folder = self.build / "failed-desktop-tests"
        folder.mkdir(exist_ok=True)
        path = folder / (re.sub(r"[^\w.]", "_", self.id()) + ".png")
        picture.save(path)
        print(f"--- the screen: {path}", file=sys.stderr)
