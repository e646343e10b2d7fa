"""Waiting for conditions, never for a span of time."""

import time

PATIENCE = 15.0  # seconds; far more than anything takes, so that a busy machine fails no test
PAUSE = 0.02


def until(condition, what, patience=PATIENCE):
    """Asks again and again until the answer is true, and returns it. Fails with the last answer otherwise."""
    deadline = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {patience:.0f} s for {what}; last answer: {answer!r}")
        time.sleep(PAUSE)
