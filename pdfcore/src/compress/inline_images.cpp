// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/inline_images.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <array>
#include <exception>
#include <set>
#include <stdexcept>

namespace pdfcore {

namespace {

/// Bytes of an inline image that are worth an object.
constexpr std::size_t kLeastBytes = 4096;
/// Bytes of the contents of a page that are held in memory, and read without a look at a cancel.
constexpr std::size_t kMaxContent = std::size_t{16} * 1024 * 1024;
/// Forms within forms.
constexpr int kMaxDepth = 40;

/// Finds out whether there may be a large inline image in what goes through it: something long
/// after the operator that data of such an image follow.
class InlineSearch final : public Pipeline
{
public:
    explicit InlineSearch(const PdfCancelFlag &cancel)
        : Pipeline("inline", nullptr)
        , m_cancel(cancel)
    {}

    void write(const unsigned char *data, size_t length) override
    {
        if (m_cancel.isSet() || length > kMaxContent - m_length) {
            throw std::length_error("more content than is read");
        }
        for (std::size_t i = 0; i < length; ++i) {
            m_last = {m_last[1], m_last[2], m_last[3], data[i]};
            const bool isData =
                isSpace(m_last[0]) && m_last[1] == 'I' && m_last[2] == 'D' && isSpace(m_last[3]);
            const bool isEnd =
                isSpace(m_last[0]) && m_last[1] == 'E' && m_last[2] == 'I' && isSpace(m_last[3]);
            const std::size_t place = m_length + i;
            if (isData && m_begin == 0) {
                m_begin = place;
            } else if (isEnd && m_begin != 0) {
                m_isFound = m_isFound || place - m_begin >= kLeastBytes;
                m_begin = 0;
            }
        }
        m_length += length;
    }

    void finish() override
    {
        // Another part of the contents follows, or nothing.
        const unsigned char space = '\n';
        write(&space, 1);
    }

    [[nodiscard]] bool isFound() const { return m_isFound; }

private:
    static bool isSpace(unsigned char byte)
    {
        return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t' || byte == '\f' ||
               byte == '\0';
    }

    const PdfCancelFlag &m_cancel;
    std::array<unsigned char, 4> m_last{};
    std::size_t m_length = 0;
    std::size_t m_begin = 0; ///< Where the data of an image begin, or 0.
    bool m_isFound = false;
};

bool mayHaveInlineImage(const std::vector<QPDFObjectHandle> &parts, const PdfCancelFlag &cancel)
{
    InlineSearch search(cancel);
    for (QPDFObjectHandle part : parts) {
        bool isDecoded = false;
        if (!part.isStream() ||
            !part.pipeStreamData(&search, &isDecoded, 0, qpdf_dl_specialized, true) || !isDecoded) {
            return false;
        }
    }
    return search.isFound();
}

std::vector<QPDFObjectHandle> formsIn(QPDFObjectHandle resources)
{
    std::vector<QPDFObjectHandle> forms;
    QPDFObjectHandle objects = entryOf(resources, "/XObject");
    if (objects.isDictionary()) {
        for (const auto &[name, object] : objects.getDictAsMap()) {
            QPDFObjectHandle form = object;
            if (form.isStream() && hasName(form.getDict(), "/Subtype", "/Form")) {
                forms.push_back(form);
            }
        }
    }
    return forms;
}

/// Goes through pages and forms, each of them once.
class InlineImages
{
public:
    explicit InlineImages(const PdfCancelFlag &cancel)
        : m_cancel(cancel)
    {}

    void takeOut(QPDFObjectHandle holder, const std::vector<QPDFObjectHandle> &parts)
    {
        try {
            if (mayHaveInlineImage(parts, m_cancel)) {
                QPDFPageObjectHelper(holder).externalizeInlineImages(kLeastBytes, true);
            }
        } catch (const std::exception &) {
            // What cannot be read stays as it is.
            return;
        }
    }

    void takeOutOfForms(QPDFObjectHandle resources, int depth)
    {
        for (QPDFObjectHandle form : formsIn(resources)) {
            if (m_cancel.isSet() || depth == kMaxDepth || !m_seen.insert(form.getObjGen()).second) {
                continue;
            }
            // The names in a form without resources are those of what draws it.
            QPDFObjectHandle own = form.getDict().getKey("/Resources");
            if (own.isDictionary()) {
                takeOut(form, {form});
                takeOutOfForms(own, depth + 1);
            }
        }
    }

private:
    PdfCancelFlag m_cancel;
    std::set<QPDFObjGen> m_seen;
};

} // namespace

void takeOutInlineImages(const std::vector<QPDFObjectHandle> &pages, const PdfCancelFlag &cancel)
{
    InlineImages images(cancel);
    for (QPDFObjectHandle page : pages) {
        if (cancel.isSet()) {
            return;
        }
        QPDFObjectHandle contents = page.getKey("/Contents");
        images.takeOut(page, contents.isArray() ? itemsOf(contents)
                                                : std::vector<QPDFObjectHandle>{contents});
        images.takeOutOfForms(page.getKey("/Resources"), 0);
    }
}

} // namespace pdfcore
