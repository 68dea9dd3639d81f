#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUuid>

namespace NVB::Common::Communication {

class ICommand;
namespace V2 {
class Command;
}

// Makes command objects. Only commands of the catalogues are made: an unknown
// name or id gives null. The caller owns the command and disposes of it with
// deleteLater() once it has ended.
class Manager : public QObject
{
    Q_OBJECT
public:
    static QPointer<Manager> instance();

    ICommand* commandFactory(const QString& name);
    V2::Command* commandFactoryV2(const QUuid& commandId);

private:
    Manager();
    static Manager* s_instance;
};

} // namespace NVB::Common::Communication
