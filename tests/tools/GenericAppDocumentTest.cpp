#include "ToolTestSupport.h"

#include "tools/SxTool.h"

#include <algorithm>
#include <cmath>
#include <random>

using tooltest::DocumentTest;

namespace
{
struct Geometry
{
    int w, h, iw, ih;
};
// Landscape and portrait pictures, bigger and smaller than the view, and a sliver.
const Geometry geometries[] = { { 800, 600, 400, 300 }, { 300, 200, 1500, 1000 }, { 1200, 400, 50, 900 },
                                { 724, 451, 1500, 1125 }, { 500, 700, 3, 2000 } };

// Float offsets are sums of many steps; a hundredth of a pixel is far below anything visible.
constexpr float pixelTolerance = 0.01f;
} // namespace

//==============================================================================
TEST_F(DocumentTest, PanNeverLeavesLessThanTheMarginInView)
{
    std::mt19937 random(20261123); // fixed random seed: the sequences are the same on every run
    for (const auto& g : geometries)
        for (const float z : { 0.125f, 0.5f, 1.0f, 3.0f, -1.0f })
        {
            show(g.w, g.h, g.iw, g.ih);
            if (z > 0.0f)
                document.setZoom(z, false);
            const float scaledW = g.iw * document.getZoom();
            const float scaledH = g.ih * document.getZoom();
            std::uniform_real_distribution<float> big(-3000.0f, 3000.0f), small(-40.0f, 40.0f);
            for (int i = 0; i < 300; ++i)
            {
                const bool jump = i % 3 == 0;
                const float dx = jump ? big(random) : small(random), dy = jump ? big(random) : small(random);
                const float oldX = document.getPanX(), oldY = document.getPanY();
                document.panBy(dx, dy);
                const float x = document.getPanX(), y = document.getPanY();
                SCOPED_TRACE(testing::Message() << g.w << "x" << g.h << " image " << g.iw << "x" << g.ih << " zoom "
                                                << document.getZoom() << " step " << i);
                // At least 45 view pixels of the image stay on each side: a step inside the
                // limits moves by exactly its length; one that is not ends on a limit, never
                // short of it (and both limits keep the margin).
                auto checkAxis = [](float old, float d, float now, float view, float scaled) {
                    const float wanted = old + d;
                    if (wanted < view - 45.0f && wanted + scaled > 45.0f)
                        EXPECT_NEAR(now, wanted, pixelTolerance);
                    else
                        EXPECT_TRUE(std::abs(now - (view - 45.0f)) < pixelTolerance || std::abs(now + scaled - 45.0f) < pixelTolerance)
                            << now;
                };
                checkAxis(oldX, dx, x, (float) g.w, scaledW);
                checkAxis(oldY, dy, y, (float) g.h, scaledH);
                ASSERT_FALSE(document.isFitted());
            }
        }
}

TEST_F(DocumentTest, ViewAndImageCoordinatesRoundTrip)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    show(724, 451, 1500, 1125);
    for (int i = 0; i < 200; ++i)
    {
        document.setZoom(0.125f + unit(random) * 2.875f, false, { unit(random) * 724.0f, unit(random) * 451.0f });
        document.panBy((unit(random) - 0.5f) * 400.0f, (unit(random) - 0.5f) * 400.0f);
        const juce::Point<float> p { unit(random) * 1500.0f, unit(random) * 1125.0f };
        const auto back = document.viewToImage(document.imageToView(p));
        // Relative float error of a multiply and two divisions on numbers up to a few thousand.
        EXPECT_LT(back.getDistanceFrom(p), 2e-3f);
        // The image's corners land on the corners of its bounds.
        const auto bounds = document.imageBounds();
        EXPECT_NEAR(document.imageToView({ 0, 0 }).x, bounds.getX(), pixelTolerance);
        EXPECT_NEAR(document.imageToView({ 1500, 1125 }).y, bounds.getBottom(), 0.05f);
    }
}

//==============================================================================
TEST_F(DocumentTest, FitUsesNinetyFivePercentAndCentres)
{
    for (const auto& g : geometries)
    {
        show(g.w, g.h, g.iw, g.ih);
        const auto b = document.imageBounds();
        SCOPED_TRACE(testing::Message() << g.w << "x" << g.h << " image " << g.iw << "x" << g.ih);
        // The image fills 95% of the view in the tighter direction and fits in the other.
        const bool widthBound = (float) g.w / g.iw < (float) g.h / g.ih;
        EXPECT_NEAR(widthBound ? b.getWidth() : b.getHeight(), (widthBound ? g.w : g.h) * 0.95f, 0.01f);
        EXPECT_LE(b.getWidth(), g.w * 0.95f + 0.01f);
        EXPECT_LE(b.getHeight(), g.h * 0.95f + 0.01f);
        EXPECT_LT(b.getCentre().getDistanceFrom({ g.w * 0.5f, g.h * 0.5f }), pixelTolerance);
        EXPECT_TRUE(document.isFitted());
    }
}

