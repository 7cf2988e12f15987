// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_comparison.h"

#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_outline.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

#include <cmath>
#include <utility>

namespace {

/// Attributes of pages that must be the same whatever becomes of the page.
constexpr std::array kPageKeys{"/MediaBox", "/CropBox", "/UserUnit", "/BleedBox",
                               "/TrimBox",  "/ArtBox",  "/Dur",      "/PieceInfo"};

constexpr std::array kCatalogueKeys{"/Lang",       "/ViewerPreferences", "/PageMode",
                                    "/PageLayout", "/OutputIntents",     "/Metadata"};

int rotationOf(const FidelityDocument &document, qsizetype index)
{
    QPDFObjectHandle rotation = document.attribute(index, "/Rotate");
    const int degrees = rotation.isInteger() ? rotation.getIntValueAsInt() : 0;
    return (degrees % 360 + 360) % 360;
}

QString latin(const QByteArray &text)
{
    return QString::fromLatin1(text);
}

/// A text from a little before `start`, short and without control characters.
QString excerpt(const QString &text, qsizetype start)
{
    constexpr qsizetype kBefore = 60;
    constexpr qsizetype kLength = 200;
    QString part = text.mid(std::max(qsizetype{0}, start - kBefore), kLength);
    for (QChar &letter : part) {
        if (!letter.isPrint()) {
            letter = u'?';
        }
    }
    return part;
}

/// "this instead of that", from a little before the first difference.
QString differenceOf(const QString &found, const QString &wanted)
{
    qsizetype start = 0;
    while (start < std::min(found.size(), wanted.size()) && found.at(start) == wanted.at(start)) {
        ++start;
    }
    return excerpt(found, start) + QStringLiteral(" instead of ") + excerpt(wanted, start);
}

/// Whether the group is shown when the document opens.
bool isShown(FidelityDocument &document, const QPDFObjectHandle &group)
{
    QPDFObjectHandle settings = document.catalogue().getKey("/OCProperties").getKey("/D");
    QPDFObjectHandle base = settings.getKey("/BaseState");
    bool shown = !base.isName() || base.getName() != "/OFF";
    for (const auto &[key, state] : {std::pair{"/ON", true}, std::pair{"/OFF", false}}) {
        QPDFObjectHandle contentGroups = settings.getKey(key);
        for (int i = 0; contentGroups.isArray() && i < contentGroups.getArrayNItems(); ++i) {
            if (contentGroups.getArrayItem(i).getObjGen() == group.getObjGen()) {
                shown = state;
            }
        }
    }
    return shown;
}

/// "name on" or "name off" for every group of a document, by object.
std::map<QPDFObjGen, QString> contentGroups(FidelityDocument &document)
{
    std::map<QPDFObjGen, QString> states;
    QPDFObjectHandle properties = document.catalogue().getKey("/OCProperties");
    if (!properties.isDictionary()) {
        return states;
    }
    QPDFObjectHandle all = properties.getKey("/OCGs");
    for (int i = 0; all.isArray() && i < all.getArrayNItems(); ++i) {
        QPDFObjectHandle group = all.getArrayItem(i);
        states[group.getObjGen()] =
            fidelityText(group.getKey("/Name")) +
            (isShown(document, group) ? QStringLiteral(" on") : QStringLiteral(" off"));
    }
    return states;
}

/// The content groups that the content of a page names, those of memberships included.
std::vector<QPDFObjectHandle> contentGroupsOfPage(const FidelityDocument &document, qsizetype index)
{
    std::vector<QPDFObjectHandle> found;
    QPDFObjectHandle resources = document.attribute(index, "/Resources");
    QPDFObjectHandle properties =
        resources.isDictionary() ? resources.getKey("/Properties") : resources;
    if (!properties.isDictionary()) {
        return found;
    }
    for (const std::string &key : properties.getKeys()) {
        QPDFObjectHandle entry = properties.getKey(key);
        QPDFObjectHandle members = entry.isDictionary() ? entry.getKey("/OCGs") : entry;
        if (members.isArray()) {
            for (QPDFObjectHandle &member : members.getArrayAsVector()) {
                found.push_back(member);
            }
        } else {
            found.push_back(members.isDictionary() ? members : entry);
        }
    }
    return found;
}

/// Names of the content groups that a page knows and the document does not.
QStringList unknownContentGroups(FidelityDocument &document, qsizetype index)
{
    const std::map<QPDFObjGen, QString> known = contentGroups(document);
    QStringList names;
    for (QPDFObjectHandle &group : contentGroupsOfPage(document, index)) {
        if (group.isDictionary() && !known.contains(group.getObjGen())) {
            names.append(fidelityText(group.getKey("/Name")));
        }
    }
    return names;
}

/// The elements of the structure that hold the marked content of a page, in the order of its
/// numbers; none when the parent tree does not know the page.
std::vector<QPDFObjectHandle> elementsOfPage(FidelityDocument &document, qsizetype index)
{
    QPDFObjectHandle root = document.catalogue().getKey("/StructTreeRoot");
    QPDFObjectHandle key = document.page(index).getKey("/StructParents");
    if (!root.isDictionary() || !key.isInteger()) {
        return {};
    }
    const std::map<long long, QPDFObjectHandle> entries =
        FidelityDocument::numbers(root.getKey("/ParentTree"));
    const auto entry = entries.find(key.getIntValue());
    if (entry == entries.end() || !QPDFObjectHandle(entry->second).isArray()) {
        return {};
    }
    return QPDFObjectHandle(entry->second).getArrayAsVector();
}

/// Whether an element names marked content of a page that need not be its own.
bool hasContentOf(FidelityDocument &document, QPDFObjectHandle element, qsizetype index)
{
    QPDFObjectHandle kids = element.getKey("/K");
    for (QPDFObjectHandle &kid : kids.isArray() ? kids.getArrayAsVector() : std::vector{kids}) {
        if (kid.isDictionary() && document.indexOf(kid.getKey("/Pg")) == index) {
            return true;
        }
    }
    return false;
}

/// What an element is, says, and whether its page is the one with the given index; elements of
/// pages that are not kept are nothing.
QString describeElement(FidelityDocument &document, QPDFObjectHandle element, qsizetype index,
                        const QStringList &kept)
{
    if (!element.isDictionary()) {
        return QStringLiteral("nothing");
    }
    const qsizetype own = document.indexOf(element.getKey("/Pg"));
    const qsizetype page = hasContentOf(document, element, index) ? index : own;
    if (page >= 0 && !kept.contains(document.marks().at(page))) {
        return QStringLiteral("nothing");
    }
    QByteArray text = document.describe(element.getKey("/S"));
    for (const char *key : {"/Alt", "/ActualText", "/T", "/Lang"}) {
        text += ' ' + document.describe(element.getKey(key));
    }
    return latin(text + (page == index ? " of the page" : " of another page"));
}

/// The elements of the structure of a page, without those of pages that are not kept at the end.
QStringList structureLines(FidelityDocument &document, qsizetype index, const QStringList &kept)
{
    QStringList lines;
    for (const QPDFObjectHandle &element : elementsOfPage(document, index)) {
        lines.append(describeElement(document, element, index, kept));
    }
    while (!lines.isEmpty() && lines.constLast() == QStringLiteral("nothing")) {
        lines.removeLast();
    }
    return lines;
}

} // namespace

