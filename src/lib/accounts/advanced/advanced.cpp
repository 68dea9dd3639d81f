#include "advanced.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTimer>
#include <QVBoxLayout>

#include "accounts/accountutility.h"
#include "accounts/storagesadd.h"
#include "app/application.h"
#include "core/mns.h"
#include "prefixvalidator.h"
#include "widgets/progresswheel.h"

namespace NVB::GUI::Settings::Account {

Advanced::Advanced(Storages::Add& dialog, bool prefixDisabled, QWidget* parent)
    : ProcessDialog(parent)
    , m_dialog(&dialog)
{
    build(dialog.prefix(), QStringList(), prefixDisabled);
}

Advanced::Advanced(const QStringList& items, bool prefixDisabled, QWidget* parent)
    : ProcessDialog(parent)
{
    build(QString(), items, prefixDisabled);
}

Advanced::Advanced(const QString& prefix, const QStringList& items, bool prefixDisabled, QWidget* parent)
    : ProcessDialog(parent)
{
    build(prefix, items, prefixDisabled);
}

Advanced::~Advanced() = default;

QString Advanced::defaultPrefix()
{
    // The managed edition names the computer the way its service knows it.
    if (Application::isMns()) {
        const QString managed = NVB::Defines::MNS::prefix();
        if (!managed.isEmpty())
            return managed;
    }
    return AccountUtility::computerName();
}

void Advanced::build(const QString& prefix, const QStringList& items, bool prefixDisabled)
{
    m_givenPrefix = prefix;
    setWindowTitle(tr("Advanced settings"));
    m_layout = new QVBoxLayout;
    setCentralLayout(m_layout);

    m_prefix = new QComboBox(this);
    m_prefix->setEditable(true);
    m_prefix->setDuplicatesEnabled(false);
    m_prefix->setInsertPolicy(QComboBox::NoInsert);
    m_prefix->addItems(items);
    m_prefix->setEnabled(!prefixDisabled);
    auto* validator = new NVB::GUI::PrefixValidator(m_prefix);
    m_prefix->setValidator(validator);
    connect(validator, &NVB::GUI::PrefixValidator::error, this, &Advanced::repairPrefix, Qt::QueuedConnection);
    const QString computer = defaultPrefix();
    if (m_prefix->findText(computer, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
        m_prefix->addItem(computer);
    m_prefix->setCurrentText(prefix.isEmpty() ? computer : prefix);
    m_prefix->setMinimumWidth(200);
    m_prefix->installEventFilter(this);

    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Prefix:"), this));
    row->addWidget(m_prefix, 1);
    m_layout->addLayout(row);

    auto* note = new QLabel(
        tr("<table><tr><td><b>Note:</b> Backup prefix helps you to find data in the bucket. You can</tr></td>"
           "<tr><td>store backups from different computers in the same bucket and</tr></td><tr><td>distinguish "
           "them using the backup prefix. Backup prefix is set to the</tr></td><tr><td>computer name by "
           "default.</tr></td></table>"),
        this);
    QFont small = note->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    note->setFont(small);
    m_layout->addWidget(note);

    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    addDialogButtons(m_buttons);

    connect(m_buttons, &QDialogButtonBox::accepted, this, &Advanced::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &Advanced::onReject);
    connect(m_prefix, &QComboBox::currentTextChanged, this, &Advanced::onDataChanged);
    onDataChanged();
}

QString Advanced::prefix() const
{
    return m_prefix->currentText().trimmed();
}

void Advanced::setDisablePrefix(bool disable)
{
    m_prefix->setDisabled(disable);
}

void Advanced::repairPrefix()
{
    QLineEdit* edit = m_prefix->lineEdit();
    if (!edit)
        return;
    const int cursor = edit->cursorPosition();
    const QString repaired = AccountUtility::prefixFilter(edit->text());
    if (repaired == edit->text())
        return;
    edit->setText(repaired);
    edit->setCursorPosition(cursor > 0 ? qMin(cursor - 1, repaired.size()) : 0);
}

void Advanced::appendLayout(QHBoxLayout* layout)
{
    m_layout->addLayout(layout);
}

void Advanced::appendWidget(QWidget* widget)
{
    auto* row = new QHBoxLayout;
    row->addSpacing(50);
    row->addWidget(widget, 1);
    appendLayout(row);
}

void Advanced::onDataChanged()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!prefix().isEmpty());
}

void Advanced::disconnectDialog()
{
    if (m_dialog)
        disconnect(m_dialog, &Storages::Add::loadPrefixiesFinished, this, &Advanced::wrapperOnLoadPrefixes);
}

void Advanced::onAccept()
{
    disconnectDialog();
    accept();
}

void Advanced::onReject()
{
    disconnectDialog();
    reject();
}

bool Advanced::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_prefix && event->type() == QEvent::MouseButtonPress && m_prefix->isEnabled() && m_dialog
        && !m_prefixesRequested) {
        process(true);
        m_prefixesRequested = true;
        connect(m_dialog, &Storages::Add::loadPrefixiesFinished, this, &Advanced::wrapperOnLoadPrefixes);
        m_dialog->loadPrefixes();
        return true;
    }
    return ProcessDialog::eventFilter(watched, event);
}

void Advanced::wrapperOnLoadPrefixes(const QStringList& prefixes)
{
    m_loaded = prefixes;
    // The answer can come inside the click that asked for it; let the click
    // end before the popup opens.
    QTimer::singleShot(500, this, &Advanced::onLoadPrefixesOneShotTimeout);
}

void Advanced::onLoadPrefixesOneShotTimeout()
{
    onLoadPrefixes(m_loaded);
}

void Advanced::onLoadPrefixes(const QStringList& prefixes)
{
    QSet<QString> names;
    for (const QString& name : prefixes) {
        if (!name.isEmpty())
            names.insert(name);
    }
    for (int i = 0; i < m_prefix->count(); ++i)
        names.insert(m_prefix->itemText(i));
    const QString current = m_givenPrefix.isEmpty() ? defaultPrefix() : m_givenPrefix;
    m_prefix->clear();
    for (const QString& name : qAsConst(names))
        m_prefix->addItem(name);
    m_prefix->setCurrentText(current);
    disconnectDialog();
    process(false);
    if (isVisible())
        m_prefix->showPopup();
}

void Advanced::process(bool on)
{
    const auto children = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    if (on) {
        setCursor(Qt::WaitCursor);
        for (QWidget* child : children) {
            if (!child->isWindow() && child != progressWheel())
                child->setEnabled(false);
        }
        m_buttons->setEnabled(true);
        m_buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
        m_buttons->button(QDialogButtonBox::Cancel)->setEnabled(true);
        m_buttons->button(QDialogButtonBox::Cancel)->setCursor(Qt::ArrowCursor);
        startWaitProcess(true);
    } else {
        startWaitProcess(false);
        for (QWidget* child : children) {
            if (!child->isWindow())
                child->setEnabled(true);
        }
        onDataChanged();
        unsetCursor();
    }
}

} // namespace NVB::GUI::Settings::Account
