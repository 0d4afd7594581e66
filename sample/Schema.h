#pragma once

namespace orlimo::sample {

/// The tables of the message store that matter around a message, with the columns that matter.
/// Dates are nanoseconds since the beginning of 2001, UTC.
inline constexpr const char* schema = R"sql(
CREATE TABLE handle (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE,
    id TEXT NOT NULL,
    country TEXT,
    service TEXT NOT NULL,
    uncanonicalized_id TEXT,
    UNIQUE (id, service));

CREATE TABLE chat (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    guid TEXT UNIQUE NOT NULL,
    style INTEGER,
    state INTEGER,
    chat_identifier TEXT,
    service_name TEXT,
    display_name TEXT);

CREATE TABLE message (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    guid TEXT UNIQUE NOT NULL,
    text TEXT,
    replace INTEGER DEFAULT 0,
    service_center TEXT,
    handle_id INTEGER DEFAULT 0,
    subject TEXT,
    country TEXT,
    attributedBody BLOB,
    version INTEGER DEFAULT 0,
    type INTEGER DEFAULT 0,
    service TEXT,
    account TEXT,
    error INTEGER DEFAULT 0,
    date INTEGER,
    date_read INTEGER,
    date_delivered INTEGER,
    is_delivered INTEGER DEFAULT 0,
    is_finished INTEGER DEFAULT 0,
    is_from_me INTEGER DEFAULT 0,
    is_empty INTEGER DEFAULT 0,
    is_read INTEGER DEFAULT 0,
    is_sent INTEGER DEFAULT 0,
    cache_has_attachments INTEGER DEFAULT 0);

CREATE TABLE attachment (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    guid TEXT UNIQUE NOT NULL,
    created_date INTEGER DEFAULT 0,
    filename TEXT,
    mime_type TEXT,
    total_bytes INTEGER DEFAULT 0);

CREATE TABLE chat_handle_join (
    chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
    handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE,
    UNIQUE (chat_id, handle_id));

CREATE TABLE chat_message_join (
    chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE,
    message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE,
    message_date INTEGER DEFAULT 0,
    PRIMARY KEY (chat_id, message_id));

CREATE TABLE message_attachment_join (
    message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE,
    attachment_id INTEGER REFERENCES attachment (ROWID) ON DELETE CASCADE,
    UNIQUE (message_id, attachment_id));

CREATE INDEX message_idx_date ON message (date);
CREATE INDEX message_idx_handle ON message (handle_id, date);
CREATE INDEX chat_message_join_idx_message_id_only ON chat_message_join (message_id);

INSERT INTO handle (ROWID, id, service) VALUES (1, '+15550100', 'SMS');
INSERT INTO chat (ROWID, guid, style, chat_identifier, service_name)
    VALUES (1, 'SMS;-;+15550100', 45, '+15550100', 'SMS');
INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1);
)sql";

} // namespace orlimo::sample
