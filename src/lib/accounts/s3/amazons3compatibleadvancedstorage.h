#pragma once

#include "accounts/advanced/advancedstorage.h"
#include "amazons3compatible.h"
#include "cloud/info/amazons3like.h"

class QComboBox;

namespace NVB::GUI::Settings::Account {

// The advanced options of an S3 account that lets the user choose the
// signature version.
class AmazonS3Compatible::AdvancedStorage : public Account::AdvancedStorage
{
    Q_OBJECT

public:
    AdvancedStorage(bool useSsl, bool prefixDisabled, Storages::Add& dialog, QWidget* parent = nullptr);
    AdvancedStorage(bool useSsl, bool prefixDisabled, Storages::Add& dialog,
        NVL::Cloud::Info::AmazonS3Like::Signature signature, QWidget* parent = nullptr);

    // 0 for version 2, 1 for version 4; 1 when there is no choice.
    int authType() const;
    QComboBox* signatureCombo() const { return m_signature; }

private:
    QComboBox* m_signature = nullptr;
};

} // namespace NVB::GUI::Settings::Account
