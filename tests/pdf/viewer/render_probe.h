// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_render_manager.h"

#include <QColor>
#include <QList>
#include <QSet>
#include <QSize>

#include <condition_variable>
#include <memory>
#include <mutex>

/// Stands in for the engine: paints every page in one colour and writes down what was asked.
///
/// Must outlive the render manager that calls it, and must not be held when that is destroyed.
class RenderProbe final
{
public:
    struct Render
    {
        int pageIndex = 0;
        int rotation = 0;
        QSize size;

        friend bool operator==(const Render &, const Render &) = default;
    };

    /// What a render manager is made with.
    [[nodiscard]] PdfPageRenderFunction function();

    /// The colour in which a page of the file is painted.
    [[nodiscard]] static QColor colorOf(int pageIndex);

    /// Lets renders wait until release(); the ones that wait are in renders() already.
    void hold();
    void release();
    /// Fails to render a page of the file from now on.
    void setFailing(int pageIndex, bool failing);

    /// All renders so far, in the order in which they began.
    [[nodiscard]] QList<Render> renders() const;
    /// How often a page of the file was rendered so far.
    [[nodiscard]] int renderCount(int pageIndex) const;
    /// Whether a page of the file was rendered at the size.
    [[nodiscard]] bool hasRendered(int pageIndex, QSize size) const;
    void forgetRenders();

private:
    [[nodiscard]] QImage render(const PdfSourcePage &page, QSize size);

    mutable std::mutex m_mutex;
    std::condition_variable m_released;
    QList<Render> m_renders;
    QSet<int> m_failing;
    bool m_held = false;
};
