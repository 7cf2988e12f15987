#include "res/resources.h"

#include <QtCore/qresource.h>
#include <QtGlobal>

void initResources()
{
    Q_INIT_RESOURCE(res);
}
