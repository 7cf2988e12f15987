// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_operation.h"

#include <QString>

/// Why a task failed, as a sentence in the language of the interface with the name of the file that
/// is the reason and what the engine says. Interface thread.
[[nodiscard]] QString taskErrorText(const PdfOperationOutcome &outcome);
