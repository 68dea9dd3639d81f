#include "framecodecfuzz.h"

#include <cstdio>
#include <cstdlib>

#include "channel/framecodec.h"

using NVB::Channel::FrameCodec;

namespace {

[[noreturn]] void broken(const char* what)
{
    std::fprintf(stderr, "frame codec fuzz: %s\n", what);
    std::abort();
}

} // namespace

void FrameCodecFuzz::feed(const QByteArray& input)
{
    if (input.isEmpty())
        return;
    const int piece = 1 + quint8(input.at(0)) % 64;
    const QByteArray stream = input.mid(1);
    FrameCodec codec;
    bool broke = false;
    for (int offset = 0; offset < stream.size() && !broke; offset += piece) {
        codec.append(stream.mid(offset, piece));
        for (;;) {
            const FrameCodec::Result result = codec.next();
            if (result.status == FrameCodec::Status::NeedMore)
                break;
            if (result.status == FrameCodec::Status::Broken) {
                if (!codec.isBroken() || codec.next().status != FrameCodec::Status::Broken)
                    broken("a broken stream recovered by itself");
                broke = true;
                break;
            }
            if (result.status == FrameCodec::Status::Dropped) {
                if (result.error.isEmpty())
                    broken("a frame was dropped without a reason");
                continue;
            }
            FrameCodec again;
            again.append(FrameCodec::encode(result.object));
            const FrameCodec::Result echo = again.next();
            if (echo.status != FrameCodec::Status::Frame || echo.object != result.object || again.bufferedBytes() != 0)
                broken("a frame does not survive encoding");
        }
        if (codec.bufferedBytes() < 0 || codec.bufferedBytes() > stream.size())
            broken("the decoder counts more bytes than it was given");
    }
}
