// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/action_pruner.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <algorithm>
#include <set>

namespace pdfcore {

namespace {

/// Actions that go that are passed to find what moves up, all chains together: chains may share
/// their ends.
constexpr std::size_t kMaxPassed = 1'000'000;

/// Actions that are written behind stand-ins, of which a hostile file could need very many.
constexpr std::size_t kMaxStandInItems = 100'000;

} // namespace

std::size_t ActionPruner::addNode(QPDFObjectHandle action)
{
    const std::size_t index = m_nodes.size();
    if (action.isIndirect()) {
        const auto [known, isNew] = m_indexes.emplace(action.getObjGen(), index);
        if (!isNew) {
            return known->second;
        }
    }
    m_nodes.push_back({action, 0, PrunedDestination::Kind::Leads, {}});
    return index;
}

/// Adds the actions of a list, or the single one that stands in its place.
std::size_t ActionPruner::addList(QPDFObjectHandle next)
{
    const bool isShared = next.isArray() && next.isIndirect();
    if (isShared) {
        const auto known = m_listIndexes.find(next.getObjGen());
        if (known != m_listIndexes.end()) {
            return known->second;
        }
        m_listIndexes.emplace(next.getObjGen(), m_lists.size());
    }
    List list{next, {}, {}};
    if (next.isDictionary()) {
        list.items.push_back(addNode(next));
    }
    for (const QPDFObjectHandle &item : itemsOf(next)) {
        if (QPDFObjectHandle(item).isDictionary()) {
            list.items.push_back(addNode(item));
        }
    }
    m_lists.push_back(std::move(list));
    return m_lists.size() - 1;
}

/// Changes the destination or thread under /D.
PrunedDestination::Kind ActionPruner::pruneKey(QPDFObjectHandle action, const Prune &prune) const
{
    QPDFObjectHandle named = action.getKey("/D");
    if (named.isNull()) {
        return PrunedDestination::Kind::Leads;
    }
    const PrunedDestination pruned = prune(named);
    if (QPDFObjectHandle use = pruned.use; !use.isNull()) {
        action.replaceKey("/D", use);
        return PrunedDestination::Kind::Leads;
    }
    return pruned.kind;
}

PrunedDestination::Kind ActionPruner::pruneOne(QPDFObjectHandle action) const
{
    if (hasName(action, "/S", "/Thread") && !action.hasKey("/F")) {
        return pruneKey(action, m_pruneThread);
    }
    // Some files leave out what kind of action it is.
    if (!hasName(action, "/S", "/GoTo") && action.hasKey("/S")) {
        return PrunedDestination::Kind::Leads;
    }
    // A place in the structure tree (ISO 32000-2, 12.3.2.3), which only the main document brings
    // along.
    if (!m_isMain) {
        action.removeKey("/SD");
    }
    return pruneKey(action, m_pruneDestination);
}

bool ActionPruner::hasToGo(std::size_t index) const
{
    return m_nodes[index].kind != PrunedDestination::Kind::Leads;
}

/// The list with what moves up in the places of those that go.
const std::vector<std::size_t> &ActionPruner::stayingOf(std::size_t list)
{
    if (m_lists[list].staying) {
        return *m_lists[list].staying;
    }
    std::vector<std::size_t> staying;
    std::set<std::size_t> passed;
    const std::vector<std::size_t> &items = m_lists[list].items;
    std::vector<std::size_t> waiting(items.rbegin(), items.rend());
    while (!waiting.empty()) {
        const std::size_t index = waiting.back();
        waiting.pop_back();
        if (!hasToGo(index)) {
            staying.push_back(index);
            continue;
        }
        if (!passed.insert(index).second) {
            continue;
        }
        const std::vector<std::size_t> &behind = m_lists[m_nodes[index].next].items;
        m_passed += behind.size() + 1;
        if (m_passed <= kMaxPassed) {
            waiting.insert(waiting.end(), behind.rbegin(), behind.rend());
        }
    }
    m_lists[list].staying = std::move(staying);
    return *m_lists[list].staying;
}

/// Takes out of a list that is an object what has to go, for all that have the list in common.
void ActionPruner::pruneList(std::size_t list)
{
    const List &changed = m_lists[list];
    const bool isChanged = std::any_of(changed.items.begin(), changed.items.end(),
                                       [this](std::size_t index) { return hasToGo(index); });
    QPDFObjectHandle value = changed.value;
    if (!isChanged || !value.isArray() || !value.isIndirect()) {
        return;
    }
    std::vector<QPDFObjectHandle> following;
    for (const std::size_t index : stayingOf(list)) {
        following.push_back(m_nodes[index].action);
    }
    value.setArrayFromVector(following);
}

void ActionPruner::setFollowing(std::size_t index)
{
    QPDFObjectHandle action = m_nodes[index].action;
    const std::size_t next = m_nodes[index].next;
    const List &list = m_lists[next];
    const bool isShared = QPDFObjectHandle(list.value).isArray() && list.value.isIndirect();
    const bool isChanged =
        !isShared && std::any_of(list.items.begin(), list.items.end(),
                                 [this](std::size_t item) { return hasToGo(item); });
    if (!isChanged) {
        return;
    }
    std::vector<QPDFObjectHandle> following;
    for (const std::size_t item : stayingOf(next)) {
        following.push_back(m_nodes[item].action);
    }
    if (following.empty()) {
        action.removeKey("/Next");
    } else if (following.size() == 1) {
        action.replaceKey("/Next", following.front());
    } else {
        action.replaceKey("/Next", QPDFObjectHandle::newArray(following));
    }
}

/// What is used in the place of an action that goes: the first of those that move up, followed by
/// the others. Null when there is none.
QPDFObjectHandle ActionPruner::standInFor(const Node &node)
{
    const std::vector<std::size_t> &staying = stayingOf(node.next);
    if (staying.empty()) {
        return QPDFObjectHandle::newNull();
    }
    QPDFObjectHandle first = m_nodes[staying.front()].action;
    m_standInItems += staying.size() - 1;
    if (staying.size() == 1 || m_standInItems > kMaxStandInItems) {
        return first;
    }
    QPDFObjectHandle standIn = first.shallowCopy();
    QPDFObjectHandle own = first.getKey("/Next");
    std::vector<QPDFObjectHandle> following = itemsOf(own);
    if (own.isDictionary()) {
        following.push_back(own);
    }
    for (std::size_t i = 1; i < staying.size(); ++i) {
        following.push_back(m_nodes[staying[i]].action);
    }
    standIn.replaceKey("/Next", QPDFObjectHandle::newArray(following));
    return standIn;
}

ActionPruner::Result ActionPruner::pruned(QPDFObjectHandle action)
{
    if (!action.isDictionary()) {
        return {action, false};
    }
    const std::size_t first = m_nodes.size();
    const std::size_t firstList = m_lists.size();
    const std::size_t index = addNode(action);
    for (std::size_t i = first; i < m_nodes.size(); ++i) {
        // The list of nodes grows while what follows is added.
        const std::size_t next = addList(m_nodes[i].action.getKey("/Next"));
        m_nodes[i].next = next;
    }
    for (std::size_t i = first; i < m_nodes.size(); ++i) {
        m_nodes[i].kind = pruneOne(m_nodes[i].action);
    }
    for (std::size_t list = firstList; list < m_lists.size(); ++list) {
        pruneList(list);
    }
    for (std::size_t i = first; i < m_nodes.size(); ++i) {
        if (!hasToGo(i)) {
            setFollowing(i);
        }
    }
    Node &node = m_nodes[index];
    if (!hasToGo(index)) {
        return {action, false};
    }
    if (!node.standIn.isInitialized()) {
        node.standIn = standInFor(node);
    }
    return {node.standIn, node.kind == PrunedDestination::Kind::Gone};
}

} // namespace pdfcore
