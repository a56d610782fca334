#include "imaging/ColorProfile.h"

#include <lcms2.h>

namespace ColorProfile
{
namespace
{
bool convert(SxImageRgbaBytes& image, const juce::MemoryBlock& iccProfile, bool toSRGB)
{
    if (iccProfile.getSize() == 0 || image.byteCount() == 0)
        return false;
    cmsHPROFILE embedded = cmsOpenProfileFromMem(iccProfile.getData(), (cmsUInt32Number) iccProfile.getSize());
    if (embedded == nullptr)
        return false;
    if (cmsGetColorSpace(embedded) != cmsSigRgbData)
    {
        cmsCloseProfile(embedded);
        return false;
    }
    cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    cmsHPROFILE profiles[2] = { toSRGB ? embedded : srgb, toSRGB ? srgb : embedded };
    // Alpha first, 8 bits a channel: the images' own memory order, so no repacking is needed.
    cmsHTRANSFORM transform = cmsCreateMultiprofileTransform(profiles, 2, TYPE_ARGB_8, TYPE_ARGB_8, INTENT_PERCEPTUAL, 0);
    bool done = false;
    if (transform != nullptr)
    {
        // In place: the alpha bytes of the destination are the source's and stay as they are.
        for (int y = 0; y < image.height; ++y)
            cmsDoTransform(transform, image.pixelAt(0, y), image.pixelAt(0, y), (cmsUInt32Number) image.width);
        cmsDeleteTransform(transform);
        done = true;
    }
    cmsCloseProfile(srgb);
    cmsCloseProfile(embedded);
    return done;
}
} // namespace

bool convertToSRGB(SxImageRgbaBytes& image, const juce::MemoryBlock& iccProfile)
{
    return convert(image, iccProfile, true);
}

bool convertFromSRGB(SxImageRgbaBytes& image, const juce::MemoryBlock& iccProfile)
{
    return convert(image, iccProfile, false);
}

juce::String describe(const juce::MemoryBlock& iccProfile)
{
    if (iccProfile.getSize() == 0)
        return {};
    cmsHPROFILE profile = cmsOpenProfileFromMem(iccProfile.getData(), (cmsUInt32Number) iccProfile.getSize());
    if (profile == nullptr)
        return {};
    char text[256] = {};
    cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", text, sizeof(text));
    cmsCloseProfile(profile);
    return juce::String(text);
}
} // namespace ColorProfile
