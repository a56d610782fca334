#include "ui/SxLayoutController.h"

#include "ui/Easing.h"

int SxLayoutController::valueIn(const std::unordered_map<juce::Component*, int>& map, juce::Component* key)
{
    const auto it = map.find(key);
    return it == map.end() ? 0 : it->second;
}

void SxLayoutController::addRow(juce::Component* row)
{
    if (std::find(rows.begin(), rows.end(), row) == rows.end())
        rows.push_back(row);
}

void SxLayoutController::addFixedRow(juce::Component* row)
{
    addRow(row);
    autoRow[row] = 0;
}

void SxLayoutController::removeRow(juce::Component* row)
{
    rows.erase(std::remove(rows.begin(), rows.end(), row), rows.end());
    removeChildComponent(row);
}

void SxLayoutController::addFullWidthRow(juce::Component* row)
{
    addRow(row);
    autoRow[row] = 1;
}

juce::Component* SxLayoutController::makeColumns(std::initializer_list<juce::Component*> parts, int height)
{
    auto holder = std::make_unique<SxComponent>("SxLayoutColumns");
    holder->setSize(juce::jmax(1, getWidth()), height);
    const int n = (int) parts.size();
    int i = 0;
    for (auto* part : parts)
    {
        holder->addAndMakeVisible(part);
        SxComponent::place(*part, "parent.width * " + juce::String(i) + " / " + juce::String(n) + ", 0, left + parent.width / "
                                      + juce::String(n) + ", top + parent.height");
        ++i;
    }
    auto* raw = holder.get();
    columnHolders.push_back(std::move(holder));
    addFullWidthRow(raw);
    return raw;
}

void SxLayoutController::addTwoColumns(juce::Component* left, juce::Component* right, int height)
{
    makeColumns({ left, right }, height);
}

void SxLayoutController::addThreeColumns(juce::Component* left, juce::Component* middle, juce::Component* right, int height)
{
    makeColumns({ left, middle, right }, height);
}

void SxLayoutController::insertBefore(juce::Component* row, juce::Component* before)
{
    rows.erase(std::remove(rows.begin(), rows.end(), row), rows.end());
    auto it = std::find(rows.begin(), rows.end(), before);
    rows.insert(it, row);
}

void SxLayoutController::insertAfter(juce::Component* row, juce::Component* after)
{
    rows.erase(std::remove(rows.begin(), rows.end(), row), rows.end());
    auto it = std::find(rows.begin(), rows.end(), after);
    rows.insert(it == rows.end() ? it : it + 1, row);
}

void SxLayoutController::relayout(int)
{
    layoutRows();
}

void SxLayoutController::layoutRows()
{
    removeAllChildren();
    totalHeight = 0;
    int y = startY;
    for (size_t i = 0; i < rows.size(); ++i)
    {
        auto* row = rows[i];
        addAndMakeVisible(row);
        const int yBefore = y;
        y += valueIn(topGap, row);

        const auto stored = SxComponent::boundsStringOf(*row);
        const auto parts = juce::StringArray::fromTokens(stored, ",", "()");
        if (valueIn(autoRow, row) != 0 || stored.isEmpty() || parts.size() != 4)
        {
            const int height = row->getHeight() > 0 ? row->getHeight() : 45;
            row->setSize(getWidth(), height);
            SxComponent::place(*row, juce::String::formatted("0, %d, left + parent.width, top + %d", y, height));
        }
        else
        {
            // Keep the row's own left and width; only its top comes from the stack.
            SxComponent::place(*row, parts[0] + juce::String::formatted(", %d, ", y) + parts[2].trim() + ", " + parts[3].trim());
        }

        y += row->getHeight();
        if (i + 1 < rows.size())
            y += rowGap + valueIn(bottomGap, row);
        if (row->getAlpha() == 0.0f)
            y = yBefore;
    }
    totalHeight = y;
}

//==============================================================================
SxLayoutComponent::SxLayoutComponent(const juce::String& name) : SxComponent(name) {}

SxLayoutComponent::~SxLayoutComponent()
{
    if (scroller != nullptr)
        scroller->setViewedComponent(nullptr, false);
}

