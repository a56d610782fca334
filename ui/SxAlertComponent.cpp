#include "ui/SxAlertComponent.h"

#include "ui/SxLookAndFeel.h"

#include <cmath>

namespace
{
constexpr int margin = 20;
constexpr int titleHeight = 22;
constexpr int buttonWidth = 84;
constexpr int buttonHeight = 26;
const juce::String overlayName("SxAlertOverlay");

// Covers the whole parent: dims it, swallows its clicks and keys, owns the alert and keeps it
// centred. It watches the parent so that an alert left open when its parent dies goes too.
class AlertOverlay : public SxComponent, private juce::ComponentListener
{
public:
    AlertOverlay(juce::Component& parentToCover, SxAlertComponent* alertToOwn)
        : SxComponent(overlayName), parent(&parentToCover), alert(alertToOwn),
          previousFocus(juce::Component::getCurrentlyFocusedComponent())
    {
        setWantsKeyboardFocus(true);
        addAndMakeVisible(*alert);
        parent->addAndMakeVisible(this);
        setBoundsString("0, 0, left + parent.width, top + parent.height");
        parent->addComponentListener(this);
    }

    ~AlertOverlay() override
    {
        if (parent != nullptr)
            parent->removeComponentListener(this);
    }

    SxAlertComponent* getAlert() const { return alert.get(); }

    /** Off the parent now, deleted after the event in hand: this may be running inside a click
        on the alert's own button. */
    void retire()
    {
        if (parent != nullptr)
        {
            parent->removeComponentListener(this);
            parent->removeChildComponent(this);
            parent = nullptr;
        }
        setVisible(false);
        // The keys the program listens for (tool shortcuts) work again at once.
        if (previousFocus != nullptr && previousFocus->isShowing())
            previousFocus->grabKeyboardFocus();
        auto* self = this;
        juce::MessageManager::callAsync([self] { delete self; });
    }

    void paint(juce::Graphics& g) override { g.fillAll(juce::Colours::black.withAlpha(0.35f)); }

    void resized() override
    {
        const int width = juce::jmin(SxAlertComponent::preferredWidth, juce::jmax(160, getWidth() - 2 * margin));
        const int height = alert->getPreferredHeight(width);
        alert->setBounds(juce::Rectangle<int>(width, height).withCentre(getLocalBounds().getCentre()));
    }

    void mouseDown(const juce::MouseEvent&) override { alert->grabKeyboardFocus(); }
    bool keyPressed(const juce::KeyPress& key) override { return alert->keyPressed(key); }

private:
    void componentBeingDeleted(juce::Component&) override
    {
        parent = nullptr;
        retire();
    }

    juce::Component* parent;
    std::unique_ptr<SxAlertComponent> alert;
    juce::Component::SafePointer<juce::Component> previousFocus;
};

AlertOverlay* overlayIn(juce::Component& parent)
{
    for (auto* child : parent.getChildren())
        if (auto* overlay = dynamic_cast<AlertOverlay*>(child))
            return overlay;
    return nullptr;
}
} // namespace

SxAlertComponent::SxAlertComponent(const juce::String& componentName, const juce::String& titleText,
                                   const juce::String& messageText)
    : SxComponent(componentName), title(titleText), message(messageText)
{
    setUp();
}

SxAlertComponent::SxAlertComponent(const juce::String& componentName, const juce::String& titleText,
                                   const juce::String& messageText, const juce::StringArray& answers)
    : SxComponent(componentName), title(titleText), message(messageText)
{
    if (!answers.isEmpty())
        okButton.setButtonText(answers[0]);
    for (int i = 1; i < answers.size(); ++i)
    {
        auto button = std::make_unique<SxRoundRectangleButton>("SxAlertAnswerButton" + juce::String(i), answers[i]);
        button->setFontHeight(13.0f);
        button->onClick = [this, i] { answer(i); };
        addAndMakeVisible(*button);
        extraButtons.push_back(std::move(button));
    }
    setUp();
}

void SxAlertComponent::setUp()
{
    setWantsKeyboardFocus(true);
    okButton.setProminent(true);
    okButton.setFontHeight(13.0f);
    okButton.onClick = [this] { answer(0); };
    addAndMakeVisible(okButton);
    setSize(preferredWidth, getPreferredHeight(preferredWidth));
}

