// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/bars/tool_bar_probe.h"

#include "pdf/viewer/bars/pdf_top_tool_bar.h"

#include <QIcon>
#include <QImage>
#include <QMetaMethod>
#include <QSignalSpy>

#include <utility>

RequestLog::RequestLog(PdfTopToolBar *bar)
{
    const QMetaObject *meta = bar->metaObject();
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Signal) {
            m_spies.push_back(std::make_unique<QSignalSpy>(bar, method));
            m_names << QString::fromLatin1(method.name());
        }
    }
}

RequestLog::~RequestLog() = default;

QStringList RequestLog::take()
{
    QStringList lines;
    for (std::size_t i = 0; i < m_spies.size(); ++i) {
        for (const QList<QVariant> &arguments : std::as_const(*m_spies.at(i))) {
            QStringList words{m_names.at(static_cast<qsizetype>(i))};
            for (const QVariant &argument : arguments) {
                words << argument.toString();
            }
            lines << words.join(QLatin1Char(' '));
        }
        m_spies.at(i)->clear();
    }
    return lines;
}

QString modernIcon(const char *name)
{
    return QStringLiteral(":/res/icons/modern/") + QLatin1String(name);
}

QString viewerIcon(const char *name)
{
    return QStringLiteral(":/res/icons/pdfviewer/") + QLatin1String(name);
}

bool showsIcon(const QIcon &icon, const QString &path, const QSize &size)
{
    const QImage shown = icon.pixmap(size, 1.0).toImage();
    return !shown.isNull() && shown == QIcon(path).pixmap(size, 1.0).toImage();
}
