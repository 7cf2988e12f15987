// SPDX-License-Identifier: AGPL-3.0-or-later
#include "recent/recent_file_manager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

QStringList numberedPaths(int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths.append(QStringLiteral("D:/Docs/%1.pdf").arg(i));
    }
    return paths;
}

QByteArray jsonOf(const QStringList &paths)
{
    const QJsonObject root{{QStringLiteral("recentFiles"), QJsonArray::fromStringList(paths)}};
    return QJsonDocument(root).toJson();
}

} // namespace

class TestRecentFileManager final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void missingFileGivesAnEmptyList();
    void addedPathGoesToTheFront();
    void listedPathKeepsItsPlaceAndTheFileIsRewritten();
    void pathsDifferingInCaseAreTwoEntries();
    void pathIsKeptExactlyAsPassed();
    void twoHundredFirstPathDropsTheOldest();
    void longFileLoadsWholeAndIsTrimmedByTheFirstNewPath();
    void longFileIsTrimmedByAddingAListedPath();
    void onlyNonEmptyStringsAreLoaded();
    void duplicatesInTheFileAreKept();
    void deletedFileStaysListed();
    void filesReturnsACopy();

    void fileHoldsOneIndentedObject();
    void savedListIsLoadedAgain();
    void nothingIsReloadedWhileRunning();

    void unusableFileGivesAnEmptyList_data();
    void unusableFileGivesAnEmptyList();
    void unusableFileIsReplacedByTheNextSave();
    void byteOrderMarkIsAccepted();
    void hugeFileIsReadWhole();
    void directoryInPlaceOfTheFileIsSurvived();
    void unreadableFileGivesAnEmptyList();
    void readOnlyFileKeepsTheListInMemory();
    void missingFolderKeepsTheListInMemory();
    void readOnlyFolderKeepsTheListInMemory();

    void writesItsTraceToTheDebugLog();
    void instanceLivesInTheConfigurationFolder();

private:
    QString storePath() const { return m_folder->filePath(QStringLiteral("recent_files.json")); }
    void writeStore(const QByteArray &bytes) const;
    QByteArray readStore() const;
    QStringList storedPaths() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestRecentFileManager::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName(QStringLiteral("Quillora"));
    QCoreApplication::setApplicationName(QStringLiteral("QuilloraRecentTest"));
}

