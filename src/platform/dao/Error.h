#pragma once

#include <QString>
#include <exception>
#include <vector>

namespace dao {

/// What went wrong, by the engine's number. Numbers from 3000 on are the engine's own and stand in
/// DBEngine's error list until its next operation begins; the smaller ones are run-time errors of the language
/// (5 invalid argument, 6 overflow, 11 division by zero, 13 type mismatch, 52 bad file name, 91 no object,
/// 94 use of Null) and never enter that list.
class Error : public std::exception {
public:
    Error(int number, QString description, QString source = QString(), QString detail = QString());

    int number() const { return number_; }
    const QString& description() const { return description_; }
    const QString& source() const { return source_; }
    /// The name or text that the description is about, where it was given apart.
    const QString& detail() const { return detail_; }
    bool isRuntimeError() const { return number_ < 3000; }
    const char* what() const noexcept override { return utf8_.constData(); }

private:
    int number_;
    QString description_;
    QString source_;
    QString detail_;
    QByteArray utf8_;
};

/// A run-time error of the language with its usual English description.
[[noreturn]] void raiseRuntimeError(int number);
/// An engine error that is also put into the error list. `detail` is the name or text it is about.
[[noreturn]] void raiseEngineError(int number, const QString& detail = QString());
/// The same with a description of its own, where the number's says too little.
[[noreturn]] void raiseEngineErrorInWords(int number, const QString& description);

/// The engine's error list, oldest first.
class Errors {
public:
    struct Entry {
        int number;
        QString description;
        QString source;
    };

    int Count() const { return static_cast<int>(entries_.size()); }
    const Entry& Item(int index) const { return entries_.at(static_cast<size_t>(index)); }
    void clear() { entries_.clear(); }
    void append(Entry entry) { entries_.push_back(std::move(entry)); }

private:
    std::vector<Entry> entries_;
};

/// The one error list of the process; DBEngine::errors() hands it out.
Errors& errorList();

/// Puts the error list back as it was, for questions whose failure is nobody's error.
class KeptErrors {
public:
    KeptErrors() = default;
    ~KeptErrors() { errorList() = before_; }
    KeptErrors(const KeptErrors&) = delete;
    KeptErrors& operator=(const KeptErrors&) = delete;

private:
    Errors before_ = errorList();
};

} // namespace dao
