// The crop of the main component: opening the panel, and the cut that follows "Apply".

#include "app/GenericAppComponent.h"

#include "app/MainTopBar.h"

void GenericAppComponent::openCrop()
{
    if (!canCrop() || cropController != nullptr)
        return;
    showOriginal(false);
    cropController = std::make_unique<CropController>(*document, session->getOriginalImage()->bounds(), cropRect, *this);
    addAndMakeVisible(*cropController);
    SxComponent::place(*cropController, "parent.width - 256, topBar.height, left + 256, top + " + juce::String(CropController::panelHeight));
    cropController->grabKeyboardFocus();
}

void GenericAppComponent::cropCommand(const juce::String& command)
{
    if (command == "cropCancel")
        cropController.reset();
}

void GenericAppComponent::cropApplied(juce::Rectangle<int> rect)
{
    cropController.reset();
    if (!canCrop())
        return;
    // The frame is in the source's pixels before the cut, which is what a later crop starts from.
    const auto kept = rect.getIntersection(session->getOriginalImage()->bounds());
    if (session->cutPicture(kept))
        cropRect = kept;
}
