// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/qpdf_source.h"

#include "pdfcore/src/qpdf/password_candidates.h"
#include "pdfcore/src/qpdf/qpdf_io.h"
#include "pdfcore/src/qpdf/qpdf_protection.h"

#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFExc.hh>

#include <QFileInfo>

#include <array>
#include <set>
#include <string_view>

namespace pdfcore {

namespace {

/// Levels of page tree nodes that are followed.
constexpr std::size_t kMaxTreeDepth = 512;

constexpr std::string_view kResources{"/Resources"};
constexpr std::array kInherited{"/Resources", "/MediaBox", "/CropBox", "/Rotate"};
using Inherited = std::array<QPDFObjectHandle, kInherited.size()>;

struct TreeLevel
{
    QPDFObjectHandle kids;
    Inherited values; ///< What pages below the node inherit; uninitialised where that is nothing.
    int next = 0;
};

bool hasType(QPDFObjectHandle &object, const char *type)
{
    QPDFObjectHandle own = object.getKey("/Type");
    return own.isName() && own.getName() == type;
}

/// Puts a flat page tree of the given pages in the place of the document's own, which QPDF may not
/// be able to follow.
void replacePageTree(QPDF &document, std::vector<QPDFObjectHandle> &pages)
{
    QPDFObjectHandle tree = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
    for (QPDFObjectHandle &page : pages) {
        page.replaceKey("/Parent", tree);
    }
    tree.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
    tree.replaceKey("/Kids", QPDFObjectHandle::newArray(pages));
    tree.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(pages.size())));
    document.getRoot().replaceKey("/Pages", tree);
}

/// Makes `page` an object that stands for itself, with what it inherits, and adds it to `pages`. A
/// page that the tree names twice inherits what it does where it comes first.
void addPage(QPDF &document, QPDFObjectHandle page, const Inherited &inherited,
             std::set<QPDFObjGen> &visited, std::vector<QPDFObjectHandle> &pages)
{
    if (!page.isIndirect()) {
        page = document.makeIndirectObject(page);
    }
    pages.push_back(page);
    if (!visited.insert(page.getObjGen()).second) {
        return;
    }
    for (std::size_t i = 0; i < kInherited.size(); ++i) {
        if (inherited[i].isInitialized() && !page.hasKey(kInherited[i])) {
            page.replaceKey(kInherited[i], inherited[i]);
        }
    }
    page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
}

/// What pages below a node inherit, from it or from above (ISO 32000-2, 7.7.3.4).
Inherited inheritedBelow(QPDF &document, QPDFObjectHandle node, const Inherited &above)
{
    Inherited values = above;
    for (std::size_t i = 0; i < kInherited.size(); ++i) {
        if (!node.hasKey(kInherited[i])) {
            continue;
        }
        // Resources that many pages inherit stay one object.
        if (kInherited[i] == kResources && !node.getKey(kInherited[i]).isIndirect()) {
            node.replaceKey(kInherited[i], document.makeIndirectObject(node.getKey(kInherited[i])));
        }
        values[i] = node.getKey(kInherited[i]);
    }
    return values;
}

/// Lets a stream among pages and nodes be its dictionary, which is what readers look at.
QPDFObjectHandle asDictionary(QPDF &document, QPDFObjectHandle object)
{
    if (!object.isStream()) {
        return object;
    }
    QPDFObjectHandle dictionary = object.getDict().shallowCopy();
    for (const char *key : {"/Length", "/Filter", "/DecodeParms"}) {
        dictionary.removeKey(key);
    }
    const QPDFObjGen id = object.getObjGen();
    document.replaceObject(id, dictionary);
    return document.getObject(id);
}

/// What a page that stands for the whole tree inherits from those that it names as its parents.
Inherited inheritedAbove(QPDF &document, QPDFObjectHandle page)
{
    std::vector<QPDFObjectHandle> nodes;
    std::set<QPDFObjGen> visited;
    for (QPDFObjectHandle node = page.getKey("/Parent");
         node.isDictionary() && node.isIndirect() && nodes.size() < kMaxTreeDepth &&
         visited.insert(node.getObjGen()).second;
         node = node.getKey("/Parent")) {
        nodes.push_back(node);
    }
    Inherited values;
    for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
        values = inheritedBelow(document, *node, values);
    }
    return values;
}

bool isPasswordError(const QPDFExc &exception)
{
    return exception.getErrorCode() == qpdf_e_password;
}

/// Opens what `newInput` makes, anew for each spelling of the password.
template <typename NewInput>
std::shared_ptr<QPDF> openFrom(NewInput &&newInput, const QString &password, Damage damage,
                               EngineError *outcome)
{
    *outcome = {};
    QList<QByteArray> candidates = qpdfPasswordCandidates(password);
    if (!password.isEmpty()) {
        candidates.append(QByteArray());
    }
    for (const QByteArray &candidate : candidates) {
        try {
            auto document = std::make_shared<QPDF>();
            document->setSuppressWarnings(true);
            document->setAttemptRecovery(damage == Damage::Repair);
            document->processInputSource(newInput(), candidate.constData());
            return document;
        } catch (const QPDFExc &exception) {
            if (isPasswordError(exception)) {
                continue;
            }
            *outcome = qpdfReadError(exception);
            return nullptr;
        } catch (const std::exception &exception) {
            *outcome = qpdfReadError(exception);
            return nullptr;
        }
    }
    if (password.isEmpty()) {
        *outcome = {PdfBackendError::PasswordRequired, QStringLiteral("The file is encrypted.")};
    } else {
        *outcome = {PdfBackendError::InvalidPassword, QStringLiteral("The password does not fit.")};
    }
    return nullptr;
}

