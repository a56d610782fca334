// The layer stack: caching, the two-output rule of full-size renders, the factory, and saving and
// restoring the stack, with a tint layer of the tests' own in place of the effect.

#include "ProjectFileTestSupport.h"
#include "TestLayers.h"

#include "document/LayerBlends.h"
#include "document/StaticImageLayer.h"

#include <gtest/gtest.h>

namespace
{
using ProjectFileTestSupport::makePicture;
using ProjectFileTestSupport::samePixels;

struct Stack
{
    explicit Stack(int tints, int w = 32, int h = 24) : picture(makePicture(w, h)), manager(&callback)
    {
        manager.addLayer(new StaticImageLayer(picture.get()));
        for (int i = 0; i < tints; ++i)
        {
            auto* layer = new TintLayer();
            layer->red = 40 * (i + 1);
            layer->alpha = 128;
            manager.addLayer(layer);
        }
    }
    TintLayer* tint(int index) { return static_cast<TintLayer*>(manager.getLayer(index)); }

    SxRef<SxImageRgbaBytes> picture;
    RecordingManagerCallback callback;
    LayerManager manager;
};
} // namespace

TEST(LayerManagerRender, EmptyStackAndBareSourcePicture)
{
    LayerManager empty;
    EXPECT_EQ(empty.render(nullptr, false, false), nullptr);

    Stack stack(0);
    EXPECT_EQ(stack.manager.render(nullptr, false, false), stack.picture.get());
    auto copy = SxRef<SxImageRgbaBytes>::adopt(stack.manager.render(nullptr, false, true));
    ASSERT_NE(copy.get(), nullptr);
    EXPECT_NE(copy.get(), stack.picture.get());
    EXPECT_TRUE(samePixels(*copy, *stack.picture));
}

TEST(LayerManagerRender, SecondRenderWithoutChangeReusesTheCache)
{
    Stack stack(2);
    auto rendersAfterRender = [&stack] {
        stack.manager.render(nullptr, false, false);
        return std::make_pair(stack.tint(1)->renders, stack.tint(2)->renders);
    };
    SxImageRgbaBytes* first = stack.manager.render(nullptr, false, false);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(stack.manager.render(nullptr, false, false), first);
    EXPECT_EQ(rendersAfterRender(), std::make_pair(1, 1));

    // A change to the lower layer makes it and the layer that depends on it render again.
    stack.tint(1)->red = 250;
    stack.tint(1)->invalidate(nullptr);
    EXPECT_EQ(stack.callback.renderRequests, 1);
    EXPECT_EQ(rendersAfterRender(), std::make_pair(2, 2));

    // A change to the top layer leaves the one below cached.
    stack.tint(2)->invalidate(nullptr);
    EXPECT_EQ(rendersAfterRender(), std::make_pair(2, 3));
}

TEST(LayerManagerRender, ChangeDuringARenderStaysPendingForTheNextOne)
{
    // The interface changes a layer while a render thread is inside it: the render in progress
    // may show the old or the new value, but the next render must not return its cache.
    Stack stack(1);
    auto* tint = stack.tint(1);
    tint->duringRender = [tint] {
        tint->red = 10;
        tint->setNeedsRender(true);
        tint->duringRender = nullptr;
    };
    stack.manager.render(nullptr, false, false);
    EXPECT_TRUE(tint->getNeedsRender());
    stack.manager.render(nullptr, false, false);
    EXPECT_EQ(tint->renders, 2);
    EXPECT_FALSE(tint->getNeedsRender());
}

TEST(LayerManagerRender, NewInputSizeForcesRenderEvenWhenClean)
{
    Stack stack(1);
    stack.manager.render(nullptr, false, false);
    auto bigger = makePicture(40, 30);
    static_cast<StaticImageLayer*>(stack.manager.getLayer(0))->setImage(bigger.get());
    stack.tint(1)->setNeedsRender(false);
    SxImageRgbaBytes* result = stack.manager.render(nullptr, false, false);
    EXPECT_EQ(stack.tint(1)->renders, 2);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->width, 40);
    static_cast<StaticImageLayer*>(stack.manager.getLayer(0))->setImage(stack.picture.get());
}

