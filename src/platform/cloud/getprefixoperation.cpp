#include "getprefixoperation.h"

#include "cloud/listingobject.h"
#include "core/nvldebug.h"
#include "operationerror.h"
#include "operationmanager.h"
#include "operations/listing.h"

namespace NVB::Operation {

namespace {
constexpr unsigned short PageSize = 1000;
}

GetPrefixOperation::GetPrefixOperation(
    const QMap<QString, QVariant>& config, const QString& rootPrefix, QObject* parent)
    : QObject(parent)
    , m_id(QUuid::createUuid())
    , m_config(config)
    , m_rootPrefix(rootPrefix)
{ }

GetPrefixOperation::~GetPrefixOperation()
{
    cancel();
}

void GetPrefixOperation::exec()
{
    if (m_operation) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Prefix listing %1 is already running").arg(m_id.toString());
        return;
    }
    m_prefixes.clear();
    m_lastMarker.clear();
    requestPage(QString());
}

void GetPrefixOperation::cancel()
{
    if (!m_operation)
        return;
    m_operation->disconnect(this);
    m_operation->remove();
    m_operation.reset();
}

void GetPrefixOperation::requestPage(const QString& marker)
{
    m_operation = NVL::Cloud::OperationManager::instance().listing(
        m_config, m_rootPrefix, QStringLiteral("/"), marker, PageSize);
    if (!m_operation) {
        fail(NVL::Cloud::OperationError::InvalidConfig,
            QStringLiteral("Can't list prefixes: the configuration names no known provider"));
        return;
    }
    connect(m_operation.data(), &NVL::Cloud::IOperation::finished, this, &GetPrefixOperation::onListingFinished);
    m_operation->run();
}

void GetPrefixOperation::onListingFinished()
{
    const QSharedPointer<NVL::Cloud::IOperation> operation = m_operation;
    if (!operation)
        return;
    m_operation.reset();
    operation->remove();

    if (operation->isError()) {
        fail(operation->errorCode(), operation->errorMessage());
        return;
    }
    const auto* listing = qobject_cast<NVL::Cloud::Operation::Listing*>(operation.data());
    if (!listing) {
        fail(NVL::Cloud::OperationError::InternalError, QStringLiteral("Prefix listing got no listing"));
        return;
    }
    const QString& start = m_rootPrefix;
    const QJsonArray objects = listing->data();
    for (const QJsonValue& value : objects) {
        const NVL::Cloud::Api::ListingObject object(value.toObject());
        // Only folders right at the root: "NVB_name", not "sub/NVB_name".
        if (!object.isFolder() || !object.name().startsWith(start) || object.name().contains(QLatin1Char('/')))
            continue;
        const QString prefix = object.name().mid(start.size());
        if (!prefix.isEmpty())
            m_prefixes.append(prefix);
    }
    if (!listing->marker().isEmpty()) {
        // A provider that hands back the same (or an earlier) marker would
        // have us ask for the same page for ever.
        if (!m_lastMarker.isEmpty() && listing->marker() <= m_lastMarker) {
            fail(NVL::Cloud::OperationError::InternalError,
                QStringLiteral("The provider's listing did not move past \"%1\"; prefix listing stopped")
                    .arg(listing->marker()));
            return;
        }
        m_lastMarker = listing->marker();
        requestPage(listing->marker());
        return;
    }
    m_prefixes.sort();
    emit finished(m_id, m_prefixes);
}

void GetPrefixOperation::fail(int code, const QString& message)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning()
        << QStringLiteral("Prefix listing %1 failed: (%2) %3").arg(m_id.toString(), QString::number(code), message);
    emit error(m_id, code, message);
}

} // namespace NVB::Operation
