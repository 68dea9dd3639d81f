#pragma once

#include <QStringList>

#include "records/plan/restore.h"

namespace NVB::Info::Plan {

// A file-level restore plan.
class RestoreFile : public Restore
{
public:
    RestoreFile();

    QString destination() const { return m_destination; }
    void setDestination(const QString& destination) { m_destination = destination; }
    QStringList restoreItems() const { return m_restoreItems; }
    void setRestoreItems(const QStringList& items) { m_restoreItems = items; }
    bool onlyNewFiles() const { return m_onlyNewFiles; }
    void setOnlyNewFiles(bool only) { m_onlyNewFiles = only; }
    bool skipExistingFiles() const { return m_skipExistingFiles; }
    void setSkipExistingFiles(bool skip) { m_skipExistingFiles = skip; }
    bool restoreDeletedFiles() const { return m_restoreDeletedFiles; }
    void setRestoreDeletedFiles(bool restore) { m_restoreDeletedFiles = restore; }
    bool restoreToOriginalLocation() const { return m_restoreToOriginalLocation; }
    void setRestoreToOriginalLocation(bool original) { m_restoreToOriginalLocation = original; }

    QString rootElement() const override;
    void readFields(const QDomElement& root) override;

protected:
    void writeFields(QDomElement& root) const override;

private:
    QString m_destination;
    QStringList m_restoreItems;
    bool m_onlyNewFiles = false;
    bool m_skipExistingFiles = false;
    bool m_restoreDeletedFiles = false;
    bool m_restoreToOriginalLocation = true;
};

} // namespace NVB::Info::Plan
