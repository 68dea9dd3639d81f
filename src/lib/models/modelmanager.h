#pragma once

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>

class QAbstractItemModel;

namespace NVB::GUI {

class ModelCreator;

// Hands out the application-wide shared models by name. The executable
// registers the creators before it opens any view; the library only asks.
class ModelManager : public QObject
{
    Q_OBJECT

public:
    static QPointer<ModelManager> instance();

    // False, and nothing changes, when a creator of that type is registered
    // already. The creator must outlive the manager or stay registered.
    bool registrateCreator(ModelCreator& creator);
    // Null for a name nobody registered.
    QAbstractItemModel* create(const QString& type) const;

private:
    ModelManager();
    ~ModelManager() override;

    QMap<QString, ModelCreator*> m_creators;
};

} // namespace NVB::GUI
