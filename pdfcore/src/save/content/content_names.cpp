// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/content/content_names.h"

#include <qpdf/Pl_Function.hh>
#include <qpdf/Pl_QPDFTokenizer.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <exception>
#include <stdexcept>

namespace pdfcore {

namespace {

/// Bytes of content that are read for one document. A few kilobytes of a file can stand for any
/// amount of it.
constexpr std::size_t kMaxBytes = std::size_t{64} * 1024 * 1024;

class NameFilter final : public QPDFObjectHandle::TokenFilter
{
public:
    explicit NameFilter(std::set<std::string> &names)
        : m_names(names)
    {}

    void handleToken(const QPDFTokenizer::Token &token) override
    {
        if (token.getType() == QPDFTokenizer::tt_name) {
            m_names.insert(token.getValue());
        }
        m_isDamaged = m_isDamaged || token.getType() == QPDFTokenizer::tt_bad;
    }

    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }

private:
    std::set<std::string> &m_names;
    bool m_isDamaged = false;
};

} // namespace

ContentNames::Names ContentNames::readNames(QPDFObjectHandle stream)
{
    if (m_bytesRead > kMaxBytes) {
        return std::nullopt;
    }
    std::set<std::string> names;
    NameFilter filter(names);
    try {
        Pl_QPDFTokenizer tokenizer("content", &filter);
        Pl_Function limited("content", &tokenizer, [this](const unsigned char *, size_t length) {
            m_bytesRead += length;
            if (m_bytesRead > kMaxBytes) {
                throw std::length_error("more content than is read");
            }
        });
        bool isDecoded = false;
        if (!stream.pipeStreamData(&limited, &isDecoded, 0, qpdf_dl_specialized, true) ||
            !isDecoded) {
            return std::nullopt;
        }
    } catch (const std::exception &) {
        return std::nullopt;
    }
    // Who reads damaged content may read something else in it.
    if (filter.isDamaged()) {
        return std::nullopt;
    }
    return names;
}

const std::set<std::string> *ContentNames::namesIn(QPDFObjectHandle stream)
{
    auto known = m_known.find(stream.getObjGen());
    if (known == m_known.end()) {
        known = m_known.emplace(stream.getObjGen(), readNames(stream)).first;
    }
    return known->second ? &*known->second : nullptr;
}

} // namespace pdfcore
