#include "app/ComponentMap.h"

#include "ui/ComponentMapEntries.h"
#include "ui/SxSlider.h"

#include <cstdio>
#include <functional>

namespace ComponentMap
{
juce::String describeComponents(juce::Component& root)
{
    juce::String text;
    std::function<void(juce::Component&)> visit = [&](juce::Component& c) {
        const auto name = c.getName().isNotEmpty() ? c.getName() : c.getComponentID();
        if (name.isNotEmpty() && c.isShowing())
        {
            const auto r = c.getScreenBounds();
            text << name.replaceCharacter(' ', '_') << ' ' << r.getX() << ' ' << r.getY() << ' ' << r.getWidth() << ' '
                 << r.getHeight() << '\n';
            if (auto* entries = dynamic_cast<ComponentMapEntries*>(&c))
                text << entries->componentMapEntries();
            // What a control shows, so a script can tell that the panel follows an applied preset.
            if (auto* slider = dynamic_cast<SxSlider*>(&c))
                text << "slider " << name << ' ' << slider->getSlider()->getValue() << '\n';
        }
        for (auto* child : c.getChildren())
            visit(*child);
    };
    visit(root);
    // The menu bar lives in the window, beside the root.
    if (auto* window = dynamic_cast<juce::DocumentWindow*>(root.getTopLevelComponent()))
        if (auto* bar = window->getMenuBarComponent(); bar != nullptr && bar->isShowing())
        {
            const auto r = bar->getScreenBounds();
            text << "menuBar " << r.getX() << ' ' << r.getY() << ' ' << r.getWidth() << ' ' << r.getHeight() << '\n';
        }
    return text;
}

juce::String describeCommands(juce::ApplicationCommandTarget& target, const juce::Array<juce::CommandID>& commands)
{
    juce::String text;
    for (auto id : commands)
    {
        juce::ApplicationCommandInfo info(id);
        target.getCommandInfo(id, info);
        text << "command " << (int) id << ' ' << ((info.flags & juce::ApplicationCommandInfo::isDisabled) ? 0 : 1) << ' '
             << ((info.flags & juce::ApplicationCommandInfo::isTicked) ? 1 : 0) << ' ' << info.shortName.replaceCharacter(' ', '_')
             << '\n';
    }
    return text;
}

void replace(const juce::File& file, const juce::String& text)
{
    const auto temp = file.getSiblingFile(file.getFileName() + ".part");
    // rename() replaces the old map in one step (moveFileTo deletes the target first).
    if (temp.replaceWithText(text, false, false, "\n"))
        std::rename(temp.getFullPathName().toRawUTF8(), file.getFullPathName().toRawUTF8());
}
} // namespace ComponentMap