FidelityComparison::FidelityComparison(const QList<PdfSourcePage> &pages, const QString &output)
    : m_output(output)
    , m_path(output)
{
    for (const PdfSourcePage &page : pages) {
        Use use;
        use.rotation = page.rotation;
        use.size = page.pageSize;
        if (!page.isBlank && !page.filePath.isEmpty()) {
            auto &source = m_sources[page.filePath];
            if (!source) {
                source = std::make_unique<FidelityDocument>(page.filePath, page.password.toUtf8());
                m_order.append(source.get());
                if (source->problem().isEmpty()) {
                    FidelityFields::completeForm(*source);
                } else {
                    m_problems.append(page.filePath + u": " + source->problem());
                }
            }
            use.source = source.get();
            use.index = page.pageIndex;
            for (const Use &earlier : std::as_const(m_uses)) {
                if (earlier.source == use.source && earlier.index == use.index) {
                    ++use.copy;
                }
            }
            m_kept.append(mark(use));
        }
        m_uses.append(use);
    }
}

QString FidelityComparison::mark(const Use &use) const
{
    return use.source == nullptr ? QString() : use.source->marks().at(use.index);
}

bool FidelityComparison::isUnchanged() const
{
    if (m_order.size() != 1 || m_uses.size() != m_order.constFirst()->marks().size()) {
        return false;
    }
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        if (m_uses.at(i).index != i || m_uses.at(i).rotation != 0) {
            return false;
        }
    }
    return true;
}

