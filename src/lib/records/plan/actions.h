#pragma once

#include <QDomElement>

#include "records/plan/postaction.h"
#include "records/plan/preaction.h"

namespace NVB::Info::Plan {

// The commands around a backup.
class Actions
{
public:
    PreAction& pre() { return m_pre; }
    const PreAction& pre() const { return m_pre; }
    PostAction& post() { return m_post; }
    const PostAction& post() const { return m_post; }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

private:
    PreAction m_pre;
    PostAction m_post;
};

} // namespace NVB::Info::Plan
