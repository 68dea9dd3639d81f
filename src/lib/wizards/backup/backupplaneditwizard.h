#pragma once

#include "wizards/common/planwizardbase.h"

namespace NVB::Info::Plan {
class Base;
}

namespace NVB::GUI {

// Creates and edits backup plans. It registers the pages, decides which page
// follows which, and its summary page saves. A plan's format (new backup
// format or legacy) is chosen when it is created and never changes.
//
// Pages that aren't part of the wizard yet are passed over: the flow walks on
// by the rules of the missing page to the next page that exists.
class BackupPlanEditWizard : public PlanWizardBase
{
    Q_OBJECT
public:
    class PageName;
    class PageSource;
    class PageSummary;
    class PageBackupType;
    class PageAdvancedFilter;
    class PageRetentionPolicy;
    class PageCompressionEndEncryption;
    class PageFullSchedule;
    class PageBackupActions;
    class PageBackupDiskImageSource;
    class PageBackupDiskImageSourceView;
    class PageBackupDiskImageAdvancedOptions;

    // Content kinds, kept in the dynamic property Property_BackupPlanType.
    static constexpr unsigned char PlanTypeFile = 0;
    static constexpr unsigned char PlanTypeDiskImage = 1;
    static constexpr unsigned char PlanTypeFullFile = 2;
    static constexpr char Property_BackupPlanType[] = "Property_BackupPlanType";

    enum PageId {
        PageCloudId = 0,
        PageNameId = 1,
        PageSourceId = 4,
        PageCompressionEndEncryptionId = 5,
        PageConsistencyCheckId = 6,
        PageScheduleId = 7,
        PageNotificationStandaloneId = 8,
        PageSummaryId = 9,
        PageBackupTypeId = 101,
        PageAdvancedFilterId = 102,
        PageRetentionPolicyId = 103,
        PageFullScheduleId = 104,
        PageBackupDiskImageSourceId = 105,
        PageBackupDiskImageSourceViewId = 106,
        PageBackupDiskImageAdvancedOptionsId = 107,
        PageBackupActionsId = 108
    };

    explicit BackupPlanEditWizard(bool isArchive, QWidget* parent = nullptr);

    // A wizard that edits the plan, or null for a null plan. The caller keeps
    // the plan.
    static BackupPlanEditWizard* createWizard(NVB::Info::Plan::Base* plan, QWidget* parent = nullptr);

    // Titles the wizard and lets every page fill itself from the plan; a
    // disk image plan takes the disk image pages.
    void init(NVB::Info::Plan::Base* plan);
    // For a new plan: starts with the choice between a file plan and a disk
    // image plan (the latter in the new format only).
    void addBackupTypePage();

    bool isArchive() const { return m_isArchive; }
    unsigned char backupPlanType() const;

    // The current page's choice, carried on past pages that aren't registered.
    int nextId() const override;
    // Where the flow goes after page id, by that page's own rule, whether or
    // not the page is registered.
    int designNextId(int id) const;

    int advancedFilterNextId() const;
    int scheduleNextId() const;
    int retentionNextId() const;
    int actionsNextId() const;

private:
    // The page of an id, or null while that page isn't part of the wizard.
    QWizardPage* createPage(int id);
    bool hasPage(int id) const;
    bool isSingleStoragePage() const;

    const bool m_isArchive;
};

} // namespace NVB::GUI
