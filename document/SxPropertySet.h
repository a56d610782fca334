#pragma once
// The persistence primitive: everything that is saved (a layer's settings, a project, a preset, an
// undo record, default settings) is an ordered list of string keys and string values, plus pictures
// and nested sets that live only in memory until an owner turns them into keys.
//
// Binary form (little-endian):  int32 count, then count × (key UTF-8 + 0, value UTF-8 + 0).
// XML form: <plist><dict><key>k</key><string>v</string>...</dict></plist>, pictures encoded as keys.
// Picture keys for a name K: K_data holds base64 of gzip of (byte order, int16 width, int16 height,
// pixels); the raw form holds base64 of the plain pixels with K_width and K_height beside it.

#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

#include <memory>
#include <vector>

class SxPropertySet : public juce::PropertySet
{
public:
    SxPropertySet() : SxPropertySet(false) {}
    explicit SxPropertySet(bool ignoreCaseOfKeyNames);
    /** Shares the pictures (new references, no pixel copy) and copies the nested sets. */
    SxPropertySet(const SxPropertySet& other);
    SxPropertySet& operator=(const SxPropertySet& other);
    ~SxPropertySet() override;

    //==============================================================================
    // Scalars. An integer is stored as decimal text, a bool as "1"/"0", a float via a double.
    void setString(const juce::String& key, const juce::String& value);
    void setFloat(const juce::String& key, float value);
    void setInt(const juce::String& key, int value);
    void setBool(const juce::String& key, bool value);
    float getFloatValue(const juce::String& key, float defaultValue = 0.0f) const;

    /** Number of key/value pairs (pictures and children not counted). */
    int size() const;
    /** Drops pairs, pictures and children. */
    void clearAll();

    //==============================================================================
    // Pictures and nested sets. The set takes one reference on add and releases it on clear.
    /** Appends unless a picture of that name is present; then the set stays unchanged. */
    void addImage(SxImageRgbaBytes* image, const juce::String& path);
    void addAlphaImage(SxImageAlphaByte* image, const juce::String& path);
    /** Null when absent; the set keeps its reference. */
    SxImageRgbaBytes* getImage(const juce::String& path) const;
    SxImageAlphaByte* getAlphaImage(const juce::String& path) const;
    int getNumImages() const { return (int) images.size(); }
    int getNumAlphaImages() const { return (int) alphaImages.size(); }
    void clearImages();

    void addChild(const SxPropertySet& child, const juce::String& name);
    /** The nested set of that name, or an empty set. */
    SxPropertySet getChild(const juce::String& name) const;
    bool hasChild(const juce::String& name) const;
    int getNumChildren() const { return (int) children.size(); }

    //==============================================================================
    // The two forms on disk.
    /** A new plist-shaped element holding every pair, with the pictures turned into keys. */
    std::unique_ptr<juce::XmlElement> toXml() const;
    /** Replaces the pairs by those of a plist-shaped element, turning picture keys back into
        pictures. Anything not plist-shaped leaves the set with no pairs. */
    void fromXml(const juce::XmlElement& element);

    /** Reads the binary form and merges its pairs in (a key present already takes the new value
        at its old position). All or nothing: a count below 1, a truncated or oversized pair list
        leaves the set as it was and returns false. On success the stream stands right behind the
        last pair where it can seek. maxStringBytes limits each key and value (0: no limit). */
    bool readBinary(juce::InputStream& in, int maxStringBytes = 0);
    bool writeBinary(juce::OutputStream& out) const;

    /** Parses XML text that came from a file. Null for a processing instruction other than the
        leading declaration and for a DTD: juce::parseXML never returns on text, a processing
        instruction and text again inside one element, it expands DTD entities, and it reads past
        the end after an unclosed numeric reference ("&#X"), so a malformed reference is refused.
        The text must have been made from bytes checked by FileBytes::toText: JUCE's strings
        overflow their copies on UTF-8 that is not in its shortest form. */
    static std::unique_ptr<juce::XmlElement> parseXmlText(const juce::String& text);

    //==============================================================================
    // Pictures as keys. Readers give a new picture (the caller owns its reference) or null for an
    // absent, corrupt or empty encoding.
    static void writeImageToDictionary(SxPropertySet& set, const juce::String& name, const SxImageRgbaBytes& image, bool raw);
    static SxImageRgbaBytes* readImageFromDictionary(const SxPropertySet& set, const juce::String& name, bool raw);
    static void writeAlphaImageToDictionary(SxPropertySet& set, const juce::String& name, const SxImageAlphaByte& image, bool raw);
    static SxImageAlphaByte* readAlphaImageFromDictionary(const SxPropertySet& set, const juce::String& name, bool raw);

    /** The compact form refuses pictures whose sides do not fit its 16-bit fields. */
    static constexpr int maxCompactSide = 32767;

private:
    void copyPicturesFrom(const SxPropertySet& other);

    std::vector<SxImageRgbaBytes*> images;
    std::vector<juce::String> imagePaths;
    std::vector<SxImageAlphaByte*> alphaImages;
    std::vector<juce::String> alphaImagePaths;
    std::vector<SxPropertySet> children;
    std::vector<juce::String> childNames;
};
