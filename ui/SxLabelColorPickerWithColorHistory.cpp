#include "ui/SxLabelColorPickerWithColorHistory.h"

#include "ui/ColorPaletteFile.h"
#include "ui/SxAlertComponent.h"

SxLabelColorPickerWithColorHistory::SxLabelColorPickerWithColorHistory(const juce::String& name, juce::Colour* field,
                                                                       SxControlChangedCallback* callback,
                                                                       const juce::File& paletteFolder)
    : SxComponent(name), folder(paletteFolder), chip("colorPickerChip", field, callback, false)
{
    addAndMakeVisible(container);
    SxComponent::place(container, "0, 0, left + parent.width, top + parent.height");
    auto add = [this](juce::Component& c, const char* bounds, const char* componentName, const char* tooltip) {
        container.addAndMakeVisible(c);
        if (componentName != nullptr)
            c.setName(componentName);
        if (auto* client = dynamic_cast<juce::SettableTooltipClient*>(&c); client != nullptr && tooltip != nullptr)
            client->setTooltip(tooltip);
        SxComponent::place(c, bounds);
    };
    add(label, "0, 0, left + 150, top + 23", nullptr, nullptr);
    add(paletteLabel, "100, 0, left + 150, top + 23", nullptr, nullptr);
    add(chip, "10, 23, left + 35, top + 35", nullptr, "Choose a color");
    add(nameLine, "0, 64, left + 190, top + 23", nullptr, nullptr);
    add(addColorButton, "55, 17, left + 22, top + 28", "addColorButton", "Add the chosen color to the color palette");
    add(removeColorButton, "55, 40, left + 22, top + 22", "removeColorButton", "Erase the selected color from the palette");
    add(loadButton, "90, 29, left + 50, top + 23", "loadButton", "Load in a color palette");
    add(saveButton, "150, 29, left + 50, top + 23", "saveButton", "Save a color palette to use later");
    add(resetToolButton, "150, 64, left + 50, top + 23", "resetToolButton", "Reset the color palette");
    add(history, "0, 90, left + parent.width, top + parent.height - 90", nullptr, nullptr);

    history.onColourPicked = [this](juce::Colour c) { chip.setColour(c, juce::sendNotification); };
    addColorButton.onClick = [this] { history.addColour(chip.getColour()); };
    removeColorButton.onClick = [this] { history.removeSelected(); };
    saveButton.onClick = [this] { showSaveDialog(); };
    loadButton.onClick = [this] { showPaletteList(); };
    resetToolButton.onClick = [this] {
        if (auto* top = getTopLevelComponent())
        {
            auto* alert = SxAlertComponent::ask(*top, "resetPaletteAlert", "Reset Color Palettes?",
                                                "This will clear your current color palette selection", { "Cancel" });
            juce::Component::SafePointer<SxLabelColorPickerWithColorHistory> self(this);
            alert->onAnswer = [self](int answer) {
                if (self != nullptr && answer == 0)
                    self->resetPalette();
            };
        }
    };
    showPaletteName();
}

SxLabelColorPickerWithColorHistory::~SxLabelColorPickerWithColorHistory() = default;

void SxLabelColorPickerWithColorHistory::update()
{
    chip.update();
}

juce::File SxLabelColorPickerWithColorHistory::paletteFile(const juce::String& name) const
{
    return folder.getChildFile(juce::File::createLegalFileName(name) + ".qpl");
}

void SxLabelColorPickerWithColorHistory::showPaletteName()
{
    nameLine.setText("Color Palette : " + paletteName, juce::dontSendNotification);
}

juce::Result SxLabelColorPickerWithColorHistory::savePalette(const juce::String& name)
{
    if (juce::File::createLegalFileName(name.trim()).isEmpty())
        return juce::Result::fail("A palette needs a name.");
    if (!folder.createDirectory())
        return juce::Result::fail("cannot make " + folder.getFullPathName());
    const auto result = ColorPaletteFile::write(paletteFile(name.trim()), history.getColours());
    if (result.wasOk())
    {
        paletteName = paletteFile(name.trim()).getFileNameWithoutExtension();
        showPaletteName();
    }
    return result;
}

juce::Result SxLabelColorPickerWithColorHistory::loadPalette(const juce::File& file)
{
    const auto read = ColorPaletteFile::readFile(file);
    if (!read.ok())
        return juce::Result::fail(file.getFileName() + ": " + read.error);
    history.setColours(read.colours);
    paletteName = file.getFileNameWithoutExtension();
    showPaletteName();
    return juce::Result::ok();
}

void SxLabelColorPickerWithColorHistory::resetPalette()
{
    history.setColours({});
    paletteName.clear();
    showPaletteName();
}

void SxLabelColorPickerWithColorHistory::showSaveDialog()
{
    saveDialog = std::make_unique<juce::AlertWindow>("Save Color Palette", "Name of the palette", juce::MessageBoxIconType::NoIcon, this);
    saveDialog->setName("saveDialog");
    saveDialog->addTextEditor("name", paletteName);
    saveDialog->addButton("Save", 1, juce::KeyPress(juce::KeyPress::returnKey));
    saveDialog->addButton("Cancel", 0, juce::KeyPress(juce::KeyPress::escapeKey));
    juce::Component::SafePointer<SxLabelColorPickerWithColorHistory> self(this);
    saveDialog->enterModalState(true, juce::ModalCallbackFunction::create([self](int answer) {
                                    if (self == nullptr || self->saveDialog == nullptr)
                                        return;
                                    const auto name = self->saveDialog->getTextEditorContents("name");
                                    self->saveDialog.reset();
                                    if (answer != 1)
                                        return;
                                    const auto result = self->savePalette(name);
                                    if (result.failed())
                                        if (auto* top = self->getTopLevelComponent())
                                            SxAlertComponent::show(*top, "paletteSaveFailed", "Cannot Save Palette",
                                                                   result.getErrorMessage());
                                }),
                                false);
}

void SxLabelColorPickerWithColorHistory::showPaletteList()
{
    auto* top = getTopLevelComponent();
    if (top == nullptr)
        return;
    paletteList = std::make_unique<SxColorPaletteList>(folder);
    juce::Component::SafePointer<SxLabelColorPickerWithColorHistory> self(this);
    paletteList->onPicked = [self](const juce::File& file) {
        if (self == nullptr)
            return;
        const auto result = self->loadPalette(file);
        if (result.failed())
            if (auto* top = self->getTopLevelComponent())
                SxAlertComponent::show(*top, "paletteLoadFailed", "Cannot Load Palette", result.getErrorMessage());
    };
    paletteList->slideIn(*top);
}
