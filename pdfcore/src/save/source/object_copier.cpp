// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/source/object_copier.h"

#include <string>
#include <utility>

namespace pdfcore {

/// Hands out the data of copied streams as it stands in the source document.
class ObjectCopier::StreamData final : public QPDFObjectHandle::StreamDataProvider
{
public:
    explicit StreamData(std::shared_ptr<QPDF> source)
        : QPDFObjectHandle::StreamDataProvider(true)
        , m_source(std::move(source))
    {}

    void add(QPDFObjGen target, QPDFObjectHandle stream) { m_streams[target] = stream; }

    bool provideStreamData(const QPDFObjGen &target, Pipeline *pipeline, bool suppressWarnings,
                           bool willRetry) override
    {
        return m_streams.at(target).pipeStreamData(pipeline, nullptr, 0, qpdf_dl_none,
                                                   suppressWarnings, willRetry);
    }

private:
    std::shared_ptr<QPDF> m_source;
    std::map<QPDFObjGen, QPDFObjectHandle> m_streams;
};

namespace {

bool isTreeNode(QPDFObjectHandle &object)
{
    return object.isDictionaryOfType("/Pages");
}

bool isPage(QPDFObjectHandle &object)
{
    return object.isDictionaryOfType("/Page");
}

bool belongsToStructure(const std::string &key)
{
    return key == "/StructParent" || key == "/StructParents";
}

} // namespace

ObjectCopier::ObjectCopier(QPDF &target, std::shared_ptr<QPDF> source)
    : m_target(target)
    , m_source(std::move(source))
    , m_streams(std::make_shared<StreamData>(m_source))
{}

ObjectCopier::~ObjectCopier() = default;

void ObjectCopier::map(QPDFObjectHandle from, QPDFObjectHandle to)
{
    m_copies[from.getObjGen()] = to;
}

QPDFObjectHandle ObjectCopier::copy(QPDFObjectHandle object)
{
    QPDFObjectHandle copied = translate(object);
    copyWaiting();
    return copied;
}

QPDFObjectHandle ObjectCopier::reference(QPDFObjectHandle object)
{
    const QPDFObjGen id = object.getObjGen();
    if (const auto known = m_copies.find(id); known != m_copies.end()) {
        return known->second;
    }
    QPDFObjectHandle copied;
    if (isPage(object) || isTreeNode(object)) {
        copied = QPDFObjectHandle::newNull();
    } else if (object.isStream()) {
        copied = QPDFObjectHandle::newStream(&m_target);
    } else {
        copied = QPDFObjectHandle::newReserved(&m_target);
    }
    m_copies[id] = copied;
    if (copied.isIndirect()) {
        m_waiting.push_back(object);
    }
    return copied;
}

QPDFObjectHandle ObjectCopier::translate(QPDFObjectHandle object)
{
    return object.isIndirect() ? reference(object) : translateValue(object);
}

/// What the value of an object looks like in the target. It is entered as far as it is direct, and
/// QPDF reads no file whose direct objects are nested too deep.
QPDFObjectHandle ObjectCopier::translateValue(QPDFObjectHandle object)
{
    if (object.isArray()) {
        std::vector<QPDFObjectHandle> items = object.getArrayAsVector();
        for (QPDFObjectHandle &item : items) {
            item = translate(item);
        }
        return QPDFObjectHandle::newArray(items);
    }
    if (object.isDictionary()) {
        QPDFObjectHandle copied = QPDFObjectHandle::newDictionary();
        for (auto &[key, value] : object.getDictAsMap()) {
            if (!belongsToStructure(key)) {
                copied.replaceKey(key, translate(value));
            }
        }
        return copied;
    }
    return object.shallowCopy();
}

void ObjectCopier::copyWaiting()
{
    while (!m_waiting.empty()) {
        QPDFObjectHandle object = m_waiting.back();
        m_waiting.pop_back();
        QPDFObjectHandle copied = m_copies[object.getObjGen()];
        if (object.isStream()) {
            QPDFObjectHandle dictionary = translate(object.getDict());
            QPDFObjectHandle filter = dictionary.getKey("/Filter");
            QPDFObjectHandle parameters = dictionary.getKey("/DecodeParms");
            copied.replaceDict(dictionary);
            m_streams->add(copied.getObjGen(), object);
            copied.replaceStreamData(m_streams, filter, parameters);
        } else {
            m_target.replaceReserved(copied, translateValue(object));
        }
    }
}

} // namespace pdfcore
