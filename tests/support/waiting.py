"""Waiting for what another program does; shared by everything that drives the wizard from outside."""

import time


def wait_until(condition, what, patience=120):
    """Returns the first true value of condition(); fails with `what` when patience, in seconds, is
    over. Generous, because the machine may be busy: only a failure takes that long."""
    end = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {patience} s in vain for {what}")
        time.sleep(0.03)
