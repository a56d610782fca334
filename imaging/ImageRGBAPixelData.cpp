#include "imaging/ImageRGBAPixelData.h"

namespace SxImageConversion
{
juce::Image toJuceImage(const SxImageRgbaBytes& image)
{
    juce::Image result(juce::Image::ARGB, std::max(1, image.width), std::max(1, image.height), true,
                       juce::SoftwareImageType());
    convertArea(image, result, image.bounds());
    return result;
}

void convertArea(const SxImageRgbaBytes& image, juce::Image& drawable, juce::Rectangle<int> area)
{
    area = area.getIntersection(image.bounds()).getIntersection(drawable.getBounds());
    if (area.isEmpty() || drawable.getFormat() != juce::Image::ARGB)
        return;
    juce::Image::BitmapData data(drawable, area.getX(), area.getY(), area.getWidth(), area.getHeight(),
                                 juce::Image::BitmapData::writeOnly);
    for (int y = 0; y < area.getHeight(); ++y)
    {
        const uint8_t* s = image.pixelAt(area.getX(), area.getY() + y);
        for (int x = 0; x < area.getWidth(); ++x, s += 4)
        {
            juce::PixelARGB p(s[0], s[1], s[2], s[3]);
            p.premultiply();
            *reinterpret_cast<juce::PixelARGB*>(data.getPixelPointer(x, y)) = p;
        }
    }
}

SxImageRgbaBytes* fromJuceImage(const juce::Image& source)
{
    if (!source.isValid())
        return nullptr;

    // Read JUCE's own premultiplied pixels and undo the premultiplication once; going through
    // juce::Colour would round twice.
    const juce::Image argb = source.getFormat() == juce::Image::ARGB ? source : source.convertedToFormat(juce::Image::ARGB);
    auto* image = new SxImageRgbaBytes(argb.getWidth(), argb.getHeight());
    const juce::Image::BitmapData data(argb, juce::Image::BitmapData::readOnly);
    for (int y = 0; y < image->height; ++y)
    {
        uint8_t* d = image->pixelAt(0, y);
        for (int x = 0; x < image->width; ++x, d += 4)
        {
            juce::PixelARGB p = *reinterpret_cast<const juce::PixelARGB*>(data.getPixelPointer(x, y));
            p.unpremultiply();
            d[0] = p.getAlpha();
            d[1] = p.getRed();
            d[2] = p.getGreen();
            d[3] = p.getBlue();
        }
    }
    return image;
}
} // namespace SxImageConversion

//==============================================================================
ImageRGBAPixelData::ImageRGBAPixelData(const SxImageRgbaBytes& source)
    : juce::ImagePixelData(juce::Image::ARGB, std::max(1, source.width), std::max(1, source.height)),
      converted(SxImageConversion::toJuceImage(source))
{
}

std::unique_ptr<juce::LowLevelGraphicsContext> ImageRGBAPixelData::createLowLevelContext()
{
    sendDataChangeMessage();
    return converted.getPixelData()->createLowLevelContext();
}

void ImageRGBAPixelData::initialiseBitmapData(juce::Image::BitmapData& bitmap, int x, int y, juce::Image::BitmapData::ReadWriteMode mode)
{
    converted.getPixelData()->initialiseBitmapData(bitmap, x, y, mode);
    if (mode != juce::Image::BitmapData::readOnly)
        sendDataChangeMessage();
}

juce::ImagePixelData::Ptr ImageRGBAPixelData::clone()
{
    return converted.createCopy().getPixelData();
}

std::unique_ptr<juce::ImageType> ImageRGBAPixelData::createType() const
{
    return std::make_unique<juce::SoftwareImageType>();
}

//==============================================================================
ImageRGBAPixelDataNoCopy::ImageRGBAPixelDataNoCopy(SxImageRgbaBytes& source)
    : juce::ImagePixelData(juce::Image::ARGB, std::max(1, source.width), std::max(1, source.height)), image(source)
{
    image.retain();
}

ImageRGBAPixelDataNoCopy::~ImageRGBAPixelDataNoCopy()
{
    image.release();
}

std::unique_ptr<juce::LowLevelGraphicsContext> ImageRGBAPixelDataNoCopy::createLowLevelContext()
{
    sendDataChangeMessage();
    return std::make_unique<juce::LowLevelGraphicsSoftwareRenderer>(juce::Image(this));
}

void ImageRGBAPixelDataNoCopy::initialiseBitmapData(juce::Image::BitmapData& bitmap, int x, int y, juce::Image::BitmapData::ReadWriteMode mode)
{
    bitmap.pixelFormat = juce::Image::ARGB;
    bitmap.pixelStride = 4;
    bitmap.lineStride = (int) image.rowBytes();
    bitmap.data = image.pixelAt(x, y);
    bitmap.size = image.byteCount() - ((size_t) y * image.rowBytes() + (size_t) x * 4);
    if (mode != juce::Image::BitmapData::readOnly)
        sendDataChangeMessage();
}

juce::ImagePixelData::Ptr ImageRGBAPixelDataNoCopy::clone()
{
    auto* copy = image.clone();
    juce::ImagePixelData::Ptr result = new ImageRGBAPixelDataNoCopy(*copy);
    copy->release();
    return result;
}

std::unique_ptr<juce::ImageType> ImageRGBAPixelDataNoCopy::createType() const
{
    return std::make_unique<juce::SoftwareImageType>();
}
