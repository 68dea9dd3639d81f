#pragma once

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>

namespace NvbTest {

// Runs the action on the next modal dialog of that class, once it is open;
// the code that opens it blocks in exec() meanwhile.
template<class Dialog, class Action> void whenModal(Action action)
{
    auto* timer = new QTimer;
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, [timer, action] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        const QPointer<Dialog> guard(dialog);
        action(dialog);
        // A failed check must not leave the test waiting on an open dialog.
        if (QTest::currentTestFailed() && guard && guard->isVisible())
            guard->reject();
    });
    timer->start();
}

} // namespace NvbTest
