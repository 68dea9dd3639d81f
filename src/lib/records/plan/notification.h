#pragma once

#include <QDomElement>
#include <QString>

namespace NVB::Info::Plan {

// The e-mail a plan sends about its runs.
class Notification
{
public:
    enum Type { Never = 0, Always = 1, OnFailure = 2 };

    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    QString subject() const { return m_subject; }
    void setSubject(const QString& subject) { m_subject = subject; }
    bool generateDetailedReport() const { return m_generateDetailedReport; }
    void setGenerateDetailedReport(bool generate) { m_generateDetailedReport = generate; }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

private:
    Type m_type = OnFailure;
    QString m_subject = QStringLiteral("%PLAN_NAME% on %COMPUTER_NAME%: %RESULT%");
    bool m_generateDetailedReport = false;
};

} // namespace NVB::Info::Plan
