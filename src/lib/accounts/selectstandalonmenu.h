#pragma once

#include <QMenu>

#include "selectstandalon.h"

namespace NVB::GUI::Settings::Account {

// The provider choice as a menu, for places with no room for the tiles. Each
// action carries its type as data.
class SelectStandalon::Menu : public QMenu
{
    Q_OBJECT

public:
    explicit Menu(bool skipOpenStack, QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings::Account
