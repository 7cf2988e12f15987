// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"

#include <QtCore/qresource.h>
#include <QtGlobal>

void initResources()
{
    Q_INIT_RESOURCE(res);
}
