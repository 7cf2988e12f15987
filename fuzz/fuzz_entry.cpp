// SPDX-License-Identifier: AGPL-3.0-or-later
// The entry that fuzzers call.

#include "fuzz/fuzz_engine.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzEngine::run(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    return 0;
}
