#include <QAbstractButton>
#include <QDir>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "app/application.h"
#include "app/icons/imagemanager.h"
#include "records/plan/backupfile.h"
#include "testmain.h"
#include "wizards/common/pagename.h"
#include "wizards/common/pagesource.h"
#include "wizards/common/pagesummary.h"

using NVB::GUI::PlanWizardBase;

namespace {

// A plan page that says who it is and remembers being asked to write.
class MarkPage : public PlanWizardBase::PageBase
{
public:
    MarkPage(const QString& name, int next)
        : PageBase(name)
        , m_next(next)
    { }

    int nextId() const override { return m_next; }
    void setNext(int next) { m_next = next; }
    QString summary() override { return valueRow(name() + QLatin1Char(':'), QStringLiteral("value")); }
    bool initPlan(NVB::Info::Plan::Base* plan) override { return plan != nullptr; }
    bool fromPlan(NVB::Info::Plan::Base* plan) override { return plan != nullptr; }

private:
    int m_next;
};

// The frame's source page with nothing to write.
class TreePage : public PlanWizardBase::PageSource
{
public:
    TreePage()
        : PageSource(QStringLiteral("Source"))
    { }
    QString summary() override { return QString(); }
    bool initPlan(NVB::Info::Plan::Base*) override { return false; }
    bool fromPlan(NVB::Info::Plan::Base*) override { return false; }
};

struct Flow
{
    Flow()
        : wizard(PlanWizardBase::PlanTypeBackup)
    {
        name = new PlanWizardBase::PageName();
        middle = new MarkPage(QStringLiteral("Middle"), 5);
        optional = new MarkPage(QStringLiteral("Optional"), 9);
        summary = new PlanWizardBase::PageSummary();
        wizard.setPage(1, name);
        wizard.setPage(4, middle);
        wizard.setPage(5, optional);
        wizard.setPage(9, summary);
    }

    QLineEdit* nameEdit() const { return name->findChild<QLineEdit*>(); }

    PlanWizardBase wizard;
    PlanWizardBase::PageName* name;
    MarkPage* middle;
    MarkPage* optional;
    PlanWizardBase::PageSummary* summary;
};

} // namespace

class TestPlanWizardBase : public QObject
{
    Q_OBJECT

private slots:
    void shouldTakeBackgroundFromImagesOfInstallation();
    void shouldRefuseSecondExecWhileOneIsOpen_data();
    void shouldRefuseSecondExecWhileOneIsOpen();
    void shouldNotCompleteBlankName_data();
    void shouldNotCompleteBlankName();
    void shouldSummariseOnlyVisitedPagesAndKeepNameGoingBack();
    void shouldHideRunNowBySignal();
    void shouldWriteAndReadNameUntrimmed();
    void shouldTrimInternalPaths_data();
    void shouldTrimInternalPaths();
    void shouldWidenToLargestPage();
};

void TestPlanWizardBase::shouldTakeBackgroundFromImagesOfInstallation()
{
    // The built-in picture, and the wizard no lower than it.
    const PlanWizardBase plain(PlanWizardBase::PlanTypeBackup);
    const QImage builtIn = plain.pixmap(QWizard::BackgroundPixmap).toImage();
    QVERIFY(!builtIn.isNull());
    QCOMPARE(plain.minimumHeight(), qRound(builtIn.height() / builtIn.devicePixelRatioF()));

    // A reseller's picture of the same name replaces it.
    QTemporaryDir share;
    qputenv("NVB_SHARE_DIR", share.path().toUtf8());
    const auto restore = qScopeGuard([] { qunsetenv("NVB_SHARE_DIR"); });
    const QString images = NVB::GUI::Application::getImagesPath();
    QVERIFY(QDir().mkpath(images));
    const QString file
        = images + QLatin1Char('/') + NVB::GUI::ImageManager::fileName(NVB::GUI::ImageManager::WizardBackground);
    QImage reseller(120, 500, QImage::Format_RGB32);
    reseller.fill(Qt::darkRed);
    QVERIFY(reseller.save(file));
    const PlanWizardBase branded(PlanWizardBase::PlanTypeBackup);
    const QImage shown = branded.pixmap(QWizard::BackgroundPixmap).toImage();
    QCOMPARE(shown.size(), QSize(120, 500));
    QCOMPARE(shown.pixelColor(10, 10), QColor(Qt::darkRed));
    QCOMPARE(branded.minimumHeight(), 500);
}

