#pragma once

#include <map>
#include <string>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Makes the actions of annotations act on the copies of what they acted on: buttons that reset or
/// send fields, play a screen, hide an annotation.
class ActionTargets
{
public:
    using Objects = std::map<QPDFObjGen, QPDFObjectHandle>;
    using Names = std::map<std::string, std::string>;

    /// @param objects  Annotations and fields with their copies.
    /// @param names    New names of fields without a parent, in UTF-8.
    ActionTargets(const Objects &objects, const Names &names)
        : m_objects(objects)
        , m_names(names)
    {}

    /// Gives the annotation actions of its own, as far as they act on something that was copied.
    void apply(QPDFObjectHandle annotation);

private:
    QPDFObjectHandle translated(QPDFObjectHandle action, int depth);
    QPDFObjectHandle translatedList(QPDFObjectHandle actions, int depth);
    QPDFObjectHandle target(QPDFObjectHandle named) const;

    const Objects &m_objects;
    const Names &m_names;
    Objects m_translated; ///< Actions that were looked at, and what they are now.
};

} // namespace pdfcore
