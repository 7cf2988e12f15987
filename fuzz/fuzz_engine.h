// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

/// What the fuzzers and the replay of their seeds do with one input.
namespace FuzzEngine {

/// Inspects the input as a file and saves lists of its pages, as many as its content chooses. Ends
/// the process when a file that was written does not open with the pages that it should have.
void run(const QByteArray &input);

} // namespace FuzzEngine
