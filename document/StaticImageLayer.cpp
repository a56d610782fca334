#include "document/StaticImageLayer.h"

#include <cstring>

StaticImageLayer::~StaticImageLayer()
{
    if (mask != nullptr)
        mask->release();
}

void StaticImageLayer::setImage(SxImageRgbaBytes* picture)
{
    image = picture;
    setNeedsRender(true);
}

SxImageRgbaBytes* StaticImageLayer::getRenderedImage(LayerRenderParameters&)
{
    needsRender = false;
    if (image == nullptr)
        return nullptr;

    if (mask == nullptr || mask->width != image->width || mask->height != image->height)
    {
        if (mask != nullptr)
            mask->release();
        mask = new SxImageAlphaByte(image->width, image->height);
    }

    const auto area = renderRegion.meansWholePicture() ? image->bounds() : renderRegion.pixelsIn(*image);
    for (int y = area.getY(); y < area.getBottom(); ++y)
        std::memset(mask->pixelAt(area.getX(), y), 0, (size_t) area.getWidth());
    return image;
}
