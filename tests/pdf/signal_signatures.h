// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaMethod>
#include <QMetaObject>

/// The signals that a class itself declares, in their order.
[[nodiscard]] inline QList<QByteArray> signalSignatures(const QMetaObject &meta)
{
    QList<QByteArray> signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal) {
            signatures.append(meta.method(i).methodSignature());
        }
    }
    return signatures;
}
