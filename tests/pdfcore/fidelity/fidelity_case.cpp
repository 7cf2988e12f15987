// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr QSizeF kBlank(210, 297);

/// Pages of 300 × 400 points are scaled by numbers that come out even, whichever way up they are:
/// nothing then falls differently between the pixels.
constexpr QSize kPicture(150, 150);

/// Largest difference of a colour channel between pictures of one page.
constexpr int kTolerance = 2;

/// The same for a page that the renderer turns in one picture and the file in the other: edges may
/// fall differently between the pixels.
constexpr int kTurnedTolerance = 64;

/// The same for averages of four by four pixels.
constexpr int kCoarseTolerance = 24;

} // namespace

FidelityCase::FidelityCase(const QList<QByteArray> &prefixes)
{
    for (const QByteArray &prefix : prefixes) {
        add(prefix, FidelityFixture::everything(prefix).file());
    }
}

QString FidelityCase::add(const QByteArray &name, const QByteArray &file, const QString &password)
{
    const QString path = m_folder.add(QString::fromLatin1(name) + QStringLiteral(".pdf"), file);
    use(path, password);
    return path;
}

void FidelityCase::use(const QString &path, const QString &password)
{
    m_documents[QFileInfo(path).fileName().at(0).toLatin1()] = {path, password};
}

QList<PdfSourcePage> FidelityCase::pages(const QString &list) const
{
    static const QRegularExpression word(
        QStringLiteral("^([A-Z])(\\d+)(?:-(\\d+))?(?:\\+(\\d+))?$"));
    QList<PdfSourcePage> pages;
    for (const QString &item : list.split(u' ', Qt::SkipEmptyParts)) {
        if (item == u'_') {
            pages.append(EngineCalls::blankPage(kBlank));
            continue;
        }
        const QRegularExpressionMatch match = word.match(item);
        if (!match.hasMatch()) {
            qFatal("\"%s\" is no page", qPrintable(item));
        }
        const Document &document = m_documents.at(match.captured(1).at(0).toLatin1());
        const int first = match.captured(2).toInt();
        const int last = match.captured(3).isEmpty() ? first : match.captured(3).toInt();
        const int step = last < first ? -1 : 1;
        for (int number = first; number != last + step; number += step) {
            pages.append(EngineCalls::filePage(document.path, number - 1, match.captured(4).toInt(),
                                               document.password));
        }
    }
    return pages;
}

std::unique_ptr<FidelityComparison> FidelityCase::save(const QString &list)
{
    return save(pages(list));
}

std::unique_ptr<FidelityComparison> FidelityCase::save(const QList<PdfSourcePage> &pages)
{
    const EngineCalls::Outcome outcome = EngineCalls::save(pages, output());
    if (!outcome.ok) {
        qWarning("The save failed: %s", qPrintable(outcome.message));
    }
    return std::make_unique<FidelityComparison>(pages, output());
}

bool FidelityCase::looksLike(int index, const PdfSourcePage &page) const
{
    return likeness(index, page) == Likeness::Same;
}

FidelityCase::Likeness FidelityCase::likeness(int index, const PdfSourcePage &page) const
{
    const EngineCalls::Rendering wanted = EngineCalls::render(page, kPicture);
    if (!wanted.ok) {
        return Likeness::NoPicture;
    }
    const EngineCalls::Rendering found =
        EngineCalls::render(EngineCalls::filePage(output(), index), kPicture);
    if (!found.ok) {
        return Likeness::Different;
    }
    const int tolerance = page.rotation == 0 ? kTolerance : kTurnedTolerance;
    if (EngineCalls::distance(wanted.image, found.image) <= tolerance) {
        return Likeness::Same;
    }
    const auto coarse = [](const QImage &image) {
        return image.scaled(image.size() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const bool isSimilar =
        page.rotation != 0 &&
        EngineCalls::distance(coarse(wanted.image), coarse(found.image)) <= kCoarseTolerance;
    return isSimilar ? Likeness::Similar : Likeness::Different;
}

void FidelityCase::addLists()
{
    QTest::addColumn<QString>("list");
    QTest::newRow("unchanged") << QStringLiteral("M1-8");
    QTest::newRow("reversed") << QStringLiteral("M8-1");
    QTest::newRow("mixed") << QStringLiteral("M5 M1 M8 M3 M2 M7 M4 M6");
    QTest::newRow("first half") << QStringLiteral("M1-4");
    QTest::newRow("second half") << QStringLiteral("M5-8");
    QTest::newRow("one page") << QStringLiteral("M4");
    QTest::newRow("turned") << QStringLiteral("M1+90 M2+180 M3+270 M4 M5+90 M6 M7+90 M8+180");
    QTest::newRow("with blank pages") << QStringLiteral("_ M1-3 _ M4-8 _");
    QTest::newRow("a page twice") << QStringLiteral("M1-4 M2 M5-8");
    QTest::newRow("every page twice") << QStringLiteral("M1-8 M1-8");
    QTest::newRow("three copies together") << QStringLiteral("M3 M3+90 M3 M3+180");
    QTest::newRow("two documents") << QStringLiteral("M1-8 O1-8");
    QTest::newRow("two documents in turn") << QStringLiteral("M1 O1 M3 O3 M5 O5 M7 O7 M8 O8");
    QTest::newRow("pages put between") << QStringLiteral("M1-4 O2 O6 O7 M5-8");
    QTest::newRow("pages put before") << QStringLiteral("O3 O4 O8 M1-8");
    QTest::newRow("two documents, copies and blanks")
        << QStringLiteral("M2 O4 _ O4 M2+90 M6 O1-3 _ M1");
}