void TestPlanWizardBase::shouldRefuseSecondExecWhileOneIsOpen_data()
{
    QTest::addColumn<int>("firstKind");
    QTest::addColumn<int>("secondKind");
    QTest::newRow("backup over backup") << 1 << 1;
    QTest::newRow("backup over restore") << 2 << 1;
}

void TestPlanWizardBase::shouldRefuseSecondExecWhileOneIsOpen()
{
    QFETCH(int, firstKind);
    QFETCH(int, secondKind);
    PlanWizardBase first(firstKind);
    first.addPage(new PlanWizardBase::PageName());
    PlanWizardBase second(secondKind);
    second.addPage(new PlanWizardBase::PageName());
    // Named, so that each may be finished.
    first.setField(QStringLiteral("Field_PlanName"), QStringLiteral("First"));
    second.setField(QStringLiteral("Field_PlanName"), QStringLiteral("Second"));

    int secondResult = -1;
    bool secondShown = false;
    bool openDuring = false;
    QTimer::singleShot(0, &first, [&] {
        openDuring = PlanWizardBase::isWizardOpen();
        secondResult = second.exec();
        secondShown = second.isVisible();
        first.accept();
    });
    QCOMPARE(first.exec(), int(QDialog::Accepted));
    QVERIFY(openDuring);
    QCOMPARE(secondResult, 0);
    QVERIFY(!secondShown);
    QVERIFY(!PlanWizardBase::isWizardOpen());

    // Once the first is closed the second opens.
    bool shownNow = false;
    QTimer::singleShot(0, &second, [&] {
        shownNow = second.isVisible();
        second.accept();
    });
    QCOMPARE(second.exec(), int(QDialog::Accepted));
    QVERIFY(shownNow);
}

void TestPlanWizardBase::shouldNotCompleteBlankName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("complete");
    QTest::newRow("blanks and tab") << QStringLiteral(" \t  ") << false;
    QTest::newRow("padded") << QStringLiteral("  Docs  ") << true;
}

void TestPlanWizardBase::shouldNotCompleteBlankName()
{
    QFETCH(QString, name);
    QFETCH(bool, complete);
    Flow flow;
    flow.wizard.show();
    QTest::keyClicks(flow.nameEdit(), name);
    QCOMPARE(flow.name->isComplete(), complete);
    QCOMPARE(flow.name->validatePage(), complete);
    QCOMPARE(flow.wizard.button(QWizard::NextButton)->isEnabled(), complete);
    flow.wizard.next();
    QCOMPARE(flow.wizard.currentId(), complete ? 4 : 1);
}

void TestPlanWizardBase::shouldSummariseOnlyVisitedPagesAndKeepNameGoingBack()
{
    Flow flow;
    flow.middle->setNext(9);
    flow.wizard.show();
    QTest::keyClicks(flow.nameEdit(), QStringLiteral("Docs <2>"));
    flow.wizard.next();
    flow.wizard.next();
    QCOMPARE(flow.wizard.currentId(), 9);
    QCOMPARE(flow.summary->summaryHtml(),
        QStringLiteral("<table><tr><td>Plan name:</td><td>Docs &lt;2&gt;</td></tr>"
                       "<tr><td>Middle:</td><td>value</td></tr></table>"));
    QVERIFY(flow.summary->textView()->isReadOnly());
    QVERIFY(flow.summary->textView()->toPlainText().contains(QStringLiteral("Docs <2>")));
    // The frame's summary writes no plan, so Finish keeps the wizard open.
    QVERIFY(flow.summary->isFinalPage());
    flow.wizard.button(QWizard::FinishButton)->click();
    QVERIFY(flow.wizard.isVisible());
    QCOMPARE(flow.wizard.result(), 0);
    QVERIFY(flow.summary->summary().isEmpty());

    // The same wizard through the optional page.
    flow.wizard.back();
    flow.middle->setNext(5);
    flow.wizard.next();
    flow.wizard.next();
    QCOMPARE(flow.wizard.currentId(), 9);
    QVERIFY(flow.summary->summaryHtml().contains(QStringLiteral("<tr><td>Optional:</td><td>value</td></tr>")));

    for (int i = 0; i < 3; ++i)
        flow.wizard.back();
    QCOMPARE(flow.wizard.currentId(), 1);
    QCOMPARE(flow.nameEdit()->text(), QStringLiteral("Docs <2>"));
    QCOMPARE(flow.name->field(QStringLiteral("Field_PlanName")).toString(), QStringLiteral("Docs <2>"));
}

