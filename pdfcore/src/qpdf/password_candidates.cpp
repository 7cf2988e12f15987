// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/password_candidates.h"

#include <qpdf/QUtil.hh>

#include <string>

namespace pdfcore {

namespace {

void addUnique(QList<QByteArray> &list, const QByteArray &candidate)
{
    if (!list.contains(candidate)) {
        list.append(candidate);
    }
}

/// The normalisation forms of a password, as typed first.
QList<QString> normalForms(const QString &password)
{
    return {password, password.normalized(QString::NormalizationForm_KC),
            password.normalized(QString::NormalizationForm_C),
            password.normalized(QString::NormalizationForm_D)};
}

} // namespace

QList<QByteArray> mupdfPasswordCandidates(const QString &password)
{
    QList<QByteArray> candidates;
    for (const QString &form : normalForms(password)) {
        addUnique(candidates, form.toUtf8());
    }
    for (const QByteArray &bytes : qpdfPasswordCandidates(password)) {
        addUnique(candidates,
                  QByteArray::fromStdString(QUtil::pdf_doc_to_utf8(bytes.toStdString())));
    }
    return candidates;
}

QList<QByteArray> qpdfPasswordCandidates(const QString &password)
{
    QList<QByteArray> candidates;
    for (const QString &form : normalForms(password)) {
        addUnique(candidates, form.toUtf8());
    }
    const QList<QByteArray> unicodeForms = candidates;
    for (const QByteArray &form : unicodeForms) {
        for (const std::string &encoding : QUtil::possible_repaired_encodings(form.toStdString())) {
            addUnique(candidates, QByteArray::fromStdString(encoding));
        }
    }
    return candidates;
}

} // namespace pdfcore