void SxLayoutComponent::createColumn(int startY, int rowGap)
{
    if (scroller != nullptr)
        scroller->setViewedComponent(nullptr, false);
    scroller.reset();
    insideComponent.reset();
    ownedController.reset();
    children.clear();

    scroller = std::make_unique<juce::Viewport>("SxLayoutComponentScroller");
    scroller->setScrollBarsShown(scrollable, false);
    scroller->setScrollBarThickness(10);
    addAndMakeVisible(*scroller);
    SxComponent::place(*scroller, "0, 0, left + parent.width, top +parent.height");

    insideComponent = std::make_unique<SxComponent>("SxLayoutComponentScrollerInsideComponent");
    ownedController = std::make_unique<SxLayoutController>();
    controller = ownedController.get();
    controller->startY = startY;
    controller->rowGap = rowGap;
    insideComponent->addAndMakeVisible(*controller);
    scroller->setViewedComponent(insideComponent.get(), false);
    updateLayout();
}

void SxLayoutComponent::addRow(juce::Component* row)
{
    children.push_back(row);
    if (controller != nullptr)
        controller->addRow(row);
}

void SxLayoutComponent::removeRow(juce::Component* row)
{
    children.erase(std::remove(children.begin(), children.end(), row), children.end());
    if (controller != nullptr)
        controller->removeRow(row);
}

void SxLayoutComponent::addWideRow(juce::Component* row, bool keepOwnBounds)
{
    children.push_back(row);
    if (controller != nullptr)
        keepOwnBounds ? controller->addFixedRow(row) : controller->addFullWidthRow(row);
}

void SxLayoutComponent::insertRowAfter(juce::Component* row, juce::Component* after)
{
    children.push_back(row);
    if (controller != nullptr)
        controller->insertAfter(row, after);
}

void SxLayoutComponent::insertRowBefore(juce::Component* row, juce::Component* before)
{
    children.push_back(row);
    if (controller != nullptr)
        controller->insertBefore(row, before);
}

void SxLayoutComponent::setRowGapAbove(juce::Component* row, int gap)
{
    if (controller != nullptr)
        controller->setTopGap(row, gap);
}

void SxLayoutComponent::setRowGapBelow(juce::Component* row, int gap)
{
    if (controller != nullptr)
        controller->setBottomGap(row, gap);
}

void SxLayoutComponent::relayout()
{
    if (controller != nullptr)
        controller->layoutRows();
    updateLayout();
}

void SxLayoutComponent::relayoutAndResize(int ms)
{
    if (scroller == nullptr || controller == nullptr)
        return;
    controller->layoutRows();
    const int height = controller->getTotalHeight();
    if (ms == 0 || insideComponent->getHeight() < height + 5)
    {
        animator.cancelAllAnimations(false);
        updateLayout();
        return;
    }
    const auto inside = insideComponent->getBounds().withHeight(height + 5);
    const auto column = controller->getBounds().withHeight(height);
    if (ms + 400 < 6)
    {
        insideComponent->setBounds(inside);
        controller->setBounds(column);
        return;
    }
    animator.animateComponent(insideComponent.get(), inside, 1.0f, ms + 400, false, 0.5, 0.5, Easing::sineInOut);
    animator.animateComponent(controller, column, 1.0f, ms + 400, false, 0.5, 0.5, Easing::sineInOut);
}

void SxLayoutComponent::updateLayout()
{
    if (scroller == nullptr || controller == nullptr)
        return;
    const int insideWidth = noInset ? scroller->getWidth() : scroller->getWidth() - 8;
    insideComponent->setSize(juce::jmax(0, insideWidth), controller->getTotalHeight() + 5);
    if (noInset)
        controller->setBounds(0, 0, insideComponent->getWidth(), controller->getTotalHeight());
    else
        controller->setBounds(5, 0, juce::jmax(0, insideComponent->getWidth() - 13), controller->getTotalHeight());
}

void SxLayoutComponent::scrollToY(int y)
{
    if (scroller != nullptr)
        scroller->setViewPosition(0, y);
}

void SxLayoutComponent::update()
{
    for (auto* child : children)
        if (auto* updatable = dynamic_cast<SxUpdateComponent*>(child))
            updatable->update();
}
