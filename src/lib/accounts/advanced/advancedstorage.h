#pragma once

#include "advanced.h"

class QCheckBox;

namespace NVB::GUI::Settings::Account {

// The advanced options of a network destination: the prefix and "Use SSL".
class AdvancedStorage : public Advanced
{
    Q_OBJECT

public:
    AdvancedStorage(bool prefixDisabled, bool useSsl, bool hideSsl, Storages::Add& dialog, QWidget* parent = nullptr);
    AdvancedStorage(const QString& prefix, const QStringList& items, bool prefixDisabled, bool useSsl, bool hideSsl,
        QWidget* parent = nullptr);

    bool useSsl() const;
    QCheckBox* sslBox() const { return m_ssl; }

private:
    void build(bool useSsl, bool hideSsl);

    QCheckBox* m_ssl = nullptr;
};

} // namespace NVB::GUI::Settings::Account
