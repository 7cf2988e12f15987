// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/annotation_copier.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// A second copy of a page of the output, with annotations of its own: pop-ups and replies of the
/// copy belong to the annotations of the copy. It takes no part in the structure tree, in article
/// threads and in document parts, which know one place for each page (ISO 32000-2, 14.7.5.4, 12.4.3
/// and 14.12).
///
/// With QPDFPageObjectHelper::shallowCopyPage() alone both pages would have the same annotations.
///
/// @param copies  Gets the annotations and their copies.
QPDFObjectHandle newPageCopy(QPDF &output, QPDFObjectHandle page, AnnotationCopies *copies);

} // namespace pdfcore
