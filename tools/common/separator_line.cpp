// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/separator_line.h"

#include "widgets/theme.h"

#include <QLabel>

namespace {

// %1 colour
constexpr QLatin1String kStyleSheet{"QLabel{background-color:%1;}"};

} // namespace

QLabel *createSeparator(Qt::Orientation orientation, QWidget *parent)
{
    auto *line = new QLabel(parent);
    line->setStyleSheet(kStyleSheet.arg(Theme::borderNeutral.name().toUpper()));
    if (orientation == Qt::Horizontal) {
        line->setFixedHeight(1);
    } else {
        line->setFixedWidth(1);
    }
    return line;
}
