#include "brush/SxBrush.h"
#include "imaging/ImageScaling.h"

#include <cmath>

namespace
{
void dropImage(SxImageAlphaByte*& image)
{
    if (image != nullptr)
        image->release();
    image = nullptr;
}
} // namespace

SxBrush::SxBrush(float diameter, float softness, float opacity, SxImageAlphaByte* tip)
    : mTipImage(tip), mDiameter(diameter), mSoftness(softness), mOpacity(opacity)
{
    if (mTipImage != nullptr)
        mTipImage->retain();
}

SxBrush::~SxBrush()
{
    dropImage(mImage);
    dropImage(mScaledImage);
    dropImage(mTipImage);
}

void SxBrush::regenerate()
{
    dropImage(mImage);

    int width = (int) (mDiameter + 0.99f);
    if (width < 2)
        width = 1;
    int height = width;
    const bool tipped = mTipImage != nullptr && mTipImage->width > 0 && mTipImage->height > 0;
    if (tipped)
        height = std::max(1, (width * mTipImage->height) / mTipImage->width);
    mImage = new SxImageAlphaByte(width, height);

    // The centre sits on the corner of pixel (width/2, height/2) and pixels are measured from
    // their own corners, so every dab stands half a pixel off its point; strokes already in
    // masks carry that offset, and so must every dab after them.
    const float cx = (float) width * 0.5f, cy = (float) height * 0.5f;
    const float r = mDiameter * 0.5f;
    const float core = r - r * mSoftness;
    const float k = 1.0f / (r - core); // infinite for a hard disc, where no pixel falls in the band
    const float tipStepX = tipped ? (float) (mTipImage->width - 1) / (width > 1 ? (float) (width - 1) : 0.0001f) : 0.0f;
    const float tipStepY = tipped ? (float) (mTipImage->height - 1) / (height > 1 ? (float) (height - 1) : 0.0001f) : 0.0f;

    for (int y = 0; y < height; ++y)
    {
        std::uint8_t* row = mImage->pixelAt(0, y);
        const float dy2 = ((float) y - cy) * ((float) y - cy);
        for (int x = 0; x < width; ++x)
        {
            const float d = std::sqrt(((float) x - cx) * ((float) x - cx) + dy2);
            float v = 0.0f;
            if (d < core)
                v = mOpacity;
            else if (d < r)
            {
                const float t = (r - d) * k;
                v = (3.0f - 2.0f * t) * t * t * mOpacity;
            }
            if (!tipped)
                row[x] = (std::uint8_t) (int) (v * 255.0f);
            else
            {
                const auto tip = *mTipImage->pixelAt((int) ((float) x * tipStepX), (int) ((float) y * tipStepY));
                row[x] = (std::uint8_t) (int) ((float) tip * v);
            }
        }
    }
}

SxImageAlphaByte* SxBrush::imageAtScale(float scale, float)
{
    if (mImage == nullptr)
        regenerate();
    const int w = std::max(1, (int) ((float) mImage->width * scale));
    const int h = std::max(1, (int) ((float) mImage->height * scale));
    if (w == mImage->width && h == mImage->height)
        return mImage;
    if (mScaledImage != nullptr && w == mScaledImage->width && h == mScaledImage->height)
        return mScaledImage;
    dropImage(mScaledImage);
    mScaledImage = new SxImageAlphaByte(w, h);
    ImageScaling::bilinear({ mImage->pixels, mImage->width, mImage->height, (size_t) mImage->width, 1 },
                           { mScaledImage->pixels, w, h, (size_t) w, 1 });
    return mScaledImage;
}

void SxBrush::sampleScaled(std::uint8_t& out, float x, float y)
{
    out = *mScaledImage->pixelAt((int) x, (int) y);
}

std::uint8_t SxBrush::paintOffOpacityByte(float opacity, float pressure)
{
    float v = opacity * 255.0f * pressure;
    if (v <= 1.0f)
        v *= 255.0f;
    return (std::uint8_t) ((int) v & 0xff);
}
