// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/translate/translations.h"

#include <QDir>
#include <QtGlobal>

void initTranslations()
{
    Q_INIT_RESOURCE(translations);
}
