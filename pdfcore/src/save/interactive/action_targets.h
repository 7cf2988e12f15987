// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Makes the actions (ISO 32000-2, 12.6) of annotations, fields and pages act on the copies of what
/// they acted on: buttons that reset or send fields, play a screen, hide an annotation, open an
/// attachment.
class ActionTargets
{
public:
    using Objects = std::map<QPDFObjGen, QPDFObjectHandle>;
    using Names = std::map<std::string, std::string>;

    /// @param objects      Annotations and fields with their copies.
    /// @param fields       New names of fields without a parent, in UTF-8.
    /// @param attachments  New names of attachments, as they stand in the file.
    ActionTargets(const Objects &objects, const Names &fields, const Names &attachments = {})
        : m_objects(objects)
        , m_fields(fields)
        , m_attachments(attachments)
    {}

    /// Gives the object actions of its own, as far as they act on something that was copied.
    void apply(QPDFObjectHandle object);

private:
    QPDFObjectHandle translated(QPDFObjectHandle action, int depth);
    QPDFObjectHandle translatedOne(QPDFObjectHandle action, int depth);
    QPDFObjectHandle translatedList(QPDFObjectHandle actions, int depth);
    QPDFObjectHandle targetList(QPDFObjectHandle targets);
    [[nodiscard]] QPDFObjectHandle target(QPDFObjectHandle named) const;
    [[nodiscard]] QPDFObjectHandle attachmentTarget(QPDFObjectHandle target) const;

    const Objects &m_objects;
    const Names &m_fields;
    Names m_attachments;
    Objects m_translated; ///< Actions and lists that were looked at, and what they are now.
    std::size_t m_steps = 0;
};

} // namespace pdfcore
