// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/startup.h"

#include "app/frameless_window.h"
#include "app/language_manager.h"
#include "app/main_page.h"
#include "app/program_info.h"
#include "app/window_picture.h"
#include "pdfcore/pdf_file_revision.h"
#include "res/resources.h"
#include "widgets/theme.h"
#include "widgets/tool_tip_shape.h"

#include <QApplication>
#include <QFileInfo>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QThreadPool>

namespace {

constexpr QSize kWindowSize(1160, 780);

// Qt 6 has both always on and hides their names together with its deprecated interface.
constexpr auto kEnableHighDpiScaling = static_cast<Qt::ApplicationAttribute>(20);
constexpr auto kUseHighDpiPixmaps = static_cast<Qt::ApplicationAttribute>(13);

constexpr QLatin1String kFontFamily("Microsoft YaHei UI");

constexpr QColor kToolTipColor{0x1D, 0x21, 0x29};
constexpr int kToolTipRadius = 4;

// %1 white, %2 border, %3 background and %4 radius of tool tips
constexpr QLatin1String kApplicationStyleSheet(
    "QToolTip { background-color: %3; color: %1; border: none; padding: 6px 10px;"
    " border-radius: %4px; }"
    "QMenu { background-color: %1; border: 1px solid %2; border-radius: 8px;"
    " padding: 6px; }"
    "QMenu::item { background-color: transparent; border-radius: 4px; color: #4E5969;"
    " padding: 8px 24px 8px 16px; }"
    "QMenu::item:selected { background-color: #E8F1FF; color: #165DFF; }"
    "QMenu::separator { height: 1px; background: #EBEDF0; margin: 5px 10px; }");

void setFont()
{
    // Only Windows has the family; elsewhere its nearest kin cover the same scripts. Noto Sans
    // comes first of the two: the Chinese one's apostrophe is as wide as a Chinese character.
    QFont::insertSubstitutions(kFontFamily,
                               {QStringLiteral("Microsoft YaHei"), QStringLiteral("PingFang SC"),
                                QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans CJK SC")});
    QFont font(kFontFamily);
    font.setStyleStrategy(QFont::PreferAntialias);
    QApplication::setFont(font);
}

void setPalette()
{
    QPalette palette = QApplication::palette();
    palette.setBrush(QPalette::All, QPalette::Window, Theme::white);
    palette.setBrush(QPalette::All, QPalette::WindowText, Theme::ink);
    palette.setBrush(QPalette::All, QPalette::Base, Theme::white);
    palette.setBrush(QPalette::All, QPalette::Text, Theme::ink);
    palette.setBrush(QPalette::All, QPalette::ButtonText, Theme::ink);
    palette.setBrush(QPalette::All, QPalette::Highlight, Theme::accent);
    palette.setBrush(QPalette::All, QPalette::HighlightedText, Theme::white);
    QApplication::setPalette(palette);
}

} // namespace

void Startup::setAttributes()
{
    QCoreApplication::setAttribute(kEnableHighDpiScaling, true);
    QCoreApplication::setAttribute(kUseHighDpiPixmaps, true);
}

void Startup::setIdentity()
{
    initResources();
    QCoreApplication::setApplicationName(kProgramName);
    QCoreApplication::setApplicationVersion(kProgramVersion);
    QCoreApplication::setOrganizationName(kProgramName);
    QGuiApplication::setApplicationDisplayName(kProgramName);
    QGuiApplication::setWindowIcon(QIcon(kProgramIcon));
}

void Startup::setAppearance()
{
    setFont();
    setPalette();
    qApp->setStyleSheet(kApplicationStyleSheet.arg(
        Theme::white.name().toUpper(), Theme::borderNeutral.name().toUpper(),
        kToolTipColor.name().toUpper(), QString::number(kToolTipRadius)));
    if (qApp->findChild<ToolTipShape *>() == nullptr) {
        new ToolTipShape({.radius = kToolTipRadius, .edge = kToolTipColor}, qApp);
    }
}

std::unique_ptr<FramelessWindow> Startup::showMainWindow()
{
    auto window = std::make_unique<FramelessWindow>();
    window->setContentWidget(new MainPage);
    QObject::connect(LanguageManager::instance(), &LanguageManager::languageChanged, window.get(),
                     [target = window.get()] { target->setContentWidget(new MainPage); });
    window->resize(kWindowSize);
    window->showNormal();
    return window;
}

void Startup::openFileArgument(const FramelessWindow &window, const QStringList &arguments)
{
    if (arguments.size() < 2) {
        return;
    }
    // A relative path would mean another file, or none, where the list of recent files is read.
    const QFileInfo file(arguments.at(1));
    if (file.exists()) {
        window.findChild<MainPage *>()->openFile(file.absoluteFilePath());
    }
}

int Startup::run(int &argc, char **argv)
{
    setAttributes();
    const QApplication application(argc, argv);
    setIdentity();
    LanguageManager::instance()->initialize();
    setAppearance();
    // What a run that did not end in order has left; on the disk, which may be slow.
    QThreadPool::globalInstance()->start(&PdfFileRevision::removeLeftOvers);

    const std::unique_ptr<FramelessWindow> window = showMainWindow();
    const std::unique_ptr<WindowPicture> picture = WindowPicture::requestedFor(*window);
    openFileArgument(*window, QCoreApplication::arguments());
    if (picture) {
        picture->takeWhenReady();
        if (picture->isFinished()) {
            return picture->exitCode();
        }
    }
    return QApplication::exec();
}
