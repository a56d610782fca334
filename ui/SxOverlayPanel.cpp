#include "ui/SxOverlayPanel.h"

#include "ui/SxLookAndFeel.h"

SxOverlayPanel::SxOverlayPanel(const juce::String& componentName, const juce::String& titleToShow)
    : SxComponent(componentName), title(titleToShow)
{
    setWantsKeyboardFocus(true);
}

void SxOverlayPanel::present(juce::Component& parent, int width, int height, juce::Component& focusTarget)
{
    parent.addAndMakeVisible(this);
    setBoundsString("(parent.width / 2) - " + juce::String(width / 2) + ", (parent.height / 2) - " + juce::String(height / 2)
                    + ", left + " + juce::String(width) + ", top + " + juce::String(height));
    toFront(false);
    enterModalState(false);
    if (isShowing())
        focusTarget.grabKeyboardFocus();
}

void SxOverlayPanel::cancel()
{
    if (!finished)
        finish();
}

void SxOverlayPanel::finish()
{
    finished = true;
    exitModalState(0);
    setVisible(false);
    if (auto* parent = getParentComponent())
    {
        parent->removeChildComponent(this);
        // Shortcuts work again at once.
        if (parent->isShowing())
            parent->grabKeyboardFocus();
    }
    auto* self = this;
    juce::MessageManager::callAsync([self] { delete self; });
}

bool SxOverlayPanel::keyPressed(const juce::KeyPress& key)
{
    if (key == juce::KeyPress::returnKey)
        accept();
    else if (key == juce::KeyPress::escapeKey)
        cancel();
    return true;
}

void SxOverlayPanel::paint(juce::Graphics& g)
{
    SxPaint::outlinedPanel(g, getLocalBounds(), SxColours::panel, 8.0f);
    SxPaint::panelTitle(g, title, { 16, 12, getWidth() - 32, 20 });
}