void TestRecentFileManager::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestRecentFileManager::writeStore(const QByteArray &bytes) const
{
    QFile file(storePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray TestRecentFileManager::readStore() const
{
    QFile file(storePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList TestRecentFileManager::storedPaths() const
{
    QStringList paths;
    const QJsonObject root = QJsonDocument::fromJson(readStore()).object();
    const QJsonArray entries = root.value(QStringLiteral("recentFiles")).toArray();
    for (const QJsonValue &entry : entries) {
        paths.append(entry.toString());
    }
    return paths;
}

void TestRecentFileManager::missingFileGivesAnEmptyList()
{
    const RecentFileManager manager(storePath());
    QVERIFY(manager.files().isEmpty());
    QVERIFY(!manager.contains(QStringLiteral("C:/a.pdf")));
    QVERIFY2(!QFile::exists(storePath()), "loading alone must not write");
}

void TestRecentFileManager::addedPathGoesToTheFront()
{
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("D:/Docs/old.pdf"));
    manager.addFile(QStringLiteral("D:/Docs/report.pdf"));
    const QStringList expected{QStringLiteral("D:/Docs/report.pdf"),
                               QStringLiteral("D:/Docs/old.pdf")};
    QCOMPARE(manager.files(), expected);
    QCOMPARE(storedPaths(), expected);
    QVERIFY(manager.contains(QStringLiteral("D:/Docs/old.pdf")));
}

void TestRecentFileManager::listedPathKeepsItsPlaceAndTheFileIsRewritten()
{
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("a.pdf"));
    manager.addFile(QStringLiteral("b.pdf"));
    manager.addFile(QStringLiteral("c.pdf"));
    const QStringList before = manager.files();
    QVERIFY(QFile::remove(storePath()));

    manager.addFile(QStringLiteral("a.pdf"));

    QCOMPARE(manager.files(), before);
    QCOMPARE(storedPaths(), before);
}

void TestRecentFileManager::pathsDifferingInCaseAreTwoEntries()
{
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("C:/a.pdf"));
    QVERIFY(!manager.contains(QStringLiteral("c:/a.pdf")));
    manager.addFile(QStringLiteral("c:/a.pdf"));
    const QStringList expected{QStringLiteral("c:/a.pdf"), QStringLiteral("C:/a.pdf")};
    QCOMPARE(manager.files(), expected);
}

void TestRecentFileManager::pathIsKeptExactlyAsPassed()
{
    const QStringList paths{QStringLiteral("C:\\Docs\\..\\Docs//报告 \"1\".pdf"),
                            QStringLiteral(" /tmp/ذيل/日本語.pdf "),
                            QStringLiteral("/x/\U0001F4C4.pdf")};
    {
        RecentFileManager manager(storePath());
        for (auto path = paths.crbegin(); path != paths.crend(); ++path) {
            manager.addFile(*path);
        }
        QCOMPARE(manager.files(), paths);
    }
    QCOMPARE(RecentFileManager(storePath()).files(), paths);
}

void TestRecentFileManager::twoHundredFirstPathDropsTheOldest()
{
    RecentFileManager manager(storePath());
    const QStringList paths = numberedPaths(201);
    for (int i = 0; i < 200; ++i) {
        manager.addFile(paths.at(i));
    }
    QCOMPARE(manager.files().size(), 200);
    QVERIFY(manager.contains(paths.at(0)));

    manager.addFile(paths.at(200));

    QCOMPARE(manager.files().size(), 200);
    QCOMPARE(manager.files().constFirst(), paths.at(200));
    QCOMPARE(manager.files().constLast(), paths.at(1));
    QVERIFY(!manager.contains(paths.at(0)));
    QCOMPARE(storedPaths(), manager.files());
}

void TestRecentFileManager::longFileLoadsWholeAndIsTrimmedByTheFirstNewPath()
{
    const QStringList paths = numberedPaths(300);
    writeStore(jsonOf(paths));
    RecentFileManager manager(storePath());
    QCOMPARE(manager.files(), paths);

    manager.addFile(QStringLiteral("new.pdf"));

    QCOMPARE(manager.files(), QStringList{QStringLiteral("new.pdf")} + paths.first(199));
    QCOMPARE(storedPaths(), manager.files());
}

void TestRecentFileManager::longFileIsTrimmedByAddingAListedPath()
{
    const QStringList paths = numberedPaths(300);
    writeStore(jsonOf(paths));
    RecentFileManager manager(storePath());
    manager.addFile(paths.at(250));
    QCOMPARE(manager.files(), paths.first(200));
}

void TestRecentFileManager::onlyNonEmptyStringsAreLoaded()
{
    writeStore(R"({"other": ["x"],
                   "recentFiles": [1, "a.pdf", "", null, true, {"p": "q"}, ["r"], 2.5, "b.pdf"]})");
    const QStringList expected{QStringLiteral("a.pdf"), QStringLiteral("b.pdf")};
    QCOMPARE(RecentFileManager(storePath()).files(), expected);
}

void TestRecentFileManager::duplicatesInTheFileAreKept()
{
    writeStore(R"({"recentFiles": ["a.pdf", "b.pdf", "a.pdf"]})");
    QCOMPARE(RecentFileManager(storePath()).files().size(), 3);
}

void TestRecentFileManager::deletedFileStaysListed()
{
    const QString pdf = m_folder->filePath(QStringLiteral("gone.pdf"));
    QFile file(pdf);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    {
        RecentFileManager manager(storePath());
        manager.addFile(pdf);
    }
    QVERIFY(QFile::remove(pdf));
    QVERIFY(RecentFileManager(storePath()).contains(pdf));
}

void TestRecentFileManager::filesReturnsACopy()
{
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("a.pdf"));
    QStringList files = manager.files();
    files.clear();
    QCOMPARE(manager.files().size(), 1);
}

