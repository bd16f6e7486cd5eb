#pragma once

#include <QBuffer>
#include <QTemporaryFile>
#include <memory>

/// Where the history keeps what was written: in memory up to a size, beyond it all in one temporary file, which no
/// other user may read and which is gone with the program, however that ends.
class HistoryStore final : public QIODevice {
public:
    HistoryStore();

    bool isSequential() const override { return false; }
    qint64 size() const override { return inner().size(); }
    bool isInMemory() const { return !file_; }
    /// Cuts off the end. What can't be cut off only takes room.
    void truncate(qint64 size);
    /// Moves a stretch to a place before it. @return false if that failed, and the stretch is still where it was
    bool moveDown(qint64 from, qint64 size, qint64 to);

    static qint64 mostInMemory; ///< bytes

protected:
    qint64 readData(char* bytes, qint64 size) override;
    qint64 writeData(const char* bytes, qint64 size) override;

private:
    QBuffer memory_;
    std::unique_ptr<QTemporaryFile> file_;

    QIODevice& inner() { return file_ ? static_cast<QIODevice&>(*file_) : memory_; }
    const QIODevice& inner() const { return file_ ? static_cast<const QIODevice&>(*file_) : memory_; }
    bool moveToFile();
};
