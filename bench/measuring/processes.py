"""Processes that are watched from outside."""

import ctypes
import os
import select
import signal
import subprocess
import sys
import time

# Only what is broken ever takes so long, in seconds.
GENEROUS_LIMIT = 60


PR_SET_PDEATHSIG = 1
LIBC = ctypes.CDLL(None)


def end_on_signals():
    """Turns the signals that end a program into an orderly exit, in which every Process is closed."""
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda received, _: sys.exit(128 + received))


def end_with_parent():
    """Called in the new process: should this program be killed, the kernel terminates the process."""
    LIBC.prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def now():
    """The moment, on CLOCK_MONOTONIC in nanoseconds."""
    return time.monotonic_ns()


class Process:
    """A program that runs until the object is closed, in a process group of its own: whatever it has started
    by then ends with it. Its lines are stamped when they arrive here."""

    def __init__(self, command, environment=None, takes_input=False, errors=None):
        self.command = command
        self.started = now()
        self.handle = subprocess.Popen(
            command,
            env=environment,
            stdin=subprocess.PIPE if takes_input else subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=errors,
            start_new_session=True,
            preexec_fn=end_with_parent,
        )
        self.output = self.handle.stdout.fileno()
        self.poll = select.poll()
        self.poll.register(self.output, select.POLLIN)
        self.rest = b""
        self.lines = []

    @property
    def pid(self):
        return self.handle.pid

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        # The group outlives the program where the program has left processes behind.
        self.signal_group(signal.SIGTERM)
        try:
            self.handle.wait(10)
        except subprocess.TimeoutExpired:
            pass
        self.signal_group(signal.SIGKILL)
        self.handle.wait()
        self.handle.stdout.close()
        if self.handle.stdin:
            self.handle.stdin.close()

    def signal_group(self, number):
        try:
            os.killpg(self.handle.pid, number)
        except ProcessLookupError:
            pass

    def say(self, line):
        self.handle.stdin.write(line.encode() + b"\n")
        self.handle.stdin.flush()

    def read_line(self, limit=GENEROUS_LIMIT):
        """The next line and the moment it arrived; none within `limit` seconds is no line."""
        end = now() + int(limit * 1e9)
        while not self.lines:
            left = (end - now()) / 1e6
            if left <= 0 or not self.poll.poll(left):
                return None
            data = os.read(self.output, 65536)
            moment = now()
            if not data:
                return None
            *whole, self.rest = (self.rest + data).split(b"\n")
            self.lines.extend((line.decode(errors="replace"), moment) for line in whole)
        return self.lines.pop(0)

    def find_line(self, expected, limit):
        """The moment at which a line came that is `expected`; none when none came within `limit` seconds after
        the one before."""
        while read := self.read_line(limit):
            if read[0] == expected:
                return read[1]
        return None

    def await_line(self, expected, limit=GENEROUS_LIMIT):
        """The moment at which a line came that is `expected`, which must come."""
        moment = self.find_line(expected, limit)
        if moment is None:
            raise RuntimeError(f"{self.command[0]} did not say \"{expected}\"")
        return moment

    def drop_lines(self, stillness=0):
        """Forgets what was said, until there is nothing new for `stillness` seconds."""
        while self.read_line(stillness):
            pass
