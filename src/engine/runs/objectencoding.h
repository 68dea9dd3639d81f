#pragma once

namespace NVB::Engine {

// How a file's data is kept in its storage object. The value is stored with
// each restore point's content, so objects of either kind can sit side by
// side in one point (a plan whose compression was switched on keeps reusing
// its unchanged plain copies).
enum class ObjectEncoding : int {
    Plain = 0,
    Zstd = 1, // one zstd frame holding the whole file
};

} // namespace NVB::Engine
