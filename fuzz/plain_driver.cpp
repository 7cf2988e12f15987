// SPDX-License-Identifier: AGPL-3.0-or-later
// A fuzzer for compilers that bring none: runs every file of the given folders, then files changed
// at random until the time is over. Where the compiler reports the ways through the engine, inputs
// that take a new one are kept and changed further.
//
//     fuzz_engine [-max_total_time=SECONDS] [-timeout=SECONDS] [-seed=NUMBER] [-dict=FILE]
//     FOLDER...
//
// What is kept goes to the first folder. The input at work stands in the current folder under a
// name that begins with "crash-" for as long as it runs.

#include <QCryptographicHash>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTextStream>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <thread>
#include <utility>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

constexpr qsizetype kLargestInput = 1 << 16;
constexpr std::size_t kPlaces = std::size_t{1} << 20;

/// Places of the engine's code that some input has reached. Code that runs before main() reports
/// places as well, so these must be there from the start.
constinit std::array<std::atomic<bool>, kPlaces> reached{};
constinit std::atomic<int> newPlaces = 0;

/// When the input at work began, in seconds; the largest number while there is none.
std::atomic<qint64> startOfInput = std::numeric_limits<qint64>::max();

} // namespace

extern "C" void __sanitizer_cov_trace_pc();

extern "C" void __sanitizer_cov_trace_pc()
{
#if defined(__GNUC__)
    const auto place = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
    std::atomic<bool> &mark = reached[(place ^ (place >> 20)) % kPlaces];
    if (!mark.load(std::memory_order_relaxed)) {
        mark.store(true, std::memory_order_relaxed);
        newPlaces.fetch_add(1, std::memory_order_relaxed);
    }
#endif
}

namespace {

struct Options
{
    qint64 seconds = 0;
    qint64 timeout = 60;
    quint32 seed = 1;
    QList<QByteArray> words;
    QStringList folders;
};

/// The quoted words of a dictionary file; "\x0a" stands for a byte.
QList<QByteArray> wordsOf(const QString &path)
{
    QList<QByteArray> words;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return words;
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (!line.startsWith('"')) {
            continue;
        }
        QByteArray word = line.mid(1, line.lastIndexOf('"') - 1);
        for (qsizetype at = word.indexOf("\\x"); at >= 0; at = word.indexOf("\\x")) {
            word.replace(at, 4, QByteArray::fromHex(word.mid(at + 2, 2)));
        }
        words.append(word);
    }
    return words;
}

Options optionsOf(int argc, char *argv[])
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        const QString value = argument.section(u'=', 1);
        if (argument.startsWith(QLatin1String("-max_total_time="))) {
            options.seconds = value.toLongLong();
        } else if (argument.startsWith(QLatin1String("-timeout="))) {
            options.timeout = value.toLongLong();
        } else if (argument.startsWith(QLatin1String("-seed="))) {
            options.seed = value.toUInt();
        } else if (argument.startsWith(QLatin1String("-dict="))) {
            options.words = wordsOf(value);
        } else if (!argument.startsWith(u'-')) {
            options.folders.append(argument);
        }
    }
    return options;
}

QList<QByteArray> filesOf(const QStringList &folders)
{
    QList<QByteArray> inputs;
    for (const QString &folder : folders) {
        QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.size() <= kLargestInput && file.open(QIODevice::ReadOnly)) {
                inputs.append(file.readAll());
            }
        }
    }
    return inputs;
}

qint64 now()
{
    static const QElapsedTimer timer = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return timer.elapsed() / 1000;
}

/// Ends the process when one input takes too long.
void watch(qint64 timeout)
{
    for (;;) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        if (now() - timeout > startOfInput) {
            qFatal("An input takes more than %lld seconds.", static_cast<long long>(timeout));
        }
    }
}

void writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(data);
    }
}

QString nameOf(const QByteArray &input)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(input, QCryptographicHash::Sha1).toHex().left(16));
}

