#pragma once

#include <QMenu>

#include "select.h"

namespace NVB::GUI::Settings::Account {

// The provider choice of the standalone edition: every offered provider, in
// the fixed order of the selector.
class SelectStandalon : public Select
{
    Q_OBJECT

public:
    class Menu;

    explicit SelectStandalon(QWidget* parent = nullptr);

    // The provider's name as shown to the user; empty for a type never offered.
    static QString storageName(int type);
};

} // namespace NVB::GUI::Settings::Account
