// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// A destination as it is to be used in an output.
struct PrunedDestination
{
    enum class Kind {
        Leads,  ///< To where it led before.
        Broken, ///< It led nowhere in the source document already.
        Gone,   ///< It led to a page that the output does not have.
    };
    Kind kind = Kind::Broken;
    QPDFObjectHandle use = QPDFObjectHandle::newNull(); ///< Null when nothing is to be used.
};

/// Takes the actions that lead to pages that are gone out of chains of actions.
///
/// What followed such an action (ISO 32000-2, 12.6.2) moves up into its place. Chains may be of any
/// length and run in circles, and actions may follow several others.
class ActionPruner
{
public:
    using Prune = std::function<PrunedDestination(QPDFObjectHandle)>;

    struct Result
    {
        QPDFObjectHandle action;    ///< What to use in its place; null when nothing is left.
        bool ledToGonePage = false; ///< Of the action itself, not of those that follow it.
    };

    /// @param pruneDestination  Prunes destinations.
    /// @param pruneThread       Prunes what is named as an article thread.
    /// @param isMain            Whether the document is the main one of its output.
    ActionPruner(Prune pruneDestination, Prune pruneThread, bool isMain)
        : m_pruneDestination(std::move(pruneDestination))
        , m_pruneThread(std::move(pruneThread))
        , m_isMain(isMain)
    {}
    ActionPruner(const ActionPruner &) = delete;
    ActionPruner &operator=(const ActionPruner &) = delete;

    /// Changes an action and those that follow it in place.
    Result pruned(QPDFObjectHandle action);

private:
    /// What follows an action: a list, or a single action in the place of one.
    struct List
    {
        QPDFObjectHandle value;
        std::vector<std::size_t> items;
        std::optional<std::vector<std::size_t>> staying; ///< See stayingOf().
    };

    struct Node
    {
        QPDFObjectHandle action;
        std::size_t next = 0; ///< Index of a list.
        PrunedDestination::Kind kind = PrunedDestination::Kind::Leads;
        QPDFObjectHandle standIn; ///< Made when it is asked for first.
    };

    std::size_t addNode(QPDFObjectHandle action);
    std::size_t addList(QPDFObjectHandle next);
    PrunedDestination::Kind pruneOne(QPDFObjectHandle action) const;
    PrunedDestination::Kind pruneKey(QPDFObjectHandle action, const Prune &prune) const;
    const std::vector<std::size_t> &stayingOf(std::size_t list);
    [[nodiscard]] bool hasToGo(std::size_t index) const;
    void pruneList(std::size_t list);
    void setFollowing(std::size_t index);
    QPDFObjectHandle standInFor(const Node &node);

    Prune m_pruneDestination;
    Prune m_pruneThread;
    bool m_isMain;
    std::vector<Node> m_nodes;
    std::vector<List> m_lists;
    std::map<QPDFObjGen, std::size_t> m_indexes;     ///< Of actions that are objects.
    std::map<QPDFObjGen, std::size_t> m_listIndexes; ///< Of lists that are objects.
    std::size_t m_standInItems = 0;
    std::size_t m_passed = 0;
};

} // namespace pdfcore
