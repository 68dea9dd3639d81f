#pragma once

#include <QMap>
#include <QPair>
#include <QSet>

#include "accounts/storagesaddcontainer.h"
#include "amazons3compatible.h"

class QComboBox;

namespace NVB::GUI::Settings::Account {

// "Add New Container" for a bucket: S3's name rules as typed, no name that
// exists already, and for providers with regions the bucket's region.
class AmazonS3Compatible::AddContainer : public Storages::AddContainer
{
    Q_OBJECT

public:
    AddContainer(const QSet<QString>& existing, bool regionRow, QWidget* parent = nullptr);

    // Location code -> (display text, endpoint host), as the cloud library
    // gives a provider's regions; shown in map order.
    void setRegions(const QMap<QString, QPair<QString, QString>>& regions);
    // The chosen region's code, trimmed; empty without regions.
    QString location() const;
    QComboBox* regionCombo() const { return m_region; }

protected slots:
    void onDataChanged() override;

private:
    QSet<QString> m_existing;
    QComboBox* m_region;
};

} // namespace NVB::GUI::Settings::Account
