#pragma once
// The compact picture form that property sets store, written by hand so that the tests can give
// the reader byte orders and sides that the writer would never produce.

#include <juce_core/juce_core.h>

/** Byte order, width and height, then the pixels, all gzip-compressed; little-endian. */
inline juce::MemoryBlock compactStream(uint8_t byteOrder, int16_t w, int16_t h, const void* pixels, size_t bytes)
{
    juce::MemoryOutputStream packed;
    {
        juce::GZIPCompressorOutputStream gz(packed);
        gz.writeByte((char) byteOrder);
        gz.writeShort(w);
        gz.writeShort(h);
        gz.write(pixels, bytes);
    }
    return packed.getMemoryBlock();
}
