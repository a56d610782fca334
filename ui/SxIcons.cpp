#include "ui/SxIcons.h"

namespace SxIcons
{
namespace
{
// Line weight of the outlined icons, in units of the icon's size: 0.075 of a 20 pixel icon is
// 1.5 pixels, the weight of the 12 pixel panel text next to them.
constexpr float weight = 0.075f;

void addStroke(juce::Path& icon, const juce::Path& lines, float thickness = weight)
{
    juce::Path outline;
    juce::PathStrokeType(thickness, juce::PathStrokeType::curved, juce::PathStrokeType::rounded).createStrokedPath(outline, lines);
    icon.addPath(outline);
}

juce::Path polyline(std::initializer_list<juce::Point<float>> points)
{
    juce::Path p;
    bool first = true;
    for (auto pt : points)
    {
        if (first)
            p.startNewSubPath(pt);
        else
            p.lineTo(pt);
        first = false;
    }
    return p;
}

juce::Path roundedBox(float x, float y, float w, float h, float corner)
{
    juce::Path p;
    p.addRoundedRectangle(x, y, w, h, corner);
    return p;
}

// A curved arrow turning back to the left: the undo mark; redo is its mirror image.
juce::Path undoArrow()
{
    juce::Path icon;
    juce::Path arc;
    arc.startNewSubPath(0.22f, 0.42f);
    arc.lineTo(0.6f, 0.42f);
    arc.cubicTo(0.95f, 0.42f, 0.95f, 0.82f, 0.6f, 0.82f);
    arc.lineTo(0.42f, 0.82f);
    addStroke(icon, arc);
    addStroke(icon, polyline({ { 0.38f, 0.24f }, { 0.2f, 0.42f }, { 0.38f, 0.6f } }));
    return icon;
}

juce::Path magnifier(bool plus)
{
    juce::Path icon;
    juce::Path lens;
    lens.addEllipse(0.1f, 0.1f, 0.56f, 0.56f);
    addStroke(icon, lens);
    addStroke(icon, polyline({ { 0.6f, 0.6f }, { 0.9f, 0.9f } }), weight * 1.5f);
    addStroke(icon, polyline({ { 0.26f, 0.38f }, { 0.5f, 0.38f } }));
    if (plus)
        addStroke(icon, polyline({ { 0.38f, 0.26f }, { 0.38f, 0.5f } }));
    return icon;
}

juce::Path chevron(bool right)
{
    juce::Path icon;
    if (right)
        addStroke(icon, polyline({ { 0.36f, 0.14f }, { 0.72f, 0.5f }, { 0.36f, 0.86f } }), weight * 1.4f);
    else
        addStroke(icon, polyline({ { 0.64f, 0.14f }, { 0.28f, 0.5f }, { 0.64f, 0.86f } }), weight * 1.4f);
    return icon;
}

juce::Path build(Kind kind)
{
    juce::Path icon;
    switch (kind)
    {
    case Kind::openPhoto:
    {
        // A picture: frame, a mountain and a sun.
        addStroke(icon, roundedBox(0.08f, 0.18f, 0.84f, 0.64f, 0.08f));
        juce::Path mountain;
        mountain.addTriangle(0.16f, 0.74f, 0.42f, 0.4f, 0.66f, 0.74f);
        mountain.addTriangle(0.5f, 0.74f, 0.66f, 0.54f, 0.84f, 0.74f);
        icon.addPath(mountain);
        icon.addEllipse(0.64f, 0.27f, 0.13f, 0.13f);
        break;
    }
    case Kind::save:
        // An arrow down into a tray.
        addStroke(icon, polyline({ { 0.5f, 0.1f }, { 0.5f, 0.62f } }));
        addStroke(icon, polyline({ { 0.3f, 0.44f }, { 0.5f, 0.64f }, { 0.7f, 0.44f } }));
        addStroke(icon, polyline({ { 0.12f, 0.6f }, { 0.12f, 0.88f }, { 0.88f, 0.88f }, { 0.88f, 0.6f } }));
        break;
    case Kind::crop:
        addStroke(icon, polyline({ { 0.26f, 0.06f }, { 0.26f, 0.74f }, { 0.94f, 0.74f } }));
        addStroke(icon, polyline({ { 0.06f, 0.26f }, { 0.74f, 0.26f }, { 0.74f, 0.94f } }));
        break;
    case Kind::undo:
        icon = undoArrow();
        break;
    case Kind::redo:
        icon = undoArrow();
        icon.applyTransform(juce::AffineTransform::scale(-1.0f, 1.0f).translated(1.0f, 0.0f));
        break;
    case Kind::zoomIn:
        icon = magnifier(true);
        break;
    case Kind::zoomOut:
        icon = magnifier(false);
        break;
    case Kind::pan:
        // Four arrows from the centre.
        addStroke(icon, polyline({ { 0.5f, 0.1f }, { 0.5f, 0.9f } }));
        addStroke(icon, polyline({ { 0.1f, 0.5f }, { 0.9f, 0.5f } }));
        addStroke(icon, polyline({ { 0.38f, 0.22f }, { 0.5f, 0.1f }, { 0.62f, 0.22f } }));
        addStroke(icon, polyline({ { 0.38f, 0.78f }, { 0.5f, 0.9f }, { 0.62f, 0.78f } }));
        addStroke(icon, polyline({ { 0.22f, 0.38f }, { 0.1f, 0.5f }, { 0.22f, 0.62f } }));
        addStroke(icon, polyline({ { 0.78f, 0.38f }, { 0.9f, 0.5f }, { 0.78f, 0.62f } }));
        break;
    case Kind::original:
    {
        // An eye: the picture as it was.
        juce::Path lid;
        lid.startNewSubPath(0.06f, 0.5f);
        lid.quadraticTo(0.5f, 0.08f, 0.94f, 0.5f);
        lid.quadraticTo(0.5f, 0.92f, 0.06f, 0.5f);
        lid.closeSubPath();
        addStroke(icon, lid);
        icon.addEllipse(0.37f, 0.37f, 0.26f, 0.26f);
        break;
    }
    case Kind::news:
        addStroke(icon, roundedBox(0.12f, 0.12f, 0.76f, 0.76f, 0.06f));
        icon.addRectangle(0.24f, 0.24f, 0.22f, 0.2f);
        addStroke(icon, polyline({ { 0.56f, 0.28f }, { 0.76f, 0.28f } }), weight * 0.8f);
        addStroke(icon, polyline({ { 0.56f, 0.4f }, { 0.76f, 0.4f } }), weight * 0.8f);
        addStroke(icon, polyline({ { 0.24f, 0.56f }, { 0.76f, 0.56f } }), weight * 0.8f);
        addStroke(icon, polyline({ { 0.24f, 0.68f }, { 0.64f, 0.68f } }), weight * 0.8f);
        break;
    case Kind::info:
    {
        juce::Path ring;
        ring.addEllipse(0.08f, 0.08f, 0.84f, 0.84f);
        addStroke(icon, ring);
        icon.addEllipse(0.445f, 0.25f, 0.11f, 0.11f);
        addStroke(icon, polyline({ { 0.5f, 0.45f }, { 0.5f, 0.72f } }), weight * 1.3f);
        break;
    }
    case Kind::products:
        for (int row = 0; row < 2; ++row)
            for (int col = 0; col < 2; ++col)
                icon.addRoundedRectangle(0.12f + col * 0.42f, 0.12f + row * 0.42f, 0.34f, 0.34f, 0.06f);
        break;
    case Kind::randomize:
    {
        // A die showing five.
        addStroke(icon, roundedBox(0.1f, 0.1f, 0.8f, 0.8f, 0.14f));
        const float pip = 0.14f;
        for (auto c : { juce::Point<float>(0.3f, 0.3f), { 0.7f, 0.3f }, { 0.5f, 0.5f }, { 0.3f, 0.7f }, { 0.7f, 0.7f } })
            icon.addEllipse(c.x - pip * 0.5f, c.y - pip * 0.5f, pip, pip);
        break;
    }
    case Kind::arrowLeft:
        icon = chevron(false);
        break;
    case Kind::arrowRight:
        icon = chevron(true);
        break;
    case Kind::render:
    {
        // A play triangle with rounded corners: its centroid sits on the square's centre.
        juce::Path triangle;
        triangle.addTriangle(0.28f, 0.12f, 0.28f, 0.88f, 0.94f, 0.5f);
        icon = triangle.createPathWithRoundedCorners(0.06f);
        break;
    }
    }
    return icon;
}
} // namespace

juce::Path get(Kind kind)
{
    return build(kind);
}

juce::AffineTransform fitting(juce::Rectangle<float> area)
{
    const float side = juce::jmin(area.getWidth(), area.getHeight());
    return juce::AffineTransform::scale(side).translated(area.getCentreX() - side * 0.5f, area.getCentreY() - side * 0.5f);
}

juce::Path getFitted(Kind kind, juce::Rectangle<float> area)
{
    auto icon = get(kind);
    icon.applyTransform(fitting(area));
    return icon;
}
} // namespace SxIcons
