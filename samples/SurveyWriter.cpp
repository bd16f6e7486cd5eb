#include "SurveyWriter.h"

#include "Random.h"

#include <QSaveFile>
#include <readstat.h>

#include <memory>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw std::runtime_error((path + QStringLiteral(": ") + reason).toStdString());
}

ssize_t writeBytes(const void* data, size_t length, void* context) {
    return static_cast<ssize_t>(
        static_cast<QSaveFile*>(context)->write(static_cast<const char*>(data), static_cast<qint64>(length)));
}

readstat_measure_t measureOf(Level level) {
    switch (level) {
    case Level::Nominal:
        return READSTAT_MEASURE_NOMINAL;
    case Level::Ordinal:
        return READSTAT_MEASURE_ORDINAL;
    case Level::Metric:
        break;
    }
    return READSTAT_MEASURE_SCALE;
}

readstat_variable_t* describe(readstat_writer_t* writer, const Question& question) {
    const int length = question.textLength();
    readstat_variable_t* variable = readstat_add_variable(
        writer, question.name, length > 0 ? READSTAT_TYPE_STRING : READSTAT_TYPE_DOUBLE, static_cast<size_t>(length));
    readstat_variable_set_label(variable, question.label);
    readstat_variable_set_format(variable, question.format);
    readstat_variable_set_measure(variable, measureOf(question.level));
    if (!question.codes.empty()) {
        readstat_label_set_t* labels = readstat_add_label_set(writer, READSTAT_TYPE_DOUBLE, question.name);
        for (const Code& code : question.codes)
            readstat_label_double_value(labels, code.value, code.label);
        readstat_variable_set_label_set(variable, labels);
    }
    for (const double value : question.missing.values)
        readstat_variable_add_missing_double_value(variable, value);
    if (question.missing.hasRange)
        readstat_variable_add_missing_double_range(variable, question.missing.low, question.missing.high);
    return variable;
}

struct Column {
    Question question;
    readstat_variable_t* variable;
    Random random;
};

readstat_error_t insert(readstat_writer_t* writer, Column& column, const Respondent& person) {
    const Answer answer = column.question.answer(person, column.random);
    // Rounding from below leaves a negative zero, which statistics programs show apart from zero.
    if (const double* number = std::get_if<double>(&answer))
        return readstat_insert_double_value(writer, column.variable, *number + 0.0);
    if (const std::string* text = std::get_if<std::string>(&answer))
        return readstat_insert_string_value(writer, column.variable, text->c_str());
    return readstat_insert_missing_value(writer, column.variable);
}

} // namespace

std::vector<Question> questionsOf(const Survey& survey) {
    std::vector<Question> asked;
    for (const auto& chapter : {personQuestions(), householdQuestions(), attitudeQuestions(), livingQuestions()})
        for (const Question& question : chapter)
            if (question.askedIn(survey.wave))
                asked.push_back(question);
    if (!survey.weighted)
        return asked;
    const auto weights = std::make_shared<Weights>(weightsOf(drawSample(survey.wave, survey.cases)));
    asked.push_back(
        {inWaves, "GEWREP", "Repräsentativgewicht", "F8.4", Level::Metric, {}, {}, [weights](auto& p, auto&) {
             return Answer(weights->representative[static_cast<std::size_t>(p.number - 1)]);
         }});
    asked.push_back({inWaves, "GEWHH", "Haushaltsgewicht", "F8.4", Level::Metric, {}, {}, [weights](auto& p, auto& r) {
                         // In 2018 a few households could not be weighted.
                         if (p.wave == Wave::Wave2018 && r.chance(0.004))
                             return Answer();
                         return Answer(weights->household[static_cast<std::size_t>(p.number - 1)]);
                     }});
    return asked;
}

void writeSurvey(const Survey& survey, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        fail(path, file.errorString());
    const std::unique_ptr<readstat_writer_t, void (*)(readstat_writer_t*)> owner(readstat_writer_init(),
                                                                                 readstat_writer_free);
    readstat_writer_t* writer = owner.get();
    readstat_set_data_writer(writer, writeBytes);
    readstat_writer_set_file_label(writer, survey.fileLabel.toUtf8().constData());
    // The same file at every run: the date of the first one.
    readstat_writer_set_file_timestamp(writer, 1410955200);
    for (const QString& line : survey.notes.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        readstat_add_note(writer, line.toUtf8().constData());

    const std::vector<Respondent> sample = drawSample(survey.wave, survey.cases);
    std::vector<Column> columns;
    for (Question& question : questionsOf(survey)) {
        readstat_variable_t* variable = describe(writer, question);
        const std::string stream = survey.study.toStdString() + question.name;
        columns.push_back({std::move(question), variable, Random(4711, stream)});
    }
    readstat_error_t error = readstat_begin_writing_sav(writer, &file, survey.cases);
    for (std::size_t row = 0; row < sample.size() && error == READSTAT_OK; ++row) {
        error = readstat_begin_row(writer);
        for (std::size_t i = 0; i < columns.size() && error == READSTAT_OK; ++i)
            error = insert(writer, columns[i], sample[row]);
        if (error == READSTAT_OK)
            error = readstat_end_row(writer);
    }
    if (error == READSTAT_OK)
        error = readstat_end_writing(writer);
    if (error != READSTAT_OK)
        fail(path, QString::fromUtf8(readstat_error_message(error)));
    if (!file.commit())
        fail(path, file.errorString());
}
