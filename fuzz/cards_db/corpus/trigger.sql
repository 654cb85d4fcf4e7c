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
CREATE TABLE IF NOT EXISTS imports (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    card_id INTEGER NOT NULL REFERENCES cards(id),
    roll TEXT NOT NULL,
    started_at REAL NOT NULL,
    finished_at REAL
);
CREATE TABLE IF NOT EXISTS imported_files (
    card_id INTEGER NOT NULL REFERENCES cards(id),
    path_on_card TEXT NOT NULL,
    size INTEGER NOT NULL,
    modified_ms INTEGER NOT NULL,
    capture_time TEXT NOT NULL DEFAULT '',
    import_id INTEGER NOT NULL REFERENCES imports(id),
    destination TEXT NOT NULL,
    PRIMARY KEY (card_id, path_on_card, size, modified_ms)
);
CREATE INDEX IF NOT EXISTS idx_imported_files_import ON imported_files (import_id);
CREATE TRIGGER forget AFTER INSERT ON imported_files BEGIN DELETE FROM imported_files; END;
CREATE VIEW v AS SELECT * FROM cards;
