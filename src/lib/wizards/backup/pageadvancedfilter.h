#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace NVB::GUI {

// Narrows what a file plan backs up: by file type, by folder name and by a
// few flags. The values are kept as the user typed them; the engine trims
// blanks around each pattern when it matches.
class BackupPlanEditWizard::PageAdvancedFilter : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char FieldBackupAllFiles[] = "Field_BackupAllFiles";
    static constexpr char FieldUseBackupFileTypes[] = "Field_UseBackupFileTypes";
    static constexpr char FieldBackupFileTypesValue[] = "Field_BackupFileTypesValue";
    static constexpr char FieldUseNotBakupFileTypes[] = "Field_UseNotBakupFileTypes";
    static constexpr char FieldNotBakupFileTypesValue[] = "Field_NotBakupFileTypesValue";
    static constexpr char FieldBackuEmptyFolders[] = "Field_BackuEmptyFolders";
    static constexpr char FieldSkipFolders[] = "Field_SkipFolders";
    static constexpr char FieldSkipFoldersValue[] = "Field_SkipFoldersValue";
    static constexpr char FieldExcludeSystemFolders[] = "Field_ExcludeSystemFolders";
    static constexpr char FieldSkipInUseFiles[] = "Field_SkipInUseFiles";

    explicit PageAdvancedFilter(bool isArchive, QWidget* parent = nullptr);

    void initializePage() override;
    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    // Split at each semicolon, empty parts dropped, the rest kept untrimmed.
    static QStringList splitPatterns(const QString& value);
    // Whether the empty-folders box belongs on the page for this provider.
    static bool emptyFoldersVisible(bool isArchive, int cloudType);

    QCheckBox* emptyFoldersBox() const { return m_emptyFolders; }

signals:
    void visibleEmptyFoldersCheckBox(bool visible);

private:
    bool emptyFoldersShown() const;
    QString text(const char* name) const;
    bool flag(const char* name) const;

    const bool m_isArchive;
    QRadioButton* m_allFiles;
    QRadioButton* m_include;
    QLineEdit* m_includeValue;
    QRadioButton* m_exclude;
    QLineEdit* m_excludeValue;
    QCheckBox* m_emptyFolders;
    QCheckBox* m_skipFolders;
    QLineEdit* m_skipFoldersValue;
    QCheckBox* m_hidden;
    QCheckBox* m_inUse;
};

} // namespace NVB::GUI
