// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/output_document.h"

#include "pdfcore/src/save/blank_page.h"
#include "pdfcore/src/save/content/catalogue.h"
#include "pdfcore/src/save/contribution.h"
#include "pdfcore/src/save/interactive/output_form.h"
#include "pdfcore/src/save/new_page_tree.h"
#include "pdfcore/src/save/page_copies.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>

#include <qpdf/Buffer.hh>

namespace pdfcore {

namespace {

/// The type of entries of a cross-reference table for objects in object streams (ISO 32000-2,
/// table 18).
constexpr int kInObjectStream = 2;

/// Pages from which packing takes so long that objects stay as their maker left them.
constexpr std::size_t kManyPages = 1000;

/// A rotation in degrees brought to the nearest quarter turn from 0 to 270.
int quarterTurn(long long degrees)
{
    const long long positive = ((degrees % 360) + 360) % 360;
    return static_cast<int>(((positive + 45) / 90) % 4) * 90;
}

/// Gives a page of the output the rotation `own` of its source page, turned clockwise by
/// `rotation`. It is a multiple of 90 degrees (ISO 32000-2, 7.7.3.3).
void turnPage(QPDFObjectHandle page, QPDFObjectHandle own, int rotation)
{
    const long long before = own.isNumber() ? std::llround(own.getNumericValue()) : 0;
    const int turned = quarterTurn(quarterTurn(before) + static_cast<long long>(rotation));
    if (turned == 0) {
        page.removeKey("/Rotate");
    } else {
        page.replaceKey("/Rotate", QPDFObjectHandle::newInteger(turned));
    }
}

/// Lets a page that has no resources say so, as it has to (ISO 32000-2, 7.7.3.3); what it inherited
/// has been made its own.
void ensureResources(QPDFObjectHandle page)
{
    if (!page.hasKey("/Resources")) {
        page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    }
}

bool hasPackedObjects(QPDF &document)
{
    const std::map<QPDFObjGen, QPDFXRefEntry> entries = document.getXRefTable();
    return std::any_of(entries.begin(), entries.end(),
                       [](const auto &entry) { return entry.second.getType() == kInObjectStream; });
}

/// Whether the document says that it is one for archives by PDF/A-1, which knows no object streams
/// (ISO 19005-1, 6.1.4 and 6.7.11).
bool forbidsPacking(QPDFObjectHandle catalogue)
{
    QPDFObjectHandle metadata = catalogue.getKey("/Metadata");
    if (!metadata.isStream()) {
        return false;
    }
    std::string text;
    try {
        const std::shared_ptr<Buffer> data = metadata.getStreamData(qpdf_dl_generalized);
        text.assign(reinterpret_cast<const char *>(data->getBuffer()), data->getSize());
    } catch (const std::exception &) {
        return false;
    }
    const std::size_t part = text.find("pdfaid:part");
    const std::size_t value = text.find_first_of("0123456789", std::min(part, text.size()));
    return value != std::string::npos && text[value] == '1' &&
           (value + 1 == text.size() || text[value + 1] < '0' || text[value + 1] > '9');
}

} // namespace

OutputDocument::OutputDocument(const std::shared_ptr<QPDF> &only)
    : m_sources(only)
{}

OutputDocument::~OutputDocument() = default;

EngineError OutputDocument::assemble(const QList<PdfSourcePage> &pages, Unlabelled unlabelled,
                                     const std::vector<Heading> &headings)
{
    if (EngineError error = findPlaces(pages); error.isError()) {
        return error;
    }
    chooseMain(pages);
    const bool sequenceChanged = !isMainInOrder();
    for (const auto &contribution : m_contributions) {
        contribution->prune(roleOf(*contribution, sequenceChanged));
    }
    if (m_main != nullptr) {
        m_output = m_main->source().handle();
    } else {
        m_output = std::make_shared<QPDF>();
        m_output->setSuppressWarnings(true);
        m_output->emptyPDF();
    }
    const bool pagesChanged =
        sequenceChanged || std::any_of(pages.begin(), pages.end(), [](const PdfSourcePage &page) {
            return page.rotation != 0;
        });
    if (sequenceChanged && m_main != nullptr) {
        dropSequenceEntries(m_main->source());
    }
    for (const auto &contribution : m_contributions) {
        contribution->bringPages(*m_output, contribution.get() == m_main);
    }

    OutputForm form(*m_output, m_main != nullptr ? m_main->fields() : FormFields());
    for (const auto &contribution : m_contributions) {
        form.reserveNames(contribution->fields());
    }
    for (const auto &contribution : m_contributions) {
        if (contribution.get() == m_main) {
            continue;
        }
        const auto fields = form.add(contribution->fields(), *contribution->copier());
        const auto attachments =
            addAttachments(*m_output, contribution->source(), *contribution->copier());
        contribution->renameTargets(fields, attachments);
    }
    const std::vector<QPDFObjectHandle> placed = newPages(pages, form);
    installPageTree(*m_output, placed);
    form.install(pagesChanged);
    joinOutlines(placed, headings);
    if (pagesChanged) {
        joinLabels(unlabelled);
    }
    for (const auto &contribution : m_contributions) {
        if (contribution.get() != m_main) {
            addToCatalogue(*m_output, contribution->source(), *contribution->copier(),
                           m_main->brokenNames());
        }
    }
    return {};
}

QPDF *OutputDocument::protection() const
{
    const auto encryptionOf = [](QPDF &document) {
        return document.getTrailer().getKey("/Encrypt").unparseResolved();
    };
    QPDF *own = m_main != nullptr ? m_main->source().protection() : nullptr;
    const bool isKept =
        own != nullptr &&
        std::all_of(m_contributions.begin(), m_contributions.end(), [&](const auto &other) {
            // The same file may have been opened with its other password.
            QPDF *others = other->source().protection();
            return others == nullptr || encryptionOf(*others) == encryptionOf(*own);
        });
    return isKept ? own : nullptr;
}

bool OutputDocument::packsObjects(bool manyPages) const
{
    if (m_main == nullptr || hasPackedObjects(m_main->source().document())) {
        return true;
    }
    return (manyPages || m_places.size() < kManyPages) && !forbidsPacking(m_main->source().root());
}

EngineError OutputDocument::findPlaces(const QList<PdfSourcePage> &pages)
{
    const PdfSourcePage *before = nullptr;
    SourceDocument *source = nullptr;
    for (const PdfSourcePage &page : pages) {
        Place place;
        if (!isBlankPage(page)) {
            // Finding out where a file is takes a look at the disk.
            const bool isOfSameSource = before != nullptr && before->filePath == page.filePath &&
                                        before->password == page.password &&
                                        before->revision == page.revision;
            if (!isOfSameSource || !source->hasPage(page.pageIndex)) {
                EngineError outcome;
                source = m_sources.get(page, &outcome);
                if (source == nullptr) {
                    return outcome;
                }
            }
            before = &page;
            auto found =
                std::find_if(m_contributions.begin(), m_contributions.end(),
                             [source](const auto &known) { return &known->source() == source; });
            if (found == m_contributions.end()) {
                m_contributions.push_back(std::make_unique<Contribution>(*source));
                found = std::prev(m_contributions.end());
            }
            source->keep(page.pageIndex);
            place = {found->get(), page.pageIndex};
        }
        m_places.push_back(place);
    }
    return {};
}

void OutputDocument::chooseMain(const QList<PdfSourcePage> &pages)
{
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        if (m_places[i].contribution == nullptr) {
            continue;
        }
        const PdfSourcePage &page = pages.at(static_cast<qsizetype>(i));
        if (m_main == nullptr || page.isOfMainDocument) {
            m_main = m_places[i].contribution;
            m_password = page.password;
        }
        if (page.isOfMainDocument) {
            return;
        }
    }
}

