#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// A destination as it is to be used in an output.
struct ReducedDestination
{
    enum class Kind {
        Leads,  ///< To where it led before.
        Broken, ///< It led nowhere in the source already.
        Gone,   ///< It led to a page that the output does not have.
    };
    Kind kind = Kind::Broken;
    QPDFObjectHandle use = QPDFObjectHandle::newNull(); ///< Null when nothing is to be used.
};

/// Takes the actions that lead to pages that are gone out of chains of actions.
///
/// What followed such an action moves up into its place. Chains may be of any length and run in
/// circles, and actions may follow several others.
class ActionReducer
{
public:
    using Reduce = std::function<ReducedDestination(QPDFObjectHandle)>;

    struct Result
    {
        QPDFObjectHandle action;    ///< What to use in its place; null when nothing is left.
        bool ledToGonePage = false; ///< Of the action itself, not of those that follow it.
    };

    /// @param reduce  Reduces destinations.
    /// @param isMain  Whether the document is the main one of its output.
    ActionReducer(Reduce reduce, bool isMain)
        : m_reduce(std::move(reduce))
        , m_isMain(isMain)
    {}

    /// Changes an action and those that follow it in place.
    Result reduced(QPDFObjectHandle action);

private:
    struct Node
    {
        QPDFObjectHandle action;
        std::vector<std::size_t> next;
        ReducedDestination::Kind kind = ReducedDestination::Kind::Leads;
        QPDFObjectHandle standIn; ///< Made when it is asked for first.
    };

    std::size_t addNode(QPDFObjectHandle action);
    std::vector<std::size_t> addFollowing(QPDFObjectHandle next);
    ReducedDestination::Kind reduceOne(QPDFObjectHandle action) const;
    std::vector<std::size_t> stayingAmong(const std::vector<std::size_t> &next);
    [[nodiscard]] bool hasToGo(std::size_t index) const;
    void setFollowing(const Node &node);
    QPDFObjectHandle standInFor(const Node &node);

    Reduce m_reduce;
    bool m_isMain;
    std::vector<Node> m_nodes;
    std::map<QPDFObjGen, std::size_t> m_indexes;
    std::map<QPDFObjGen, std::vector<std::size_t>> m_arrays; ///< Lists that are objects.
    std::size_t m_standInItems = 0;
    std::size_t m_passed = 0;
};

} // namespace pdfcore
