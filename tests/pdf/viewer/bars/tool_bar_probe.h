// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class PdfTopToolBar;
class QIcon;
class QSignalSpy;

/// Counts every signal of a tool bar's own by its name.
class RequestLog final
{
public:
    explicit RequestLog(PdfTopToolBar *bar);
    ~RequestLog();

    /// What was emitted since the last call, such as "thumbnailToggled true".
    [[nodiscard]] QStringList take();

private:
    std::vector<std::unique_ptr<QSignalSpy>> m_spies;
    QStringList m_names;
};

/// The paths of the two families of icons.
[[nodiscard]] QString modernIcon(const char *name);
[[nodiscard]] QString viewerIcon(const char *name);

/// Whether an icon looks at `size` like the image file at `path`.
[[nodiscard]] bool showsIcon(const QIcon &icon, const QString &path, const QSize &size);
