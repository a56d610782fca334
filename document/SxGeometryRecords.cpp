#include "document/SxGeometryRecords.h"

#include <cmath>

juce::Point<float> SxMatrix3::apply(juce::Point<float> p) const
{
    const float x = m[0][0] * p.x + m[0][1] * p.y + m[0][2];
    const float y = m[1][0] * p.x + m[1][1] * p.y + m[1][2];
    const float w = m[2][0] * p.x + m[2][1] * p.y + m[2][2];
    return w != 0.0f && w != 1.0f ? juce::Point<float>(x / w, y / w) : juce::Point<float>(x, y);
}

SxMatrix3 SxMatrix3::operator*(const SxMatrix3& other) const
{
    SxMatrix3 r;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
        {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k)
                sum += (double) m[i][k] * other.m[k][j];
            r.m[i][j] = (float) sum;
        }
    return r;
}

SxMatrix3 SxMatrix3::inverted() const
{
    // Cofactors in double: a placement scaled far down still inverts without losing its centre.
    const double a = m[0][0], b = m[0][1], c = m[0][2];
    const double d = m[1][0], e = m[1][1], f = m[1][2];
    const double g = m[2][0], h = m[2][1], i = m[2][2];
    const double A = e * i - f * h, B = -(d * i - f * g), C = d * h - e * g;
    const double det = a * A + b * B + c * C;
    SxMatrix3 r;
    if (std::abs(det) < 1.0e-12)
        return r;
    const double s = 1.0 / det;
    const double values[3][3] = { { A, -(b * i - c * h), b * f - c * e },
                                  { B, a * i - c * g, -(a * f - c * d) },
                                  { C, -(a * h - b * g), a * e - b * d } };
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col)
            r.m[row][col] = (float) (values[row][col] * s);
    return r;
}

//==============================================================================
void SxTransform::update()
{
    const float cosA = std::cos(orientation), sinA = std::sin(orientation);
    const float hw = imageSize.x * 0.5f, hh = imageSize.y * 0.5f;
    // document = centre + R · S · (image − size / 2)
    forward.m[0][0] = cosA * scale.x;
    forward.m[0][1] = -sinA * scale.y;
    forward.m[1][0] = sinA * scale.x;
    forward.m[1][1] = cosA * scale.y;
    forward.m[0][2] = center.x - (forward.m[0][0] * hw + forward.m[0][1] * hh);
    forward.m[1][2] = center.y - (forward.m[1][0] * hw + forward.m[1][1] * hh);
    forward.m[2][0] = forward.m[2][1] = 0.0f;
    forward.m[2][2] = 1.0f;
    inverse = forward.inverted();

    corners[0] = forward.apply({ 0.0f, 0.0f });
    corners[1] = forward.apply({ imageSize.x, 0.0f });
    corners[2] = forward.apply({ imageSize.x, imageSize.y });
    corners[3] = forward.apply({ 0.0f, imageSize.y });
    for (int side = 0; side < 2; ++side)
    {
        const auto delta = side == 0 ? corners[1] - corners[0] : corners[3] - corners[0];
        edgeLengths[side] = delta.getDistanceFromOrigin();
        edgeDirections[side] = edgeLengths[side] > 0.0f ? delta / edgeLengths[side] : juce::Point<float>();
    }
}

void SxTransform::solve(juce::Rectangle<float> from, juce::Rectangle<float> to, int mode)
{
    float sx = from.getWidth() != 0.0f ? to.getWidth() / from.getWidth() : 1.0f;
    float sy = from.getHeight() != 0.0f ? to.getHeight() / from.getHeight() : 1.0f;
    if (mode == fit)
        sx = sy = std::min(sx, sy);
    // Centre on centre, so that the fitted mode leaves equal bars on both sides.
    forward = SxMatrix3();
    forward.m[0][0] = sx;
    forward.m[1][1] = sy;
    forward.m[0][2] = to.getCentreX() - sx * from.getCentreX();
    forward.m[1][2] = to.getCentreY() - sy * from.getCentreY();
    inverse = forward.inverted();
}

void SxTransform::remap(juce::Rectangle<float> from, juce::Rectangle<float> to)
{
    SxTransform map;
    map.solve(from, to, stretch);
    center = map.forward.apply(center);
    // With a turned placement and unequal factors the exact image is no longer a rectangle; the
    // factors are applied along the placement's own axes, which is exact for equal factors.
    scale = { scale.x * map.forward.m[0][0], scale.y * map.forward.m[1][1] };
    update();
}

bool SxTransform::contains(juce::Point<float> imagePoint) const
{
    const auto local = inverse.apply(imagePoint);
    return local.x >= 0.0f && local.y >= 0.0f && local.x <= imageSize.x && local.y <= imageSize.y;
}

//==============================================================================
void SxPlacement::update() { SxTransform::update(); }

void SxPlacement::solve(juce::Rectangle<float> from, juce::Rectangle<float> to, int mode)
{
    SxTransform::solve(from, to, mode);
}

