#pragma once

#include <QFrame>
#include <QPointer>

class QLabel;
class QLineEdit;

namespace NVB::GUI {

// A small floating note that names the current keyboard input language while
// a password field has the focus: password echo hides what is typed, and a
// wrong layout is the commonest reason a password is "wrong" later. It has no
// parent and no layout place; it follows the fields it watches.
class CurrentLanguageFrame : public QFrame
{
    Q_OBJECT
public:
    CurrentLanguageFrame();

    // Shows the frame below the field whenever the field has the focus.
    void watch(QLineEdit* field);

    // "Current language: EN" for the input method's locale.
    static QString languageText(const QLocale& locale);
    QString text() const;

public slots:
    void updateLanguage();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showBelow(QLineEdit* field);

    QLabel* m_label;
    QPointer<QLineEdit> m_current;
};

} // namespace NVB::GUI
