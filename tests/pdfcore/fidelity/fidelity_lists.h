// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>
#include <QRandomGenerator>
#include <QStringList>

#include <functional>

/// Page lists for tests of what a save keeps, in the page words of FidelityCase.
namespace FidelityLists {

/// A number from the environment; `usual` without one.
int setting(const char *name, int usual);

/// Takes pages away from a list for as long as it fails.
QStringList smallestFailure(QStringList list,
                            const std::function<bool(const QStringList &list)> &fails);

/// A document whose pages are in lists.
struct Document
{
    char letter = 'M';
    int pages = 0;

    /// The word of a page, from number 1 on.
    [[nodiscard]] QString word(int number) const;

    /// The words of all pages.
    [[nodiscard]] QStringList words() const;
};

/// Page lists as they come out of editing: a document from which pages were taken, moved, turned
/// and repeated, with blank pages and pages of other documents put in.
class Maker
{
public:
    Maker(int seed, const QList<Document> &documents);

    /// A list that begins as one of the documents.
    QStringList make();

    /// A list that begins as the first document.
    QStringList makeOfFirst();

    /// Some pages of the first document, one of them twice and one of them turned, and a blank
    /// page, in any order.
    QStringList makeSubset();

    /// Some pages of all documents in any order; the first document comes first.
    QStringList makeMixture();

private:
    QStringList changed(QStringList list);
    void change(QStringList &list);
    QString anyPage();
    /// Up to `most` of the words in any order, at least one.
    QStringList some(QStringList words, qsizetype most);
    int below(qsizetype size) { return m_random.bounded(static_cast<int>(size)); }

    QRandomGenerator m_random;
    QList<Document> m_documents;
};

} // namespace FidelityLists
