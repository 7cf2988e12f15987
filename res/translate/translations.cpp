#include "res/translate/translations.h"

#include <QDir>
#include <QtGlobal>

void initTranslations()
{
    Q_INIT_RESOURCE(translations);
}
