#pragma once

#include <QDomDocument>
#include <QMap>
#include <QString>

#include "amazonlifecyclepolicy.h"

namespace NVB::Cloud {

// A bucket's lifecycle configuration as S3 publishes it, read into one policy
// per prefix and written back. Only rules that are nothing but transitions
// of a prefix are ours to edit; any other rule (expirations, tag filters,
// rules of other tools) is kept as it was.
class AmazonLifecyclePolicyEdit
{
public:
    AmazonLifecyclePolicyEdit();

    // False, with the reason, when the document is no lifecycle
    // configuration; the edit is then empty.
    bool init(const QDomDocument& document, QString* error = nullptr);
    void clear();

    QMap<QString, AmazonLifecyclePolicy> policy() const { return m_policy; }
    // Replaces every rule of ours by the map's; an empty policy gives no rule.
    void save(const QMap<QString, AmazonLifecyclePolicy>& policy);
    QDomDocument lifecyclePolice() const { return m_document; }
    // The policy of a prefix may be changed in place by the editor's model.
    void setPolicy(const QString& prefix, const AmazonLifecyclePolicy& policy);
    void removePolicy(const QString& prefix);

private:
    static bool isTransitionRule(const QDomElement& rule, QString* prefix, AmazonLifecyclePolicy* policy);

    QDomDocument m_document;
    QMap<QString, AmazonLifecyclePolicy> m_policy;
};

} // namespace NVB::Cloud
