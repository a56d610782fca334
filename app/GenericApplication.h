#pragma once
// The process: brings up the GL context, the main window and its component in a fixed order,
// takes the first picture from the command line, passes later launches' command lines to the
// running window, and ends through the component's consent.

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

class GenericAppComponent;
class OmbrikMainWindow;
class SingleInstance;

class GenericApplication : public juce::JUCEApplication
{
public:
    GenericApplication();
    ~GenericApplication() override;

    static GenericApplication* getGenericInstance();

    /** The product's main component, made once by the main window. */
    virtual GenericAppComponent* createMainComponent() = 0;

    /** One program per user, except for a run that a host started on its own picture: it must
        not hand its empty command line to a running program and end. */
    bool moreThanOneInstanceAllowed() override;
    bool initialiseApp() override;
    void initialise(const juce::String& commandLine) override;
    void shutdown() override;
    void anotherInstanceStarted(const juce::String& commandLine) override;
    void systemRequestedQuit() override;
    void suspended() override;
    void resumed() override;

    /** Acts on a command line from the program's own launch. */
    void openFromCommandLine(const juce::String& text);
    /** Acts on a command line that a later launch forwarded. */
    void openFromSecondInstance(const juce::String& text);

    juce::String commandLine;
    /** Every widget of the program wears the dark look; set before the first one exists. */
    std::unique_ptr<juce::LookAndFeel> lookAndFeel;
    std::unique_ptr<OmbrikMainWindow> mainWindow;
    GenericAppComponent* mainComponent = nullptr;
    bool isSuspended = false;

private:
    void checkGraphicsContext();
    juce::File instanceFolder() const;

    std::unique_ptr<SingleInstance> instance;
};
