#include "storemigrations.h"

#include "storedatabase.h"

namespace NVB::Engine {

namespace {

QVector<StoreMigrations::Migration> build()
{
    QVector<StoreMigrations::Migration> steps;
    // 1: plans, accounts, history and the repository as the first engine
    // wrote them.
    steps.append({1,
        {QStringLiteral(R"(CREATE TABLE plans(
        id TEXT PRIMARY KEY, profile TEXT NOT NULL DEFAULT '', xml TEXT NOT NULL, name TEXT NOT NULL,
        type INTEGER NOT NULL, subtype INTEGER NOT NULL, storage_id TEXT,
        status INTEGER NOT NULL DEFAULT 0, last_result INTEGER NOT NULL DEFAULT -1, last_run_utc TEXT,
        last_duration INTEGER NOT NULL DEFAULT 0, last_file_count INTEGER NOT NULL DEFAULT 0,
        last_file_size INTEGER NOT NULL DEFAULT 0, last_uploaded_count INTEGER NOT NULL DEFAULT 0,
        last_uploaded_size INTEGER NOT NULL DEFAULT 0, last_failed_count INTEGER NOT NULL DEFAULT 0,
        last_message TEXT NOT NULL DEFAULT '', last_scheduled_utc TEXT))"),
            QStringLiteral(R"(CREATE TABLE accounts(
        id TEXT PRIMARY KEY, profile TEXT NOT NULL DEFAULT '', display_name TEXT NOT NULL,
        type INTEGER NOT NULL, prefix TEXT NOT NULL DEFAULT '', params TEXT NOT NULL))"),
            QStringLiteral(R"(CREATE TABLE runs(
        id INTEGER PRIMARY KEY AUTOINCREMENT, plan_id TEXT NOT NULL, plan_name TEXT NOT NULL DEFAULT '',
        operation INTEGER NOT NULL, result INTEGER NOT NULL, start_utc TEXT NOT NULL,
        duration INTEGER NOT NULL DEFAULT 0, size INTEGER NOT NULL DEFAULT 0,
        file_count INTEGER NOT NULL DEFAULT 0, error_message TEXT NOT NULL DEFAULT ''))"),
            QStringLiteral("CREATE INDEX runs_by_plan ON runs(plan_id, id)"), QStringLiteral(R"(CREATE TABLE run_files(
        id INTEGER PRIMARY KEY AUTOINCREMENT, run_id INTEGER NOT NULL REFERENCES runs(id) ON DELETE CASCADE,
        plan_id TEXT NOT NULL, plan_name TEXT NOT NULL DEFAULT '', file TEXT NOT NULL,
        operation INTEGER NOT NULL, size INTEGER NOT NULL DEFAULT 0, modified_utc TEXT, finish_utc TEXT,
        duration INTEGER NOT NULL DEFAULT 0, message TEXT NOT NULL DEFAULT ''))"),
            QStringLiteral("CREATE INDEX run_files_by_plan ON run_files(plan_id, id)"),
            QStringLiteral("CREATE INDEX run_files_by_run ON run_files(run_id)"),
            QStringLiteral(R"(CREATE TABLE bunches(
        connection_id TEXT NOT NULL, id TEXT NOT NULL, display_name TEXT NOT NULL DEFAULT '',
        type INTEGER NOT NULL DEFAULT 0, plan_xml TEXT NOT NULL DEFAULT '', PRIMARY KEY(connection_id, id)))"),
            QStringLiteral(R"(CREATE TABLE generations(
        id TEXT PRIMARY KEY, bunch_id TEXT NOT NULL, connection_id TEXT NOT NULL,
        status INTEGER NOT NULL DEFAULT 0, broken_type INTEGER NOT NULL DEFAULT 0,
        deep_sync INTEGER NOT NULL DEFAULT 0, encrypted INTEGER NOT NULL DEFAULT 0,
        hint TEXT NOT NULL DEFAULT '', storage_size INTEGER NOT NULL DEFAULT 0))"),
            QStringLiteral(R"(CREATE TABLE restore_points(
        id INTEGER PRIMARY KEY AUTOINCREMENT, connection_id TEXT NOT NULL, bunch_id TEXT NOT NULL,
        generation_id TEXT NOT NULL REFERENCES generations(id) ON DELETE CASCADE, sequence INTEGER NOT NULL,
        start_utc TEXT NOT NULL, backup_type INTEGER NOT NULL, type INTEGER NOT NULL, status INTEGER NOT NULL,
        deep_sync INTEGER NOT NULL DEFAULT 0, encrypted INTEGER NOT NULL DEFAULT 0,
        size_on_storage INTEGER NOT NULL DEFAULT 0, UNIQUE(generation_id, sequence)))"),
            QStringLiteral(
                "CREATE INDEX restore_points_by_bunch ON restore_points(connection_id, bunch_id, start_utc)"),
            QStringLiteral(R"(CREATE TABLE contents(
        restore_point INTEGER NOT NULL REFERENCES restore_points(id) ON DELETE CASCADE,
        path TEXT NOT NULL, parent TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,
        modified_utc TEXT, size INTEGER NOT NULL DEFAULT 0, deleted INTEGER NOT NULL DEFAULT 0,
        object TEXT NOT NULL DEFAULT '', PRIMARY KEY(restore_point, path)) WITHOUT ROWID)"),
            QStringLiteral("CREATE INDEX contents_by_parent ON contents(restore_point, parent, name)")}});
    // 2: each stored file's SHA-256, taken while it was copied and checked
    // on every restore and verify run. Empty for copies made before.
    steps.append({2, {QStringLiteral("ALTER TABLE contents ADD COLUMN checksum BLOB NOT NULL DEFAULT x''")}});
    // 3: what change detection compares besides size: the modification
    // time in nanoseconds, the inode change time and the inode. Zero for rows
    // written before, which makes the next run copy those files once more.
    steps.append({3,
        {QStringLiteral("ALTER TABLE contents ADD COLUMN modified_ns INTEGER NOT NULL DEFAULT 0"),
            QStringLiteral("ALTER TABLE contents ADD COLUMN changed_ns INTEGER NOT NULL DEFAULT 0"),
            QStringLiteral("ALTER TABLE contents ADD COLUMN inode INTEGER NOT NULL DEFAULT 0")}});
    // 4: what a restore puts back besides the data: permission bits, owner
    // and group (-1: not known), and the target of a symbolic link.
    steps.append({4,
        {QStringLiteral("ALTER TABLE contents ADD COLUMN mode INTEGER NOT NULL DEFAULT 0"),
            QStringLiteral("ALTER TABLE contents ADD COLUMN owner INTEGER NOT NULL DEFAULT -1"),
            QStringLiteral("ALTER TABLE contents ADD COLUMN grp INTEGER NOT NULL DEFAULT -1"),
            QStringLiteral("ALTER TABLE contents ADD COLUMN link_target TEXT NOT NULL DEFAULT ''")}});
    // 5: how each object holds its file's data (0 plain, 1 zstd) and the
    // object's own size, which a compressed copy's reuse check compares
    // (-1: as the file's size, for rows written before).
    steps.append({5,
        {QStringLiteral("ALTER TABLE contents ADD COLUMN encoding INTEGER NOT NULL DEFAULT 0"),
            QStringLiteral("ALTER TABLE contents ADD COLUMN stored_size INTEGER NOT NULL DEFAULT -1")}});
    // 6: the certificates the user trusted, one leaf pinned per endpoint
    // (CertificatePinStore reads and writes them on a connection of its own).
    steps.append({6,
        {QStringLiteral(
            "CREATE TABLE certificate_pins(host TEXT NOT NULL, port INTEGER NOT NULL, "
            "sha256 TEXT NOT NULL, pem TEXT NOT NULL, added_utc TEXT NOT NULL, PRIMARY KEY(host, port))")}});
    // 7: each content row holds for a range of its generation's points
    // (first_seq to last_seq; 9223372036854775807 while it still holds in
    // the latest), so a run writes only what changed instead of every
    // file again. The rows of earlier points convert one point each.
    steps.append({7,
        {QStringLiteral(R"(CREATE TABLE point_contents(
        generation TEXT NOT NULL REFERENCES generations(id) ON DELETE CASCADE,
        path TEXT NOT NULL, first_seq INTEGER NOT NULL, last_seq INTEGER NOT NULL,
        parent TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,
        modified_utc TEXT, size INTEGER NOT NULL DEFAULT 0, deleted INTEGER NOT NULL DEFAULT 0,
        object TEXT NOT NULL DEFAULT '', checksum BLOB NOT NULL DEFAULT x'',
        modified_ns INTEGER NOT NULL DEFAULT 0, changed_ns INTEGER NOT NULL DEFAULT 0,
        inode INTEGER NOT NULL DEFAULT 0, mode INTEGER NOT NULL DEFAULT 0, owner INTEGER NOT NULL DEFAULT -1,
        grp INTEGER NOT NULL DEFAULT -1, link_target TEXT NOT NULL DEFAULT '', encoding INTEGER NOT NULL DEFAULT 0,
        stored_size INTEGER NOT NULL DEFAULT -1, PRIMARY KEY(generation, path, first_seq)) WITHOUT ROWID)"),
            QStringLiteral(R"(INSERT INTO point_contents SELECT r.generation_id, c.path, r.sequence,
        CASE WHEN r.sequence=(SELECT MAX(x.sequence) FROM restore_points x WHERE x.generation_id=r.generation_id)
        THEN 9223372036854775807 ELSE r.sequence END, c.parent, c.name, c.type, c.modified_utc, c.size,
        c.deleted, c.object, c.checksum, c.modified_ns, c.changed_ns, c.inode, c.mode, c.owner, c.grp,
        c.link_target, c.encoding, c.stored_size FROM contents c JOIN restore_points r ON r.id=c.restore_point)"),
            QStringLiteral("DROP TABLE contents"), QStringLiteral("ALTER TABLE point_contents RENAME TO contents"),
            QStringLiteral("CREATE INDEX contents_by_parent ON contents(generation, parent, last_seq, name)")}});
    // 8: the new format's chunk index cache (ChunkIndexStore): which index
    // objects of a generation were read, and every chunk's pack.
    steps.append({8,
        {QStringLiteral("CREATE TABLE chunk_index_objects(generation_id TEXT NOT NULL, object_key TEXT NOT NULL, "
                        "PRIMARY KEY(generation_id, object_key))"),
            QStringLiteral("CREATE TABLE chunk_index(generation_id TEXT NOT NULL, chunk_id BLOB NOT NULL, "
                           "pack_key TEXT NOT NULL, PRIMARY KEY(generation_id, chunk_id)) WITHOUT ROWID")}});
    // 11: history pages filtered by file operation, with or without a plan,
    // read an index in id order instead of every row of the plan; a period's
    // start is found by time.
    steps.append({11,
        {QStringLiteral("CREATE INDEX run_files_by_plan_operation ON run_files(plan_id, operation, id)"),
            QStringLiteral("CREATE INDEX run_files_by_operation ON run_files(operation, id)"),
            QStringLiteral("CREATE INDEX run_files_by_finish ON run_files(finish_utc)"),
            QStringLiteral("CREATE INDEX runs_by_start ON runs(start_utc)")}});
    // 15: the block hashes of each full version a block-level plan stored
    // (BlockStore), against which later runs store only changed blocks.
    steps.append({15,
        {QStringLiteral("CREATE TABLE block_maps(object TEXT PRIMARY KEY, checksum BLOB NOT NULL, "
                        "encoding INTEGER NOT NULL, block_size INTEGER NOT NULL, size INTEGER NOT NULL, "
                        "hashes BLOB NOT NULL) WITHOUT ROWID")}});
    // 16: a backup run writes its new and changed entries here while it
    // walks, so that its memory does not grow with the tree; the point's
    // commit moves them into `contents`.
    steps.append({16, {QStringLiteral(R"(CREATE TABLE staged_contents(
        run_id INTEGER NOT NULL, path TEXT NOT NULL, parent TEXT NOT NULL, name TEXT NOT NULL,
        type INTEGER NOT NULL, modified_utc TEXT, size INTEGER NOT NULL, deleted INTEGER NOT NULL,
        object TEXT NOT NULL, checksum BLOB NOT NULL, modified_ns INTEGER NOT NULL, changed_ns INTEGER NOT NULL,
        inode INTEGER NOT NULL, mode INTEGER NOT NULL, owner INTEGER NOT NULL, grp INTEGER NOT NULL,
        link_target TEXT NOT NULL, encoding INTEGER NOT NULL, stored_size INTEGER NOT NULL,
        PRIMARY KEY(run_id, path)) WITHOUT ROWID)")}});
    return steps;
}

} // namespace

const QVector<StoreMigrations::Migration>& StoreMigrations::all()
{
    static const QVector<Migration> steps = build();
    return steps;
}

int StoreMigrations::latestVersion()
{
    return all().isEmpty() ? 0 : all().constLast().version;
}

bool StoreMigrations::apply(StoreDatabase& database)
{
    const int current = database.userVersion();
    if (current < 0)
        return false;
    if (current > latestVersion()) {
        return database.fail(QStringLiteral("The store %1 was written by a newer engine (version %2)")
                                 .arg(database.filePath())
                                 .arg(current));
    }
    for (const Migration& step : all()) {
        if (step.version <= current)
            continue;
        const bool done = database.transaction([&] {
            for (const QString& statement : step.statements) {
                if (!database.exec(statement))
                    return false;
            }
            return database.exec(QStringLiteral("PRAGMA user_version=%1").arg(step.version));
        });
        if (!done) {
            return database.fail(QStringLiteral("Cannot bring the store %1 to version %2: %3")
                                     .arg(database.filePath())
                                     .arg(step.version)
                                     .arg(database.lastError()));
        }
    }
    return true;
}

} // namespace NVB::Engine
