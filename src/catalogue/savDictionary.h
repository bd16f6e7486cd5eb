#pragma once

#include <QFile>
#include <functional>
#include <optional>

/// Walks the dictionary of an SPSS system file, for what the reading library does not report of it.
class SavDictionary {
public:
    enum class Compression { None, Codes, Blocks };
    /// Gets type and content of an extension record.
    using Extension = std::function<void(qint32 type, const QByteArray& content)>;

    /// A file that is not in order is walked as far as it goes.
    explicit SavDictionary(const QString& path, const Extension& extension = {});

    Compression compression() const { return compression_; }
    /// The number of cases by the head; -1 where it leaves that open.
    qint32 cases() const { return cases_; }
    /// Fields of eight bytes that a case takes up.
    qint64 fieldsPerCase() const { return fieldsPerCase_; }
    /// Where in the file the cases begin; nothing if the dictionary has no end.
    std::optional<qint64> dataAt() const { return dataAt_; }
    /// True where the file's numbers have their bytes the other way round.
    bool swapped() const { return swapped_; }

private:
    QFile file_;
    qint64 fileBytes_ = 0; ///< asked once: a question to the system takes longer than reading a label
    Compression compression_ = Compression::None;
    qint64 fieldsPerCase_ = 0;
    qint32 cases_ = -1;
    std::optional<qint64> dataAt_;
    bool swapped_ = false;

    bool head();
    std::optional<qint32> number();
    bool skip(qint64 bytes);
    bool variable();
    bool valueLabels();
    bool counted(qint64 size);
    bool extensionRecord(const Extension& extension);
    bool record(qint32 type, const Extension& extension);
};
