#pragma once

#include <QDomElement>

namespace NVB::Info::Plan {

// Provider options that backup and restore plans share.
class StorageInfo
{
public:
    virtual ~StorageInfo() = default;

    bool useS3Accelerated() const { return m_useS3Accelerated; }
    void setUseS3Accelerated(bool use) { m_useS3Accelerated = use; }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

protected:
    virtual void writeFields(QDomElement& element) const;
    virtual void readFields(const QDomElement& element);

private:
    bool m_useS3Accelerated = false;
};

} // namespace NVB::Info::Plan
