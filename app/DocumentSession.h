#pragma once
// The one document of the window and its files: opening a photo or a project (asking first about
// unsaved changes), the picture at full and at preview size, the history of the effect's
// settings, the full-size render of a save, and writing photos and projects. It knows the window
// only through DocumentSessionCallback.

#include "document/SxUndo.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

class GenericAppDocument;
class Layer;
class LayerCallback;
class LayerManager;

/** What the session asks of the window; the window implements it. */
class DocumentSessionCallback
{
public:
    virtual ~DocumentSessionCallback() = default;

    virtual juce::PropertiesFile* getUserSettings() const = 0;
    virtual LayerManager* getLayerManager() const = 0;
    /** The view that shows the picture; jobs put their activity panel over it. */
    virtual GenericAppDocument* getDocument() const = 0;
    /** Where "Save Project?" shows. */
    virtual juce::Component& sessionQuestionHost() = 0;
    virtual void showAlert(const juce::String& name, const juce::String& title, const juce::String& message) = 0;
    /** False while the program renders from its command line: nothing is asked then. */
    virtual bool sessionMayAsk() const = 0;

    // The product's answers.
    virtual juce::String getProjectExtension() = 0;
    virtual juce::Rectangle<int> getPreviewRenderSize() = 0;
    virtual bool usesHighQualityPreview() = 0;
    /** A new effect layer for a picture, reporting to effectCallback; null when the product
        has none. */
    virtual Layer* createDocumentEffect() = 0;
    /** What the document's effect layers report their changes to. */
    virtual LayerCallback* effectCallback() = 0;
    /** Called with the effect layer whenever one has been made for the picture, before its first
        render. */
    virtual void prepareEffectLayer(Layer* effect) = 0;
    /** Where the full-size picture is parked until the program ends. */
    virtual juce::File originalBeforeEditFile() = 0;

    // The preview renders.
    /** Stops a running preview render and waits for it; true when one was running. */
    virtual bool stopPreviewRender() = 0;
    /** Renders the preview again, in any redraw mode: a job changed the layers under it. */
    virtual void restartPreviewRender() = 0;
    /** The document changed: a preview render starts unless renders wait for the Render button. */
    virtual void documentNeedsRender() = 0;

    // What shows the document.
    /** The picture is about to be replaced: whatever shows or frames it lets go of it. */
    virtual void pictureClosing() = 0;
    /** The effect the controls show; null while the stack is rebuilt under them. */
    virtual void showEffectControls(Layer* effect) = 0;
    /** A new picture stands in the stack (opened, cut, or from a host). */
    virtual void pictureReplaced() = 0;
    /** The controls show the effect's present values. */
    virtual void updateControls() = 0;
    /** The history, the file or the saved state changed: buttons, menus and the title follow. */
    virtual void documentStateChanged() = 0;
};

class DocumentSession : private juce::MultiTimer
{
public:
    explicit DocumentSession(DocumentSessionCallback& owner);
    ~DocumentSession() override;

    //==============================================================================
    // Opening.

    /** Replaces the document by the photo in file, first asking whether unsaved changes should
        be saved. True when the photo is open on return; false when it cannot be read (the
        present document stays) or when the question is showing (the answer goes on from there). */
    bool openImage(const juce::File& file);
    /** As openImage, for a project file. */
    bool openProject(const juce::File& file);
    /** Reads a photo into the document at once, with no question. False, with an alert naming
        the file, when it cannot be read; the open document then stays. */
    bool loadImageFile(const juce::File& file);
    /** As loadImageFile, for a project: the picture and the stack as they were saved. */
    bool loadProject(const juce::File& file);
    /** Ask for a file without blocking, and open it when answered. */
    void openImageDialog();
    void openProjectDialog();
    /** A host's picture as the document, under titleFile's name, as a picture of no file of
        ours. Returns the preview picture; finishOpening follows once the host's settings apply. */
    const SxImageRgbaBytes* openHostPicture(const SxRef<SxImageRgbaBytes>& picture, const juce::File& titleFile);
    void finishOpening();
    /** Cuts the picture to rect (source pixels), keeping the look; a change the project does not
        hold yet. False when rect leaves nothing to cut. */
    bool cutPicture(juce::Rectangle<int> rect);

