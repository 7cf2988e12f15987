// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

/// Where a link or an outline entry leads.
struct FidelityTarget
{
    bool isPage = false; ///< It leads to a page of the document, or was meant to.
    QString mark;        ///< Of the page; "gone" when there is none in the page tree.
    qsizetype index = -1;
    QByteArray view; ///< What comes after the page: "/XYZ 10 200 1.5".
    QString other;   ///< A web link, another file and the like.

    bool operator==(const FidelityTarget &target) const
    {
        return isPage == target.isPage && mark == target.mark && view == target.view &&
               other == target.other;
    }
};

/// A PDF file read for a look at what it carries. Pages are known by their marks.
class FidelityDocument
{
public:
    explicit FidelityDocument(const QString &path, const QByteArray &password = {});

    /// Why the file could not be opened; empty when it could.
    [[nodiscard]] QString problem() const { return m_problem; }

    [[nodiscard]] QPDF &pdf() { return *m_pdf; }
    [[nodiscard]] QPDFObjectHandle catalogue() { return m_pdf->getRoot(); }

    [[nodiscard]] const std::vector<QPDFObjectHandle> &pages() const { return m_pages; }
    [[nodiscard]] QPDFObjectHandle page(qsizetype index) const;

    /// The marks of all pages; empty texts for pages without one.
    [[nodiscard]] const QStringList &marks() const { return m_marks; }

    /// Index of a page of the page tree; -1 for anything else.
    [[nodiscard]] qsizetype indexOf(const QPDFObjectHandle &page) const;

    /// An attribute of a page, inherited ones included.
    [[nodiscard]] QPDFObjectHandle attribute(qsizetype index, const std::string &key) const;

    [[nodiscard]] std::vector<QPDFObjectHandle> annotations(qsizetype index) const;

    /// What the /Dest or /A of an annotation or an outline entry leads to.
    [[nodiscard]] FidelityTarget targetOf(QPDFObjectHandle item);

    /// What a destination of any kind leads to.
    [[nodiscard]] FidelityTarget targetOfDestination(QPDFObjectHandle destination);

    /// The entries of the name tree `key` of /Names.
    [[nodiscard]] std::vector<std::pair<std::string, QPDFObjectHandle>> names(const char *key);

    /// The entries of a number tree, by number.
    [[nodiscard]] static std::map<long long, QPDFObjectHandle> numbers(QPDFObjectHandle tree);

    /// What stands for the labels of pages before the first one that has a label.
    static constexpr QStringView kNoLabel = u"none";

    /// The labels of all pages as a reader shows them; empty when the document has none.
    [[nodiscard]] QStringList labels();

    /// An object with all that it refers to as text. Pages stand as their marks, streams as their
    /// decoded data; /Parent, /P and /StructParent are left out.
    [[nodiscard]] QByteArray describe(QPDFObjectHandle object);

private:
    QByteArray describe(QPDFObjectHandle object, std::set<QPDFObjGen> &path, int depth);

    std::shared_ptr<QPDF> m_pdf;
    QString m_problem;
    std::vector<QPDFObjectHandle> m_pages;
    std::map<QPDFObjGen, qsizetype> m_indexes;
    QStringList m_marks;
};

/// A text string as Unicode.
QString fidelityText(QPDFObjectHandle string);

/// The data of a stream, decoded; empty for anything else.
QByteArray fidelityData(QPDFObjectHandle stream);
