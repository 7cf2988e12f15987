#include "pdfcore/src/qpdf_source.h"

#include "pdfcore/src/password_candidates.h"
#include "pdfcore/src/qpdf_io.h"

#include <qpdf/QPDFExc.hh>

#include <QFileInfo>

namespace pdfcore {

namespace {

bool isPasswordError(const QPDFExc &exception)
{
    return exception.getErrorCode() == qpdf_e_password;
}

} // namespace

EngineError qpdfReadError(const std::exception &exception)
{
    QString reason;
    if (const auto *detail = dynamic_cast<const QPDFExc *>(&exception)) {
        reason = QString::fromStdString(detail->getMessageDetail());
        if (isPasswordError(*detail))
            return {PdfBackendError::InvalidPassword, reason};
    }
    if (reason.isEmpty())
        reason = QString::fromUtf8(exception.what());
    return {PdfBackendError::InvalidDocument, reason};
}

std::shared_ptr<QPDF> openQpdf(const QString &path, const QString &password, EngineError *outcome)
{
    *outcome = {};
    const QFileInfo info(path);
    if (!info.isFile()) {
        *outcome = {PdfBackendError::FileNotFound, QStringLiteral("There is no such file.")};
        return nullptr;
    }
    QList<QByteArray> candidates = qpdfPasswordCandidates(password);
    if (!password.isEmpty())
        candidates.append(QByteArray());
    for (const QByteArray &candidate : candidates) {
        try {
            auto document = std::make_shared<QPDF>();
            document->setSuppressWarnings(true);
            document->processInputSource(std::make_shared<QFileInput>(path), candidate.constData());
            return document;
        } catch (const QPDFExc &exception) {
            if (isPasswordError(exception))
                continue;
            *outcome = qpdfReadError(exception);
            return nullptr;
        } catch (const std::exception &exception) {
            *outcome = qpdfReadError(exception);
            return nullptr;
        }
    }
    if (password.isEmpty())
        *outcome = {PdfBackendError::PasswordRequired, QStringLiteral("The file is encrypted.")};
    else
        *outcome = {PdfBackendError::InvalidPassword, QStringLiteral("The password does not fit.")};
    return nullptr;
}

} // namespace pdfcore
