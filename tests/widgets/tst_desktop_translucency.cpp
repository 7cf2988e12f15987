// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/desktop_translucency.h"
#include "widgets/rounded_window.h"

#include <QApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QWidget>

#include <xcb/xcb.h>

namespace {

/// An X server of the test's own, which no compositing manager looks after.
class DisplayServer final
{
public:
    DisplayServer()
    {
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"),
                        QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("640x480x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp")});
        if (m_server.waitForStarted() && m_server.waitForReadyRead()) {
            m_display = ':' + m_server.readLine().trimmed();
        }
    }
    ~DisplayServer()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(DisplayServer)

    /// Its name; empty if there is none.
    [[nodiscard]] const QByteArray &display() const { return m_display; }

private:
    QProcess m_server;
    QByteArray m_display;
};

/// Owns what a compositing manager of the first screen owns.
class CompositingManager final
{
public:
    CompositingManager()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        const QByteArray name("_NET_WM_CM_S0");
        xcb_intern_atom_reply_t *atom = xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData()),
            nullptr);
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const xcb_window_t window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, screen->root_visual, 0, nullptr);
        xcb_set_selection_owner(m_connection, window, atom->atom, XCB_CURRENT_TIME);
        std::free(atom);
        // The answer means that the server has done all that.
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }
    ~CompositingManager() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(CompositingManager)

private:
    xcb_connection_t *m_connection;
};

} // namespace

/// What is found out about the desktop, on an X server.
class TestDesktopTranslucency final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isShownByACompositingManagerOnly();
    void windowIsCutWhileThereIsNoManager();
};

void TestDesktopTranslucency::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        QSKIP("There is no X server to be started.");
    }
}

void TestDesktopTranslucency::isShownByACompositingManagerOnly()
{
    QVERIFY(!DesktopTranslucency::ask());
    {
        const CompositingManager manager;
        QVERIFY(DesktopTranslucency::ask());
        QVERIFY(DesktopTranslucency::isShown());
    }
    QTRY_VERIFY(!DesktopTranslucency::ask());
    QVERIFY(!DesktopTranslucency::isShown());
}

void TestDesktopTranslucency::windowIsCutWhileThereIsNoManager()
{
    QWidget window;
    letCornersBeSeenThrough(window, {.margin = 4, .radius = 6, .edge = Qt::red});
    window.resize(80, 60);
    window.show();
    QCOMPARE(window.mask().boundingRect(), QRect(4, 4, 72, 52));
    window.hide();
    const CompositingManager manager;
    window.show();
    QVERIFY(window.mask().isEmpty());
}

int main(int argc, char **argv)
{
    std::unique_ptr<DisplayServer> server;
    if (!QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty()) {
        const QCoreApplication starter(argc, argv);
        server = std::make_unique<DisplayServer>();
        if (!server->display().isEmpty()) {
            qputenv("DISPLAY", server->display());
            qputenv("QT_QPA_PLATFORM", "xcb");
        }
    }
    int result = 0;
    {
        const QApplication application(argc, argv);
        TestDesktopTranslucency test;
        result = QTest::qExec(&test, argc, argv);
    }
    return result;
}

#include "tst_desktop_translucency.moc"
