// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/result_file.h"

#include "pdfcore/src/base/file_identity.h"
#include "pdfcore/src/qpdf/password_candidates.h"
#include "pdfcore/src/qpdf/qpdf_source.h"
#include "pdfcore/src/session/document_session.h"
#include "pdfcore/src/session/engine.h"

#include <QByteArray>
#include <QRandomGenerator>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <array>
#include <memory>

namespace pdfcore {

namespace {

/// Names that are tried for a new file.
constexpr int kMaxNames = 100'000;

QByteArray randomPassword()
{
    std::array<quint32, 8> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return QByteArray(reinterpret_cast<const char *>(words.data()), sizeof(words)).toHex();
}

} // namespace

void encryptFor(QPDFWriter &writer, const QString &password)
{
    // Of the spellings of a password the standard asks for this one (ISO 32000-2, 7.6.4.3.3), so
    // that what is typed another way on another system is the same.
    const QByteArray spelling = password.normalized(QString::NormalizationForm_KC).toUtf8();
    writer.setR6EncryptionParameters(spelling.constData(), randomPassword().constData(), true, true,
                                     true, true, true, true, qpdf_r3p_full, true);
}

AtomicFile fileFor(const PdfPlacement &placement, AtomicFile::Flush flush)
{
    return AtomicFile(placement.path(), flush,
                      placement.isReplacing() ? AtomicFile::Existing::Replace
                                              : AtomicFile::Existing::Keep);
}

EngineError checkResult(const QString &path, const QString &password, qsizetype pageCount)
{
    try {
        EngineError outcome;
        const auto written = openQpdf(path, password, &outcome, Damage::Refuse);
        // Not one of the pool: the file is about to be moved.
        const auto session = written ? DocumentSession::open(FileIdentity::of(path), password, {},
                                                             &outcome, {}, Damage::Refuse)
                                     : nullptr;
        if (!session) {
            return {PdfBackendError::WriteFailed,
                    QStringLiteral("The new file cannot be read back: %1").arg(outcome.message)};
        }
        const qsizetype found = session->pages()->pageSizes.size();
        if (found == pageCount) {
            return {};
        }
        return {
            PdfBackendError::WriteFailed,
            QStringLiteral("The new file has %1 pages instead of %2.").arg(found).arg(pageCount)};
    } catch (const std::exception &exception) {
        return {PdfBackendError::WriteFailed, QStringLiteral("The new file cannot be read back: %1")
                                                  .arg(QString::fromUtf8(exception.what()))};
    }
}

EngineError placeResult(AtomicFile &file, const PdfPlacement &placement,
                        const PdfFileRevisionPtr &replaced)
{
    QString reason;
    if (placement.isReplacing()) {
        if (Engine::instance().revisions().replaceTarget(file, &reason, replaced)) {
            return {};
        }
        return {PdfBackendError::WriteFailed, reason};
    }
    for (int attempt = 0; attempt < kMaxNames; ++attempt) {
        file.setTarget(placement.pathAt(attempt));
        if (file.commit(&reason)) {
            return {};
        }
        if (!file.isTargetTaken()) {
            break;
        }
    }
    return {PdfBackendError::WriteFailed, reason};
}

} // namespace pdfcore
