#pragma once
// Small caches of named images (icons, brush tips, thumbnails) that are expensive to make and
// cheap to drop. Each is filled by name; when nothing has asked for it for a while, a timer on
// the message thread empties it so that a long session does not hoard memory.

#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_events/juce_events.h>

#include <vector>

template <typename ImageType>
class SxImageCacheBase : public juce::MultiTimer
{
public:
    /** How long the cache stays filled after its last use. */
    static constexpr int evictionMilliseconds = 60000;

    ~SxImageCacheBase() override
    {
        stopTimer(evictionTimerId);
        clear();
    }

    /** The image stored under the name, or null. The cache keeps its reference. */
    ImageType* find(const juce::String& key)
    {
        for (size_t i = 0; i < keys.size(); ++i)
            if (keys[i] == key)
            {
                touch();
                return images[i];
            }
        return nullptr;
    }

    /** Stores an image under a name, taking over the caller's reference; replaces an older one. */
    void add(const juce::String& key, ImageType* image)
    {
        remove(key);
        keys.push_back(key);
        images.push_back(image);
        touch();
    }

    void remove(const juce::String& key)
    {
        for (size_t i = 0; i < keys.size(); ++i)
            if (keys[i] == key)
            {
                images[i]->release();
                keys.erase(keys.begin() + (long) i);
                images.erase(images.begin() + (long) i);
                return;
            }
    }

    void clear()
    {
        for (auto* image : images)
            image->release();
        keys.clear();
        images.clear();
    }

    size_t size() const { return keys.size(); }

    void timerCallback(int timerId) override
    {
        if (timerId == evictionTimerId)
        {
            stopTimer(evictionTimerId);
            clear();
        }
    }

private:
    static constexpr int evictionTimerId = 1;

    void touch()
    {
        if (juce::MessageManager::getInstanceWithoutCreating() != nullptr)
            startTimer(evictionTimerId, evictionMilliseconds);
    }

    std::vector<juce::String> keys;
    std::vector<ImageType*> images;
};

class SxGrayImageCache : public SxImageCacheBase<SxImageAlphaByte> {};
class SxColorImageCache : public SxImageCacheBase<SxImageRgbaBytes> {};
