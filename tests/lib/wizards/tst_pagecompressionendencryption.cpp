#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "records/plan/backupfile.h"
#include "testmain.h"
#include "widgets/attentionframe.h"
#include "wizardfixture.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/currentlanguageframe.h"
#include "wizards/backup/pagecompressionendencryption.h"
#include "wizards/backup/storageclassinfo.h"

using NVB::GUI::BackupPlanEditWizard;
using Page = NVB::GUI::BackupPlanEditWizard::PageCompressionEndEncryption;
using NVB::Info::Plan::BackupFile;

namespace {

// Answers the next message box with the button, and records its title.
struct Answer
{
    explicit Answer(QMessageBox::StandardButton button)
    {
        QTimer::singleShot(0, [this, button] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                title = box->windowTitle();
                box->button(button)->click();
            }
        });
    }
    QString title;
};

Page* compressionPage(BackupPlanEditWizard& wizard)
{
    return qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageCompressionEndEncryptionId));
}

void setPassword(Page* page, const QString& password, const QString& confirm, const QString& hint = QString())
{
    page->encryptionBox()->setChecked(true);
    page->passwordEdit()->setText(password);
    page->confirmEdit()->setText(confirm);
    page->hintEdit()->setText(hint);
}

} // namespace

class TestPageCompressionEndEncryption : public QObject
{
    Q_OBJECT
private slots:
    void init() { WizardStorage::ensureRegistered(); }
    void shouldNeedMatchingPasswordWithoutItInHint();
    void shouldAskToWriteDownNewPassword_data();
    void shouldAskToWriteDownNewPassword();
    void shouldOfferRebackupWhenLegacyPasswordChanges_data();
    void shouldOfferRebackupWhenLegacyPasswordChanges();
    void shouldAskNothingForChangedPasswordInNewFormat();
    void shouldWriteHintInBase64AndReadPlanBack();
    void shouldShowProviderRowsForAccount_data();
    void shouldShowProviderRowsForAccount();
};

void TestPageCompressionEndEncryption::shouldNeedMatchingPasswordWithoutItInHint()
{
    BackupPlanEditWizard wizard(false);
    wizard.show();
    Page* page = compressionPage(wizard);
    QVERIFY(page->isComplete());
    setPassword(page, QStringLiteral("secret"), QStringLiteral("secre"));
    QVERIFY(!page->isComplete());
    QVERIFY(page->mismatchFrame()->isVisibleTo(page));
    page->confirmEdit()->setText(QStringLiteral("secret"));
    QVERIFY(page->isComplete());
    QVERIFY(!page->mismatchFrame()->isVisibleTo(page));
    Answer warning(QMessageBox::Ok);
    page->hintEdit()->setText(QStringLiteral("my secret"));
    QVERIFY(!page->isComplete());
    page->hintEdit()->setText(QStringLiteral("my Secret"));
    QVERIFY(page->isComplete());
    page->passwordEdit()->clear();
    page->confirmEdit()->clear();
    QVERIFY(!page->isComplete());
}

void TestPageCompressionEndEncryption::shouldAskToWriteDownNewPassword_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("ok") << int(QMessageBox::Ok) << true;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << false;
}

void TestPageCompressionEndEncryption::shouldAskToWriteDownNewPassword()
{
    QFETCH(int, button);
    QFETCH(bool, accepted);
    BackupPlanEditWizard wizard(false);
    Page* page = compressionPage(wizard);
    setPassword(page, QStringLiteral("pw"), QStringLiteral("pw"));
    Answer answer(static_cast<QMessageBox::StandardButton>(button));
    QCOMPARE(page->validatePage(), accepted);
    QCOMPARE(answer.title, QStringLiteral("Write down your password!"));
    // Cancel keeps what was typed.
    QCOMPARE(page->passwordEdit()->text(), QStringLiteral("pw"));
    if (accepted) {
        // Accepted once: Next again asks nothing.
        QVERIFY(page->validatePage());
    }
}

void TestPageCompressionEndEncryption::shouldOfferRebackupWhenLegacyPasswordChanges_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<bool>("rebackup");
    QTest::newRow("ok") << int(QMessageBox::Ok) << true << true;
    QTest::newRow("no") << int(QMessageBox::No) << true << false;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << false;
}

void TestPageCompressionEndEncryption::shouldOfferRebackupWhenLegacyPasswordChanges()
{
    QFETCH(int, button);
    QFETCH(bool, accepted);
    QFETCH(bool, rebackup);
    BackupFile stored;
    stored.setIsArchive(false);
    stored.encryption().setEnabled(true);
    stored.encryption().setPassword(QStringLiteral("old"));
    QScopedPointer<BackupPlanEditWizard> wizard(BackupPlanEditWizard::createWizard(&stored));
    Page* page = compressionPage(*wizard);
    // Loaded and unchanged: nothing to ask.
    QVERIFY(page->validatePage());
    setPassword(page, QStringLiteral("new"), QStringLiteral("new"));
    Answer answer(static_cast<QMessageBox::StandardButton>(button));
    QCOMPARE(page->validatePage(), accepted);
    QCOMPARE(answer.title, QStringLiteral("Encryption option has changed!"));
    QCOMPARE(page->reBackupMoment().isValid(), rebackup);
    BackupFile written;
    QVERIFY(page->initPlan(&written));
    QCOMPARE(written.reBackupModifiedSince().isValid(), rebackup);
}

