// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/action_pruner.h"
#include "pdfcore/src/save/source/source_document.h"

#include <map>
#include <set>
#include <string>

namespace pdfcore {

/// Brings links (ISO 32000-2, 12.5.6.5), actions (12.6) and destinations (12.3.2) of a source
/// document in line with the pages that the output has.
///
/// What leads to a page of the output goes on doing so; what leads to a page that is gone goes too.
/// In the main document of the output names stay names, and what led nowhere stays as it was, but
/// for numbers of pages that were not there: they could lead to other pages then. In any other one
/// names become the addresses they stand for, because the names of the output are those of the main
/// document.
class LinkPruner
{
public:
    /// How the source document stands to its output.
    enum class Role {
        UnchangedMain, ///< The main one; the output has exactly its pages, in their order.
        Main,          ///< The main one otherwise.
        Further,       ///< Any other one.
    };

    LinkPruner(SourceDocument &source, Role role);
    // What prunes the actions refers back to this object.
    LinkPruner(const LinkPruner &) = delete;
    LinkPruner &operator=(const LinkPruner &) = delete;

    /// Looks through the annotations and actions of a kept page. Every annotation is an object of
    /// its own afterwards, and names the page as its own if it names one.
    void prunePage(int index);

    /// Changes the action under a key and those that follow it, in place. What follows an action
    /// that has to go takes its place. False when it led to a page that is gone and nothing is
    /// left.
    bool pruneAction(QPDFObjectHandle object, const std::string &key);

    /// Changes the actions that events set off (ISO 32000-2, 12.6.3).
    void pruneTriggers(QPDFObjectHandle object);

    /// Changes an outline entry or an annotation in place, as far as it leads somewhere; false when
    /// the place that it leads to is gone.
    bool pruneEntry(QPDFObjectHandle entry);

    /// Empties the annotations that had to go, so that nothing brings them along.
    void dropGoneAnnotations();

    /// The destination to use instead.
    PrunedDestination prunedDestination(QPDFObjectHandle destination);

    /// What an action names as an article thread, in the same way.
    PrunedDestination prunedThread(QPDFObjectHandle thread);

    /// Names in use in the main document that stand for nothing. If another document gave them a
    /// meaning, links that led nowhere would lead somewhere.
    [[nodiscard]] const std::set<std::string> &brokenNames() const { return m_brokenNames; }

    /// Annotations that had to go.
    [[nodiscard]] const std::set<QPDFObjGen> &goneAnnotations() const { return m_goneAnnotations; }

private:
    bool pruneAnnotation(QPDFObjectHandle annotation, QPDFObjectHandle page);

    SourceDocument &m_source;
    Role m_role;
    ActionPruner m_actions;
    std::set<QPDFObjGen> m_goneAnnotations;
    std::set<QPDFObjGen> m_keptAnnotations;
    std::set<std::string> m_brokenNames;
    std::map<QPDFObjGen, bool> m_goneThreads;
    int m_sharedCopies = 0;
};

} // namespace pdfcore
