#include "catalogue/savCases.h"

#include <QFileInfo>
#include <QtEndian>
#include <cstring>

namespace {

constexpr qint64 fieldBytes = 8;
constexpr qint64 pieceBytes = 512 * 1024;
constexpr qint64 blockHeadBytes = 24, trailerHeadBytes = 24, trailerEntryBytes = 24;
/// Deflate packs no tighter.
constexpr qint64 tightest = 1032;

/// Counts the fields of row-compressed data: eight codes, then the fields that could not be put as a code.
class CodeStream {
public:
    void take(const QByteArray& bytes) {
        const auto* at = reinterpret_cast<const unsigned char*>(bytes.constData());
        for (qsizetype words = bytes.size() / fieldBytes; words > 0; --words, at += fieldBytes)
            take(at);
        oddBytes_ = oddBytes_ || bytes.size() % fieldBytes != 0;
    }

    SavCases::Count cases(qint64 fieldsPerCase) const {
        return {fields_ / fieldsPerCase, fields_ % fieldsPerCase == 0 && toCome_ == 0 && !behind_ && !oddBytes_};
    }

private:
    enum Code { Padding = 0, End = 252, Verbatim = 253 };
    qint64 fields_ = 0;
    int toCome_ = 0;
    bool ended_ = false, behind_ = false, oddBytes_ = false;

    void take(const unsigned char* word) {
        if (toCome_ > 0) {
            --toCome_;
            ++fields_;
            return;
        }
        behind_ = behind_ || ended_;
        for (int i = 0; i < fieldBytes && !ended_; ++i) {
            ended_ = word[i] == End;
            toCome_ += word[i] == Verbatim;
            fields_ += word[i] != End && word[i] != Verbatim && word[i] != Padding;
        }
    }
};

/// A number of the file's own byte order, out of bytes that are there.
template<class Number>
Number numberAt(const QByteArray& bytes, qsizetype at, bool swapped) {
    Number value;
    memcpy(&value, bytes.constData() + at, sizeof value);
    return swapped ? qbswap(value) : value;
}

} // namespace

SavCases::SavCases(const QString& path) : path_(path), dictionary_(path), fileBytes_(QFileInfo(path).size()) {
    if (dictionary_.compression() == SavDictionary::Compression::Blocks && dictionary_.dataAt())
        blocks_ = blocksOf(*dictionary_.dataAt());
}

std::optional<std::vector<SavCases::Block>> SavCases::blocksOf(qint64 dataAt) const {
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(dataAt))
        return std::nullopt;
    const bool swapped = dictionary_.swapped();
    const QByteArray head = file.read(blockHeadBytes);
    if (head.size() != blockHeadBytes || numberAt<qint64>(head, 0, swapped) != dataAt)
        return std::nullopt;
    const qint64 trailerAt = numberAt<qint64>(head, 8, swapped);
    if (trailerAt < dataAt + blockHeadBytes || trailerAt > fileBytes_ - trailerHeadBytes ||
        numberAt<qint64>(head, 16, swapped) != fileBytes_ - trailerAt || !file.seek(trailerAt))
        return std::nullopt;
    const QByteArray trailer = file.readAll();
    if (trailer.size() != fileBytes_ - trailerAt || (trailer.size() - trailerHeadBytes) % trailerEntryBytes != 0)
        return std::nullopt;
    std::vector<Block> blocks;
    qint64 end = dataAt + blockHeadBytes;
    for (qsizetype at = trailerHeadBytes; at < trailer.size(); at += trailerEntryBytes) {
        const Block block{numberAt<qint64>(trailer, at + 8, swapped), numberAt<qint32>(trailer, at + 20, swapped),
                          numberAt<qint32>(trailer, at + 16, swapped)};
        // The library goes round for ever in a block that ends within a field.
        if (block.at != end || block.bytes <= 0 || block.unpackedBytes <= 0 || block.unpackedBytes % fieldBytes != 0 ||
            block.unpackedBytes / tightest > block.bytes)
            return std::nullopt;
        end += block.bytes;
        blocks.push_back(block);
    }
    return end == trailerAt ? std::optional(blocks) : std::nullopt;
}

bool SavCases::isReadable() const {
    return dictionary_.dataAt() && dictionary_.cases() >= -1 && dictionary_.fieldsPerCase() > 0 &&
           (blocks_ || dictionary_.compression() != SavDictionary::Compression::Blocks);
}

std::optional<qint64> SavCases::byLength() const {
    if (!isReadable() || dictionary_.compression() != SavDictionary::Compression::None)
        return std::nullopt;
    return (fileBytes_ - *dictionary_.dataAt()) / (fieldBytes * dictionary_.fieldsPerCase());
}

SavCases::Count SavCases::count() const {
    QFile file(path_);
    if (!isReadable() || !file.open(QIODevice::ReadOnly) || !file.seek(*dictionary_.dataAt()))
        return {};
    if (const std::optional<qint64> whole = byLength())
        return {*whole, (fileBytes_ - *dictionary_.dataAt()) % (fieldBytes * dictionary_.fieldsPerCase()) == 0};
    CodeStream stream;
    if (!blocks_) {
        for (QByteArray piece = file.read(pieceBytes); !piece.isEmpty(); piece = file.read(pieceBytes))
            stream.take(piece);
        return stream.cases(dictionary_.fieldsPerCase());
    }
    for (const Block& block : *blocks_) {
        QByteArray packed(4, '\0');
        qToBigEndian(static_cast<quint32>(block.unpackedBytes), packed.data());
        packed += file.seek(block.at) ? file.read(block.bytes) : QByteArray();
        const QByteArray unpacked = qUncompress(packed);
        if (unpacked.size() != block.unpackedBytes)
            return {};
        stream.take(unpacked);
    }
    return stream.cases(dictionary_.fieldsPerCase());
}