TEST_F(DocumentTest, AnimatedFitEndsWhereTheImmediateFitDoes)
{
    show(724, 451, 1500, 1125);
    const float fitZoom = document.getZoom(), fitX = document.getPanX(), fitY = document.getPanY();

    document.setZoom(2.0f, false, { 100, 80 });
    document.panBy(-200, 37);
    document.fitToWindow(true);
    EXPECT_TRUE(document.isAnimating());
    EXPECT_NE(document.getZoom(), fitZoom); // nothing jumps before the first frame
    const int frames = finishAnimation();
    EXPECT_EQ(frames, GenericAppDocument::animationFrames);
    EXPECT_FLOAT_EQ(document.getZoom(), fitZoom);
    EXPECT_FLOAT_EQ(document.getPanX(), fitX);
    EXPECT_FLOAT_EQ(document.getPanY(), fitY);

    // The real timer gets there too.
    document.setZoom(1.0f, false);
    document.fitToWindow(true);
    juce::MessageManager::getInstance()->runDispatchLoopUntil(30 * GenericAppDocument::animationFrames + 400);
    EXPECT_FALSE(document.isAnimating());
    EXPECT_FLOAT_EQ(document.getZoom(), fitZoom);
    EXPECT_FLOAT_EQ(document.getPanX(), fitX);
}

TEST_F(DocumentTest, ResizeRefitsAFittedViewAndKeepsTheCentreOfAZoomedOne)
{
    show(800, 600, 400, 300);
    document.setSize(500, 900);
    EXPECT_TRUE(document.isFitted());
    EXPECT_NEAR(document.imageBounds().getWidth(), 500 * 0.95f, 0.01f);
    EXPECT_NEAR(document.imageBounds().getCentreY(), 450.0f, pixelTolerance);

    document.setZoom(2.0f, false, { 300, 400 });
    EXPECT_FALSE(document.isFitted());
    const auto atCentre = document.viewToImage({ 250, 450 });
    document.setSize(700, 640);
    EXPECT_FLOAT_EQ(document.getZoom(), 2.0f);
    EXPECT_LT(document.viewToImage({ 350, 320 }).getDistanceFrom(atCentre), pixelTolerance);
}

//==============================================================================
TEST_F(DocumentTest, ZoomButtonsStepThroughTheTableAboutTheCentre)
{
    show(800, 600, 1000, 800);
    const auto& steps = GenericAppDocument::zoomSteps;
    const juce::Point<float> centre { 400, 300 };
    const auto underCentre = document.viewToImage(centre);

    // Walks to one end; returns the zooms visited, each checked to keep the centre still.
    auto walk = [&](bool in) {
        std::vector<float> seen;
        while ((in ? document.canZoomIn() : document.canZoomOut()) && seen.size() <= steps.size())
        {
            in ? document.zoomIn() : document.zoomOut();
            finishAnimation();
            seen.push_back(document.getZoom());
            EXPECT_LT(document.imageToView(underCentre).getDistanceFrom(centre), 0.05f);
        }
        return seen;
    };
    // From the fit up through every larger step, then down through every step to the first.
    const auto aboveFit = std::upper_bound(steps.begin(), steps.end(), document.getZoom());
    EXPECT_EQ(walk(true), std::vector<float>(aboveFit, steps.end()));
    document.zoomIn();
    EXPECT_FALSE(document.isAnimating());
    EXPECT_EQ(walk(false), std::vector<float>(steps.rbegin() + 1, steps.rend()));
    document.zoomOut();
    EXPECT_FLOAT_EQ(document.getZoom(), GenericAppDocument::minZoom);

    // Two quick clicks step twice, counted from where the first is heading.
    document.setZoom(1.0f, false);
    document.zoomIn();
    document.zoomIn();
    finishAnimation();
    EXPECT_FLOAT_EQ(document.getZoom(), 2.0f);
}

