// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QTextDocument>

/// The tool tip that shows a text letter by letter. Names of files may look like formatted text,
/// which a tool tip would take them for.
[[nodiscard]] inline QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}
