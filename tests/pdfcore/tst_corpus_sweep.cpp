// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_editor_backend.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cmath>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr int kThreads = 2;
constexpr int kPagesPerFile = 3;
constexpr double kLongestSide = 700;
constexpr qint64 kHangMilliseconds = 120'000;

/// Passwords of the encrypted files in the collection that have one that people know.
const QStringList kKnownPasswords = {
    QStringLiteral("user"),     QStringLiteral("owner"),    QStringLiteral("openpassword"),
    QStringLiteral("password"), QStringLiteral("asdfzxcv"),
};

QSize sizeToRender(const QSizeF &page)
{
    const double scale = kLongestSide / std::max({page.width(), page.height(), 1.0});
    return {std::max(1, static_cast<int>(std::lround(page.width() * scale))),
            std::max(1, static_cast<int>(std::lround(page.height() * scale)))};
}

/// What happened to the files, gathered from all threads.
class Tally
{
public:
    void count(const QString &outcome)
    {
        const std::lock_guard lock(m_mutex);
        ++m_counts[outcome];
    }

    void complain(const QString &problem)
    {
        const std::lock_guard lock(m_mutex);
        m_problems.append(problem);
    }

    void note(const QString &file, qint64 milliseconds)
    {
        const std::lock_guard lock(m_mutex);
        m_slowest.insert(milliseconds, file);
        while (m_slowest.size() > 10) {
            m_slowest.erase(m_slowest.begin());
        }
    }

    [[nodiscard]] QStringList problems() const { return m_problems; }

    void print() const
    {
        for (auto it = m_counts.begin(); it != m_counts.end(); ++it) {
            qInfo().noquote() << QStringLiteral("%1 %2").arg(it.value(), 6).arg(it.key());
        }
        for (auto it = m_slowest.begin(); it != m_slowest.end(); ++it) {
            qInfo().noquote() << QStringLiteral("%1 ms %2").arg(it.key(), 6).arg(it.value());
        }
    }

private:
    std::mutex m_mutex;
    QMap<QString, int> m_counts;
    QMultiMap<qint64, QString> m_slowest;
    QStringList m_problems;
};

QString errorName(PdfBackendError error)
{
    switch (error) {
    case PdfBackendError::None:
        return QStringLiteral("None");
    case PdfBackendError::FileNotFound:
        return QStringLiteral("FileNotFound");
    case PdfBackendError::PasswordRequired:
        return QStringLiteral("PasswordRequired");
    case PdfBackendError::InvalidPassword:
        return QStringLiteral("InvalidPassword");
    case PdfBackendError::InvalidDocument:
        return QStringLiteral("InvalidDocument");
    case PdfBackendError::RenderFailed:
        return QStringLiteral("RenderFailed");
    case PdfBackendError::WriteFailed:
        return QStringLiteral("WriteFailed");
    }
    return QStringLiteral("unknown");
}

/// Takes one file through inspecting, rendering, saving and reopening.
class FileSweep
{
public:
    FileSweep(const QString &path, const QString &target, Tally &tally)
        : m_path(path)
        , m_target(target)
        , m_tally(tally)
    {}

    void run()
    {
        if (!inspect()) {
            return;
        }
        if (m_info.pageSizes.isEmpty()) {
            m_tally.count(QStringLiteral("inspect: no pages"));
            return;
        }
        for (qsizetype i = 0; i < m_info.pageSizes.size(); ++i) {
            PdfSourcePage page;
            page.filePath = m_path;
            page.password = m_password;
            page.pageIndex = static_cast<qint32>(i);
            page.pageSize = m_info.pageSizes.at(i);
            m_pages.append(page);
        }
        render();
        save();
    }

private:
    bool inspect()
    {
        PdfBackendError error = PdfBackendError::None;
        QString message;
        bool ok = PdfEditorBackend::inspectDocument(m_path, {}, &m_info, &error, &message);
        for (const QString &password : kKnownPasswords) {
            if (ok || error == PdfBackendError::InvalidDocument) {
                break;
            }
            ok = PdfEditorBackend::inspectDocument(m_path, password, &m_info, &error, &message);
            m_password = ok ? password : QString();
        }
        check(ok, error, message, QStringLiteral("inspect"));
        return ok;
    }

