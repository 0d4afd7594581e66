"""The writer of a message store, in the place of the Messages application."""

import sqlite3

from measuring.processes import now

INSERTION = ("INSERT INTO message (guid, text, handle_id, service, account, date, is_delivered, is_finished) "
             "VALUES (upper(hex(randomblob(16))), ?, 1, 'SMS', 'P:+15550199', ?, 1, 1)")


class Writer:
    """Writes to a store over one connection that stays open, so that its log stays, and grows."""

    def __init__(self, store, synchronous):
        self.connection = sqlite3.connect(store, isolation_level=None)
        self.connection.execute("PRAGMA journal_mode=WAL")
        self.connection.execute("PRAGMA wal_autocheckpoint=0")
        self.connection.execute(f"PRAGMA synchronous={synchronous}")
        self.date = self.connection.execute("SELECT max(date) FROM message").fetchone()[0] or 0
        # The log is there from the first commit on.
        self.deliver("see you at noon")

    def deliver(self, text):
        """Commits a message. The moments directly before and directly after the commit."""
        self.date += 1_000_000_000
        self.connection.execute("BEGIN IMMEDIATE")
        self.connection.execute(INSERTION, (text, self.date))
        before = now()
        self.connection.execute("COMMIT")
        return before, now()

    def close(self):
        self.connection.close()
