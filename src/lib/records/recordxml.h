#pragma once

#include <QBitArray>
#include <QDate>
#include <QDateTime>
#include <QDomDocument>
#include <QDomElement>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTime>
#include <QUuid>

namespace NVB::Info {

// The element-level grammar shared by the plan and disk documents: every field
// is one element whose text is the value. Writers never fail; readers throw a
// QString that names the element, and the public entry points catch it, log it
// and answer a null record. Unknown elements are never looked at, which is how
// a document from a newer version still reads.
class RecordXml
{
public:
    static constexpr int Version = 1;

    static QDomElement addElement(QDomElement& parent, const QString& name);
    static void addText(QDomElement& parent, const QString& name, const QString& value);
    static void addBool(QDomElement& parent, const QString& name, bool value);
    static void addInt(QDomElement& parent, const QString& name, qint64 value);
    static void addUInt(QDomElement& parent, const QString& name, quint64 value);
    static void addUuid(QDomElement& parent, const QString& name, const QUuid& value);
    static void addDateTime(QDomElement& parent, const QString& name, const QDateTime& value);
    static void addDate(QDomElement& parent, const QString& name, const QDate& value);
    static void addTime(QDomElement& parent, const QString& name, const QTime& value);
    static void addList(QDomElement& parent, const QString& name, const QStringList& value);
    static void addBits(QDomElement& parent, const QString& name, const QBitArray& value);
    static void setVersion(QDomElement& root);

    // Throws when the root does not carry a usable version attribute.
    static int version(const QDomElement& root);
    static QDomElement element(const QDomElement& parent, const QString& name);
    static bool hasElement(const QDomElement& parent, const QString& name);
    static QString text(const QDomElement& parent, const QString& name);
    static bool toBool(const QDomElement& parent, const QString& name);
    static qint64 toInt(const QDomElement& parent, const QString& name, qint64 min, qint64 max);
    static quint64 toUInt(const QDomElement& parent, const QString& name, quint64 max = ~quint64(0));
    // One of the listed values, or an error naming the element.
    static int toEnum(const QDomElement& parent, const QString& name, const QList<int>& allowed);
    static QUuid toUuid(const QDomElement& parent, const QString& name);
    static QUuid toRequiredUuid(const QDomElement& parent, const QString& name);
    // Empty text is the invalid value; anything else must parse.
    static QDateTime toDateTime(const QDomElement& parent, const QString& name);
    static QDate toDate(const QDomElement& parent, const QString& name);
    static QTime toTime(const QDomElement& parent, const QString& name);
    static QStringList toList(const QDomElement& parent, const QString& name);
    static QBitArray toBits(const QDomElement& parent, const QString& name, int size);

    // The document's root after a parse of text; throws on malformed XML.
    static QDomElement parseRoot(QDomDocument& document, const QString& xml);
    static QString path(const QDomElement& element);
};

} // namespace NVB::Info