    void render()
    {
        QList<PdfSourcePage> pages;
        QList<QSize> sizes;
        for (qsizetype i = 0; i < std::min<qsizetype>(kPagesPerFile, m_pages.size()); ++i) {
            pages.append(m_pages.at(i));
            sizes.append(sizeToRender(m_info.pageSizes.at(i)));
        }
        QStringList errors;
        const QList<QImage> images = PdfEditorBackend::renderPages(pages, sizes, &errors);
        for (qsizetype i = 0; i < pages.size(); ++i) {
            const QImage &image = images.at(i);
            check(!image.isNull(), PdfBackendError::RenderFailed, errors.at(i),
                  QStringLiteral("render"));
            if (!image.isNull() && image.size() != sizes.at(i)) {
                m_tally.complain(m_path + QStringLiteral(": rendered at a wrong size"));
            }
        }
    }

    void save()
    {
        PdfBackendError error = PdfBackendError::None;
        QString message;
        const bool saved = PdfEditorBackend::saveDocument(m_pages, m_target, &error, &message);
        check(saved, error, message, QStringLiteral("save"));
        if (!saved) {
            if (QFileInfo::exists(m_target)) {
                m_tally.complain(m_path + QStringLiteral(": a failed save left a file"));
            }
            return;
        }
        PdfDocumentInfo written;
        const bool reopened =
            PdfEditorBackend::inspectDocument(m_target, m_password, &written, &error, &message);
        check(reopened, error, message, QStringLiteral("reopen"));
        if (!reopened || written.pageSizes.size() != m_pages.size()) {
            m_tally.complain(m_path + QStringLiteral(": the saved file has other pages: ") +
                             message);
        }
        QFile::remove(m_target);
    }

    void check(bool ok, PdfBackendError error, const QString &message, const QString &step)
    {
        m_tally.count(step + QStringLiteral(": ") + (ok ? QStringLiteral("ok") : errorName(error)));
        if (!ok && (error == PdfBackendError::None || message.trimmed().isEmpty())) {
            m_tally.complain(m_path + QStringLiteral(": a failure without reason in ") + step);
        }
        if (!ok && qEnvironmentVariableIsSet("QUILLORA_SWEEP_VERBOSE")) {
            qInfo().noquote() << step << errorName(error) << message << m_path;
        }
    }

    QString m_path;
    QString m_target;
    Tally &m_tally;
    QString m_password;
    PdfDocumentInfo m_info;
    QList<PdfSourcePage> m_pages;
};

} // namespace

/// Takes every file of a large collection through the engine.
class TestCorpusSweep : public QObject
{
    Q_OBJECT

private slots:
    void everyFileEndsInAResultOrAReason();
};

void TestCorpusSweep::everyFileEndsInAResultOrAReason()
{
    const QString corpus = qEnvironmentVariable("QUILLORA_CORPUS", QStringLiteral(QUILLORA_CORPUS));
    if (!QFileInfo(corpus).isDir()) {
        QSKIP("The folder with sample files is absent; the sweep is skipped.");
    }

    std::vector<QString> files;
    QDirIterator it(corpus, {QStringLiteral("*.pdf")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        files.push_back(it.next());
    }
    std::sort(files.begin(), files.end());
    QVERIFY(!files.empty());

    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    Tally tally;
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int worker = 0; worker < kThreads; ++worker) {
        threads.emplace_back([&, worker] {
            const QString target = folder.filePath(QStringLiteral("out-%1.pdf").arg(worker));
            for (std::size_t i = next++; i < files.size(); i = next++) {
                QElapsedTimer timer;
                timer.start();
                FileSweep(files[i], target, tally).run();
                tally.note(files[i], timer.elapsed());
                if (timer.elapsed() > kHangMilliseconds) {
                    tally.complain(files[i] + QStringLiteral(": takes too long"));
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }

    qInfo().noquote() << files.size() << "files";
    tally.print();
    const QStringList left = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden);
    QVERIFY2(left.isEmpty(), qPrintable(left.join(QLatin1Char(' '))));
    QVERIFY2(tally.problems().isEmpty(), qPrintable(tally.problems().join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TestCorpusSweep)
#include "tst_corpus_sweep.moc"