/// Opens what can be read without the key of the document; null when that is nothing.
template <typename NewInput>
std::shared_ptr<QPDF> openWithoutKey(NewInput &&newInput, Damage damage)
{
    // A key that is given is not looked at until something has to be decrypted.
    static const std::string anyKey(64, '0');
    try {
        auto document = std::make_shared<QPDF>();
        document->setSuppressWarnings(true);
        document->setAttemptRecovery(damage == Damage::Repair);
        document->setPasswordIsHexKey(true);
        document->processInputSource(newInput(), anyKey.c_str());
        return protectsAttachmentsOnly(*document) ? document : nullptr;
    } catch (const std::exception &) {
        return nullptr;
    }
}

template <typename NewInput>
std::shared_ptr<QPDF> openWithOrWithoutKey(NewInput &&newInput, const QString &password,
                                           Damage damage, EngineError *outcome)
{
    std::shared_ptr<QPDF> document = openFrom(newInput, password, damage, outcome);
    if (!document && outcome->code != PdfBackendError::InvalidDocument) {
        document = openWithoutKey(newInput, damage);
        *outcome = document ? EngineError{} : *outcome;
    }
    return document;
}

} // namespace

EngineError qpdfReadError(const std::exception &exception)
{
    QString reason;
    if (const auto *detail = dynamic_cast<const QPDFExc *>(&exception)) {
        reason = QString::fromStdString(detail->getMessageDetail());
        if (isPasswordError(*detail)) {
            return {PdfBackendError::InvalidPassword, reason};
        }
    }
    if (reason.isEmpty()) {
        reason = QString::fromUtf8(exception.what());
    }
    return {PdfBackendError::InvalidDocument, reason};
}

std::shared_ptr<QPDF> openQpdf(const QString &path, const QString &password, EngineError *outcome,
                               Damage damage, QDeadlineTimer deadline)
{
    const QFileInfo info(path);
    if (!info.isFile()) {
        *outcome = {PdfBackendError::FileNotFound, QStringLiteral("There is no such file.")};
        return nullptr;
    }
    return openWithOrWithoutKey([&] { return std::make_shared<QFileInput>(path, deadline); },
                                password, damage, outcome);
}

std::shared_ptr<QPDF> openQpdf(const QByteArray &content, const QString &password,
                               EngineError *outcome)
{
    const std::string bytes = content.toStdString();
    return openWithOrWithoutKey(
        [&] { return std::make_shared<BufferInputSource>("memory", bytes); }, password,
        Damage::Repair, outcome);
}

std::vector<QPDFObjectHandle> pagesOf(QPDF &document)
{
    std::vector<QPDFObjectHandle> pages;
    std::vector<TreeLevel> levels;
    std::set<QPDFObjGen> visitedNodes;
    std::set<QPDFObjGen> visitedPages;
    const auto pushLevel = [&](const QPDFObjectHandle &node, const QPDFObjectHandle &kids) {
        if (levels.size() >= kMaxTreeDepth) {
            return;
        }
        for (const QPDFObjectHandle &object : {node, kids}) {
            QPDFObjectHandle visited = object;
            if (visited.isIndirect() && !visitedNodes.insert(visited.getObjGen()).second) {
                return;
            }
        }
        const Inherited above = levels.empty() ? Inherited() : levels.back().values;
        levels.push_back({kids, inheritedBelow(document, node, above), 0});
    };

    QPDFObjectHandle root = asDictionary(document, document.getRoot().getKey("/Pages"));
    if (!root.isDictionary()) {
        return pages;
    }
    if (QPDFObjectHandle kids = root.getKey("/Kids"); kids.isArray()) {
        pushLevel(root, kids);
    } else if (hasType(root, "/Page")) {
        addPage(document, root, inheritedAbove(document, root), visitedPages, pages);
    }
    while (!levels.empty()) {
        TreeLevel &level = levels.back();
        if (level.next >= level.kids.getArrayNItems()) {
            levels.pop_back();
            continue;
        }
        QPDFObjectHandle kid = asDictionary(document, level.kids.getArrayItem(level.next++));
        if (!kid.isDictionary() || kid.getObjGen() == document.getRoot().getObjGen()) {
            continue;
        }
        if (QPDFObjectHandle kids = kid.getKey("/Kids"); kids.isArray()) {
            pushLevel(kid, kids);
        } else if (!hasType(kid, "/Pages")) {
            addPage(document, kid, Inherited(level.values), visitedPages, pages);
        }
    }
    replacePageTree(document, pages);
    return pages;
}

} // namespace pdfcore
