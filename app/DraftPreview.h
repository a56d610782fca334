#pragma once
// A reduced copy of the document's stack for the drafts that the preview shows while a slider
// moves: the picture at a fraction of its pixels, the effect with the settings of the moment and
// the brush mask reduced alike. The stack's scale rule shortens every length with its picture,
// so a draft enlarged to the preview's size looks like the preview, only softer.

#include "document/LayerManager.h"
#include "document/SxPropertySet.h"
#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"
#include "imaging/SxSmartPtr.h"

#include <juce_graphics/juce_graphics.h>

class DraftPreview
{
public:
    /** The most pixels a draft has: about a tenth of the time of a 1500 x 1000 preview on
        software GL, which brings the first picture after a change under half a second. A preview
        of less than twice as many is quick already and gets no drafts. */
    int maxPixels = 160000;

    /** The draft's size for a preview of the given size; empty when the preview needs none. */
    juce::Point<int> draftSizeFor(int width, int height) const;

    /** Message thread: takes the picture, the settings and the brush mask of stack as they are
        now. False, taking nothing, when the preview is small or the stack is not a picture with
        the effect above it. */
    bool prepare(const LayerManager& stack);
    /** Render thread, after prepare: reduces the picture, renders the reduced stack and enlarges
        the result to the picture's size. Null when it fails. */
    SxRef<SxImageRgbaBytes> render();

private:
    const SxImageRgbaBytes* picture = nullptr;
    juce::Point<int> size;
    SxPropertySet effectSettings;
    bool pictureHadAlpha = false;
    SxRef<SxImageAlphaByte> mask;
};
