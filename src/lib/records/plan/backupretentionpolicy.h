#pragma once

#include <QDomElement>
#include <QPair>

namespace NVB::Info::Plan {

// What is purged from storage, and when; reached as Backup::RetentionPolicy.
class BackupRetentionPolicy
{
public:
    // Default follows the application's global retention settings.
    enum Type { Default = 0, Custom = 1 };
    enum AgeUnit { Day = 0, Week = 1, Month = 2, Year = 3 };
    // The amount, then the unit (an AgeUnit).
    using FileAge = QPair<qint32, qint32>;

    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    bool useDeleteOlder() const { return m_useDeleteOlder; }
    void setUseDeleteOlder(bool use) { m_useDeleteOlder = use; }
    FileAge deleteFileAge() const { return m_deleteFileAge; }
    void setDeleteFileAge(const FileAge& age) { m_deleteFileAge = age; }
    bool useBackupDate() const { return m_useBackupDate; }
    void setUseBackupDate(bool use) { m_useBackupDate = use; }
    bool useKeepLastVersion() const { return m_useKeepLastVersion; }
    void setUseKeepLastVersion(bool use) { m_useKeepLastVersion = use; }
    bool useKeepVersion() const { return m_useKeepVersion; }
    void setUseKeepVersion(bool use) { m_useKeepVersion = use; }
    int keepVersion() const { return m_keepVersion; }
    void setKeepVersion(int count) { m_keepVersion = count; }
    bool useDeleteLocaly() const { return m_useDeleteLocaly; }
    void setUseDeleteLocaly(bool use) { m_useDeleteLocaly = use; }
    int deleteLocalyAfter() const { return m_deleteLocalyAfter; }
    void setDeleteLocalyAfter(int days) { m_deleteLocalyAfter = days; }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

private:
    Type m_type = Default;
    bool m_useDeleteOlder = false;
    FileAge m_deleteFileAge {3, Month};
    bool m_useBackupDate = true;
    bool m_useKeepLastVersion = true;
    bool m_useKeepVersion = false;
    int m_keepVersion = 3;
    bool m_useDeleteLocaly = false;
    int m_deleteLocalyAfter = 30;
};

} // namespace NVB::Info::Plan
