#include "recordxml.h"

namespace NVB::Info {

namespace {

const QString ItemElement = QStringLiteral("Item");
const QString DateTimeFormat = QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'");
const QString TimeFormat = QStringLiteral("HH:mm:ss.zzz");

} // namespace

QDomElement RecordXml::addElement(QDomElement& parent, const QString& name)
{
    QDomElement child = parent.ownerDocument().createElement(name);
    parent.appendChild(child);
    return child;
}

void RecordXml::addText(QDomElement& parent, const QString& name, const QString& value)
{
    QDomElement child = addElement(parent, name);
    if (!value.isEmpty())
        child.appendChild(parent.ownerDocument().createTextNode(value));
}

void RecordXml::addBool(QDomElement& parent, const QString& name, bool value)
{
    addText(parent, name, value ? QStringLiteral("true") : QStringLiteral("false"));
}

void RecordXml::addInt(QDomElement& parent, const QString& name, qint64 value)
{
    addText(parent, name, QString::number(value));
}

void RecordXml::addUInt(QDomElement& parent, const QString& name, quint64 value)
{
    addText(parent, name, QString::number(value));
}

void RecordXml::addUuid(QDomElement& parent, const QString& name, const QUuid& value)
{
    addText(parent, name, value.isNull() ? QString() : value.toString(QUuid::WithBraces));
}

void RecordXml::addDateTime(QDomElement& parent, const QString& name, const QDateTime& value)
{
    addText(parent, name, value.isValid() ? value.toUTC().toString(DateTimeFormat) : QString());
}

void RecordXml::addDate(QDomElement& parent, const QString& name, const QDate& value)
{
    addText(parent, name, value.isValid() ? value.toString(Qt::ISODate) : QString());
}

void RecordXml::addTime(QDomElement& parent, const QString& name, const QTime& value)
{
    addText(parent, name, value.isValid() ? value.toString(TimeFormat) : QString());
}

void RecordXml::addList(QDomElement& parent, const QString& name, const QStringList& value)
{
    QDomElement list = addElement(parent, name);
    for (const QString& item : value)
        addText(list, ItemElement, item);
}

void RecordXml::addBits(QDomElement& parent, const QString& name, const QBitArray& value)
{
    QString text;
    for (int i = 0; i < value.size(); ++i)
        text.append(value.testBit(i) ? QLatin1Char('1') : QLatin1Char('0'));
    addText(parent, name, text);
}

void RecordXml::setVersion(QDomElement& root)
{
    root.setAttribute(QStringLiteral("version"), Version);
}

int RecordXml::version(const QDomElement& root)
{
    bool ok = false;
    const int value = root.attribute(QStringLiteral("version")).toInt(&ok);
    if (!ok || value < 1)
        throw QStringLiteral("Element <%1> has no valid version attribute").arg(root.tagName());
    return value;
}

QString RecordXml::path(const QDomElement& element)
{
    QStringList names;
    for (QDomElement e = element; !e.isNull(); e = e.parentNode().toElement())
        names.prepend(e.tagName());
    return names.join(QLatin1Char('/'));
}

QDomElement RecordXml::element(const QDomElement& parent, const QString& name)
{
    const QDomElement child = parent.firstChildElement(name);
    if (child.isNull())
        throw QStringLiteral("Missing element <%1> in <%2>").arg(name, path(parent));
    return child;
}

bool RecordXml::hasElement(const QDomElement& parent, const QString& name)
{
    return !parent.firstChildElement(name).isNull();
}

QString RecordXml::text(const QDomElement& parent, const QString& name)
{
    const QDomElement child = element(parent, name);
    if (!child.firstChildElement().isNull())
        throw QStringLiteral("Element <%1> must hold text only").arg(path(child));
    return child.text();
}

bool RecordXml::toBool(const QDomElement& parent, const QString& name)
{
    const QString value = text(parent, name);
    if (value == QLatin1String("true"))
        return true;
    if (value == QLatin1String("false"))
        return false;
    throw QStringLiteral("Element <%1/%2> is not a boolean").arg(path(parent), name);
}

qint64 RecordXml::toInt(const QDomElement& parent, const QString& name, qint64 min, qint64 max)
{
    bool ok = false;
    const qint64 value = text(parent, name).toLongLong(&ok);
    if (!ok || value < min || value > max)
        throw QStringLiteral("Element <%1/%2> is not an integer from %3 to %4")
            .arg(path(parent), name)
            .arg(min)
            .arg(max);
    return value;
}

quint64 RecordXml::toUInt(const QDomElement& parent, const QString& name, quint64 max)
{
    bool ok = false;
    const quint64 value = text(parent, name).toULongLong(&ok);
    if (!ok || value > max)
        throw QStringLiteral("Element <%1/%2> is not an unsigned integer up to %3").arg(path(parent), name).arg(max);
    return value;
}

int RecordXml::toEnum(const QDomElement& parent, const QString& name, const QList<int>& allowed)
{
    bool ok = false;
    const int value = text(parent, name).toInt(&ok);
    if (!ok || !allowed.contains(value))
        throw QStringLiteral("Element <%1/%2> holds no known value").arg(path(parent), name);
    return value;
}

QUuid RecordXml::toUuid(const QDomElement& parent, const QString& name)
{
    const QString value = text(parent, name);
    if (value.isEmpty())
        return QUuid();
    const QUuid id = QUuid::fromString(value);
    if (id.isNull())
        throw QStringLiteral("Element <%1/%2> is not an id").arg(path(parent), name);
    return id;
}

QUuid RecordXml::toRequiredUuid(const QDomElement& parent, const QString& name)
{
    const QUuid id = toUuid(parent, name);
    if (id.isNull())
        throw QStringLiteral("Element <%1/%2> must hold an id").arg(path(parent), name);
    return id;
}

QDateTime RecordXml::toDateTime(const QDomElement& parent, const QString& name)
{
    const QString value = text(parent, name);
    if (value.isEmpty())
        return QDateTime();
    QDateTime moment = QDateTime::fromString(value, DateTimeFormat);
    if (!moment.isValid())
        throw QStringLiteral("Element <%1/%2> is not a UTC date and time").arg(path(parent), name);
    moment.setTimeSpec(Qt::UTC);
    return moment;
}

QDate RecordXml::toDate(const QDomElement& parent, const QString& name)
{
    const QString value = text(parent, name);
    if (value.isEmpty())
        return QDate();
    const QDate date = QDate::fromString(value, Qt::ISODate);
    if (!date.isValid())
        throw QStringLiteral("Element <%1/%2> is not a date").arg(path(parent), name);
    return date;
}

QTime RecordXml::toTime(const QDomElement& parent, const QString& name)
{
    const QString value = text(parent, name);
    if (value.isEmpty())
        return QTime();
    const QTime time = QTime::fromString(value, TimeFormat);
    if (!time.isValid())
        throw QStringLiteral("Element <%1/%2> is not a time of day").arg(path(parent), name);
    return time;
}

QStringList RecordXml::toList(const QDomElement& parent, const QString& name)
{
    const QDomElement list = element(parent, name);
    QStringList result;
    for (QDomElement item = list.firstChildElement(ItemElement); !item.isNull();
         item = item.nextSiblingElement(ItemElement)) {
        if (!item.firstChildElement().isNull())
            throw QStringLiteral("Element <%1> must hold text only").arg(path(item));
        result.append(item.text());
    }
    return result;
}

QBitArray RecordXml::toBits(const QDomElement& parent, const QString& name, int size)
{
    const QString value = text(parent, name);
    if (value.size() != size)
        throw QStringLiteral("Element <%1/%2> must hold %3 bits").arg(path(parent), name).arg(size);
    QBitArray bits(size);
    for (int i = 0; i < size; ++i) {
        if (value.at(i) == QLatin1Char('1'))
            bits.setBit(i);
        else if (value.at(i) != QLatin1Char('0'))
            throw QStringLiteral("Element <%1/%2> must hold only 0 and 1").arg(path(parent), name);
    }
    return bits;
}

QDomElement RecordXml::parseRoot(QDomDocument& document, const QString& xml)
{
    QString message;
    int line = 0;
    int column = 0;
    if (xml.trimmed().isEmpty())
        throw QStringLiteral("Empty XML document");
    if (!document.setContent(xml, &message, &line, &column))
        throw QStringLiteral("XML error at line %1, column %2: %3").arg(line).arg(column).arg(message);
    return document.documentElement();
}

} // namespace NVB::Info
