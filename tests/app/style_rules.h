// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

/// Style sheets as their rules, whatever their spacing, order and case.
namespace StyleRules {

/// Declarations such as "border: none; padding: 3px", in alphabetical order.
inline QStringList declarations(const QString &text)
{
    QStringList list;
    const QStringList parts = text.toLower().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QString declaration = part.simplified();
        if (!declaration.isEmpty()) {
            list.append(declaration.section(QLatin1Char(':'), 0, 0).trimmed() +
                        QStringLiteral(": ") + declaration.section(QLatin1Char(':'), 1).trimmed());
        }
    }
    list.sort();
    return list;
}

/// All that `styleSheet` declares for exactly `selector`, in alphabetical order.
inline QStringList declarationsFor(const QString &styleSheet, const QString &selector)
{
    static const QRegularExpression rule(QStringLiteral("([^{}]*)\\{([^{}]*)\\}"));
    QStringList list;
    for (auto it = rule.globalMatch(styleSheet); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QStringList selectors = match.captured(1).split(QLatin1Char(','));
        for (const QString &each : selectors) {
            if (each.simplified() == selector) {
                list.append(declarations(match.captured(2)));
            }
        }
    }
    list.sort();
    return list;
}

} // namespace StyleRules
