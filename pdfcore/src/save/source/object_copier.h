// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Copies objects of one document into another, with everything they refer to, each object once.
///
/// QPDF's own copying leaves a null in the place of every page that has not been copied yet, and
/// goes as deep as the objects refer to each other. Here pages are only what they have been mapped
/// to, any others become null; the page tree never comes along; and no depth is too deep. Streams
/// are read from the source document while the target is written, so it has to live until then.
/// What ties an object to the structure tree of its document stays behind (ISO 32000-2, 14.7.5.4).
class ObjectCopier
{
public:
    ObjectCopier(QPDF &target, std::shared_ptr<QPDF> source);
    ~ObjectCopier();
    ObjectCopier(const ObjectCopier &) = delete;
    ObjectCopier &operator=(const ObjectCopier &) = delete;

    /// From now on references to `from` become references to `to`, an object of the target.
    void map(QPDFObjectHandle from, QPDFObjectHandle to);

    /// The copy of an object; a direct one is copied directly.
    QPDFObjectHandle copy(QPDFObjectHandle object);

private:
    class StreamData;

    QPDFObjectHandle translate(QPDFObjectHandle object);
    QPDFObjectHandle translateValue(QPDFObjectHandle object);
    QPDFObjectHandle reference(QPDFObjectHandle object);
    void copyWaiting();

    QPDF &m_target;
    std::shared_ptr<QPDF> m_source;
    std::shared_ptr<StreamData> m_streams;
    std::map<QPDFObjGen, QPDFObjectHandle> m_copies;
    std::vector<QPDFObjectHandle> m_waiting; ///< Mapped to an object that has to be filled still.
};

} // namespace pdfcore