void TestPageCompressionEndEncryption::shouldAskNothingForChangedPasswordInNewFormat()
{
    BackupFile stored;
    stored.setIsArchive(true);
    stored.encryption().setEnabled(true);
    stored.encryption().setPassword(QStringLiteral("old"));
    QScopedPointer<BackupPlanEditWizard> wizard(BackupPlanEditWizard::createWizard(&stored));
    wizard->show();
    Page* page = compressionPage(*wizard);
    QVERIFY(!page->fullBackupFrame()->isVisibleTo(page));
    setPassword(page, QStringLiteral("new"), QStringLiteral("new"));
    QVERIFY(page->fullBackupFrame()->isVisibleTo(page));
    Answer none(QMessageBox::Cancel);
    QVERIFY(page->validatePage());
    QVERIFY(none.title.isEmpty());
}

void TestPageCompressionEndEncryption::shouldWriteHintInBase64AndReadPlanBack()
{
    BackupPlanEditWizard wizard(false);
    Page* page = compressionPage(wizard);
    page->compressionBox()->setChecked(false);
    setPassword(page, QStringLiteral("pw"), QStringLiteral("pw"), QStringLiteral("Größe"));
    page->algorithmBox()->setCurrentIndex(1);
    BackupFile written;
    QVERIFY(page->initPlan(&written));
    QVERIFY(!written.useCompression());
    QVERIFY(written.encryption().isEnabled());
    QCOMPARE(written.encryption().encryptionType(), NVB::Info::Plan::BackupEncyption::AES192);
    QCOMPARE(written.encryption().hint(), QStringLiteral("Größe").toUtf8().toBase64());
    QVERIFY(page->summary().contains(QStringLiteral("Encryption: AES 192")));

    BackupPlanEditWizard other(false);
    Page* reread = compressionPage(other);
    written.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::DES64);
    QVERIFY(reread->fromPlan(&written));
    QCOMPARE(reread->hintEdit()->text(), QStringLiteral("Größe"));
    QCOMPARE(reread->confirmEdit()->text(), QStringLiteral("pw"));
    // An algorithm the box doesn't offer leaves it on its default.
    QCOMPARE(reread->algorithmBox()->currentIndex(), 2);
}

void TestPageCompressionEndEncryption::shouldShowProviderRowsForAccount_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("sse");
    QTest::addColumn<int>("classes");
    QTest::newRow("Amazon S3") << 2 << true << 7;
    QTest::newRow("unified S3") << 37 << true << 0;
    QTest::newRow("Azure") << 3 << false << 3;
    QTest::newRow("file system") << 8 << false << 0;
}

void TestPageCompressionEndEncryption::shouldShowProviderRowsForAccount()
{
    QFETCH(int, type);
    QFETCH(bool, sse);
    QFETCH(int, classes);
    BackupPlanEditWizard wizard(false);
    wizard.show();
    Page* page = compressionPage(wizard);
    page->setField(QStringLiteral("Field_CloudType"), QString::number(type));
    page->initializePage();
    QCOMPARE(page->sseBox()->isVisibleTo(page), sse);
    QCOMPARE(page->storageClassBox()->isVisibleTo(page), classes > 0);
    if (classes > 0) {
        QCOMPARE(page->storageClassBox()->count(), classes);
        // Every class with a description of its own carries it as tooltip.
        QVERIFY(!page->storageClassBox()->itemData(classes - 1, Qt::ToolTipRole).toString().isEmpty());
        page->storageClassBox()->setCurrentIndex(classes - 1);
        BackupFile written;
        QVERIFY(page->initPlan(&written));
        if (type == 3) {
            QCOMPARE(written.storageInfo().storageClassAzureBlob(), NVB::Info::Plan::BackupStorageInfo::Archive);
            QVERIFY(page->previewFrame()->isVisibleTo(page));
            QVERIFY(page->summary().contains(QStringLiteral("Use Azure Archive")));
        } else {
            QCOMPARE(
                written.storageInfo().storageClassAmazonS3(), NVB::Info::Plan::BackupStorageInfo::GlacierDeepArchive);
            QVERIFY(page->summary().contains(QStringLiteral("Use Glacier Deep Archive")));
        }
    }
    // The language note follows the password field's focus.
    QVERIFY(page->languageFrame()->text().startsWith(QStringLiteral("Current language: ")));
}

NVB_TEST_MAIN(TestPageCompressionEndEncryption)
#include "tst_pagecompressionendencryption.moc"
