#include "pdfcore/src/action_targets.h"

#include "pdfcore/src/qpdf_objects.h"

#include <algorithm>
#include <vector>

namespace pdfcore {

namespace {

/// Actions behind one another that are looked at.
constexpr int kMaxActionDepth = 64;

bool isSame(QPDFObjectHandle a, QPDFObjectHandle b)
{
    return a.isIndirect() || b.isIndirect() ? isSameObject(a, b) : a.unparse() == b.unparse();
}

/// Under which key an action of this kind names what it acts on; null when it names nothing.
const char *targetKey(QPDFObjectHandle action)
{
    if (hasName(action, "/S", "/Hide"))
        return "/T";
    if (hasName(action, "/S", "/Rendition"))
        return "/AN";
    if (hasName(action, "/S", "/ResetForm") || hasName(action, "/S", "/SubmitForm"))
        return "/Fields";
    if (hasName(action, "/S", "/GoTo3DView") || hasName(action, "/S", "/RichMediaExecute"))
        return "/TA";
    return nullptr;
}

} // namespace

QPDFObjectHandle ActionTargets::target(QPDFObjectHandle named) const
{
    if (named.isIndirect()) {
        if (const auto copied = m_objects.find(named.getObjGen()); copied != m_objects.end())
            return copied->second;
    }
    if (named.isString()) {
        const std::string name = named.getUTF8Value();
        const std::size_t end = std::min(name.find('.'), name.size());
        const auto renamed = m_names.find(name.substr(0, end));
        if (renamed != m_names.end())
            return QPDFObjectHandle::newUnicodeString(renamed->second + name.substr(end));
    }
    return named;
}

QPDFObjectHandle ActionTargets::translated(QPDFObjectHandle action, int depth)
{
    if (!action.isDictionary() || depth >= kMaxActionDepth)
        return action;
    if (action.isIndirect()) {
        const auto [known, isNew] = m_translated.emplace(action.getObjGen(), action);
        if (!isNew)
            return known->second;
    }
    QPDFObjectHandle copied = action.shallowCopy();
    bool isChanged = false;
    const auto put = [&](const char *key, QPDFObjectHandle before, QPDFObjectHandle after) {
        if (isSame(before, after))
            return;
        copied.replaceKey(key, after);
        isChanged = true;
    };
    if (const char *key = targetKey(action); key != nullptr) {
        QPDFObjectHandle named = action.getKey(key);
        if (named.isArray()) {
            std::vector<QPDFObjectHandle> targets = named.getArrayAsVector();
            bool isOther = false;
            for (QPDFObjectHandle &item : targets) {
                QPDFObjectHandle found = target(item);
                isOther = isOther || !isSame(item, found);
                item = found;
            }
            if (isOther)
                put(key, named, QPDFObjectHandle::newArray(targets));
        } else {
            put(key, named, target(named));
        }
    }
    if (QPDFObjectHandle next = action.getKey("/Next"); !next.isNull())
        put("/Next", next, translatedList(next, depth + 1));
    if (!isChanged)
        return action;
    if (action.isIndirect())
        m_translated[action.getObjGen()] = copied;
    return copied;
}

QPDFObjectHandle ActionTargets::translatedList(QPDFObjectHandle actions, int depth)
{
    if (!actions.isArray())
        return translated(actions, depth);
    std::vector<QPDFObjectHandle> list = actions.getArrayAsVector();
    bool isChanged = false;
    for (QPDFObjectHandle &action : list) {
        QPDFObjectHandle own = translated(action, depth);
        isChanged = isChanged || !isSame(action, own);
        action = own;
    }
    return isChanged ? QPDFObjectHandle::newArray(list) : actions;
}

void ActionTargets::apply(QPDFObjectHandle annotation)
{
    for (const char *key : {"/A", "/PA"}) {
        QPDFObjectHandle action = annotation.getKey(key);
        QPDFObjectHandle own = translated(action, 0);
        if (!isSame(action, own))
            annotation.replaceKey(key, own);
    }
    QPDFObjectHandle triggers = annotation.getKey("/AA");
    if (!triggers.isDictionary())
        return;
    QPDFObjectHandle own = triggers.shallowCopy();
    bool isChanged = false;
    for (auto &[trigger, action] : triggers.getDictAsMap()) {
        QPDFObjectHandle translatedAction = translated(action, 0);
        if (isSame(action, translatedAction))
            continue;
        own.replaceKey(trigger, translatedAction);
        isChanged = true;
    }
    if (isChanged)
        annotation.replaceKey("/AA", own);
}

} // namespace pdfcore
