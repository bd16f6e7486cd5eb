#include "catalogue/SurveyInput.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr qint64 pieceBytes = 512 * 1024;
/// The library reports its progress with every case; that often nobody wants to know.
constexpr unsigned updatesPerReport = 1000;

SurveyInput& self(void* context) {
    return *static_cast<SurveyInput*>(context);
}

} // namespace

void SurveyInput::serve(readstat_parser_t* parser) {
    readstat_set_io_ctx(parser, this);
    readstat_set_open_handler(parser, [](const char*, void* context) { return self(context).open() ? 0 : -1; });
    readstat_set_close_handler(parser, [](void* context) {
        self(context).file_->close();
        return 0;
    });
    readstat_set_seek_handler(parser, [](readstat_off_t offset, readstat_io_flags_t whence, void* context) {
        return static_cast<readstat_off_t>(self(context).seek(offset, whence));
    });
    readstat_set_read_handler(parser, [](void* to, size_t bytes, void* context) {
        return static_cast<ssize_t>(self(context).read(static_cast<char*>(to), static_cast<qint64>(bytes)));
    });
    readstat_set_update_handler(parser, [](long size, readstat_progress_handler progress, void* user, void* context) {
        return self(context).update(size, progress, user);
    });
}

bool SurveyInput::open() {
    piece_.resize(pieceBytes);
    pieceAt_ = pieceSize_ = position_ = 0;
    return file_->open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 SurveyInput::seek(qint64 offset, readstat_io_flags_t whence) {
    const qint64 from = whence == READSTAT_SEEK_SET ? 0 : whence == READSTAT_SEEK_CUR ? position_ : file_->size();
    // A file may claim any length for what it wants skipped.
    qint64 wanted = 0;
    if (__builtin_add_overflow(from, offset, &wanted) || wanted < 0)
        return -1;
    return position_ = wanted;
}

qint64 SurveyInput::read(char* to, qint64 bytes) {
    qint64 done = 0;
    while (done < bytes) {
        if (position_ < pieceAt_ || position_ >= pieceAt_ + pieceSize_) {
            if (position_ >= file_->size() || !file_->seek(position_))
                break;
            pieceAt_ = position_;
            pieceSize_ = std::max<qint64>(file_->read(piece_.data(), pieceBytes), 0);
            if (pieceSize_ == 0)
                break;
        }
        const qint64 part = std::min(bytes - done, pieceAt_ + pieceSize_ - position_);
        std::memcpy(to + done, piece_.data() + (position_ - pieceAt_), static_cast<size_t>(part));
        done += part;
        position_ += part;
    }
    return done;
}

readstat_error_t SurveyInput::update(qint64 size, readstat_progress_handler progress, void* context) {
    if (!progress || updates_++ % updatesPerReport != 0)
        return READSTAT_OK;
    const double share = size > 0 ? static_cast<double>(position_) / static_cast<double>(size) : 1.0;
    return progress(share, context) == READSTAT_HANDLER_OK ? READSTAT_OK : READSTAT_ERROR_USER_ABORT;
}
