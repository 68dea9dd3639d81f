#pragma once

// Error codes of cloud operations (IOperation::errorCode()). The numbers reach
// the account dialogs, which look at some of them, so they never change.
namespace NVL::Cloud::OperationError {

enum Code {
    NoError = 0,
    HostNotFound = 1,
    ConnectionFailed = 2,
    Timeout = 3,
    NotFound = 4,
    // The server's TLS certificate is not trusted; the dialogs offer to trust it.
    SslUntrusted = 5,
    // The SSH server's host key is not in known_hosts, or differs from it.
    HostKeyNotTrusted = 6,
    InvalidName = 7,
    AccessDenied = 8,
    AuthenticationFailed = 9,
    NotSupported = 10,
    InvalidConfig = 11,
    Cancelled = 12,
    IoError = 13,
    AlreadyExists = 14,
    InternalError = 15
};

} // namespace NVL::Cloud::OperationError
