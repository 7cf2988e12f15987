// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_document.h"

#include <QRegularExpression>

#include <qpdf/Buffer.hh>

#include <algorithm>

namespace {

constexpr int kMaxDepth = 60;

/// The text that a page shows as its mark, from the first part of its content that has one.
QString markOf(QPDFObjectHandle page)
{
    static const QRegularExpression mark(QStringLiteral("\\(([A-Z]+-\\d+)\\) *Tj"));
    QPDFObjectHandle contents = page.getKey("/Contents");
    const std::vector<QPDFObjectHandle> parts =
        contents.isArray() ? contents.getArrayAsVector() : std::vector{contents};
    for (const QPDFObjectHandle &part : parts) {
        const QString text = QString::fromLatin1(fidelityData(part));
        if (const QRegularExpressionMatch found = mark.match(text); found.hasMatch()) {
            return found.captured(1);
        }
    }
    return {};
}

QString roman(long long number)
{
    static const std::vector<std::pair<int, const char *>> letters{
        {1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"}, {50, "l"},
        {40, "xl"},  {10, "x"},   {9, "ix"},  {5, "v"},    {4, "iv"},  {1, "i"}};
    QString text;
    for (const auto &[value, letter] : letters) {
        for (; number >= value; number -= value) {
            text += QLatin1String(letter);
        }
    }
    return text;
}

/// a to z, then aa to zz, and so on.
QString letters(long long number)
{
    const auto letter = static_cast<char16_t>(u'a' + (number - 1) % 26);
    return QString(static_cast<qsizetype>((number - 1) / 26 + 1), QChar(letter));
}

QString labelOf(QPDFObjectHandle range, long long offset)
{
    QString text = fidelityText(range.getKey("/P"));
    QPDFObjectHandle start = range.getKey("/St");
    const long long number = (start.isInteger() ? start.getIntValue() : 1) + offset;
    QPDFObjectHandle styleName = range.getKey("/S");
    const std::string style = styleName.isName() ? styleName.getName() : std::string();
    if (style == "/D") {
        text += QString::number(number);
    } else if (style == "/r") {
        text += roman(number);
    } else if (style == "/R") {
        text += roman(number).toUpper();
    } else if (style == "/a") {
        text += letters(number);
    } else if (style == "/A") {
        text += letters(number).toUpper();
    }
    return text;
}

/// Walks a name or number tree in order. Leaves hold `key`, an array of pairs.
template <typename Add>
void walkTree(QPDFObjectHandle root, const char *key, Add add)
{
    std::vector<QPDFObjectHandle> waiting{root};
    std::set<QPDFObjGen> visited;
    while (!waiting.empty()) {
        QPDFObjectHandle node = waiting.back();
        waiting.pop_back();
        if (!node.isDictionary() ||
            (node.isIndirect() && !visited.insert(node.getObjGen()).second)) {
            continue;
        }
        QPDFObjectHandle pairs = node.getKey(key);
        for (int i = 0; pairs.isArray() && i + 1 < pairs.getArrayNItems(); i += 2) {
            add(pairs.getArrayItem(i), pairs.getArrayItem(i + 1));
        }
        QPDFObjectHandle kids = node.getKey("/Kids");
        for (int i = kids.isArray() ? kids.getArrayNItems() : 0; i > 0; --i) {
            waiting.push_back(kids.getArrayItem(i - 1));
        }
    }
}

} // namespace

QString fidelityText(QPDFObjectHandle string)
{
    return string.isString() ? QString::fromStdString(string.getUTF8Value()) : QString();
}

QByteArray fidelityData(QPDFObjectHandle stream)
{
    if (!stream.isStream()) {
        return {};
    }
    try {
        const std::shared_ptr<Buffer> buffer = stream.getStreamData(qpdf_dl_generalized);
        return {reinterpret_cast<const char *>(buffer->getBuffer()),
                static_cast<qsizetype>(buffer->getSize())};
    } catch (const std::exception &) {
        const std::shared_ptr<Buffer> buffer = stream.getRawStreamData();
        return {reinterpret_cast<const char *>(buffer->getBuffer()),
                static_cast<qsizetype>(buffer->getSize())};
    }
}

FidelityDocument::FidelityDocument(const QString &path, const QByteArray &password)
    : m_pdf(std::make_shared<QPDF>())
{
    try {
        m_pdf->setSuppressWarnings(true);
        m_pdf->processFile(path.toLocal8Bit().constData(),
                           password.isEmpty() ? nullptr : password.constData());
        m_pages = m_pdf->getAllPages();
        for (QPDFObjectHandle &page : m_pages) {
            m_indexes.emplace(page.getObjGen(), m_marks.size());
            m_marks.append(markOf(page));
        }
    } catch (const std::exception &exception) {
        m_problem = QString::fromLocal8Bit(exception.what());
        m_pdf = std::make_shared<QPDF>();
        m_pdf->emptyPDF();
        m_pages.clear();
        m_marks.clear();
    }
}

QPDFObjectHandle FidelityDocument::page(qsizetype index) const
{
    return m_pages.at(static_cast<std::size_t>(index));
}

qsizetype FidelityDocument::indexOf(const QPDFObjectHandle &page) const
{
    const auto found = m_indexes.find(page.getObjGen());
    return found == m_indexes.end() ? -1 : found->second;
}

QPDFObjectHandle FidelityDocument::attribute(qsizetype index, const std::string &key) const
{
    QPDFObjectHandle node = page(index);
    for (int depth = 0; depth < kMaxDepth && node.isDictionary(); ++depth) {
        if (node.hasKey(key)) {
            return node.getKey(key);
        }
        node = node.getKey("/Parent");
    }
    return QPDFObjectHandle::newNull();
}

std::vector<QPDFObjectHandle> FidelityDocument::annotations(qsizetype index) const
{
    QPDFObjectHandle array = page(index).getKey("/Annots");
    return array.isArray() ? array.getArrayAsVector() : std::vector<QPDFObjectHandle>();
}

FidelityTarget FidelityDocument::targetOf(QPDFObjectHandle item)
{
    if (item.hasKey("/Dest")) {
        return targetOfDestination(item.getKey("/Dest"));
    }
    QPDFObjectHandle action = item.getKey("/A");
    if (!action.isDictionary()) {
        return {};
    }
    QPDFObjectHandle kind = action.getKey("/S");
    if (kind.isName() && kind.getName() == "/GoTo") {
        return targetOfDestination(action.getKey("/D"));
    }
    FidelityTarget target;
    target.other = QString::fromLatin1(describe(action));
    return target;
}

FidelityTarget FidelityDocument::targetOfDestination(QPDFObjectHandle destination)
{
    FidelityTarget target;
    target.isPage = true;
    target.mark = QStringLiteral("gone");
    if (destination.isName()) {
        QPDFObjectHandle dictionary = catalogue().getKey("/Dests");
        if (dictionary.isDictionary()) {
            destination = dictionary.getKey(destination.getName());
        }
    } else if (destination.isString()) {
        for (const auto &[name, value] : names("/Dests")) {
            if (name == destination.getStringValue()) {
                destination = value;
                break;
            }
        }
    }
    if (destination.isDictionary()) {
        destination = destination.getKey("/D");
    }
    if (!destination.isArray() || destination.getArrayNItems() == 0) {
        return target;
    }
    QPDFObjectHandle first = destination.getArrayItem(0);
    target.index = first.isInteger() ? first.getIntValueAsInt() : indexOf(first);
    if (target.index >= m_marks.size()) {
        target.index = -1;
    }
    if (target.index >= 0) {
        target.mark = m_marks.at(target.index);
    }
    QByteArrayList view;
    for (int i = 1; i < destination.getArrayNItems(); ++i) {
        view.append(QByteArray::fromStdString(destination.getArrayItem(i).unparseResolved()));
    }
    target.view = view.join(' ');
    return target;
}

std::vector<std::pair<std::string, QPDFObjectHandle>> FidelityDocument::names(const char *key)
{
    std::vector<std::pair<std::string, QPDFObjectHandle>> entries;
    QPDFObjectHandle trees = catalogue().getKey("/Names");
    if (trees.isDictionary()) {
        walkTree(trees.getKey(key), "/Names", [&](QPDFObjectHandle name, QPDFObjectHandle value) {
            if (name.isString()) {
                entries.emplace_back(name.getStringValue(), value);
            }
        });
    }
    return entries;
}

std::map<long long, QPDFObjectHandle> FidelityDocument::numbers(QPDFObjectHandle tree)
{
    std::map<long long, QPDFObjectHandle> entries;
    walkTree(tree, "/Nums", [&](QPDFObjectHandle number, QPDFObjectHandle value) {
        if (number.isInteger()) {
            entries.emplace(number.getIntValue(), value);
        }
    });
    return entries;
}

QStringList FidelityDocument::labels()
{
    std::map<long long, QPDFObjectHandle> ranges = numbers(catalogue().getKey("/PageLabels"));
    // What is no range does not end the one before.
    std::erase_if(ranges,
                  [](auto &range) { return !QPDFObjectHandle(range.second).isDictionary(); });
    QStringList texts;
    for (long long index = 0; !ranges.empty() && index < m_marks.size(); ++index) {
        auto range = ranges.upper_bound(index);
        if (range == ranges.begin()) {
            texts.append(kNoLabel.toString());
        } else {
            texts.append(labelOf(std::prev(range)->second, index - std::prev(range)->first));
        }
    }
    return texts;
}

QByteArray FidelityDocument::describe(QPDFObjectHandle object)
{
    std::set<QPDFObjGen> path;
    return describe(object, path, 0);
}

QByteArray FidelityDocument::describe(QPDFObjectHandle object, std::set<QPDFObjGen> &path,
                                      int depth)
{
    static const std::set<std::string> leftOut{"/Parent", "/P",           "/StructParent",
                                               "/Length", "/DecodeParms", "/Filter"};
    if (object.isIndirect()) {
        const qsizetype index = indexOf(object);
        if (index >= 0) {
            return '<' + m_marks.at(index).toLatin1() + '>';
        }
        if (path.contains(object.getObjGen()) || depth > kMaxDepth) {
            return "...";
        }
        path.insert(object.getObjGen());
    }
    QByteArray text;
    if (object.isArray()) {
        QByteArrayList parts;
        for (int i = 0; i < object.getArrayNItems(); ++i) {
            parts.append(describe(object.getArrayItem(i), path, depth + 1));
        }
        text = '[' + parts.join(' ') + ']';
    } else if (object.isDictionary() || object.isStream()) {
        QPDFObjectHandle dictionary = object.isStream() ? object.getDict() : object;
        QByteArrayList parts;
        for (const std::string &key : dictionary.getKeys()) {
            if (!leftOut.contains(key)) {
                parts.append(QByteArray::fromStdString(key) + ' ' +
                             describe(dictionary.getKey(key), path, depth + 1));
            }
        }
        text = "<<" + parts.join(' ') + ">>" + fidelityData(object);
    } else if (object.isString()) {
        text = '(' + QByteArray::fromStdString(object.getStringValue()) + ')';
    } else {
        text = QByteArray::fromStdString(object.unparseResolved());
    }
    if (object.isIndirect()) {
        path.erase(object.getObjGen());
    }
    return text;
}