juce::Button* SxAlertComponent::getAnswerButton(int index)
{
    if (index == 0)
        return &okButton;
    return index > 0 && index <= (int) extraButtons.size() ? extraButtons[(size_t) index - 1].get() : nullptr;
}

void SxAlertComponent::answer(int index)
{
    if (closed)
        return;
    const auto callback = onAnswer; // close() may delete the alert
    close();
    if (callback)
        callback(index);
}

SxAlertComponent::~SxAlertComponent() = default;

SxAlertComponent* SxAlertComponent::show(juce::Component& parent, const juce::String& componentName,
                                         const juce::String& titleText, const juce::String& messageText)
{
    if (auto* previous = overlayIn(parent))
        previous->retire();
    auto* alert = new SxAlertComponent(componentName, titleText, messageText);
    auto* overlay = new AlertOverlay(parent, alert);
    overlay->toFront(false);
    if (alert->isShowing())
        alert->grabKeyboardFocus();
    return alert;
}

SxAlertComponent* SxAlertComponent::ask(juce::Component& parent, const juce::String& componentName,
                                        const juce::String& titleText, const juce::String& messageText,
                                        const juce::StringArray& answers)
{
    if (auto* previous = overlayIn(parent))
        previous->retire();
    auto* alert = new SxAlertComponent(componentName, titleText, messageText, answers);
    auto* overlay = new AlertOverlay(parent, alert);
    overlay->toFront(false);
    if (alert->isShowing())
        alert->grabKeyboardFocus();
    return alert;
}

SxAlertComponent* SxAlertComponent::findIn(juce::Component& parent)
{
    auto* overlay = overlayIn(parent);
    return overlay != nullptr ? overlay->getAlert() : nullptr;
}

void SxAlertComponent::close()
{
    if (closed)
        return;
    closed = true;
    const auto callback = onClose; // the alert may be gone when it returns
    if (auto* overlay = dynamic_cast<AlertOverlay*>(getParentComponent()))
        overlay->retire();
    else
        setVisible(false);
    if (callback)
        callback();
}

bool SxAlertComponent::keyPressed(const juce::KeyPress& key)
{
    if (key == juce::KeyPress::returnKey)
    {
        answer(0);
        return true;
    }
    if (key == juce::KeyPress::escapeKey)
    {
        answer(getNumAnswers() - 1);
        return true;
    }
    // Everything else stops here too: the alert stands in front of the program until dismissed.
    return true;
}

juce::TextLayout SxAlertComponent::layoutMessage(float width) const
{
    juce::AttributedString text;
    text.append(message, juce::Font(13.5f), SxColours::text.withAlpha(0.85f));
    text.setWordWrap(juce::AttributedString::byWord);
    text.setLineSpacing(2.0f);
    juce::TextLayout layout;
    layout.createLayout(text, juce::jmax(1.0f, width));
    return layout;
}

int SxAlertComponent::getPreferredHeight(int width) const
{
    const float textHeight = layoutMessage((float) (width - 2 * margin)).getHeight();
    return margin + titleHeight + 8 + (int) std::ceil(textHeight) + margin + buttonHeight + 16;
}

void SxAlertComponent::paint(juce::Graphics& g)
{
    SxPaint::outlinedPanel(g, getLocalBounds(), SxColours::panel, 8.0f);
    SxPaint::panelTitle(g, title, { margin, margin, getWidth() - 2 * margin, titleHeight });

    const float top = (float) (margin + titleHeight + 8);
    layoutMessage((float) (getWidth() - 2 * margin))
        .draw(g, { (float) margin, top, (float) (getWidth() - 2 * margin), (float) getHeight() - top });
}

void SxAlertComponent::resized()
{
    int right = getWidth() - margin;
    okButton.setBounds(right - buttonWidth, getHeight() - 16 - buttonHeight, buttonWidth, buttonHeight);
    for (auto& button : extraButtons)
    {
        right -= buttonWidth + 8;
        button->setBounds(right - buttonWidth, getHeight() - 16 - buttonHeight, buttonWidth, buttonHeight);
    }
}