void TestRecentFileManager::fileHoldsOneIndentedObject()
{
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("D:/Docs/old.pdf"));
    manager.addFile(QStringLiteral("D:/Docs/报告.pdf"));
    QCOMPARE(QString::fromUtf8(readStore()), QStringLiteral("{\n"
                                                            "    \"recentFiles\": [\n"
                                                            "        \"D:/Docs/报告.pdf\",\n"
                                                            "        \"D:/Docs/old.pdf\"\n"
                                                            "    ]\n"
                                                            "}\n"));
}

void TestRecentFileManager::savedListIsLoadedAgain()
{
    QStringList files;
    {
        RecentFileManager manager(storePath());
        manager.addFile(QStringLiteral("a.pdf"));
        manager.addFile(QStringLiteral("b.pdf"));
        files = manager.files();
    }
    QCOMPARE(RecentFileManager(storePath()).files(), files);
}

void TestRecentFileManager::nothingIsReloadedWhileRunning()
{
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("a.pdf"));
    writeStore(jsonOf({QStringLiteral("foreign.pdf")}));
    QVERIFY(!manager.contains(QStringLiteral("foreign.pdf")));
    manager.addFile(QStringLiteral("b.pdf"));
    const QStringList expected{QStringLiteral("b.pdf"), QStringLiteral("a.pdf")};
    QCOMPARE(storedPaths(), expected);
}

void TestRecentFileManager::unusableFileGivesAnEmptyList_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("not JSON") << QByteArray("recent files: a.pdf");
    QTest::newRow("cut short") << QByteArray(R"({"recentFiles": ["a.pdf", "b.p)");
    QTest::newRow("text after the object") << QByteArray(R"({"recentFiles": ["a.pdf"]} x)");
    QTest::newRow("top-level array") << QByteArray(R"(["a.pdf", "b.pdf"])");
    QTest::newRow("missing key") << QByteArray(R"({"files": ["a.pdf"]})");
    QTest::newRow("key in another case") << QByteArray(R"({"recentfiles": ["a.pdf"]})");
    QTest::newRow("value is a string") << QByteArray(R"({"recentFiles": "a.pdf"})");
    QTest::newRow("value is an object") << QByteArray(R"({"recentFiles": {"0": "a.pdf"}})");
    QTest::newRow("invalid UTF-8") << QByteArray("{\"recentFiles\": [\"\xC3\x28.pdf\"]}");
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFE{\0\"\0", 6);
    QTest::newRow("nested too deeply") << QByteArray(200'000, '[');
    QTest::newRow("zero bytes") << QByteArray(4096, '\0');
}

void TestRecentFileManager::unusableFileGivesAnEmptyList()
{
    QFETCH(QByteArray, bytes);
    writeStore(bytes);
    QVERIFY(RecentFileManager(storePath()).files().isEmpty());
    QCOMPARE(readStore(), bytes);
}

void TestRecentFileManager::unusableFileIsReplacedByTheNextSave()
{
    writeStore("{broken");
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("a.pdf"));
    QCOMPARE(storedPaths(), QStringList{QStringLiteral("a.pdf")});
}

void TestRecentFileManager::byteOrderMarkIsAccepted()
{
    writeStore("\xEF\xBB\xBF{\"recentFiles\": [\"a.pdf\"]}");
    QCOMPARE(RecentFileManager(storePath()).files(), QStringList{QStringLiteral("a.pdf")});
}

void TestRecentFileManager::hugeFileIsReadWhole()
{
    const QByteArray blanks(17 * 1024 * 1024, ' ');
    writeStore(blanks + R"({"recentFiles": ["a.pdf", "b.pdf"]})" + blanks);
    RecentFileManager manager(storePath());
    const QStringList listed{QStringLiteral("a.pdf"), QStringLiteral("b.pdf")};
    QCOMPARE(manager.files(), listed);

    manager.addFile(QStringLiteral("c.pdf"));
    QCOMPARE(storedPaths(), QStringList{QStringLiteral("c.pdf")} + listed);
}

