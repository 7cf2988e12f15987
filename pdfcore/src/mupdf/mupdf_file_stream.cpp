// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/mupdf_file_stream.h"

#include "pdfcore/src/mupdf/mupdf_context.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

namespace pdfcore {

namespace {

/// Bytes read from the file at a time, at most.
constexpr std::size_t kChunkBytes = std::size_t{64} << 10;

/// Bytes read after a jump: enough for the dictionaries that are read one here and one there. What
/// is read on from there comes in steps that double.
constexpr std::size_t kJumpBytes = 512;

struct FileState
{
    explicit FileState(MupdfContext &owner)
        : context(owner)
    {}

    MupdfContext &context;
    QFile file;
    std::size_t step = kJumpBytes;
    std::array<unsigned char, kChunkBytes> chunk;
};

FileState &stateOf(fz_stream *stream)
{
    return *static_cast<FileState *>(stream->state);
}

int readNext(fz_context *ctx, fz_stream *stream, std::size_t /*max*/)
{
    FileState &state = stateOf(stream);
    if (state.context.isOutOfTime()) {
        fz_throw(ctx, FZ_ERROR_GENERIC, "out of time");
    }
    const qint64 got = state.file.read(reinterpret_cast<char *>(state.chunk.data()),
                                       static_cast<qint64>(state.step));
    state.step = std::min(2 * state.step, kChunkBytes);
    if (got < 0) {
        fz_throw(ctx, FZ_ERROR_GENERIC, "the file cannot be read");
    }
    stream->rp = state.chunk.data();
    stream->wp = stream->rp + got;
    stream->pos += got;
    return got == 0 ? EOF : *stream->rp++;
}

void seekTo(fz_context *ctx, fz_stream *stream, int64_t offset, int whence)
{
    FileState &state = stateOf(stream);
    qint64 target = offset;
    if (whence == SEEK_END) {
        target += state.file.size();
    }
    if (target < 0) {
        target = 0;
    }
    // Objects are read one by one and lie close together: what was read already serves again.
    const qint64 chunkStart = stream->pos - (stream->wp - state.chunk.data());
    if (target >= chunkStart && target <= stream->pos) {
        stream->rp = state.chunk.data() + (target - chunkStart);
        return;
    }
    if (!state.file.seek(target)) {
        fz_throw(ctx, FZ_ERROR_GENERIC, "the file cannot be read");
    }
    state.step = kJumpBytes;
    stream->pos = target;
    stream->rp = state.chunk.data();
    stream->wp = state.chunk.data();
}

void dropFile(fz_context * /*ctx*/, void *state)
{
    delete static_cast<FileState *>(state);
}

} // namespace

fz_stream *openFileStream(MupdfContext &context, const QString &path, QString *reason)
{
    fz_context *ctx = context.get();
    auto state = std::make_unique<FileState>(context);
    state->file.setFileName(path);
    if (!state->file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        *reason = state->file.errorString();
        return nullptr;
    }
    FileState *owned = state.release();
    fz_stream *stream = nullptr;
    fz_var(stream);
    // On failure fz_new_stream drops the state by itself.
    fz_try(ctx)
    {
        stream = fz_new_stream(ctx, owned, &readNext, &dropFile);
        stream->seek = &seekTo;
        stream->rp = owned->chunk.data();
        stream->wp = owned->chunk.data();
    }
    fz_catch(ctx)
    {
        stream = nullptr;
    }
    if (stream == nullptr) {
        *reason = QStringLiteral("not enough memory");
    }
    return stream;
}

} // namespace pdfcore
