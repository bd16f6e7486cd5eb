#pragma once

#include "tables/Descriptives.h"

#include <QString>

class RequestEditor;
struct AnalysisRequest;
struct Options;

/// What frmDescriptives shows and takes: a check box and a number of digits for each statistic.
struct DescriptivesChoice {
    StatisticSelection chkDescriptives{};
    std::array<QString, statisticCount> cmbDigits;

    /// The boxes' captions, by index.
    static const std::array<QString, statisticCount>& captions();

    /// The two options.
    static DescriptivesChoice defaults(const Options& options);
    /// What a request has chosen; the options where it has chosen nothing.
    static DescriptivesChoice of(const AnalysisRequest& request, const Options& options);

    QString dtDesc() const;
    QString dtDescDigits() const;

    /// OK in a window's dialog.
    void applyTo(RequestEditor& editor) const;
    /// OK in the options' dialog.
    void applyTo(Options& options) const;

    bool operator==(const DescriptivesChoice&) const = default;

private:
    static DescriptivesChoice from(const QString& mask, const QString& digits);
};
