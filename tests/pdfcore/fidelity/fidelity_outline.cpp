// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_outline.h"

namespace FidelityOutline {

namespace {

struct Reader
{
    FidelityDocument &document;
    QStringList &problems;
    std::set<QPDFObjGen> visited;

    void complain(const QString &what, QPDFObjectHandle item)
    {
        problems.append(QStringLiteral("outline entry \"%1\" %2")
                            .arg(fidelityText(item.getKey("/Title")), what));
    }

    static bool isSame(QPDFObjectHandle link, const QPDFObjectHandle &object)
    {
        return link.isIndirect() && link.getObjGen() == object.getObjGen();
    }

    FidelityOutlineEntry entry(QPDFObjectHandle item)
    {
        FidelityOutlineEntry entry;
        entry.title = fidelityText(item.getKey("/Title"));
        entry.target = document.targetOf(item);
        entry.style = "C " + document.describe(item.getKey("/C")) + " F " +
                      document.describe(item.getKey("/F"));
        QPDFObjectHandle count = item.getKey("/Count");
        entry.isOpen = count.isInteger() && count.getIntValue() > 0;
        entry.children = level(item);
        const long long wanted = visible(entry.children);
        const long long found = count.isInteger() ? count.getIntValue() : 0;
        if (found != wanted && found != -wanted) {
            complain(QStringLiteral("has the count %1 for %2 entries").arg(found).arg(wanted),
                     item);
        }
        return entry;
    }

    QList<FidelityOutlineEntry> level(QPDFObjectHandle parent)
    {
        QList<FidelityOutlineEntry> entries;
        QPDFObjectHandle previous = QPDFObjectHandle::newNull();
        QPDFObjectHandle item = parent.getKey("/First");
        while (item.isDictionary()) {
            if (!item.isIndirect() || !visited.insert(item.getObjGen()).second) {
                complain(QStringLiteral("comes twice"), item);
                break;
            }
            if (!isSame(item.getKey("/Parent"), parent)) {
                complain(QStringLiteral("has another parent"), item);
            }
            if (previous.isNull() ? !item.getKey("/Prev").isNull()
                                  : !isSame(item.getKey("/Prev"), previous)) {
                complain(QStringLiteral("has another predecessor"), item);
            }
            entries.append(entry(item));
            previous = item;
            item = item.getKey("/Next");
        }
        if (!previous.isNull() && !isSame(parent.getKey("/Last"), previous)) {
            complain(QStringLiteral("is not the last one of its parent"), previous);
        }
        return entries;
    }

    /// Entries that a reader shows when the parent of these is open.
    static long long visible(const QList<FidelityOutlineEntry> &entries)
    {
        long long count = 0;
        for (const FidelityOutlineEntry &entry : entries) {
            count += 1 + (entry.isOpen ? visible(entry.children) : 0);
        }
        return count;
    }
};

void addLines(const QList<FidelityOutlineEntry> &entries, int depth, bool isWhole,
              QStringList &lines)
{
    for (const FidelityOutlineEntry &entry : entries) {
        QString line = QString(2 * depth, u' ') + entry.title;
        if (isWhole) {
            line += QStringLiteral(" -> %1 %2%3; %4%5")
                        .arg(entry.target.mark, QString::fromLatin1(entry.target.view),
                             entry.target.other, QString::fromLatin1(entry.style),
                             entry.children.isEmpty() ? QString()
                             : entry.isOpen           ? QStringLiteral("; open")
                                                      : QStringLiteral("; closed"));
        }
        lines.append(line);
        addLines(entry.children, depth + 1, isWhole, lines);
    }
}

} // namespace

QList<FidelityOutlineEntry> read(FidelityDocument &document, QStringList *problems)
{
    QStringList ignored;
    Reader reader{document, problems == nullptr ? ignored : *problems, {}};
    QPDFObjectHandle root = document.catalogue().getKey("/Outlines");
    if (!root.isDictionary()) {
        return {};
    }
    QList<FidelityOutlineEntry> entries = reader.level(root);
    // The count of the whole outline may be missing while no entry is open.
    const long long shown = Reader::visible(entries);
    QPDFObjectHandle count = root.getKey("/Count");
    const bool isMissing = count.isNull() && shown == entries.size();
    if (!isMissing && (!count.isInteger() || count.getIntValue() != shown)) {
        reader.problems.append(QStringLiteral("the outline has the count %1 for %2 entries")
                                   .arg(QString::fromStdString(count.unparse()))
                                   .arg(shown));
    }
    return entries;
}

QList<FidelityOutlineEntry> filtered(const QList<FidelityOutlineEntry> &entries,
                                     const std::function<bool(const QString &mark)> &isKept)
{
    return without(entries, [&isKept](const FidelityOutlineEntry &entry) {
        return entry.target.isPage && !isKept(entry.target.mark);
    });
}

QList<FidelityOutlineEntry>
without(const QList<FidelityOutlineEntry> &entries,
        const std::function<bool(const FidelityOutlineEntry &entry)> &isInTheWay)
{
    QList<FidelityOutlineEntry> result;
    for (const FidelityOutlineEntry &entry : entries) {
        const QList<FidelityOutlineEntry> children = without(entry.children, isInTheWay);
        if (isInTheWay(entry)) {
            result += children;
        } else if (!entry.isHeading() || !children.isEmpty() || entry.children.isEmpty()) {
            result.append(entry);
            result.last().children = children;
        }
    }
    return result;
}

QStringList lines(const QList<FidelityOutlineEntry> &entries)
{
    QStringList result;
    addLines(entries, 0, true, result);
    return result;
}

QStringList titles(const QList<FidelityOutlineEntry> &entries)
{
    QStringList result;
    addLines(entries, 0, false, result);
    return result;
}

} // namespace FidelityOutline
