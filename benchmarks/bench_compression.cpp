// SPDX-License-Identifier: AGPL-3.0-or-later
// Making files smaller, at both levels, against qpdf and Ghostscript in the same series.
//
//     bench_compression FOLDER [EVERY [TABLE]]    all files below FOLDER, or every EVERY-th of
//     them;
//                                                 TABLE becomes a Markdown table of those that
//                                                 consist of images for the most part
//     bench_compression --work LEVEL FILE OUT     does it once (what is timed)
//
// A peer that is not installed is left out. Files that one of the programs does not read do not
// count. Every third file is kept aside: nothing is to be chosen by its figures. Times are those
// that the processor spent on a program, where the system tells, and else those that passed.

#include "benchmarks/page_likeness.h"
#include "pdfcore/pdf_compression.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>

#include <qpdf/QPDF.hh>

#include <algorithm>
#include <exception>
#include <functional>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace {

constexpr int kTimeout = 60'000;
/// Pages of a file that are looked at, if its images are as much of it.
constexpr int kPages = 4;
constexpr double kSomeImages = 0.02;
/// What makes a file one of images.
constexpr double kMostlyImages = 0.5;
constexpr qsizetype kAside = 3;

/// A way of making files smaller.
struct Way
{
    QString name;
    QString program;
    std::function<QStringList(const QString &file, const QString &result)> arguments;
};

struct Trial
{
    qint64 size = 0; ///< 0: it failed.
    double milliseconds = 0;
    QList<double> likeness;
};

struct Row
{
    QString name;
    qint64 size = 0;
    double imageShare = 0;
    bool isAside = false;
    std::vector<Trial> trials; ///< By way.
};

std::vector<Way> ways()
{
    const QString own = QCoreApplication::applicationFilePath();
    const auto ours = [](const QString &level) {
        return [level](const QString &file, const QString &result) {
            return QStringList{QStringLiteral("--work"), level, file, result};
        };
    };
    std::vector<Way> all{{QStringLiteral("basic"), own, ours(QStringLiteral("0"))},
                         {QStringLiteral("strong"), own, ours(QStringLiteral("1"))},
                         {QStringLiteral("qpdf"), QStringLiteral("qpdf"),
                          [](const QString &file, const QString &result) {
                              return QStringList{QStringLiteral("--object-streams=generate"),
                                                 QStringLiteral("--recompress-flate"),
                                                 QStringLiteral("--compression-level=9"), file,
                                                 result};
                          }},
                         {QStringLiteral("gs /ebook"), QStringLiteral("gs"),
                          [](const QString &file, const QString &result) {
                              return QStringList{QStringLiteral("-q"),
                                                 QStringLiteral("-dNOPAUSE"),
                                                 QStringLiteral("-dBATCH"),
                                                 QStringLiteral("-sDEVICE=pdfwrite"),
                                                 QStringLiteral("-dPDFSETTINGS=/ebook"),
                                                 QStringLiteral("-o"),
                                                 result,
                                                 file};
                          }}};
    const auto isMissing = [](const Way &way) {
        return QStandardPaths::findExecutable(way.program).isEmpty();
    };
    all.erase(std::remove_if(all.begin(), all.end(), isMissing), all.end());
    return all;
}

/// What the processor has spent on programs that this one has run, or what time it is.
double clockNow()
{
#ifdef Q_OS_UNIX
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) * 1e3 +
           static_cast<double>(usage.ru_utime.tv_usec) / 1e3;
#else
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch());
#endif
}

Trial tried(const Way &way, const QString &file, const QString &result)
{
    QFile::remove(result);
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    const double begin = clockNow();
    process.start(way.program, way.arguments(file, result));
    if (!process.waitForFinished(kTimeout)) {
        process.kill();
        process.waitForFinished();
        QFile::remove(result);
    }
    Trial trial;
    trial.milliseconds = clockNow() - begin;
    // qpdf tells of what it mended by its code.
    trial.size = QFileInfo(result).size();
    return trial;
}

/// How much of a file its images are.
double imageShareOf(const QString &file)
{
    double bytes = 0;
    try {
        QPDF document;
        document.setSuppressWarnings(true);
        document.processFile(QFile::encodeName(file).constData());
        for (QPDFObjectHandle object : document.getAllObjects()) {
            QPDFObjectHandle dict = object.isStream() ? object.getDict() : object;
            if (object.isStream() && dict.getKey("/Subtype").isNameAndEquals("/Image") &&
                dict.getKey("/Length").isInteger()) {
                bytes += static_cast<double>(dict.getKey("/Length").getIntValue());
            }
        }
    } catch (const std::exception &) {
        return 0;
    }
    return bytes / static_cast<double>(QFileInfo(file).size());
}

double meanOf(const QList<double> &values)
{
    double sum = 0;
    for (const double value : values) {
        sum += value;
    }
    return values.isEmpty() ? 1 : sum / static_cast<double>(values.size());
}

QString number(double value, int digits)
{
    return QString::number(value, 'f', digits);
}