TEST(LayerManagerRender, FullSizeRenderHoldsAtMostTwoOutputsAndGivesTheSamePicture)
{
    Stack preview(4);
    TintLayer::peakOutputs = 0;
    auto expected = SxRef<SxImageRgbaBytes>::adopt(preview.manager.render(nullptr, false, true));
    EXPECT_EQ(TintLayer::peakOutputs, 4) << "without the full-size rule every output stays";

    Stack full(4);
    full.manager.setHighQuality(true);
    TintLayer::peakOutputs = 0;
    auto result = SxRef<SxImageRgbaBytes>::adopt(full.manager.render(nullptr, false, true));
    EXPECT_LE(TintLayer::peakOutputs, 2);
    ASSERT_NE(result.get(), nullptr);
    EXPECT_TRUE(samePixels(*result, *expected));

    // Dropped outputs come back on the next render instead of leaving holes.
    auto again = SxRef<SxImageRgbaBytes>::adopt(full.manager.render(nullptr, false, true));
    EXPECT_TRUE(samePixels(*again, *expected));
}

TEST(LayerManagerRender, CompositeMatchesBlendOfTheLayerColour)
{
    Stack stack(1);
    stack.tint(1)->compositeMode = LayerBlends::multiply;
    stack.tint(1)->layerOpacity = 0.5f;
    SxImageRgbaBytes* result = stack.manager.render(nullptr, false, false);
    ASSERT_NE(result, nullptr);
    for (int y = 0; y < result->height; y += 5)
        for (int x = 0; x < result->width; x += 3)
        {
            uint8_t want[4];
            std::memcpy(want, stack.picture->pixelAt(x, y), 4);
            const uint8_t layerPixel[4] = { (uint8_t) ((128 * 128 + 127) / 255), 40, 0, 0 };
            LayerBlends::blendPixel(LayerBlends::multiply, layerPixel, want);
            EXPECT_EQ(std::memcmp(result->pixelAt(x, y), want, 4), 0) << x << "," << y;
        }

    // The gap in the blend table leaves the picture below byte for byte.
    stack.tint(1)->compositeMode = LayerBlends::vividLight;
    stack.tint(1)->setNeedsRender(true);
    EXPECT_TRUE(samePixels(*stack.manager.render(nullptr, false, false), *stack.picture));
}

TEST(LayerManagerRender, DirtyRectangleRefreshesOnlyItsArea)
{
    Stack stack(1);
    auto before = SxRef<SxImageRgbaBytes>::adopt(stack.manager.render(nullptr, false, true));
    stack.tint(1)->red = 250;
    stack.tint(1)->setNeedsRender(true);
    Stack all(1);
    all.tint(1)->red = 250;
    auto everywhere = SxRef<SxImageRgbaBytes>::adopt(all.manager.render(nullptr, false, true));

    const LayerRect region = LayerRect::of(4, 5, 9, 7);
    SxImageRgbaBytes* result = stack.manager.render(&region, false, false);
    ASSERT_NE(result, nullptr);
    for (int y = 0; y < result->height; ++y)
        for (int x = 0; x < result->width; ++x)
        {
            const bool inside = x >= 4 && x <= 9 && y >= 5 && y <= 7;
            const SxImageRgbaBytes& want = inside ? *everywhere : *before;
            EXPECT_EQ(std::memcmp(result->pixelAt(x, y), want.pixelAt(x, y), 4), 0) << x << "," << y;
        }
}

