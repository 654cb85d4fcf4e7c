SQL

CREATE TABLE IF NOT EXISTS cards (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    card_key TEXT NOT NULL UNIQUE,
    volume_uuid TEXT NOT NULL DEFAULT '',
    volume_label TEXT NOT NULL DEFAULT '',
    camera_make TEXT NOT NULL DEFAULT '',
    camera_model TEXT NOT NULL DEFAULT '',
    camera_serial TEXT NOT NULL DEFAULT '',
    first_import REAL,
    last_import REAL
);
INSERT INTO cards (card_key) VALUES ('uuid:1234-ABCD');
