#pragma once

#include <QIODevice>
#include <memory>
#include <readstat.h>
#include <vector>

/// Feeds a survey file to the reading library in large pieces: by itself it asks the system for every single
/// case.
class SurveyInput {
public:
    explicit SurveyInput(std::unique_ptr<QIODevice> file) : file_(std::move(file)) {}

    /// Makes the library read through this object, which must outlive the parsing.
    void serve(readstat_parser_t* parser);

private:
    std::unique_ptr<QIODevice> file_;
    std::vector<char> piece_;
    qint64 pieceAt_ = 0; ///< where in the file the piece begins
    qint64 pieceSize_ = 0;
    qint64 position_ = 0;
    unsigned updates_ = 0;

    bool open();
    qint64 seek(qint64 offset, readstat_io_flags_t whence);
    qint64 read(char* to, qint64 bytes);
    readstat_error_t update(qint64 size, readstat_progress_handler progress, void* context);
};
