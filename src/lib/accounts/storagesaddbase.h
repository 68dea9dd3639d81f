#pragma once

#include <QUuid>

#include "storages.h"

namespace NVB::GUI::Settings {

// The id of the account a dialog edits: a new one for a new account, the
// stored one once the dialog is opened on an existing account.
class Storages::AddBase
{
public:
    AddBase();
    virtual ~AddBase();

    QUuid id() const { return m_id; }

protected:
    void setId(const QUuid& id) { m_id = id; }

private:
    QUuid m_id;
};

} // namespace NVB::GUI::Settings