bool FidelityComparison::isComparable()
{
    if (!m_output.problem().isEmpty()) {
        m_problems.append(m_output.problem());
    } else if (m_output.marks().size() != m_uses.size()) {
        m_problems.append(QStringLiteral("there are %1 pages instead of %2")
                              .arg(m_output.marks().size())
                              .arg(m_uses.size()));
    } else {
        return true;
    }
    return false;
}

void FidelityComparison::compare(const QString &what, const QByteArray &found,
                                 const QByteArray &wanted)
{
    if (found != wanted) {
        m_problems.append(what + u": " + differenceOf(latin(found), latin(wanted)));
    }
}

void FidelityComparison::compareLists(const QString &what, const QStringList &found,
                                      const QStringList &wanted)
{
    for (qsizetype i = 0; i < std::max(found.size(), wanted.size()); ++i) {
        const QString none = QStringLiteral("nothing");
        const QString is = found.value(i, none);
        const QString should = wanted.value(i, none);
        if (is != should) {
            m_problems.append(QStringLiteral("%1: %2 as number %3")
                                  .arg(what, differenceOf(is, should), QString::number(i)));
            return;
        }
    }
}

QStringList FidelityComparison::taken()
{
    return std::exchange(m_problems, {});
}

QStringList FidelityComparison::problems()
{
    if (!m_problems.isEmpty()) {
        return taken();
    }
    return differences() + FidelitySoundness::problems(m_path, m_output);
}

QStringList FidelityComparison::differences()
{
    if (!m_problems.isEmpty()) {
        return taken();
    }
    QStringList all = pageProblems();
    if (all.isEmpty()) {
        all += outlineProblems();
        all += annotationProblems();
        all += fieldProblems();
        all += hybridFormProblems();
        all += signatureProblems();
        all += labelProblems();
        all += attachmentProblems();
        all += catalogueProblems();
        all += contentGroupProblems();
        all += structureProblems();
    }
    return all;
}

QStringList FidelityComparison::pageProblems()
{
    QStringList wanted;
    for (const Use &use : std::as_const(m_uses)) {
        wanted.append(mark(use));
    }
    compareLists(QStringLiteral("pages"), m_output.marks(), wanted);
    for (qsizetype i = 0; m_problems.isEmpty() && i < m_uses.size(); ++i) {
        comparePage(i);
    }
    return taken();
}

void FidelityComparison::comparePage(qsizetype position)
{
    const Use &use = m_uses.at(position);
    const QString name = QStringLiteral("page %1 (%2) ").arg(position + 1).arg(mark(use));
    const int own = use.source == nullptr ? 0 : rotationOf(*use.source, use.index);
    compare(name + QStringLiteral("/Rotate"), QByteArray::number(rotationOf(m_output, position)),
            QByteArray::number((own + use.rotation) % 360));
    if (use.source == nullptr) {
        const QPDFObjectHandle::Rectangle box =
            m_output.attribute(position, "/MediaBox").getArrayAsRectangle();
        if (std::abs(box.urx - box.llx - use.size.width()) > 0.01 ||
            std::abs(box.ury - box.lly - use.size.height()) > 0.01) {
            m_problems.append(name + QStringLiteral("has another size"));
        }
        return;
    }
    for (const char *key : kPageKeys) {
        compare(name + QLatin1String(key), m_output.describe(m_output.attribute(position, key)),
                use.source->describe(use.source->attribute(use.index, key)));
    }
}

QStringList FidelityComparison::outlineProblems()
{
    if (!isComparable()) {
        return taken();
    }
    QList<FidelityOutlineEntry> wanted;
    for (FidelityDocument *source : std::as_const(m_order)) {
        wanted += FidelityOutline::filtered(FidelityOutline::read(*source),
                                            [this](const QString &mark) { return isKept(mark); });
    }
    QList<FidelityOutlineEntry> found = FidelityOutline::read(m_output, &m_problems);
    // What led nowhere before may go on doing so, or keep its title only.
    const std::set<QString> dead = deadTitles();
    found = FidelityOutline::without(found, [&dead](const FidelityOutlineEntry &entry) {
        return (entry.leadsNowhere() || entry.isHeading()) && dead.contains(entry.title);
    });
    compareLists(QStringLiteral("outline"), FidelityOutline::lines(found),
                 FidelityOutline::lines(wanted));
    QList<FidelityOutlineEntry> waiting = found;
    while (!waiting.isEmpty()) {
        const FidelityOutlineEntry entry = waiting.takeLast();
        if (entry.target.isPage &&
            entry.target.index != m_output.marks().indexOf(entry.target.mark)) {
            m_problems.append(QStringLiteral("outline entry %1 leads to page %2, not to the first "
                                             "of its kind")
                                  .arg(entry.title)
                                  .arg(entry.target.index + 1));
        }
        waiting += entry.children;
    }
    return taken();
}

