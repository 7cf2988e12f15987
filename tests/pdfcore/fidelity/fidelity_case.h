// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/fidelity/fidelity_comparison.h"
#include "tests/pdfcore/fidelity/fidelity_fixture.h"

#include <map>
#include <memory>

/// Documents in a folder, and saves of their pages.
///
/// Page lists are written in words: "M3" is page 3 of the document whose name begins with M,
/// "M3+90" the same turned clockwise, "M1-4" stands for pages 1 to 4, "M4-1" for the same
/// backwards, and "_" for a blank page.
class FidelityCase
{
public:
    /// Adds FidelityFixture::everything() under each name.
    explicit FidelityCase(const QList<QByteArray> &prefixes = {});

    /// Adds a document; its pages get the first letter of `name`. Returns its path.
    QString add(const QByteArray &name, const QByteArray &file, const QString &password = {});

    /// Takes a document from where it is; its pages get the first letter of its name.
    void use(const QString &path, const QString &password = {});

    [[nodiscard]] QString path(char letter) const { return m_documents.at(letter).path; }
    [[nodiscard]] QString output() const { return m_folder.path(QStringLiteral("output.pdf")); }
    [[nodiscard]] const EngineCalls::Folder &folder() const { return m_folder; }

    [[nodiscard]] QList<PdfSourcePage> pages(const QString &list) const;

    /// Saves the pages to output(), for a comparison with their sources.
    std::unique_ptr<FidelityComparison> save(const QString &list);
    std::unique_ptr<FidelityComparison> save(const QList<PdfSourcePage> &pages);

    /// Whether page `index` of the saved file looks as `page` does.
    ///
    /// Fields that are no longer signed look different; take them from a document without
    /// signatures.
    [[nodiscard]] bool looksLike(int index, const PdfSourcePage &page) const;

    /// How the pictures of two pages compare.
    enum class Likeness { NoPicture, Same, Similar, Different };

    /// The same with more to say: Similar are pictures of a turned page that are the same where
    /// they are four times as coarse, as small letters may fall anywhere between the pixels;
    /// NoPicture means that there is none of `page` itself.
    [[nodiscard]] Likeness likeness(int index, const PdfSourcePage &page) const;

    /// Adds the column "list" with lists of every kind over the documents M and O, of kPages pages.
    static void addLists();

private:
    struct Document
    {
        QString path;
        QString password;
    };

    EngineCalls::Folder m_folder;
    std::map<char, Document> m_documents;
};

/// Fails with the problems when there are any.
#define NO_PROBLEMS(list)                                                                          \
    do {                                                                                           \
        const QStringList foundProblems = (list);                                                  \
        QVERIFY2(foundProblems.isEmpty(), qPrintable(foundProblems.join(u'\n')));                  \
    } while (false)
