// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "taskcenter/task_request.h"
#include "tools/options/tool_options_panel.h"
#include "widgets/modern_combo_box.h"

#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListWidgetItem>
#include <QMimeData>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QWidget>

/// A home of the test's own, empty but for a desktop, which is moved there where the system lets it
/// be moved; relative paths begin in it. One at a time.
class ToolTestHome final
{
public:
    ToolTestHome()
        : m_before(QDir::currentPath())
    {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("HOME", folder().toLocal8Bit());
        // Hidden folders are those of the engine, which outlive a test.
        const QFileInfoList old =
            QDir(folder()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : old) {
            if (entry.isDir()) {
                QDir(entry.filePath()).removeRecursively();
            } else {
                QFile::remove(entry.filePath());
            }
        }
        QDir(folder()).mkdir(QStringLiteral("Desktop"));
        QDir::setCurrent(folder());
    }
    ~ToolTestHome() { QDir::setCurrent(m_before); }
    ToolTestHome(const ToolTestHome &) = delete;
    ToolTestHome &operator=(const ToolTestHome &) = delete;

    /// Whether desktop and documents are those of the test.
    [[nodiscard]] bool isWhole() const
    {
        return desktop().startsWith(folder()) && documents().startsWith(folder());
    }
    [[nodiscard]] static QString path(const QString &name) { return QDir(folder()).filePath(name); }
    [[nodiscard]] static QString desktop()
    {
        return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    }
    [[nodiscard]] static QString documents()
    {
        return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    }

    /// Writes a file, and the folders that it lies in, and returns its path.
    [[nodiscard]] static QString add(const QString &name, const QByteArray &data = "%PDF-1.7\n")
    {
        const QString file = path(name);
        QDir().mkpath(QFileInfo(file).absolutePath());
        QFile written(file);
        return written.open(QIODevice::WriteOnly) && written.write(data) == data.size() ? file
                                                                                        : QString();
    }

private:
    static QString folder()
    {
        static const QTemporaryDir home;
        return home.path();
    }

    QString m_before;
};

/// What tests of tool pages ask and do.
namespace ToolPageTest {

/// The modes of the places for results.
enum Mode : int { SourceFolder = 0, Desktop = 1, ProgramFolder = 2, Chosen = 3 };

inline constexpr int kFolderRole = Qt::UserRole + 1;
inline constexpr int kModeRole = Qt::UserRole + 4;

/// A child of an object name, which must be there.
template <typename Widget>
Widget *part(const QWidget &parent, const char *objectName)
{
    auto *found = parent.findChild<Widget *>(QLatin1String(objectName));
    if (found == nullptr) {
        qFatal("%s is missing", objectName);
    }
    return found;
}

/// Chooses a place for the results; `folder` is that of the user's choice, null for none.
inline bool choosePlace(const ToolOptionsPanel &panel, int mode, const QString &folder = {})
{
    ModernComboBox *box = panel.locationBox();
    for (int index = 0; index < box->count(); ++index) {
        QListWidgetItem *item = box->item(index);
        if (item->data(kModeRole).toInt() == mode) {
            if (!folder.isNull()) {
                item->setData(kFolderRole, folder);
            }
            box->setCurrentItem(item);
            return true;
        }
    }
    return false;
}

/// Chooses an item of a box by its text.
inline bool chooseText(ModernComboBox &box, const QString &text)
{
    for (int index = 0; index < box.count(); ++index) {
        if (box.item(index)->text() == text) {
            box.setCurrentItem(box.item(index));
            return true;
        }
    }
    return false;
}

/// A request with the types of all its values, a line for each.
inline QStringList linesOf(const TaskRequest &request)
{
    QStringList lines{
        QStringLiteral("id \"%1\"").arg(request.id),
        QStringLiteral("type %1").arg(request.type),
        QStringLiteral("inputFiles (%1)").arg(request.inputFiles.join(u'|')),
        QStringLiteral("outputPath \"%1\"").arg(request.outputPath),
        QStringLiteral("inputFile \"%1\"").arg(request.inputFile),
        QStringLiteral("useSourceFolder %1").arg(request.useSourceFolder),
    };
    for (auto option = request.options.cbegin(); option != request.options.cend(); ++option) {
        lines.append(QStringLiteral("%1: %2 %3")
                         .arg(option.key(), QLatin1String(option.value().typeName()),
                              option.value().toString()));
    }
    return lines;
}

inline QStringList linesOf(const QList<TaskRequest> &requests)
{
    QStringList lines;
    for (const TaskRequest &request : requests) {
        lines += linesOf(request);
    }
    return lines;
}

/// The texts of all labels of an object name, in the order of their making.
inline QStringList textsOf(const QWidget &parent, const char *objectName)
{
    QStringList texts;
    for (const QLabel *label : parent.findChildren<QLabel *>(QLatin1String(objectName))) {
        texts.append(label->text());
    }
    return texts;
}

/// Drops addresses on the middle of a widget, as a file manager does that offers such actions;
/// what the program made of it, or Qt::IgnoreAction when it took nothing.
inline Qt::DropAction drop(QWidget &target, const QList<QUrl> &urls,
                           Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction,
                           Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    QMimeData data;
    data.setUrls(urls);
    const QPoint middle = target.rect().center();
    QDragEnterEvent enter(middle, offered, &data, Qt::LeftButton, keys);
    QCoreApplication::sendEvent(&target, &enter);
    QDragMoveEvent move(middle, offered, &data, Qt::LeftButton, keys);
    QCoreApplication::sendEvent(&target, &move);
    if (!enter.isAccepted() || !move.isAccepted()) {
        return Qt::IgnoreAction;
    }
    QDropEvent event(QPointF(middle), offered, &data, Qt::LeftButton, keys);
    QCoreApplication::sendEvent(&target, &event);
    return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
}

inline Qt::DropAction dropFiles(QWidget &target, const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    return drop(target, urls);
}

} // namespace ToolPageTest
