// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/page_tokens.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"

#include <algorithm>
#include <cstring>

namespace pdfcore {

namespace {

/// The tokens of one object, with one to look ahead.
class TokenReader
{
public:
    TokenReader(fz_context *ctx, pdf_document *document)
        : m_ctx(ctx)
        , m_stream(streamOf(document))
        , m_buffer(tokenBufferOf(document))
    {}

    pdf_token next() { return pdf_lex(m_ctx, m_stream, m_buffer); }
    bool hasName(const char *name) const { return std::strcmp(m_buffer->scratch, name) == 0; }
    int64_t integer() const { return m_buffer->i; }

    /// The number that `token` is, or nothing.
    std::optional<double> number(pdf_token token) const
    {
        if (token == PDF_TOK_INT) {
            return static_cast<double>(m_buffer->i);
        }
        if (token == PDF_TOK_REAL) {
            return m_buffer->f;
        }
        return std::nullopt;
    }

    /// Reads to the end of the array or dictionary that has been opened.
    bool skipOpened()
    {
        for (int depth = 1; depth > 0;) {
            switch (next()) {
            case PDF_TOK_OPEN_ARRAY:
            case PDF_TOK_OPEN_DICT:
                ++depth;
                break;
            case PDF_TOK_CLOSE_ARRAY:
            case PDF_TOK_CLOSE_DICT:
                --depth;
                break;
            case PDF_TOK_EOF:
            case PDF_TOK_ERROR:
            case PDF_TOK_ENDOBJ:
            case PDF_TOK_STREAM:
                return false;
            default:
                break;
            }
        }
        return true;
    }

private:
    fz_context *m_ctx;
    fz_stream *m_stream;
    pdf_lexbuf *m_buffer;
};

enum class Key { Type, Kids, Parent, MediaBox, CropBox, Rotate, UserUnit, Other };

Key keyOf(const TokenReader &tokens)
{
    struct NamedKey
    {
        const char *name;
        Key key;
    };
    static constexpr NamedKey kKeys[] = {{"Type", Key::Type},        {"Kids", Key::Kids},
                                         {"Parent", Key::Parent},    {"MediaBox", Key::MediaBox},
                                         {"CropBox", Key::CropBox},  {"Rotate", Key::Rotate},
                                         {"UserUnit", Key::UserUnit}};
    for (const NamedKey &named : kKeys) {
        if (tokens.hasName(named.name)) {
            return named.key;
        }
    }
    return Key::Other;
}

/// Reads the value of one key after the other into `entries`. Each step returns false where the
/// dictionary is not written as usual.
class PageReader
{
public:
    PageReader(fz_context *ctx, pdf_document *document)
        : m_tokens(ctx, document)
    {}

    std::optional<PageBoxEntries> read(int number)
    {
        if (!readHeader(number)) {
            return std::nullopt;
        }
        m_token = m_tokens.next();
        while (m_token == PDF_TOK_NAME) {
            if (!readEntry(keyOf(m_tokens))) {
                return std::nullopt;
            }
        }
        const bool isWhole = m_token == PDF_TOK_CLOSE_DICT && m_tokens.next() == PDF_TOK_ENDOBJ;
        if (!isWhole || !m_isPage || m_entries.parentNumber == 0) {
            return std::nullopt;
        }
        return m_entries;
    }

private:
    bool readHeader(int number)
    {
        return m_tokens.next() == PDF_TOK_INT && m_tokens.integer() == number &&
               m_tokens.next() == PDF_TOK_INT && m_tokens.next() == PDF_TOK_OBJ &&
               m_tokens.next() == PDF_TOK_OPEN_DICT;
    }

    /// Leaves the token after the entry in m_token.
    bool readEntry(Key key)
    {
        m_token = m_tokens.next();
        switch (key) {
        case Key::Type:
            m_isPage = m_token == PDF_TOK_NAME && m_tokens.hasName("Page");
            return m_isPage && step();
        case Key::Kids:
            return false;
        case Key::Parent:
            return readReference(&m_entries.parentNumber) && step();
        case Key::MediaBox:
            return readBox(m_entries.mediaBox) && step();
        case Key::CropBox:
            return readBox(m_entries.cropBox) && step();
        case Key::Rotate:
            return readNumber(m_entries.rotate);
        case Key::UserUnit:
            return readNumber(m_entries.userUnit);
        case Key::Other:
            break;
        }
        return skipValue();
    }

    bool step()
    {
        m_token = m_tokens.next();
        return true;
    }

    bool readReference(int *number)
    {
        const int64_t found = m_tokens.integer();
        if (m_token != PDF_TOK_INT || found <= 0 || found > PDF_MAX_OBJECT_NUMBER) {
            return false;
        }
        *number = static_cast<int>(found);
        return m_tokens.next() == PDF_TOK_INT && m_tokens.next() == PDF_TOK_R;
    }

    bool readBox(PageBoxEntries::Box &box)
    {
        if (m_token != PDF_TOK_OPEN_ARRAY) {
            return false;
        }
        box.emplace();
        for (double &edge : *box) {
            const std::optional<double> number = m_tokens.number(m_tokens.next());
            if (!number) {
                return false;
            }
            edge = *number;
        }
        return m_tokens.next() == PDF_TOK_CLOSE_ARRAY;
    }

    bool readNumber(std::optional<double> &value)
    {
        value = m_tokens.number(m_token);
        step();
        // Another number would make it a reference.
        return value && m_token != PDF_TOK_INT;
    }

    bool skipValue()
    {
        switch (m_token) {
        case PDF_TOK_OPEN_ARRAY:
        case PDF_TOK_OPEN_DICT:
            return m_tokens.skipOpened() && step();
        case PDF_TOK_INT:
            step();
            return m_token != PDF_TOK_INT || (m_tokens.next() == PDF_TOK_R && step());
        case PDF_TOK_NAME:
        case PDF_TOK_REAL:
        case PDF_TOK_STRING:
        case PDF_TOK_TRUE:
        case PDF_TOK_FALSE:
        case PDF_TOK_NULL:
            return step();
        default:
            return false;
        }
    }

    TokenReader m_tokens;
    pdf_token m_token = PDF_TOK_EOF;
    PageBoxEntries m_entries;
    bool m_isPage = false;
};

} // namespace

std::optional<PageBoxEntries> readPageTokens(fz_context *ctx, pdf_document *document, int number)
{
    const ObjectPlace place = placeOf(ctx, document, number);
    if (place.kind != ObjectPlace::Kind::InFile) {
        return std::nullopt;
    }
    fz_seek(ctx, streamOf(document), place.offset, SEEK_SET);
    return PageReader(ctx, document).read(number);
}

std::optional<QSizeF> KnownPageSizes::find(const PageBoxEntries &entries) const
{
    for (std::size_t i = 0; i < m_count; ++i) {
        if (m_known[i].entries == entries) {
            return m_known[i].size;
        }
    }
    return std::nullopt;
}

void KnownPageSizes::remember(const PageBoxEntries &entries, QSizeF size)
{
    m_known[m_next] = {entries, size};
    m_next = (m_next + 1) % m_known.size();
    m_count = std::min(m_count + 1, m_known.size());
}

} // namespace pdfcore
