#pragma once

#include "SurveyWriter.h"

#include <QJsonObject>
#include <QString>

/// A show card as a picture: the heading and the answers that the interviewer puts before the respondent.
/// @throws std::runtime_error with the file's name
void writeShowCard(const QString& path, const QString& heading, const QStringList& answers);

/// The questionnaire of a survey as a PDF file, one paragraph a question with its answer codes.
/// @param texts     variable name to its entry in the archive description, which holds the question texts
/// @param leaveOut  variables that are not asked in this version of the questionnaire
/// @throws std::runtime_error with the file's name
void writeQuestionnaire(const QString& path, const QString& title, const Survey& survey, const QJsonObject& texts,
                        const QStringList& leaveOut = {});
