#pragma once
// The project file: the source picture at full size and every layer's settings, so that work
// resumes with all controls in place, plus a small preview the browsers can show without
// reading the rest.
//
// Current form, integers little-endian signed 32-bit:
//   0   "VER3"
//   4   previewOffset   where the preview JPEG starts (0 if the writer died before the end)
//   8   previewSize     its length in bytes
//   12  the project dictionary, in the binary form of a property set
//   previewOffset: a 400 × 400 JPEG of the result on grey
// Older forms still read: "VER2" followed directly by the dictionary; and, for any other first
// four bytes, an int32 length, that many bytes of XML text holding the dictionary, and the stream
// form of the source picture behind it.

#include "document/SxPropertySet.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>
#include <juce_graphics/juce_graphics.h>

#include <memory>

class LayerManager;

/** What a project file gives back. */
struct ProjectDocument
{
    /** The project dictionary: the layer stack's keys and whatever else was stored, without
        the source picture's keys, which became image. */
    SxPropertySet settings;
    SxRef<SxImageRgbaBytes> image;
    double widthDpi = 72.0;
    double heightDpi = 72.0;
    /** 3, 2, or 1 for the oldest XML form. */
    int version = 0;
    int previewOffset = 0;
    int previewSize = 0;
};

namespace ProjectFile
{
constexpr int previewSide = 400;

/** Adds the source picture and its resolution to a project dictionary. */
void writeDocumentToDictionary(SxPropertySet& set, const SxImageRgbaBytes& image, double widthDpi, double heightDpi);
/** Takes the source picture and resolution out of a project dictionary; false without a picture. */
bool readDocumentFromDictionary(SxPropertySet& set, ProjectDocument& document);

/** The preview: result fitted into a 400 × 400 square on opaque grey (127, 127, 127). */
SxImageRgbaBytes* makePreview(const SxImageRgbaBytes& result);

/** Writes the current form. The stream must be able to seek back, because the preview's offset
    and size are known only after it is written. */
bool write(juce::OutputStream& out, const SxPropertySet& settings, const SxImageRgbaBytes& source, double widthDpi,
           double heightDpi, const SxImageRgbaBytes* result);

/** Saves a whole document: the stack's settings, the source picture, and a preview rendered from
    the stack. Written to a temporary file and renamed, so a failed save leaves an old file whole. */
bool save(const juce::File& file, LayerManager& layers, const SxImageRgbaBytes& source, double widthDpi, double heightDpi);

/** Reads any of the three forms. Null for anything that does not hold a readable dictionary and
    source picture: a short, empty, truncated or corrupt file never gives a half document. */
std::unique_ptr<ProjectDocument> read(juce::InputStream& in);
std::unique_ptr<ProjectDocument> readFile(const juce::File& file);

/** The preview block of a "VER3" file, decoded; null when absent or not a whole JPEG. Decoding
    goes through the program's own JPEG reader, which stops at damaged data instead of reading on. */
SxRef<SxImageRgbaBytes> readPreview(juce::InputStream& in);
} // namespace ProjectFile
