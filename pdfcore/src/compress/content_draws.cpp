// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/content_draws.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Pl_Function.hh>
#include <qpdf/Pl_QPDFTokenizer.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <cstdlib>
#include <exception>
#include <stdexcept>

namespace pdfcore {

namespace {

/// Bytes of content that are read for one document. A few kilobytes of a file can stand for any
/// amount of it.
constexpr std::size_t kMaxBytes = std::size_t{2} * 1024 * 1024 * 1024;
/// Bytes of one content stream.
constexpr std::size_t kMaxStreamBytes = std::size_t{256} * 1024 * 1024;
/// Graphics states that are kept for Q; readers end much earlier.
constexpr std::size_t kMaxStates = 10'000;
constexpr std::size_t kMaxDraws = 1'000'000;

/// Follows the current transformation matrix through a content stream (ISO 32000-2, 8.4.4).
class DrawFilter final : public QPDFObjectHandle::TokenFilter
{
public:
    DrawFilter(std::vector<Draw> &draws, const PdfCancelFlag &cancel)
        : m_draws(draws)
        , m_cancel(cancel)
    {}

    void handleToken(const QPDFTokenizer::Token &token) override
    {
        switch (token.getType()) {
        case QPDFTokenizer::tt_integer:
        case QPDFTokenizer::tt_real:
            m_numbers[m_numberCount % m_numbers.size()] =
                std::strtod(token.getValue().c_str(), nullptr);
            ++m_numberCount;
            break;
        case QPDFTokenizer::tt_name:
            m_name = token.getValue();
            break;
        case QPDFTokenizer::tt_word:
            run(token.getValue());
            m_numberCount = 0;
            m_name.clear();
            break;
        case QPDFTokenizer::tt_bad:
            m_isDamaged = true;
            break;
        default:
            break;
        }
    }

    /// Who reads damaged content may read something else in it.
    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }

private:
    void run(const std::string &word)
    {
        if (m_cancel.isSet()) {
            throw std::runtime_error("cancelled");
        }
        if (word == "q") {
            if (m_states.size() == kMaxStates) {
                throw std::length_error("too many states");
            }
            m_states.push_back(m_now);
        } else if (word == "Q") {
            if (!m_states.empty()) {
                m_now = m_states.back();
                m_states.pop_back();
            }
        } else if (word == "cm" && m_numberCount >= 6) {
            m_now = lastSix().then(m_now);
        } else if (word == "Do") {
            add(Draw::Kind::XObject);
        } else if (word == "gs") {
            add(Draw::Kind::GraphicsState);
        }
    }

    [[nodiscard]] Transform lastSix() const
    {
        const auto number = [this](std::size_t place) {
            return m_numbers[(m_numberCount + place) % m_numbers.size()];
        };
        return {number(0), number(1), number(2), number(3), number(4), number(5)};
    }

    void add(Draw::Kind kind)
    {
        if (m_draws.size() == kMaxDraws) {
            throw std::length_error("too much is drawn");
        }
        if (!m_name.empty()) {
            m_draws.push_back({kind, m_name, m_now});
        }
    }

    std::vector<Draw> &m_draws;
    const PdfCancelFlag &m_cancel;
    std::vector<Transform> m_states;
    Transform m_now;
    std::array<double, 6> m_numbers{}; ///< The last ones, in a ring.
    std::size_t m_numberCount = 0;
    std::string m_name;
    bool m_isDamaged = false;
};

} // namespace

Transform Transform::then(const Transform &next) const
{
    return {a * next.a + b * next.c,          a * next.b + b * next.d,
            c * next.a + d * next.c,          c * next.b + d * next.d,
            e * next.a + f * next.c + next.e, e * next.b + f * next.d + next.f};
}

Transform transformOf(QPDFObjectHandle array)
{
    const std::vector<QPDFObjectHandle> items = itemsOf(array);
    if (items.size() != 6) {
        return {};
    }
    std::array<double, 6> numbers{};
    for (std::size_t i = 0; i < items.size(); ++i) {
        QPDFObjectHandle item = items[i];
        if (!item.isNumber()) {
            return {};
        }
        numbers[i] = item.getNumericValue();
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
}

bool ContentDraws::append(QPDFObjectHandle stream, Pipeline &to)
{
    std::size_t length = 0;
    Pl_Function limited("content", &to, [&](const unsigned char *, size_t bytes) {
        length += bytes;
        m_bytesRead += bytes;
        if (length > kMaxStreamBytes || m_bytesRead > kMaxBytes || m_cancel.isSet()) {
            throw std::length_error("more content than is read");
        }
    });
    bool isDecoded = false;
    return stream.pipeStreamData(&limited, &isDecoded, 0, qpdf_dl_specialized, true) && isDecoded;
}

std::optional<std::vector<Draw>> ContentDraws::ofPage(QPDFObjectHandle page)
{
    QPDFObjectHandle contents = page.getKey("/Contents");
    if (contents.isStream()) {
        return ofStream(contents);
    }
    std::vector<QPDFObjectHandle> parts;
    for (const QPDFObjectHandle &item : itemsOf(contents)) {
        QPDFObjectHandle part = item;
        if (part.isStream()) {
            parts.push_back(part);
        }
    }
    std::vector<Draw> draws;
    DrawFilter filter(draws, m_cancel);
    try {
        Pl_QPDFTokenizer tokenizer("content", &filter);
        // Only the last one may end what is read; a token ends with the part that it is in.
        class Unfinished final : public Pipeline
        {
        public:
            explicit Unfinished(Pipeline *to)
                : Pipeline("part", to)
            {}
            void write(const unsigned char *data, size_t length) override
            {
                getNext()->write(data, length);
            }
            void finish() override {}
        } unfinished(&tokenizer);
        for (const QPDFObjectHandle &part : parts) {
            if (!append(part, unfinished)) {
                return std::nullopt;
            }
            const unsigned char space = '\n';
            tokenizer.write(&space, 1);
        }
        tokenizer.finish();
    } catch (const std::exception &) {
        return std::nullopt;
    }
    return filter.isDamaged() ? std::nullopt : std::optional(std::move(draws));
}

std::optional<std::vector<Draw>> ContentDraws::ofStream(QPDFObjectHandle stream)
{
    std::vector<Draw> draws;
    DrawFilter filter(draws, m_cancel);
    try {
        Pl_QPDFTokenizer tokenizer("content", &filter);
        if (!append(stream, tokenizer)) {
            return std::nullopt;
        }
    } catch (const std::exception &) {
        return std::nullopt;
    }
    return filter.isDamaged() ? std::nullopt : std::optional(std::move(draws));
}

} // namespace pdfcore
