// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/compress/stream_spool.h"

#include <memory>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Compresses the data of a stream anew, without loss, when that makes it smaller. Streams that
/// cannot be read to their end, are encrypted by themselves, or compressed in a way that only
/// pictures are, stay as they are. Throws when there is no room for new data.
void packStream(QPDFObjectHandle stream, StreamSpool &spool);

} // namespace pdfcore