TEST(LayerDictionary, LayerFieldsRoundTripAndOldFormsReadAsDefaults)
{
    TintLayer layer;
    EXPECT_EQ(layer.getName(), "TintLayer") << "an empty name shows the class's name";
    layer.layerName = juce::String::fromUTF8("Glow ü");
    layer.layerOpacity = 0.25f;
    layer.compositeMode = 7;
    layer.setVisible(false);
    SxPropertySet set;
    layer.saveToDictionary(set, {});

    TintLayer restored;
    restored.setNeedsRender(false);
    restored.restoreFromDictionary(set, {});
    EXPECT_EQ(restored.getName(), juce::String::fromUTF8("Glow ü"));
    EXPECT_FLOAT_EQ(restored.layerOpacity, 0.25f);
    EXPECT_EQ(restored.compositeMode, 7);
    EXPECT_FALSE(restored.getVisible());
    EXPECT_TRUE(restored.getNeedsRender());

    SxPropertySet old;
    old.setValue("visible", "0");
    restored.restoreFromDictionary(old, {});
    EXPECT_FALSE(restored.getVisible()) << "text \"0\" from older files means hidden";
    SxPropertySet none;
    restored.restoreFromDictionary(none, {});
    EXPECT_TRUE(restored.getVisible());
    EXPECT_FLOAT_EQ(restored.layerOpacity, 1.0f);
    EXPECT_EQ(restored.compositeMode, 0);
}

TEST(LayerDictionary, NeedsRenderReachesSubLayersAndCopyKeepsThem)
{
    TestPrototypes prototypes;
    TintLayer parent;
    auto* child = new InvertLayer();
    child->red = 99;
    parent.addSubLayer(child);
    parent.setNeedsRender(false);
    EXPECT_FALSE(child->getNeedsRender());
    parent.setNeedsRender(true);
    EXPECT_TRUE(child->getNeedsRender());

    parent.red = 17;
    TintLayer copy;
    copy.copyFrom(parent);
    EXPECT_EQ(copy.red, 17);
    ASSERT_EQ(copy.getSubLayers().size(), 1u);
    auto* copiedChild = dynamic_cast<InvertLayer*>(copy.getSubLayers()[0]);
    ASSERT_NE(copiedChild, nullptr);
    EXPECT_EQ(copiedChild->red, 99);
    EXPECT_EQ(copiedChild->getParentLayer(), &copy);
}

TEST(LayerManagerDictionary, SaveAndRestoreRebuildsTheStack)
{
    TestPrototypes prototypes;
    Stack original(0);
    auto* tint = new TintLayer();
    tint->red = 200;
    tint->layerOpacity = 0.5f;
    tint->compositeMode = LayerBlends::screen;
    auto* invert = new InvertLayer();
    invert->layerName = "top";
    auto* sub = new TintLayer();
    sub->red = 3;
    invert->addSubLayer(sub);
    original.manager.addLayer(tint);
    original.manager.addLayer(invert);
    original.manager.setSelectedLayer(tint, false);
    auto expected = SxRef<SxImageRgbaBytes>::adopt(original.manager.render(nullptr, false, true));

    // Through the binary form, as a project file stores it.
    SxPropertySet saved;
    original.manager.saveToDictionary(saved, {});
    juce::MemoryOutputStream bytes;
    saved.writeBinary(bytes);
    SxPropertySet loaded;
    juce::MemoryInputStream in(bytes.getData(), bytes.getDataSize(), false);
    loaded.readBinary(in);

    Stack restored(3);
    restored.manager.restoreFromDictionary(loaded, nullptr, {}, true);
    ASSERT_EQ(restored.manager.getNumLayers(), 3);
    auto* restoredTint = dynamic_cast<TintLayer*>(restored.manager.getLayer(1));
    auto* restoredInvert = dynamic_cast<InvertLayer*>(restored.manager.getLayer(2));
    ASSERT_NE(restoredTint, nullptr);
    ASSERT_NE(restoredInvert, nullptr);
    EXPECT_EQ(dynamic_cast<InvertLayer*>(restoredTint), nullptr);
    EXPECT_EQ(restoredInvert->getName(), "top");
    ASSERT_EQ(restoredInvert->getSubLayers().size(), 1u);
    EXPECT_EQ(static_cast<TintLayer*>(restoredInvert->getSubLayers()[0])->red, 3);
    EXPECT_EQ(restored.manager.getSelectedIndex(), 1);
    EXPECT_GE(restored.callback.renderRequests, 1);

    // The tint's colour, opacity and blend show in the pixels.
    auto result = SxRef<SxImageRgbaBytes>::adopt(restored.manager.render(nullptr, false, true));
    EXPECT_TRUE(samePixels(*result, *expected));
}

