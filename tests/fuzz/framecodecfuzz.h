#pragma once

#include <QByteArray>

// One fuzz input into the channel's frame decoder, shared by the libFuzzer
// target and the test that replays kept inputs: the bytes arrive in pieces
// whose sizes the input's first byte chooses, as a socket may deliver them.
// Aborts when a decoded frame does not encode and decode to itself, or when
// the decoder's bookkeeping goes wrong.
class FrameCodecFuzz
{
public:
    static void feed(const QByteArray& input);
};
