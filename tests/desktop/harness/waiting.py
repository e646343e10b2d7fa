"""Waiting for conditions, never for a span of time."""

import time

PATIENCE = 15.0  # seconds; far longer than anything takes on a busy machine
PAUSE = 0.02


def until(condition, what, patience=PATIENCE):
    """Repeats the condition until its answer is true and returns that. Otherwise fails with the last answer."""
    deadline = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {patience:.0f} s for {what}; last answer: {answer!r}")
        time.sleep(PAUSE)
