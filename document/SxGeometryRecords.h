#pragma once
// Small geometry records that save themselves into a property set: a placed, rotated rectangle
// (SxTransform, and SxPlacement which adds selection and persistence) and a line (SxSegment).

#include "document/SxPropertySet.h"

#include <juce_graphics/juce_graphics.h>

/** A 3 × 3 matrix acting on column vectors (x, y, 1); m[row][column]. */
struct SxMatrix3
{
    float m[3][3] = { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 } };

    juce::Point<float> apply(juce::Point<float> p) const;
    SxMatrix3 operator*(const SxMatrix3& other) const;
    /** The inverse, or identity for a singular matrix. */
    SxMatrix3 inverted() const;
};

/** Maps an untransformed image of imageSize onto the document: its centre lands on center, scaled
    by scale and turned by orientation (radians). The derived fields follow from those by update(). */
class SxTransform
{
public:
    enum SolveMode
    {
        stretch = 0, ///< x and y scale independently so the rectangles match exactly
        fit = 1      ///< one scale for both, the smaller, centred
    };

    SxTransform() { update(); }
    virtual ~SxTransform() = default;

    /** Recomputes forward, inverse, corners and edges. */
    virtual void update();

    /** Sets forward to the map from rectangle from to rectangle to, inverse back. */
    virtual void solve(juce::Rectangle<float> from, juce::Rectangle<float> to, int mode);

    /** Moves this placement as the picture under it goes from one rectangle to another (a resize
        of the document picture): the centre follows the map, the scale follows its factors. */
    void remap(juce::Rectangle<float> from, juce::Rectangle<float> to);

    bool contains(juce::Point<float> imagePoint) const;

    juce::Point<float> center { 0.0f, 0.0f };
    juce::Point<float> scale { 1.0f, 1.0f };
    float orientation = 0.0f;
    juce::Point<float> imageSize { 1.0f, 1.0f };

    SxMatrix3 forward; ///< untransformed image pixels to document pixels
    SxMatrix3 inverse; ///< document pixels to untransformed image pixels
    juce::Point<float> corners[4]; ///< top-left, top-right, bottom-right, bottom-left of the image, placed
    juce::Point<float> edgeDirections[2]; ///< unit directions of the top and the left side
    float edgeLengths[2] = { 0.0f, 0.0f }; ///< lengths of the top and the left side
};

class SxPlacement : public SxTransform
{
public:
    ~SxPlacement() override = default;
    void update() override;
    void solve(juce::Rectangle<float> from, juce::Rectangle<float> to, int mode) override;

    /** Reads the record stored under name, rescaled from the size it was made in to imageSize.
        A missing record leaves this placement as it is and returns false. */
    virtual bool readFromDictionary(const SxPropertySet& set, const juce::String& name, juce::Point<float> imageSize);

    /** Stores the record as XML text under name. imageSize is the size of the picture the placement
        lives in now; mode 1 stores it rescaled into a unit picture so that the stored values do not
        depend on whether a preview or the full size was on screen. */
    virtual void writeToDictionary(SxPropertySet& set, const juce::String& name, juce::Point<float> imageSize, int mode) const;

    /** Reads the keys of a record from its XML form (no rescaling). */
    virtual bool readFromXml(const juce::XmlElement& element);

    enum Side
    {
        topSide = 0,
        rightSide = 1,
        bottomSide = 2,
        leftSide = 3
    };
    /** Drags one side to the point (document pixels, measured along the placement's own axis)
        while the opposite side stays where it is. The placed length never falls below the
        matching coordinate of minimumSize; with keepAspect the other axis scales by the same
        factor about the opposite side's midpoint. */
    void resizeSide(int side, juce::Point<float> point, bool keepAspect, juce::Point<float> minimumSize);

    bool isSelected = false;

private:
    void readKeys(const SxPropertySet& record);
};

struct SxSegment
{
    juce::Point<float> mPt1, mPt2;

    void writeToDictionary(SxPropertySet& set) const;
    /** Missing keys leave their coordinate as it is. */
    void readFromDictionary(const SxPropertySet& set);
};