TEST_F(DocumentTest, SetZoomKeepsThePointUnderItAndStaysInRange)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    show(900, 700, 1200, 900);
    for (int i = 0; i < 300; ++i)
    {
        // A point on the image, so that the pan limits never have to move it.
        const auto b = document.imageBounds().getIntersection(document.getLocalBounds().toFloat().reduced(50));
        const juce::Point<float> about { b.getX() + unit(random) * b.getWidth(), b.getY() + unit(random) * b.getHeight() };
        const auto under = document.viewToImage(about);
        const float wanted = 0.125f + unit(random) * 2.875f;
        document.setZoom(wanted, false, about);
        EXPECT_FLOAT_EQ(document.getZoom(), wanted);
        EXPECT_LT(document.imageToView(under).getDistanceFrom(about), 0.02f);
    }
    // An animated zoom keeps its point still in every frame, not only at the end.
    document.fitToWindow(false);
    const juce::Point<float> about { 250, 410 };
    const auto under = document.viewToImage(about);
    document.setZoom(2.5f, true, about);
    while (document.isAnimating())
    {
        document.advanceAnimation();
        EXPECT_LT(document.imageToView(under).getDistanceFrom(about), 0.02f);
    }
    EXPECT_FLOAT_EQ(document.getZoom(), 2.5f);

    document.setZoom(50.0f, false);
    EXPECT_FLOAT_EQ(document.getZoom(), GenericAppDocument::maxZoom);
    document.setZoom(0.001f, false);
    EXPECT_FLOAT_EQ(document.getZoom(), GenericAppDocument::minZoom);

    // Snapping catches a zoom near a step and leaves others alone.
    document.setZoom(1.02f, false, { 450, 350 }, true);
    EXPECT_FLOAT_EQ(document.getZoom(), 1.0f);
    document.setZoom(1.2f, false, { 450, 350 }, true);
    EXPECT_FLOAT_EQ(document.getZoom(), 1.2f);
    document.actualSize();
    finishAnimation();
    EXPECT_FLOAT_EQ(document.getZoom(), 1.0f);
}

TEST_F(DocumentTest, WheelAndMagnifyZoomAboutThePointer)
{
    show(800, 600, 1600, 1200);
    const juce::Point<float> pointer { 300, 200 };
    const auto under = document.viewToImage(pointer);
    juce::MouseWheelDetails wheel {};
    wheel.deltaY = 0.5f;
    const float before = document.getZoom();
    document.mouseWheelMove(tooltest::mouseEvent(document, pointer), wheel);
    EXPECT_GT(document.getZoom(), before);
    EXPECT_NEAR(document.imageToView(under).x, pointer.x, 0.02f);

    const float afterWheel = document.getZoom();
    document.mouseMagnify(tooltest::mouseEvent(document, pointer), 0.5f);
    EXPECT_NEAR(document.getZoom(), afterWheel * 0.5f, 1e-5f);
    EXPECT_NEAR(document.imageToView(under).y, pointer.y, 0.02f);
}

//==============================================================================
namespace
{
struct ZoomListener : SxToolDocument::Listener
{
    void documentZoomChanged(SxToolDocument& d) override { zooms.push_back(d.getZoom()); }
    std::vector<float> zooms;
};
} // namespace

TEST_F(DocumentTest, ListenersAndButtonsHearOfSettledChanges)
{
    show(800, 600, 400, 300);
    ZoomListener listener;
    document.addListener(&listener);
    juce::TextButton in("in"), out("out");
    document.setZoomButtons(&in, &out);

    document.setZoom(3.0f, false);
    ASSERT_EQ(listener.zooms.size(), 1u);
    EXPECT_FALSE(in.isEnabled());
    EXPECT_TRUE(out.isEnabled());

    document.panBy(10, 0);
    EXPECT_EQ(listener.zooms.size(), 2u);

    // An animation reports once, at its end.
    document.fitToWindow(true);
    finishAnimation();
    ASSERT_EQ(listener.zooms.size(), 3u);
    EXPECT_FLOAT_EQ(listener.zooms.back(), 1.9f); // 800 * 0.95 / 400, the width binds
    EXPECT_TRUE(in.isEnabled());

    document.setZoom(GenericAppDocument::minZoom, false);
    EXPECT_FALSE(out.isEnabled());
    document.removeListener(&listener);
    document.setZoomButtons(nullptr, nullptr);
}

//==============================================================================
namespace
{
// Records what reaches it, as a tool or as an interceptor, and paints in plain colours so that
// a snapshot shows the order.
class RecordingTool : public SxTool, public GenericAppDocumentMouseInterceptCallback
{
public:
    RecordingTool() : SxTool("recording") {}
    void documentMouseUp(const juce::MouseEvent&) override { log.add("up"); }
    void documentMouseMove(const juce::MouseEvent&) override { log.add("move"); }
    void documentMouseDown(const juce::MouseEvent&) override { log.add("down"); }
    void documentMouseDrag(const juce::MouseEvent&) override { log.add("drag"); }
    void documentMouseEnter(const juce::MouseEvent&) override { log.add("enter"); }
    void documentMouseExit(const juce::MouseEvent&) override { log.add("exit"); }
    void interceptMouseUp(const juce::MouseEvent&) override { log.add("up"); }
    void interceptMouseMove(const juce::MouseEvent&) override { log.add("move"); }
    void interceptMouseDown(const juce::MouseEvent&) override { log.add("down"); }
    void interceptMouseDrag(const juce::MouseEvent&) override { log.add("drag"); }
    void interceptMouseEnter(const juce::MouseEvent&) override { log.add("enter"); }
    void interceptMouseExit(const juce::MouseEvent&) override { log.add("exit"); }
    void paintBeforeImage(juce::Graphics& g) override { g.fillAll(juce::Colours::red); }
    void paintOverImage(juce::Graphics& g, juce::Rectangle<float> area) override
    {
        g.setColour(juce::Colours::blue);
        g.fillRect(area.withSize(10, 10));
    }
    juce::StringArray log;
};
} // namespace

