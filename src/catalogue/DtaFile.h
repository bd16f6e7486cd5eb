#pragma once

#include <QByteArray>
#include <QFile>
#include <array>
#include <optional>

/// Finds its way through a Stata file (.dta) of any format, for what the reading library passes over.
class DtaFile {
public:
    /// Reads the head. A file that is not in order is not isGood().
    explicit DtaFile(const QString& path);

    bool isGood() const { return isGood_; }
    int format() const { return format_; }
    /// True from format 117 on, whose sections stand between tags.
    bool isTagged() const { return format_ >= 117; }
    qint64 rows() const { return rows_; }
    /// Bytes of a case; nothing if a variable's type is not known.
    std::optional<qint64> rowBytes() const;
    /// Bytes of the fields for names of variables and of characteristics.
    int nameBytes() const { return format_ >= 118 ? 129 : format_ >= 110 ? 33 : 9; }

    enum Section { Characteristics = 8, Data = 9, Strings = 10, ValueLabels = 11 };
    /// Where a section of a tagged file begins, by the file's own map; -1 for a place beyond the file's end.
    qint64 placeOf(Section section) const { return map_[section]; }
    bool goToCharacteristics();
    /// Reads one characteristic after the other: its variable, its name and its text; nothing behind the last.
    std::optional<QByteArray> nextCharacteristic();

    /// What follows is read from the place that the file stands at, which moves on.
    QFile& file() { return file_; }
    std::optional<qint64> number(int bytes);
    bool expect(const QByteArray& tag) { return file_.read(tag.size()) == tag; }
    bool skip(qint64 bytes);

private:
    QFile file_;
    qint64 fileBytes_ = 0; ///< asked once: a question to the system takes longer than reading a label
    bool isGood_ = false, bigEndian_ = false;
    int format_ = 0;
    qint64 variables_ = 0, rows_ = 0;
    QByteArray types_;
    std::array<qint64, 14> map_{};

    bool readTaggedHead();
    bool readOldHead();
    qint64 bytesOfType(qint64 variable) const;
};
