#pragma once
// The program's side of working inside a host photo editor. A plug-in in the host writes the
// picture and its selection into hand-over files in the user's home folder, starts the program
// and waits; this class finds those files, opens the picture as the document, limits the effect
// to the selection, and on "Apply to Photo" writes the full-size result back and ends the program.
// Without a host that hands files over it does nothing, and the program runs stand-alone.

#include "document/HandOverFiles.h"

#include <juce_gui_basics/juce_gui_basics.h>

class Layer;

/** What a host session asks of the window that shows the host's picture; the session knows
    nothing else of it. */
class HostSessionCallback
{
public:
    virtual ~HostSessionCallback() = default;
    /** The kind of process that started the program (see ParentProcess). */
    virtual int handOverHostKind() const = 0;
    /** Whether that process is of kind, or of a group of kinds (1: any plug-in host). */
    virtual bool isHostKind(int kind) const = 0;
    /** Opens picture as the document under titleFile's name, as a picture of no file of ours:
        no project, no metadata, 72 ppi, no alpha of its own. Returns the preview picture. */
    virtual const SxImageRgbaBytes* openHostPicture(const SxRef<SxImageRgbaBytes>& picture, const juce::File& titleFile) = 0;
    /** The host's picture is open with its selection and settings: the window takes its title
        and the first render starts. */
    virtual void hostPictureReady() = 0;
    virtual Layer* getEffectLayer() const = 0;
    /** The controls show the effect's present values. */
    virtual void updateControls() = 0;
    /** The stack at full size, behind the activity panel; null when it failed. */
    virtual SxRef<SxImageRgbaBytes> renderFullImage(const juce::String& message) = 0;
    virtual void showAlert(const juce::String& name, const juce::String& title, const juce::String& message) = 0;
    /** "Apply to Photo", as the save button does it. */
    virtual void saveImage() = 0;
    /** Where the "Quit or Apply?" question shows. */
    virtual juce::Component& hostQuestionHost() = 0;
};

class HostSession
{
public:
    explicit HostSession(HostSessionCallback& owner);

    /** Hosts that hand the picture over through the files; the others give a path. */
    static bool handsOverFiles(int hostKind);
    /** True when the process that started us, or the command line, is such a host. */
    static bool startedByHandOverHost(const juce::String& commandLine);
    /** The save button's tooltip in a host. */
    static juce::String applyTooltip(int hostKind);
    /** The status a hand-over ends with when one of its files is missing: the C library's code
        for a file that cannot be opened. The host never starts the program without them. */
    static constexpr int missingFileExitCode = 174;

    /** Builds the four paths in the home folder when a host started the program, after giving
        the host a moment to finish writing them. */
    void findHandOverFiles();
    /** Checks that the flag and picture files are there and reads the picture's title; a missing
        file ends the process with missingFileExitCode. */
    void readHandOverHeader();
    /** True when a host handed a picture over that has not been opened yet. */
    bool hasPendingPicture() const { return pending; }
    /** Reads the picture file and opens it as the document, with the selection as the mask of
        the effect and the scripted settings, if any, applied. False when the file is damaged: the
        program then stays empty and the host's picture untouched. */
    bool readHandOverImage(const juce::File& file, bool headerOnly);
    /** Applies the settings of the action file to the effect; false when there are none. */
    bool applyHandOverSettings(Layer& effect) const { return applySettingsFrom(paths.action, effect); }
    /** The same for any action file; settings recorded for another effect are not applied. */
    static bool applySettingsFrom(const juce::File& actionFile, Layer& effect);

    /** True while the document came from a host and goes back to it. */
    bool isActive() const { return active; }
    /** "Apply to Photo": renders at full size, lays the result over the host's picture through
        the selection, writes it back and ends the program. False, with an alert, when the
        result could not be written; the program then stays open. */
    bool applyToHost();
    /** Asks whether to quit or apply while a host waits; false while the question shows. */
    bool mayQuit();
    /** The preview as the host will get it: the render only where the selection reaches. */
    SxRef<SxImageRgbaBytes> throughSelection(SxImageRgbaBytes& rendered, const SxImageRgbaBytes& preview);

    const HandOverFiles::Paths& getPaths() const { return paths; }
    const juce::String& getHostTitle() const { return hostTitle; }

private:
    [[noreturn]] static void endForMissingFile(const juce::File& file);

    HostSessionCallback& component;
    // Relative names until findHandOverFiles places them in the home folder.
    HandOverFiles::Paths paths = HandOverFiles::pathsIn(juce::File::getCurrentWorkingDirectory());
    juce::String hostTitle;
    int parameterBlockSize = 0;
    HandOverFiles::Image handedOver;
    SxRef<SxImageAlphaByte> selectiveMask, previewMask;
    bool pending = false;
    bool active = false;
};