/// Titles of the outline entries of the sources that were meant to lead to a page and do not.
std::set<QString> FidelityComparison::deadTitles()
{
    std::set<QString> titles;
    for (FidelityDocument *source : std::as_const(m_order)) {
        QList<FidelityOutlineEntry> waiting = FidelityOutline::read(*source);
        while (!waiting.isEmpty()) {
            const FidelityOutlineEntry entry = waiting.takeLast();
            if (entry.leadsNowhere()) {
                titles.insert(entry.title);
            }
            waiting += entry.children;
        }
    }
    return titles;
}

QStringList FidelityComparison::annotationLines(FidelityDocument &document, qsizetype index)
{
    QStringList lines;
    for (QPDFObjectHandle annotation : document.annotations(index)) {
        // What is no annotation need not stay; FidelitySoundness complains of what is left.
        if (!annotation.isDictionary()) {
            continue;
        }
        QPDFObjectHandle kind = annotation.getKey("/Subtype");
        const bool isLink = kind.isName() && kind.getName() == "/Link";
        const FidelityTarget target = document.targetOf(annotation);
        const bool isGone = target.isPage && !isKept(target.mark);
        // What leads to no page of its document may stay, with nowhere to lead.
        if (isLink && isGone && target.index >= 0) {
            continue;
        }
        QByteArray text = document.describe(kind);
        for (const char *key : {"/Rect", "/Contents", "/NM", "/C", "/F", "/QuadPoints", "/FS",
                                "/RT", "/MK", "/Lock"}) {
            text += ' ' + document.describe(annotation.getKey(key));
        }
        for (const char *key : {"/Popup", "/IRT"}) {
            if (annotation.hasKey(key)) {
                text += ' ' + QByteArray(key) + ' ' +
                        document.describe(annotation.getKey(key).getKey("/Contents"));
            }
        }
        text += annotation.hasKey("/P") ? " with page" : " without page";
        if (!isGone && (target.isPage || !target.other.isEmpty())) {
            text += " leads to " + (target.mark + target.other).toLatin1() + ' ' + target.view;
        }
        lines.append(latin(text));
    }
    return lines;
}

QStringList FidelityComparison::annotationProblems()
{
    if (!isComparable()) {
        return taken();
    }
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        const Use &use = m_uses.at(i);
        const QString name =
            QStringLiteral("annotations of page %1 (%2)").arg(i + 1).arg(mark(use));
        compareLists(name, annotationLines(m_output, i),
                     use.source == nullptr ? QStringList()
                                           : annotationLines(*use.source, use.index));
    }
    return taken();
}

QStringList FidelityComparison::labelProblems()
{
    if (!isComparable()) {
        return taken();
    }
    bool isLabelled = false;
    std::map<FidelityDocument *, QStringList> own;
    for (FidelityDocument *source : std::as_const(m_order)) {
        own[source] = source->labels();
        isLabelled = isLabelled || !own[source].isEmpty();
    }
    const QStringList found = m_output.labels();
    QStringList wanted;
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        const QString number = QString::number(i + 1);
        const QString label = own[m_uses.at(i).source].value(m_uses.at(i).index, number);
        // The first label may stand on a later page only if nothing is changed.
        const bool isNone = label == FidelityDocument::kNoLabel && found.value(i) != label;
        wanted.append(isNone ? number : label);
    }
    if (isLabelled || !found.isEmpty()) {
        compareLists(QStringLiteral("labels"), found, wanted);
    }
    return taken();
}

