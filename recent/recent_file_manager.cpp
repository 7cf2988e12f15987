// SPDX-License-Identifier: AGPL-3.0-or-later
#include "recent/recent_file_manager.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace {

constexpr QLatin1String kFileName("recent_files.json");
constexpr QLatin1String kListKey("recentFiles");

QString defaultFilePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QDir().mkpath(folder);
    return QDir::toNativeSeparators(folder % QDir::separator() % kFileName);
}

} // namespace

RecentFileManager *RecentFileManager::instance()
{
    static RecentFileManager manager(defaultFilePath());
    return &manager;
}

RecentFileManager::RecentFileManager(const QString &filePath, QObject *parent)
    : QObject(parent)
    , m_filePath(filePath)
{
    load();
}

bool RecentFileManager::contains(const QString &path) const
{
    return m_files.contains(path, Qt::CaseSensitive);
}

QStringList RecentFileManager::files() const
{
    return m_files;
}

void RecentFileManager::addFile(const QString &path)
{
    if (!contains(path)) {
        m_files.prepend(path);
        qDebug() << "123" << m_files;
    }
    while (m_files.size() > m_maxCount) {
        m_files.removeLast();
    }
    save();
}

void RecentFileManager::load()
{
    m_files.clear();
    qDebug() << m_filePath;

    QFile file(m_filePath);
    if (!file.exists() || !file.open(QIODevice::ReadOnly)) {
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        return;
    }
    const QJsonArray entries = document.object().value(kListKey).toArray();
    for (const auto &entry : entries) {
        const QString path = entry.toString();
        if (!path.isEmpty()) {
            m_files.append(path);
        }
    }
}

void RecentFileManager::save() const
{
    QJsonObject root;
    root.insert(kListKey, QJsonArray::fromStringList(m_files));

    qDebug() << m_files;
    QFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return;
    }
    const QByteArray text = QJsonDocument(root).toJson(QJsonDocument::Indented);
    qDebug() << text;
    file.write(text);
    file.close();
}
