// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// A document that pages are taken from, open for the one output only, so that it may be changed:
/// before its pages move into the output, everything that leads to pages that stay behind is taken
/// out of it.
///
/// Pages are counted from 0. A page object that the page tree (ISO 32000-2, 7.7.3) names twice is
/// one page, that of the first index.
class SourceDocument
{
public:
    /// Where a destination leads.
    struct Target
    {
        enum class Kind {
            Nowhere,     ///< It cannot be followed; it was like that in the document already.
            Page,        ///< To `page`.
            OutsidePage, ///< To a page object that is none of the document's pages.
        };
        Kind kind = Kind::Nowhere;
        int page = -1;
        bool isExplicit = false;  ///< It names the page object itself.
        QPDFObjectHandle address; ///< The array that names the page.
    };

    /// Takes over an open document and finds its pages.
    explicit SourceDocument(std::shared_ptr<QPDF> document);

    /// Settles for as many pages as another reader of the file found, which are the objects of
    /// these numbers: readers differ in what they make of damaged pages. False when that cannot be
    /// done.
    bool agreeOn(const std::vector<int> &pageNumbers);

    /// What the document is encrypted by: itself or, for a decrypted copy, what it was given; null
    /// for one that is not protected.
    [[nodiscard]] QPDF *protection() const;
    /// Gives a decrypted copy the protection of what it was copied from.
    void setProtection(std::shared_ptr<QPDF> protection) { m_protection = std::move(protection); }
    [[nodiscard]] QPDF &document() const { return *m_document; }
    [[nodiscard]] const std::shared_ptr<QPDF> &handle() const { return m_document; }
    [[nodiscard]] QPDFObjectHandle root() const { return m_document->getRoot(); }
    [[nodiscard]] int pageCount() const { return static_cast<int>(m_pages.size()); }
    [[nodiscard]] bool hasPage(int index) const { return index >= 0 && index < pageCount(); }
    [[nodiscard]] QPDFObjectHandle page(int index) const;
    /// The first index of the same page object.
    [[nodiscard]] int firstIndexOf(int index) const;

    /// Notes that the output has page `index`.
    void keep(int index);
    [[nodiscard]] bool isKept(int index) const;
    /// Indexes of the pages that the output has, in the order in which keep() was called first.
    [[nodiscard]] const std::vector<int> &keptPages() const { return m_keptPages; }
    /// Indexes of the page objects that the output does not have.
    [[nodiscard]] std::vector<int> gonePages() const;
    [[nodiscard]] bool losesPages() const { return m_keptPages.size() < m_indexes.size(); }

    /// The index of a page object, or nothing.
    [[nodiscard]] std::optional<int> indexOf(QPDFObjectHandle page) const;
    /// Whether the object is a page that the output does not have.
    [[nodiscard]] bool isGone(QPDFObjectHandle page) const;

    /// Whether the object is an annotation (ISO 32000-2, 12.5.2), and nothing else that a damaged
    /// file lists as one.
    [[nodiscard]] bool isAnnotation(QPDFObjectHandle object) const;

    /// Follows a destination: an array, a dictionary with one, or a name (ISO 32000-2, 12.3.2).
    [[nodiscard]] Target resolve(QPDFObjectHandle destination);
    /// The destination of `target` as an array that names the page object itself.
    [[nodiscard]] QPDFObjectHandle explicitAddress(const Target &target) const;
    /// The named destinations, as found in both places where a document may have them (ISO 32000-2,
    /// 12.3.2.4).
    [[nodiscard]] const std::map<std::string, QPDFObjectHandle> &namedDestinations();

private:
    QPDFObjectHandle namedDestination(QPDFObjectHandle name);
    void setPages(std::vector<QPDFObjectHandle> pages);

    std::shared_ptr<QPDF> m_document;
    std::shared_ptr<QPDF> m_protection;
    std::vector<QPDFObjectHandle> m_pages;
    std::map<QPDFObjGen, int> m_indexes;
    std::vector<bool> m_isKept;
    std::vector<int> m_keptPages;
    std::optional<std::map<std::string, QPDFObjectHandle>> m_names;
    std::map<std::string, QPDFObjectHandle> m_dictionaryNames; ///< Filled together with `m_names`.
};

} // namespace pdfcore
