#include "pdfcore/src/action_reducer.h"

#include "pdfcore/src/qpdf_objects.h"

#include <set>

namespace pdfcore {

namespace {

/// Actions that go that are passed to find what moves up, all chains together: chains may share
/// their ends.
constexpr std::size_t kMaxPassed = 1'000'000;

/// Actions that are written behind stand-ins, of which a hostile file could need very many.
constexpr std::size_t kMaxStandInItems = 100'000;

} // namespace

std::size_t ActionReducer::addNode(QPDFObjectHandle action)
{
    const std::size_t index = m_nodes.size();
    if (action.isIndirect()) {
        const auto [known, isNew] = m_indexes.emplace(action.getObjGen(), index);
        if (!isNew)
            return known->second;
    }
    m_nodes.push_back({action, {}, ReducedDestination::Kind::Leads, {}});
    return index;
}

/// Adds the actions of a list, or the single one that stands in its place.
std::vector<std::size_t> ActionReducer::addFollowing(QPDFObjectHandle next)
{
    if (next.isDictionary())
        return {addNode(next)};
    if (next.isArray() && next.isIndirect()) {
        if (const auto known = m_arrays.find(next.getObjGen()); known != m_arrays.end())
            return known->second;
    }
    std::vector<std::size_t> added;
    for (const QPDFObjectHandle &item : itemsOf(next)) {
        if (QPDFObjectHandle(item).isDictionary())
            added.push_back(addNode(item));
    }
    if (next.isIndirect())
        m_arrays[next.getObjGen()] = added;
    return added;
}

ReducedDestination::Kind ActionReducer::reduceOne(QPDFObjectHandle action) const
{
    // Some files leave out what kind of action it is.
    if (!hasName(action, "/S", "/GoTo") && action.hasKey("/S"))
        return ReducedDestination::Kind::Leads;
    // A place in the structure tree, which only the main document brings along.
    if (!m_isMain)
        action.removeKey("/SD");
    QPDFObjectHandle destination = action.getKey("/D");
    if (destination.isNull())
        return ReducedDestination::Kind::Leads;
    const ReducedDestination reduced = m_reduce(destination);
    if (QPDFObjectHandle use = reduced.use; !use.isNull()) {
        action.replaceKey("/D", use);
        return ReducedDestination::Kind::Leads;
    }
    return reduced.kind;
}

bool ActionReducer::hasToGo(std::size_t index) const
{
    return m_nodes[index].kind != ReducedDestination::Kind::Leads;
}

/// The list with what moves up in the places of those that go.
std::vector<std::size_t> ActionReducer::stayingAmong(const std::vector<std::size_t> &next)
{
    std::vector<std::size_t> staying;
    std::set<std::size_t> passed;
    std::vector<std::size_t> waiting(next.rbegin(), next.rend());
    while (!waiting.empty()) {
        const std::size_t index = waiting.back();
        waiting.pop_back();
        if (!hasToGo(index)) {
            staying.push_back(index);
            continue;
        }
        if (!passed.insert(index).second)
            continue;
        const std::vector<std::size_t> &behind = m_nodes[index].next;
        m_passed += behind.size();
        if (m_passed <= kMaxPassed)
            waiting.insert(waiting.end(), behind.rbegin(), behind.rend());
    }
    return staying;
}

void ActionReducer::setFollowing(const Node &node)
{
    QPDFObjectHandle action = node.action;
    bool isChanged = false;
    for (const std::size_t index : node.next)
        isChanged = isChanged || hasToGo(index);
    if (!isChanged)
        return;
    std::vector<QPDFObjectHandle> following;
    for (const std::size_t index : stayingAmong(node.next))
        following.push_back(m_nodes[index].action);
    if (following.empty())
        action.removeKey("/Next");
    else if (following.size() == 1)
        action.replaceKey("/Next", following.front());
    else
        action.replaceKey("/Next", QPDFObjectHandle::newArray(following));
}

/// What is used in the place of an action that goes: the first of those that move up, followed by
/// the others. Null when there is none.
QPDFObjectHandle ActionReducer::standInFor(const Node &node)
{
    const std::vector<std::size_t> staying = stayingAmong(node.next);
    if (staying.empty())
        return QPDFObjectHandle::newNull();
    QPDFObjectHandle first = m_nodes[staying.front()].action;
    m_standInItems += staying.size() - 1;
    if (staying.size() == 1 || m_standInItems > kMaxStandInItems)
        return first;
    QPDFObjectHandle standIn = first.shallowCopy();
    QPDFObjectHandle own = first.getKey("/Next");
    std::vector<QPDFObjectHandle> following = itemsOf(own);
    if (own.isDictionary())
        following.push_back(own);
    for (std::size_t i = 1; i < staying.size(); ++i)
        following.push_back(m_nodes[staying[i]].action);
    standIn.replaceKey("/Next", QPDFObjectHandle::newArray(following));
    return standIn;
}

ActionReducer::Result ActionReducer::reduced(QPDFObjectHandle action)
{
    if (!action.isDictionary())
        return {action, false};
    const std::size_t first = m_nodes.size();
    const std::size_t index = addNode(action);
    for (std::size_t i = first; i < m_nodes.size(); ++i) {
        // The list of nodes grows while what follows is added.
        std::vector<std::size_t> next = addFollowing(m_nodes[i].action.getKey("/Next"));
        m_nodes[i].next = std::move(next);
    }
    for (std::size_t i = first; i < m_nodes.size(); ++i)
        m_nodes[i].kind = reduceOne(m_nodes[i].action);
    for (std::size_t i = first; i < m_nodes.size(); ++i) {
        if (!hasToGo(i))
            setFollowing(m_nodes[i]);
    }
    Node &node = m_nodes[index];
    if (!hasToGo(index))
        return {action, false};
    if (!node.standIn.isInitialized())
        node.standIn = standInFor(node);
    return {node.standIn, node.kind == ReducedDestination::Kind::Gone};
}

} // namespace pdfcore
