// Feeds arbitrary bytes to the picture decoders. The first byte picks the codec the name would
// have chosen, so that every decoder also meets bytes meant for another: whatever a file holds,
// the reader returns a picture or a reason, and never allocates what a header merely claims.

#include "imaging/ImageFileReader.h"
#include "imaging/ImageLimits.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Pictures under the size limit may take twelve bytes a pixel while they load, which at the
    // default limit is far over the runs' 256 MB allocation ceiling. The runs lower the limit so
    // that what they find is memory taken past it, or before the bytes were checked.
    static const bool limited = (ImageLimits::setMaximumMegapixels(12), true);
    (void) limited;
    if (size < 1)
        return 0;
    const ImageFileType types[] = { ImageFileType::jpeg, ImageFileType::png, ImageFileType::tiff, ImageFileType::unknown };
    const auto decoded = ImageFileReader::readMemory(data + 1, size - 1, types[data[0] % 4]);
    if (decoded.ok() && (decoded.image->width <= 0 || decoded.image->height <= 0))
        __builtin_trap();
    return 0;
}
