// The crop of the main component: opening the panel, and the cut that follows "Apply".

#include "app/GenericAppComponent.h"

#include "app/MainTopBar.h"

void GenericAppComponent::openCrop()
{
    if (!canCrop() || cropController != nullptr)
        return;
    showOriginal(false);
    cropController = std::make_unique<CropController>(*document, originalImage->bounds(), cropRect, *this);
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
    rect = rect.getIntersection(originalImage->bounds());
    if (rect.isEmpty() || rect == originalImage->bounds())
        return;
    cropRect = rect;

    // The render thread reads the layers and the pictures: it ends before they are replaced.
    waitForRender();
    auto cut = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(rect.getWidth(), rect.getHeight()));
    cut->copyRect(*originalImage, rect, cut->bounds());

    // The cut picture goes through the same steps as a newly opened one, but the look the user
    // made stays: only the picture changed.
    SxPropertySet look;
    if (auto* effect = getEffectLayer())
        effect->saveToDictionary(look, {});
    loadingDocument = true;
    showOriginal(false);
    document->setImage(nullptr);
    displayImage.reset();
    previewImage.reset();
    originalImage = cut;
    newImageLoaded();
    if (auto* effect = getEffectLayer(); effect != nullptr && look.size() > 0)
    {
        effect->restoreFromDictionary(look, {});
        effect->setNeedsRender(true);
        undo.reset();
        layerChanged();
    }
    updateControls();
    // The cut is a change the project file does not hold yet.
    applicationProperties->setValue("freshProject", false);
    loadingDocument = false;
    layerNeedsRender(true, nullptr);
}
