// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>

/// Ends work early: whoever started it keeps a copy and sets it; the work holds another and ends
/// soon after. Copies are one flag; any thread.
class PdfCancelFlag final
{
public:
    PdfCancelFlag()
        : m_isSet(std::make_shared<std::atomic<bool>>(false))
    {}

    void set() const { *m_isSet = true; }
    [[nodiscard]] bool isSet() const { return *m_isSet; }
    /// What set() sets, for loops that look at it often; lives as long as a copy of this object.
    [[nodiscard]] const std::atomic<bool> &value() const { return *m_isSet; }

private:
    std::shared_ptr<std::atomic<bool>> m_isSet;
};
