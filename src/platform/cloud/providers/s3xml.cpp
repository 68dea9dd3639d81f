#include "s3xml.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace NVL::Cloud {

namespace {

QDateTime timeOf(const QString& text)
{
    QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        time = QDateTime::fromString(text, Qt::ISODate);
    return time.toUTC();
}

} // namespace

S3Xml::Error S3Xml::error(const QByteArray& xml)
{
    Error error;
    QXmlStreamReader reader(xml);
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("Error")) {
            reader.skipCurrentElement();
            continue;
        }
        while (reader.readNextStartElement()) {
            if (reader.name() == QLatin1String("Code"))
                error.code = reader.readElementText();
            else if (reader.name() == QLatin1String("Message"))
                error.message = reader.readElementText();
            else if (reader.name() == QLatin1String("Region"))
                error.region = reader.readElementText();
            else
                reader.skipCurrentElement();
        }
    }
    return error;
}

QVector<S3Xml::Bucket> S3Xml::buckets(const QByteArray& xml, bool* ok)
{
    QVector<Bucket> buckets;
    QXmlStreamReader reader(xml);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("ListAllMyBucketsResult")) {
        *ok = false;
        return buckets;
    }
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("Buckets")) {
            reader.skipCurrentElement();
            continue;
        }
        while (reader.readNextStartElement()) {
            if (reader.name() != QLatin1String("Bucket")) {
                reader.skipCurrentElement();
                continue;
            }
            Bucket bucket;
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("Name"))
                    bucket.name = reader.readElementText();
                else if (reader.name() == QLatin1String("CreationDate"))
                    bucket.created = timeOf(reader.readElementText());
                else
                    reader.skipCurrentElement();
            }
            buckets.append(bucket);
        }
    }
    *ok = !reader.hasError();
    return buckets;
}

S3Xml::Listing S3Xml::listing(const QByteArray& xml, const QString& prefix, const QString& delimiter, bool* ok)
{
    Listing listing;
    QVector<Api::ListingObject> folders;
    QXmlStreamReader reader(xml);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("ListBucketResult")) {
        *ok = false;
        return listing;
    }
    while (reader.readNextStartElement()) {
        const auto name = reader.name();
        if (name == QLatin1String("IsTruncated")) {
            listing.truncated = reader.readElementText() == QLatin1String("true");
        } else if (name == QLatin1String("NextMarker")) {
            listing.nextMarker = reader.readElementText();
        } else if (name == QLatin1String("Contents")) {
            QString key;
            qint64 size = 0;
            QDateTime modified;
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("Key"))
                    key = reader.readElementText();
                else if (reader.name() == QLatin1String("Size"))
                    size = reader.readElementText().toLongLong();
                else if (reader.name() == QLatin1String("LastModified"))
                    modified = timeOf(reader.readElementText());
                else
                    reader.skipCurrentElement();
            }
            listing.lastKey = qMax(listing.lastKey, key);
            // The marker object of the listed folder itself is not an entry.
            if (key == prefix && !delimiter.isEmpty() && key.endsWith(delimiter))
                continue;
            if (!delimiter.isEmpty() && key.endsWith(delimiter))
                folders.append(Api::ListingObject(key.chopped(delimiter.size()), true, 0, modified));
            else
                listing.objects.append(Api::ListingObject(key, false, size, modified));
        } else if (name == QLatin1String("CommonPrefixes")) {
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("Prefix")) {
                    QString folder = reader.readElementText();
                    listing.lastKey = qMax(listing.lastKey, folder);
                    if (!delimiter.isEmpty() && folder.endsWith(delimiter))
                        folder.chop(delimiter.size());
                    folders.append(Api::ListingObject(folder, true, 0, QDateTime()));
                } else {
                    reader.skipCurrentElement();
                }
            }
        } else {
            reader.skipCurrentElement();
        }
    }
    listing.objects += folders;
    *ok = !reader.hasError();
    return listing;
}

QString S3Xml::location(const QByteArray& xml)
{
    QXmlStreamReader reader(xml);
    if (reader.readNextStartElement() && reader.name() == QLatin1String("LocationConstraint"))
        return reader.readElementText().trimmed();
    return QString();
}

bool S3Xml::isLifecycleConfiguration(const QByteArray& xml)
{
    QXmlStreamReader reader(xml);
    return reader.readNextStartElement() && reader.name() == QLatin1String("LifecycleConfiguration");
}

QByteArray S3Xml::createBucketConfiguration(const QString& location)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(QStringLiteral("CreateBucketConfiguration"));
    writer.writeDefaultNamespace(QStringLiteral("http://s3.amazonaws.com/doc/2006-03-01/"));
    writer.writeTextElement(QStringLiteral("LocationConstraint"), location);
    writer.writeEndElement();
    return xml;
}

} // namespace NVL::Cloud
