// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/names.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_QPDFTokenizer.hh>
#include <qpdf/QPDFExc.hh>

namespace pdfcore {

namespace {

/// What QPDF keeps in the place of a "#" that is no escape.
constexpr char kStray = '\0';

bool isHex(char ch)
{
    return std::isxdigit(static_cast<unsigned char>(ch)) != 0;
}

/// A name as it stands in a file, with each stray "#" escaped.
std::string escaped(const std::string &raw)
{
    std::string name;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const bool isEscape = i + 2 < raw.size() && isHex(raw[i + 1]) && isHex(raw[i + 2]);
        name += raw[i];
        if (raw[i] == '#' && !isEscape) {
            name += "23";
        }
    }
    return name;
}

/// Puts `after` in the place of each `before` in the names of a document.
class NameReplacer
{
public:
    NameReplacer(char before, std::string after)
        : m_before(before)
        , m_after(std::move(after))
    {}

    /// It is entered as far as it is direct, and QPDF reads no file whose direct objects are nested
    /// too deep.
    void replaceWithin(QPDFObjectHandle object) const
    {
        if (object.isArray()) {
            for (int i = 0; i < object.getArrayNItems(); ++i) {
                QPDFObjectHandle item = object.getArrayItem(i);
                if (settle(item)) {
                    object.setArrayItem(i, replaced(item));
                }
            }
        } else if (object.isDictionary()) {
            for (auto &[key, value] : object.getDictAsMap()) {
                const bool isOdd = key.find(m_before) != std::string::npos;
                if (isOdd) {
                    object.removeKey(key);
                }
                if (settle(value) || isOdd) {
                    object.replaceKey(replaced(key), replaced(value));
                }
            }
        }
    }

private:
    /// Replaces what is within the value, and tells whether the value itself is to be replaced.
    bool settle(QPDFObjectHandle value) const
    {
        if (value.isIndirect()) {
            return false;
        }
        replaceWithin(value);
        return value.isName() && value.getName().find(m_before) != std::string::npos;
    }

    [[nodiscard]] QPDFObjectHandle replaced(QPDFObjectHandle value) const
    {
        const bool isName = !value.isIndirect() && value.isName();
        return isName ? QPDFObjectHandle::newName(replaced(value.getName())) : value;
    }

    [[nodiscard]] std::string replaced(std::string name) const
    {
        for (std::size_t at = name.find(m_before); at != std::string::npos;
             at = name.find(m_before, at + m_after.size())) {
            name.replace(at, 1, m_after);
        }
        return name;
    }

    char m_before;
    std::string m_after;
};

/// Escapes the stray "#" of the names in a content stream, and leaves all else.
class NameFilter final : public QPDFObjectHandle::TokenFilter
{
public:
    void handleToken(const QPDFTokenizer::Token &token) override
    {
        if (token.getType() == QPDFTokenizer::tt_name) {
            const std::string raw = escaped(token.getRawValue());
            m_hasChanged = m_hasChanged || raw != token.getRawValue();
            write(raw);
        } else {
            writeToken(token);
        }
    }

    [[nodiscard]] bool hasChanged() const { return m_hasChanged; }

private:
    bool m_hasChanged = false;
};

void settleContent(QPDFObjectHandle stream)
{
    NameFilter filter;
    Pl_Buffer content("content");
    Pl_QPDFTokenizer tokenizer("names", &filter, &content);
    if (stream.pipeStreamData(&tokenizer, 0, qpdf_dl_generalized, true) && filter.hasChanged()) {
        stream.replaceStreamData(content.getBufferSharedPointer(), QPDFObjectHandle::newNull(),
                                 QPDFObjectHandle::newNull());
    }
}

/// The streams among what shows something by operators: `object` is a page, a form, a pattern or a
/// font whose glyphs are drawn.
std::vector<QPDFObjectHandle> contentsOf(QPDFObjectHandle object)
{
    if (object.isStream()) {
        QPDFObjectHandle entries = object.getDict();
        const bool isDrawn = entries.getKey("/Subtype").isNameAndEquals("/Form") ||
                             entries.getKey("/PatternType").isInteger();
        return isDrawn ? std::vector<QPDFObjectHandle>{object} : std::vector<QPDFObjectHandle>{};
    }
    std::vector<QPDFObjectHandle> streams;
    if (object.isDictionaryOfType("/Page")) {
        QPDFObjectHandle contents = object.getKey("/Contents");
        streams = contents.isArray() ? contents.getArrayAsVector()
                                     : std::vector<QPDFObjectHandle>{contents};
    } else if (object.isDictionary() && object.getKey("/CharProcs").isDictionary()) {
        for (auto &[name, glyph] : object.getKey("/CharProcs").getDictAsMap()) {
            streams.push_back(glyph);
        }
    }
    streams.erase(std::remove_if(streams.begin(), streams.end(),
                                 [](QPDFObjectHandle stream) { return !stream.isStream(); }),
                  streams.end());
    return streams;
}

} // namespace

bool lacksNames(QPDF &document)
{
    const std::vector<QPDFExc> warnings = document.getWarnings();
    return std::any_of(warnings.begin(), warnings.end(), [](const QPDFExc &warning) {
        return warning.getMessageDetail().find("null character not allowed in name token") !=
               std::string::npos;
    });
}

void settleStrayNames(QPDF &document)
{
    const PDFVersion version = document.getVersionAsPDFVersion();
    if (version.getMajor() != 1 || version.getMinor() > 1) {
        return;
    }
    const NameReplacer replacer(kStray, "#");
    for (QPDFObjectHandle &object : document.getAllObjects()) {
        replacer.replaceWithin(object.isStream() ? object.getDict() : object);
        for (const QPDFObjectHandle &stream : contentsOf(object)) {
            settleContent(stream);
        }
    }
}

void escapeNames(QPDF &document)
{
    static const bool areWrittenAsTheyAre = QPDFObjectHandle::newName("/#").unparse() == "/#";
    if (!areWrittenAsTheyAre) {
        return;
    }
    const NameReplacer replacer('#', "#23");
    for (QPDFObjectHandle &object : document.getAllObjects()) {
        replacer.replaceWithin(object.isStream() ? object.getDict() : object);
    }
}

} // namespace pdfcore
