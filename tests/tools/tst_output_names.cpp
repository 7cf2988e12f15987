// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/output_names.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

bool createFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly);
}

} // namespace

/// Names for results that are not taken yet.
class TestOutputNames final : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void freeNameIsKept();
    void takenNamesGetTheNextNumber();
    void numberThatIsFreeIsUsed();
    void folderTakesANameToo();
    void nameIsNotTakenByOthersLikeIt();
    void pathIsSpelledAsTheSystemDoes();
    void namesKeepWhatLooksLikeAPlaceholder();

    void folderIsCreated();
    void takenFoldersGetTheNextNumber();
    void fileTakesTheNameOfAFolder();
    void missingParentsAreCreated();
    void folderHasForwardSlashes();
    void folderThatCannotBeCreatedIsNamed();
    void folderNamesKeepWhatLooksLikeAPlaceholder();

private:
    [[nodiscard]] QString in(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] QString nativeIn(const QString &name) const
    {
        return QDir::toNativeSeparators(in(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestOutputNames::freeNameIsKept()
{
    QCOMPARE(OutputNames::pdfFile(m_folder->path(), u"报告"_s), nativeIn(u"报告.pdf"_s));
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void TestOutputNames::takenNamesGetTheNextNumber()
{
    for (const char *expected : {"a.pdf", "a(1).pdf", "a(2).pdf", "a(3).pdf"}) {
        const QString path = OutputNames::pdfFile(m_folder->path(), u"a"_s);
        QCOMPARE(path, nativeIn(QString::fromLatin1(expected)));
        QVERIFY(createFile(path));
    }
}

void TestOutputNames::numberThatIsFreeIsUsed()
{
    QVERIFY(createFile(in(u"a.pdf"_s)) && createFile(in(u"a(2).pdf"_s)));
    QCOMPARE(OutputNames::pdfFile(m_folder->path(), u"a"_s), nativeIn(u"a(1).pdf"_s));
}

void TestOutputNames::folderTakesANameToo()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"a.pdf"_s));
    QCOMPARE(OutputNames::pdfFile(m_folder->path(), u"a"_s), nativeIn(u"a(1).pdf"_s));
}

void TestOutputNames::nameIsNotTakenByOthersLikeIt()
{
    QVERIFY(createFile(in(u"a"_s)) && createFile(in(u"a.png"_s)) && createFile(in(u"a(1).pdf"_s)));
    QCOMPARE(OutputNames::pdfFile(m_folder->path(), u"a"_s), nativeIn(u"a.pdf"_s));
}

void TestOutputNames::pathIsSpelledAsTheSystemDoes()
{
    const QString path = OutputNames::pdfFile(u"one/two"_s, u"a"_s);
    QCOMPARE(path, QStringList({u"one"_s, u"two"_s, u"a.pdf"_s}).join(QDir::separator()));
}

void TestOutputNames::namesKeepWhatLooksLikeAPlaceholder()
{
    const QString base = u"100%1 of %2 %L3"_s;
    for (const QString &name : QStringList({base + u".pdf"_s, base + u"(1).pdf"_s})) {
        const QString path = OutputNames::pdfFile(m_folder->path(), base);
        QCOMPARE(path, nativeIn(name));
        QVERIFY(createFile(path));
    }
}

void TestOutputNames::folderIsCreated()
{
    QCOMPARE(OutputNames::createFolder(m_folder->path(), u"图片"_s), in(u"图片"_s));
    QVERIFY(QFileInfo(in(u"图片"_s)).isDir());
}

void TestOutputNames::takenFoldersGetTheNextNumber()
{
    for (const char *expected : {"doc", "doc (1)", "doc (2)"}) {
        const QString name = QString::fromLatin1(expected);
        QCOMPARE(OutputNames::createFolder(m_folder->path(), u"doc"_s), in(name));
        QVERIFY(QFileInfo(in(name)).isDir());
    }
}

void TestOutputNames::fileTakesTheNameOfAFolder()
{
    QVERIFY(createFile(in(u"doc"_s)));
    QCOMPARE(OutputNames::createFolder(m_folder->path(), u"doc"_s), in(u"doc (1)"_s));
}

void TestOutputNames::missingParentsAreCreated()
{
    const QString deep = in(u"one/two"_s);
    QCOMPARE(OutputNames::createFolder(deep, u"doc"_s), in(u"one/two/doc"_s));
    QVERIFY(QFileInfo(in(u"one/two/doc"_s)).isDir());
}

void TestOutputNames::folderHasForwardSlashes()
{
    const QString native = QDir::toNativeSeparators(m_folder->path());
    QCOMPARE(OutputNames::createFolder(native, u"doc"_s), in(u"doc"_s));
}

void TestOutputNames::folderThatCannotBeCreatedIsNamed()
{
    QVERIFY(createFile(in(u"file"_s)));
    QCOMPARE(OutputNames::createFolder(in(u"file"_s), u"doc"_s), in(u"file/doc"_s));
    QVERIFY(!QFileInfo::exists(in(u"file/doc"_s)));
}

void TestOutputNames::folderNamesKeepWhatLooksLikeAPlaceholder()
{
    const QString base = u"%1 and %2"_s;
    QCOMPARE(OutputNames::createFolder(m_folder->path(), base), in(base));
    QCOMPARE(OutputNames::createFolder(m_folder->path(), base), in(base + u" (1)"_s));
}

QTEST_APPLESS_MAIN(TestOutputNames)
#include "tst_output_names.moc"