void SxPlacement::writeToDictionary(SxPropertySet& set, const juce::String& name, juce::Point<float> size, int mode) const
{
    SxPlacement copy(*this);
    juce::Point<float> stored = size;
    if (mode == 1 && size.x > 0.0f && size.y > 0.0f)
    {
        copy.remap({ 0.0f, 0.0f, size.x, size.y }, { 0.0f, 0.0f, 1.0f, 1.0f });
        stored = { 1.0f, 1.0f };
    }
    SxPropertySet record;
    record.setFloat("origImageSize.x", stored.x);
    record.setFloat("origImageSize.y", stored.y);
    record.setFloat("transform.center.x", copy.center.x);
    record.setFloat("transform.center.y", copy.center.y);
    record.setFloat("transform.scale.x", copy.scale.x);
    record.setFloat("transform.scale.y", copy.scale.y);
    record.setFloat("transform.orientation", copy.orientation);
    record.setBool("isSelected", copy.isSelected);
    set.setString(name, record.toXml()->toString());
}

void SxPlacement::readKeys(const SxPropertySet& record)
{
    center = { record.getFloatValue("transform.center.x", center.x), record.getFloatValue("transform.center.y", center.y) };
    scale = { record.getFloatValue("transform.scale.x", scale.x), record.getFloatValue("transform.scale.y", scale.y) };
    orientation = record.getFloatValue("transform.orientation", orientation);
    isSelected = record.getBoolValue("isSelected", isSelected);
}

bool SxPlacement::readFromXml(const juce::XmlElement& element)
{
    SxPropertySet record;
    record.fromXml(element);
    if (record.size() == 0)
        return false;
    readKeys(record);
    update();
    return true;
}

bool SxPlacement::readFromDictionary(const SxPropertySet& set, const juce::String& name, juce::Point<float> size)
{
    auto xml = SxPropertySet::parseXmlText(set.getValue(name));
    if (xml == nullptr)
        return false;
    SxPropertySet record;
    record.fromXml(*xml);
    if (record.size() == 0)
        return false;
    readKeys(record);
    const juce::Point<float> made { record.getFloatValue("origImageSize.x", 0.0f), record.getFloatValue("origImageSize.y", 0.0f) };
    // A record without a usable size was made in the picture it is read into.
    if (made.x > 0.0f && made.y > 0.0f && size.x > 0.0f && size.y > 0.0f && std::isfinite(made.x) && std::isfinite(made.y))
        remap({ 0.0f, 0.0f, made.x, made.y }, { 0.0f, 0.0f, size.x, size.y });
    else
        update();
    return true;
}

void SxPlacement::resizeSide(int side, juce::Point<float> point, bool keepAspect, juce::Point<float> minimumSize)
{
    if (side < topSide || side > leftSide || imageSize.x <= 0.0f || imageSize.y <= 0.0f)
        return;
    update();
    const bool across = side == rightSide || side == leftSide;
    const auto local = inverse.apply(point);
    const float size = across ? imageSize.x : imageSize.y;
    const float axisScale = std::abs(across ? scale.x : scale.y);
    // Distance from the fixed side to the pointer, in untransformed pixels.
    const float extent = side == rightSide ? local.x : side == leftSide ? imageSize.x - local.x
                         : side == bottomSide ? local.y : imageSize.y - local.y;
    const float oldLength = size * axisScale;
    if (oldLength <= 0.0f)
        return;
    float newLength = juce::jmax(extent * axisScale, across ? minimumSize.x : minimumSize.y);
    float factor = newLength / oldLength;
    if (keepAspect)
    {
        // The other axis may not fall below its own minimum either.
        const float otherLength = (across ? imageSize.y * std::abs(scale.y) : imageSize.x * std::abs(scale.x));
        const float otherMinimum = across ? minimumSize.y : minimumSize.x;
        if (otherLength > 0.0f && otherLength * factor < otherMinimum)
            factor = juce::jmin(otherMinimum / otherLength, juce::jmax(factor, 1.0f));
        newLength = oldLength * factor;
    }
    const juce::Point<float> anchorLocal = side == rightSide ? juce::Point<float>(0.0f, imageSize.y * 0.5f)
                                           : side == leftSide ? juce::Point<float>(imageSize.x, imageSize.y * 0.5f)
                                           : side == bottomSide ? juce::Point<float>(imageSize.x * 0.5f, 0.0f)
                                                                : juce::Point<float>(imageSize.x * 0.5f, imageSize.y);
    const auto anchor = forward.apply(anchorLocal);
    const auto towards = (side == rightSide ? edgeDirections[0] : side == leftSide ? -edgeDirections[0]
                          : side == bottomSide ? edgeDirections[1] : -edgeDirections[1]);
    if (across || keepAspect)
        scale.x *= factor;
    if (!across || keepAspect)
        scale.y *= factor;
    center = anchor + towards * (newLength * 0.5f);
    update();
}

//==============================================================================
void SxSegment::writeToDictionary(SxPropertySet& set) const
{
    set.setFloat("mPt1.x", mPt1.x);
    set.setFloat("mPt1.y", mPt1.y);
    set.setFloat("mPt2.x", mPt2.x);
    set.setFloat("mPt2.y", mPt2.y);
}

void SxSegment::readFromDictionary(const SxPropertySet& set)
{
    mPt1 = { set.getFloatValue("mPt1.x", mPt1.x), set.getFloatValue("mPt1.y", mPt1.y) };
    mPt2 = { set.getFloatValue("mPt2.x", mPt2.x), set.getFloatValue("mPt2.y", mPt2.y) };
}
