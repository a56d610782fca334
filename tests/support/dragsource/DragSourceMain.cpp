// A stand-in for a file manager in the window tests: a small window that starts a real drag of
// the files named on its command line (the X drag-and-drop protocol, as any file manager speaks
// it) when the mouse is dragged inside it, and quits when the drop has ended.

#include <juce_gui_basics/juce_gui_basics.h>

namespace
{
class DragSource : public juce::Component
{
public:
    explicit DragSource(juce::StringArray paths) : files(std::move(paths)) { setSize(200, 120); }

    void paint(juce::Graphics& g) override
    {
        g.fillAll(juce::Colours::darkslategrey);
        g.setColour(juce::Colours::white);
        g.drawFittedText("drag me: " + juce::File(files[0]).getFileName(), getLocalBounds(), juce::Justification::centred, 2);
    }

    void mouseDrag(const juce::MouseEvent& e) override
    {
        if (started || e.getDistanceFromDragStart() < 4)
            return;
        started = true;
        const bool ok = juce::DragAndDropContainer::performExternalDragDropOfFiles(files, false, this, [] {
            std::puts("drop ended");
            std::fflush(stdout);
            juce::JUCEApplicationBase::quit();
        });
        std::printf("drag started: %s\n", ok ? "yes" : "no");
        std::fflush(stdout);
    }

private:
    juce::StringArray files;
    bool started = false;
};

class DragSourceApp : public juce::JUCEApplication
{
public:
    const juce::String getApplicationName() override { return "tornvale drag source"; }
    const juce::String getApplicationVersion() override { return "1"; }
    bool moreThanOneInstanceAllowed() override { return true; }

    void initialise(const juce::String&) override
    {
        window = std::make_unique<juce::DocumentWindow>("tornvale drag source", juce::Colours::black, 0, true);
        window->setUsingNativeTitleBar(false);
        window->setContentOwned(new DragSource(getCommandLineParameterArray()), true);
        window->setTopLeftPosition(20, 20);
        window->setVisible(true);
    }
    void shutdown() override { window.reset(); }

private:
    std::unique_ptr<juce::DocumentWindow> window;
};
} // namespace

START_JUCE_APPLICATION(DragSourceApp)
