#include "imaging/ImageLimits.h"

#include <atomic>
#include <cmath>
#include <unistd.h>

namespace ImageLimits
{
namespace
{
std::atomic<double> limit { defaultMegapixels };

// A decoded picture is held about three times over while it is read and prepared for the effect
// (the codec's rows or raster, our picture, its scaled or converted copy), four bytes a pixel.
constexpr double bytesPerPixelWhileLoading = 12.0;

double memoryAvailable()
{
    // MemAvailable counts what can be reclaimed as well; free pages alone would refuse too much.
    juce::FileInputStream meminfo(juce::File("/proc/meminfo"));
    if (meminfo.openedOk())
        while (!meminfo.isExhausted())
        {
            const auto line = meminfo.readNextLine();
            if (line.startsWith("MemAvailable:"))
                return line.fromFirstOccurrenceOf(":", false, false).trim().getLargeIntValue() * 1024.0;
        }
    const long pages = ::sysconf(_SC_AVPHYS_PAGES), pageSize = ::sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? (double) pages * (double) pageSize : 0.0;
}
} // namespace

void setMaximumMegapixels(double megapixels)
{
    if (megapixels > 0.0 && std::isfinite(megapixels))
        limit = megapixels;
}

double maximumMegapixels()
{
    return limit;
}

juce::String refusal(int64_t width, int64_t height)
{
    if (width <= 0 || height <= 0 || width > 65535 || height > 65535)
        return "the picture's size (" + juce::String(width) + " x " + juce::String(height) + ") is out of range";
    const double megapixels = (double) width * (double) height / 1.0e6;
    if (megapixels > maximumMegapixels())
        return juce::String(width) + " x " + juce::String(height) + " is " + juce::String(megapixels, 1)
               + " megapixels, over the limit of " + juce::String(maximumMegapixels(), 0);
    const double available = memoryAvailable();
    if (available > 0.0 && megapixels * 1.0e6 * bytesPerPixelWhileLoading > available)
        return juce::String(width) + " x " + juce::String(height) + " does not fit into the memory that is free ("
               + juce::String(available / (1024.0 * 1024.0), 0) + " MB)";
    return {};
}

double sanitisedResolution(double pixelsPerInch)
{
    return pixelsPerInch >= 1.0 && pixelsPerInch <= 100000.0 ? pixelsPerInch : defaultResolution;
}
} // namespace ImageLimits
