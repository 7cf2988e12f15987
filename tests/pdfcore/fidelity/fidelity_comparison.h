// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "tests/pdfcore/fidelity/fidelity_document.h"

#include <map>
#include <memory>

struct FidelityWidget;

/// Holds a written file against the pages that it was made from.
///
/// The main document is the source of the first page that comes from a file. What a page shows as
/// its mark must be unique among the sources.
class FidelityComparison
{
public:
    FidelityComparison(const QList<PdfSourcePage> &pages, const QString &output);

    /// Everything that is missing or different, and all that is wrong with the file by itself.
    [[nodiscard]] QStringList problems();

    /// What is missing or different alone.
    [[nodiscard]] QStringList differences();

    // What each of these finds is a part of differences().
    [[nodiscard]] QStringList pageProblems();
    [[nodiscard]] QStringList outlineProblems();
    [[nodiscard]] QStringList annotationProblems();
    [[nodiscard]] QStringList fieldProblems();
    [[nodiscard]] QStringList hybridFormProblems();
    [[nodiscard]] QStringList signatureProblems();
    [[nodiscard]] QStringList labelProblems();
    [[nodiscard]] QStringList attachmentProblems();
    [[nodiscard]] QStringList catalogueProblems();
    [[nodiscard]] QStringList contentGroupProblems();
    [[nodiscard]] QStringList structureProblems();

    [[nodiscard]] FidelityDocument &output() { return m_output; }

    /// The source of a page of the list; null for a blank one.
    [[nodiscard]] FidelityDocument *source(qsizetype position) const
    {
        return m_uses.at(position).source;
    }

private:
    /// One page of the list.
    struct Use
    {
        FidelityDocument *source = nullptr; ///< Null for a blank page.
        qsizetype index = -1;               ///< In the source.
        int rotation = 0;
        QSizeF size;
        int copy = 0; ///< How often the page came before.
    };

    [[nodiscard]] QString mark(const Use &use) const;
    [[nodiscard]] bool isKept(const QString &mark) const { return m_kept.contains(mark); }
    [[nodiscard]] bool isUnchanged() const;

    /// Whether the file opens and has as many pages as the list; otherwise that is a problem.
    [[nodiscard]] bool isComparable();
    void compare(const QString &what, const QByteArray &found, const QByteArray &wanted);
    void compareLists(const QString &what, const QStringList &found, const QStringList &wanted);
    void comparePage(qsizetype position);
    [[nodiscard]] std::set<QString> deadTitles();
    [[nodiscard]] QStringList annotationLines(FidelityDocument &document, qsizetype index);
    void compareFieldNames(const std::vector<QList<FidelityWidget>> &found);
    void compareCalculationOrder();
    [[nodiscard]] std::set<QString> keptRootNames(FidelityDocument &document);
    [[nodiscard]] QStringList taken();

    QList<Use> m_uses;
    std::map<QString, std::unique_ptr<FidelityDocument>> m_sources;
    QList<FidelityDocument *> m_order; ///< The sources as they first appear; the main one first.
    QStringList m_kept;
    FidelityDocument m_output;
    QString m_path;
    QStringList m_problems;
};
