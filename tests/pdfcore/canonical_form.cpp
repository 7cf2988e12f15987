// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/canonical_form.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <deque>
#include <exception>
#include <map>
#include <set>
#include <string>

namespace {

/// Says how a stream is packed, which is told by its data already.
const std::set<std::string> kPacking{"/Length", "/Filter", "/DecodeParms"};

class Speller
{
public:
    explicit Speller(QPDF &document)
        : m_document(document)
    {}

    QByteArray spell()
    {
        for (const char *key : {"/Encrypt", "/Info", "/Root"}) {
            m_text += key;
            add(m_document.getTrailer().getKey(key));
        }
        while (!m_waiting.empty()) {
            QPDFObjectHandle object = m_waiting.front();
            m_waiting.pop_front();
            m_text += "\nobject " + std::to_string(m_numbers.at(object.getObjGen())) + " ";
            addValue(object);
        }
        m_text += "\nversion " + m_document.getPDFVersion();
        return QByteArray::fromStdString(m_text);
    }

private:
    void add(QPDFObjectHandle object)
    {
        if (!object.isIndirect() || object.isNull()) {
            addValue(object);
            return;
        }
        const auto [entry, isNew] =
            m_numbers.emplace(object.getObjGen(), static_cast<int>(m_numbers.size()) + 1);
        if (isNew) {
            m_waiting.push_back(object);
        }
        m_text += " " + std::to_string(entry->second) + " R";
    }

    void addValue(QPDFObjectHandle object)
    {
        if (object.isArray()) {
            m_text += " [";
            for (const QPDFObjectHandle &item : object.getArrayAsVector()) {
                add(item);
            }
            m_text += " ]";
        } else if (object.isStream()) {
            addEntries(object.getDict(), kPacking);
            addData(object);
        } else if (object.isDictionary()) {
            addEntries(object, {});
        } else {
            m_text += " " + object.unparseResolved();
        }
    }

    void addEntries(QPDFObjectHandle dictionary, const std::set<std::string> &without)
    {
        m_text += " <<";
        for (const std::string &key : dictionary.getKeys()) {
            if (without.count(key) == 0) {
                m_text += " " + key;
                add(dictionary.getKey(key));
            }
        }
        m_text += " >>";
    }

    void addData(QPDFObjectHandle stream)
    {
        std::shared_ptr<Buffer> data;
        try {
            data = stream.getStreamData(qpdf_dl_generalized);
        } catch (const std::exception &) {
            data = stream.getRawStreamData();
        }
        const auto size = static_cast<qsizetype>(data->getSize());
        const auto *bytes = reinterpret_cast<const char *>(data->getBuffer());
        m_text += QByteArray(bytes, size).toHex().toStdString();
    }

    QPDF &m_document;
    std::map<QPDFObjGen, int> m_numbers;
    std::deque<QPDFObjectHandle> m_waiting;
    std::string m_text;
};

} // namespace

QByteArray canonicalForm(const QString &path, const QString &password)
{
    try {
        QPDF document;
        document.setSuppressWarnings(true);
        document.processFile(path.toUtf8().constData(), password.toUtf8().constData());
        return Speller(document).spell();
    } catch (const std::exception &exception) {
        return QByteArray("not readable: ") + exception.what();
    }
}
