#include "wizards/CropController.h"

#include "ui/SxRoundRectangleButton.h"

namespace
{
/** Carries the end of the panel past the key press or click that caused it, so that the owner may
    delete the controller, whose widgets are still on the call stack. */
class CancelCropDialogMessage : public juce::CallbackMessage
{
public:
    CancelCropDialogMessage(CropController& c, CropController::Owner& o, juce::String cmd)
        : controller(&c), owner(o), command(std::move(cmd))
    {
    }
    void messageCallback() override
    {
        if (controller != nullptr)
            owner.cropCommand(command);
    }

private:
    juce::Component::SafePointer<CropController> controller;
    CropController::Owner& owner;
    juce::String command;
};

class CropAppliedMessage : public juce::CallbackMessage
{
public:
    CropAppliedMessage(CropController& c, CropController::Owner& o, juce::Rectangle<int> r) : controller(&c), owner(o), rect(r) {}
    void messageCallback() override
    {
        if (controller != nullptr)
            owner.cropApplied(rect);
    }

private:
    juce::Component::SafePointer<CropController> controller;
    CropController::Owner& owner;
    juce::Rectangle<int> rect;
};
} // namespace

CropController::CropController(SxToolDocument& doc, juce::Rectangle<int> pictureBounds, juce::Rectangle<int> lastCrop,
                               Owner& o)
    : SxComponent("cropController"), document(doc), picture(pictureBounds), owner(o)
{
    setWantsKeyboardFocus(true);

    addAndMakeVisible(presetEffectTitleLabel);
    presetEffectTitleLabel.setJustificationType(juce::Justification::centred);
    presetEffectTitleLabel.setFont(juce::Font(15.0f, juce::Font::bold));
    SxComponent::place(presetEffectTitleLabel, "(parent.width / 2) - (width / 2), 3, left + 190, top + 23");

    shapeSegment = std::make_unique<SegmentController>("cropShapeSegment", &shapeIndex, juce::StringArray { "Custom", "Square" },
                                                       juce::StringArray { "Any shape", "Width equal to height" }, this);
    addAndMakeVisible(*shapeSegment);
    SxComponent::place(*shapeSegment, "4, 27, left+parent.width - 8, top + parent.height - (79 + 27)");

    addAndMakeVisible(cancelImageListLabel);
    cancelImageListLabel.setJustificationType(juce::Justification::centred);
    cancelImageListLabel.setColour(juce::Label::textColourId, juce::Colours::white.withAlpha(0.6f));
    cancelImageListLabel.setText("Esc leaves without change", juce::dontSendNotification);
    SxComponent::place(cancelImageListLabel, "0, parent.height - 76, left + parent.width, top + 27");

    applyButton = std::make_unique<SxRoundRectangleButton>("applyButton", "Apply");
    applyButton->setProminent(true);
    applyButton->addListener(this);
    addAndMakeVisible(*applyButton);
    SxComponent::place(*applyButton, "(parent.width / 2) - (width / 2), parent.height - 31 - 10 + 1, left + 92, top + 31");

    inside = std::make_unique<CropInsideComponent>();
    document.addAndMakeVisible(*inside);
    inside->setBounds(document.getLocalBounds());
    inside->setImageBounds(document.imageBounds());
    if (!lastCrop.isEmpty())
        inside->setCropRect(lastCrop, picture);
    document.addListener(this);
    shapeSegment->update();
}

CropController::~CropController()
{
    document.removeListener(this);
    document.removeChildComponent(inside.get());
}

juce::Button& CropController::getApplyButton()
{
    return *applyButton;
}

void CropController::documentZoomChanged(SxToolDocument&)
{
    inside->setBounds(document.getLocalBounds());
    inside->setImageBounds(document.imageBounds());
}

void CropController::segmentChanged(SegmentController*, int index)
{
    inside->setAspectMode(index);
}

void CropController::leaveParent()
{
    document.removeChildComponent(inside.get());
    if (auto* parent = getParentComponent())
        parent->removeChildComponent(this);
}

bool CropController::keyPressed(const juce::KeyPress& key)
{
    const auto mods = key.getModifiers();
    if (key.getKeyCode() != juce::KeyPress::escapeKey || mods.isShiftDown() || mods.isCtrlDown() || mods.isAltDown())
        return false;
    cancel();
    return true;
}

void CropController::cancel()
{
    leaveParent();
    (new CancelCropDialogMessage(*this, owner, "cropCancel"))->post();
}

void CropController::buttonClicked(juce::Button* button)
{
    if (button != applyButton.get())
        return;
    // A frame on the picture's edge may round one pixel past it: shift it back, keeping its size.
    const auto rect = inside->getCropRect(picture).constrainedWithin(picture);
    leaveParent();
    if (rect.isEmpty())
        (new CancelCropDialogMessage(*this, owner, "cropCancel"))->post();
    else
        (new CropAppliedMessage(*this, owner, rect))->post();
}

void CropController::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff2b2d31));
    g.setColour(juce::Colour(0xff202124));
    g.fillRect(0, 0, getWidth(), 26);
    g.setColour(juce::Colour(0xff17181a));
    g.drawRect(getLocalBounds());
}
