#pragma once

#include "pdfcore/src/source_document.h"

#include <map>
#include <set>

namespace pdfcore {

/// Brings links, actions and destinations of a source in line with the pages that the output has.
///
/// What leads to a page of the output goes on doing so; what leads to a page that is gone goes too.
/// In the main document of the output names stay names, and what led nowhere stays as it was. In
/// any other one names become the addresses they stand for, because the names of the output are
/// those of the main document.
class LinkReducer
{
public:
    LinkReducer(SourceDocument &source, bool isMain);

    /// Looks through the annotations and actions of a kept page. Every annotation is an object of
    /// its own afterwards, and names the page as its own if it names one.
    void reducePage(int index);

    /// Changes an action and those that follow it in place; false when it has to go.
    bool reduceAction(QPDFObjectHandle action);

    /// Changes an outline entry or an annotation in place, as far as it leads somewhere; false when
    /// the place that it leads to is gone.
    bool reduceEntry(QPDFObjectHandle entry);

    /// Empties the annotations that had to go, so that nothing brings them along.
    void dropGoneAnnotations();

    /// The destination to use instead; null when it has to go.
    QPDFObjectHandle reducedDestination(QPDFObjectHandle destination);

private:
    void reduceFollowing(QPDFObjectHandle action);
    void reduceTriggers(QPDFObjectHandle object);
    bool reduceAnnotation(QPDFObjectHandle annotation, QPDFObjectHandle page);

    SourceDocument &m_source;
    bool m_isMain;
    std::map<QPDFObjGen, bool> m_actions; ///< Whether those that were looked at may stay.
    std::set<QPDFObjGen> m_goneAnnotations;
    std::set<QPDFObjGen> m_keptAnnotations;
    int m_depth = 0;
};

} // namespace pdfcore
