// Feeds arbitrary bytes to the project reader and then to the layer stack's restore, as opening a
// project does: whatever a file holds, the reader returns a whole document or none, never
// allocates what a header merely claims, and the stack takes any dictionary.

#include "document/LayerManager.h"
#include "document/ProjectFile.h"
#include "document/StaticImageLayer.h"
#include "imaging/ImageLimits.h"

#include <cstddef>
#include <cstdint>

namespace
{
/** Stands in for the effect: a layer class the factory knows, with one setting of its own. */
class ProjectFuzzLayer : public Layer
{
public:
    Layer* createInstance() const override { return new ProjectFuzzLayer(); }
    void restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions& options) override
    {
        Layer::restoreFromDictionary(set, options);
        strokeLength = set.getFloatValue("strokeLength", 0.5f);
    }
    float strokeLength = 0.5f;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static ProjectFuzzLayer prototype;
    static const bool registered = (LayerManager::addEffectPrototype(&prototype), true);
    (void) registered;
    // The picture limit that fits under the runs' allocation ceiling, as in the image reader's.
    static const bool limited = (ImageLimits::setMaximumMegapixels(12), true);
    (void) limited;

    {
        juce::MemoryInputStream in(data, size, false);
        auto document = ProjectFile::read(in);
        if (document != nullptr)
        {
            if (document->image.get() == nullptr || document->image->width <= 0 || document->image->height <= 0)
                __builtin_trap(); // a document always carries its picture

            LayerManager layers;
            layers.addLayer(new StaticImageLayer(document->image.get()));
            layers.restoreFromDictionary(document->settings, nullptr, {}, false);
        }
    }
    {
        juce::MemoryInputStream in(data, size, false);
        ProjectFile::readPreview(in);
    }
    return 0;
}
