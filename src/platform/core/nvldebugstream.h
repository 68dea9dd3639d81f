#pragma once

#include <memory>

#include <QDebug>
#include <QString>

namespace NVL {

enum class LogLevel { DebugOnly = 0, Debug, Info, InfoH, Warning, Error, Off };

// One log line in the making. Values are written with <<; the line goes to the
// log when the stream is destroyed, which for `NvlDebug("NVB").warning() << x`
// is the end of the statement.
class NvlDebugStream
{
public:
    NvlDebugStream(LogLevel level, const QString& tag, bool enabled);
    NvlDebugStream(NvlDebugStream&& other) noexcept;
    NvlDebugStream& operator=(NvlDebugStream&&) = delete;
    NvlDebugStream(const NvlDebugStream&) = delete;
    NvlDebugStream& operator=(const NvlDebugStream&) = delete;
    ~NvlDebugStream();

    template<typename T>
    NvlDebugStream& operator<<(const T& value)
    {
        if (m_state)
            m_state->debug << value;
        return *this;
    }

private:
    struct State
    {
        explicit State(LogLevel level, const QString& tag);
        LogLevel level;
        QString tag;
        QString text;
        QDebug debug;
    };
    std::unique_ptr<State> m_state;
};

} // namespace NVL
