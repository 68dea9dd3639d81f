#include "repositoryrecordsfuzz.h"

#include <cstdio>
#include <cstdlib>

#include <QJsonDocument>
#include <QJsonObject>

#include "records/repository/bunch.h"
#include "records/repository/contentobject.h"
#include "records/repository/generation.h"
#include "records/repository/restorepoint.h"
#include "records/storage/connection.h"

namespace {

// Reading, writing and reading again must come to rest: the second writing
// equals the first.
template<typename Record> void roundTrip(const QJsonObject& object)
{
    const auto record = Record::fromJson(object);
    if (!record)
        return;
    const QJsonObject written = record->toJson();
    const auto again = Record::fromJson(written);
    if (!again || again->toJson() != written) {
        std::fprintf(stderr, "repository records fuzz: %s\n", QJsonDocument(written).toJson().constData());
        std::abort();
    }
}

} // namespace

void RepositoryRecordsFuzz::feed(const QByteArray& input)
{
    if (input.isEmpty())
        return;
    const QJsonObject object = QJsonDocument::fromJson(input.mid(1)).object();
    switch (quint8(input.at(0)) % 5) {
    case 0: roundTrip<NVB::Info::Repository::Bunch>(object); break;
    case 1: roundTrip<NVB::Info::Repository::Generation>(object); break;
    case 2: roundTrip<NVB::Info::Repository::RestorePoint>(object); break;
    case 3: roundTrip<NVB::Info::Repository::ContentObject>(object); break;
    default: roundTrip<NVB::Info::Storage::Connection>(object); break;
    }
}
