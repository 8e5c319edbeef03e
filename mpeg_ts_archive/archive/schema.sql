-- What was not measured is NULL, never 0. Paths are text, as in the lists.
CREATE TABLE IF NOT EXISTS recording (
    path TEXT PRIMARY KEY,
    size INTEGER,       -- bytes, when it was looked at
    mtime REAL,         -- seconds since 1970, when it was looked at
    seconds REAL,       -- that looking at it took
    exit INTEGER,       -- status; minus the signal that ended the program; NULL: it could not be opened
    message TEXT,       -- why there is no overview; NULL: there is one, and what follows is from it
    standard TEXT,      -- DVB, ATSC, ISDB, partial, MPEG
    duration_s REAL,
    mean_bps INTEGER,
    packets INTEGER,
    programs INTEGER,
    p1_failed INTEGER,  -- checks of priority 1 that failed
    p2_failed INTEGER,
    p3_failed INTEGER,
    list INTEGER        -- lists/000007.tsv and results/000007.zip are 7
) WITHOUT ROWID;

CREATE TABLE IF NOT EXISTS service (
    path TEXT,
    number INTEGER,     -- program_number, service_id
    name TEXT,
    provider TEXT
);
CREATE INDEX IF NOT EXISTS service_by_path ON service (path);
CREATE INDEX IF NOT EXISTS service_by_name ON service (name);

CREATE TABLE IF NOT EXISTS failed_check (
    path TEXT,
    id TEXT,            -- 1.4
    count INTEGER,
    first_s REAL,
    worst REAL          -- in the unit of the check
);
CREATE INDEX IF NOT EXISTS failed_check_by_path ON failed_check (path);
CREATE INDEX IF NOT EXISTS failed_check_by_id ON failed_check (id);

-- Pages that are kept in results: pages/0001.html of the recording's list.
CREATE TABLE IF NOT EXISTS page (
    path TEXT PRIMARY KEY,
    member TEXT
) WITHOUT ROWID;

-- Results that are in here. One that has become another file since, because its list was done anew, is read again.
CREATE TABLE IF NOT EXISTS result (
    list INTEGER PRIMARY KEY,
    size INTEGER,
    mtime_ns INTEGER
);
