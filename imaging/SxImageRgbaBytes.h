#pragma once
// The program's colour picture on the CPU: 8-bit straight (not premultiplied) alpha, four bytes
// a pixel in the memory order alpha, red, green, blue, rows packed without padding. The same
// bytes go unchanged into every GPU texture, so nothing converts on the way to and from the GPU.

#include "imaging/SxSmartPtr.h"

#include <juce_core/juce_core.h>
#include <juce_graphics/juce_graphics.h>

#include <cstdint>

class SxImageAlphaByte;

class SxImageRgbaBytes : public SxSmartPtr
{
public:
    /** A zeroed (transparent black) image. Sizes below 0 count as 0. */
    SxImageRgbaBytes(int width, int height);
    SxImageRgbaBytes(const SxImageRgbaBytes& other);
    SxImageRgbaBytes& operator=(const SxImageRgbaBytes&) = delete;
    ~SxImageRgbaBytes() override;

    virtual SxImageRgbaBytes* clone() const;

    size_t byteCount() const { return (size_t) width * (size_t) height * 4; }
    size_t rowBytes() const { return (size_t) width * 4; }
    uint8_t* pixelAt(int x, int y) { return pixels + ((size_t) y * (size_t) width + (size_t) x) * 4; }
    const uint8_t* pixelAt(int x, int y) const { return pixels + ((size_t) y * (size_t) width + (size_t) x) * 4; }
    juce::Rectangle<int> bounds() const { return { 0, 0, width, height }; }

    /** Copies every byte of an image of equal size; does nothing when the sizes differ. */
    void copyFrom(const SxImageRgbaBytes& other);

    /** Copies the pixels of sourceRect in source to destRect here (both of the same size),
        clipping both rectangles to their images. */
    void copyRect(const SxImageRgbaBytes& source, juce::Rectangle<int> sourceRect, juce::Rectangle<int> destRect);

    /** The cut-out used by the tiled GPU run: source's sourceRect lands at destRect here. */
    void copyOutRect(const SxImageRgbaBytes& source, juce::Rectangle<int> destRect, juce::Rectangle<int> sourceRect);

    /** Replaces the pixels by a scaled copy at the new size, keeping this object.
        Quality 0 nearest, 1 interpolating, 3 reducing (area average), 4 picks 3 when shrinking
        and 1 otherwise; 50 skips scaling and leaves the new pixels zero. */
    void resize(int newWidth, int newHeight, int quality);

    /** Scales source's sourceRect into destRect of this image. Equal sizes are a plain copy. */
    void scaleInto(const SxImageRgbaBytes& source, juce::Rectangle<int> destRect, juce::Rectangle<int> sourceRect, int quality);

    /** Straight-alpha "over" of source onto this image, within rect (clipped to both). */
    void compositeOver(const SxImageRgbaBytes& source, juce::Rectangle<int> rect);

    /** Lays source over this image through a mask (0 keeps this image, 255 shows source),
        weighting the source's alpha by the mask byte. An empty rect means the whole image. */
    void compositeWithMask(const SxImageRgbaBytes& source, const SxImageAlphaByte& mask, juce::Rectangle<int> rect = {});

    void clear();

    uint8_t* pixels = nullptr;
    int32_t width = 0;
    int32_t height = 0;
    juce::String name;
};
