#pragma once

#include <QFrame>
#include <QString>

class QLabel;

namespace NVB::GUI {

// A framed note with an icon that tells the user about a consequence of his
// choice ("This change will force a Full backup"). Pages keep it hidden and
// show it by a signal of their own wired to setVisible.
class AttentionFrame : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
public:
    enum Kind { Information, Warning, Error };
    Q_ENUM(Kind)

    explicit AttentionFrame(const QString& text = QString(), Kind kind = Warning, QWidget* parent = nullptr);

    QString text() const;
    Kind kind() const { return m_kind; }
    void setKind(Kind kind);

public slots:
    void setText(const QString& text);

private:
    QLabel* m_icon;
    QLabel* m_text;
    Kind m_kind = Warning;
};

} // namespace NVB::GUI
