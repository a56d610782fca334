#pragma once
// The application's controller and the content of the main window: owns the settings, the
// document view, the layer stack and the rooms that work on them (the document session, the
// preview renderer, the top bar, the panels, the preset actions, the host session), and lays
// them out. The product class answers the framework's questions
// (which features exist, which sizes apply) through the virtual operations below.

#include "app/DocumentSession.h"
#include "app/GenericAppDocument.h"
#include "app/HostSession.h"
#include "app/MainTopBar.h"
#include "app/PresetActions.h"
#include "app/PreviewRenderer.h"
#include "document/LayerCallback.h"
#include "document/LayerManager.h"
#include "document/LayerManagerCallback.h"
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
                            public DocumentSessionCallback,
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
    juce::Rectangle<int> getPreviewRenderSize() override { return { 0, 0, 1500, 1500 }; }
    virtual juce::Rectangle<int> getFullRenderSize() { return { 0, 0, 2447, 2447 }; }
    juce::String getProjectExtension() override { return "qhp"; }
    virtual juce::String getApplicationDataName() = 0;
    virtual juce::String getCompanyName() = 0;
    virtual bool limitImageSize() { return false; }
    bool usesHighQualityPreview() override { return false; }
    /** Makes the effect prototypes and registers them for the factory and the effect group. */
    virtual void createEffects() {}

    // Start-up, in the order the window calls them; initializeComplete runs from the event loop.
    virtual void initializeApplication();
    virtual void buildInterface();
    virtual void finishInterface();
    virtual void initializeComplete();

    /** The document, its files and its history. */
    DocumentSession& getSession() { return *session; }
    const DocumentSession& getSession() const { return *session; }

    // Dialogs and jobs of the commands that the rooms ask for; each goes on without blocking.
    void openImageDialog() override { session->openImageDialog(); }
    /** Asks where to save the photo, or gives it back to the host that handed it over. */
    void saveImage() override;
    /** Asks for a name, then saves the effect's settings as a preset of that name. */
    void savePresetDialog() override;
    /** Shows the preferences panel: the picture size limit and "Rebuild Default Presets". */
    void showPreferences();
    bool savePresetNamed(const juce::String& name) override;
    SxRef<SxImageRgbaBytes> renderFullImage(const juce::String& message) override { return session->renderFullImage(message); }
    bool isJobRunning() const { return session->isJobRunning(); }
    bool hasDocument() const override { return session->hasDocument(); }

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
    bool isRendering() const { return previewRenderer->isRendering() || session->isRenderingFull(); }
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
    void layerChanged() override { session->recordChange(); }
    void setActiveTool(SxTool* tool) override;
    void undoStep() override { session->stepHistory(false); }
    void redoStep() override { session->stepHistory(true); }
    bool canUndo() const override { return session->canUndo(); }
    bool canRedo() const override { return session->canRedo(); }

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
    SxImageRgbaBytes* getPreviewImage() const override { return session->getPreviewImage(); }
    SxImageRgbaBytes* getDisplayImage() const { return displayImage.get(); }
    LayerManager* getLayerManager() const override { return layerManager.get(); }
    PresetManager* getPresetManager() const { return presetManager.get(); }
    PresetActions* getPresetActions() const { return presetActions.get(); }
    Layer* getEffectLayer() const override { return layerManager != nullptr ? layerManager->getEffectLayer() : nullptr; }

    /** Where settings and working files live: the user's configuration folder plus the name. */
    juce::File applicationDataFolder();
    /** The full-size picture as loaded, parked on disk until the program ends. */
    juce::File originalBeforeEditFile() override;

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

    int hostKind = 0;
    bool quitRequested = false;
    bool closing = false;

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
    void prepareEffectLayer(Layer*) override {}
    // The document session's questions.
    juce::Component& sessionQuestionHost() override { return *this; }
    bool sessionMayAsk() const override { return !commandLineRender; }
    Layer* createDocumentEffect() override;
    LayerCallback* effectCallback() override { return this; }
    bool stopPreviewRender() override;
    void restartPreviewRender() override;
    void documentNeedsRender() override { layerNeedsRender(true, nullptr); }
    void pictureClosing() override;
    void showEffectControls(Layer* effect) override;
    void pictureReplaced() override;
    void documentStateChanged() override;
    juce::Component& topBarHost() override { return *this; }
    juce::Component& presetQuestionHost() override { return *this; }
    int handOverHostKind() const override { return hostKind; }
    const SxImageRgbaBytes* openHostPicture(const SxRef<SxImageRgbaBytes>& picture, const juce::File& titleFile) override
    {
        return session->openHostPicture(picture, titleFile);
    }
    void hostPictureReady() override { session->finishOpening(); }
    juce::Component& hostQuestionHost() override { return *this; }
    bool presetsMustWait() const override { return session->isRenderingFull() || session->isJobRunning() || session->isLoading(); }
    bool previewRendering() const override { return previewRenderer->isRendering(); }
    void presetApplied() override
    {
        updateControls();
        layerChanged();
    }
    SxToolOwner& topBarToolOwner() override { return *this; }
    LayerManager* layersToPreview() override;
    SxImageRgbaBytes* previewPicture() override { return session->getPreviewImage(); }
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
        componentMapTimer = 9100,
        handOverTimer = 8300,
        topBarRepaintTimer = 9000
    };

    bool started = false;
    bool showingOriginal = false;
    // A file drag is over the window: the window tests wait for it before they let go.
    bool fileDragOver = false;
    bool effectPanelOpen = true;
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
    std::unique_ptr<DocumentSession> session;
    SxRef<SxImageRgbaBytes> displayImage;
    juce::File componentMapFile;
    juce::ApplicationCommandManager commandManager;
    EaseComponentAnimator panelAnimator;
    juce::String pendingPanelBounds;
    std::unique_ptr<CropController> cropController;
    juce::Rectangle<int> cropRect;
};
