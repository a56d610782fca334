#pragma once
// A blur along one straight line at a given angle: gives each stroke copy its own direction.

#include "gpu/GPUImageTwoPassFilter.h"

class GPUImageMotionBlur : public GPUImageTwoPassTextureSamplingFilter
{
public:
    /** How one box of the line is drawn: `gaps` + 1 taps in all, as a first level of `firstTaps`
        neighbouring taps and, when `secondTaps` > 1, a second level of `secondTaps` runs of them. */
    struct Levels
    {
        int gaps = 1;
        int firstTaps = 2;
        int secondTaps = 1;

        bool isTwoLevel() const { return secondTaps > 1; }
        int fetches() const { return firstTaps + (secondTaps > 1 ? secondTaps : 0); }
    };

    /** Boxes of at least this many taps are drawn in two levels by default. The second level
        reads the first one's bytes between texels, which softens across the line by a fraction of
        a pixel: most pixels of long strokes move by a level or less, but a preview's short ones
        change visibly, and gain little for the extra draw. */
    static constexpr int defaultTwoLevelFromTaps = 16;

    /** The boxes for a line `length` pixels long (each box spans half of it). */
    static Levels levelsFor(float length, int twoLevelFromTaps = defaultTwoLevelFromTaps);

    /** Builds the program(s) for a line `length` pixels long. Only type 0 (a line average) exists;
        other types fail. Set the cache flags before. */
    virtual bool initFilter(float length, int type);
    virtual void setAngle(float value);
    virtual void setPasses(int count) { passes = count; }

    /** The program text for one level of the boxes for a length: the first level, or the second
        when `secondLevel` (what initFilter compiles). */
    static juce::String fragmentSourceFor(float length, bool secondLevel = false, int twoLevelFromTaps = defaultTwoLevelFromTaps);

    /** Put in front of both programs' texts; empty here. */
    virtual juce::String programPrefix() const { return {}; }

    void setupFilterForSize(GPUImageSize size) override;
    void renderToTextureWithVertices(const GLfloat* vertices, const GLfloat* textureCoordinates, GLuint sourceTexture) override;

    float blurSpread = 1.0f;
    float angle = 0.0f;
    int32_t passes = 1;
    int32_t type = 0;
    /** Set before initFilter: the shortest box drawn in two levels. */
    int twoLevelFromTaps = defaultTwoLevelFromTaps;
    Levels levels;
    /** Half the line's length in pixels, as the boxes use it. */
    float span = 0.5f;
};