    /** Runs proceed at once when the document has no unsaved change; otherwise asks "Save
        Project?" with Save, Don't Save and Cancel, and opens pathToOpen after the save or at once
        on "Don't Save". True when proceed ran before returning. */
    bool askAboutUnsavedChanges(const juce::String& pathToOpen, std::function<void()> proceed);
    bool isFreshProject() const;

    //==============================================================================
    // Saving.

    /** Asks where to save the photo and saves it at full size. */
    void savePhotoDialog();
    /** Renders at full size and writes the photo, to chosen with the photo extension rules
        applied. False, with an alert, when it cannot be written; an older file stays whole. */
    bool saveImageTo(const juce::File& chosen);
    /** Puts the tornvale-render command line of the present look on the clipboard. */
    void copyRenderCommand();
    /** Saves into the project file the document came from, or asks for one (always with
        saveAs). afterSave runs once the project has been written. */
    void saveProject(bool saveAs, std::function<void()> afterSave = {});
    /** Writes the project behind the activity panel and marks the document saved. */
    bool saveProjectTo(const juce::File& file);
    /** The writing itself; runs on the activity thread. */
    bool saveProjectNow(const juce::File& file);
    /** Renders the whole stack at the source picture's size behind the activity panel and gives
        the result (null if the render failed). The layers are at preview size again afterwards. */
    SxRef<SxImageRgbaBytes> renderFullImage(const juce::String& message);
    /** Runs job behind the activity panel with the preview render stopped, and renders the
        preview again afterwards when one was stopped. False when another job runs. */
    bool runJob(const std::function<bool()>& job);

    /** The effect's present settings become what every newly opened picture starts with. */
    void saveStartupSettings();
    void resetStartupSettings();

    //==============================================================================
    // History of the effect's settings; a restore is not recorded as a change.

    /** Records the effect's present settings as a step; the second step on makes the document
        unsaved. */
    void recordChange();
    void stepHistory(bool forward);
    bool canUndo() const { return undo.canUndo(); }
    bool canRedo() const { return undo.canRedo(); }
    int historyIndex() const { return undo.getCurrentIndex(); }

    //==============================================================================
    bool hasDocument() const { return originalImage.get() != nullptr && previewImage.get() != nullptr; }
    /** A job behind the activity panel holds the GL context and the layers. */
    bool isJobRunning() const { return jobRunning; }
    bool isRenderingFull() const { return renderingFullImage; }
    /** A picture is being replaced: the layers are not ready for a render. */
    bool isLoading() const { return loadingDocument; }
    SxImageRgbaBytes* getOriginalImage() const { return originalImage.get(); }
    SxImageRgbaBytes* getPreviewImage() const { return previewImage.get(); }
    /** The file the document was read from or last saved as a project; none for a host's. */
    const juce::File& getCurrentFile() const { return currentFile; }
    const juce::File& getProjectFile() const { return projectFile; }
    /** The path of the photo or project last opened. */
    const juce::String& getImagePath() const { return imagePath; }
    bool pictureHadAlpha() const { return sourceHadAlpha; }

    /** The preview size for a picture: the picture fitted into limit, never enlarged. */
    static juce::Rectangle<int> previewRectangleFor(juce::Rectangle<int> source, juce::Rectangle<int> limit);

    /** The resolution written into saved photos and projects, from the opened file. */
    float resolutionX = 72.0f;
    float resolutionY = 72.0f;

private:
    /** Drops the shown document for a picture read whole from file (a photo or a project): the
        settings name the file and the new document counts as saved. */
    void startNewDocument(const SxRef<SxImageRgbaBytes>& image, const juce::File& file);
    /** Builds the preview and the stack of the loaded picture and shows it. */
    void newImageLoaded();
    void parkOriginal();
    void startProjectSave(const juce::File& file, std::function<void()> afterSave);
    void timerCallback(int timerID) override;

    enum TimerIds
    {
        saveProjectTimer = 303,
        defaultsSavedTimer = 4001
    };

    DocumentSessionCallback& owner;
    SxRef<SxImageRgbaBytes> originalImage;
    SxRef<SxImageRgbaBytes> previewImage;
    SxUndo undo;
    bool restoringUndo = false;
    bool sourceHadAlpha = false;
    bool openingProject = false;
    bool loadingDocument = false;
    bool jobRunning = false;
    bool renderingFullImage = false;
    juce::String imagePath;
    juce::File currentFile;
    juce::File projectFile;
    juce::File saveDestination;
    std::function<void()> afterProjectSave;
    std::unique_ptr<juce::FileChooser> fileChooser;
};
