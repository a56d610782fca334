#pragma once
// Preset files (".pre"): the saved values of one effect layer, in the container of project files.
//   "VER2"  int32 count, then count × (key + 0, value + 0)
//   "VER3"  int32 jpegOffset, int32 jpegLength, then as "VER2"; at jpegOffset a 400 × 400 JPEG.
//           Both words are zero until the end of the save, so an interrupted save leaves zeros.
//   other   a legacy text preset: lines of text, or an XML document.
// All numbers little-endian.

#include "document/SxPropertySet.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_graphics/juce_graphics.h>

namespace PresetFile
{
enum class Form
{
    unreadable,
    version2,
    version3,
    legacyXml,
    legacyText
};

struct Contents
{
    Form form = Form::unreadable;
    /** The pairs; empty means nothing to apply. */
    SxPropertySet settings;
    /** A legacy text preset's lines, for the layer's own legacy loader. */
    juce::StringArray legacyLines;
    /** "VER3" only: where the embedded preview lies, as the header says (zero after a crash). */
    int32_t jpegOffset = 0;
    int32_t jpegLength = 0;
};

/** One key or value may be at most this long; no preset comes near it. */
constexpr int maxStringBytes = 230000;
/** A legacy text preset larger than this is not a preset. */
constexpr int64_t maxLegacyBytes = 1 << 20;
constexpr int previewSide = 400;
/** A 400 × 400 JPEG is tens of kilobytes; anything this large behind the pairs is not a preview. */
constexpr size_t maxPreviewBytes = 8u << 20;

Contents read(juce::InputStream& in);
Contents readFile(const juce::File& file);

/** The 400 × 400 preview: the composite fitted into 399 × 399 on black, over mid grey. */
SxImageRgbaBytes* makePreview(const SxImageRgbaBytes* composite);

/** Writes a "VER3" preset: header with zero words, pairs, the JPEG of the preview, then seeks
    back to fill in the words. The stream must be able to seek. */
bool write(juce::OutputStream& out, const SxPropertySet& settings, const SxImageRgbaBytes* composite);

/** Saves N.pre through a temporary file and a rename, and removes an older N.prel and a stale
    companion N.jpg beside it. */
bool writeFile(const juce::File& presetFile, const SxPropertySet& settings, const SxImageRgbaBytes* composite);

/** The preview embedded in a "VER3" file; an invalid image for other forms or a bad JPEG. */
juce::Image readEmbeddedPreview(juce::InputStream& in);
} // namespace PresetFile
