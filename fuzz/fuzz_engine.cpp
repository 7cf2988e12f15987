// SPDX-License-Identifier: AGPL-3.0-or-later
#include "fuzz/fuzz_engine.h"

#include "pdfcore/pdf_editor_backend.h"

#include <QFile>
#include <QTemporaryDir>

namespace FuzzEngine {

namespace {

constexpr int kLists = 2;
constexpr int kLongestList = 12;
constexpr int kMostPages = 200;
constexpr QSize kSize(16, 16);

/// Numbers that depend on the input alone, so that a failure can be repeated.
class Choice
{
public:
    explicit Choice(const QByteArray &input)
    {
        for (const char byte : input) {
            m_state = (m_state ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
        }
    }

    int below(int limit)
    {
        m_state = m_state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<int>((m_state >> 33) % static_cast<quint64>(limit));
    }

private:
    quint64 m_state = 14695981039346656037ULL;
};

bool writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

PdfSourcePage blankPage()
{
    PdfSourcePage page;
    page.isBlank = true;
    page.pageSize = QSizeF(100, 100);
    return page;
}

PdfSourcePage filePage(const QString &path, int index)
{
    PdfSourcePage page;
    page.filePath = path;
    page.pageIndex = index;
    return page;
}

/// All pages in their order, or any of them from both copies of the file.
QList<PdfSourcePage> makeList(const QStringList &files, int pageCount, Choice &choice)
{
    QList<PdfSourcePage> pages;
    const int kind = choice.below(3);
    if (kind == 0) {
        for (int i = 0; i < pageCount; ++i) {
            pages.append(filePage(files.at(0), i));
        }
        return pages;
    }
    for (int left = choice.below(kLongestList); left >= 0; --left) {
        if (choice.below(10) == 0) {
            pages.append(blankPage());
            continue;
        }
        const int file = kind == 1 ? 0 : choice.below(static_cast<int>(files.size()));
        PdfSourcePage page = filePage(files.at(file), choice.below(pageCount));
        page.rotation = 90 * choice.below(4);
        page.isOfMainDocument = kind == 2 && file == 1;
        pages.append(page);
    }
    return pages;
}

void fail(const char *reason)
{
    qFatal("%s", reason);
}

} // namespace

void run(const QByteArray &input)
{
    const QTemporaryDir folder;
    const QStringList files{folder.filePath(QStringLiteral("a.pdf")),
                            folder.filePath(QStringLiteral("b.pdf"))};
    const QString output = folder.filePath(QStringLiteral("out.pdf"));
    if (!writeFile(files.at(0), input) || !writeFile(files.at(1), input)) {
        return;
    }
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(files.at(0), {}, &info, nullptr, nullptr)) {
        return;
    }
    const auto pageCount = static_cast<int>(info.pageSizes.size());
    if (pageCount == 0 || pageCount > kMostPages) {
        return;
    }
    PdfEditorBackend::renderPage(filePage(files.at(0), 0), kSize, nullptr, nullptr);
    Choice choice(input);
    for (int i = 0; i < kLists; ++i) {
        const QList<PdfSourcePage> pages = makeList(files, pageCount, choice);
        if (!PdfEditorBackend::saveDocument(pages, output, nullptr, nullptr)) {
            continue;
        }
        PdfDocumentInfo written;
        if (!PdfEditorBackend::inspectDocument(output, {}, &written, nullptr, nullptr)) {
            fail("The file that was written does not open.");
        }
        if (written.pageSizes.size() != pages.size()) {
            fail("The file that was written has other pages.");
        }
    }
}

} // namespace FuzzEngine
