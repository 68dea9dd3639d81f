#include "amazonlifecyclepolicyedit.h"

namespace NVB::Cloud {

namespace {

const QString Root = QStringLiteral("LifecycleConfiguration");
const QString Namespace = QStringLiteral("http://s3.amazonaws.com/doc/2006-03-01/");

QDomDocument emptyDocument()
{
    QDomDocument document;
    QDomElement root = document.createElementNS(Namespace, Root);
    document.appendChild(root);
    return document;
}

QDomElement textElement(QDomDocument& document, const QString& name, const QString& text)
{
    QDomElement element = document.createElement(name);
    element.appendChild(document.createTextNode(text));
    return element;
}

} // namespace

AmazonLifecyclePolicyEdit::AmazonLifecyclePolicyEdit()
    : m_document(emptyDocument())
{ }

void AmazonLifecyclePolicyEdit::clear()
{
    m_document = emptyDocument();
    m_policy.clear();
}

bool AmazonLifecyclePolicyEdit::isTransitionRule(
    const QDomElement& rule, QString* prefix, AmazonLifecyclePolicy* policy)
{
    bool enabled = false;
    bool hasPrefix = false;
    for (QDomElement child = rule.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        const QString name = child.tagName();
        if (name == QLatin1String("ID")) {
            continue;
        } else if (name == QLatin1String("Status")) {
            enabled = child.text().trimmed() == QLatin1String("Enabled");
        } else if (name == QLatin1String("Prefix")) {
            *prefix = child.text();
            hasPrefix = true;
        } else if (name == QLatin1String("Filter")) {
            const QDomElement only = child.firstChildElement();
            if (!only.isNull() && (only.tagName() != QLatin1String("Prefix") || !only.nextSiblingElement().isNull()))
                return false;
            *prefix = only.text();
            hasPrefix = true;
        } else if (name == QLatin1String("Transition")) {
            const QString storageClass = child.firstChildElement(QStringLiteral("StorageClass")).text().trimmed();
            const QDomElement days = child.firstChildElement(QStringLiteral("Days"));
            bool ok = false;
            const int value = days.text().trimmed().toInt(&ok);
            if (days.isNull() || !ok || !policy->set(storageClass, value))
                return false;
        } else {
            return false;
        }
    }
    return enabled && hasPrefix;
}

bool AmazonLifecyclePolicyEdit::init(const QDomDocument& document, QString* error)
{
    clear();
    const QDomElement root = document.documentElement();
    if (root.isNull()) // no rules at all
        return true;
    if (root.tagName() != Root) {
        if (error)
            *error = QStringLiteral("The document is no lifecycle configuration (it begins with <%1>)")
                         .arg(root.tagName());
        return false;
    }
    m_document = document.cloneNode(true).toDocument();
    const QDomNodeList rules = m_document.documentElement().elementsByTagName(QStringLiteral("Rule"));
    for (int i = 0; i < rules.size(); ++i) {
        QString prefix;
        AmazonLifecyclePolicy policy;
        if (isTransitionRule(rules.at(i).toElement(), &prefix, &policy))
            m_policy.insert(prefix, policy);
    }
    return true;
}

void AmazonLifecyclePolicyEdit::save(const QMap<QString, AmazonLifecyclePolicy>& policy)
{
    QDomElement root = m_document.documentElement();
    QList<QDomElement> ours;
    for (QDomElement rule = root.firstChildElement(QStringLiteral("Rule")); !rule.isNull();
         rule = rule.nextSiblingElement(QStringLiteral("Rule"))) {
        QString prefix;
        AmazonLifecyclePolicy read;
        if (isTransitionRule(rule, &prefix, &read))
            ours.append(rule);
    }
    for (QDomElement& rule : ours)
        root.removeChild(rule);
    m_policy.clear();
    for (auto it = policy.cbegin(); it != policy.cend(); ++it) {
        if (it.value().isEmpty())
            continue;
        m_policy.insert(it.key(), it.value());
        QDomElement rule = m_document.createElement(QStringLiteral("Rule"));
        rule.appendChild(textElement(m_document, QStringLiteral("ID"), QStringLiteral("NVB %1").arg(it.key())));
        QDomElement filter = m_document.createElement(QStringLiteral("Filter"));
        filter.appendChild(textElement(m_document, QStringLiteral("Prefix"), it.key()));
        rule.appendChild(filter);
        rule.appendChild(textElement(m_document, QStringLiteral("Status"), QStringLiteral("Enabled")));
        for (const QString& storageClass : AmazonLifecyclePolicy::storageClasses()) {
            const int days = it.value().days(storageClass);
            if (days < 0)
                continue;
            QDomElement transition = m_document.createElement(QStringLiteral("Transition"));
            transition.appendChild(textElement(m_document, QStringLiteral("Days"), QString::number(days)));
            transition.appendChild(textElement(m_document, QStringLiteral("StorageClass"), storageClass));
            rule.appendChild(transition);
        }
        root.appendChild(rule);
    }
}

void AmazonLifecyclePolicyEdit::setPolicy(const QString& prefix, const AmazonLifecyclePolicy& policy)
{
    QMap<QString, AmazonLifecyclePolicy> changed = m_policy;
    changed.insert(prefix, policy);
    save(changed);
}

void AmazonLifecyclePolicyEdit::removePolicy(const QString& prefix)
{
    QMap<QString, AmazonLifecyclePolicy> changed = m_policy;
    changed.remove(prefix);
    save(changed);
}

} // namespace NVB::Cloud
