// Feeds arbitrary bytes to the picture decoders. The first byte picks the codec the name would
// have chosen, so that every decoder also meets bytes meant for another: whatever a file holds,
// the reader returns a picture or a reason, and never allocates what a header merely claims.

#include "imaging/ImageFileReader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const ImageFileType types[] = { ImageFileType::jpeg, ImageFileType::png, ImageFileType::tiff, ImageFileType::unknown };
    const auto decoded = ImageFileReader::readMemory(data + 1, size - 1, types[data[0] % 4]);
    if (decoded.ok() && (decoded.image->width <= 0 || decoded.image->height <= 0))
        __builtin_trap();
    return 0;
}
