#pragma once
// What one render of the layer stack hands to every layer: the input picture, the scale that
// keeps preview and full size alike, the quality switches and the area to refresh.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_graphics/juce_graphics.h>

#include <algorithm>
#include <cmath>

/** An image rectangle by its inclusive corners. (50000, 50000, -50000, -50000) is the empty
    rectangle that anything added to grows; the empty and the all-zero rectangle both mean
    "the whole picture" where a render is asked for. */
struct LayerRect
{
    float x1 = 50000.0f, y1 = 50000.0f, x2 = -50000.0f, y2 = -50000.0f;

    static LayerRect empty() { return {}; }
    static LayerRect of(float left, float top, float right, float bottom) { return { left, top, right, bottom }; }
    static LayerRect wholeOf(const SxImageRgbaBytes& image)
    {
        return of(0.0f, 0.0f, (float) image.width - 1.0f, (float) image.height - 1.0f);
    }

    bool isEmpty() const { return x2 < x1 || y2 < y1; }
    bool isZero() const { return x1 == 0.0f && y1 == 0.0f && x2 == 0.0f && y2 == 0.0f; }
    /** Neither a real area nor a request for one: the empty sentinel or all zeros. */
    bool meansWholePicture() const { return isEmpty() || isZero(); }

    void add(const LayerRect& other)
    {
        if (other.isEmpty())
            return;
        x1 = std::min(x1, other.x1);
        y1 = std::min(y1, other.y1);
        x2 = std::max(x2, other.x2);
        y2 = std::max(y2, other.y2);
    }

    LayerRect clampedTo(const LayerRect& bounds) const
    {
        return of(std::max(x1, bounds.x1), std::max(y1, bounds.y1), std::min(x2, bounds.x2), std::min(y2, bounds.y2));
    }

    /** The pixels the rectangle touches, clipped to image; empty when it lies outside. */
    juce::Rectangle<int> pixelsIn(const SxImageRgbaBytes& image) const
    {
        if (isEmpty())
            return {};
        const int left = (int) std::floor(x1), top = (int) std::floor(y1);
        const int right = (int) std::ceil(x2), bottom = (int) std::ceil(y2);
        return juce::Rectangle<int>::leftTopRightBottom(left, top, right + 1, bottom + 1).getIntersection(image.bounds());
    }
};

/** A region a caller wants rendered next, with how it wants the result. */
struct LayerRenderRegion
{
    LayerRect rect;
    float scale = 1.0f;
    bool copyResult = false;
    int quality = 0;
    LayerRect aspectRect;
};

struct LayerRenderParameters
{
    float scale = 1.0f;
    /** The input: what the layer below produced. Not owned. */
    SxImageRgbaBytes* image = nullptr;
    bool highQuality = false;
    bool fastPath = false;
    /** Asks for the direction field at full size instead of the preview's; no render of the
        stack sets it. */
    bool fullSizeTensors = false;
    LayerRect dirtyRect;
};
