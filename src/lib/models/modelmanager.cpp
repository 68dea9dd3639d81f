#include "models/modelmanager.h"

#include <QCoreApplication>

#include "models/modelcreator.h"

namespace NVB::GUI {

namespace {
QPointer<ModelManager> g_instance;
bool g_created = false;
} // namespace

ModelManager::ModelManager()
{
    if (QCoreApplication* app = QCoreApplication::instance())
        connect(app, &QCoreApplication::aboutToQuit, this, &QObject::deleteLater);
}

ModelManager::~ModelManager() = default;

QPointer<ModelManager> ModelManager::instance()
{
    // Once gone at the end of the process it stays gone: late callers see null.
    if (!g_created) {
        g_created = true;
        g_instance = new ModelManager();
    }
    return g_instance;
}

bool ModelManager::registrateCreator(ModelCreator& creator)
{
    const QString type = creator.type();
    if (m_creators.contains(type))
        return false;
    m_creators.insert(type, &creator);
    return true;
}

QAbstractItemModel* ModelManager::create(const QString& type) const
{
    ModelCreator* creator = m_creators.value(type, nullptr);
    return creator ? creator->create() : nullptr;
}

} // namespace NVB::GUI
