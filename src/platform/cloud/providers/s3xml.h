#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include "cloud/listingobject.h"

namespace NVL::Cloud {

// Reads the XML documents an S3 server answers. Unknown elements are
// skipped; a document that is not XML reads as empty with ok false.
class S3Xml
{
public:
    struct Error
    {
        QString code;
        QString message;
        QString region;
    };
    struct Bucket
    {
        QString name;
        QDateTime created;
    };
    struct Listing
    {
        QVector<Api::ListingObject> objects; // files, then folders
        bool truncated = false;
        QString nextMarker;
        QString lastKey; // the greatest key or prefix of the page
    };

    static Error error(const QByteArray& xml);
    static QVector<Bucket> buckets(const QByteArray& xml, bool* ok);
    static Listing listing(const QByteArray& xml, const QString& prefix, const QString& delimiter, bool* ok);
    static QString location(const QByteArray& xml);
    static bool isLifecycleConfiguration(const QByteArray& xml);
    static QByteArray createBucketConfiguration(const QString& location);
};

} // namespace NVL::Cloud
