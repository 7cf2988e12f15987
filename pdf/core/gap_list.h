// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>

#include <utility>
#include <vector>

/// A list that keeps the place of the last change open, so that a run of insertions and removals
/// in ascending or descending order costs one pass over the items instead of one pass per change.
///
/// The items before the gap stand in order in one list, those behind it in reverse in another;
/// moving the gap moves the items between the two places, and nothing else. Every operation leaves
/// the whole list readable. close() after a run brings all items together again, after which
/// toList() is a shared copy that costs nothing.
template <typename T>
class GapList final
{
public:
    GapList() = default;
    explicit GapList(QList<T> items)
        : m_front(std::move(items))
    {}

    [[nodiscard]] qsizetype size() const
    {
        return m_front.size() + static_cast<qsizetype>(m_back.size());
    }

    [[nodiscard]] bool isEmpty() const { return size() == 0; }

    [[nodiscard]] const T &at(qsizetype index) const
    {
        return index < m_front.size() ? m_front.at(index) : m_back[backPosition(index)];
    }

    /// For changing the item at `index`; detaches from copies taken with toList().
    [[nodiscard]] T &operator[](qsizetype index)
    {
        return index < m_front.size() ? m_front[index] : m_back[backPosition(index)];
    }

    /// Inserts before `index`, which is 0 to size().
    void insert(qsizetype index, T item)
    {
        moveGapTo(index);
        m_front.append(std::move(item));
    }

    T takeAt(qsizetype index)
    {
        moveGapTo(index + 1);
        return m_front.takeLast();
    }

    /// Closes the gap. Pointers to items become invalid.
    void close()
    {
        moveGapTo(size());
        m_back.shrink_to_fit();
    }

    /// The items in order: a shared copy while the gap is closed, a deep copy while it is open.
    [[nodiscard]] QList<T> toList() const
    {
        QList<T> items = m_front;
        items.append(QList<T>(m_back.rbegin(), m_back.rend()));
        return items;
    }

private:
    [[nodiscard]] std::size_t backPosition(qsizetype index) const
    {
        return static_cast<std::size_t>(size() - 1 - index);
    }

    void moveGapTo(qsizetype index)
    {
        while (m_front.size() > index) {
            m_back.push_back(m_front.takeLast());
        }
        if (m_front.size() < index) {
            m_front.reserve(index);
        }
        while (m_front.size() < index) {
            m_front.append(std::move(m_back.back()));
            m_back.pop_back();
        }
    }

    QList<T> m_front;
    std::vector<T> m_back;
};
