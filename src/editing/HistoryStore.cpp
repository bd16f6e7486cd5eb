#include "editing/HistoryStore.h"

qint64 HistoryStore::mostInMemory = 64 * 1024 * 1024;

HistoryStore::HistoryStore() {
    memory_.open(ReadWrite);
    open(ReadWrite | Unbuffered);
}

void HistoryStore::truncate(qint64 size) {
    if (size >= inner().size())
        return;
    if (file_ && size > 0) {
        file_->resize(size);
    } else if (!file_) {
        memory_.buffer().resize(size);
    } else {
        file_.reset();
        memory_.buffer().clear();
    }
}

bool HistoryStore::moveDown(qint64 from, qint64 size, qint64 to) {
    if (from < to + size)
        return false; // its own beginning would be written over before it is safe
    constexpr qint64 piece = 1024 * 1024;
    for (qint64 done = 0; done < size;) {
        if (!seek(from + done))
            return false;
        const QByteArray bytes = read(std::min(piece, size - done));
        if (bytes.isEmpty() || !seek(to + done) || write(bytes) != bytes.size())
            return false;
        done += bytes.size();
    }
    return true;
}

qint64 HistoryStore::readData(char* bytes, qint64 size) {
    return inner().seek(pos()) ? inner().read(bytes, size) : -1;
}

qint64 HistoryStore::writeData(const char* bytes, qint64 size) {
    if (!file_ && pos() + size > mostInMemory && !moveToFile())
        return -1;
    if (!inner().seek(pos()) || inner().write(bytes, size) != size)
        return -1;
    return !file_ || file_->flush() ? size : -1;
}

bool HistoryStore::moveToFile() {
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open() || file->write(memory_.buffer()) != memory_.size())
        return false;
    file_ = std::move(file);
    memory_.close();
    memory_.setData(QByteArray());
    memory_.open(ReadWrite);
    return true;
}
