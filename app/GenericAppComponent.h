#pragma once
// The application's controller and the content of the main window: owns the settings, the
// document view and the pictures, and takes a picture from a file to the screen. The product
// class answers the framework's questions (which features exist, which sizes apply) through the
// virtual operations below.

#include "app/GenericAppDocument.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

class GenericAppComponent;

/** The one main component of the process; set by its constructor, read by messages and the window. */
extern GenericAppComponent* mainAppComponent;

class GenericAppComponent : public juce::ImageComponent
{
public:
    /** The program's version as stored under "lastVersionNumber": major << 16 | minor << 8 | patch. */
    static constexpr int versionNumber = 1 << 16 | 1 << 8 | 17;

    GenericAppComponent();
    ~GenericAppComponent() override;

    // Product answers.
    virtual bool usesLayerStack() { return true; }
    virtual int getMaximumLayers() { return 10; }
    virtual bool hasPluginHost() { return false; }
    virtual juce::Rectangle<int> getPreviewRenderSize() { return { 0, 0, 1500, 1500 }; }
    virtual juce::Rectangle<int> getFullRenderSize() { return { 0, 0, 2447, 2447 }; }
    virtual juce::String getProjectExtension() { return "qhp"; }
    virtual juce::String getApplicationDataName() = 0;
    virtual juce::String getCompanyName() = 0;
    virtual bool limitImageSize() { return false; }
    virtual bool usesHighQualityPreview() { return false; }

    // Start-up, in the order the window calls them; initializeComplete runs from the event loop.
    virtual void initializeApplication();
    virtual void buildInterface();
    virtual void finishInterface();
    virtual void initializeComplete();

    /** Replaces the document by the picture in file. False when it cannot be read, which leaves
        the current document as it was. */
    virtual bool openImage(const juce::File& file, bool showStartDelay);
    virtual bool openProject(const juce::File& file);

    /** Builds the preview of the loaded picture and shows it. */
    virtual void newImageLoaded();

    /** Asked before the program ends; true lets it end. */
    virtual bool mayQuit();
    virtual void applicationShutdown();
    virtual void applicationResumed() {}

    virtual juce::String getWindowTitle();

    bool isHostKind(int kind) const;
    bool hasStarted() const { return started; }

    juce::PropertiesFile* getUserSettings() const { return applicationProperties.get(); }
    GenericAppDocument* getDocument() const { return document.get(); }
    SxImageRgbaBytes* getOriginalImage() const { return originalImage.get(); }
    SxImageRgbaBytes* getPreviewImage() const { return previewImage.get(); }

    /** Where settings and working files live: the user's configuration folder plus the name. */
    juce::File applicationDataFolder();
    /** The full-size picture as loaded, parked on disk until the program ends. */
    juce::File originalBeforeEditFile();

    /** The preview size for a picture: the picture fitted into the preview render size, never
        enlarged. */
    static juce::Rectangle<int> previewRectangleFor(juce::Rectangle<int> source, juce::Rectangle<int> limit);

    void paint(juce::Graphics& g) override;

    // Command-line state, filled by the application before initializeComplete.
    bool commandLineRender = false;
    juce::String commandLineInput;
    juce::String commandLineOutput;

    juce::String imagePath;
    int hostKind = 0;
    bool quitRequested = false;
    bool loadingDocument = false;
    bool closing = false;
    float resolutionX = 72.0f;
    float resolutionY = 72.0f;
    juce::StringPairArray metadata;

protected:
    virtual bool loadImageFile(const juce::File& file, bool showDelay);

    bool started = false;
    std::unique_ptr<juce::PropertiesFile> applicationProperties;
    std::unique_ptr<GenericAppDocument> document;
    SxRef<SxImageRgbaBytes> originalImage;
    SxRef<SxImageRgbaBytes> previewImage;
    juce::File currentFile;
};
