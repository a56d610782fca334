#include "tools/SxToolSwitcher.h"

#include "tools/SxToolDocument.h"

void SxToolSwitcher::setCurrentTool(SxTool* tool)
{
    if (tool == currentTool)
        return;
    if (veto && !veto(currentTool, tool))
        return;

    if (tool == nullptr)
    {
        if (currentTool != nullptr)
            currentTool->setToolOn(false);
        currentTool = nullptr;
        if (document != nullptr)
        {
            document->setTool(nullptr);
            document->setMouseCursor(juce::MouseCursor::NormalCursor);
            document->repaint();
        }
        return;
    }

    if (currentTool != nullptr)
        currentTool->setToolOn(false);
    if (document != nullptr)
        document->setTool(nullptr);
    currentTool = tool;
    tool->setDocument(document);
    if (document != nullptr)
        document->setTool(tool);
    tool->setToolOn(true);
    if (document != nullptr && document->isShowing())
        document->grabKeyboardFocus();
}