/// Runs an input and returns whether it reached something new.
bool reachesMore(const QByteArray &input)
{
    const QString kept = QStringLiteral("crash-") + nameOf(input);
    writeFile(kept, input);
    newPlaces = 0;
    startOfInput = now();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                           static_cast<std::size_t>(input.size()));
    startOfInput = std::numeric_limits<qint64>::max();
    QFile::remove(kept);
    return newPlaces > 0;
}

/// Changes inputs at random.
class Mutator
{
public:
    explicit Mutator(const Options &options)
        : m_random(options.seed)
        , m_words(options.words)
    {}

    const QByteArray &any(const QList<QByteArray> &list)
    {
        return list.at(m_random.bounded(static_cast<int>(list.size())));
    }

    QByteArray changed(QByteArray input, const QByteArray &other)
    {
        for (int changes = m_random.bounded(6); changes >= 0; --changes) {
            change(input, other);
        }
        return input.left(kLargestInput);
    }

private:
    qsizetype placeIn(const QByteArray &data)
    {
        return static_cast<qsizetype>(m_random.bounded(static_cast<quint32>(data.size() + 1)));
    }

    /// The start of a number or name after a place, where changes keep the file in order.
    qsizetype tokenIn(const QByteArray &data)
    {
        qsizetype place = placeIn(data);
        while (place < data.size() && data.at(place) != ' ') {
            ++place;
        }
        return std::min(place + 1, data.size());
    }

    void change(QByteArray &input, const QByteArray &other)
    {
        const qsizetype place = placeIn(input);
        const qsizetype length = m_random.bounded(64);
        switch (m_random.bounded(7)) {
        case 0:
            if (place < input.size()) {
                input[place] = static_cast<char>(m_random.bounded(256));
            }
            break;
        case 1:
            input.remove(place, length);
            break;
        case 2:
            input.insert(place, input.mid(placeIn(input), length));
            break;
        case 3:
            input.insert(place, other.mid(placeIn(other), length));
            break;
        case 4:
            if (!m_words.isEmpty()) {
                input.insert(tokenIn(input), QByteArray(any(m_words) + ' '));
            }
            break;
        case 5:
            replaceToken(input);
            break;
        default:
            replaceDigit(input, place);
            break;
        }
    }

    void replaceToken(QByteArray &input)
    {
        const qsizetype start = tokenIn(input);
        const qsizetype end = input.indexOf(' ', start);
        if (end > start && !m_words.isEmpty()) {
            input.replace(start, end - start, any(m_words));
        }
    }

    void replaceDigit(QByteArray &input, qsizetype place)
    {
        while (place < input.size() && (input.at(place) < '0' || input.at(place) > '9')) {
            ++place;
        }
        if (place < input.size()) {
            input[place] = static_cast<char>('0' + m_random.bounded(10));
        }
    }

    QRandomGenerator m_random;
    QList<QByteArray> m_words;
};

} // namespace

int main(int argc, char *argv[])
{
    const Options options = optionsOf(argc, argv);
    QList<QByteArray> inputs = filesOf(options.folders);
    if (inputs.isEmpty()) {
        QTextStream(stderr) << "There are no inputs." << Qt::endl;
        return 1;
    }
    std::thread(watch, options.timeout).detach();
    for (const QByteArray &input : std::as_const(inputs)) {
        reachesMore(input);
    }
    const qint64 end = now() + options.seconds;
    qsizetype runs = inputs.size();
    qsizetype found = 0;
    Mutator mutator(options);
    for (; now() < end; ++runs) {
        const QByteArray input = mutator.changed(mutator.any(inputs), mutator.any(inputs));
        if (!reachesMore(input)) {
            continue;
        }
        inputs.append(input);
        writeFile(options.folders.constFirst() + u'/' + nameOf(input), input);
        ++found;
    }
    QTextStream(stdout) << runs << " inputs, " << found << " of them kept" << Qt::endl;
    // The engine's threads and the watch may still be there.
    std::quick_exit(0);
}
