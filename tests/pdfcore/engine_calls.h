// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QByteArray>
#include <QColor>
#include <QTemporaryDir>
#include <QTest>

/// Calls of the engine with all that they report, for tests.
namespace EngineCalls {

/// How one operation ended.
struct Outcome
{
    bool ok = false;
    PdfBackendError error = PdfBackendError::None;
    QString message;
};

struct Inspection : Outcome
{
    QList<QSizeF> pageSizes;
};

struct Rendering : Outcome
{
    QImage image;
};

/// A page of a file.
PdfSourcePage filePage(const QString &path, int index = 0, int rotation = 0,
                       const QString &password = {});

/// An empty page.
PdfSourcePage blankPage(const QSizeF &size, int rotation = 0);

Inspection inspect(const QString &path, const QString &password = {});
Rendering render(const PdfSourcePage &page, QSize size = {100, 100});
Outcome save(const QList<PdfSourcePage> &pages, const QString &path);

/// The colour in the middle of an image.
QColor middle(const QImage &image);

/// The colours in the middle of the four quarters: top left, top right, bottom left, bottom right.
QList<QColor> quarters(const QImage &image);

/// Largest difference of a colour channel.
int distance(const QColor &a, const QColor &b);

/// Largest difference of a colour channel between pixels of two images; 255 when the sizes differ.
int distance(const QImage &a, const QImage &b);

/// The numbers of pages of PdfFixture::pagesByNumber(), by their colours; -1 for a page that cannot
/// be rendered and 125 for any other.
QList<int> numbersOf(const QList<PdfSourcePage> &pages);

/// The numbers of the pages of a file; none if it does not open.
QList<int> numbersIn(const QString &path);

/// A folder for the files of one test.
class Folder
{
public:
    /// Writes a file into the folder and returns its path.
    QString add(const QString &name, const QByteArray &data);
    [[nodiscard]] QString path(const QString &name = {}) const;
    /// Names of temporary files that a save left behind.
    [[nodiscard]] QStringList leftovers() const;

private:
    QTemporaryDir m_folder;
};

/// The whole content of a file.
QByteArray contentOf(const QString &path);

} // namespace EngineCalls

namespace QTest {

template <>
char *toString(const PdfBackendError &error);

} // namespace QTest

/// Fails with both colours when a channel differs by more than `tolerance`.
#define COMPARE_COLOUR(actual, expected, tolerance)                                                \
    do {                                                                                           \
        const QColor actualColour = (actual);                                                      \
        const QColor expectedColour = (expected);                                                  \
        QVERIFY2(EngineCalls::distance(actualColour, expectedColour) <= (tolerance),               \
                 qPrintable(actualColour.name() + QLatin1String(" instead of ") +                  \
                            expectedColour.name()));                                               \
    } while (false)