/// Whether the pages are those of the main document, all of them, in their order.
bool OutputDocument::isMainInOrder() const
{
    if (m_main == nullptr ||
        m_places.size() != static_cast<std::size_t>(m_main->source().pageCount())) {
        return false;
    }
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        if (m_places[i].contribution != m_main || m_places[i].index != static_cast<int>(i)) {
            return false;
        }
    }
    return true;
}

LinkPruner::Role OutputDocument::roleOf(const Contribution &contribution,
                                        bool sequenceChanged) const
{
    if (&contribution != m_main) {
        return LinkPruner::Role::Further;
    }
    return sequenceChanged ? LinkPruner::Role::Main : LinkPruner::Role::UnchangedMain;
}

std::vector<QPDFObjectHandle> OutputDocument::newPages(const QList<PdfSourcePage> &pages,
                                                       OutputForm &form)
{
    std::vector<QPDFObjectHandle> placed;
    std::set<QPDFObjGen> used;
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        const PdfSourcePage &wanted = pages.at(static_cast<qsizetype>(i));
        const Place &place = m_places[i];
        if (place.contribution == nullptr) {
            placed.push_back(newBlankPage(*m_output, wanted.pageSize));
            turnPage(placed.back(), QPDFObjectHandle::newNull(), wanted.rotation);
            continue;
        }
        QPDFObjectHandle page = place.contribution->pageInOutput(place.index);
        if (!used.insert(page.getObjGen()).second) {
            AnnotationCopies copies;
            page = newPageCopy(*m_output, page, &copies);
            form.addCopies(page, copies);
        }
        turnPage(page, place.contribution->ownRotation(place.index), wanted.rotation);
        ensureResources(page);
        placed.push_back(page);
    }
    return placed;
}

void OutputDocument::joinOutlines(const std::vector<QPDFObjectHandle> &pages,
                                  const std::vector<Heading> &headings)
{
    Outline joined;
    bool isPruned = false;
    const Contribution *before = nullptr;
    std::set<const Contribution *> appended;
    auto heading = headings.begin();
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        while (heading != headings.end() && heading->firstPage == i) {
            joined.appendHeading(heading->title, pages[i], *m_output);
            ++heading;
        }
        const Contribution *contribution = m_places[i].contribution;
        if (contribution == before || contribution == nullptr ||
            !appended.insert(contribution).second) {
            continue;
        }
        before = contribution;
        isPruned = isPruned || contribution->outline().isPruned();
        joined.append(contribution->outline(), contribution->copier(), *m_output);
    }
    if (isPruned || !joined.entries().empty()) {
        joined.install(*m_output);
    }
}

void OutputDocument::joinLabels(Unlabelled unlabelled)
{
    const bool haveNone =
        std::all_of(m_contributions.begin(), m_contributions.end(),
                    [](const auto &contribution) { return contribution->labels().areEmpty(); });
    if (haveNone) {
        return;
    }
    std::vector<std::optional<PageLabel>> labels;
    for (const Place &place : m_places) {
        labels.push_back(place.contribution != nullptr
                             ? place.contribution->labels().at(place.index)
                             : std::nullopt);
    }
    installLabels(*m_output, labels, unlabelled);
}

} // namespace pdfcore
