// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/picture_set.h"

#include "pdfcore/src/base/platform_file.h"
#include "pdfcore/src/save/result_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace pdfcore {

namespace {

constexpr qsizetype kFewestDigits = 2;

EngineError writeError(const QString &reason)
{
    return {PdfBackendError::WriteFailed, reason};
}

} // namespace

PictureSet::PictureSet(PdfPictureTarget target)
    : m_target(std::move(target))
{}

EngineError PictureSet::check() const
{
    if (!QFileInfo(m_target.folder).isDir()) {
        return writeError(QStringLiteral("There is no such folder."));
    }
    const QString &name = m_target.baseName;
    if (name.contains(QLatin1Char('/')) || QDir::fromNativeSeparators(name) != name ||
        name.contains(QChar::Null)) {
        return writeError(QStringLiteral("The pictures cannot be called so."));
    }
    return {};
}

EngineError PictureSet::place(const PdfCancelFlag &cancel, QStringList *paths)
{
    EngineError error = placeAll(cancel, paths);
    if (error.isError()) {
        for (const QString &path : std::as_const(*paths)) {
            QFile::remove(path);
        }
        paths->clear();
    }
    return error;
}

EngineError PictureSet::placeAll(const PdfCancelFlag &cancel, QStringList *paths)
{
    for (std::size_t i = 0; i < m_pictures.size(); ++i) {
        if (cancel.isSet()) {
            return cancelledError(PdfBackendError::WriteFailed);
        }
        AtomicFile &file = m_pictures[i]->file();
        const auto nameAt = [this, i](int attempt) { return pathOf(i, attempt); };
        EngineError error = placeResult(file, PdfPlacement::firstFree(nameAt));
        if (error.isError()) {
            return error;
        }
        paths->append(file.target());
    }
    if (!syncFiles(*paths).isEmpty()) {
        return writeError(QStringLiteral("The pictures may not have reached the disk."));
    }
    return {};
}

QString PictureSet::pathOf(std::size_t index, int attempt) const
{
    const qsizetype digits = std::max(kFewestDigits, QString::number(m_pictures.size()).size());
    const QString number = QString::number(index + 1).rightJustified(digits, QLatin1Char('0'));
    const QString again = attempt > 0 ? QStringLiteral("(%1)").arg(attempt) : QString();
    const QString suffix =
        m_target.format == PdfPictureFormat::Jpeg ? QStringLiteral("jpg") : QStringLiteral("png");
    // Not by arguments: the name may hold what stands for one.
    return QDir(m_target.folder)
        .filePath(m_target.baseName + QLatin1Char('-') + number + again + QLatin1Char('.') +
                  suffix);
}

} // namespace pdfcore
