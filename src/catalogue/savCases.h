#pragma once

#include "catalogue/savDictionary.h"

#include <optional>
#include <vector>

/// The cases of an SPSS system file, counted by their bytes alone. The library that reads them says nothing where
/// the file breaks off within a case, has more of them than its head says, or has something else behind them.
class SavCases {
public:
    explicit SavCases(const QString& path);

    /// False for a file whose cases have no beginning or a number below -1, which the library takes for an open one, or
    /// whose blocks the library must not be given.
    bool isReadable() const;
    /// How many whole cases the length of the file has room for; nothing if they are compressed.
    std::optional<qint64> byLength() const;

    struct Count {
        qint64 whole = 0;     ///< cases that are all there
        bool isClean = false; ///< the data end with the last of them, and the file with the data
    };
    /// Goes through all the data once.
    Count count() const;

private:
    /// A piece of the data, compressed by itself.
    struct Block {
        qint64 at, bytes, unpackedBytes;
    };
    QString path_;
    SavDictionary dictionary_;
    qint64 fileBytes_;
    std::optional<std::vector<Block>> blocks_; ///< nothing if there are none, or they are not in order

    std::optional<std::vector<Block>> blocksOf(qint64 dataAt) const;
};
