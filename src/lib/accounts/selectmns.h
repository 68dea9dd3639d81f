#pragma once

#include "select.h"

namespace NVB::GUI::Settings::Account {

// The provider choice of the managed edition: only local storage, and only
// when the build allows it; the service brings its own storage.
class SelectMns : public Select
{
    Q_OBJECT

public:
    explicit SelectMns(QWidget* parent = nullptr);

    static QString storageName(int type);
};

} // namespace NVB::GUI::Settings::Account
