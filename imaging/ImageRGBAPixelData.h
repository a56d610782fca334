#pragma once
// Bridges between SxImageRgbaBytes and juce::Image, which holds premultiplied pixels in its own
// native byte order. Drawing and the JUCE codecs go through these; nothing else converts.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_graphics/juce_graphics.h>

/** A juce::Image pixel store holding its own converted copy of an SxImageRgbaBytes. */
class ImageRGBAPixelData : public juce::ImagePixelData
{
public:
    explicit ImageRGBAPixelData(const SxImageRgbaBytes& source);

    std::unique_ptr<juce::LowLevelGraphicsContext> createLowLevelContext() override;
    void initialiseBitmapData(juce::Image::BitmapData&, int x, int y, juce::Image::BitmapData::ReadWriteMode) override;
    juce::ImagePixelData::Ptr clone() override;
    std::unique_ptr<juce::ImageType> createType() const override;

private:
    juce::Image converted;
};

/** A juce::Image pixel store over the buffer of an SxImageRgbaBytes, without a copy. JUCE reads
    the bytes in its own ARGB order, so colours appear permuted: use it to move bytes (hashing,
    raw streams, byte-exact blits between two such images), never to draw or encode colour. The
    image is retained for as long as the pixel data lives. */
class ImageRGBAPixelDataNoCopy : public juce::ImagePixelData
{
public:
    explicit ImageRGBAPixelDataNoCopy(SxImageRgbaBytes& source);
    ~ImageRGBAPixelDataNoCopy() override;

    std::unique_ptr<juce::LowLevelGraphicsContext> createLowLevelContext() override;
    void initialiseBitmapData(juce::Image::BitmapData&, int x, int y, juce::Image::BitmapData::ReadWriteMode) override;
    juce::ImagePixelData::Ptr clone() override;
    std::unique_ptr<juce::ImageType> createType() const override;

private:
    SxImageRgbaBytes& image;
};

namespace SxImageConversion
{
/** A drawable juce::Image (ARGB, premultiplied) with the image's colours and alpha. */
juce::Image toJuceImage(const SxImageRgbaBytes& image);

/** Converts only area of image into drawable (an image of toJuceImage of the same size), so a
    small change on a large picture costs only its rectangle. */
void convertArea(const SxImageRgbaBytes& image, juce::Image& drawable, juce::Rectangle<int> area);

/** A new image from any juce::Image; alpha is un-premultiplied. Returns null for an invalid image. */
SxImageRgbaBytes* fromJuceImage(const juce::Image& image);
} // namespace SxImageConversion
