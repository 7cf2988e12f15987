// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QDir>
#include <QHash>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

/// Settings and configuration folders of the test's own, so that nothing of the user is touched.
class AppTestFolders final
{
public:
    explicit AppTestFolders(const QString &testName)
    {
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::setOrganizationName(QStringLiteral("QuilloraTest"));
        QCoreApplication::setApplicationName(testName);
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
        QSettings::setPath(QSettings::IniFormat, QSettings::SystemScope, m_folder.path());
        QDir(configFolder()).removeRecursively();
    }
    ~AppTestFolders() { QDir(configFolder()).removeRecursively(); }

    [[nodiscard]] static QString configFolder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    }
    [[nodiscard]] QString filePath(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

/// Clicks a named button of each modal box that comes up, until the given answers are used up.
class ModalAnswers final : public QObject
{
public:
    explicit ModalAnswers(const QStringList &buttonNames)
        : m_buttonNames(buttonNames)
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalAnswers::answer);
        m_timer.start(5);
    }

    /// True when every answer was given.
    [[nodiscard]] bool allGiven() const { return m_buttonNames.isEmpty(); }
    /// Object names of the labels of the last box, with their texts.
    [[nodiscard]] QString lastTextOf(const QString &labelName) const
    {
        return m_lastTexts.value(labelName);
    }

private:
    void answer()
    {
        QWidget *box = QApplication::activeModalWidget();
        if (!box || m_buttonNames.isEmpty()) {
            return;
        }
        auto *button = box->findChild<QPushButton *>(m_buttonNames.constFirst());
        if (!button || !button->isVisible()) {
            return;
        }
        m_lastTexts.clear();
        const auto labels = box->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            m_lastTexts.insert(label->objectName(), label->text());
        }
        m_buttonNames.removeFirst();
        QTest::mouseClick(button, Qt::LeftButton);
    }

    QStringList m_buttonNames;
    QHash<QString, QString> m_lastTexts;
    QTimer m_timer;
};
