-- Caudalis sprinkler catalogue database, SQLite.
--
-- Brands (marca), models of a brand (Modelos) and nozzles of a model (Boquillas). A nozzle's
-- flow follows q = a * p^b with the pressure p in kPa and the flow q in litres per second;
-- pmin/pmax are the model's pressure range (kPa) and qmin/qmax the flows at those pressures
-- (l/s). The library validates every nozzle it reads (designation not blank, a, b, pmin,
-- pmax, qmin and qmax greater than 0).
--
-- There are no foreign keys: the library may add a nozzle for a model row the host already
-- knows by id. Loading this file again leaves an existing database unchanged.

CREATE TABLE IF NOT EXISTS marca (
    id_marca INTEGER PRIMARY KEY AUTOINCREMENT,
    nome     TEXT
);

CREATE TABLE IF NOT EXISTS Modelos (
    id_modelo INTEGER PRIMARY KEY AUTOINCREMENT,
    id_marca  INTEGER,
    modelo    TEXT
);
CREATE INDEX IF NOT EXISTS ix_Modelos_id_marca ON Modelos (id_marca);

CREATE TABLE IF NOT EXISTS Boquillas (
    ID_Boquillas INTEGER PRIMARY KEY AUTOINCREMENT,
    denominacion TEXT,
    a            REAL,
    b            REAL,
    pmin         REAL,
    pmax         REAL,
    qmin         REAL,
    qmax         REAL,
    id_modelo    INTEGER
);
CREATE INDEX IF NOT EXISTS ix_Boquillas_id_modelo ON Boquillas (id_modelo);

-- The diameter of ground one sprinkler of a model wets (metres), for the application profile
-- of a design. A side table, one row per model: the catalogue tables above stay as they are.
CREATE TABLE IF NOT EXISTS model_wetted_diameters (
    id_modelo         INTEGER NOT NULL UNIQUE,
    wetted_diameter_m REAL
);
