// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_baseline.h"

#include "tests/pdfcore/fidelity/fidelity_document.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// The problems of a file, one line each, the checker's report in lines as well.
QStringList problemsOf(const QString &path, FidelityDocument &document)
{
    QStringList lines;
    for (const QString &problem : FidelitySoundness::problems(path, document)) {
        for (QString line : problem.split(u'\n', Qt::SkipEmptyParts)) {
            lines.append(line.replace(path, QStringLiteral("FILE")));
        }
    }
    return lines;
}

QString kindOf(QString problem)
{
    // Numbers behind names that had to change are no part of what is said.
    static const QRegularExpression added(QStringLiteral("_\\d+\\b"));
    static const QRegularExpression number(QStringLiteral("-?\\d+"));
    problem.remove(added);
    return problem.replace(number, QStringLiteral("#"));
}

} // namespace

FidelityBaseline::FidelityBaseline(const QString &path)
{
    FidelityDocument document(path);
    if (document.problem().isEmpty() && document.catalogue().hasKey("/AcroForm")) {
        FidelityFields::completeForm(document);
    }
    for (const QString &problem : problemsOf(path, document)) {
        ++m_known[kindOf(problem)];
    }
    if (!document.problem().isEmpty() || document.catalogue().hasKey("/AcroForm")) {
        return;
    }
    // Widgets without a form may join that of another document.
    document.catalogue().replaceKey("/AcroForm", QPDFObjectHandle::newDictionary());
    FidelityFields::completeForm(document);
    QMap<QString, int> joined;
    for (const QString &problem : problemsOf(path, document)) {
        ++joined[kindOf(problem)];
    }
    for (auto it = joined.cbegin(); it != joined.cend(); ++it) {
        m_known[it.key()] = std::max(m_known.value(it.key()), it.value());
    }
}

void FidelityBaseline::add(const FidelityBaseline &other)
{
    for (auto it = other.m_known.cbegin(); it != other.m_known.cend(); ++it) {
        m_known[it.key()] += it.value();
    }
}

QStringList FidelityBaseline::newProblems(const QString &path, FidelityDocument &document,
                                          int copies) const
{
    QMap<QString, QStringList> found;
    for (const QString &problem : problemsOf(path, document)) {
        found[kindOf(problem)].append(problem);
    }
    QStringList result;
    for (auto it = found.cbegin(); it != found.cend(); ++it) {
        if (it.value().size() > m_known.value(it.key()) * copies) {
            result.append(it.value());
        }
    }
    return result;
}
