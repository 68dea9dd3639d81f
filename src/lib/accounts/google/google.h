#pragma once

#include "accounts/storagesinfo.h"

namespace NVB::GUI::Settings::Account {

// The read-only view of a Google Cloud Storage account. Its rows follow the
// way the account signs in: keys show the access key, both OAuth forms the
// project.
class Google : public Storages::Info
{
    Q_OBJECT

public:
    class Add;
    class AddContainer;
    class Validator;

    explicit Google(QWidget* parent = nullptr);

    // "Access and Secret Key", "OAuth 2.0 (Service Account)" or "OAuth 2.0
    // (Installed Application)" for the record's AuthType.
    static QString authenticationText(const QVariant& authType);
};

} // namespace NVB::GUI::Settings::Account
