#include "nvldebugstream.h"

#include "nvldebug.h"

namespace NVL {

NvlDebugStream::State::State(LogLevel lvl, const QString& t)
    : level(lvl)
    , tag(t)
    , debug(&text)
{
    debug.noquote();
}

NvlDebugStream::NvlDebugStream(LogLevel level, const QString& tag, bool enabled)
{
    if (enabled)
        m_state = std::make_unique<State>(level, tag);
}

NvlDebugStream::NvlDebugStream(NvlDebugStream&& other) noexcept = default;

NvlDebugStream::~NvlDebugStream()
{
    if (!m_state)
        return;
    // A QDebug on a QString appends as it goes, so the text is complete here;
    // trimming drops the blank QDebug leaves behind its last item.
    NvlDebug::write(m_state->level, m_state->tag, m_state->text.trimmed());
}

} // namespace NVL
