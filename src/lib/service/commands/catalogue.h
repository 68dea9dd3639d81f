#pragma once

#include <QString>
#include <QStringList>

namespace NVB::Common::Communication::Commands {

// The names of every V1 command the channel knows; the factory makes no
// other.
class Catalogue
{
public:
    static const QStringList& names();
    static bool contains(const QString& name);
};

} // namespace NVB::Common::Communication::Commands
