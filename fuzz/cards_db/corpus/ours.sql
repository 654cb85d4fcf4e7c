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
INSERT INTO cards VALUES (1,'uuid:1234-ABCD','1234-ABCD','EOS_DIGITAL','Canon','Canon EOS R6','0123',1700000000.5,1700000100.25);
INSERT INTO imports VALUES (1,1,'/home/u/Pictures/roll01',1700000000.5,NULL);
INSERT INTO imported_files VALUES (1,'DCIM/100CANON/IMG_0001.JPG',8388608,1700000000000,'2023:11:14 22:13:20',1,'/home/u/Pictures/roll01/JPG/IMG_0001.JPG');
