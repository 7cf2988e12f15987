// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/size_text.h"

#include <QCoreApplication>

namespace {

struct FileSize
{
    Q_DECLARE_TR_FUNCTIONS(FileSize)
};

constexpr qint64 kKilobyte = 1024;
constexpr qint64 kMegabyte = 1024 * kKilobyte;
constexpr qint64 kGigabyte = 1024 * kMegabyte;

QString share(qint64 bytes, qint64 unit, int decimals)
{
    return QString::number(static_cast<double>(bytes) / static_cast<double>(unit), 'f', decimals);
}

} // namespace

QString sizeText(qint64 bytes)
{
    if (bytes < kKilobyte) {
        return FileSize::tr("%1 B").arg(bytes);
    }
    if (bytes < kMegabyte) {
        return FileSize::tr("%1 KB").arg(share(bytes, kKilobyte, 0));
    }
    if (bytes < kGigabyte) {
        return FileSize::tr("%1 MB").arg(share(bytes, kMegabyte, 2));
    }
    return FileSize::tr("%1 GB").arg(share(bytes, kGigabyte, 2));
}