/// Sizes as shares of the source, times and likeness of all these files together.
void printTotals(QTextStream &out, const QString &what, const std::vector<Row> &rows,
                 const std::vector<Way> &all, const std::function<bool(const Row &)> &counts)
{
    double source = 0;
    int files = 0;
    for (const Row &row : rows) {
        source += counts(row) ? static_cast<double>(row.size) : 0;
        files += counts(row) ? 1 : 0;
    }
    if (files == 0) {
        return;
    }
    out << what << ": " << files << " files, " << number(source / 1e6, 2) << " MB" << Qt::endl;
    for (std::size_t i = 0; i < all.size(); ++i) {
        double size = 0;
        double seconds = 0;
        QList<double> likeness;
        const Row *worst = nullptr;
        double least = 2;
        for (const Row &row : rows) {
            if (!counts(row)) {
                continue;
            }
            size += static_cast<double>(row.trials[i].size);
            seconds += row.trials[i].milliseconds / 1e3;
            for (const double page : row.trials[i].likeness) {
                likeness.append(page);
                worst = page < least ? &row : worst;
                least = std::min(least, page);
            }
        }
        out << QStringLiteral("    %1 %2 of the source, %3 s")
                   .arg(all[i].name, -10)
                   .arg(number(size / source, 4), number(seconds, 1));
        if (worst != nullptr) {
            out << ", " << likeness.size() << " pages, likeness " << number(meanOf(likeness), 4)
                << ", least " << number(least, 4) << " in " << worst->name;
        }
        out << Qt::endl;
    }
}

/// How many results are larger than those of another way.
void printLarger(QTextStream &out, const std::vector<Row> &rows, const std::vector<Way> &all)
{
    for (std::size_t peer = 2; peer < all.size(); ++peer) {
        for (std::size_t own = 0; own < 2; ++own) {
            int larger = 0;
            qint64 excess = 0;
            for (const Row &row : rows) {
                const qint64 more = row.trials[own].size - row.trials[peer].size;
                larger += more > 0 ? 1 : 0;
                excess += std::max<qint64>(more, 0);
            }
            out << larger << " results of " << all[own].name << " are larger than those of "
                << all[peer].name << ", by " << excess << " bytes" << Qt::endl;
        }
    }
}

bool writeTable(const QString &path, const std::vector<Row> &rows, const std::vector<Way> &all)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        return false;
    }
    QTextStream out(&file);
    out << "| File | kB |";
    for (const Way &way : all) {
        out << ' ' << way.name << " | ms | like |";
    }
    out << "\n|---|--:|";
    for (std::size_t i = 0; i < all.size(); ++i) {
        out << "--:|--:|--:|";
    }
    out << '\n';
    for (const Row &row : rows) {
        if (row.imageShare < kMostlyImages) {
            continue;
        }
        out << "| " << row.name.section(QLatin1Char('/'), -1) << (row.isAside ? " \u2020" : "")
            << " | " << number(static_cast<double>(row.size) / 1e3, 1) << " |";
        for (const Trial &trial : row.trials) {
            out << ' ' << number(static_cast<double>(trial.size) / static_cast<double>(row.size), 3)
                << " | " << number(trial.milliseconds, 0) << " | "
                << number(meanOf(trial.likeness), 3) << " |";
        }
        out << '\n';
    }
    return true;
}

Row rowOf(const QString &folder, const QString &file, const std::vector<Way> &all,
          const QString &result)
{
    Row row;
    row.name = file.mid(folder.size() + 1);
    row.size = QFileInfo(file).size();
    row.imageShare = imageShareOf(file);
    for (const Way &way : all) {
        row.trials.push_back(tried(way, file, result));
        Trial &trial = row.trials.back();
        if (trial.size > 0 && row.imageShare >= kSomeImages) {
            trial.likeness = pageLikeness(file, result, kPages);
        }
    }
    return row;
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator found(folder, {QStringLiteral("*.pdf")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (found.hasNext()) {
        files.append(found.next());
    }
    files.sort();
    return files;
}

int compare(const QString &folder, qsizetype every, const QString &table)
{
    QTextStream out(stdout);
    const std::vector<Way> all = ways();
    const QTemporaryDir results;
    const QStringList files = filesBelow(folder);
    std::vector<Row> rows;
    for (qsizetype i = 0; i < files.size(); i += every) {
        Row row = rowOf(folder, files.at(i), all, results.filePath(QStringLiteral("result.pdf")));
        row.isAside = i % kAside == kAside - 1;
        const bool isRead = std::all_of(row.trials.begin(), row.trials.end(),
                                        [](const Trial &trial) { return trial.size > 0; });
        if (isRead) {
            rows.push_back(std::move(row));
        }
    }
    const auto isOfImages = [](const Row &row) { return row.imageShare >= kMostlyImages; };
    printTotals(out, QStringLiteral("all"), rows, all, [](const Row &) { return true; });
    printTotals(out, QStringLiteral("tuned on"), rows, all,
                [](const Row &row) { return !row.isAside; });
    printTotals(out, QStringLiteral("kept aside"), rows, all,
                [](const Row &row) { return row.isAside; });
    // Signed files stay as they are, which a peer that breaks signatures does not have to do.
    printTotals(out, QStringLiteral("changed"), rows, all,
                [](const Row &row) { return row.trials[0].size < row.size; });
    printTotals(out, QStringLiteral("images, tuned on"), rows, all,
                [&](const Row &row) { return isOfImages(row) && !row.isAside; });
    printTotals(out, QStringLiteral("images, kept aside"), rows, all,
                [&](const Row &row) { return isOfImages(row) && row.isAside; });
    printLarger(out, rows, all);
    return table.isEmpty() || writeTable(table, rows, all) ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && arguments.at(1) == QLatin1String("--work")) {
        const auto level = static_cast<PdfCompressionLevel>(arguments.at(2).toInt());
        return PdfCompression::compress(arguments.at(3), level,
                                        PdfPlacement::replacing(arguments.at(4)), {})
                       .isError()
                   ? 1
                   : 0;
    }
    if (arguments.size() < 2) {
        QTextStream(stderr) << "bench_compression FOLDER [EVERY [TABLE]]" << Qt::endl;
        return 1;
    }
    return compare(arguments.at(1), std::max(1, arguments.value(2).toInt()), arguments.value(3));
}
