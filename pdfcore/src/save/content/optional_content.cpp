// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/content/optional_content.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <set>
#include <vector>

namespace pdfcore {

namespace {

std::set<QPDFObjGen> idsOf(QPDFObjectHandle array)
{
    std::set<QPDFObjGen> ids;
    for (const QPDFObjectHandle &item : itemsOf(array)) {
        ids.insert(QPDFObjectHandle(item).getObjGen());
    }
    return ids;
}

/// The dictionary under a key, made when there is none.
QPDFObjectHandle dictionaryIn(QPDFObjectHandle object, const char *key)
{
    QPDFObjectHandle value = object.getKey(key);
    if (!value.isDictionary()) {
        object.replaceKey(key, QPDFObjectHandle::newDictionary());
        value = object.getKey(key);
    }
    return value;
}

void appendTo(QPDFObjectHandle object, const char *key, const std::vector<QPDFObjectHandle> &items)
{
    if (items.empty()) {
        return;
    }
    std::vector<QPDFObjectHandle> all = itemsOf(object.getKey(key));
    all.insert(all.end(), items.begin(), items.end());
    object.replaceKey(key, QPDFObjectHandle::newArray(all));
}

/// Whether a configuration shows a group that it does not speak of (ISO 32000-2, 8.11.4.3).
bool showsByDefault(QPDFObjectHandle configuration)
{
    return !hasName(configuration, "/BaseState", "/OFF");
}

} // namespace

void joinOptionalContent(QPDF &output, SourceDocument &source, ObjectCopier &copier)
{
    QPDFObjectHandle theirs = entryOf(source.root(), "/OCProperties");
    std::vector<QPDFObjectHandle> groups;
    for (const QPDFObjectHandle &group : itemsOf(entryOf(theirs, "/OCGs"))) {
        if (QPDFObjectHandle(group).isDictionary() && QPDFObjectHandle(group).isIndirect()) {
            groups.push_back(group);
        }
    }
    if (groups.empty()) {
        return;
    }

    QPDFObjectHandle configuration = entryOf(theirs, "/D");
    const std::set<QPDFObjGen> on = idsOf(entryOf(configuration, "/ON"));
    const std::set<QPDFObjGen> off = idsOf(entryOf(configuration, "/OFF"));
    std::vector<QPDFObjectHandle> copies;
    std::vector<QPDFObjectHandle> shown;
    std::vector<QPDFObjectHandle> hidden;
    for (QPDFObjectHandle &group : groups) {
        copies.push_back(copier.copy(group));
        const QPDFObjGen id = group.getObjGen();
        const bool isShown = showsByDefault(configuration) ? off.count(id) == 0 : on.count(id) != 0;
        (isShown ? shown : hidden).push_back(copies.back());
    }

    QPDFObjectHandle ours = dictionaryIn(output.getRoot(), "/OCProperties");
    QPDFObjectHandle ourConfiguration = dictionaryIn(ours, "/D");
    appendTo(ours, "/OCGs", copies);
    if (showsByDefault(ourConfiguration)) {
        appendTo(ourConfiguration, "/OFF", hidden);
    } else {
        appendTo(ourConfiguration, "/ON", shown);
    }
    for (const char *key : {"/Order", "/RBGroups", "/Locked", "/AS"}) {
        appendTo(ourConfiguration, key, itemsOf(copier.copy(entryOf(configuration, key))));
    }
}

} // namespace pdfcore
