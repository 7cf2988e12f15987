// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_assembly.h"

#include "tests/support/pdf_fixture.h"

#include <QtGlobal>

void FidelityAssembly::set(const QByteArray &name, const QByteArray &body)
{
    object(name) = {body, {}, false};
}

void FidelityAssembly::setStream(const QByteArray &name, const QByteArray &entries,
                                 const QByteArray &data)
{
    object(name) = {entries, data, true};
}

void FidelityAssembly::addEntries(const QByteArray &name, const QByteArray &entries)
{
    Object &target = object(name);
    if (target.isStream) {
        target.body += ' ' + entries;
    } else {
        target.body.insert(target.body.indexOf("<<") + 2, ' ' + entries + ' ');
    }
}

void FidelityAssembly::addElements(const QByteArray &name, const QByteArray &elements)
{
    Object &target = object(name);
    target.body.insert(target.body.lastIndexOf(']'), ' ' + elements + ' ');
}

void FidelityAssembly::replace(const QByteArray &name, const QByteArray &before,
                               const QByteArray &after)
{
    Object &target = object(name);
    if (!target.body.contains(before)) {
        qFatal("%s has no %s", name.constData(), before.constData());
    }
    target.body.replace(before, after);
}

void FidelityAssembly::setTrailer(const QByteArray &entries)
{
    m_trailer = entries;
}

QByteArray FidelityAssembly::file() const
{
    QList<QByteArray> bodies;
    bodies.reserve(m_objects.size());
    for (const Object &object : m_objects) {
        const QByteArray body = resolved(object.body);
        bodies.append(object.isStream ? PdfFixture::streamBody(body, object.data) : body);
    }
    return PdfFixture::fromObjects(bodies, resolved(m_trailer));
}

FidelityAssembly::Object &FidelityAssembly::object(const QByteArray &name)
{
    const auto found = m_indexes.constFind(name);
    if (found != m_indexes.constEnd()) {
        return m_objects[*found];
    }
    m_indexes.insert(name, m_objects.size());
    m_objects.append(Object());
    return m_objects.last();
}

QByteArray FidelityAssembly::resolved(const QByteArray &body) const
{
    QByteArray result;
    result.reserve(body.size());
    for (qsizetype i = 0; i < body.size(); ++i) {
        if (body.at(i) != '{') {
            result += body.at(i);
            continue;
        }
        const qsizetype end = body.indexOf('}', i);
        const QByteArray name = body.mid(i + 1, end - i - 1);
        const auto found = m_indexes.constFind(name);
        if (found == m_indexes.constEnd()) {
            qFatal("There is no object %s", name.constData());
        }
        result += QByteArray::number(*found + 1) + " 0 R";
        i = end;
    }
    return result;
}
