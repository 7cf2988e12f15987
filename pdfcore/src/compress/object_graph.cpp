// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/object_graph.h"

#include <set>
#include <utility>

namespace pdfcore {

namespace {

bool isContainer(QPDFObjectHandle object)
{
    return object.isDictionary() || object.isArray();
}

void redirectIn(QPDFObjectHandle container, const std::map<QPDFObjGen, QPDFObjectHandle> &others)
{
    const auto other = [&others](QPDFObjectHandle item) {
        return item.isIndirect() ? others.find(item.getObjGen()) : others.end();
    };
    if (container.isDictionary()) {
        for (const auto &[key, value] : container.getDictAsMap()) {
            if (const auto found = other(value); found != others.end()) {
                container.replaceKey(key, found->second);
            }
        }
        return;
    }
    const int count = container.getArrayNItems();
    for (int i = 0; i < count; ++i) {
        if (const auto found = other(container.getArrayItem(i)); found != others.end()) {
            container.setArrayItem(i, found->second);
        }
    }
}

} // namespace

void visitContainers(QPDFObjectHandle object,
                     const std::function<void(QPDFObjectHandle container)> &visit)
{
    std::vector<QPDFObjectHandle> waiting{object.isStream() ? object.getDict() : object};
    while (!waiting.empty()) {
        QPDFObjectHandle container = waiting.back();
        waiting.pop_back();
        if (!isContainer(container)) {
            continue;
        }
        visit(container);
        const auto add = [&waiting](QPDFObjectHandle item) {
            if (!item.isIndirect() && isContainer(item)) {
                waiting.push_back(item);
            }
        };
        if (container.isDictionary()) {
            for (const auto &[key, value] : container.getDictAsMap()) {
                add(value);
            }
        } else {
            for (const QPDFObjectHandle &item : container.getArrayAsVector()) {
                add(item);
            }
        }
    }
}

std::vector<QPDFObjectHandle> reachableObjects(QPDF &document)
{
    std::vector<QPDFObjectHandle> found;
    std::set<QPDFObjGen> seen;
    const auto add = [&](QPDFObjectHandle object) {
        if (object.isIndirect() && seen.insert(object.getObjGen()).second) {
            found.push_back(object);
        }
    };
    const auto look = [&](QPDFObjectHandle container) {
        if (container.isDictionary()) {
            for (const auto &[key, value] : container.getDictAsMap()) {
                add(value);
            }
        } else {
            for (const QPDFObjectHandle &item : container.getArrayAsVector()) {
                add(item);
            }
        }
    };
    visitContainers(document.getTrailer(), look);
    for (std::size_t i = 0; i < found.size(); ++i) {
        const QPDFObjectHandle object = found[i];
        visitContainers(object, look);
    }
    return found;
}

void redirect(QPDF &document, const std::vector<QPDFObjectHandle> &objects,
              const std::map<QPDFObjGen, QPDFObjectHandle> &others)
{
    const auto change = [&others](QPDFObjectHandle container) { redirectIn(container, others); };
    visitContainers(document.getTrailer(), change);
    for (const QPDFObjectHandle &object : objects) {
        visitContainers(object, change);
    }
}

} // namespace pdfcore
