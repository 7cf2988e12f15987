// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/action_targets.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <vector>

namespace pdfcore {

namespace {

/// Actions behind one another that are looked at.
constexpr int kMaxActionDepth = 64;

/// Actions that are looked at for one set of targets; a hostile file could have them looked at over
/// and over.
constexpr std::size_t kMaxSteps = 1'000'000;

bool isSame(QPDFObjectHandle a, QPDFObjectHandle b)
{
    return a.isIndirect() || b.isIndirect() ? isSameObject(a, b) : a.unparse() == b.unparse();
}

/// Under which key an action of this kind names what it acts on (ISO 32000-2, 12.6.4 and 12.7.6);
/// null when it names nothing.
const char *targetKey(QPDFObjectHandle action)
{
    if (hasName(action, "/S", "/Hide")) {
        return "/T";
    }
    if (hasName(action, "/S", "/Rendition")) {
        return "/AN";
    }
    if (hasName(action, "/S", "/ResetForm") || hasName(action, "/S", "/SubmitForm")) {
        return "/Fields";
    }
    if (hasName(action, "/S", "/GoTo3DView") || hasName(action, "/S", "/RichMediaExecute")) {
        return "/TA";
    }
    return nullptr;
}

} // namespace

QPDFObjectHandle ActionTargets::target(QPDFObjectHandle named) const
{
    if (named.isIndirect()) {
        if (const auto copied = m_objects.find(named.getObjGen()); copied != m_objects.end()) {
            return copied->second;
        }
    }
    if (named.isString()) {
        const std::string name = named.getUTF8Value();
        // Names of damaged fields have full stops of their own.
        for (std::size_t end = name.size(); end != std::string::npos && end > 0;
             end = name.rfind('.', end - 1)) {
            const auto renamed = m_fields.find(name.substr(0, end));
            if (renamed != m_fields.end()) {
                return QPDFObjectHandle::newUnicodeString(renamed->second + name.substr(end));
            }
        }
    }
    return named;
}

/// The file within a file that an action leads into (ISO 32000-2, 12.6.4.4).
QPDFObjectHandle ActionTargets::attachmentTarget(QPDFObjectHandle target) const
{
    QPDFObjectHandle name = entryOf(target, "/N");
    if (!hasName(target, "/R", "/C") || !name.isString()) {
        return target;
    }
    const auto renamed = m_attachments.find(name.getStringValue());
    if (renamed == m_attachments.end()) {
        return target;
    }
    QPDFObjectHandle own = target.shallowCopy();
    own.replaceKey("/N", QPDFObjectHandle::newString(renamed->second));
    return own;
}

/// What the items of a list are now. A list that is an object stays one.
QPDFObjectHandle ActionTargets::targetList(QPDFObjectHandle targets)
{
    if (targets.isIndirect()) {
        const auto known = m_translated.find(targets.getObjGen());
        if (known != m_translated.end()) {
            return known->second;
        }
    }
    std::vector<QPDFObjectHandle> items = targets.getArrayAsVector();
    m_steps += items.size();
    bool isChanged = false;
    for (QPDFObjectHandle &item : items) {
        QPDFObjectHandle found = target(item);
        isChanged = isChanged || !isSame(item, found);
        item = found;
    }
    QPDFObjectHandle own = isChanged ? QPDFObjectHandle::newArray(items) : targets;
    if (!targets.isIndirect()) {
        return own;
    }
    if (isChanged) {
        own = targets.getOwningQPDF()->makeIndirectObject(own);
    }
    m_translated[targets.getObjGen()] = own;
    return own;
}

QPDFObjectHandle ActionTargets::translated(QPDFObjectHandle action, int depth)
{
    if (!action.isDictionary() || depth >= kMaxActionDepth || ++m_steps > kMaxSteps) {
        return action;
    }
    if (!action.isIndirect()) {
        return translatedOne(action, depth);
    }
    const auto [known, isNew] = m_translated.emplace(action.getObjGen(), action);
    if (!isNew) {
        return known->second;
    }
    QPDFObjectHandle own = translatedOne(action, depth);
    m_translated[action.getObjGen()] = own;
    return own;
}

QPDFObjectHandle ActionTargets::translatedOne(QPDFObjectHandle action, int depth)
{
    QPDFObjectHandle copied = action.shallowCopy();
    bool isChanged = false;
    const auto put = [&](const char *key, QPDFObjectHandle before, QPDFObjectHandle after) {
        if (isSame(before, after)) {
            return;
        }
        copied.replaceKey(key, after);
        isChanged = true;
    };
    if (const char *key = targetKey(action); key != nullptr) {
        QPDFObjectHandle named = action.getKey(key);
        put(key, named, named.isArray() ? targetList(named) : target(named));
    }
    if (hasName(action, "/S", "/GoToE") && !action.hasKey("/F")) {
        QPDFObjectHandle file = action.getKey("/T");
        put("/T", file, attachmentTarget(file));
    }
    if (QPDFObjectHandle next = action.getKey("/Next"); !next.isNull()) {
        put("/Next", next, translatedList(next, depth + 1));
    }
    return isChanged ? copied : action;
}

QPDFObjectHandle ActionTargets::translatedList(QPDFObjectHandle actions, int depth)
{
    if (!actions.isArray()) {
        return translated(actions, depth);
    }
    if (actions.isIndirect()) {
        const auto [known, isNew] = m_translated.emplace(actions.getObjGen(), actions);
        if (!isNew) {
            return known->second;
        }
    }
    std::vector<QPDFObjectHandle> list = actions.getArrayAsVector();
    bool isChanged = false;
    for (QPDFObjectHandle &action : list) {
        QPDFObjectHandle own = translated(action, depth);
        isChanged = isChanged || !isSame(action, own);
        action = own;
    }
    QPDFObjectHandle own = isChanged ? QPDFObjectHandle::newArray(list) : actions;
    if (!actions.isIndirect()) {
        return own;
    }
    if (isChanged) {
        own = actions.getOwningQPDF()->makeIndirectObject(own);
    }
    m_translated[actions.getObjGen()] = own;
    return own;
}

void ActionTargets::apply(QPDFObjectHandle object)
{
    for (const char *key : {"/A", "/PA"}) {
        QPDFObjectHandle action = object.getKey(key);
        QPDFObjectHandle own = translated(action, 0);
        if (!isSame(action, own)) {
            object.replaceKey(key, own);
        }
    }
    QPDFObjectHandle triggers = object.getKey("/AA");
    if (!triggers.isDictionary()) {
        return;
    }
    QPDFObjectHandle own = triggers.shallowCopy();
    bool isChanged = false;
    for (auto &[trigger, action] : triggers.getDictAsMap()) {
        QPDFObjectHandle translatedAction = translated(action, 0);
        if (isSame(action, translatedAction)) {
            continue;
        }
        own.replaceKey(trigger, translatedAction);
        isChanged = true;
    }
    if (isChanged) {
        object.replaceKey("/AA", own);
    }
}

} // namespace pdfcore
