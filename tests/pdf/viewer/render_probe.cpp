// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/render_probe.h"

#include <algorithm>

PdfPageRenderFunction RenderProbe::function()
{
    return [this](const PdfCancelFlag &, const QList<PdfSourcePage> &pages,
                  const QList<QSize> &sizes, QStringList *errors) {
        QList<QImage> images;
        for (qsizetype i = 0; i < pages.size(); ++i) {
            images.append(render(pages.at(i), sizes.at(i)));
            if (errors) {
                errors->append(images.last().isNull() ? QStringLiteral("broken") : QString());
            }
        }
        return images;
    };
}

QColor RenderProbe::colorOf(int pageIndex)
{
    return QColor::fromRgb(QColor::fromHsv((pageIndex + 1) * 37 % 360, 200, 220).rgb());
}

void RenderProbe::hold()
{
    const std::lock_guard lock(m_mutex);
    m_held = true;
}

void RenderProbe::release()
{
    {
        const std::lock_guard lock(m_mutex);
        m_held = false;
    }
    m_released.notify_all();
}

void RenderProbe::setFailing(int pageIndex, bool failing)
{
    const std::lock_guard lock(m_mutex);
    if (failing) {
        m_failing.insert(pageIndex);
    } else {
        m_failing.remove(pageIndex);
    }
}

QList<RenderProbe::Render> RenderProbe::renders() const
{
    const std::lock_guard lock(m_mutex);
    return m_renders;
}

int RenderProbe::renderCount(int pageIndex) const
{
    const QList<Render> all = renders();
    return static_cast<int>(
        std::count_if(all.cbegin(), all.cend(),
                      [pageIndex](const Render &render) { return render.pageIndex == pageIndex; }));
}

bool RenderProbe::hasRendered(int pageIndex, QSize size) const
{
    const QList<Render> all = renders();
    return std::any_of(all.cbegin(), all.cend(), [=](const Render &render) {
        return render.pageIndex == pageIndex && render.size == size;
    });
}

void RenderProbe::forgetRenders()
{
    const std::lock_guard lock(m_mutex);
    m_renders.clear();
}

QImage RenderProbe::render(const PdfSourcePage &page, QSize size)
{
    std::unique_lock lock(m_mutex);
    m_renders.append({page.pageIndex, page.rotation, size});
    m_released.wait(lock, [this] { return !m_held; });
    if (m_failing.contains(page.pageIndex)) {
        return {};
    }
    lock.unlock();
    QImage image(size, QImage::Format_RGB32);
    image.fill(colorOf(page.pageIndex));
    return image;
}