QStringList FidelityComparison::attachmentProblems()
{
    if (!isComparable()) {
        return taken();
    }
    const auto dataOf = [](QPDFObjectHandle file) {
        return fidelityData(file.getKey("/EF").getKey("/F"));
    };
    QStringList foundData;
    std::map<std::string, QByteArray> byName;
    for (const auto &[name, file] : m_output.names("/EmbeddedFiles")) {
        foundData.append(latin(dataOf(file)));
        byName[name] = m_output.describe(file);
    }
    QStringList wantedData;
    for (FidelityDocument *source : std::as_const(m_order)) {
        for (const auto &[name, file] : source->names("/EmbeddedFiles")) {
            wantedData.append(latin(dataOf(file)));
            if (source == m_order.constFirst()) {
                compare(QStringLiteral("attachment ") + QString::fromStdString(name), byName[name],
                        source->describe(file));
            }
        }
    }
    foundData.sort();
    wantedData.sort();
    compareLists(QStringLiteral("attachments"), foundData, wantedData);
    return taken();
}

QStringList FidelityComparison::catalogueProblems()
{
    if (!isComparable()) {
        return taken();
    }
    if (m_order.isEmpty()) {
        return taken();
    }
    FidelityDocument &main = *m_order.constFirst();
    QPDFObjectHandle root = main.catalogue();
    QPDFObjectHandle found = m_output.catalogue();
    for (const char *key : kCatalogueKeys) {
        // There is no outline to show once all of its entries are gone.
        if (main.describe(root.getKey(key)) == "/UseOutlines" && !found.hasKey(key) &&
            !found.hasKey("/Outlines")) {
            continue;
        }
        compare(QLatin1String(key), m_output.describe(found.getKey(key)),
                main.describe(root.getKey(key)));
    }
    QPDFObjectHandle info = main.pdf().getTrailer().getKey("/Info");
    if (info.isDictionary()) {
        QPDFObjectHandle foundInfo = m_output.pdf().getTrailer().getKey("/Info");
        for (const std::string &key : info.getKeys()) {
            if (key != "/ModDate" && key != "/Producer") {
                compare(QStringLiteral("/Info ") + QString::fromStdString(key),
                        foundInfo.isDictionary() ? m_output.describe(foundInfo.getKey(key))
                                                 : QByteArray("no dictionary"),
                        main.describe(info.getKey(key)));
            }
        }
    }
    QPDFObjectHandle opening = root.getKey("/OpenAction");
    if (opening.isArray() && isKept(main.targetOfDestination(opening).mark)) {
        compare(QStringLiteral("/OpenAction"), m_output.describe(found.getKey("/OpenAction")),
                main.describe(opening));
    } else if (opening.isArray() && found.hasKey("/OpenAction")) {
        m_problems.append(QStringLiteral("/OpenAction to a page that is gone"));
    }
    for (const std::string &key : isUnchanged() ? root.getKeys() : std::set<std::string>()) {
        if (key != "/Perms" && !found.hasKey(key)) {
            m_problems.append(QString::fromStdString(key) + QStringLiteral(" is lost"));
        }
    }
    return taken();
}

QStringList FidelityComparison::contentGroupProblems()
{
    if (!isComparable()) {
        return taken();
    }
    QStringList wanted;
    for (FidelityDocument *source : std::as_const(m_order)) {
        for (const auto &[object, state] : contentGroups(*source)) {
            wanted.append(state);
        }
    }
    const std::map<QPDFObjGen, QString> states = contentGroups(m_output);
    QStringList found;
    for (const auto &[object, state] : states) {
        found.append(state);
    }
    wanted.sort();
    found.sort();
    compareLists(QStringLiteral("optional content"), found, wanted);
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        const Use &use = m_uses.at(i);
        QStringList unknown = unknownContentGroups(m_output, i);
        for (const QString &name :
             use.source == nullptr ? QStringList() : unknownContentGroups(*use.source, use.index)) {
            unknown.removeOne(name);
        }
        for (const QString &name : std::as_const(unknown)) {
            m_problems.append(QStringLiteral("page %1 names the group %2, the document does not")
                                  .arg(i + 1)
                                  .arg(name));
        }
    }
    return taken();
}

QStringList FidelityComparison::structureProblems()
{
    if (!isComparable()) {
        return taken();
    }
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        const Use &use = m_uses.at(i);
        const QString name = QStringLiteral("page %1 (%2)").arg(i + 1).arg(mark(use));
        if (use.source == nullptr || use.source != m_order.constFirst()) {
            if (m_output.page(i).hasKey("/StructParents")) {
                m_problems.append(name + QStringLiteral(" carries /StructParents"));
            }
            continue;
        }
        if (use.copy > 0) {
            continue;
        }
        compareLists(name + QStringLiteral(" structure"), structureLines(m_output, i, m_kept),
                     structureLines(*use.source, use.index, m_kept));
    }
    return taken();
}
