#pragma once

#include <QFile>
#include <QString>

#include "core/nvldebug.h"

// Reads what the product's log received since the capture began, so a test
// can check that a refusal was logged with the element it names.
class LogCapture
{
public:
    LogCapture()
    {
        NVL::NvlDebug::setStderrEnabled(false);
        NVL::NvlDebug(QStringLiteral("TEST")).warning() << "capture start";
        QFile file(NVL::NvlDebug::logFilePath());
        m_start = file.exists() ? file.size() : 0;
    }

    QString text() const
    {
        QFile file(NVL::NvlDebug::logFilePath());
        if (!file.open(QIODevice::ReadOnly))
            return QString();
        file.seek(m_start);
        return QString::fromUtf8(file.readAll());
    }

private:
    qint64 m_start = 0;
};
