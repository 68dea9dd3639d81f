#include "plans/planxmllist.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QScopedPointer>

#include "core/nvldebug.h"
#include "plans/plancommand.h"
#include "records/plan/factory.h"
#include "service/commandresult.h"
#include "service/commands/plan.h"
#include "service/icommand.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace GetXML = Commands::Format::Plan::GetXML;
namespace PlanNotification = Notification::Format::Plan;

namespace {
QPointer<PlanXmlList> g_instance;
bool g_created = false;
} // namespace

PlanXmlList::PlanXmlList()
{
    if (QCoreApplication* app = QCoreApplication::instance())
        connect(app, &QCoreApplication::aboutToQuit, this, &QObject::deleteLater);
    if (QPointer<NotificationCenter> center = NotificationCenter::instance(); !center.isNull())
        connect(center, &NotificationCenter::notification, this, &PlanXmlList::onNotification);
}

PlanXmlList::~PlanXmlList() = default;

QPointer<PlanXmlList> PlanXmlList::instance()
{
    // Once gone at the end of the process it stays gone: late callers see null.
    if (!g_created) {
        g_created = true;
        g_instance = new PlanXmlList();
    }
    return g_instance;
}

bool PlanXmlList::containts(const QUuid& id) const
{
    return m_documents.contains(id);
}

QDomDocument PlanXmlList::planXml(const QUuid& id) const
{
    return m_documents.value(id);
}

NVB::Info::Plan::Base* PlanXmlList::plan(const QUuid& id)
{
    const auto document = m_documents.constFind(id);
    if (document == m_documents.constEnd())
        return nullptr;
    if (const auto held = m_plans.constFind(id); held != m_plans.constEnd())
        return held->data();

    // The record is read from the text form, so that what the factory sees is
    // exactly what would travel back to the engine.
    const QString text = document->toString(1);
    QDomDocument reparsed;
    QString message;
    int line = 0;
    int column = 0;
    if (!reparsed.setContent(text, &message, &line, &column)) {
        NVL::NvlDebug(QStringLiteral("NVB")).error() << QStringLiteral(
            "On read plan xml:") << QStringLiteral("%1 (line %2, column %3)").arg(message).arg(line).arg(column);
        return nullptr;
    }
    QSharedPointer<NVB::Info::Plan::Base> record = NVB::Info::Plan::Factory::create(reparsed);
    if (record.isNull()) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug() << text;
        return nullptr;
    }
    m_plans.insert(id, record);
    return record.data();
}

void PlanXmlList::setLastCreatedPlan(const QUuid& id)
{
    m_lastCreatedPlan = id;
}

void PlanXmlList::getPlan(const QUuid& id)
{
    emit beginLoad(id);
    try {
        ICommand* command = PlanCommand::create(QLatin1String(GetXML::Name));
        connect(command, &ICommand::complite, this, &PlanXmlList::onCommandResult);
        connect(command, &ICommand::error, this, &PlanXmlList::onCommandResult);
        connect(command, &ICommand::timeout, this, &PlanXmlList::onCommandResult);
        PlanCommand::exec(command,
            {{QLatin1String(GetXML::Request::ID), id.toString()},
                {QLatin1String(GetXML::Request::Profile), PlanCommand::profile()}});
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
}

void PlanXmlList::onCommandResult()
{
    auto* command = qobject_cast<ICommand*>(sender());
    if (!command)
        return;
    try {
        const QJsonObject data = CommandResult::data(command);
        const QUuid id(CommandResult::params(command).value(QLatin1String(GetXML::Request::ID)).toString());
        const QString text = data.value(QLatin1String(GetXML::Reply::Key)).toString();
        QDomDocument document;
        if (id.isNull() || !document.setContent(text)) {
            NVL::NvlDebug(QStringLiteral("NVB")).debug() << text;
            throw QStringLiteral("Error on XML plan content");
        }
        m_documents.insert(id, document);
        emit complite(id);
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        emit error(text);
    }
    command->deleteLater();
}

void PlanXmlList::onNotification(const QJsonDocument& document)
{
    QScopedPointer<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
    if (!parser) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug() << QStringLiteral("Notiifcation is 0x00");
        return;
    }
    const QUuid type = parser->type();
    if (type == PlanNotification::Update::Type) {
        const QUuid id(parser->message().value(QLatin1String(PlanNotification::Update::Id)).toString());
        m_plans.remove(id);
        if (m_documents.remove(id) > 0) {
            emit update(id);
            getPlan(id);
        }
    } else if (type == PlanNotification::Remove::Type) {
        const QUuid id(parser->message().value(QLatin1String(PlanNotification::Remove::Id)).toString());
        m_documents.remove(id);
        m_plans.remove(id);
    }
}

} // namespace NVB::GUI
