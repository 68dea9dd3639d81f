#pragma once

#include <QDomElement>
#include <QString>

namespace NVB::Info::Plan {

// A command run around a backup.
class Action
{
public:
    virtual ~Action() = default;

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    // The whole command line, the program in quotes.
    QString program() const { return m_program; }
    void setProgram(const QString& program) { m_program = program; }
    QString arguments() const { return m_arguments; }
    void setArguments(const QString& arguments) { m_arguments = arguments; }

    virtual void writeXml(QDomElement& parent) const = 0;
    // Throws a QString naming the faulty element.
    virtual void readXml(const QDomElement& element) = 0;

protected:
    void writeActionFields(QDomElement& element) const;
    void readActionFields(const QDomElement& element);

private:
    bool m_enabled = false;
    QString m_program;
    QString m_arguments;
};

} // namespace NVB::Info::Plan