TEST(LayerManagerDictionary, UnknownClassesAndCountsAreDropped)
{
    TestPrototypes prototypes;
    Stack stack(2);
    SxPropertySet set;
    set.setInt("LayerCount", 2);
    set.setString("ClassName1", "Vanished");
    set.setString("ClassName2", "TintLayer");
    stack.manager.restoreFromDictionary(set, nullptr, {}, false);
    ASSERT_EQ(stack.manager.getNumLayers(), 2) << "the unknown class is skipped, the known one kept";
    EXPECT_NE(dynamic_cast<TintLayer*>(stack.manager.getLayer(1)), nullptr);
    // Older files wrote class names with the compiler's type prefix.
    EXPECT_EQ(Layer::cleanClassName("class TornvaleEffect"), "TornvaleEffect");
    EXPECT_EQ(Layer::cleanClassName("Class TornvaleEffect"), "TornvaleEffect");

    SxPropertySet none;
    none.setInt("LayerCount", 0);
    stack.manager.restoreFromDictionary(none, nullptr, {}, false);
    EXPECT_EQ(stack.manager.getNumLayers(), 1);

    // A count far beyond the keys must neither allocate nor loop for it.
    SxPropertySet huge;
    huge.setInt("LayerCount", 2000000000);
    huge.setInt("SubLayerCount1", 2000000000);
    huge.setString("ClassName1", "TintLayer");
    const auto started = juce::Time::getMillisecondCounterHiRes();
    stack.manager.restoreFromDictionary(huge, nullptr, {}, false);
    EXPECT_LT(juce::Time::getMillisecondCounterHiRes() - started, 2000.0);
    EXPECT_EQ(stack.manager.getNumLayers(), 2);
}

TEST(LayerManagerDictionary, UndoRestoreOfMatchingStackTouchesOnlyTheActiveLayer)
{
    TestPrototypes prototypes;
    Stack stack(2);
    stack.tint(1)->red = 11;
    stack.tint(2)->red = 22;
    SxPropertySet record;
    LayerSaveOptions undo;
    undo.keepImages = true;
    stack.manager.saveToDictionary(record, undo);
    record.setInt("ActiveUndoLayer", 2);

    Layer* lower = stack.manager.getLayer(1);
    Layer* upper = stack.manager.getLayer(2);
    stack.tint(1)->red = 111;
    stack.tint(2)->red = 222;
    stack.manager.restoreFromDictionary(record, nullptr, undo, false);
    EXPECT_EQ(stack.manager.getLayer(1), lower) << "nothing is recreated on the fast path";
    EXPECT_EQ(stack.manager.getLayer(2), upper);
    EXPECT_EQ(stack.tint(2)->red, 22);
    EXPECT_EQ(stack.tint(1)->red, 111) << "only the active layer is restored";
    EXPECT_EQ(stack.callback.changes, 1);

    // Without a valid active layer the whole stack is rebuilt from the record.
    record.setInt("ActiveUndoLayer", 7);
    stack.manager.restoreFromDictionary(record, nullptr, undo, false);
    ASSERT_EQ(stack.manager.getNumLayers(), 3);
    EXPECT_EQ(static_cast<TintLayer*>(stack.manager.getLayer(1))->red, 11);
    EXPECT_EQ(static_cast<TintLayer*>(stack.manager.getLayer(2))->red, 22);
}