void TestRecentFileManager::directoryInPlaceOfTheFileIsSurvived()
{
    QVERIFY(QDir().mkpath(storePath()));
    RecentFileManager manager(storePath());
    QVERIFY(manager.files().isEmpty());
    manager.addFile(QStringLiteral("a.pdf"));
    QCOMPARE(manager.files(), QStringList{QStringLiteral("a.pdf")});
    QVERIFY(QFileInfo(storePath()).isDir());
}

void TestRecentFileManager::unreadableFileGivesAnEmptyList()
{
    writeStore(jsonOf({QStringLiteral("a.pdf")}));
    QVERIFY(QFile::setPermissions(storePath(), QFile::WriteOwner));
    if (QFile probe(storePath()); probe.open(QIODevice::ReadOnly)) {
        QSKIP("this user may read any file");
    }
    QVERIFY(RecentFileManager(storePath()).files().isEmpty());
}

void TestRecentFileManager::readOnlyFileKeepsTheListInMemory()
{
    const QByteArray bytes = jsonOf({QStringLiteral("a.pdf")});
    writeStore(bytes);
    QVERIFY(QFile::setPermissions(storePath(), QFile::ReadOwner));
    if (QFile probe(storePath()); probe.open(QIODevice::ReadWrite)) {
        QSKIP("this user may write any file");
    }
    RecentFileManager manager(storePath());
    manager.addFile(QStringLiteral("b.pdf"));
    const QStringList expected{QStringLiteral("b.pdf"), QStringLiteral("a.pdf")};
    QCOMPARE(manager.files(), expected);
    QCOMPARE(readStore(), bytes);
    QVERIFY(QFile::setPermissions(storePath(), QFile::ReadOwner | QFile::WriteOwner));
}

void TestRecentFileManager::missingFolderKeepsTheListInMemory()
{
    const QString path = m_folder->filePath(QStringLiteral("none/recent_files.json"));
    RecentFileManager manager(path);
    manager.addFile(QStringLiteral("a.pdf"));
    QCOMPARE(manager.files(), QStringList{QStringLiteral("a.pdf")});
    QVERIFY(!QFile::exists(path));
}

void TestRecentFileManager::readOnlyFolderKeepsTheListInMemory()
{
    const QString folder = m_folder->filePath(QStringLiteral("locked"));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    QFile probe(folder + QStringLiteral("/probe"));
    if (probe.open(QIODevice::WriteOnly)) {
        QSKIP("this user may write into any folder");
    }
    RecentFileManager manager(folder + QStringLiteral("/recent_files.json"));
    manager.addFile(QStringLiteral("a.pdf"));
    QCOMPARE(manager.files(), QStringList{QStringLiteral("a.pdf")});
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void TestRecentFileManager::writesItsTraceToTheDebugLog()
{
    const QString path = m_folder->filePath(QStringLiteral("trace.json"));
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("\"%1\"").arg(path)));
    RecentFileManager manager(path);

    QTest::ignoreMessage(QtDebugMsg, R"(123 QList("a.pdf"))");
    QTest::ignoreMessage(QtDebugMsg, R"(QList("a.pdf"))");
    QTest::ignoreMessage(QtDebugMsg,
                         R"("{\n    \"recentFiles\": [\n        \"a.pdf\"\n    ]\n}\n")");
    manager.addFile(QStringLiteral("a.pdf"));

    QTest::ignoreMessage(QtDebugMsg, R"(QList("a.pdf"))");
    QTest::ignoreMessage(QtDebugMsg,
                         R"("{\n    \"recentFiles\": [\n        \"a.pdf\"\n    ]\n}\n")");
    manager.addFile(QStringLiteral("a.pdf"));
}

void TestRecentFileManager::instanceLivesInTheConfigurationFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QVERIFY(folder.contains(QStringLiteral("Quillora")));
    QDir(folder).removeRecursively();

    RecentFileManager *manager = RecentFileManager::instance();
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(RecentFileManager::instance(), manager);
    manager->addFile(QStringLiteral("a.pdf"));
    QVERIFY(QFile::exists(folder + QStringLiteral("/recent_files.json")));
    QDir(folder).removeRecursively();
}

QTEST_GUILESS_MAIN(TestRecentFileManager)
#include "tst_recent_file_manager.moc"
