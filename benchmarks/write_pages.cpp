// SPDX-License-Identifier: AGPL-3.0-or-later
// Writes page lists with the engine, and holds files that any program wrote against their sources.
// scripts/fidelity.py runs it.
//
//     write_pages --samples FOLDER               writes the sample documents MAIN.pdf and OTHER.pdf
//     write_pages --save FOLDER LIST OUT         writes the list of pages of the samples
//     write_pages --compare FOLDER LIST OUT      says what OUT has lost: one line for each feature,
//                                                with the number of problems and the first one
//
// LIST is as in FidelityCase: "M1-8 _ O3+90" for pages 1 to 8 of MAIN.pdf, a blank page, and page 3
// of OTHER.pdf turned by 90 degrees.

#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"
#include "tests/support/pdf_fixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <array>
#include <functional>

namespace {

constexpr std::array kSamples{"MAIN", "OTHER"};

int writeSamples(const QDir &folder)
{
    for (const char *name : kSamples) {
        if (!PdfFixture::write(folder.filePath(QLatin1String(name) + QStringLiteral(".pdf")),
                               FidelityFixture::everything(name).file())) {
            return 1;
        }
    }
    return 0;
}

QList<PdfSourcePage> pagesOf(const QDir &folder, const QString &list)
{
    FidelityCase samples;
    for (const char *name : kSamples) {
        samples.use(folder.filePath(QLatin1String(name) + QStringLiteral(".pdf")));
    }
    return samples.pages(list);
}

int save(const QList<PdfSourcePage> &pages, const QString &output)
{
    const EngineCalls::Outcome outcome = EngineCalls::save(pages, output);
    if (!outcome.ok) {
        QTextStream(stderr) << outcome.message << Qt::endl;
    }
    return outcome.ok ? 0 : 1;
}

struct Feature
{
    const char *name;
    std::function<QStringList()> problems;
};

int compare(const QList<PdfSourcePage> &pages, const QString &output)
{
    FidelityComparison comparison(pages, output);
    FidelityDocument &file = comparison.output();
    const std::array features{
        Feature{"Pages, boxes, rotations", [&] { return comparison.pageProblems(); }},
        Feature{"Outline", [&] { return comparison.outlineProblems(); }},
        Feature{"Links, notes, replies", [&] { return comparison.annotationProblems(); }},
        Feature{"Destinations lead somewhere",
                [&] { return FidelitySoundness::destinationProblems(file); }},
        Feature{"Form fields", [&] { return comparison.fieldProblems(); }},
        Feature{"No outdated hybrid form", [&] { return comparison.hybridFormProblems(); }},
        Feature{"No broken signatures", [&] { return comparison.signatureProblems(); }},
        Feature{"Page labels", [&] { return comparison.labelProblems(); }},
        Feature{"Attachments", [&] { return comparison.attachmentProblems(); }},
        Feature{"Information, metadata, settings", [&] { return comparison.catalogueProblems(); }},
        Feature{"Optional content", [&] { return comparison.contentGroupProblems(); }},
        Feature{"Tags", [&] { return comparison.structureProblems(); }},
        Feature{"Tags without dead ends",
                [&] { return FidelitySoundness::structureProblems(file); }},
        Feature{"No hidden pages, no shared annotations",
                [&] { return FidelitySoundness::pageProblems(file); }},
        Feature{"Sound by qpdf --check", [&] { return FidelitySoundness::syntaxProblems(output); }},
    };
    QTextStream lines(stdout);
    for (const Feature &feature : features) {
        const QStringList problems = feature.problems();
        lines << feature.name << '\t' << problems.size() << '\t'
              << problems.value(0).section(u'\n', 0, 0) << '\n';
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString mode = arguments.value(1);
    const QDir folder(arguments.value(2));
    if (mode == QLatin1String("--samples") && arguments.size() == 3) {
        return writeSamples(folder);
    }
    if (arguments.size() == 5 && mode == QLatin1String("--save")) {
        return save(pagesOf(folder, arguments.at(3)), arguments.at(4));
    }
    if (arguments.size() == 5 && mode == QLatin1String("--compare")) {
        return compare(pagesOf(folder, arguments.at(3)), arguments.at(4));
    }
    QTextStream(stderr) << "The first lines of benchmarks/write_pages.cpp say how to use it."
                        << Qt::endl;
    return 2;
}
