#include "app/Tornvale.h"

#include "app/TornvaleAppComponent.h"

GenericAppComponent* Tornvale::createMainComponent()
{
    return new TornvaleAppComponent();
}
