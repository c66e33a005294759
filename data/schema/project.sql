-- Caudalis project database, SQLite.
--
-- Holds the sprinkler charts of the host's irrigation systems (tb_cartas and its child
-- tables), the drop hose of each chart (tb_drop), the pipe materials the drop hoses are made
-- of (pipe_materials) and the field evaluations (pivot_evaluations).
--
-- Units: pressures in kPa, flows in litres per second, lengths and distances in metres,
-- hose diameters in millimetres, revolution time in hours.
--
-- Truth values are written by the library as the literals true/false and stored as 1/0.
-- There are no foreign keys: a chart is deleted child tables first, a nozzle id in
-- tb_aspersores refers to a row of the separate catalogue database, and chart names are
-- checked by the library on insertion only (a renamed chart may share its name with another
-- chart of the same system). Loading this file again leaves an existing database unchanged.

CREATE TABLE IF NOT EXISTS tb_cartas (
    id_carta   INTEGER PRIMARY KEY AUTOINCREMENT,
    nome       TEXT NOT NULL,
    boost      REAL,
    id_sistema INTEGER NOT NULL
);
CREATE INDEX IF NOT EXISTS ix_tb_cartas_id_sistema ON tb_cartas (id_sistema);

-- One row per mounted sprinkler; id_aspersor is ID_Boquillas of the catalogue's Boquillas.
CREATE TABLE IF NOT EXISTS tb_aspersores (
    id_aspersores INTEGER PRIMARY KEY AUTOINCREMENT,
    tramo         INTEGER,
    saida         INTEGER,
    id_aspersor   INTEGER,
    id_carta      INTEGER
);
CREATE INDEX IF NOT EXISTS ix_tb_aspersores_id_carta ON tb_aspersores (id_carta);

-- One row per pressure regulator: regulated pressure (kPa), flow range (l/s).
CREATE TABLE IF NOT EXISTS tb_reguladores (
    id_carta   INTEGER,
    tramo      INTEGER,
    pression   REAL,
    caudal_max REAL,
    caudal_min REAL,
    installed  INTEGER
);
CREATE INDEX IF NOT EXISTS ix_tb_reguladores_id_carta ON tb_reguladores (id_carta);

-- One row per chart: hours per revolution and number of closed outlets.
CREATE TABLE IF NOT EXISTS tb_indicadores (
    id_indicadores   INTEGER PRIMARY KEY AUTOINCREMENT,
    id_carta         INTEGER,
    numero_horas     REAL,
    numero_obturadas INTEGER
);
CREATE INDEX IF NOT EXISTS ix_tb_indicadores_id_carta ON tb_indicadores (id_carta);

-- One row per chart: distances to the centre (m) and wetted diameters (m) of the two
-- sample points, and the Kostiakov parameters k and a of the pluviometry check.
CREATE TABLE IF NOT EXISTS tb_pluviometria (
    id_pluviometria INTEGER PRIMARY KEY AUTOINCREMENT,
    id_carta        INTEGER,
    distCentro1     REAL,
    distCentro2     REAL,
    Dmoj1           REAL,
    Dmoj2           REAL,
    k               REAL,
    a               REAL
);
CREATE INDEX IF NOT EXISTS ix_tb_pluviometria_id_carta ON tb_pluviometria (id_carta);

-- At most one row per chart, no id column; rows are written with the columns in this order.
CREATE TABLE IF NOT EXISTS tb_drop (
    longitud         REAL,
    diametro         REAL,
    pipe_material_id INTEGER,
    installed        INTEGER,
    carta_id         INTEGER
);
CREATE INDEX IF NOT EXISTS ix_tb_drop_carta_id ON tb_drop (carta_id);

-- Side tables a design program writes beside a stored chart (the chart's own tables above stay
-- as they are): the timer table stored with the chart's indicators, one row per setting
-- (percent, end-tower speed m/h, hours per revolution, depth per revolution mm), and the
-- computed figures of each outlet (address as span-outlet or "gun", m, kPa, l/s).
CREATE TABLE IF NOT EXISTS chart_speed_table (
    id_carta           INTEGER NOT NULL,
    percentagem        REAL,
    velocidade_linear  REAL,
    tempo_de_uma_volta REAL,
    dotacao            REAL
);
CREATE INDEX IF NOT EXISTS ix_chart_speed_table_id_carta ON chart_speed_table (id_carta);

CREATE TABLE IF NOT EXISTS chart_outlet_figures (
    id_carta      INTEGER NOT NULL,
    position      INTEGER,
    outlet        TEXT,
    distance_m    REAL,
    ground_m      REAL,
    pipe_kpa      REAL,
    acting_kpa    REAL,
    required_lps  REAL,
    delivered_lps REAL
);
CREATE INDEX IF NOT EXISTS ix_chart_outlet_figures_id_carta ON chart_outlet_figures (id_carta);

-- The design file (JSON) a stored chart was computed from, as it was run: with the chart's
-- nozzles it lets the chart be computed again (machine, accessories, report).
CREATE TABLE IF NOT EXISTS chart_design (
    id_carta INTEGER NOT NULL,
    design   TEXT
);
CREATE INDEX IF NOT EXISTS ix_chart_design_id_carta ON chart_design (id_carta);

-- rugosidade is the Hazen-Williams coefficient C of the material, a whole number.
CREATE TABLE IF NOT EXISTS pipe_materials (
    id         INTEGER PRIMARY KEY AUTOINCREMENT,
    name       TEXT,
    rugosidade INTEGER
);

-- first_samples and second_samples hold one reading per line ("amount distance", lines
-- separated by CR LF); pluviometer_diameter is null when the gauge diameter is unknown.
CREATE TABLE IF NOT EXISTS pivot_evaluations (
    id                   INTEGER PRIMARY KEY AUTOINCREMENT,
    name                 TEXT,
    pluviometer_diameter REAL,
    first_samples        TEXT,
    second_samples       TEXT
);

-- What the command line keeps beside an evaluation: its figures and the settings they were
-- computed with, one row a value. scope is "together" (both radial lines), "lines" (the mean
-- of the lines' figures), "line 1", "line 2", "end gun" (collectors beyond the last span),
-- "settings" or "crew" (a collector struck out: figure "<line>:<position in its readings>",
-- note the reason). value is null for a figure that is not defined.
CREATE TABLE IF NOT EXISTS pivot_evaluation_figures (
    id            INTEGER PRIMARY KEY AUTOINCREMENT,
    evaluation_id INTEGER NOT NULL,
    scope         TEXT NOT NULL,
    figure        TEXT NOT NULL,
    value         REAL,
    note          TEXT
);
CREATE UNIQUE INDEX IF NOT EXISTS ix_pivot_evaluation_figures_value
    ON pivot_evaluation_figures (evaluation_id, scope, figure);
