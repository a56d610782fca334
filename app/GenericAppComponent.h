#pragma once
// The application's controller and the content of the main window: owns the settings, the
// document view, the pictures, the layer stack and its history, and takes a picture from a file
// to a rendered preview on the screen. The product class answers the framework's questions
// (which features exist, which sizes apply) through the virtual operations below.

#include "app/GenericAppDocument.h"
#include "app/HostSession.h"
#include "app/MainTopBar.h"
#include "app/PresetActions.h"
#include "app/PreviewRenderer.h"
#include "document/LayerCallback.h"
#include "document/LayerManager.h"
#include "document/LayerManagerCallback.h"
#include "document/SxUndo.h"
#include "imaging/SxImageRgbaBytes.h"
#include "tools/SxTool.h"
#include "ui/EaseComponentAnimator.h"
#include "wizards/CropController.h"

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>
#include <vector>

class DocumentKeyRoute;
class GenericAppComponent;
class PresetManager;
class EffectControlPanel;
class HostSession;
class InputTrace;
class Heartbeat;
class SxPanTool;
class SxToolSwitcher;

/** The one main component of the process; set by its constructor, read by messages and the window. */
extern GenericAppComponent* mainAppComponent;

class GenericAppComponent : public juce::ImageComponent,
                            public LayerManagerCallback,
                            public LayerCallback,
                            public SxToolOwner,
                            public juce::FileDragAndDropTarget,
                            public juce::KeyListener,
                            public juce::ApplicationCommandTarget,
                            public juce::MenuBarModel,
                            public CropController::Owner,
                            public PreviewRendererCallback,
                            public MainTopBarCallback,
                            public PresetActionsCallback,
                            public HostSessionCallback,
                            private juce::MultiTimer
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
    /** Makes the effect prototypes and registers them for the factory and the effect group. */
    virtual void createEffects() {}

    // Start-up, in the order the window calls them; initializeComplete runs from the event loop.
    virtual void initializeApplication();
    virtual void buildInterface();
    virtual void finishInterface();
    virtual void initializeComplete();

    /** Replaces the document by the picture in file, first asking whether unsaved changes should
        be saved. True when the picture is open on return; false when it cannot be read (the
        current document stays) or when the question is showing (the answer goes on from there). */
    virtual bool openImage(const juce::File& file, bool showStartDelay);
    /** As openImage, for a project file. */
    virtual bool openProject(const juce::File& file);
    /** Reads a project file into the document at once, with no question. False, with an alert
        naming the file, when it is not a readable project; the open document then stays. */
    virtual bool loadProject(const juce::File& file);

    // Dialogs of the commands; each asks for a file without blocking and goes on when answered.
    void openImageDialog() override;
    void openProjectDialog();
    /** Asks where to save the photo and saves it at full size. */
    void saveImage() override;
    /** Puts the tornvale-render command line of the present look on the clipboard. */
    void copyRenderCommand();
    /** Renders at full size and writes the photo, to chosen with the photo extension rules
        applied. False, with an alert, when it cannot be written; an older file stays whole. */
    bool saveImageTo(const juce::File& chosen);
    /** Saves into the project file the document came from, or asks for one (always with
        saveAs). afterSave runs once the project has been written. */
    void saveProject(bool saveAs, std::function<void()> afterSave = {});
    /** Writes the project behind the activity panel and marks the document saved. */
    bool saveProjectTo(const juce::File& file);
    /** The writing itself; runs on the activity thread. */
    bool saveProjectNow(const juce::File& file);
    /** Asks for a name, then saves the effect's settings as a preset of that name. */
    void savePresetDialog() override;
    /** Shows the preferences panel: the picture size limit and "Rebuild Default Presets". */
    void showPreferences();
    bool savePresetNamed(const juce::String& name) override;
    /** The effect's present settings become what every newly opened picture starts with. */
    void saveStartupSettings();
    void resetStartupSettings();

    /** Renders the whole stack at the source picture's size behind the activity panel and gives
        the result (null if the render failed). The view and the layers are at preview size again
        afterwards. */
    SxRef<SxImageRgbaBytes> renderFullImage(const juce::String& message) override;

    /** Runs proceed at once when the document has no unsaved change; otherwise asks "Save
        Project?" with Save, Don't Save and Cancel, and runs proceed after the save or at once on
        "Don't Save". True when proceed ran before returning. */
    bool askAboutUnsavedChanges(const juce::String& pathToOpen, std::function<void()> proceed);
    bool isFreshProject() const;
    bool isJobRunning() const { return jobRunning; }
    bool hasDocument() const override { return originalImage.get() != nullptr && previewImage.get() != nullptr; }
    const juce::File& getProjectFile() const { return projectFile; }

    // Commands and menus.
    juce::ApplicationCommandManager& getCommandManager() { return commandManager; }
    juce::ApplicationCommandTarget* getNextCommandTarget() override;
    void getAllCommands(juce::Array<juce::CommandID>& commands) override;
    void getCommandInfo(juce::CommandID commandID, juce::ApplicationCommandInfo& result) override;
    bool perform(const InvocationInfo& info) override;
    juce::StringArray getMenuBarNames() override;
    juce::PopupMenu getMenuForIndex(int topLevelMenuIndex, const juce::String& menuName) override;
    void menuItemSelected(int, int) override {}
    /** Tells the menus and key mappings that enable or tick states may have changed. */
    void commandStatusChanged();
    virtual bool hasNewProject() { return false; }
    virtual bool hasPresetFolder() { return true; }
    virtual bool hasProductTips() { return false; }

    /** Builds the preview and the layer stack of the loaded picture and shows it. */
    virtual void newImageLoaded();

    /** Asked before the program ends; true lets it end. */
    virtual bool mayQuit();
    virtual void applicationShutdown();
    virtual void applicationResumed() {}

    virtual juce::String getWindowTitle();

    bool isHostKind(int kind) const override;
    bool hasStarted() const { return started; }

    // Rendering. Preview renders run on the PreviewRenderer's thread; the full-size render of a
    // save runs behind the activity panel.
    void requestRender(bool showBusy, const LayerRect* region) override;
    void layerNeedsRender(bool showBusy, const LayerRect* region) override;
    float getRenderScale() override;
    void layersChanged() override {}
    /** The Render button: a preview render of the newest state, on a thread. */
    void renderImmediate() override;
    bool isRendering() const { return previewRenderer->isRendering() || renderingFullImage; }
    /** The number of full preview renders shown since start, and of drafts. */
    int getRenderCount() const { return renderCount; }
    int getDraftCount() const { return draftCount; }
    PreviewRenderer& getPreviewRenderer() { return *previewRenderer; }

    /** Press-and-hold comparison with the unfiltered picture. */
    void showOriginal(bool pressed) override;
    bool isShowingOriginal() const { return showingOriginal; }
    /** Random settings for the effect, recorded as one undo step. */
    void randomizeAll() override;
    /** Keeps the style and varies the adjust settings (the panel's own randomize button). */
    void randomizeEffect() override;

    // History.
    void layerChanged() override;
    void setActiveTool(SxTool* tool) override;
    void undoStep() override;
    void redoStep() override;
    /** One step back or forward through the history. */
    void stepHistory(bool forward);
    bool canUndo() const override { return undo.canUndo(); }
    bool canRedo() const override { return undo.canRedo(); }

    // Tools.
    /** The "Pen Gesture" setting, kept in the settings and handed to each tool made current. */
    bool isPenGestureOn() const;
    void togglePenGesture();
    void setCurrentTool(SxTool* tool) override;
    /** A brush changed the mask inside rect: the layers recompose that rectangle from what they
        keep and the view shows it, with no render. */
    void repaintImageRect(const LayerRect& rect) override;
    SxTool* getCurrentTool() const;

    /** "manualRedraw": renders start only from the Render button. */
    void setManualRedraw(bool manual) override;
    bool isManualRedraw() const;

    /** Opens or closes the side panel, animated unless told otherwise. */
    void setEffectPanelOpen(bool open, bool animate) override;
    bool isEffectPanelOpen() const override { return effectPanelOpen; }

    /** The crop panel and its frame over the picture; the picture is cut once "Apply" is
        pressed, and becomes the document's source at full size, keeping the effect's settings. */
    void openCrop() override;
    /** A host takes its picture back at the size it handed over, so a picture from a host is
        never cut. */
    bool canCrop() const override { return hasDocument() && !isHostKind(1); }
    bool isCropOpen() const { return cropController != nullptr; }
    void cropApplied(juce::Rectangle<int> rect) override;
    void cropCommand(const juce::String& command) override;
    /** The last applied crop in source pixels, empty after an open. */
    juce::Rectangle<int> getLastCrop() const { return cropRect; }

    /** Re-reads every control from the effect (after undo, randomize or a restore). */
    void updateControls() override;

    /** Shows a short message over the window, for failures the user should know about. */
    void showAlert(const juce::String& name, const juce::String& title, const juce::String& message) override;
    /** The program's name, version and a line on what it does. */
    void showAboutAlert() override;

    bool isInterestedInFileDrag(const juce::StringArray& files) override;
    void filesDropped(const juce::StringArray& files, int x, int y) override;
    void fileDragEnter(const juce::StringArray&, int, int) override { fileDragOver = true; }
    void fileDragExit(const juce::StringArray&) override { fileDragOver = false; }

    juce::PropertiesFile* getUserSettings() const override { return applicationProperties.get(); }
    GenericAppDocument* getDocument() const override { return document.get(); }
    SxImageRgbaBytes* getOriginalImage() const { return originalImage.get(); }
    SxImageRgbaBytes* getPreviewImage() const override { return previewImage.get(); }
    SxImageRgbaBytes* getDisplayImage() const { return displayImage.get(); }
    LayerManager* getLayerManager() const { return layerManager.get(); }
    PresetManager* getPresetManager() const { return presetManager.get(); }
    PresetActions* getPresetActions() const { return presetActions.get(); }
    Layer* getEffectLayer() const override { return layerManager != nullptr ? layerManager->getEffectLayer() : nullptr; }

    /** Where settings and working files live: the user's configuration folder plus the name. */
    juce::File applicationDataFolder();
    /** The full-size picture as loaded, parked on disk until the program ends. */
    juce::File originalBeforeEditFile();

    /** The preview size for a picture: the picture fitted into the preview render size, never
        enlarged. */
    static juce::Rectangle<int> previewRectangleFor(juce::Rectangle<int> source, juce::Rectangle<int> limit);

    /** Writes every named child's screen bounds, one "name x y w h" per line: scripts that drive
        the window with real input find the controls by it. */
    void writeComponentMap(const juce::File& file);

    void paint(juce::Graphics& g) override;
    /** Shortcuts go to the command manager's key mappings; what no command takes goes on
        (the Render button's Ctrl+R, then the tools). */
    bool keyPressed(const juce::KeyPress& key) override;
    /** The window hands on every key that no component took, wherever the focus is (or when
        nothing has it yet), so the shortcuts work from any control. */
    bool keyPressed(const juce::KeyPress& key, juce::Component* origin) override;
    /** A released space bar hands the view back from the pan tool to the tool that lent it. */
    bool keyStateChanged(bool isKeyDown) override;
    bool keyStateChanged(bool isKeyDown, juce::Component* origin) override;
    void resized() override;

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

    /** One group of effects with its name and icon; this program has one. */
    struct EffectGroup
    {
        std::vector<Layer*> effects;
        juce::String name;
        juce::Image icon;
    };
    std::vector<EffectGroup> effectGroups;
    int currentEffectGroup = 0;

    HostSession* getHostSession() const { return hostSession.get(); }

