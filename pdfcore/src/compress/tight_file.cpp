// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/tight_file.h"

#include "pdfcore/src/compress/deflate.h"
#include "pdfcore/src/qpdf/qpdf_io.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <QByteArray>
#include <QFile>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFXRefEntry.hh>

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace pdfcore {

namespace {

constexpr qint64 kChunk = qint64{1} << 18;
/// Bytes that the best compression is for; it cannot be cancelled.
constexpr qsizetype kMaxBest = qsizetype{2} * 1024 * 1024;
/// The last field of what is said about an object is a place in a stream, of which QPDF puts a
/// hundred into one, or a generation, of which it knows one.
constexpr int kTypes = 3;

/// What a cross-reference stream says about an object (ISO 32000-2, table 18).
struct Entry
{
    std::uint64_t type = 0;
    std::uint64_t second = 0;
    std::uint64_t third = 0;
};

/// Data in the form in which they and what has to be said about it take the least.
struct Coded
{
    QByteArray data;
    QByteArray entries; ///< Of the dictionary.

    [[nodiscard]] qsizetype size() const { return data.size() + entries.size(); }
};

QByteArray bytesOf(const std::string &text)
{
    return QByteArray::fromStdString(text);
}

const Coded &smaller(const Coded &one, const Coded &other)
{
    return other.size() < one.size() ? other : one;
}

/// `entries` name more than the filter.
Coded coded(const QByteArray &plain, const QByteArray &entries, const PdfCancelFlag &cancel)
{
    Coded best{plain, {}};
    for (const Effort effort : {Effort::Best, Effort::Good}) {
        if (effort == Effort::Best && plain.size() > kMaxBest) {
            continue;
        }
        const QByteArray packed = deflated(plain, effort, cancel);
        if (!packed.isEmpty()) {
            best = smaller(best, {packed, "/Filter/FlateDecode" + entries});
        }
    }
    return best;
}

int bytesFor(std::uint64_t largest)
{
    int count = 0;
    for (; largest != 0; largest >>= 8U) {
        ++count;
    }
    return count;
}

void appendField(QByteArray &to, std::uint64_t value, int width)
{
    for (int i = width - 1; i >= 0; --i) {
        to.append(static_cast<char>(value >> (8U * static_cast<unsigned>(i)) & 0xffU));
    }
}

/// Each row less the one above it, after the number of this filter.
QByteArray differences(const QByteArray &rows, int width)
{
    QByteArray out;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (i % width == 0) {
            out.append('\x02');
        }
        const int above = i >= width ? rows.at(i - width) : 0;
        out.append(static_cast<char>(rows.at(i) - above));
    }
    return out;
}

/// The other keys of a dictionary with their values.
QByteArray entriesBut(QPDFObjectHandle dict, const std::set<std::string> &keys)
{
    QByteArray text;
    for (const std::string &key : dict.getKeys()) {
        if (keys.find(key) == keys.end()) {
            text += bytesOf(QPDFObjectHandle::newName(key).unparse()) + ' ' +
                    bytesOf(dict.getKey(key).unparse());
        }
    }
    return text;
}

class TightWriter
{
public:
    TightWriter(const QString &path, Pipeline &to, const PdfCancelFlag &cancel)
        : m_file(path)
        , m_to(to)
        , m_cancel(cancel)
    {
        m_document.setSuppressWarnings(true);
        m_document.setAttemptRecovery(false);
        m_document.processInputSource(std::make_shared<QFileInput>(path));
        if (!m_file.open(QIODevice::ReadOnly)) {
            throw std::runtime_error(m_file.errorString().toStdString());
        }
    }

    void write()
    {
        findObjects();
        qint64 begin = 0;
        int before = 0;
        for (const auto &[offset, number] : m_places) {
            writePart(before, begin, offset);
            begin = offset;
            before = number;
        }
        // The last one is what told about all of them.
        writeReferences(before);
    }

private:
    void findObjects()
    {
        for (const auto &[object, entry] : m_document.getXRefTable()) {
            Entry &known = m_entries[object.getObj()];
            known.type = static_cast<std::uint64_t>(entry.getType());
            if (entry.getType() == 1) {
                m_places[entry.getOffset()] = object.getObj();
            } else if (entry.getType() == 2) {
                known.second = static_cast<std::uint64_t>(entry.getObjStreamNumber());
                known.third = static_cast<std::uint64_t>(entry.getObjStreamIndex());
                m_packs.insert(entry.getObjStreamNumber());
            }
        }
        const QPDFObjectHandle last =
            m_document.getObject(m_places.empty() ? 0 : m_places.rbegin()->second, 0);
        if (!hasName(QPDFObjectHandle(last).isStream() ? QPDFObjectHandle(last).getDict() : last,
                     "/Type", "/XRef")) {
            throw std::runtime_error("the file does not end in a cross-reference stream");
        }
    }

    /// What stands from `begin` to `end`: the object `number`, or what comes before all.
    void writePart(int number, qint64 begin, qint64 end)
    {
        if (number != 0) {
            m_entries[number].second = m_written;
        }
        if (m_packs.find(number) != m_packs.end()) {
            writePack(number);
            return;
        }
        if (!m_file.seek(begin)) {
            throw std::runtime_error(m_file.errorString().toStdString());
        }
        while (begin < end) {
            const QByteArray chunk = m_file.read(std::min(end - begin, kChunk));
            if (chunk.isEmpty() || m_cancel.isSet()) {
                throw std::runtime_error("the file ends early");
            }
            put(chunk);
            begin += chunk.size();
        }
    }

    void writePack(int number)
    {
        QPDFObjectHandle pack = m_document.getObject(number, 0);
        const std::shared_ptr<Buffer> data = pack.getStreamData(qpdf_dl_generalized);
        const Coded best = coded(QByteArray(reinterpret_cast<const char *>(data->getBuffer()),
                                            static_cast<qsizetype>(data->getSize())),
                                 {}, m_cancel);
        putStream(number, entriesBut(pack.getDict(), {"/Length", "/Filter", "/DecodeParms"}), best);
    }

    void writeReferences(int number)
    {
        const std::uint64_t offset = m_written;
        m_entries[number] = {1, offset, 0};
        m_entries[0] = {};
        std::uint64_t third = 0;
        for (const auto &[object, entry] : m_entries) {
            third = std::max(third, entry.third);
        }
        const std::array<int, kTypes> widths{1, bytesFor(offset), bytesFor(third)};
        const int width = widths[0] + widths[1] + widths[2];
        QByteArray rows;
        const int count = m_entries.rbegin()->first + 1;
        for (int i = 0; i < count; ++i) {
            const Entry &entry = m_entries[i];
            appendField(rows, entry.type, widths[0]);
            appendField(rows, entry.second, widths[1]);
            appendField(rows, entry.third, widths[2]);
        }
        const QByteArray parameters =
            "/DecodeParms<</Predictor 12/Columns " + QByteArray::number(width) + ">>";
        const Coded best = smaller(coded(rows, {}, m_cancel),
                                   coded(differences(rows, width), parameters, m_cancel));
        QByteArray entries = entriesBut(m_document.getTrailer(), {"/Length", "/Filter", "/Index",
                                                                  "/DecodeParms", "/W", "/Size"});
        entries += "/Size " + QByteArray::number(count) + "/W[" + QByteArray::number(widths[0]) +
                   ' ' + QByteArray::number(widths[1]) + ' ' + QByteArray::number(widths[2]) + ']';
        putStream(number, entries, best);
        put("startxref\n" + QByteArray::number(offset) + "\n%%EOF\n");
        m_to.finish();
    }

    void putStream(int number, const QByteArray &entries, const Coded &data)
    {
        put(QByteArray::number(number) + " 0 obj\n<<" + entries + data.entries + "/Length " +
            QByteArray::number(data.data.size()) + ">>\nstream\n" + data.data +
            "\nendstream\nendobj\n");
    }

    void put(const QByteArray &bytes)
    {
        if (m_cancel.isSet()) {
            throw std::runtime_error("cancelled");
        }
        m_to.write(reinterpret_cast<const unsigned char *>(bytes.constData()),
                   static_cast<std::size_t>(bytes.size()));
        m_written += static_cast<std::uint64_t>(bytes.size());
    }

    QPDF m_document;
    QFile m_file;
    Pipeline &m_to;
    PdfCancelFlag m_cancel;
    std::map<int, Entry> m_entries;
    std::map<qint64, int> m_places; ///< The objects that are not packed in others.
    std::set<int> m_packs;
    std::uint64_t m_written = 0;
};

} // namespace

void writeTightly(const QString &path, Pipeline &to, const PdfCancelFlag &cancel)
{
    TightWriter(path, to, cancel).write();
}

} // namespace pdfcore