class DocumentRouting : public DocumentTest
{
protected:
    void allSix()
    {
        const juce::Point<float> a { 300, 300 }, b { 320, 310 };
        document.mouseEnter(tooltest::mouseEvent(document, a));
        document.mouseMove(tooltest::mouseEvent(document, a));
        press(a);
        drag(b, a);
        release(b, a);
        document.mouseExit(tooltest::mouseEvent(document, b));
    }
    RecordingTool tool;
};

TEST_F(DocumentRouting, AToolGetsEventsOnlyWhenOnAndAnImageIsShown)
{
    document.setSize(800, 600);
    document.setTool(&tool);
    tool.setToolOn(true);
    allSix(); // no image yet
    EXPECT_TRUE(tool.log.isEmpty());

    show(800, 600, 400, 300);
    tool.setDocument(nullptr);
    allSix();
    EXPECT_EQ(tool.log.joinIntoString(" "), "enter move down drag up exit");
    EXPECT_EQ(tool.getDocument(), &document); // set by the document before each event

    tool.log.clear();
    tool.setToolOn(false);
    document.setTool(&tool);
    allSix();
    EXPECT_TRUE(tool.log.isEmpty());
}

TEST_F(DocumentRouting, AnInterceptorTakesEverythingAndLeavesTheTouchesAlone)
{
    show(800, 600, 400, 300);
    document.setTool(&tool);
    tool.setToolOn(true);
    RecordingTool interceptor;
    document.setMouseInterceptor(&interceptor);
    press({ 200, 200 });
    EXPECT_TRUE(document.getTouches().empty());
    release({ 200, 200 }, { 200, 200 });
    allSix();
    EXPECT_EQ(interceptor.log.joinIntoString(" "), "down up enter move down drag up exit");
    EXPECT_TRUE(tool.log.isEmpty());

    document.setMouseInterceptor(nullptr);
    press({ 200, 200 });
    EXPECT_EQ(document.getTouches().size(), 1u);
    EXPECT_EQ(tool.log.joinIntoString(" "), "down");
}

TEST_F(DocumentRouting, PaintsToolUnderImageThenToolOverThenActivity)
{
    show(200, 100, 100, 50); // fitted at 1.9: the image spans 5..195 by 2.5..97.5
    image->clear();
    for (int i = 0; i < image->width * image->height; ++i)
    {
        auto* p = image->pixels + i * 4;
        p[0] = 255, p[2] = 255; // opaque green in alpha, red, green, blue order
    }
    document.setImage(image.get());
    document.setTool(&tool);
    tool.setToolOn(true);

    auto snapshot = [this] { return document.createComponentSnapshot(document.getLocalBounds(), false); };
    auto shot = snapshot();
    EXPECT_EQ(shot.getPixelAt(1, 50), juce::Colours::red);      // the tool under the image
    EXPECT_EQ(shot.getPixelAt(100, 20), juce::Colour(0xff00ff00)); // the image over it
    EXPECT_EQ(shot.getPixelAt(8, 6), juce::Colours::blue);     // the tool over the image

    document.setShowActivity(true, {});
    shot = snapshot();
    const auto panel = document.activityPanelBounds();
    EXPECT_TRUE(document.getLocalBounds().contains(panel));
    EXPECT_LT(shot.getPixelAt(panel.getRight() - 3, panel.getCentreY()).getGreen(), 128); // dimmed by the panel
    EXPECT_EQ(shot.getPixelAt(100, 5), juce::Colour(0xff00ff00)); // the image around it is untouched
    document.setShowActivity(false, {});

    // While rendering the tool paints nothing: the background shows beside the image.
    document.setRenderingFull(true);
    shot = snapshot();
    EXPECT_EQ(shot.getPixelAt(1, 50), document.backgroundColour());
    EXPECT_EQ(shot.getPixelAt(8, 6), juce::Colour(0xff00ff00));
}
