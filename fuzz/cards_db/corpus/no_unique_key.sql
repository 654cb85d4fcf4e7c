SQL
CREATE TABLE cards (id INTEGER PRIMARY KEY AUTOINCREMENT, card_key TEXT, volume_uuid TEXT, volume_label TEXT, camera_make TEXT, camera_model TEXT, camera_serial TEXT, first_import REAL, last_import REAL);
CREATE TABLE imported_files (card_id, path_on_card, size, modified_ms, capture_time, import_id, destination);
