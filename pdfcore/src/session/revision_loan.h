// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/session/session_pool.h"

#include <atomic>

namespace pdfcore {

/// Borrows a session of the revision that the page names; empty with an error when there is none.
/// `path` becomes the place that it is read from; see SessionPool::acquire() for `cancelled`. Not
/// for a thread that has a session of the file already.
SessionPool::Lease borrowRevision(const PdfSourcePage &page, QString *path, EngineError *outcome,
                                  const std::atomic<bool> *cancelled = nullptr);

} // namespace pdfcore