protected:
    virtual bool loadImageFile(const juce::File& file, bool showDelay);
    /** Drops the shown document for a picture that was read whole from file (a photo or a
        project): the settings name the file and the new document counts as saved. */
    void startNewDocument(const SxRef<SxImageRgbaBytes>& image, const juce::File& file);
    /** Called with the effect layer whenever one has been made for the document (an open, a
        restored project), before its first render. */
    virtual void prepareEffectLayer(Layer*) {}
    void startProjectSave(const juce::File& file, std::function<void()> afterSave);
    juce::Component& topBarHost() override { return *this; }
    juce::Component& presetQuestionHost() override { return *this; }
    int handOverHostKind() const override { return hostKind; }
    const SxImageRgbaBytes* openHostPicture(const SxRef<SxImageRgbaBytes>& picture, const juce::File& titleFile) override;
    void hostPictureReady() override;
    juce::Component& hostQuestionHost() override { return *this; }
    bool presetsMustWait() const override { return renderingFullImage || jobRunning || loadingDocument; }
    bool previewRendering() const override { return previewRenderer->isRendering(); }
    void presetApplied() override
    {
        updateControls();
        layerChanged();
    }
    SxToolOwner& topBarToolOwner() override { return *this; }
    LayerManager* layersToPreview() override;
    SxImageRgbaBytes* previewPicture() override { return previewImage.get(); }
    void previewRenderStarting(bool showBusy) override;
    void previewRendered(SxImageRgbaBytes* picture, bool draft) override;
    bool previewInputMoving() override;
    void previewRenderingStopped() override;
    /** Puts a render result on the screen (unless the original is being shown). */
    void showRenderedImage(SxImageRgbaBytes* image);
    void timerCallback(int timerID) override;
    /** Stops a running preview render and waits for it: before the document changes or at quit. */
    void waitForRender();

    enum TimerIds
    {
        openPanelTimer = 100,
        closePanelTimer = 101,
        saveProjectTimer = 303,
        defaultsSavedTimer = 4001,
        componentMapTimer = 9100,
        handOverTimer = 8300,
        topBarRepaintTimer = 9000
    };

    bool started = false;
    bool renderingFullImage = false;
    bool showingOriginal = false;
    // A file drag is over the window: the window tests wait for it before they let go.
    bool fileDragOver = false;
    bool effectPanelOpen = true;
    bool restoringUndo = false;
    bool sourceHadAlpha = false;
    bool jobRunning = false;
    bool openingProject = false;
    int renderCount = 0, draftCount = 0;
    std::unique_ptr<juce::PropertiesFile> applicationProperties;
    std::unique_ptr<LayerManager> layerManager;
    std::unique_ptr<GenericAppDocument> document;
    std::unique_ptr<MainTopBar> topBar;
    std::unique_ptr<EffectControlPanel> effectControlComponent;
    std::unique_ptr<PresetActions> presetActions;
    std::unique_ptr<PresetManager> presetManager;
    std::unique_ptr<SxToolSwitcher> toolSwitcher;
    std::unique_ptr<HostSession> hostSession;
    std::unique_ptr<DocumentKeyRoute> keyRoute;
    std::unique_ptr<InputTrace> inputTrace;
    std::unique_ptr<Heartbeat> heartbeat;
    std::unique_ptr<PreviewRenderer> previewRenderer;
    SxRef<SxImageRgbaBytes> originalImage;
    SxRef<SxImageRgbaBytes> previewImage;
    SxRef<SxImageRgbaBytes> displayImage;
    SxUndo undo;
    juce::File currentFile;
    juce::File componentMapFile;
    juce::File projectFile;
    juce::File saveDestination;
    juce::File lastSavedPhoto;
    std::function<void()> afterProjectSave;
    juce::ApplicationCommandManager commandManager;
    std::unique_ptr<juce::FileChooser> fileChooser;
    EaseComponentAnimator panelAnimator;
    juce::String pendingPanelBounds;
    std::unique_ptr<CropController> cropController;
    juce::Rectangle<int> cropRect;
};
