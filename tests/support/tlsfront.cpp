#include "tlsfront.h"

#include <QFile>
#include <QTest>

namespace NvbTest {

TlsFront::~TlsFront()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

bool TlsFront::start(int targetPort)
{
    m_process.start(
        QStringLiteral("python3"), {QStringLiteral(NVB_TLS_FRONT), m_dir.path(), QString::number(targetPort)});
    if (!m_process.waitForStarted(10000))
        return false;
    const QString portFile = m_dir.filePath(QStringLiteral("port"));
    if (!QTest::qWaitFor([&] { return QFile::exists(portFile); }, 20000))
        return false;
    QFile port(portFile);
    if (!port.open(QIODevice::ReadOnly))
        return false;
    m_port = port.readAll().trimmed().toInt();
    return m_port > 0;
}

QByteArray TlsFront::certificate() const
{
    QFile file(m_dir.filePath(QStringLiteral("cert.pem")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace NvbTest
