// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// All objects of a document that something leads to from its trailer, once each.
std::vector<QPDFObjectHandle> reachableObjects(QPDF &document);

/// Calls `visit` for a dictionary, an array, or the dictionary of a stream, and for all that are in
/// it without being objects of their own, before what they hold is looked at.
void visitContainers(QPDFObjectHandle object,
                     const std::function<void(QPDFObjectHandle container)> &visit);

/// Lets all references in the objects, and in the trailer, to objects of the map lead to those that
/// are named there.
void redirect(QPDF &document, const std::vector<QPDFObjectHandle> &objects,
              const std::map<QPDFObjGen, QPDFObjectHandle> &others);

} // namespace pdfcore
