#pragma once

#include <QTabWidget>

class CustomTabBar;

/// The tabs of the workspace.
///
/// Closing a tab deletes its page later. A viewer is asked about unsaved changes first and may keep
/// its tab; other pages close without a question.
class CustomTabWidget final : public QTabWidget
{
    Q_OBJECT

public:
    explicit CustomTabWidget(QWidget *parent = nullptr);

private:
    void closeTab(int index);

    CustomTabBar *m_tabBar;
};
