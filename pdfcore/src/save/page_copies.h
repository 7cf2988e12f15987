// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/annotation_copier.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// A second copy of a page of the output, with annotations of its own: pop-ups and replies of the
/// copy belong to the annotations of the copy. It takes no part in the structure tree and in
/// article threads, which know one place for each page.
///
/// @param copies  Gets the annotations and their copies.
QPDFObjectHandle newPageCopy(QPDF &output, QPDFObjectHandle page, AnnotationCopies *copies);

} // namespace pdfcore
