#include "zstdtransform.h"

#include <zstd.h>

#include "repository/packtrailer.h"

namespace NVB::Engine {

QString ZstdTransform::name() const
{
    return QStringLiteral("zstd-3");
}

TransformResult ZstdTransform::encode(const QByteArray& raw) const
{
    QByteArray out(int(ZSTD_compressBound(size_t(raw.size()))), Qt::Uninitialized);
    const size_t written = ZSTD_compress(out.data(), size_t(out.size()), raw.constData(), size_t(raw.size()), Level);
    if (ZSTD_isError(written))
        return {QString::fromLatin1(ZSTD_getErrorName(written)), {}};
    out.truncate(int(written));
    return {QString(), out};
}

TransformResult ZstdTransform::decode(const QByteArray& stored) const
{
    const unsigned long long size = ZSTD_getFrameContentSize(stored.constData(), size_t(stored.size()));
    if (size == ZSTD_CONTENTSIZE_ERROR || size == ZSTD_CONTENTSIZE_UNKNOWN)
        return {QStringLiteral("the data is not a zstd frame"), {}};
    // Damage may claim any size: nothing larger than a chunk may be.
    if (size > static_cast<unsigned long long>(PackTrailer::MaximumChunkLength))
        return {QStringLiteral("the zstd frame claims %1 bytes").arg(size), {}};
    QByteArray out(int(size), Qt::Uninitialized);
    const size_t read = ZSTD_decompress(out.data(), size_t(out.size()), stored.constData(), size_t(stored.size()));
    if (ZSTD_isError(read) || read != size)
        return {QStringLiteral("the zstd frame is damaged"), {}};
    return {QString(), out};
}

} // namespace NVB::Engine
