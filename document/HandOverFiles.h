#pragma once
// The files through which a host photo editor hands a picture to the program and takes the
// result back. A small plug-in inside the host writes the picture file, starts the program and
// waits; the program reads the picture, lets the user work, and writes the result into the same
// file in the same layout, so that one reader serves both directions.
//
// Picture file, all integers 32-bit little-endian:
//   title line ('\n'-terminated), int32 parameterSize, parameterSize bytes,
//   int32 hiPlane, loPlane, left, top, right, bottom, imageMode, rowBytes, planeFlag,
//   int32 × 4 hostRect, int32 maskRowBytes, int32 profileSize, profileSize bytes,
//   int32 pixelSize, pixelSize bytes, int32 maskSize, maskSize bytes (one byte a pixel).
// The picture is right - left wide and bottom - top high; hiPlane - loPlane + 1 samples a pixel.
// Sixteen-bit samples are little-endian with 32768 as white.
//
// Every size is checked against the modes, the rectangle and the bytes the stream still holds
// before anything is allocated: the host is another program, and a file left over from a crash
// or written by another version must be refused, not believed.

#include "document/SxPropertySet.h"
#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

namespace HandOverFiles
{
enum ImageMode
{
    grey8 = 1,
    rgb8 = 3,
    grey16 = 10,
    rgb16 = 11
};

/** The four files of one hand-over, all in one folder. */
struct Paths
{
    juce::File flag;   // present while a host waits; holds "applied" once a result was written
    juce::File image;  // the picture, from the host and back
    juce::File data;   // the host's parameter block
    juce::File action; // the settings of a scripted run
};
Paths pathsIn(const juce::File& folder);

/** Everything of the picture file but the pixels and the mask. */
struct Header
{
    juce::String title;
    juce::MemoryBlock parameterBlock;
    int hiPlane = 0, loPlane = 0;
    int left = 0, top = 0, right = 0, bottom = 0;
    int imageMode = 0;
    int rowBytes = 0;
    int planeFlag = 0;
    int hostRect[4] = {};
    int maskRowBytes = 0;
    juce::MemoryBlock profile;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    int samplesPerPixel() const { return hiPlane - loPlane + 1; }
    /** 1 for the grey modes, 3 for the colour modes, 0 for a mode this program does not know. */
    int colourPlanes() const;
    int bytesPerSample() const;
};

/** The whole picture file as the host wrote it. The host's own pixel bytes are kept, so that a
    result can be written back in the host's depth with unselected pixels exactly as they were. */
struct Image
{
    Header header;
    juce::MemoryBlock pixels;
    juce::MemoryBlock mask; // empty when the host had no selection mask

    /** The picture in the program's order (alpha, red, green, blue; alpha 255). */
    SxRef<SxImageRgbaBytes> toPicture() const;
    /** The selection as one byte a pixel, or null when the host sent none. */
    SxRef<SxImageAlphaByte> toSelectionMask() const;
};

/** Reads the title line and the parameter size, which is all a start-up needs to know. False on a
    stream too short for them. */
bool readTitle(juce::InputStream& in, juce::String& title, int& parameterSize);

/** Reads a whole picture file. False, with a reason, for anything that does not add up; image is
    then left in an unspecified state. */
bool readImage(juce::InputStream& in, Image& image, juce::String& error);
bool readImageFile(const juce::File& file, Image& image, juce::String& error);

/** Writes the layout above. False when the stream refuses a byte. */
bool writeImage(juce::OutputStream& out, const Image& image);

/** The host's picture with result laid over it through the selection: the result where the mask
    is 255 (everywhere without a mask), the host's own samples where it is 0, blended between.
    Grey modes take the result's luminance; planes beyond the colour planes (an alpha) and row
    padding stay as the host sent them. result must have the picture's size. */
Image withResult(const Image& host, const SxImageRgbaBytes& result);

/** Writes through a temporary file and renames it over target, so that a host never reads half a
    picture; then marks the flag file. */
juce::Result writeResult(const Paths& paths, const Image& result);
/** True when the flag file says a result was written. */
bool resultWasApplied(const Paths& paths);

/** The settings of a scripted run: a property set in its XML form with "EffectName" (the
    effect's name) and "EffectDictionary" (the XML text of the effect's own settings). */
struct ActionSettings
{
    juce::String effectName;
    SxPropertySet dictionary;
};
bool readActionSettings(juce::InputStream& in, ActionSettings& settings);
bool writeActionSettings(juce::OutputStream& out, const ActionSettings& settings);
} // namespace HandOverFiles
