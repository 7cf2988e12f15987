// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/file_drop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

bool acceptAsCopy(QDropEvent &event)
{
    if (!event.possibleActions().testFlag(Qt::CopyAction)) {
        event.ignore();
        return false;
    }
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return true;
}

QStringList filePaths(const QMimeData &data)
{
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        paths.append(url.toLocalFile());
    }
    return paths;
}
