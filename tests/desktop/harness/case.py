"""The base of all desktop tests."""

import os
import re
import sys
import unittest
from pathlib import Path

# Marks this file as unittest's own: failures are then shown without its frame.
__unittest = True


class DesktopTestCase(unittest.TestCase):
    # The folder of the programs under test.
    build = Path(os.environ.get("AMBERQUILL_BUILD", "build/release")).resolve()

    def begin(self, session):
        """Starts a session that ends with the test."""
        self._sessions = [*getattr(self, "_sessions", []), session]
        return self.enterContext(session)

    def _callTestMethod(self, method):
        # The screenshot is taken here because the sessions end with the test.
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
