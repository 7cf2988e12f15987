// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/reveal_in_folder.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#ifdef QUILLORA_HAS_DBUS
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#endif

namespace {

#ifndef Q_OS_WIN
void openFolder(const QString &folder)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}
#endif

} // namespace

void revealInFolder(const QString &filePath)
{
#if defined(Q_OS_WIN)
    QProcess::startDetached(QStringLiteral("explorer.exe"),
                            {QStringLiteral("/select,"), QDir::toNativeSeparators(filePath)});
#elif defined(QUILLORA_HAS_DBUS)
    const QFileInfo file(filePath);
    const QString folder = file.absolutePath();
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(folder);
        return;
    }
    // The interface that file managers of the desktops share.
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(file.absoluteFilePath()).toString(QUrl::FullyEncoded)}
         << QString();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, folder] {
        if (QDBusPendingReply<>(*watcher).isError()) {
            openFolder(folder);
        }
        watcher->deleteLater();
    });
#else
    openFolder(QFileInfo(filePath).absolutePath());
#endif
}
