#pragma once

#include <QByteArray>

// One fuzz input into the repository's JSON records (bunch, generation,
// restore point, content object, connection), shared by the libFuzzer target
// and the test that replays kept inputs. The first byte picks the record,
// the rest is its JSON. Aborts when a record that was read does not write
// JSON that reads back to the same record.
class RepositoryRecordsFuzz
{
public:
    static void feed(const QByteArray& input);
};
