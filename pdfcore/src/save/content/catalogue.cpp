// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/content/catalogue.h"

#include "pdfcore/src/qpdf/key_tree.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/save/content/optional_content.h"
#include "pdfcore/src/save/interactive/article_threads.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace pdfcore {

namespace {

/// The name dictionary of the catalogue (ISO 32000-2, 7.7.4), made when there is none.
QPDFObjectHandle namesOf(QPDF &document)
{
    QPDFObjectHandle names = document.getRoot().getKey("/Names");
    if (!names.isDictionary()) {
        names = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
        document.getRoot().replaceKey("/Names", names);
    }
    return names;
}

void pruneNamedDestinations(SourceDocument &main, LinkPruner &links)
{
    QPDFObjectHandle catalogue = main.root();
    // They are all read before the first one goes: one name may stand for another.
    if (main.namedDestinations().empty()) {
        return;
    }
    if (QPDFObjectHandle old = catalogue.getKey("/Dests"); old.isDictionary()) {
        for (auto &[name, destination] : old.getDictAsMap()) {
            QPDFObjectHandle pruned = links.prunedDestination(destination).use;
            if (pruned.isNull()) {
                old.removeKey(name);
            } else {
                old.replaceKey(name, pruned);
            }
        }
    }
    QPDFObjectHandle names = catalogue.getKey("/Names");
    if (!entryOf(names, "/Dests").isDictionary()) {
        return;
    }
    NameEntries kept;
    bool isChanged = false;
    for (auto &[name, destination] : readNameTree(names.getKey("/Dests"))) {
        QPDFObjectHandle pruned = links.prunedDestination(destination).use;
        isChanged = isChanged || pruned.unparse() != destination.unparse();
        if (!pruned.isNull()) {
            kept.emplace_back(name, pruned);
        }
    }
    // A tree that is written anew is without what was damaged in it.
    if (!isChanged) {
        return;
    }
    if (kept.empty()) {
        names.removeKey("/Dests");
    } else {
        names.replaceKey("/Dests", newNameTree(main.document(), kept));
    }
}

/// Takes the names of pages that are gone out.
void pruneNamedPages(SourceDocument &main)
{
    QPDFObjectHandle names = main.root().getKey("/Names");
    if (!entryOf(names, "/Pages").isDictionary()) {
        return;
    }
    const NameEntries before = readNameTree(names.getKey("/Pages"));
    NameEntries kept;
    for (const auto &[name, page] : before) {
        if (!main.isGone(page)) {
            kept.emplace_back(name, page);
        }
    }
    if (kept.empty()) {
        names.removeKey("/Pages");
    } else if (kept.size() != before.size()) {
        names.replaceKey("/Pages", newNameTree(main.document(), kept));
    }
}

void pruneOpening(SourceDocument &main, LinkPruner &links)
{
    QPDFObjectHandle catalogue = main.root();
    QPDFObjectHandle opening = catalogue.getKey("/OpenAction");
    if (opening.isNull()) {
        return;
    }
    if (opening.isDictionary()) {
        links.pruneAction(catalogue, "/OpenAction");
        return;
    }
    QPDFObjectHandle pruned = links.prunedDestination(opening).use;
    if (pruned.isNull()) {
        catalogue.removeKey("/OpenAction");
    } else {
        catalogue.replaceKey("/OpenAction", pruned);
    }
}

/// `name` with a number in front of what comes behind its last full stop.
std::string numbered(const std::string &name, int number)
{
    const std::size_t dot = name.rfind('.');
    const std::string suffix = "_" + std::to_string(number);
    return dot == std::string::npos ? name + suffix
                                    : name.substr(0, dot) + suffix + name.substr(dot);
}

/// Names of attachments that are in use, and the numbers to try next behind them.
struct TakenNames
{
    std::set<std::string> names;
    std::map<std::string, int> numbers;
};

/// A name like `name` that is not among those taken, which it joins. Names are as in the file.
std::string freeFileName(const std::string &name, TakenNames &taken)
{
    if (taken.names.insert(name).second) {
        return name;
    }
    const std::string text = QPDFObjectHandle::newString(name).getUTF8Value();
    for (int &number = taken.numbers.emplace(name, 2).first->second;; ++number) {
        std::string free =
            QPDFObjectHandle::newUnicodeString(numbered(text, number)).getStringValue();
        if (taken.names.insert(free).second) {
            return free;
        }
    }
}

} // namespace

std::map<std::string, std::string> addAttachments(QPDF &output, SourceDocument &source,
                                                  ObjectCopier &copier)
{
    std::map<std::string, std::string> renamed;
    const NameEntries theirs =
        readNameTree(entryOf(entryOf(source.root(), "/Names"), "/EmbeddedFiles"));
    if (theirs.empty()) {
        return renamed;
    }
    QPDFObjectHandle names = namesOf(output);
    NameEntries all;
    TakenNames taken;
    // Damaged documents use one name for several files already.
    for (const auto &[name, file] : readNameTree(names.getKey("/EmbeddedFiles"))) {
        all.emplace_back(freeFileName(name, taken), file);
    }
    for (const auto &[name, file] : theirs) {
        all.emplace_back(freeFileName(name, taken), copier.copy(file));
        if (all.back().first != name) {
            renamed.emplace(name, all.back().first);
        }
    }
    names.replaceKey("/EmbeddedFiles", newNameTree(output, all));
    return renamed;
}

namespace {

void addNamedDestinations(QPDF &output, SourceDocument &source, ObjectCopier &copier,
                          std::set<std::string> taken)
{
    NameEntries added;
    for (const auto &[name, destination] : source.namedDestinations()) {
        const SourceDocument::Target target = source.resolve(destination);
        if (target.kind == SourceDocument::Target::Kind::Page && source.isKept(target.page)) {
            added.emplace_back(name, copier.copy(source.explicitAddress(target)));
        }
    }
    if (added.empty()) {
        return;
    }
    QPDFObjectHandle names = namesOf(output);
    NameEntries all = readNameTree(names.getKey("/Dests"));
    for (const auto &[name, destination] : all) {
        taken.insert(name);
    }
    if (QPDFObjectHandle old = output.getRoot().getKey("/Dests"); old.isDictionary()) {
        for (const std::string &name : old.getKeys()) {
            taken.insert(name.substr(1));
        }
    }
    for (auto &[name, destination] : added) {
        if (taken.insert(name).second) {
            all.emplace_back(name, destination);
        }
    }
    names.replaceKey("/Dests", newNameTree(output, all));
}

} // namespace

void pruneCatalogue(SourceDocument &main, LinkPruner &links)
{
    links.pruneTriggers(main.root());
    pruneNamedPages(main);
    pruneNamedDestinations(main, links);
    pruneOpening(main, links);
    pruneThreads(main);
    main.root().removeKey("/Perms");
}

void dropSequenceEntries(SourceDocument &main)
{
    QPDFObjectHandle catalogue = main.root();
    if (catalogue.hasKey("/DPartRoot")) {
        catalogue.removeKey("/DPartRoot");
        for (const int index : main.keptPages()) {
            main.page(index).removeKey("/DPart");
        }
    }
    if (QPDFObjectHandle preferences = catalogue.getKey("/ViewerPreferences");
        preferences.isDictionary()) {
        preferences.removeKey("/PrintPageRange");
    }
}

void addToCatalogue(QPDF &output, SourceDocument &source, ObjectCopier &copier,
                    const std::set<std::string> &brokenNames)
{
    addNamedDestinations(output, source, copier, brokenNames);
    joinOptionalContent(output, source, copier);
}

} // namespace pdfcore
