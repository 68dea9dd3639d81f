#pragma once

#include <QByteArray>

typedef struct evp_md_ctx_st EVP_MD_CTX;

namespace NVB::Engine {

// SHA-256 of a stream of bytes through OpenSSL, which uses the processor's
// SHA instructions where there are any: several times faster than
// QCryptographicHash, and a backup hashes every byte it reads.
class Sha256Stream
{
public:
    Sha256Stream();
    ~Sha256Stream();
    Sha256Stream(const Sha256Stream&) = delete;
    Sha256Stream& operator=(const Sha256Stream&) = delete;

    void add(const char* data, qint64 size);
    void add(const QByteArray& data) { add(data.constData(), data.size()); }
    // The digest of everything added; the stream starts again afterwards.
    QByteArray result();

private:
    EVP_MD_CTX* m_context;
};

} // namespace NVB::Engine