void TestPlanWizardBase::shouldHideRunNowBySignal()
{
    Flow flow;
    QAbstractButton* runNow = nullptr;
    for (QAbstractButton* button : flow.summary->findChildren<QAbstractButton*>())
        if (button->text() == QStringLiteral("Run plan now"))
            runNow = button;
    QVERIFY(runNow);
    QVERIFY(!runNow->isHidden());
    emit flow.summary->setVisibleRunNow(false);
    QVERIFY(runNow->isHidden());
    runNow->click();
    QCOMPARE(flow.summary->field(QStringLiteral("Field_SummaryRunNow")).toBool(), true);
}

void TestPlanWizardBase::shouldWriteAndReadNameUntrimmed()
{
    Flow flow;
    flow.nameEdit()->setText(QStringLiteral(" Photos "));
    NVB::Info::Plan::BackupFile plan;
    QVERIFY(flow.name->initPlan(&plan));
    QCOMPARE(plan.name(), QStringLiteral(" Photos "));
    plan.setName(QStringLiteral("Music"));
    QVERIFY(flow.name->fromPlan(&plan));
    QCOMPARE(flow.nameEdit()->text(), QStringLiteral("Music"));
    QVERIFY(!flow.name->fromPlan(nullptr));
    QVERIFY(!flow.name->initPlan(nullptr));
    QCOMPARE(flow.nameEdit()->text(), QStringLiteral("Music"));
}

void TestPlanWizardBase::shouldTrimInternalPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown");
    QTest::newRow("volume") << QStringLiteral("/NVB_VOLUMES/home/user") << QStringLiteral("home/user");
    QTest::newRow("share") << QStringLiteral("/NVB_SHARES/srv/docs") << QStringLiteral("srv/docs");
    QTest::newRow("root alone") << QStringLiteral("NVB_ROOT") << QStringLiteral("/");
    QTest::newRow("root inside") << QStringLiteral("NVB_ROOT/etc") << QStringLiteral("/etc");
    QTest::newRow("root lower case") << QStringLiteral("nvb_root") << QStringLiteral("nvb_root");
    QTest::newRow("volume without slash") << QStringLiteral("/NVB_VOLUMES") << QStringLiteral("/NVB_VOLUMES");
    QTest::newRow("volume not first") << QStringLiteral("/x/NVB_VOLUMES/y") << QStringLiteral("/x/NVB_VOLUMES/y");
}

void TestPlanWizardBase::shouldTrimInternalPaths()
{
    QFETCH(QString, path);
    QFETCH(QString, shown);
    TreePage page;
    QCOMPARE(page.trimmeredPath(path), shown);
}

void TestPlanWizardBase::shouldWidenToLargestPage()
{
    PlanWizardBase wizard(PlanWizardBase::PlanTypeBackup);
    auto* page = new MarkPage(QStringLiteral("Large"), -1);
    auto* layout = new QVBoxLayout(page);
    auto* large = new QWidget(page);
    large->setMinimumSize(1000, 900);
    layout->addWidget(large);
    wizard.addPage(page);
    QVERIFY(wizard.minimumWidth() < 1000);
    wizard.resizeWizardPages();
    QVERIFY(wizard.minimumWidth() >= 1000);
    QVERIFY(wizard.minimumHeight() >= 900);
}

NVB_TEST_MAIN(TestPlanWizardBase)
#include "tst_planwizardbase.moc"
