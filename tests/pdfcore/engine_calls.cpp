// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"

#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace EngineCalls {

PdfSourcePage filePage(const QString &path, int index, int rotation, const QString &password)
{
    PdfSourcePage page;
    page.filePath = path;
    page.password = password;
    page.pageIndex = index;
    page.rotation = rotation;
    return page;
}

PdfSourcePage blankPage(const QSizeF &size, int rotation)
{
    PdfSourcePage page;
    page.pageSize = size;
    page.rotation = rotation;
    page.isBlank = true;
    return page;
}

Inspection inspect(const QString &path, const QString &password)
{
    Inspection result;
    PdfDocumentInfo info;
    result.ok =
        PdfEditorBackend::inspectDocument(path, password, &info, &result.error, &result.message);
    result.pageSizes = info.pageSizes;
    return result;
}

Rendering render(const PdfSourcePage &page, QSize size)
{
    Rendering result;
    result.image = PdfEditorBackend::renderPage(page, size, &result.error, &result.message);
    result.ok = !result.image.isNull();
    return result;
}

Outcome save(const QList<PdfSourcePage> &pages, const QString &path)
{
    Outcome result;
    result.ok = PdfEditorBackend::saveDocument(pages, path, &result.error, &result.message);
    return result;
}

QColor middle(const QImage &image)
{
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

QList<QColor> quarters(const QImage &image)
{
    const int left = image.width() / 4;
    const int right = image.width() - 1 - left;
    const int top = image.height() / 4;
    const int bottom = image.height() - 1 - top;
    return {image.pixelColor(left, top), image.pixelColor(right, top),
            image.pixelColor(left, bottom), image.pixelColor(right, bottom)};
}

int distance(const QColor &a, const QColor &b)
{
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                     std::abs(a.blue() - b.blue())});
}

int distance(const QImage &a, const QImage &b)
{
    if (a.isNull() || a.size() != b.size()) {
        return 255;
    }
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            largest = std::max(largest, distance(a.pixelColor(x, y), b.pixelColor(x, y)));
        }
    }
    return largest;
}

QList<int> numbersOf(const QList<PdfSourcePage> &pages)
{
    constexpr int kNumbers = 125;
    QList<int> numbers;
    for (const PdfSourcePage &page : pages) {
        const Rendering rendering = render(page, {4, 4});
        int number = rendering.ok ? 0 : -1;
        while (rendering.ok && number < kNumbers &&
               distance(middle(rendering.image), PdfFixture::numberColour(number)) > 1) {
            ++number;
        }
        numbers.append(number);
    }
    return numbers;
}

QList<int> numbersIn(const QString &path)
{
    const qsizetype count = inspect(path).pageSizes.size();
    QList<PdfSourcePage> pages;
    for (int i = 0; i < count; ++i) {
        pages.append(filePage(path, i));
    }
    return numbersOf(pages);
}

QString Folder::add(const QString &name, const QByteArray &data)
{
    const QString file = path(name);
    return PdfFixture::write(file, data) ? file : QString();
}

QString Folder::path(const QString &name) const
{
    return name.isEmpty() ? m_folder.path() : m_folder.filePath(name);
}

QStringList Folder::leftovers() const
{
    return QDir(m_folder.path())
        .entryList({QStringLiteral(".quillora-*")}, QDir::Files | QDir::Hidden | QDir::System);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace EngineCalls

namespace QTest {

template <>
char *toString(const PdfBackendError &error)
{
    constexpr std::array kNames{
        "None",         "FileNotFound", "PasswordRequired", "InvalidPassword", "InvalidDocument",
        "RenderFailed", "WriteFailed"};
    const auto value = static_cast<std::size_t>(error);
    return qstrdup(value < kNames.size() ? kNames[value] : "an unknown value");
}

} // namespace QTest
