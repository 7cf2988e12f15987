// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/default_appearance.h"

#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <memory>

namespace pdfcore {

std::string renamedAppearance(const std::string &appearance,
                              const std::map<std::string, std::string> &names)
{
    QPDFTokenizer tokenizer;
    tokenizer.allowEOF();
    tokenizer.includeIgnorable();
    const auto input = std::make_shared<BufferInputSource>("default appearance", appearance);
    std::string renamed;
    for (;;) {
        const QPDFTokenizer::Token token = tokenizer.readToken(input, "default appearance", true);
        if (token.getType() == QPDFTokenizer::tt_eof) {
            return renamed;
        }
        const auto other =
            token.getType() == QPDFTokenizer::tt_name ? names.find(token.getValue()) : names.end();
        renamed += other == names.end() ? token.getRawValue()
                                        : QPDFObjectHandle::newName(other->second).unparse();
    }
}

} // namespace pdfcore
